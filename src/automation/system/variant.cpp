// Empty variants, and copies of what a variant refers to.
#include "automation/system/ownership.hpp"
#include "automation/system/types.hpp"

namespace {

using vqmath63::automation::system::copy_value;
using vqmath63::automation::system::is_variant_type;
using vqmath63::automation::system::replace_variant;
using vqmath63::automation::system::size_of_type;

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
