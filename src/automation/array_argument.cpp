#include "automation/array_argument.hpp"

#include <cstring>
#include <limits>

#include "automation/elements.hpp"
#include "frame/fault.hpp"

namespace vqmath63::automation {
namespace {

constexpr std::int32_t kTypeMismatch = 13;

// The descriptor's fields are read in place: asking the system for each costs more than a short
// call's own work.
bool holds(SAFEARRAY* array, VARTYPE element) {
  constexpr int kNoNumbers = FADF_BSTR | FADF_UNKNOWN | FADF_DISPATCH | FADF_VARIANT | FADF_RECORD;
  if (array->cbElements != value_size(element)) return false;
  if ((array->fFeatures & kNoNumbers) != 0) return false;
  if ((array->fFeatures & FADF_HAVEVARTYPE) == 0) return true;  // hand-made: its size must do
  std::uint32_t actual = 0;  // stands in the four bytes before the descriptor
  std::memcpy(&actual, reinterpret_cast<const std::byte*>(array) - sizeof actual, sizeof actual);
  return actual == element;
}

}  // namespace

std::string array_type_text(VARTYPE element, int rank) {
  std::string text = rank == 2 ? "a two-dimensional array of " : "a one-dimensional array of ";
  switch (element) {
    case VT_R4:
      return text + "Single";
    case VT_R8:
      return text + "Double";
    case VT_I4:
      return text + "Long";
    case VT_BOOL:
      return text + "Boolean";
    default:
      return text + "another type";
  }
}

BorrowedSafeArray::BorrowedSafeArray(SAFEARRAY** place, VARTYPE element, int rank,
                                     const char* member, const char* argument)
    : place_(place), element_(element), rank_(rank) {
  if (place == nullptr) {
    throw BoundaryError(E_POINTER, std::string("Invalid pointer: argument '") + argument + "' of " +
                                       member + " is a null reference");
  }
  SAFEARRAY* array = *place;
  // A descriptor whose elements were released is what an erased array of a host looks like.
  if (array == nullptr || array->pvData == nullptr) {
    if (array == nullptr) return;
    std::size_t count = 1;
    for (int d = 0; d < array->cDims; ++d) count *= array->rgsabound[d].cElements;
    if (count != 0) return;
  }
  if (array->cDims != rank || !holds(array, element)) {
    raise_for_argument(kTypeMismatch, member, argument,
                       "must be " + array_type_text(element, rank));
  }
  const bool fixed = (array->fFeatures & (FADF_AUTO | FADF_STATIC | FADF_FIXEDSIZE)) != 0;
  if (fixed || array->cLocks != 0) resizing_ = Resizing::kRefused;
  array_ = array;
}

void BorrowedSafeArray::lock() {
  if (array_ == nullptr) return;
  if (array_->cLocks == std::numeric_limits<ULONG>::max()) {
    throw BoundaryError(DISP_E_ARRAYISLOCKED, "The array cannot be locked once more");
  }
  ++array_->cLocks;
  locked_ = true;
}

Bounds BorrowedSafeArray::bounds(int dimension) const {
  // The descriptor keeps its dimensions last first.
  const SAFEARRAYBOUND& b = array_->rgsabound[rank_ - dimension];
  const std::int64_t upper = std::int64_t{b.lLbound} + b.cElements - 1;
  if (upper > std::numeric_limits<std::int32_t>::max()) raise_fault(ErrorNumber::kSubscript);
  return {static_cast<std::int32_t>(b.lLbound), static_cast<std::int32_t>(upper)};
}

void BorrowedSafeArray::unlock() noexcept {
  if (locked_) --array_->cLocks;
  locked_ = false;
}

HRESULT BorrowedSafeArray::replace(const void* elements, std::size_t bytes,
                                   const Bounds* bounds) noexcept {
  SAFEARRAY* fresh = nullptr;
  if (elements != nullptr) {
    SAFEARRAYBOUND dims[2];
    for (int d = 0; d < rank_; ++d) {
      dims[d].lLbound = bounds[d].lower;
      dims[d].cElements = static_cast<ULONG>(bounds[d].count());
    }
    fresh = SafeArrayCreate(element_, static_cast<UINT>(rank_), dims);
    if (fresh == nullptr) return E_OUTOFMEMORY;
    std::memcpy(fresh->pvData, elements, bytes);
  }
  SAFEARRAY* old = *place_;
  if (old != nullptr && (old->fFeatures & kForeignElements) == 0) {
    const HRESULT gone = SafeArrayDestroy(old);
    if (FAILED(gone)) {
      if (fresh != nullptr) SafeArrayDestroy(fresh);
      return gone;
    }
  }
  *place_ = fresh;
  return S_OK;
}

}  // namespace vqmath63::automation
