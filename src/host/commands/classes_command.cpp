// The command that lists the classes of the component.
#include "host/client/description.hpp"
#include "host/command_line.hpp"
#include "host/data/output.hpp"
#include "host/failure.hpp"

namespace vqmath63::host {
namespace {

int run() {
  std::vector<Texts> rows;
  for (const ClassDescription& each : describe_classes()) rows.push_back({each.name, each.help});
  print_list(rows);
  return kSuccess;
}

void declare(Command& command) {
  command.notes("Example: vqhost classes").does(&run);
}

const RegisteredCommand kRegistered{"classes", "List the classes of the component", &declare};

}  // namespace
}  // namespace vqmath63::host
