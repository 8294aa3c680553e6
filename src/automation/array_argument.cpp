#include "automation/array_argument.hpp"

#include <cstring>
#include <limits>

#include "frame/fault.hpp"

namespace vqmath63::automation {

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
  SAFEARRAY* array = sent_ = *place;
  if (array != nullptr && rank == 1 && is_line(array)) {
    // The descriptor keeps its dimensions last first. A single element is a column.
    line_ = array->rgsabound[0].cElements == 1 ? Line::kColumn : Line::kRow;
    across_ = array->rgsabound[line_ == Line::kColumn ? 0 : 1];
  }
  if (is_unset(array)) return;
  if (!has_rank(array, rank) || !holds(array, element)) {
    raise_for_argument(number_of(ErrorNumber::kTypeMismatch), member, argument,
                       "must be " + array_type_text(element, rank));
  }
  if (is_fixed(array)) resizing_ = Resizing::kRefused;
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
  const int place = line_ == Line::kColumn ? 1 : rank_ - dimension;
  const SAFEARRAYBOUND& b = array_->rgsabound[place];
  const std::int64_t upper = std::int64_t{b.lLbound} + b.cElements - 1;
  if (upper > std::numeric_limits<std::int32_t>::max()) raise_fault(ErrorNumber::kSubscript);
  return {static_cast<std::int32_t>(b.lLbound), static_cast<std::int32_t>(upper)};
}

void BorrowedSafeArray::unlock() noexcept {
  if (locked_) --array_->cLocks;
  locked_ = false;
  kept_by_host_ = *place_ != sent_;
}

HRESULT BorrowedSafeArray::replace(const void* elements, std::size_t bytes,
                                   const Bounds* bounds) noexcept {
  if (kept_by_host_) return S_OK;
  OwnedArray fresh;
  if (elements != nullptr) {
    SAFEARRAYBOUND dims[2] = {across_, across_};
    for (int d = 0; d < rank_; ++d) {
      SAFEARRAYBOUND& along = dims[line_ == Line::kRow ? 1 : d];
      along.lLbound = bounds[d].lower;
      along.cElements = static_cast<ULONG>(bounds[d].count());
    }
    const int rank = line_ == Line::kNone ? rank_ : 2;
    fresh = create_array(element_, value_size(element_), static_cast<UINT>(rank), dims);
    if (!fresh) return E_OUTOFMEMORY;
    std::memcpy(fresh->pvData, elements, bytes);
  }
  const HRESULT gone = destroy(*place_);
  if (SUCCEEDED(gone)) *place_ = fresh.release();
  return gone;
}

}  // namespace vqmath63::automation
