// The command that calls any member of any class.
#include <iostream>
#include <list>
#include <memory>

#include "host/commands.hpp"
#include "host/description.hpp"
#include "host/dispatch_client.hpp"
#include "host/failure.hpp"
#include "host/message_sink.hpp"
#include "host/text.hpp"
#include "host/values.hpp"

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
    "Example: vqhost call ztIntegrate Integral [0,1,2] [0,1,4] --set IntegrationRule=2";

struct Options {
  std::string class_name;
  std::string member;
  std::vector<std::string> settings;
  std::vector<std::string> arguments;
  std::optional<double> empty_as;
  bool all = false;
};

const MemberDescription* find(const std::vector<MemberDescription>& members,
                              const std::string& name, std::size_t arguments) {
  const MemberDescription* found = nullptr;
  for (const MemberDescription& member : members) {
    if (!same_letters(member.name, name)) continue;
    // Of a property the row that takes the arguments: none to read it, one to set it.
    if (found == nullptr || found->arguments.size() < arguments) found = &member;
    if (member.kind != MemberKind::kLet && member.arguments.size() >= arguments) return &member;
  }
  return found;
}

// The arguments of a call, with the variables behind those that are passed by reference.
class CallArguments {
 public:
  CallArguments(const MemberDescription& member, const Options& options)
      : member_(member),
        options_(options),
        texts_(member.arguments.size()),
        named_(texts_.size(), false) {
    std::size_t next = 0;
    for (const std::string& given : options.arguments) {
      const auto equals = given.find('=');
      const std::size_t named =
          equals == std::string::npos ? texts_.size() : index_of(given.substr(0, equals));
      if (named < texts_.size()) {
        assign(named, given.substr(equals + 1));
        named_[named] = true;
      } else if (next < texts_.size()) {
        assign(next++, given);
      } else {
        throw UsageError(member.name + " takes " + counted(texts_.size(), "argument"));
      }
    }
  }

  std::vector<Argument> make() {
    std::vector<Argument> arguments;
    bool by_name = false;
    for (std::size_t i = 0; i < texts_.size(); ++i) {
      const ArgumentDescription& about = member_.arguments[i];
      by_name = by_name || named_[i];  // and so are all that follow a named one
      const std::string name = by_name ? about.name : std::string();
      Value value = value_of(i);
      if (!about.by_ref) {
        arguments.push_back({std::move(value), name});
        continue;
      }
      variables_.push_back(std::move(value));
      arguments.push_back({Value::reference(variables_.back()), name});
    }
    return arguments;
  }

  // Prints what came back; false when a flag qOK is False.
  bool show() const {
    bool ok = true;
    auto variable = variables_.begin();
    for (const ArgumentDescription& about : member_.arguments) {
      if (!about.by_ref) continue;
      const VARIANT& value = (variable++)->get();
      std::cout << about.name << " = " << value_text(value, options_.all) << '\n';
      if (same_letters(about.name, "qOK") && value.vt == VT_BOOL && value.boolVal == 0) ok = false;
    }
    return ok;
  }

 private:
  std::size_t index_of(const std::string& name) const {
    std::size_t i = 0;
    while (i < texts_.size() && !same_letters(member_.arguments[i].name, name)) ++i;
    return i;
  }

  void assign(std::size_t i, const std::string& text) {
    if (texts_[i]) throw UsageError(member_.arguments[i].name + ": given twice");
    texts_[i] = text;
  }

  Value value_of(std::size_t i) const {
    const ArgumentDescription& about = member_.arguments[i];
    if (texts_[i] && *texts_[i] != "-") {
      return value_from_text(about.type, *texts_[i], about.name, options_.empty_as);
    }
    if (about.fallback && about.by_ref) {
      // The default in a variable, so that the output arrives; texts stand in quotes.
      const std::string& text = *about.fallback;
      const bool has_quotes = text.size() >= 2 && text.front() == '"';
      return value_from_text(about.type, has_quotes ? text.substr(1, text.size() - 2) : text,
                             about.name, std::nullopt);
    }
    return about.by_ref ? Value() : Value::missing();
  }

  const MemberDescription& member_;
  const Options& options_;
  std::vector<std::optional<std::string>> texts_;  // as given, none where left out
  std::vector<bool> named_;
  std::list<Value> variables_;
};

void set_property(DispatchObject& object, const std::vector<MemberDescription>& members,
                  const std::string& setting, const Options& options) {
  const auto equals = setting.find('=');
  if (equals == std::string::npos) {
    throw UsageError("--set " + setting + ": PROPERTY=VALUE is wanted");
  }
  const std::string name = setting.substr(0, equals);
  for (const MemberDescription& member : members) {
    if (member.kind != MemberKind::kLet || !same_letters(member.name, name)) continue;
    object.put(member.name,
               value_from_text(member.arguments.back().type, setting.substr(equals + 1),
                               "--set " + name, options.empty_as));
    return;
  }
  throw WorkError(options.class_name + " has no property '" + name + "' that can be set");
}

int run(const Options& options) {
  const MessageSink sink;
  const auto members = describe_members(options.class_name);
  const MemberDescription* member = find(members, options.member, options.arguments.size());
  if (member == nullptr) {
    throw WorkError(options.class_name + " has no member '" + options.member +
                    "' ('vqhost members " + options.class_name + "' lists them)");
  }
  CallArguments arguments(*member, options);
  std::vector<Argument> given = arguments.make();
  DispatchObject object = DispatchObject::create(options.class_name);
  for (const std::string& setting : options.settings) {
    set_property(object, members, setting, options);
  }
  bool ok = true;
  if (member->kind == MemberKind::kLet) {
    object.put(member->name, std::move(given.back().value));
  } else {
    const Value result = member->kind == MemberKind::kGet
                             ? object.get(member->name, std::move(given))
                             : object.call(member->name, std::move(given));
    if (!result.is_empty()) std::cout << value_text(result.get(), options.all) << '\n';
    ok = arguments.show();
  }
  if (!ok) throw WorkError(member->name + " did not succeed: qOK is False");
  if (sink.errors() > 0) throw WorkError(member->name + " reported an error");
  return kSuccess;
}

}  // namespace

void add_call(CommandLine& program) {
  const auto options = std::make_shared<Options>();
  program.add("call", "Create an object and call a member: call [OPTIONS] CLASS MEMBER ARG...")
      .argument("CLASS", options->class_name, "Class name or programmatic id")
      .argument("MEMBER", options->member, "Method or property, in any letter case")
      .rest(options->arguments)
      .repeatable("--set", "PROPERTY=VALUE", options->settings,
                  "Set a property before the call (repeatable)")
      .option("--empty-as", "VALUE", options->empty_as, "Value of missing cells of a CSV file")
      .flag("--all", options->all, "Print arrays whole")
      .notes(kNotes)
      .does([options] { return run(*options); });
}

}  // namespace vqmath63::host
