// Arrays with lower and upper bounds that own their elements or borrow the caller's.
#pragma once

#include <algorithm>
#include <array>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <utility>

#include "frame/fault.hpp"
#include "frame/memory.hpp"

namespace vqmath63 {

/// A Boolean element as automation arrays store it: 16 bits, True is -1.
struct Boolean {
  std::int16_t stored = 0;
  constexpr Boolean() = default;
  constexpr Boolean(bool value) : stored(value ? -1 : 0) {}  // NOLINT: stands for a bool
  constexpr operator bool() const { return stored != 0; }    // NOLINT: stands for a bool
};

/// Inclusive bounds of one dimension. `upper` is `lower - 1` in a dimension without elements.
struct Bounds {
  std::int32_t lower = 1;
  std::int32_t upper = 0;
  constexpr std::int64_t count() const { return std::int64_t{upper} - lower + 1; }
  constexpr bool contains(std::int64_t i) const { return i >= lower && i <= upper; }
  friend constexpr bool operator==(const Bounds&, const Bounds&) = default;
};

/// Whether a result may be sized by the upper bound of samples with these bounds, which are read
/// from element 1 on. Where that one is not there, the upper bound says nothing of how many there
/// are (a single element can have any), and memory for as many results would be taken only to fail
/// at the first step. A few results are sized all the same, as the steps say.
constexpr bool can_size_results(const Bounds& samples) {
  constexpr std::int32_t kFew = 4096;
  return samples.lower <= 1 || samples.upper <= kFew;
}

namespace detail {

/// Place of an index among the elements, first index fastest; fault 9 outside the bounds.
inline std::size_t offset(const Bounds& b, std::int64_t i) {
  if (!b.contains(i)) raise_fault(ErrorNumber::kSubscript);
  return static_cast<std::size_t>(i - b.lower);
}
inline std::size_t offset(const Bounds& rows, const Bounds& columns, std::int64_t row,
                          std::int64_t column) {
  if (!rows.contains(row) || !columns.contains(column)) raise_fault(ErrorNumber::kSubscript);
  return static_cast<std::size_t>((column - columns.lower) * rows.count() + (row - rows.lower));
}

/// Bounds 1 to `count`.
inline Bounds from_one(std::size_t count) {
  if (count > 0x7FFFFFFFU) raise_fault(ErrorNumber::kOutOfMemory);
  return {1, static_cast<std::int32_t>(count)};
}

}  // namespace detail

/// What a borrowed array may do when a routine re-dimensions it.
enum class Resizing {
  kAllowed,  ///< the array gets elements of its own; the lender looks at was_resized() afterwards
  kRefused   ///< fault 10: the lender holds the array fixed
};

/// Storage shared by the one- and two-dimensional arrays: elements in one run, first index fastest.
///
/// An array is unallocated (asking for a bound is fault 9), borrows the elements of a caller, or
/// owns its elements. Elements are written in place; re-dimensioning gives the array elements of
/// its own and never touches the lender's.
template <class T, std::size_t kRank>
class BoundedArray {
 public:
  using value_type = T;

  BoundedArray() = default;
  BoundedArray(BoundedArray&& other) noexcept { swap(other); }
  /// Assignment re-dimensions: fault 10 for an array that its lender holds fixed.
  /// What the source borrows is copied: only a new array borrows.
  BoundedArray& operator=(BoundedArray&& other) {
    refuse_if_fixed();
    BoundedArray taken;
    if (other.allocated_ && !other.owned_) {
      taken.copy_from(other);
    } else {
      taken.swap(other);
    }
    swap(taken);
    resized_ = true;
    return *this;
  }
  /// A copy owns its elements, whether or not the source does.
  BoundedArray(const BoundedArray& other) { copy_from(other); }
  BoundedArray& operator=(const BoundedArray& other) {
    if (this != &other) *this = BoundedArray(other);
    return *this;
  }
  ~BoundedArray() = default;

