// Arrays and values that a script language keeps in objects of its own.
#pragma once

#include "automation/array_conversion.hpp"

namespace vqmath63::automation {

// A script's array is an object with `length`, elements "0" and up, and the methods `push` and
// `slice`. Element "i" is element i of an array whose lower bound is 0, so that samples stand from
// "1" on as in every array of the library. A two-dimensional array is an array of rows.

/// A new array of `element` from a script's array; a missing or shorter row reads as zeros.
/// `numbers`, empty unless it is null, receives the script's own. DISP_E_MEMBERNOTFOUND for an
/// object that is no such array. E_OUTOFMEMORY for more than 2^27 elements, and where over two
/// million more of them are missing than are there.
Conversion convert_script_array(IDispatch* source, VARTYPE element, int rank, LCID locale,
                                OwnedArray& out, HostNumbers* numbers);

/// Writes the results that are due into the script's array. They are those of a line, or of a table
/// of `rows` rows.
HRESULT write_back_to_script(const Results& results, int rank, std::size_t rows, IDispatch* target);

/// Makes the script's array hold what `array` holds (nothing, for a null array).
HRESULT refill_script_array(SAFEARRAY* array, IDispatch* target);

}  // namespace vqmath63::automation
