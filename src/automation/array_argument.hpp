// A safe array of the exact type as an array with bounds: borrowed, and replaced when resized.
#pragma once

#include <cstring>

#include "automation/class_info.hpp"
#include "automation/elements.hpp"
#include "automation/failure.hpp"
#include "frame/array.hpp"

namespace vqmath63::automation {

/// Element type of a native array at the boundary.
template <class T>
inline constexpr VARTYPE kElementType = VT_EMPTY;
template <>
inline constexpr VARTYPE kElementType<float> = VT_R4;
template <>
inline constexpr VARTYPE kElementType<double> = VT_R8;
template <>
inline constexpr VARTYPE kElementType<std::int32_t> = VT_I4;
template <>
inline constexpr VARTYPE kElementType<Boolean> = VT_BOOL;

// The descriptor's fields are read in place: asking the system for each costs more than a short
// call's own work.
/// True for no array, and for one whose elements were released: what an erased array of a host
/// looks like.
inline bool is_unset(SAFEARRAY* array) {
  return array == nullptr || (array->pvData == nullptr && element_count(array) != 0);
}

/// True when the elements are of that type (of its size, where a hand-made array names no type).
inline bool holds(SAFEARRAY* array, VARTYPE element) {
  constexpr int kNoNumbers = FADF_BSTR | FADF_UNKNOWN | FADF_DISPATCH | FADF_VARIANT | FADF_RECORD;
  if (array->cbElements != value_size(element)) return false;
  if ((array->fFeatures & kNoNumbers) != 0) return false;
  if ((array->fFeatures & FADF_HAVEVARTYPE) == 0) return true;
  std::uint32_t actual = 0;  // stands in the four bytes before the descriptor
  std::memcpy(&actual, reinterpret_cast<const std::byte*>(array) - sizeof actual, sizeof actual);
  return actual == element;
}

/// True when its owner has made the array fixed, or locked it.
inline bool is_fixed(SAFEARRAY* array) {
  constexpr int kFixed = FADF_AUTO | FADF_STATIC | FADF_FIXEDSIZE;
  return (array->fFeatures & kFixed) != 0 || array->cLocks != 0;
}

/// True for a table of one column or one row, as sheets have them: it serves as a line too.
inline bool is_line(const SAFEARRAY* array) {
  return array->cDims == 2 &&
         (array->rgsabound[0].cElements == 1 || array->rgsabound[1].cElements == 1);
}

/// True when the array has that many dimensions, or is a line where one is wanted.
inline bool has_rank(const SAFEARRAY* array, int rank) {
  return array->cDims == rank || (rank == 1 && is_line(array));
}

/// "a one-dimensional array of Single", for messages.
std::string array_type_text(VARTYPE element, int rank);

/// A safe array held for the time of a call. A table of one column or row is worked on as a line
/// with the bounds that it has along itself, and what replaces it is a column or a row again.
class BorrowedSafeArray {
 public:
  /// Looks at `*place`, which may hold no array. Error 13 naming the argument for a wrong rank or
  /// element type, E_POINTER for a null place.
  BorrowedSafeArray(SAFEARRAY** place, VARTYPE element, int rank, const char* member,
                    const char* argument);
  ~BorrowedSafeArray() { unlock(); }
  BorrowedSafeArray(const BorrowedSafeArray&) = delete;
  BorrowedSafeArray& operator=(const BorrowedSafeArray&) = delete;

  bool allocated() const { return array_ != nullptr; }
  void* data() const { return array_->pvData; }
  /// Bounds of dimension 1 or 2.
  Bounds bounds(int dimension) const;
  Resizing resizing() const { return resizing_; }

  /// Keeps the array in place until unlock(). A step of its own, so that the lock of one argument
  /// does not make a fixed array of another one that is the same array.
  void lock();
  void unlock() noexcept;
  /// Puts a new array of `elements` in place of the borrowed one; no element for an unallocated
  /// array. A variable that the host has given another array keeps that one. Call after unlock().
  HRESULT replace(const void* elements, std::size_t bytes, const Bounds* bounds) noexcept;

 private:
  SAFEARRAY** place_;
  SAFEARRAY* sent_ = nullptr;   // what *place_ was
  SAFEARRAY* array_ = nullptr;  // the same, where it has elements
  VARTYPE element_;
  int rank_;
  Resizing resizing_ = Resizing::kAllowed;
  bool locked_ = false;
  bool kept_by_host_ = false;
  // Of a table that stands for a line.
  enum class Line { kNone, kColumn, kRow } line_ = Line::kNone;
  SAFEARRAYBOUND across_{};
};

}  // namespace vqmath63::automation
