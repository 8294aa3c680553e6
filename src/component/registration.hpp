// Entries of the component in the system's registry, where there is one.
#pragma once

#include "automation/types.hpp"

namespace vqmath63::component {

/// Whose registry: everybody's on the machine (HKEY_CLASSES_ROOT), or the current user's own.
enum class Scope { kMachine, kUser };

/// Writes class, programmatic id and type-library entries, or removes them. Removing what is not
/// there is no failure. Where there is no registry: E_NOTIMPL, with error info that says so.
HRESULT register_component(Scope scope) noexcept;
HRESULT unregister_component(Scope scope) noexcept;

/// DllInstall: `words` is null or "user"; E_INVALIDARG for anything else.
HRESULT install_component(bool install, LPCOLESTR words) noexcept;

}  // namespace vqmath63::component
