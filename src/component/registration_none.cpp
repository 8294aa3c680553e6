// Registration on systems without a registry.
#include "automation/failure.hpp"
#include "component/registration.hpp"

namespace vqmath63::component {
namespace {

HRESULT not_here() noexcept {
  return automation::set_failure(
      nullptr, E_NOTIMPL,
      "This system has no registry: load the shared library and ask it for a class by its "
      "programmatic id (CLSIDFromProgID, DllGetClassObject)");
}

}  // namespace

HRESULT register_component(Scope) noexcept {
  return not_here();
}
HRESULT unregister_component(Scope) noexcept {
  return not_here();
}

}  // namespace vqmath63::component