  bool allocated() const { return allocated_; }
  /// True once a borrowed array has been re-dimensioned, erased or assigned to: its elements are
  /// its own now.
  bool was_resized() const { return resized_; }

  /// True when its lender holds the array fixed: to re-dimension it is fault 10.
  bool fixed() const { return resizing_ == Resizing::kRefused; }

  /// Number of elements in all; 0 when unallocated.
  std::size_t size() const { return size_; }
  T* data() { return data_; }
  const T* data() const { return data_; }
  std::span<const T> elements() const { return {data_, size_}; }

  /// Releases the elements: the array is unallocated afterwards.
  void erase() {
    refuse_if_fixed();
    BoundedArray none;
    none.resized_ = true;
    swap(none);
  }

 protected:
  using Dimensions = std::array<Bounds, kRank>;

  BoundedArray(T* first, const Dimensions& dims, Resizing resizing)
      : data_(first), size_(total(dims)), dims_(dims), allocated_(true), resizing_(resizing) {}

  const Bounds& dimension(std::size_t d) const {
    if (!allocated_) raise_fault(ErrorNumber::kSubscript);
    return dims_[d];
  }

  /// Fresh elements, all zero. Fault 9 for a dimension without elements, 7 when memory ends.
  void allocate(const Dimensions& dims) {
    refuse_if_fixed();
    for (const Bounds& d : dims) {
      if (d.count() < 1) raise_fault(ErrorNumber::kSubscript);
    }
    const std::size_t count = total(dims);
    if (owned_ && count <= capacity_) {  // a buffer re-dimensioned in a loop costs no allocation
      std::fill_n(owned_.get(), count, T{});
    } else {
      owned_ = make_elements<T>(count);
      capacity_ = count;
    }
    data_ = owned_.get();
    size_ = count;
    dims_ = dims;
    allocated_ = true;
    resized_ = true;
  }

  bool owns() const { return owned_ != nullptr; }
  void swap(BoundedArray& other) noexcept {
    std::swap(data_, other.data_);
    std::swap(size_, other.size_);
    std::swap(capacity_, other.capacity_);
    std::swap(dims_, other.dims_);
    std::swap(owned_, other.owned_);
    std::swap(allocated_, other.allocated_);
    std::swap(resized_, other.resized_);
    std::swap(resizing_, other.resizing_);
  }
  /// Elements of its own, copies of those that start at `first`.
  void copy_from(const T* first, const Dimensions& dims) {
    const std::size_t count = total(dims);
    owned_ = copy_elements(first, count);
    data_ = owned_.get();
    size_ = capacity_ = count;
    dims_ = dims;
    allocated_ = resized_ = true;
  }
  void refuse_if_fixed() const {
    if (fixed()) raise_fault(ErrorNumber::kArrayLocked);
  }

 private:
  static std::size_t total(const Dimensions& dims) {
    constexpr std::int64_t kMost = std::int64_t{1} << 31;
    std::int64_t count = 1;
    for (const Bounds& d : dims) {
      const std::int64_t n = std::max<std::int64_t>(d.count(), 0);
      if (n != 0 && count > kMost / n) raise_fault(ErrorNumber::kOutOfMemory);
      count *= n;
    }
    return static_cast<std::size_t>(count);
  }
  void copy_from(const BoundedArray& other) {
    resized_ = true;  // what is copied over a borrowed array has to go back to the lender
    if (other.allocated_) copy_from(other.data_, other.dims_);
  }

  T* data_ = nullptr;
  std::size_t size_ = 0;
  std::size_t capacity_ = 0;
  Dimensions dims_{};
  OwnedElements<T> owned_;
  bool allocated_ = false;
  bool resized_ = false;
  Resizing resizing_ = Resizing::kAllowed;
};

template <class T>
class Array1;
template <class T>
class Array2;

/// What a routine only reads: the elements of an Array1<T>, of a std::vector<T>, of any other run
/// of T in memory, addressed with bounds. Borrows, never copies an element; what it is made of has
/// to outlive it, as a temporary does for the time of the call that it is an argument of:
///
///     integrate.Integral(std::vector<float>{0, 1, 2}, y);
template <class T>
class Array1<const T> {
 public:
  using value_type = T;

