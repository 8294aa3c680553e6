// Debye's expansions (DLMF 10.19.3 to 10.19.6, 10.41.3, 10.41.4), with exponents and phases kept
// in two doubles: these grow with order and argument, and their last places are the result's.
#include "mathlib/bessel_debye.hpp"

#include <cmath>
#include <iterator>

#include "elementary/whole.hpp"
#include "frame/checked_functions.hpp"
#include "mathlib/bessel_elementary.hpp"

namespace vqmath63::bessel {
namespace {

constexpr Pair kHalfCircle{1.5707963267948966, 6.123233995736766e-17};  // pi / 2

constexpr double kGrowing = 0.3989422804014327;  // 1 / sqrt(2 pi)

struct Sums {
  double even;
  double odd;
};

// The sums over even and odd k of sign^(k / 2) root^-k (c_k0 + c_k1 q + ... + c_kk q^k), which are
// the expansions' U_k(p) / n^k: with p = n / root, q = p^2, sign = 1; but where J and Y oscillate
// p = i n / root, q = p^2, sign = -1. At most 16 terms beyond the first.
Sums debye_sums(double q, double root, double sign) {
  constexpr int kLast = 16;
  static_assert(std::size(kDebye) == (kLast + 1) * (kLast + 2) / 2);
  constexpr double kEnough = 1e-18;
  const double inverse = 1.0 / root;
  Sums sums{1.0, 0.0};
  double power = 1.0;
  const double* row = kDebye + 1;
  const auto term = [&](int k) {
    double value = row[k];
    for (int j = k - 1; j >= 0; --j) value = value * q + row[j];
    row += k + 1;
    power *= inverse;
    return value * power;
  };
  for (int k = 1; k < kLast; k += 2) {
    const double odd = term(k);
    power *= sign;
    const double even = term(k + 1);
    sums.odd += odd;
    sums.even += even;
    if (std::fabs(odd) + std::fabs(even) < kEnough) break;
  }
  return sums;
}

// arc tan(height / width) for 0 <= height, 0 < width, to about 100 bits; hypotenuse^2 = the sum of
// their squares.
Pair arc_tangent(Pair height, Pair width, double hypotenuse) {
  // A rough arc sine finds the nearest angle of the table (M. Abramowitz, I. A. Stegun, Handbook
  // of Mathematical Functions, 1964, 4.4.45).
  const double sine = height.hi / hypotenuse;
  const double rough =
      1.5707963 - unchecked::sqrt(1.0 - sine) *
                      (1.5707288 + sine * (-0.2121144 + sine * (0.0742610 - sine * 0.0187293)));
  const int place = static_cast<int>(rough * 16.0 + 0.5);
  const double* angle = kAngles[place];
  const Pair cosine{angle[0], angle[1]};
  const Pair sinus{angle[2], angle[3]};
  const Pair v = (height * cosine - width * sinus) / (width * cosine + height * sinus);
  // v - v^3 / 3 + v^5 / 5 - ..., |v| < 0.0314.
  const Pair square = v * v;
  const double s = square.hi;
  const double tail =
      s * s *
      (1.0 / 5 -
       s * (1.0 / 7 - s * (1.0 / 9 - s * (1.0 / 11 - s * (1.0 / 13 - s * (1.0 / 15 - s / 17))))));
  constexpr Pair kMinusThird{-1.0 / 3, -0x1.5555555555555p-56};
  return Pair{place / 16.0, 0.0} + (v + v * (square * kMinusThird + Pair{tail, 0.0}));
}

// (90 / x)^(2 / 3): 1 - (n / x)^2, or 1 - (x / n)^2, from which on the expansions hold.
double least_distance(double x) {
  const Exponential value = exponential(logarithm(90.0 / x) * (2.0 / 3));
  return scaled(value.value, value.exponent);
}

}  // namespace

Circular debye_circular(double n, double x) {
  // x - (n / 2 + 1 / 4) pi, plus what the phase exceeds it by: n arc sin(n / x) - (x - root).
  Angle phase = reduced(x);
  phase.quadrant -= static_cast<std::uint32_t>(n);
  double root = x;
  double q = 0.0;
  if (x < 1e40) {
    const Pair order{n, 0.0};
    const Pair wide = square_root(exact_sum(x, -n) * exact_sum(x, n));
    root = wide.hi;
    q = -(n / root) * (n / root);
    const Pair excess =
        order * arc_tangent(order, wide, x) - exact_product(n, n) / (wide + Pair{x, 0.0});
    phase.rest = phase.rest + excess;
    const double turns = elementary::nearest_whole(phase.rest.hi * 0.63661977236758134);
    phase.rest = phase.rest - Pair{turns, 0.0} * kHalfCircle;
    phase.quadrant += static_cast<std::uint32_t>(static_cast<std::int64_t>(turns));
  }
  const Sums sums = debye_sums(q, root, -1.0);
  const double c = cosine(phase.quadrant, phase.rest.hi);
  const double s = cosine(phase.quadrant + 3, phase.rest.hi);
  const double amplitude = unchecked::sqrt(0.63661977236758134 / root);
  return {amplitude * (c * sums.even + s * sums.odd), amplitude * (s * sums.even - c * sums.odd)};
}

Circular debye_decaying(double n, double x) {
  if (x < 1e-280) return {0.0, -kInfinity};
  const Pair order{n, 0.0};
  const Pair root = square_root(exact_sum(n, -x) * exact_sum(n, x));
  const Pair exponent = order * logarithm((order + root) / Pair{x, 0.0}) - root;
  if (exponent.hi > 800.0) return {0.0, -kInfinity};
  const double p = n / root.hi;
  const Sums sums = debye_sums(p * p, root.hi, 1.0);
  const double amplitude = unchecked::sqrt(1.0 / root.hi);
  const Exponential up = exponential(exponent.hi, exponent.lo);
  const Exponential down = exponential(-exponent.hi, -exponent.lo);
  constexpr double kY = 0.7978845608028654;  // sqrt(2 / pi)
  return {scaled(down.value * (amplitude * kGrowing) * (sums.even + sums.odd), down.exponent),
          -scaled(up.value * (amplitude * kY) * (sums.even - sums.odd), up.exponent)};
}

double last_oscillating(double x) {
  if (x < 91.0) return -1.0;
  return std::trunc(x * unchecked::sqrt(1.0 - least_distance(x)));
}

double first_decaying(double x) {
  if (x < 91.0) return kInfinity;
  return std::trunc(x / unchecked::sqrt(1.0 - least_distance(x))) + 1.0;
}

Modified debye_modified(double n, double x) {
  // Far from 1 both are known; so far out, no square overflows.
  if (x > 1e10) return {kInfinity, 0.0};
  if (x < 1e-12) return {0.0, kInfinity};
  const Pair order{n, 0.0};
  const Pair root = square_root(exact_product(x, x) + exact_product(n, n));
  const Pair exponent = root - order * logarithm((order + root) / Pair{x, 0.0});
  if (exponent.hi > 800.0) return {kInfinity, 0.0};
  if (exponent.hi < -800.0) return {0.0, kInfinity};
  const Sums sums = debye_sums((n / root.hi) * (n / root.hi), root.hi, 1.0);
  const double amplitude = unchecked::sqrt(1.0 / root.hi);
  constexpr double kFalling = 1.2533141373155003;  // sqrt(pi / 2)
  const Exponential up = exponential(exponent.hi, exponent.lo);
  const Exponential down = exponential(-exponent.hi, -exponent.lo);
  return {scaled(up.value * (amplitude * kGrowing) * (sums.even + sums.odd), up.exponent),
          scaled(down.value * (amplitude * kFalling) * (sums.even - sums.odd), down.exponent)};
}

}  // namespace vqmath63::bessel
