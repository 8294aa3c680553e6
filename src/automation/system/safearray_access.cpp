// Bounds, locks and addresses of the elements of safe arrays.
#include <atomic>

#include "automation/system/types.hpp"

namespace {

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
