// Single values of variants and safe arrays: sizes, conversion, storing.
#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "automation/types.hpp"
#include "elementary/whole.hpp"

namespace vqmath63::automation {

/// Size in bytes of a value of a type that convertible_element knows.
std::size_t value_size(VARTYPE type);

/// Number of elements of an array in all its dimensions.
std::size_t element_count(SAFEARRAY* array);

/// True for the element types that convert_element reads: numbers, Booleans, dates, strings and
/// variants.
bool convertible_element(VARTYPE type);

/// The value at `at`, whose bytes need not be aligned.
template <class T>
T value_at(const void* at) noexcept {
  T value;
  std::memcpy(&value, at, sizeof value);
  return value;
}

/// The number of a value whose type is one of the common numeric ones; false for any other type.
inline bool read_number(VARTYPE type, const void* from, double& number) noexcept {
  switch (type) {
    case VT_R8:
    case VT_DATE:
      number = value_at<double>(from);
      return true;
    case VT_R4:
      number = static_cast<double>(value_at<float>(from));
      return true;
    case VT_I4:
      number = value_at<std::int32_t>(from);
      return true;
    case VT_I2:
      number = value_at<std::int16_t>(from);
      return true;
    case VT_BOOL:
      number = value_at<VARIANT_BOOL>(from) != VARIANT_FALSE ? -1.0 : 0.0;
      return true;
    case VT_EMPTY:
      number = 0.0;
      return true;
    default:
      return false;
  }
}

/// Stores a number into a place of its type: DISP_E_OVERFLOW where it does not fit (a NaN fits no
/// whole number), rounded to nearest, halves to even. An infinity stays one.
inline HRESULT store_number(double number, double& to) noexcept {
  to = number;
  return S_OK;
}
inline HRESULT store_number(double number, float& to) noexcept {
  to = static_cast<float>(number);
  return std::isinf(to) && !std::isinf(number) ? DISP_E_OVERFLOW : S_OK;
}
inline HRESULT store_number(double number, std::int32_t& to) noexcept {
  const double whole = elementary::nearest_whole(number);
  if (!(whole >= -2147483648.0 && whole <= 2147483647.0)) return DISP_E_OVERFLOW;
  to = static_cast<std::int32_t>(whole);
  return S_OK;
}
inline HRESULT store_number(double number, VARIANT_BOOL& to) noexcept {
  to = number != 0.0 ? VARIANT_TRUE : VARIANT_FALSE;
  return S_OK;
}

/// Converts a variant as the system does, except that a real number which no Long holds, or any
/// whole type if it is no finite one, overflows on every system. The result owns its text.
HRESULT change_type(const VARIANT& from, VARTYPE to, LCID locale, VARIANT& out);

/// Converts one element at `from` into the number at `to` (VT_R4, VT_R8, VT_I4 or VT_BOOL).
HRESULT convert_element(VARTYPE from_type, const void* from, VARTYPE to_type, void* to,
                        LCID locale);

/// Stores the number at `from` into an element of a host's array, which may be a variant.
HRESULT store_element(VARTYPE from_type, const void* from, VARTYPE to_type, void* to);

/// A scalar of one of the boundary's types into a variant of that type (strings are not copied).
void load_variant(VARTYPE type, const void* from, VARIANT* out);

/// The value of a variant that is a number, into a place of its type.
void store_value(const VARIANT& value, void* to);

}  // namespace vqmath63::automation
