// A safe array of the exact type as an array with bounds: borrowed, and replaced when resized.
#pragma once

#include "automation/class_info.hpp"
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

/// Descriptor feature of our own (one of the reserved bits): the elements belong to somebody else,
/// so that a replacement leaves the old array alone.
inline constexpr USHORT kForeignElements = 0x8000;

/// "a one-dimensional array of Single", for messages.
std::string array_type_text(VARTYPE element, int rank);

/// A safe array held for the time of a call.
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
  /// array. Call after unlock().
  HRESULT replace(const void* elements, std::size_t bytes, const Bounds* bounds) noexcept;

 private:
  SAFEARRAY** place_;
  SAFEARRAY* array_ = nullptr;
  VARTYPE element_;
  int rank_;
  Resizing resizing_ = Resizing::kAllowed;
  bool locked_ = false;
};

}  // namespace vqmath63::automation
