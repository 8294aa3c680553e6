// Calls to objects of the host. Every one runs the host's own code, in the host's surroundings.
#pragma once

#include <span>

#include "automation/owners.hpp"

namespace vqmath63::automation {

/// A property by name: reading it into an empty variant, writing it.
HRESULT read_property(IDispatch* object, const OLECHAR* name, Variant& out);
HRESULT write_property(IDispatch* object, const OLECHAR* name, VARIANT& value);

/// Calls a method; `arguments` stand last first.
HRESULT call_method(IDispatch* object, const OLECHAR* name, std::span<VARIANT> arguments,
                    VARIANT* result);

/// The value that an object stands for where a number or a text is wanted.
HRESULT default_value(IDispatch* object, LCID locale, Variant& out);
HRESULT set_default_value(IDispatch* object, VARIANT& value);

/// The moment that a date object of a script stands for, as an automation date where it tells one,
/// else as the number of it.
HRESULT moment_of(IDispatch* object, Variant& out);

}  // namespace vqmath63::automation
