#include "elementary/middle.hpp"

#include "elementary/sines.hpp"
#include "elementary/tables.hpp"
#include "elementary/ways/support.hpp"

namespace vqmath63::elementary::middle {
namespace {

using portable::rounded;
using portable::Rounded;
using portable::settled;

constexpr Pair kThird{1.0 / 3, 0x1.5555555555555p-56};

Pair times(double power_of_two, Pair a) {
  return {power_of_two * a.hi, power_of_two * a.lo};
}

// ln(1 + r) beside 1: terms to r^4 in two Doubles.
Pair logarithm_beside_one(double r) {
  const double tail =
      1.0 / 5 - r * (1.0 / 6 - r * (1.0 / 7 - r * (1.0 / 8 - r * (1.0 / 9 - r * (1.0 / 10)))));
  const Pair from_fourth = times(-0.25, {1.0, 0.0}) + Pair{r * tail, 0.0};
  const Pair from_third = kThird + Pair{r, 0.0} * from_fourth;
  const Pair from_second = Pair{-0.5, 0.0} + Pair{r, 0.0} * from_third;
  return Pair{r, 0.0} + exact_product(r, r) * from_second;
}

// The sine of a point of the table at some angle beside: S + (S (cos(angle) - 1) + C sin(angle)),
// within 2^-76 of the larger of S and it; the table has 79 bits.
Pair sine_of(std::uint64_t steps, Pair angle) {
  const double* s = &kSines.parts[2 * (steps & 511U)];
  const double* c = s + 256;  // a quarter further on
  const Pair square = angle * angle;
  const double q = square.hi;
  const Pair versine =
      times(-0.5, square) + Pair{q * q * (1.0 / 24 - q * (1.0 / 720 - q * (1.0 / 40320))), 0.0};
  const Pair less_one =
      square *
      (times(-0.5, kThird) + Pair{q * (1.0 / 120 - q * (1.0 / 5040 - q * (1.0 / 362880))), 0.0});
  const Pair sine = angle + angle * less_one;
  const Pair at = ordered_sum(s[0], s[1]);
  return at + (at * versine + ordered_sum(c[0], c[1]) * sine);
}

// atan(a / b) as by the quick way, within 2^-78 of it.
Pair arc_tangent(double a, double b) {
  const Rounded place = rounded(a / b * 128.0);
  const double c = place.value * (1.0 / 128);
  const Pair t = (Pair{a, 0.0} - exact_product(c, b)) / (Pair{b, 0.0} + exact_product(c, a));
  const Pair square = t * t;
  const double q = square.hi;
  const Pair series =
      square * (Pair{q * (1.0 / 5 - q * (1.0 / 7 - q * (1.0 / 9 - q * (1.0 / 11)))), 0.0} - kThird);
  const double* known = &kArcs[2 * (place.bits & 255U)];
  return Pair{known[0], known[1]} + (t + t * series);
}

constexpr double kError = 0x1p-74;  // of the value; of sines it is at least half of S

}  // namespace

// As the quick way, with r to 2^-78; its terms from r^3 on need one Double only. Errors stay below
// 2^-75 of the power that the tables make, and twice that of the exponent.
bool exp(Pair x, double exponent_error, double& result) {
  const Rounded steps = rounded(x.hi * k4096ByLn2[0]);
  const double* coarse = &kCoarsePowers[2 * (steps.bits >> 6U & 63U)];
  const double* fine = &kFinePowers[2 * (steps.bits & 63U)];
  const Pair whole{x.hi - steps.value * kLn2By4096[0], 0.0};
  const Pair lacking = exact_sum(coarse[1], fine[1]) + Pair{x.lo, 0.0};
  const Pair r = whole + (lacking - exact_product(steps.value, kLn2By4096[1]));
  const Pair square = r * r;
  const double cube = square.hi * r.hi * (1.0 / 6 + r.hi * (1.0 / 24 + r.hi * (1.0 / 120)));
  const Pair less_one = r + (times(0.5, square) + Pair{cube, 0.0});
  const double power = coarse[0] * fine[0];
  const Pair value = Pair{power, 0.0} + Pair{power, 0.0} * less_one;
  const bool sure = settled(value.hi, value.lo, 0x1p-74 + 2.0 * exponent_error, result);
  result = std::bit_cast<double>(std::bit_cast<std::uint64_t>(result) + (steps.bits >> 12U << 52U));
  return sure;
}

Pair logarithm(double x) {
  const portable::LogParts parts = portable::log_parts(x);
  if (parts.hi == 0.0) return logarithm_beside_one(parts.first);
  const Pair r = exact_sum(parts.first, parts.second);
  const double tail =
      1.0 / 5 - r.hi * (1.0 / 6 - r.hi * (1.0 / 7 - r.hi * (1.0 / 8 - r.hi * (1.0 / 9))));
  const Pair from_third = kThird + r * (Pair{-0.25, 0.0} + r * Pair{tail, 0.0});
  const Pair series = r + r * r * (Pair{-0.5, 0.0} + r * from_third);
  return exact_sum(parts.hi, parts.lo) + series;
}

bool sin(std::uint64_t steps, Pair angle, double& result) {
  const Pair value = sine_of(steps, angle);
  return settled(value.hi, value.lo, std::fabs(value.hi) * kError + kReductionError, result);
}

bool tan(std::uint64_t steps, Pair angle, double& result) {
  const Pair value = sine_of(steps, angle) / sine_of(steps + 128, angle);
  // The reduction's error counts by the derivative, 1 + tan^2.
  const double error =
      std::fabs(value.hi) * (2.0 * kError) + kReductionError * (1.0 + value.hi * value.hi);
  return settled(value.hi, value.lo, error, result);
}

bool arc(double quarters, double sign, double a, double b, double& result) {
  const Pair arc = arc_tangent(a, b);
  const Pair base{quarters * kHalfPi[0], quarters * kHalfPi[1]};
  const Pair value = base + Pair{sign * arc.hi, sign * arc.lo};
  return settled(value.hi, value.lo, value.hi * kError, result);
}

}  // namespace vqmath63::elementary::middle
