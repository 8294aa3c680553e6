// The command that lists the members of a class.
#include <iostream>
#include <memory>

#include "host/client/description.hpp"
#include "host/command_line.hpp"
#include "host/failure.hpp"

namespace vqmath63::host {
namespace {

int run(const std::string& class_name) {
  for (const MemberDescription& member : describe_members(class_name)) {
    std::cout << basic_declaration(member) << "\n    " << member.help << '\n';
  }
  return kSuccess;
}

void declare(Command& command) {
  const auto name = std::make_shared<std::string>();
  command.argument("CLASS", *name, "Class name or programmatic id")
      .notes("Example: vqhost members ztIntegrate")
      .does([name] { return run(*name); });
}

const RegisteredCommand kRegistered{
    "members", "List the members of a class, as Basic declares them", &declare};

}  // namespace
}  // namespace vqmath63::host
