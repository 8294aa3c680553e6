#include "info/identity.hpp"

#include <atomic>

namespace vqmath63 {
namespace {

ComponentFile no_component() {
  return {kFileBaseName, ""};
}

// Of the process, as the file is.
std::atomic<ComponentFile (*)()> component_file{no_component};

}  // namespace

std::string product_and_version() {
  return std::string(kProductName) + " v" + std::to_string(kMajorVersion) + "." +
         std::to_string(kMinorVersion) + "." + std::to_string(kRevision);
}

void set_component_file(ComponentFile (*tell)()) noexcept {
  component_file = tell != nullptr ? tell : no_component;
}

std::string version_text() {
  const ComponentFile file = component_file.load()();
  return product_and_version() + " " +
         (file.date.empty() ? "(" + file.path + ":Unknown Date)" : file.date);
}

}  // namespace vqmath63
