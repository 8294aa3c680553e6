// The command that calls any member of any class.
#include <iostream>
#include <memory>
#include <sstream>

#include "host/client/description.hpp"
#include "host/client/dispatch_client.hpp"
#include "host/client/message_sink.hpp"
#include "host/command_line.hpp"
#include "host/commands/call_arguments.hpp"
#include "host/data/values.hpp"
#include "host/failure.hpp"

namespace vqmath63::host {
namespace {

constexpr const char* kNotes =
    "Arguments: numbers; true, false; texts; dates such as 2023-01-31 or \"2023-01-31 06:00\";\n"
    "  lists [0,1,2] (the first element has index 1) and lists of rows [[0,5],[1,20]];\n"
    "  @FILE.csv:COLUMN for a column of a file, by header or number (dates become day numbers),\n"
    "  @FILE.csv:A,B or @FILE.csv for a table. NAME=VALUE passes an argument by its name.\n"
    "  '-' leaves an argument out, as the end of the list does: its default is taken, and a\n"
    "  by-reference argument without one is an empty variable.\n"
    "Prints the result and then every by-reference argument. Fails (status 1) when the component\n"
    "reports an error or the argument qOK comes back False.\n"
    "Examples: vqhost call ztIntegrate Integral [0,1,2] [0,1,4] --set IntegrationRule=2\n"
    "          vqhost call ztRegression Regression [1,2,3] [2,4,7] [1,1,1] --get A,B,R";

struct Options {
  std::string class_name;
  std::string member;
  std::vector<std::string> settings;
  std::vector<std::string> readings;
  std::vector<std::string> arguments;
  std::optional<double> empty_as;
  bool all = false;
};

// The properties of --get, which may name several between commas.
std::vector<std::string> properties_to_read(const Options& options,
                                            const std::vector<MemberDescription>& members) {
  std::vector<std::string> names;
  for (const std::string& reading : options.readings) {
    std::istringstream parts(reading);
    for (std::string name; std::getline(parts, name, ',');) {
      const MemberDescription& member = find_member(members, options.class_name, name, 0);
      if (member.kind != MemberKind::kGet) {
        throw UsageError("--get " + name + ": no property that can be read");
      }
      names.push_back(member.name);
    }
  }
  return names;
}

int run(const Options& options) {
  const MessageSink sink;
  const auto members = describe_members(options.class_name);
  const MemberDescription& member =
      find_member(members, options.class_name, options.member, options.arguments.size());
  CallArguments arguments(member, options.arguments, options.empty_as);
  std::vector<Argument> given = arguments.make();
  const std::vector<std::string> readings = properties_to_read(options, members);
  DispatchObject object = DispatchObject::create(options.class_name);
  for (const std::string& setting : options.settings) {
    set_property(object, members, options.class_name, setting, options.empty_as);
  }
  bool ok = true;
  if (member.kind == MemberKind::kLet) {
    object.put(member.name, std::move(given.back().value));
  } else {
    const Value result = member.kind == MemberKind::kGet
                             ? object.get(member.name, std::move(given))
                             : object.call(member.name, std::move(given));
    if (!result.is_empty()) std::cout << value_text(result.get(), options.all) << '\n';
    ok = arguments.show(options.all);
  }
  for (const std::string& name : readings) {
    const Value value = object.get(name, {});
    std::cout << name << " = " << value_text(value.get(), options.all) << '\n';
  }
  if (!ok) throw WorkError(member.name + " did not succeed: qOK is False");
  if (sink.errors() > 0) throw WorkError(member.name + " reported an error");
  return kSuccess;
}

void declare(Command& command) {
  const auto options = std::make_shared<Options>();
  command.argument("CLASS", options->class_name, "Class name or programmatic id")
      .argument("MEMBER", options->member, "Method or property, in any letter case")
      .rest(options->arguments)
      .repeatable("--set", "PROPERTY=VALUE", options->settings,
                  "Set a property before the call (repeatable)")
      .repeatable("--get", "PROPERTY,...", options->readings,
                  "Print properties after the call (repeatable)")
      .option("--empty-as", "VALUE", options->empty_as, "Value of missing cells of a CSV file")
      .flag("--all", options->all, "Print arrays whole")
      .notes(kNotes)
      .does([options] { return run(*options); });
}

const RegisteredCommand kRegistered{
    "call", "Create an object and call a member: call [OPTIONS] CLASS MEMBER ARG...", &declare};

}  // namespace
}  // namespace vqmath63::host
