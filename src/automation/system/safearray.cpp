// Life of safe arrays: making, freeing, resizing and copying them.
#include <atomic>
#include <cstdlib>
#include <limits>
#include <optional>

#include "automation/system/elements.hpp"
#include "automation/system/ownership.hpp"
#include "automation/system/types.hpp"

namespace {

using vqmath63::automation::system::clear_element;
using vqmath63::automation::system::copy_element;
using vqmath63::automation::system::Kind;
using vqmath63::automation::system::kind_of;
using vqmath63::automation::system::Locked;
using vqmath63::automation::system::size_of_type;

// Room before the descriptor for an interface id, in whose last four bytes the element type stands.
constexpr std::size_t kHidden = sizeof(GUID);
constexpr UINT kMaxDims = 64;

/// The memory belongs to somebody else.
constexpr int kBorrowed = FADF_AUTO | FADF_STATIC | FADF_EMBEDDED;

/// Whether both bounds can be written as a LONG; an empty dimension ends one before its start.
bool is_valid(const SAFEARRAYBOUND& bound) {
  const std::int64_t upper = std::int64_t{bound.lLbound} + bound.cElements - 1;
  return upper >= std::numeric_limits<LONG>::min() && upper <= std::numeric_limits<LONG>::max();
}

/// The number of bytes of all elements; empty where no memory block can have that size.
std::optional<std::size_t> bytes_of(const SAFEARRAYBOUND* bounds, UINT dims, ULONG element) {
  for (UINT i = 0; i < dims; ++i) {
    if (bounds[i].cElements == 0) return 0;
  }
  std::size_t bytes = element;
  for (UINT i = 0; i < dims; ++i) {
    if (__builtin_mul_overflow(bytes, std::size_t{bounds[i].cElements}, &bytes))
      return std::nullopt;
  }
  if (bytes > std::size_t{std::numeric_limits<std::ptrdiff_t>::max()}) return std::nullopt;
  return bytes;
}

std::size_t bytes_of(const SAFEARRAY& array) {
  return bytes_of(array.rgsabound, array.cDims, array.cbElements).value_or(0);
}

std::size_t elements_of(const SAFEARRAY& array) {
  return array.cbElements == 0 ? 0 : bytes_of(array) / array.cbElements;
}

/// A block is never of size zero, so that an array without elements has an address too.
void* allocate(std::size_t bytes) {
  return std::calloc(bytes == 0 ? 1 : bytes, 1);
}

SAFEARRAY* allocate_descriptor(UINT dims) {
  const std::size_t size = kHidden + sizeof(SAFEARRAY) + (dims - 1) * sizeof(SAFEARRAYBOUND);
  char* block = static_cast<char*>(std::calloc(1, size));
  if (block == nullptr) return nullptr;
  auto* array = reinterpret_cast<SAFEARRAY*>(block + kHidden);
  array->cDims = static_cast<USHORT>(dims);
  return array;
}

void free_descriptor(SAFEARRAY* array) {
  std::free(reinterpret_cast<char*>(array) - kHidden);
}

void write_hidden(SAFEARRAY* array, const void* what, std::size_t size) {
  std::memcpy(reinterpret_cast<char*>(array) - size, what, size);
}

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

void clear_elements(const SAFEARRAY& array, std::size_t first, std::size_t end) {
  const Kind kind = kind_of(array);
  if (kind == Kind::kPlain || array.pvData == nullptr) return;
  for (std::size_t i = first; i < end; ++i) {
    clear_element(kind, static_cast<char*>(array.pvData) + i * array.cbElements);
  }
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
