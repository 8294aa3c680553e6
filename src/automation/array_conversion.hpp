// Element-by-element conversion between a host's arrays and arrays of a member's own type.
#pragma once

#include <memory>
#include <string>

#include "automation/types.hpp"

namespace vqmath63::automation {

struct DestroyArray {
  void operator()(SAFEARRAY* array) const noexcept { SafeArrayDestroy(array); }
};
/// An array of our own, until it is handed over.
using OwnedArray = std::unique_ptr<SAFEARRAY, DestroyArray>;

/// Outcome of a conversion: a result code, and for a failure the words on what was wrong.
struct Conversion {
  HRESULT result = S_OK;
  std::string detail;
};

/// A new array of `element` with the dimensions of `source`, an array of variants or numbers.
/// Fails with DISP_E_TYPEMISMATCH or DISP_E_OVERFLOW and the index of the first bad element.
Conversion convert_array(SAFEARRAY* source, VARTYPE element, LCID locale, SAFEARRAY** out);

/// A new array with the dimensions and numbers of `source` and elements of `element`, which may be
/// VT_VARIANT.
HRESULT recast_array(SAFEARRAY* source, VARTYPE element, SAFEARRAY** out);

/// Writes those elements of `changed` that differ from `original` into `target`, an array of the
/// same dimensions whose elements may be variants or numbers.
HRESULT write_back_changes(SAFEARRAY* changed, SAFEARRAY* original, SAFEARRAY* target);

/// True when both arrays have the same dimensions and bounds.
bool same_bounds(SAFEARRAY* a, SAFEARRAY* b);

}  // namespace vqmath63::automation
