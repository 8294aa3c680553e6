// Number types whose every step is checked for invalid operation, division by zero and overflow.
#pragma once

#include <cmath>
#include <cstdint>
#include <limits>

#include "elementary/whole.hpp"
#include "frame/fault.hpp"

namespace vqmath63 {

namespace detail {

// Cold ends of the checks: called only when a step has given a non-finite result. They fault when
// this very step raised it; a NaN or an infinity that came in with an operand flows on.
double examine_sum(double a, double b, double result);
double examine_product(double a, double b, double result);
double examine_quotient(double a, double b, double result);
float examine_narrowing(double value, float result);

}  // namespace detail

template <bool kChecked>
class BasicSingle;

/// A Double whose arithmetic is checked (kChecked) or plain. A formula reads the same over both.
/// Faults of a checked step: 6 when finite operands overflow, 11 for a finite non-zero dividend
/// over zero, 5 for an invalid operation (0/0, inf - inf, 0 x inf, inf/inf). Underflow is none.
template <bool kChecked>
class BasicDouble {
 public:
  constexpr BasicDouble() = default;
  constexpr BasicDouble(double value) : value_(value) {}  // NOLINT: a number is a number
  constexpr BasicDouble(BasicSingle<kChecked> value);     // NOLINT: widening is exact

  constexpr double value() const { return value_; }

  friend BasicDouble operator+(BasicDouble a, BasicDouble b) {
    const double r = a.value_ + b.value_;
    if (kChecked && !std::isfinite(r)) [[unlikely]]
      detail::examine_sum(a.value_, b.value_, r);
    return r;
  }
  friend BasicDouble operator-(BasicDouble a, BasicDouble b) {
    const double r = a.value_ - b.value_;
    if (kChecked && !std::isfinite(r)) [[unlikely]]
      detail::examine_sum(a.value_, -b.value_, r);
    return r;
  }
  friend BasicDouble operator*(BasicDouble a, BasicDouble b) {
    const double r = a.value_ * b.value_;
    if (kChecked && !std::isfinite(r)) [[unlikely]]
      detail::examine_product(a.value_, b.value_, r);
    return r;
  }
  friend BasicDouble operator/(BasicDouble a, BasicDouble b) {
    const double r = a.value_ / b.value_;
    if (kChecked && !std::isfinite(r)) [[unlikely]]
      detail::examine_quotient(a.value_, b.value_, r);
    return r;
  }
  friend constexpr BasicDouble operator-(BasicDouble a) { return BasicDouble(-a.value_); }
  BasicDouble& operator+=(BasicDouble b) { return *this = *this + b; }
  BasicDouble& operator-=(BasicDouble b) { return *this = *this - b; }
  BasicDouble& operator*=(BasicDouble b) { return *this = *this * b; }
  BasicDouble& operator/=(BasicDouble b) { return *this = *this / b; }

  // Comparisons follow IEEE: every comparison with a NaN is false but !=.
  friend constexpr bool operator==(BasicDouble a, BasicDouble b) { return a.value_ == b.value_; }
  friend constexpr bool operator<(BasicDouble a, BasicDouble b) { return a.value_ < b.value_; }
  friend constexpr bool operator>(BasicDouble a, BasicDouble b) { return a.value_ > b.value_; }
  friend constexpr bool operator<=(BasicDouble a, BasicDouble b) { return a.value_ <= b.value_; }
  friend constexpr bool operator>=(BasicDouble a, BasicDouble b) { return a.value_ >= b.value_; }

 private:
  double value_ = 0.0;
};

/// A stored Single. Arithmetic on Singles widens to Double; storing rounds once (fault 6 when a
/// finite value does not fit), which is how the library's running Single values are defined.
template <bool kChecked>
class BasicSingle {
 public:
  constexpr BasicSingle() = default;
  constexpr BasicSingle(float value) : value_(value) {}  // NOLINT: a number is a number
  BasicSingle(BasicDouble<kChecked> value) : value_(static_cast<float>(value.value())) {  // NOLINT
    if (kChecked && !std::isfinite(value_)) [[unlikely]] {
      detail::examine_narrowing(value.value(), value_);
    }
  }

  constexpr float value() const { return value_; }

 private:
  float value_ = 0.0F;
};

template <bool kChecked>
constexpr BasicDouble<kChecked>::BasicDouble(BasicSingle<kChecked> value)
    : value_(static_cast<double>(value.value())) {}

using Double = BasicDouble<true>;
using Single = BasicSingle<true>;

/// Arithmetic and comparison of two Singles: in double precision.
#define VQ_WIDENING_OPERATOR(op)                                       \
  template <bool kChecked>                                             \
  auto operator op(BasicSingle<kChecked> a, BasicSingle<kChecked> b) { \
    return BasicDouble<kChecked>(a) op BasicDouble<kChecked>(b);       \
  }
VQ_WIDENING_OPERATOR(+)
VQ_WIDENING_OPERATOR(-)
VQ_WIDENING_OPERATOR(*)
VQ_WIDENING_OPERATOR(/)
VQ_WIDENING_OPERATOR(==)
VQ_WIDENING_OPERATOR(<)
VQ_WIDENING_OPERATOR(>)
VQ_WIDENING_OPERATOR(<=)
VQ_WIDENING_OPERATOR(>=)
#undef VQ_WIDENING_OPERATOR

/// Converts to a 32-bit integer, halves to even. Fault 6 for NaN and outside the range.
inline std::int32_t to_long(double value) {
  const double rounded = elementary::nearest_whole(value);
  // Negated so that a NaN fails too.
  if (!(rounded >= -2147483648.0 && rounded <= 2147483647.0)) raise_fault(ErrorNumber::kOverflow);
  return static_cast<std::int32_t>(rounded);
}

/// Rounds a Double to a stored Single (fault 6 when a finite value does not fit).
inline float to_single(double value) {
  return Single(Double(value)).value();
}

}  // namespace vqmath63
