// Hot loops written once: run on plain numbers first, replayed on checked ones when that failed.
#pragma once

#include <cmath>
#include <cstdint>

#include "frame/array.hpp"
#include "frame/checked.hpp"

namespace vqmath63 {

/// Plain numbers and unchecked element access: the speculative run.
struct PlainMode {
  using Double = BasicDouble<false>;
  using Single = BasicSingle<false>;

  /// Reads element i of an array as a number; the bounds must have been looked at before.
  template <class T>
  class Reader {
   public:
    explicit Reader(const Array1<const T>& a)
        : first_(a.data()), lower_(a.allocated() ? a.lower() : 0) {}
    auto operator()(std::int64_t i) const { return Single(first_[i - lower_]); }

   private:
    const T* first_;
    std::int64_t lower_;
  };
};

/// Checked numbers and checked element access: the replay that finds the first fault exactly.
struct CheckedMode {
  using Double = BasicDouble<true>;
  using Single = BasicSingle<true>;

  template <class T>
  class Reader {
   public:
    explicit Reader(const Array1<const T>& a) : array_(a) {}
    auto operator()(std::int64_t i) const { return Single(array_(i)); }

   private:
    Array1<const T> array_;
  };
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
/// The loop must be such that a non-finite step always leaves a non-finite result (sums of
/// products are; a division by a running value is not), and must write nothing but its result.
template <class Loop>
auto speculate(bool in_bounds, const Loop& loop) {
  if (in_bounds) {
    const auto result = loop(PlainMode{}).value();
    if (detail::all_finite(result)) [[likely]] {
      return result;
    }
  }
  return detail::replay(loop);
}

}  // namespace vqmath63
