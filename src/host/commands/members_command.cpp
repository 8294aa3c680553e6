// The command that lists the members of a class.
#include <iostream>
#include <memory>

#include "host/client/description.hpp"
#include "host/command_line.hpp"
#include "host/data/output.hpp"
#include "host/failure.hpp"

namespace vqmath63::host {
namespace {

struct Options {
  std::string class_name;
  Output output;
};

int run(const Options& options) {
  std::vector<Texts> rows;
  for (const MemberDescription& member : describe_members(options.class_name)) {
    rows.push_back({member.name, basic_declaration(member), member.help});
  }
  if (options.output.among_words()) {
    for (const Texts& row : rows) std::cout << row[1] << "\n    " << row[2] << '\n';
  } else {
    put_list(options.output, {"member", "declaration", "help"}, rows);
  }
  return kSuccess;
}

void declare(Command& command) {
  const auto options = std::make_shared<Options>();
  command.argument("CLASS", options->class_name, "Class name or programmatic id")
      .output(options->output)
      .notes("Example: vqhost members ztIntegrate")
      .does([options] { return run(*options); });
}

const RegisteredCommand kRegistered{
    "members", "List the members of a class, as Basic declares them", &declare};

}  // namespace
}  // namespace vqmath63::host
