// The command that lists the classes of the component.
#include <algorithm>
#include <iostream>

#include "host/client/description.hpp"
#include "host/command_line.hpp"
#include "host/failure.hpp"
#include "host/text.hpp"

namespace vqmath63::host {
namespace {

int run() {
  const auto classes = describe_classes();
  std::size_t width = 0;
  for (const auto& each : classes) width = std::max(width, each.name.size());
  for (const auto& each : classes) {
    std::cout << left_aligned(each.name, width + 2) << each.help << '\n';
  }
  return kSuccess;
}

void declare(Command& command) {
  command.notes("Example: vqhost classes").does(&run);
}

const RegisteredCommand kRegistered{"classes", "List the classes of the component", &declare};

}  // namespace
}  // namespace vqmath63::host
