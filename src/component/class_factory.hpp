// The class factory that hosts create instances with.
#pragma once

#include "automation/class_info.hpp"

namespace vqmath63::component {

/// A factory for the class, as interface `iid` (IUnknown or IClassFactory).
HRESULT create_factory(const automation::ClassInfo& info, REFIID iid, void** out) noexcept;

}  // namespace vqmath63::component
