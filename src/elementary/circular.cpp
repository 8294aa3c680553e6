#include "elementary/functions.hpp"
#include "elementary/quick.hpp"
#include "elementary/sure.hpp"
#include "elementary/two_by_pi.hpp"

namespace vqmath63::elementary {
namespace {

// x = steps pi / 256 + angle, the steps modulo 512, |angle| <= pi / 512.
struct Reduced {
  std::size_t steps;
  Pair angle;
};

// By parts of pi / 256 of 33 bits, whose products are exact; absolute error below 2^-104.
Reduced reduced_near(double x) {
  const Rounded steps = rounded(x * k256ByPi[0]);
  const double first = x - steps.value * kPiBy256[0];
  const Pair second = exact_sum(first, -(steps.value * kPiBy256[1]));
  const Pair angle = ordered_sum(second.hi, second.lo - steps.value * kPiBy256[2]);
  return {static_cast<std::size_t>(steps.integer) & 511U, angle};
}

// For any finite x beyond; absolute error below 2^-105.
[[gnu::noinline]] Reduced reduced_far(double x) {
  const Quarters<7> turns = quarters<7>(std::fabs(x));
  auto steps = static_cast<std::size_t>(turns.bits_from(turns.point - 7) & 511U);
  // The fraction, of half a step and more the negative rest, in exact parts of 53, 11 and 53 bits.
  const auto fraction = static_cast<std::int64_t>(turns.bits_from(turns.point - 71));
  if (fraction < 0) ++steps;
  const std::int64_t low = fraction & 0x7FF;
  const auto rest = static_cast<double>(turns.bits_from(turns.point - 135) >> 11U);
  const Pair part = exact_sum(static_cast<double>(fraction - low) * 0x1p-64,
                              static_cast<double>(low) * 0x1p-64 + rest * 0x1p-117);
  const Pair angle = part * Pair{kHalfPi[0] * 0x1p-7, kHalfPi[1] * 0x1p-7};
  if (std::signbit(x)) return {(0U - steps) & 511U, -angle};
  return {steps & 511U, angle};
}

Reduced reduced(double x) {
  return std::fabs(x) < 0x1p13 ? reduced_near(x) : reduced_far(x);
}

// sin(steps pi / 256 + angle) = S + C sin(angle) + S (cos(angle) - 1), S and C from the table with
// first parts of 26 bits: the product with the first 26 bits of the angle is exact. Roundings are
// those of the square's term, S 2^-69, and of the cube's, C 2^-78, a few each, so that they stay
// below 2^-67 of the value; what the reduction has lost comes on top.
Pair quick_sine(std::size_t steps, Pair angle) {
  const double* s = &kSines[2 * steps];
  const double* c = s + 256;  // a quarter further on
  const double r = angle.hi;
  const double square = r * r;
  const double versine = square * (-0.5 + square * (1.0 / 24 + square * (-1.0 / 720)));
  const double cubic = r * square * (-1.0 / 6 + square * (1.0 / 120 + square * (-1.0 / 5040)));
  const double upper = upper_bits<26>(r);
  const double rest = (r - upper) + angle.lo;
  const Pair sum = ordered_sum(s[0], c[0] * upper);
  const double cosine_term = (s[0] + s[1]) * versine;
  const double sine_terms = c[1] * r + (c[0] + c[1]) * cubic;
  return {sum.hi, sum.lo + ((s[1] + c[0] * rest) + (cosine_term + sine_terms))};
}

constexpr double kQuickError = 0x1p-66;  // of the value
constexpr double kReductionError = 0x1p-103;

// The sine of x and so many quarters of the circle more.
template <std::size_t kQuarters>
double sine(double x, double (*sure_way)(double)) {
  const Reduced at = reduced(x);
  const Pair value = quick_sine((at.steps + 128 * kQuarters) & 511U, at.angle);
  double result;
  const double error = std::fabs(value.hi) * kQuickError + kReductionError;
  if (!settled(value.hi, value.lo, error, result)) [[unlikely]]
    return sure_way(x);
  return result;
}

}  // namespace

double sin(double x) {
  if (!(std::fabs(x) < 0x1p1000)) [[unlikely]]
    return std::isfinite(x) ? sine<0>(x, sure::sin) : x - x;
  if (std::fabs(x) < 0x1p-27) return x;  // x - x^3 / 6 rounds to it
  return sine<0>(x, sure::sin);
}

double cos(double x) {
  if (!std::isfinite(x)) [[unlikely]]
    return x - x;
  return sine<1>(x, sure::cos);
}

double tan(double x) {
  if (!std::isfinite(x)) [[unlikely]]
    return x - x;
  if (std::fabs(x) < 0x1p-28) return x;
  const Reduced at = reduced(x);
  const auto in_order = [](Pair p) { return ordered_sum(p.hi, p.lo); };
  const Pair sine = in_order(quick_sine(at.steps, at.angle));
  const Pair cosine = in_order(quick_sine((at.steps + 128) & 511U, at.angle));
  // The quotient of the first parts, and what is left of the sine.
  const double quotient = sine.hi / cosine.hi;
  const Pair product = exact_product(quotient, cosine.hi);
  const double rest = ((sine.hi - product.hi) - product.lo) + (sine.lo - quotient * cosine.lo);
  const double low = rest / cosine.hi;
  // The reduction's error counts by the derivative, 1 + tan^2.
  const double error =
      std::fabs(quotient) * (3.0 * kQuickError) + kReductionError * (1.0 + quotient * quotient);
  double result;
  if (!settled(quotient, low, error, result)) [[unlikely]]
    return sure::tan(x);
  return result;
}

}  // namespace vqmath63::elementary
