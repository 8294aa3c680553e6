// Bounds, locks and single elements of safe arrays.
#include <atomic>

#include "automation/system/elements.hpp"
#include "automation/system/ownership.hpp"
#include "automation/system/types.hpp"

namespace vqmath63::automation::system {

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

}  // namespace vqmath63::automation::system

namespace {

using vqmath63::automation::system::clear_element;
using vqmath63::automation::system::copy_element;
using vqmath63::automation::system::Kind;
using vqmath63::automation::system::kind_of;
using vqmath63::automation::system::Locked;

constexpr ULONG kMaxLocks = 0xFFFF;

HRESULT find_element(SAFEARRAY* array, const LONG* indices, void** element) {
  if (array->pvData == nullptr) return E_UNEXPECTED;
  std::size_t cell = 0;
  std::size_t stride = 1;
  for (UINT i = 0; i < array->cDims; ++i) {
    const SAFEARRAYBOUND& bound = array->rgsabound[array->cDims - 1 - i];
    const std::int64_t offset = std::int64_t{indices[i]} - bound.lLbound;
    if (offset < 0 || offset >= bound.cElements) return DISP_E_BADINDEX;
    cell += static_cast<std::size_t>(offset) * stride;
    stride *= bound.cElements;
  }
  *element = static_cast<char*>(array->pvData) + cell * array->cbElements;
  return S_OK;
}

}  // namespace

UINT STDMETHODCALLTYPE SafeArrayGetDim(SAFEARRAY* psa) {
  return psa == nullptr ? 0 : psa->cDims;
}

UINT STDMETHODCALLTYPE SafeArrayGetElemsize(SAFEARRAY* psa) {
  return psa == nullptr ? 0 : psa->cbElements;
}

HRESULT STDMETHODCALLTYPE SafeArrayGetLBound(SAFEARRAY* psa, UINT nDim, LONG* plLbound) {
  if (psa == nullptr || plLbound == nullptr) return E_INVALIDARG;
  if (nDim == 0 || nDim > psa->cDims) return DISP_E_BADINDEX;
  *plLbound = psa->rgsabound[psa->cDims - nDim].lLbound;
  return S_OK;
}

HRESULT STDMETHODCALLTYPE SafeArrayGetUBound(SAFEARRAY* psa, UINT nDim, LONG* plUbound) {
  if (psa == nullptr || plUbound == nullptr) return E_INVALIDARG;
  if (nDim == 0 || nDim > psa->cDims) return DISP_E_BADINDEX;
  const SAFEARRAYBOUND& bound = psa->rgsabound[psa->cDims - nDim];
  *plUbound = static_cast<LONG>(std::int64_t{bound.lLbound} + bound.cElements - 1);
  return S_OK;
}

HRESULT STDMETHODCALLTYPE SafeArrayLock(SAFEARRAY* psa) {
  if (psa == nullptr) return E_INVALIDARG;
  std::atomic_ref locks(psa->cLocks);
  ULONG seen = locks.load();
  do {
    if (seen >= kMaxLocks) return E_UNEXPECTED;
  } while (!locks.compare_exchange_weak(seen, seen + 1));
  return S_OK;
}

HRESULT STDMETHODCALLTYPE SafeArrayUnlock(SAFEARRAY* psa) {
  if (psa == nullptr) return E_INVALIDARG;
  std::atomic_ref locks(psa->cLocks);
  ULONG seen = locks.load();
  do {
    if (seen == 0) return E_UNEXPECTED;
  } while (!locks.compare_exchange_weak(seen, seen - 1));
  return S_OK;
}

HRESULT STDMETHODCALLTYPE SafeArrayAccessData(SAFEARRAY* psa, void** ppvData) {
  if (psa == nullptr || ppvData == nullptr) return E_INVALIDARG;
  const HRESULT hr = SafeArrayLock(psa);
  *ppvData = SUCCEEDED(hr) ? psa->pvData : nullptr;
  return hr;
}

HRESULT STDMETHODCALLTYPE SafeArrayUnaccessData(SAFEARRAY* psa) {
  return SafeArrayUnlock(psa);
}

HRESULT STDMETHODCALLTYPE SafeArrayPtrOfIndex(SAFEARRAY* psa, LONG* rgIndices, void** ppvData) {
  if (psa == nullptr || rgIndices == nullptr || ppvData == nullptr) return E_INVALIDARG;
  return find_element(psa, rgIndices, ppvData);
}

HRESULT STDMETHODCALLTYPE SafeArrayGetElement(SAFEARRAY* psa, LONG* rgIndices, void* pv) {
  if (psa == nullptr || rgIndices == nullptr || pv == nullptr) return E_INVALIDARG;
  const Locked lock(psa);
  if (FAILED(lock.result())) return lock.result();
  void* element = nullptr;
  const HRESULT hr = find_element(psa, rgIndices, &element);
  return FAILED(hr) ? hr : copy_element(kind_of(*psa), element, pv, psa->cbElements);
}

HRESULT STDMETHODCALLTYPE SafeArrayPutElement(SAFEARRAY* psa, LONG* rgIndices, void* pv) {
  if (psa == nullptr || rgIndices == nullptr) return E_INVALIDARG;
  const Locked lock(psa);
  if (FAILED(lock.result())) return lock.result();
  void* element = nullptr;
  HRESULT hr = find_element(psa, rgIndices, &element);
  if (FAILED(hr)) return hr;

  const Kind kind = kind_of(*psa);
  if (kind == Kind::kPlain) {
    if (pv == nullptr) return E_INVALIDARG;
    std::memcpy(element, pv, psa->cbElements);
    return S_OK;
  }
  if (kind == Kind::kVariant) {
    if (pv == nullptr) return E_INVALIDARG;
    return VariantCopy(static_cast<VARIANT*>(element), static_cast<const VARIANT*>(pv));
  }
  // Text and interfaces are handed over themselves; the copy comes before the old one goes, for the
  // two may be the same.
  void* copy = nullptr;
  hr = copy_element(kind, &pv, &copy, sizeof copy);
  if (FAILED(hr)) return hr;
  void* old;
  std::memcpy(&old, element, sizeof old);
  std::memcpy(element, &copy, sizeof copy);
  clear_element(kind, &old);
  return S_OK;
}
