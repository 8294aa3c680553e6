// What values own and how it is copied, shared by variants and safe arrays.
#pragma once

#include "automation/system/functions.hpp"
#include "automation/system/interfaces.hpp"

namespace vqmath63::automation::system {

/// Copies a text byte by byte, null to null. False when memory is short.
inline bool copy_text(BSTR source, BSTR& copy) {
  copy = source == nullptr ? nullptr
                           : SysAllocStringByteLen(reinterpret_cast<const char*>(source),
                                                   SysStringByteLen(source));
  return source == nullptr || copy != nullptr;
}

/// The size in bytes of an element or a referenced value of the type; 0 where there is none.
ULONG size_of_type(VARTYPE vt);

/// Whether a variant may bear the type: a known one, alone, as an array or by reference.
bool is_variant_type(VARTYPE vt);

/// Moves `made` into `destination`; where that cannot be cleared, `made` is given up.
HRESULT replace_variant(VARIANT& destination, VARIANT& made);

}  // namespace vqmath63::automation::system
