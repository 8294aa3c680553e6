// Hot loops written once: run on plain numbers first, replayed on checked ones when that failed.
//
// A loop is generic over a mode, PlainMode or CheckedMode, which gives it its numbers and readers.
// Which form serves:
//
// - The result is a number made of sums and products: a step that is not finite leaves a result
//   that is not. `speculate` a loop that returns it (integration.cpp, sums.cpp).
// - Several such results: a group that says of itself whether all are finite (sums.cpp).
// - A step may hide another one's failure: a division by a value that has overflowed gives 0, a
//   comparison with a NaN takes a branch, a value stored as Single is used as Double. No look at
//   the result tells. The loop itself notes whether a step was not finite, where it can happen, and
//   returns a group that says so: differentiation.cpp looks at quotient times denominator,
//   petroleum.cpp at what it stores, matrix.cpp at the whole system, in which what is lost stays.
// - Results are written on the way: the plain run writes to scratch memory only, which is copied
//   once it is known to be good. The checked run writes in place, in the order of the routine, so
//   that what came before a fault stays (differentiation.cpp, in blocks).
// - The steps are few, or wait for each other anyway: checked numbers alone, without a plain run.
#pragma once

#include <cmath>
#include <cstdint>
#include <limits>
#include <type_traits>

#include "frame/array.hpp"
#include "frame/checked.hpp"
#include "frame/steps_only.hpp"

namespace vqmath63 {

/// The numbers of a mode, and how it reads elements as numbers: those of an Array1<float> as
/// Singles, those of an Array1<double> as Doubles.
template <bool kChecked>
struct NumberMode {
  using Double = BasicDouble<kChecked>;
  using Single = BasicSingle<kChecked>;
  template <class T>
  using Number = std::conditional_t<std::is_same_v<T, float>, Single, Double>;

  /// Looks at the bounds for each element, in both modes: for indices that stand in the data. An
  /// element that is not there is a NaN to the plain run, which must show in its result: a step
  /// before may have failed.
  template <class T>
  class BoundedReader {
   public:
    explicit BoundedReader(const Array1<const T>& a)
        : array_(a), first_(a.data()), lower_(a.allocated() ? a.lower() : 0), count_(a.size()) {}
    explicit BoundedReader(Array1<const T>&&) = delete;  // read where the view stands
    Number<T> operator()(std::int64_t i) const {
      const auto at = static_cast<std::uint64_t>(i - lower_);
      if (at < count_) [[likely]]
        return first_[at];
      return kChecked ? array_(i) : std::numeric_limits<T>::quiet_NaN();  // array_(i) is fault 9
    }

   private:
    const Array1<const T>& array_;
    const T* first_;
    std::int64_t lower_;
    std::uint64_t count_;
  };
};

/// Plain numbers and unchecked element access: the speculative run.
struct PlainMode : NumberMode<false> {
  /// Reads element i of an array as a number; the bounds must have been looked at before.
  template <class T>
  class Reader {
   public:
    explicit Reader(const Array1<const T>& a)
        : first_(a.data()), lower_(a.allocated() ? a.lower() : 0) {}
    Number<T> operator()(std::int64_t i) const { return first_[i - lower_]; }

   private:
    const T* first_;
    std::int64_t lower_;
  };
};

/// Checked numbers and checked element access: the replay that finds the first fault exactly.
struct CheckedMode : NumberMode<true> {
  template <class T>
  using Reader = BoundedReader<T>;
};

namespace detail {

// A result is a number, or a group of them that says for itself whether all are finite.
inline bool all_finite(float result) {
  return std::isfinite(result);
}
inline bool all_finite(double result) {
  return std::isfinite(result);
}
template <class Group>
bool all_finite(const Group& result) {
  return result.all_finite();
}

// A function of its own, so that its calls cost the plain loop no registers.
template <class Loop>
[[gnu::noinline]] auto replay(const Loop& loop) {
  return loop(CheckedMode{}).value();
}

}  // namespace detail

/// Runs `loop(PlainMode{})` when `in_bounds`, and returns its value if that is finite; otherwise
/// runs `loop(CheckedMode{})`, which raises the first fault in the order of the steps or returns
/// the non-finite value that the caller's own NaN or infinity led to.
///
/// A loop returns what has a value(): a number, or a group with an all_finite(). A step that is not
/// finite must always show there, and the plain run must write nothing that the caller sees.
template <class Loop>
auto speculate(bool in_bounds, const Loop& loop) {
  if (in_bounds && !kStepsOnly) {
    const auto result = loop(PlainMode{}).value();
    if (detail::all_finite(result)) [[likely]] {
      return result;
    }
  }
  return detail::replay(loop);
}

}  // namespace vqmath63
