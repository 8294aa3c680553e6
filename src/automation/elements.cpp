#include "automation/elements.hpp"

#include "automation/host_object.hpp"

namespace vqmath63::automation {
namespace {

/// Stores a number by a type; S_FALSE for the types that are the system's to convert to.
HRESULT store_number(double number, VARTYPE type, void* to) noexcept {
  const auto put = [&](auto value) {
    const HRESULT stored = automation::store_number(number, value);
    if (SUCCEEDED(stored)) std::memcpy(to, &value, sizeof value);
    return stored;
  };
  switch (type) {
    case VT_R8:
      return put(double{});
    case VT_R4:
      return put(float{});
    case VT_I4:
      return put(std::int32_t{});
    case VT_BOOL:
      return put(VARIANT_BOOL{});
    case VT_BSTR:
    case VT_DATE:
    case VT_CY:
      return S_FALSE;
    default:
      return std::isfinite(number) ? S_FALSE : DISP_E_OVERFLOW;
  }
}

bool is_object(const VARIANT& value) {
  return (value.vt & ~VT_BYREF) == VT_DISPATCH;
}

bool is_null_reference(const VARIANT& value) {
  return (value.vt & VT_BYREF) != 0 && value.byref == nullptr;
}

Reference<IDispatch> object_in(const VARIANT& value) {
  if (is_null_reference(value)) return {};
  return Reference<IDispatch>::to((value.vt & VT_BYREF) != 0 ? *value.ppdispVal : value.pdispVal);
}

HRESULT change_object(const VARIANT& from, VARTYPE to, LCID locale, VARIANT& out) {
  auto held = object_in(from);
  constexpr int kMostObjects = 8;  // one whose value is itself has no end
  for (int i = 0; held && i < kMostObjects; ++i) {
    Variant value;
    const HRESULT read = default_value(held.get(), locale, value);
    if (FAILED(read)) return read;
    if (value.vt == VT_BSTR && to != VT_BSTR) {  // so does a date object tell its moment
      Variant moment;
      if (SUCCEEDED(moment_of(held.get(), moment))) return change_type(moment, to, locale, out);
    }
    if (!is_object(value)) return change_type(value, to, locale, out);
    held = object_in(value);
  }
  return DISP_E_TYPEMISMATCH;
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
    case VT_DISPATCH:
    case VT_UNKNOWN:
      return sizeof(void*);
    case VT_VARIANT:
      return sizeof(VARIANT);
    case VT_DECIMAL:
      return sizeof(DECIMAL);
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
    case VT_DECIMAL:
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
  // A decimal number takes the whole variant, its type in a field that such a number leaves free.
  void* const to = type == VT_DECIMAL ? static_cast<void*>(&out->decVal) : &out->llVal;
  std::memcpy(to, from, value_size(type));
  out->vt = type;
}

void store_value(const VARIANT& value, void* to) {
  DECIMAL decimal = value.decVal;
  decimal.wReserved = 0;
  const bool is_decimal = value.vt == VT_DECIMAL;
  std::memcpy(to, is_decimal ? static_cast<const void*>(&decimal) : &value.llVal,
              value_size(value.vt));
}

HRESULT change_type(const VARIANT& from, VARTYPE to, LCID locale, VARIANT& out) {
  if (is_object(from)) return change_object(from, to, locale, out);
  if (is_null_reference(from)) return DISP_E_TYPEMISMATCH;
  const bool behind = (from.vt & VT_BYREF) != 0;
  const auto type = static_cast<VARTYPE>(from.vt & ~VT_BYREF);
  double number = 0.0;
  if (read_number(type, behind ? from.byref : &from.llVal, number)) {
    VARIANT made{};
    const HRESULT stored = store_number(number, to, &made.llVal);
    if (FAILED(stored)) return stored;
    if (stored == S_OK) {
      made.vt = to;
      out = made;
      return S_OK;
    }
  }
  VARIANT made;
  VariantInit(&made);
  const HRESULT changed = VariantChangeTypeEx(&made, const_cast<VARIANT*>(&from), locale, 0, to);
  if (SUCCEEDED(changed)) out = made;
  return changed;
}

HRESULT convert_element(VARTYPE from_type, const void* from, VARTYPE to_type, void* to,
                        LCID locale) {
  VARIANT loaded;
  const VARIANT* source = &loaded;
  if (from_type == VT_VARIANT) {
    source = static_cast<const VARIANT*>(from);
    if (source->vt == (VT_BYREF | VT_VARIANT)) source = source->pvarVal;
    if (source == nullptr) return DISP_E_TYPEMISMATCH;
  } else {
    load_variant(from_type, from, &loaded);
  }
  VARIANT number{};
  const HRESULT result = change_type(*source, to_type, locale, number);
  if (SUCCEEDED(result)) std::memcpy(to, &number.llVal, value_size(to_type));
  return result;
}

HRESULT store_element(VARTYPE from_type, const void* from, VARTYPE to_type, void* to) {
  VARIANT value;
  load_variant(from_type, from, &value);
  if (to_type == VT_VARIANT) {
    auto* target = static_cast<VARIANT*>(to);
    if (target->vt == (VT_BYREF | VT_VARIANT)) target = target->pvarVal;
    if (target == nullptr) return DISP_E_TYPEMISMATCH;  // the host's element is another one by now
    Variant old;  // let go after the element has its number, for that may run code of the host
    static_cast<VARIANT&>(old) = *target;
    *target = value;
    return S_OK;
  }
  Variant converted;
  const HRESULT result = change_type(value, to_type, 0, converted);
  if (FAILED(result)) return result;
  if (to_type == VT_BSTR) {
    replace_text(*static_cast<BSTR*>(to), OwnedText(converted.release().bstrVal));
  } else {
    store_value(converted, to);
  }
  return S_OK;
}

}  // namespace vqmath63::automation
