#pragma once

#include "elementary/middle.hpp"
#include "elementary/sines.hpp"
#include "elementary/two_by_pi.hpp"
#include "elementary/ways/support.hpp"

namespace vqmath63::elementary::VQ_WAY {
namespace {

// x = steps pi / 256 + angle, the steps to be taken modulo 512, |angle| <= pi / 512.
struct Reduced {
  std::uint64_t steps;
  Pair angle;
};

// By parts of pi / 256 of 33 bits, whose products are exact; absolute error below 2^-104.
inline Reduced reduced_near(double x) {
  const Rounded steps = rounded(x * k256ByPi[0]);
  const double first = multiply_add(-steps.value, kPiBy256[0], x);
  const Pair second = exact_sum(first, -(steps.value * kPiBy256[1]));
  const Pair angle = ordered_sum(second.hi, multiply_add(-steps.value, kPiBy256[2], second.lo));
  return {steps.bits, angle};
}

// For any finite x beyond; absolute error below 2^-105.
[[gnu::noinline]] Reduced reduced_far(double x) {
  const Quarters<7> turns = quarters<7>(std::fabs(x));
  std::uint64_t steps = turns.bits_from(turns.point - 7);
  // The fraction, of half a step and more the negative rest, in exact parts of 53, 11 and 53 bits.
  const auto fraction = static_cast<std::int64_t>(turns.bits_from(turns.point - 71));
  if (fraction < 0) ++steps;
  const std::int64_t low = fraction & 0x7FF;
  const auto rest = static_cast<double>(turns.bits_from(turns.point - 135) >> 11U);
  const Pair part = exact_sum(static_cast<double>(fraction - low) * 0x1p-64,
                              static_cast<double>(low) * 0x1p-64 + rest * 0x1p-117);
  const Pair angle = part * Pair{kHalfPi[0] * 0x1p-7, kHalfPi[1] * 0x1p-7};
  if (std::signbit(x)) return {0U - steps, -angle};
  return {steps, angle};
}

inline Reduced reduced(double x) {
  return std::fabs(x) < 0x1p13 ? reduced_near(x) : reduced_far(x);
}

// What the sine and the cosine of a point of the table at some angle beside have in common.
struct Beside {
  double r, rest;  // the angle in two parts, the first of 26 bits where that makes products exact
  double whole;    // the angle in one
  double versine;  // cos(angle) - 1
  double cubic;    // sin(angle) - angle

  explicit Beside(Pair angle) : whole(angle.hi) {
    const double square = angle.hi * angle.hi;
    versine = square * multiply_add(square, multiply_add(square, -1.0 / 720, 1.0 / 24), -0.5);
    const double series =
        multiply_add(square, multiply_add(square, -1.0 / 5040, 1.0 / 120), -1.0 / 6);
    cubic = (angle.hi * square) * series;
#ifdef VQ_FUSED_WAY
    r = angle.hi;
    rest = angle.lo;
#else
    r = upper_bits<26>(angle.hi);
    rest = (angle.hi - r) + angle.lo;
#endif
  }
};

// sin(steps pi / 256 + angle) = S + C sin(angle) + S (cos(angle) - 1), S and C from the table,
// whose first parts have 26 bits: their product with the first part of the angle is exact, or taken
// in by a fused step. What is lost is the last place of the versine's term, S 2^-69, in some steps
// and by the angle's second part, which that term leaves out: all in all 2^-66 of S. Beside the
// first point of the table S may be twice the value.
inline Pair quick_sine(std::uint64_t steps, const Beside& angle) {
  const double* s = &kSines.parts[2 * (steps & 511U)];
  const double* c = s + 256;  // a quarter further on
#ifdef VQ_FUSED_WAY
  const double hi = __builtin_fma(c[0], angle.r, s[0]);
  const double lo = __builtin_fma(c[0], angle.r, s[0] - hi);
  const Pair sum{hi, lo};
#else
  const Pair sum = ordered_sum(s[0], c[0] * angle.r);
#endif
  const double first = multiply_add(s[0] + s[1], angle.versine, sum.lo + s[1]);
  const double second =
      multiply_add(c[0] + c[1], angle.cubic, multiply_add(c[1], angle.whole, c[0] * angle.rest));
  return {sum.hi, first + second};
}

constexpr double kQuickError = 0x1.4p-65;  // of the value

[[gnu::noinline]] double careful_sine(std::uint64_t steps, Pair angle, double x,
                                      double (*sure_way)(double)) {
  double result;
  return middle::sin(steps, angle, result) ? result : sure_way(x);
}

[[gnu::noinline]] double careful_tan(const Reduced& at, double x) {
  double result;
  return middle::tan(at.steps, at.angle, result) ? result : sure::tan(x);
}

// The sine of x and so many quarters of the circle more.
template <unsigned kQuarters>
inline double sine(double x, double (*sure_way)(double)) {
  const Reduced at = reduced(x);
  const std::uint64_t steps = at.steps + 128 * kQuarters;
  const Pair value = quick_sine(steps, Beside(at.angle));
  double result;
  const double error = multiply_add(std::fabs(value.hi), kQuickError, middle::kReductionError);
  if (!settled(value.hi, value.lo, error, result)) [[unlikely]]
    return careful_sine(steps, at.angle, x, sure_way);
  return result;
}

}  // namespace

double sin(double x) {
  const double size = std::fabs(x);
  if (!(size <= kLargest)) [[unlikely]]
    return x - x;
  if (size < 0x1p-27) [[unlikely]]
    return x;  // x - x^3 / 6 rounds to it
  return sine<0>(x, sure::sin);
}

double cos(double x) {
  if (!(std::fabs(x) <= kLargest)) [[unlikely]]
    return x - x;
  return sine<1>(x, sure::cos);
}

double tan(double x) {
  const double size = std::fabs(x);
  if (!(size <= kLargest)) [[unlikely]]
    return x - x;
  if (size < 0x1p-28) [[unlikely]]
    return x;
  const Reduced at = reduced(x);
  const Beside angle(at.angle);
  const Pair sine = quick_sine(at.steps, angle);
  const Pair cosine = quick_sine(at.steps + 128, angle);
  // A quotient of nearly all, and what is left of the sine.
  const double inverse = 1.0 / (cosine.hi + cosine.lo);
  const double quotient = sine.hi * inverse;
#ifdef VQ_FUSED_WAY
  const double left_of_first = __builtin_fma(-quotient, cosine.hi, sine.hi);
#else
  const Pair product = exact_product(quotient, cosine.hi);
  const double left_of_first = (sine.hi - product.hi) - product.lo;
#endif
  const double left = left_of_first + multiply_add(-quotient, cosine.lo, sine.lo);
  // Of sine and cosine one is large and has half the error. The reduction's counts by the
  // derivative, 1 + tan^2.
  const double error =
      multiply_add(std::fabs(quotient), 2.0 * kQuickError,
                   middle::kReductionError * multiply_add(quotient, quotient, 1.0));
  double result;
  if (!settled(quotient, left * inverse, error, result)) [[unlikely]]
    return careful_tan(at, x);
  return result;
}

}  // namespace vqmath63::elementary::VQ_WAY
