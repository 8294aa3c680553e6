#include "component/registration.hpp"

#include "automation/text.hpp"

namespace vqmath63::component {

HRESULT install_component(bool install, LPCOLESTR words) noexcept {
  Scope scope = Scope::kMachine;
  if (words != nullptr && words[0] != 0) {
    if (!automation::same_name(words, "user")) return E_INVALIDARG;
    scope = Scope::kUser;
  }
  return install ? register_component(scope) : unregister_component(scope);
}

}  // namespace vqmath63::component
