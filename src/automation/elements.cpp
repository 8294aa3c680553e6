#include "automation/elements.hpp"

#include <cstdint>
#include <cstring>

namespace vqmath63::automation {
namespace {

// The common cases of numbers, without a detour through variants.
template <class From>
bool convert_directly(const void* from, VARTYPE to_type, void* to) {
  From value;
  std::memcpy(&value, from, sizeof value);
  if (to_type == VT_R8) {
    const auto number = static_cast<double>(value);
    std::memcpy(to, &number, sizeof number);
    return true;
  }
  if (to_type != VT_R4) return false;
  const auto number = static_cast<float>(value);
  // A finite Double that a Single cannot hold is for the system's conversion to refuse.
  if constexpr (sizeof(From) == 8) {
    const auto is_finite = [](auto x) { return x - x == 0; };
    if (is_finite(value) && !is_finite(number)) return false;
  }
  std::memcpy(to, &number, sizeof number);
  return true;
}

bool convert_quickly(VARTYPE from_type, const void* from, VARTYPE to_type, void* to) {
  switch (from_type) {
    case VT_R8:
      return convert_directly<double>(from, to_type, to);
    case VT_R4:
      return convert_directly<float>(from, to_type, to);
    case VT_I4:
      return convert_directly<std::int32_t>(from, to_type, to);
    case VT_I2:
      return convert_directly<std::int16_t>(from, to_type, to);
    default:
      return false;
  }
}

}  // namespace

std::size_t value_size(VARTYPE type) {
  switch (type) {
    case VT_I1:
    case VT_UI1:
      return 1;
    case VT_I2:
    case VT_UI2:
    case VT_BOOL:
      return 2;
    case VT_R8:
    case VT_DATE:
    case VT_CY:
    case VT_I8:
    case VT_UI8:
      return 8;
    case VT_BSTR:
      return sizeof(BSTR);
    case VT_VARIANT:
      return sizeof(VARIANT);
    default:
      return 4;
  }
}

std::size_t element_count(SAFEARRAY* array) {
  std::size_t count = 1;
  for (USHORT d = 0; d < array->cDims; ++d) count *= array->rgsabound[d].cElements;
  return count;
}

bool convertible_element(VARTYPE type) {
  switch (type) {
    case VT_VARIANT:
    case VT_BSTR:
    case VT_BOOL:
    case VT_DATE:
    case VT_CY:
    case VT_R4:
    case VT_R8:
    case VT_I1:
    case VT_I2:
    case VT_I4:
    case VT_I8:
    case VT_INT:
    case VT_UI1:
    case VT_UI2:
    case VT_UI4:
    case VT_UI8:
    case VT_UINT:
      return true;
    default:
      return false;
  }
}

void load_variant(VARTYPE type, const void* from, VARIANT* out) {
  VariantInit(out);
  out->vt = type;
  std::memcpy(&out->llVal, from, value_size(type));
}

HRESULT convert_element(VARTYPE from_type, const void* from, VARTYPE to_type, void* to,
                        LCID locale) {
  VARIANT loaded;
  const VARIANT* source = &loaded;
  if (from_type == VT_VARIANT) {
    source = static_cast<const VARIANT*>(from);
    if (source->vt == (VT_BYREF | VT_VARIANT)) source = source->pvarVal;
    if (source == nullptr) return DISP_E_TYPEMISMATCH;
    if (convert_quickly(source->vt, &source->llVal, to_type, to)) return S_OK;
  } else {
    if (convert_quickly(from_type, from, to_type, to)) return S_OK;
    load_variant(from_type, from, &loaded);
  }
  VARIANT number;
  VariantInit(&number);
  const HRESULT result =
      VariantChangeTypeEx(&number, const_cast<VARIANT*>(source), locale, 0, to_type);
  if (SUCCEEDED(result)) std::memcpy(to, &number.llVal, value_size(to_type));
  return result;
}

HRESULT store_element(VARTYPE from_type, const void* from, VARTYPE to_type, void* to) {
  VARIANT value;
  load_variant(from_type, from, &value);
  if (to_type == VT_VARIANT) {
    auto* target = static_cast<VARIANT*>(to);
    if (target->vt == (VT_BYREF | VT_VARIANT)) target = target->pvarVal;
    const HRESULT cleared = VariantClear(target);
    if (SUCCEEDED(cleared)) *target = value;
    return cleared;
  }
  VARIANT converted;
  VariantInit(&converted);
  const HRESULT result = VariantChangeTypeEx(&converted, &value, 0, 0, to_type);
  if (FAILED(result)) return result;
  if (to_type == VT_BSTR) SysFreeString(*static_cast<BSTR*>(to));
  std::memcpy(to, &converted.llVal, value_size(to_type));
  return S_OK;
}

}  // namespace vqmath63::automation
