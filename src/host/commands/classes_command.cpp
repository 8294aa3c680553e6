// The command that lists the classes of the component.
#include <memory>

#include "host/client/description.hpp"
#include "host/command_line.hpp"
#include "host/data/output.hpp"
#include "host/failure.hpp"

namespace vqmath63::host {
namespace {

int run(const Output& output) {
  std::vector<Texts> rows;
  for (const ClassDescription& each : describe_classes()) rows.push_back({each.name, each.help});
  put_list(output, {"class", "help"}, rows);
  return kSuccess;
}

void declare(Command& command) {
  const auto output = std::make_shared<Output>();
  command.output(*output).notes("Example: vqhost classes").does([output] { return run(*output); });
}

const RegisteredCommand kRegistered{"classes", "List the classes of the component", &declare};

}  // namespace
}  // namespace vqmath63::host
