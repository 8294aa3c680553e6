// Life of variants: making, clearing and copying them.
#include "automation/system/ownership.hpp"
#include "automation/system/types.hpp"

namespace vqmath63::automation::system {

ULONG size_of_type(VARTYPE vt) {
  switch (vt) {
    case VT_I1:
    case VT_UI1:
      return 1;
    case VT_I2:
    case VT_UI2:
    case VT_BOOL:
      return 2;
    case VT_I4:
    case VT_UI4:
    case VT_INT:
    case VT_UINT:
    case VT_R4:
    case VT_ERROR:
      return 4;
    case VT_I8:
    case VT_UI8:
    case VT_R8:
    case VT_CY:
    case VT_DATE:
      return 8;
    case VT_BSTR:
    case VT_DISPATCH:
    case VT_UNKNOWN:
      return static_cast<ULONG>(sizeof(void*));
    case VT_VARIANT:
      return static_cast<ULONG>(sizeof(VARIANT));
    case VT_DECIMAL:
      return static_cast<ULONG>(sizeof(DECIMAL));
    default:
      return 0;
  }
}

bool is_variant_type(VARTYPE vt) {
  if ((vt & (VT_VECTOR | VT_RESERVED)) != 0) return false;
  const auto base = static_cast<VARTYPE>(vt & VT_TYPEMASK);
  if ((vt & (VT_ARRAY | VT_BYREF)) != 0) return size_of_type(base) != 0;
  return base == VT_EMPTY || base == VT_NULL || (base != VT_VARIANT && size_of_type(base) != 0);
}

HRESULT replace_variant(VARIANT& destination, VARIANT& made) {
  const HRESULT hr = VariantClear(&destination);
  if (FAILED(hr)) {
    VariantClear(&made);
    return hr;
  }
  destination = made;
  return S_OK;
}

}  // namespace vqmath63::automation::system

namespace {

using vqmath63::automation::system::copy_text;
using vqmath63::automation::system::is_variant_type;
using vqmath63::automation::system::replace_variant;
using vqmath63::automation::system::size_of_type;

/// Copies a value that is no reference into a variant that holds nothing.
HRESULT copy_value(const VARIANT& source, VARIANT& copy) {
  VARIANT made = source;
  if ((source.vt & VT_ARRAY) != 0) {
    const HRESULT hr = SafeArrayCopy(source.parray, &made.parray);
    if (FAILED(hr)) return hr;
  } else if (source.vt == VT_BSTR) {
    if (!copy_text(source.bstrVal, made.bstrVal)) return E_OUTOFMEMORY;
  } else if (source.vt == VT_DISPATCH || source.vt == VT_UNKNOWN) {
    // IDispatch is an IUnknown, and both stand in the same place.
    if (source.punkVal != nullptr) source.punkVal->AddRef();
  }
  copy = made;
  return S_OK;
}

/// The value behind a plain reference, still owned by its holder.
VARIANT value_behind(const VARIANT& reference) {
  VARIANT value{};
  const auto base = static_cast<VARTYPE>(reference.vt & ~VT_BYREF);
  if (base == VT_DECIMAL) {
    value.decVal = *reference.pdecVal;
  } else {
    const std::size_t size = (base & VT_ARRAY) != 0 ? sizeof(SAFEARRAY*) : size_of_type(base);
    std::memcpy(&value.llVal, reference.byref, size);
  }
  value.vt = base;
  return value;
}

}  // namespace

void STDMETHODCALLTYPE VariantInit(VARIANTARG* pvarg) {
  if (pvarg != nullptr) *pvarg = VARIANT{};
}

HRESULT STDMETHODCALLTYPE VariantClear(VARIANTARG* pvarg) {
  if (pvarg == nullptr) return E_INVALIDARG;
  const VARIANT old = *pvarg;
  if (!is_variant_type(old.vt)) return DISP_E_BADVARTYPE;
  if ((old.vt & VT_BYREF) == 0) {
    if ((old.vt & VT_ARRAY) != 0) {
      const HRESULT hr = SafeArrayDestroy(old.parray);
      if (FAILED(hr)) return hr;
    } else if (old.vt == VT_BSTR) {
      SysFreeString(old.bstrVal);
    } else if ((old.vt == VT_DISPATCH || old.vt == VT_UNKNOWN) && old.punkVal != nullptr) {
      pvarg->vt = VT_EMPTY;  // before Release, which may run code that looks here
      old.punkVal->Release();
      return S_OK;
    }
  }
  pvarg->vt = VT_EMPTY;
  return S_OK;
}

HRESULT STDMETHODCALLTYPE VariantCopy(VARIANTARG* pvargDest, const VARIANTARG* pvargSrc) {
  if (pvargDest == nullptr || pvargSrc == nullptr) return E_INVALIDARG;
  if (!is_variant_type(pvargSrc->vt)) return DISP_E_BADVARTYPE;
  if (pvargDest == pvargSrc) return S_OK;
  VARIANT made = *pvargSrc;
  if ((pvargSrc->vt & VT_BYREF) == 0) {
    const HRESULT hr = copy_value(*pvargSrc, made);
    if (FAILED(hr)) return hr;
  }
  return replace_variant(*pvargDest, made);
}

HRESULT STDMETHODCALLTYPE VariantCopyInd(VARIANT* pvarDest, const VARIANTARG* pvargSrc) {
  if (pvarDest == nullptr || pvargSrc == nullptr) return E_INVALIDARG;
  if (!is_variant_type(pvargSrc->vt)) return DISP_E_BADVARTYPE;
  if ((pvargSrc->vt & VT_BYREF) == 0) return VariantCopy(pvarDest, pvargSrc);
  if (pvargSrc->byref == nullptr) return E_INVALIDARG;

  VARIANT value;
  if (pvargSrc->vt == (VT_BYREF | VT_VARIANT)) {
    value = *pvargSrc->pvarVal;
    // A variant behind a reference may be a reference once more, but not to yet another variant.
    if (value.vt == (VT_BYREF | VT_VARIANT)) return E_INVALIDARG;
    if (!is_variant_type(value.vt)) return DISP_E_BADVARTYPE;
    if ((value.vt & VT_BYREF) != 0) {
      if (value.byref == nullptr) return E_INVALIDARG;
      value = value_behind(value);
    }
  } else {
    value = value_behind(*pvargSrc);
  }
  VARIANT made{};
  const HRESULT hr = copy_value(value, made);
  return FAILED(hr) ? hr : replace_variant(*pvarDest, made);
}
