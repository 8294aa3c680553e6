// A component in WebAssembly is bytes that a program has loaded from anywhere: it has no file.
#include "component/component_file.hpp"

namespace vqmath63::component {

ComponentFile component_file() {
  return {std::string(kFileBaseName) + ".wasm", ""};
}

}  // namespace vqmath63::component
