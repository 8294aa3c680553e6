#include "automation/array_conversion.hpp"

#include <cstring>

#include "automation/elements.hpp"

namespace vqmath63::automation {
namespace {

// Index of the element at `offset`, as hosts write it: "(3)", "(2, 5)".
std::string index_text(SAFEARRAY* array, std::size_t offset) {
  std::string text = "(";
  const UINT dims = SafeArrayGetDim(array);
  for (UINT d = 0; d < dims; ++d) {
    const SAFEARRAYBOUND& b = array->rgsabound[dims - 1 - d];
    if (d > 0) text += ", ";
    text += std::to_string(static_cast<std::int64_t>(offset % b.cElements) + b.lLbound);
    offset /= b.cElements;
  }
  return text + ")";
}

struct LockedArray {
  SAFEARRAY* array;
  HRESULT result;
  explicit LockedArray(SAFEARRAY* held) : array(held), result(SafeArrayLock(held)) {}
  ~LockedArray() {
    if (SUCCEEDED(result)) SafeArrayUnlock(array);
  }
  LockedArray(const LockedArray&) = delete;
  LockedArray& operator=(const LockedArray&) = delete;
};

SAFEARRAY* create_alike(SAFEARRAY* model, VARTYPE element) {
  constexpr UINT kMostDims = 2;
  const UINT dims = SafeArrayGetDim(model);
  if (dims == 0 || dims > kMostDims) return nullptr;
  SAFEARRAYBOUND bounds[kMostDims];
  for (UINT d = 0; d < dims; ++d) bounds[d] = model->rgsabound[dims - 1 - d];
  return SafeArrayCreate(element, dims, bounds);
}

}  // namespace

bool same_bounds(SAFEARRAY* a, SAFEARRAY* b) {
  return a != nullptr && b != nullptr && a->cDims == b->cDims &&
         std::memcmp(a->rgsabound, b->rgsabound, a->cDims * sizeof(SAFEARRAYBOUND)) == 0;
}

Conversion convert_array(SAFEARRAY* source, VARTYPE element, LCID locale, SAFEARRAY** out) {
  VARTYPE from = VT_EMPTY;
  if (FAILED(SafeArrayGetVartype(source, &from)) || !convertible_element(from)) {
    return {DISP_E_TYPEMISMATCH, "has elements that are no numbers"};
  }
  OwnedArray made(create_alike(source, element));
  if (made == nullptr) return {E_OUTOFMEMORY, "is too large to convert"};
  const std::size_t count = element_count(source);
  const std::size_t from_size = SafeArrayGetElemsize(source);
  const std::size_t to_size = SafeArrayGetElemsize(made.get());
  const LockedArray lock(source);
  if (FAILED(lock.result)) return {lock.result, "cannot be locked"};
  const auto* in = static_cast<const std::byte*>(source->pvData);
  auto* to = static_cast<std::byte*>(made->pvData);
  for (std::size_t i = 0; i < count; ++i) {
    const HRESULT result =
        convert_element(from, in + i * from_size, element, to + i * to_size, locale);
    if (FAILED(result)) {
      return {result, "element " + index_text(source, i) + " cannot be converted"};
    }
  }
  *out = made.release();
  return {};
}

HRESULT recast_array(SAFEARRAY* source, VARTYPE element, SAFEARRAY** out) {
  VARTYPE from = VT_EMPTY;
  const HRESULT known = SafeArrayGetVartype(source, &from);
  if (FAILED(known)) return known;
  OwnedArray made(create_alike(source, element));
  if (made == nullptr) return E_OUTOFMEMORY;
  const std::size_t count = element_count(source);
  const std::size_t from_size = SafeArrayGetElemsize(source);
  const std::size_t to_size = SafeArrayGetElemsize(made.get());
  const auto* in = static_cast<const std::byte*>(source->pvData);
  auto* to = static_cast<std::byte*>(made->pvData);
  for (std::size_t i = 0; i < count; ++i) {
    const HRESULT stored = store_element(from, in + i * from_size, element, to + i * to_size);
    if (FAILED(stored)) return stored;
  }
  *out = made.release();
  return S_OK;
}

HRESULT write_back_changes(SAFEARRAY* changed, SAFEARRAY* original, SAFEARRAY* target) {
  VARTYPE element = VT_EMPTY;
  SafeArrayGetVartype(changed, &element);
  const std::size_t count = element_count(changed);
  const std::size_t size = SafeArrayGetElemsize(changed);
  const auto* now = static_cast<const std::byte*>(changed->pvData);
  const auto* before = static_cast<const std::byte*>(original->pvData);
  if (std::memcmp(now, before, count * size) == 0) return S_OK;
  // Another argument, or the host meanwhile, may have given the variable another array.
  if (!same_bounds(changed, target)) return DISP_E_ARRAYISLOCKED;
  const LockedArray lock(target);
  if (FAILED(lock.result)) return lock.result;
  VARTYPE to = VT_EMPTY;
  SafeArrayGetVartype(target, &to);
  const std::size_t to_size = SafeArrayGetElemsize(target);
  auto* out = static_cast<std::byte*>(target->pvData);
  HRESULT outcome = S_OK;
  for (std::size_t i = 0; i < count && SUCCEEDED(outcome); ++i) {
    // Bit for bit, so that an element the call left alone keeps the host's own type and digits.
    if (std::memcmp(now + i * size, before + i * size, size) == 0) continue;
    outcome = store_element(element, now + i * size, to, out + i * to_size);
  }
  return outcome;
}

}  // namespace vqmath63::automation
