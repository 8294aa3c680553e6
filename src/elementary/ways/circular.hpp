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

// A function of x that knows its value from the reduced angle; large angles by a way of their own,
// so that small ones stay in registers.
template <class Function>
[[gnu::noinline]] double of_far(double x) {
  return Function::value(x, reduced_far(x));
}
template <class Function>
inline double of_reduced(double x) {
  if (!(std::fabs(x) < 0x1p13)) [[unlikely]]
    return of_far<Function>(x);
  return Function::value(x, reduced_near(x));
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

struct Ratio {
  Pair above, below;
};

// tan(steps pi / 256 + angle) = (P + Q t) / (Q - P t), t = tan(angle), P / Q from the table, the
// larger of which is 1 and the first part of which has 26 bits. t is lost where its cube's term is
// rounded, 2^-77 some eight times, and above and below are no smaller than pi / 512 but where t
// falls with them: 2^-66.4 of the value, and by what the quotient keeps in the second Double 2^-67.
inline Ratio quick_tangent(std::uint64_t steps, Pair angle) {
  const double* p = &kTangents.parts[2 * (steps & 255U)];
  const double* q = p + 256;  // a quarter further on
  const double* series = kTangentSeries;
  const double square = angle.hi * angle.hi;
  const double cubic = (angle.hi * square) *
                       multiply_add(square, multiply_add(square, series[2], series[1]), series[0]);
#ifdef VQ_FUSED_WAY
  const double upper = angle.hi;
  const double rest = angle.lo + cubic;
#else
  const double upper = upper_bits<26>(angle.hi);
  const double rest = ((angle.hi - upper) + angle.lo) + cubic;
#endif
  const auto sum = [&](double hi, double lo, double by, double by_lo) {
#ifdef VQ_FUSED_WAY
    const double all = __builtin_fma(by, upper, hi);
    const double left = __builtin_fma(by, upper, hi - all);
    const Pair first{all, left};
#else
    const Pair first = ordered_sum(hi, by * upper);
#endif
    const double second = multiply_add(by + by_lo, rest, multiply_add(by_lo, upper, lo));
    return Pair{first.hi, first.lo + second};
  };
  return {sum(p[0], p[1], q[0], q[1]), sum(q[0], q[1], -p[0], -p[1])};
}

constexpr double kQuickError = 0x1.4p-65;  // of the value

// The sine so many quarters of the circle further on.
template <unsigned kQuarters, double kSure(double)>
struct Sine {
  static inline double value(double x, const Reduced& at) {
    const std::uint64_t steps = at.steps + 128 * kQuarters;
    const Pair sine = quick_sine(steps, Beside(at.angle));
    const double error = multiply_add(std::fabs(sine.hi), kQuickError, middle::kReductionError);
    double result;
    if (!settled(sine.hi, sine.lo, error, result)) [[unlikely]]
      return careful(x, steps, at.angle);
    return result;
  }
  [[gnu::noinline]] static double careful(double x, std::uint64_t steps, Pair angle) {
    double result;
    return middle::sin(steps, angle, result) ? result : kSure(x);
  }
};

struct Tangent {
  static inline double value(double x, const Reduced& at) {
    const Ratio ratio = quick_tangent(at.steps, at.angle);
    const Pair tangent =
        quotient_of(ratio.above, ratio.below, 1.0 / (ratio.below.hi + ratio.below.lo));
    // The reduction's error counts by the derivative, 1 + tan^2.
    const double error =
        multiply_add(std::fabs(tangent.hi), kQuickError,
                     middle::kReductionError * multiply_add(tangent.hi, tangent.hi, 1.0));
    double result;
    if (!settled(tangent.hi, tangent.lo, error, result)) [[unlikely]]
      return careful(x, at.steps, at.angle);
    return result;
  }
  [[gnu::noinline]] static double careful(double x, std::uint64_t steps, Pair angle) {
    double result;
    return middle::tan(steps, angle, result) ? result : sure::tan(x);
  }
};

}  // namespace

double sin(double x) {
  const double size = std::fabs(x);
  if (!(size <= kLargest)) [[unlikely]]
    return x - x;
  if (size < 0x1p-27) [[unlikely]]
    return x;  // x - x^3 / 6 rounds to it
  return of_reduced<Sine<0, sure::sin>>(x);
}

double cos(double x) {
  if (!(std::fabs(x) <= kLargest)) [[unlikely]]
    return x - x;
  return of_reduced<Sine<1, sure::cos>>(x);
}

double tan(double x) {
  const double size = std::fabs(x);
  if (!(size <= kLargest)) [[unlikely]]
    return x - x;
  if (size < 0x1p-28) [[unlikely]]
    return x;
  return of_reduced<Tangent>(x);
}

}  // namespace vqmath63::elementary::VQ_WAY
