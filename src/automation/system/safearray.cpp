// Making and resizing safe arrays, reading and writing their elements.
#include <atomic>

#include "automation/system/ownership.hpp"
#include "automation/system/safearray_memory.hpp"
#include "automation/system/types.hpp"

using namespace vqmath63::automation::system;

namespace {

void set_type(SAFEARRAY* array, VARTYPE vt) {
  array->cbElements = size_of_type(vt);
  if (vt == VT_UNKNOWN || vt == VT_DISPATCH) {
    array->fFeatures = FADF_HAVEIID;
    array->fFeatures |= vt == VT_UNKNOWN ? FADF_UNKNOWN : FADF_DISPATCH;
    write_hidden(array, vt == VT_UNKNOWN ? &IID_IUnknown : &IID_IDispatch, sizeof(GUID));
    return;
  }
  array->fFeatures = FADF_HAVEVARTYPE;
  if (vt == VT_BSTR) array->fFeatures |= FADF_BSTR;
  if (vt == VT_VARIANT) array->fFeatures |= FADF_VARIANT;
  const DWORD type = vt;
  write_hidden(array, &type, sizeof type);
}

}  // namespace

SAFEARRAY* STDMETHODCALLTYPE SafeArrayCreate(VARTYPE vt, UINT cDims, SAFEARRAYBOUND* rgsabound) {
  if (size_of_type(vt) == 0 || cDims == 0 || cDims > kMaxDims || rgsabound == nullptr) {
    return nullptr;
  }
  for (UINT i = 0; i < cDims; ++i) {
    if (!is_valid(rgsabound[i])) return nullptr;
  }
  const auto bytes = bytes_of(rgsabound, cDims, size_of_type(vt));
  if (!bytes) return nullptr;
  SAFEARRAY* array = allocate_descriptor(cDims);
  if (array == nullptr) return nullptr;
  set_type(array, vt);
  for (UINT i = 0; i < cDims; ++i) array->rgsabound[cDims - 1 - i] = rgsabound[i];
  array->pvData = allocate(*bytes);
  if (array->pvData == nullptr) {
    free_descriptor(array);
    return nullptr;
  }
  return array;
}

SAFEARRAY* STDMETHODCALLTYPE SafeArrayCreateVector(VARTYPE vt, LONG lLbound, ULONG cElements) {
  SAFEARRAYBOUND bound{cElements, lLbound};
  return SafeArrayCreate(vt, 1, &bound);
}

HRESULT STDMETHODCALLTYPE SafeArrayRedim(SAFEARRAY* psa, SAFEARRAYBOUND* psaboundNew) {
  if (psa == nullptr || psaboundNew == nullptr || psa->cDims == 0) return E_INVALIDARG;
  if ((psa->fFeatures & (FADF_FIXEDSIZE | kBorrowed)) != 0) return DISP_E_ARRAYISLOCKED;
  if (std::atomic_ref(psa->cLocks).load() != 0) return DISP_E_ARRAYISLOCKED;
  const SAFEARRAYBOUND next = *psaboundNew;
  if (!is_valid(next)) return E_INVALIDARG;

  const SAFEARRAYBOUND old = psa->rgsabound[0];
  const std::size_t old_bytes = psa->pvData == nullptr ? 0 : bytes_of(*psa);
  psa->rgsabound[0] = next;
  const auto new_bytes = bytes_of(psa->rgsabound, psa->cDims, psa->cbElements);
  psa->rgsabound[0] = old;
  if (!new_bytes) return E_OUTOFMEMORY;

  // The last dimension moves slowest: what stays is one stretch at the front of the memory.
  if (*new_bytes > old_bytes || psa->pvData == nullptr) {
    void* grown = std::realloc(psa->pvData, *new_bytes == 0 ? 1 : *new_bytes);
    if (grown == nullptr) return E_OUTOFMEMORY;
    std::memset(static_cast<char*>(grown) + old_bytes, 0, *new_bytes - old_bytes);
    psa->pvData = grown;
  } else if (*new_bytes < old_bytes) {
    {
      const Locked lock(psa);
      clear_elements(*psa, *new_bytes / psa->cbElements, old_bytes / psa->cbElements);
    }
    void* shrunk = std::realloc(psa->pvData, *new_bytes == 0 ? 1 : *new_bytes);
    if (shrunk != nullptr) psa->pvData = shrunk;  // else the longer block serves as well
  }
  psa->rgsabound[0] = next;
  return S_OK;
}

HRESULT STDMETHODCALLTYPE SafeArrayGetVartype(SAFEARRAY* psa, VARTYPE* pvt) {
  if (psa == nullptr || pvt == nullptr) return E_INVALIDARG;
  const USHORT features = psa->fFeatures;
  if ((features & FADF_DISPATCH) != 0) {
    *pvt = VT_DISPATCH;
  } else if ((features & FADF_UNKNOWN) != 0) {
    *pvt = VT_UNKNOWN;
  } else if ((features & FADF_HAVEVARTYPE) != 0) {
    DWORD type;
    std::memcpy(&type, reinterpret_cast<const char*>(psa) - sizeof type, sizeof type);
    *pvt = static_cast<VARTYPE>(type);
  } else if ((features & FADF_BSTR) != 0) {
    *pvt = VT_BSTR;
  } else if ((features & FADF_VARIANT) != 0) {
    *pvt = VT_VARIANT;
  } else {
    return E_INVALIDARG;
  }
  return S_OK;
}

HRESULT STDMETHODCALLTYPE SafeArrayGetElement(SAFEARRAY* psa, LONG* rgIndices, void* pv) {
  if (psa == nullptr || pv == nullptr) return E_INVALIDARG;
  const Locked lock(psa);
  if (FAILED(lock.result())) return lock.result();
  void* element = nullptr;
  const HRESULT hr = SafeArrayPtrOfIndex(psa, rgIndices, &element);
  return FAILED(hr) ? hr : copy_element(kind_of(*psa), element, pv, psa->cbElements);
}

HRESULT STDMETHODCALLTYPE SafeArrayPutElement(SAFEARRAY* psa, LONG* rgIndices, void* pv) {
  if (psa == nullptr) return E_INVALIDARG;
  const Locked lock(psa);
  if (FAILED(lock.result())) return lock.result();
  void* element = nullptr;
  HRESULT hr = SafeArrayPtrOfIndex(psa, rgIndices, &element);
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