  /// Unallocated: asking for a bound is fault 9.
  Array1() = default;
  Array1(const Array1<T>& array)  // NOLINT: reads the array
      : first_(array.data()), allocated_(array.allocated()) {
    if (allocated_) bounds_ = array.bounds();
  }
  /// Elements 1 to n of a vector, a span, a std::array.
  template <class Range>
  requires std::convertible_to<const Range&, std::span<const T>> Array1(const Range& range)
      : Array1(std::span<const T>(range)) {}  // NOLINT: reads the range
  explicit Array1(std::span<const T> elements)
      : Array1(elements.data(), detail::from_one(elements.size())) {}
  /// The elements that start at `first`, with any bounds.
  Array1(const T* first, Bounds bounds) : first_(first), bounds_(bounds), allocated_(true) {}

  bool allocated() const { return allocated_; }
  std::size_t size() const { return static_cast<std::size_t>(bounds_.count()); }
  const T* data() const { return first_; }
  std::span<const T> elements() const { return {first_, size()}; }

  /// Bounds; fault 9 when unallocated.
  const Bounds& bounds() const {
    if (!allocated_) raise_fault(ErrorNumber::kSubscript);
    return bounds_;
  }
  std::int32_t lower() const { return bounds().lower; }
  std::int32_t upper() const { return bounds().upper; }

  /// Element i; fault 9 outside the bounds.
  const T& operator()(std::int64_t i) const { return first_[detail::offset(bounds(), i)]; }

  /// True when every index first .. last is inside the bounds (an empty range always is).
  bool covers(std::int64_t first, std::int64_t last) const {
    return first > last || (allocated_ && bounds_.contains(first) && bounds_.contains(last));
  }

 private:
  const T* first_ = nullptr;
  Bounds bounds_;
  bool allocated_ = false;
};

/// Whether the two share an element.
template <class T>
bool overlap(const Array1<T>& a, const Array1<const T>& b) {
  const std::less<const T*> before;
  return before(a.data(), b.data() + b.size()) && before(b.data(), a.data() + a.size());
}

/// A one-dimensional array. Samples are addressed from index 1 up to upper(), whatever lower() is.
template <class T>
class Array1 : public BoundedArray<T, 1> {
  using Base = BoundedArray<T, 1>;

 public:
  Array1() = default;
  /// Owned elements lower .. upper, all zero.
  Array1(std::int32_t lower, std::int32_t upper) { this->allocate({{{lower, upper}}}); }
  /// Borrows `elements` as elements 1 to n.
  explicit Array1(std::span<T> elements)
      : Array1(elements.data(), detail::from_one(elements.size())) {}
  /// A copy of its own of what a view sees, bounds and all. Of nothing that could become a view: a
  /// vector is borrowed.
  template <std::same_as<Array1<const T>> View>
  explicit Array1(const View& view) {
    if (!view.allocated()) return;
    this->copy_from(view.data(), {{view.bounds()}});
  }

  /// Borrows the elements that start at `first`, with any bounds.
  Array1(T* first, Bounds bounds, Resizing resizing = Resizing::kAllowed)
      : Base(first, {{bounds}}, resizing) {}

  /// Bounds; fault 9 when unallocated.
  const Bounds& bounds() const { return this->dimension(0); }
  std::int32_t lower() const { return bounds().lower; }
  std::int32_t upper() const { return bounds().upper; }

  /// Element i; fault 9 outside the bounds.
  T& operator()(std::int64_t i) { return this->data()[offset(i)]; }
  const T& operator()(std::int64_t i) const { return this->data()[offset(i)]; }

