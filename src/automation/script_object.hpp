// Arrays and values that a script language keeps in objects of its own.
#pragma once

#include "automation/array_conversion.hpp"

namespace vqmath63::automation {

// A script's array is an object with `length`, elements "0" and up, and the methods `push` and
// `slice`. Element "i" is element i of an array whose lower bound is 0, so that samples stand from
// "1" on as in every array of the library. A two-dimensional array is an array of rows.

/// A new array of `element` from a script's array; a missing or shorter row reads as zeros.
Conversion convert_script_array(IDispatch* source, VARTYPE element, int rank, LCID locale,
                                SAFEARRAY** out);

/// Writes those elements of `changed` that differ from `original` into the script's array.
HRESULT write_back_to_script(SAFEARRAY* changed, SAFEARRAY* original, IDispatch* target);

/// Makes the script's array hold what `array` holds (nothing, for a null array).
HRESULT refill_script_array(SAFEARRAY* array, IDispatch* target);

/// A property by name: reading it (VariantClear the result), writing it.
HRESULT read_property(IDispatch* object, const OLECHAR* name, VARIANT* out);
HRESULT write_property(IDispatch* object, const OLECHAR* name, VARIANT* value);

}  // namespace vqmath63::automation
