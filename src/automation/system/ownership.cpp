// Clearing and copying, of variants and safe arrays at once: a variant holds arrays, an array holds
// variants.
#include "automation/system/ownership.hpp"

#include <atomic>

#include "automation/system/safearray_memory.hpp"
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

Kind kind_of(const SAFEARRAY& array) {
  if ((array.fFeatures & FADF_BSTR) != 0) return Kind::kText;
  if ((array.fFeatures & (FADF_UNKNOWN | FADF_DISPATCH)) != 0) return Kind::kInterface;
  if ((array.fFeatures & FADF_VARIANT) != 0) return Kind::kVariant;
  return Kind::kPlain;
}

void clear_element(Kind kind, void* element) {
  if (kind == Kind::kText) {
    auto* text = static_cast<BSTR*>(element);
    SysFreeString(*text);
    *text = nullptr;
  } else if (kind == Kind::kInterface) {
    auto* place = static_cast<IUnknown**>(element);
    IUnknown* old = *place;
    *place = nullptr;
    if (old != nullptr) old->Release();
  } else if (kind == Kind::kVariant) {
    VARIANT old = *static_cast<VARIANT*>(element);
    *static_cast<VARIANT*>(element) = VARIANT{};
    VariantClear(&old);
  }
}

HRESULT copy_element(Kind kind, const void* from, void* to, std::size_t size) {
  if (kind == Kind::kText) {
    return copy_text(*static_cast<const BSTR*>(from), *static_cast<BSTR*>(to)) ? S_OK
                                                                               : E_OUTOFMEMORY;
  }
  if (kind == Kind::kVariant) {
    VARIANT copy{};
    const HRESULT hr = VariantCopy(&copy, static_cast<const VARIANT*>(from));
    *static_cast<VARIANT*>(to) = copy;
    return hr;
  }
  if (kind == Kind::kInterface) {
    IUnknown* object = *static_cast<IUnknown* const*>(from);
    if (object != nullptr) object->AddRef();
  }
  std::memcpy(to, from, size);
  return S_OK;
}

void clear_elements(const SAFEARRAY& array, std::size_t first, std::size_t end) {
  const Kind kind = kind_of(array);
  if (kind == Kind::kPlain || array.pvData == nullptr) return;
  for (std::size_t i = first; i < end; ++i) {
    clear_element(kind, static_cast<char*>(array.pvData) + i * array.cbElements);
  }
}

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

using namespace vqmath63::automation::system;

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

HRESULT STDMETHODCALLTYPE SafeArrayDestroyData(SAFEARRAY* psa) {
  if (psa == nullptr) return E_INVALIDARG;
  // Locked while its elements go, so that no code run by them can take the memory away.
  {
    if (std::atomic_ref(psa->cLocks).load() != 0) return DISP_E_ARRAYISLOCKED;
    const Locked lock(psa);
    clear_elements(*psa, 0, elements_of(*psa));
  }
  if (psa->pvData == nullptr) return S_OK;
  if ((psa->fFeatures & kBorrowed) != 0) {
    std::memset(psa->pvData, 0, bytes_of(*psa));
  } else {
    std::free(psa->pvData);
    psa->pvData = nullptr;
  }
  return S_OK;
}

HRESULT STDMETHODCALLTYPE SafeArrayDestroy(SAFEARRAY* psa) {
  if (psa == nullptr) return S_OK;
  const HRESULT hr = SafeArrayDestroyData(psa);
  if (FAILED(hr)) return hr;
  if ((psa->fFeatures & kBorrowed) == 0) free_descriptor(psa);
  return S_OK;
}

HRESULT STDMETHODCALLTYPE SafeArrayCopy(SAFEARRAY* psa, SAFEARRAY** ppsaOut) {
  if (ppsaOut == nullptr) return E_INVALIDARG;
  *ppsaOut = nullptr;
  if (psa == nullptr) return S_OK;
  if (psa->cDims == 0 || psa->cDims > kMaxDims) return E_INVALIDARG;
  const Locked lock(psa);
  if (FAILED(lock.result())) return lock.result();

  SAFEARRAY* copy = allocate_descriptor(psa->cDims);
  if (copy == nullptr) return E_OUTOFMEMORY;
  copy->cbElements = psa->cbElements;
  copy->fFeatures = static_cast<USHORT>(psa->fFeatures & ~(FADF_FIXEDSIZE | kBorrowed));
  if ((copy->fFeatures & FADF_HAVEIID) != 0) {
    write_hidden(copy, reinterpret_cast<char*>(psa) - sizeof(GUID), sizeof(GUID));
  } else if ((copy->fFeatures & FADF_HAVEVARTYPE) != 0) {
    write_hidden(copy, reinterpret_cast<char*>(psa) - sizeof(DWORD), sizeof(DWORD));
  }
  std::memcpy(copy->rgsabound, psa->rgsabound, psa->cDims * sizeof(SAFEARRAYBOUND));
  if (psa->pvData == nullptr) {
    *ppsaOut = copy;
    return S_OK;
  }

  copy->pvData = allocate(bytes_of(*psa));
  HRESULT hr = copy->pvData != nullptr ? S_OK : E_OUTOFMEMORY;
  const Kind kind = kind_of(*psa);
  const std::size_t count = elements_of(*psa);
  if (SUCCEEDED(hr) && kind == Kind::kPlain) {
    std::memcpy(copy->pvData, psa->pvData, bytes_of(*psa));
  } else {
    for (std::size_t i = 0; i < count && SUCCEEDED(hr); ++i) {
      const std::size_t at = i * psa->cbElements;
      hr = copy_element(kind, static_cast<const char*>(psa->pvData) + at,
                        static_cast<char*>(copy->pvData) + at, psa->cbElements);
    }
  }
  if (FAILED(hr)) {
    SafeArrayDestroy(copy);
    return hr;
  }
  *ppsaOut = copy;
  return S_OK;
}