  /// True when every index first .. last is inside the bounds (an empty range always is).
  bool covers(std::int64_t first, std::int64_t last) const {
    return Array1<const T>(*this).covers(first, last);
  }

  /// New bounds, all elements zero.
  void redim(std::int32_t lower, std::int32_t upper) { this->allocate({{{lower, upper}}}); }

  /// As redim, in memory of its own; what the array held comes back, for one who still reads it.
  [[nodiscard]] Array1 replace(std::int32_t lower, std::int32_t upper) {
    this->refuse_if_fixed();
    Array1 fresh(lower, upper);
    this->swap(fresh);
    return fresh;
  }

  /// A new upper bound, the elements that stay keep their values.
  void redim_preserve(std::int32_t upper) {
    Array1 old = replace(lower(), upper);
    std::move(old.data(), old.data() + std::min(old.size(), this->size()), this->data());
  }

 private:
  std::size_t offset(std::int64_t i) const { return detail::offset(bounds(), i); }
};

/// What a routine only reads of two dimensions: the elements of an Array2<T>, or a run of T in
/// memory, column after column. Borrows, as Array1<const T>.
template <class T>
class Array2<const T> {
 public:
  using value_type = T;

  /// Unallocated: asking for a bound is fault 9.
  Array2() = default;
  Array2(const Array2<T>& array)  // NOLINT: reads the array
      : first_(array.data()), allocated_(array.allocated()) {
    if (!allocated_) return;
    rows_ = array.rows();
    columns_ = array.columns();
  }
  /// The elements that start at `first`, column after column.
  Array2(const T* first, Bounds rows, Bounds columns)
      : first_(first), rows_(rows), columns_(columns), allocated_(true) {}

  bool allocated() const { return allocated_; }
  const T* data() const { return first_; }

  /// Bounds of the rows and of the columns; fault 9 when unallocated.
  Bounds rows() const { return checked(rows_); }
  Bounds columns() const { return checked(columns_); }

  /// Element (row, column); fault 9 outside the bounds.
  const T& operator()(std::int64_t row, std::int64_t column) const {
    return first_[detail::offset(checked(rows_), columns_, row, column)];
  }

 private:
  const Bounds& checked(const Bounds& bounds) const {
    if (!allocated_) raise_fault(ErrorNumber::kSubscript);
    return bounds;
  }

  const T* first_ = nullptr;
  Bounds rows_;
  Bounds columns_;
  bool allocated_ = false;
};

/// A two-dimensional array addressed (row, column); a column's rows lie side by side in memory.
template <class T>
class Array2 : public BoundedArray<T, 2> {
  using Base = BoundedArray<T, 2>;

 public:
  Array2() = default;
  /// Owned elements, all zero.
  Array2(Bounds rows, Bounds columns) { this->allocate({{rows, columns}}); }

  /// Borrows the elements that start at `first`, column after column.
  Array2(T* first, Bounds rows, Bounds columns, Resizing resizing = Resizing::kAllowed)
      : Base(first, {{rows, columns}}, resizing) {}

  /// Bounds of the rows and of the columns; fault 9 when unallocated.
  Bounds rows() const { return this->dimension(0); }
  Bounds columns() const { return this->dimension(1); }

  /// Element (row, column); fault 9 outside the bounds.
  T& operator()(std::int64_t row, std::int64_t column) { return this->data()[offset(row, column)]; }
  const T& operator()(std::int64_t row, std::int64_t column) const {
    return this->data()[offset(row, column)];
  }

  /// New bounds, all elements zero.
  void redim(Bounds rows, Bounds columns) { this->allocate({{rows, columns}}); }

 private:
  std::size_t offset(std::int64_t row, std::int64_t column) const {
    return detail::offset(this->dimension(0), this->dimension(1), row, column);
  }
};

}  // namespace vqmath63
