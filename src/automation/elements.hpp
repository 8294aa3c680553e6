// Single values of safe arrays: sizes, conversion, storing.
#pragma once

#include <cstddef>

#include "automation/types.hpp"

namespace vqmath63::automation {

/// Size in bytes of a value of a type that convertible_element knows.
std::size_t value_size(VARTYPE type);

/// Number of elements of an array in all its dimensions.
std::size_t element_count(SAFEARRAY* array);

/// True for the element types that convert_element reads: numbers, Booleans, dates, strings and
/// variants.
bool convertible_element(VARTYPE type);

/// Converts one element at `from` into the number at `to` (VT_R4, VT_R8, VT_I4 or VT_BOOL).
HRESULT convert_element(VARTYPE from_type, const void* from, VARTYPE to_type, void* to,
                        LCID locale);

/// Stores the number at `from` into an element of a host's array, which may be a variant.
HRESULT store_element(VARTYPE from_type, const void* from, VARTYPE to_type, void* to);

/// A scalar of one of the boundary's types into a variant of that type (strings are not copied).
void load_variant(VARTYPE type, const void* from, VARIANT* out);

}  // namespace vqmath63::automation
