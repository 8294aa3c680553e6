// What the Bessel functions are made of: polynomials, exponential, logarithm, cosine and sine, and
// numbers of two doubles. All of + - * / and square roots, so that every machine gives the same.
#pragma once

#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>

#include "elementary/pair.hpp"
#include "frame/checked_functions.hpp"
#include "mathlib/bessel_constants.hpp"

namespace vqmath63::bessel {

inline constexpr double kInfinity = std::numeric_limits<double>::infinity();

/// Two doubles in one register, worked on side by side.
using Two = double __attribute__((vector_size(16)));

/// c[0] + c[1] t + ... + c[kCount - 1] t^(kCount - 1), even and odd powers side by side.
template <std::size_t kCount>
inline double polynomial(const double* c, double t) {
  constexpr std::size_t kTop = (kCount - 1) / 2 * 2;
  const double square = t * t;
  const Two squares{square, square};
  Two sums{c[kTop], 0.0};
  if constexpr (kCount % 2 == 0) sums[1] = c[kTop + 1];
  for (std::size_t i = kTop; i >= 2; i -= 2) {
    Two next;
    std::memcpy(&next, c + i - 2, sizeof next);
    sums = sums * squares + next;
  }
  return sums[0] + t * sums[1];
}

template <std::size_t kCount>
inline double polynomial(const double (&c)[kCount], double t) {
  return polynomial<kCount>(&c[0], t);
}

using elementary::exact_product;
using elementary::exact_sum;
using elementary::ordered_sum;
using elementary::Pair;

/// Square root of a > 0.
inline Pair square_root(Pair a) {
  const double root = unchecked::sqrt(a.hi);
  const Pair rest = a - exact_product(root, root);
  return ordered_sum(root, (rest.hi + rest.lo) / (2.0 * root));
}

/// 2^exponent, exponent from -1022 to 1023.
inline double power_of_two(int exponent) {
  return std::bit_cast<double>(static_cast<std::uint64_t>(exponent + 1023) << 52U);
}

/// value 2^exponent, rounded once; infinite or subnormal where it must be.
inline double scaled(double value, int exponent) {
  if (exponent >= -900 && exponent <= 900) [[likely]]
    return value * power_of_two(exponent);
  const int half = exponent / 2;
  return value * power_of_two(half) * power_of_two(exponent - half);
}

/// value 2^exponent, value from 0.99 to 2.01.
struct Exponential {
  double value;
  int exponent;
};

/// e^(x + tail) for |x| < 5000, tail within the last place of x; error 0.51 units in the last
/// place.
inline Exponential exponential(double x, double tail = 0.0) {
  constexpr double kRound = 6755399441055744.0;  // 1.5 * 2^52: its last place is the unit
  const double steps = (x * 92.332482616893657 + kRound) - kRound;  // 64 / ln 2
  const double r = (x - steps * kLn2By64[0]) - (steps * kLn2By64[1] - tail);
  const int k = static_cast<int>(steps);
  const double* power = &kPowersOfTwo[2 * (k & 63)];
  const double square = r * r;
  const double p = r + square * ((0.5 + r * (1.0 / 6)) + square * (1.0 / 24 + r * (1.0 / 120)));
  return {power[0] + (power[1] + power[0] * p), k >> 6};
}

/// value e^x, rounded once; infinite or subnormal where it must be. |x| < 5000.
inline double times_exponential(double value, double x) {
  const Exponential e = exponential(x);
  return scaled(value * e.value, e.exponent);
}

/// x as mantissa 2^exponent, mantissa from 1 to 2, for finite x > 0.
inline Exponential parted(double x) {
  int shift = 0;
  if (x < std::numeric_limits<double>::min()) [[unlikely]] {
    x *= 0x1p54;
    shift = 54;
  }
  const auto bits = std::bit_cast<std::uint64_t>(x);
  return {std::bit_cast<double>((bits & 0x000F'FFFF'FFFF'FFFFU) | 0x3FF0'0000'0000'0000U),
          static_cast<int>(bits >> 52U) - 1023 - shift};
}

/// The place in the tables for a mantissa from 1 to 2, and the point that its logarithm belongs to,
/// 1 + (2 place + 1) / 64: the mantissa's first five bits, and one set bit after them.
inline std::size_t log_place(double mantissa) {
  return std::bit_cast<std::uint64_t>(mantissa) >> 47U & 31U;
}
inline double log_point(double mantissa) {
  return std::bit_cast<double>((std::bit_cast<std::uint64_t>(mantissa) & 0xFFFF'8000'0000'0000U) |
                               0x0000'4000'0000'0000U);
}

/// ln x for finite x > 0, within a unit in the last place and 1e-17.
inline double logarithm(double x) {
  const Exponential parts = parted(x);
  const std::size_t place = log_place(parts.value);
  const double r = (parts.value - log_point(parts.value)) * kLogFactors[place];  // within 1 / 64
  const double e = parts.exponent;
  const Pair head = ordered_sum(e * kLn2[0], kLogs[2 * place]);
  return head.hi + (r + (head.lo + e * kLn2[1] + r * r * polynomial(kLogSeries, r)));
}

/// ln x of x > 0 to 1e-29.
Pair logarithm(Pair x);

/// x = quadrant pi / 2 + pi / 4 + angle, angle about within pi / 4 of 0; the quadrant modulo 2^32.
struct Angle {
  std::uint32_t quadrant;
  Pair rest;
};

/// The same for x >= 2^19 (M. H. Payne, R. N. Hanek, ACM SIGNUM Newsletter 18, 1983).
Angle reduced_far(double x);

/// Finite x >= 0 less whole quarters of the circle and an eighth; error below 1e-27.
inline Angle reduced(double x) {
  if (!(x < 524288.0)) [[unlikely]]
    return reduced_far(x);
  const auto quarters = static_cast<std::int32_t>(x * 0.63661977236758134);
  const double halves = quarters + 0.5;
  // The first two products are exact.
  const Pair first = exact_sum(x - halves * kHalfPi[0], -halves * kHalfPi[1]);
  const double low = halves * kHalfPi[2];
  const Pair rest = ordered_sum(first.hi, first.lo - low);
  return {static_cast<std::uint32_t>(quarters), rest};
}

/// cos(quadrant pi / 2 + angle), |angle| up to 0.8; sine: one quadrant less.
inline double cosine(std::uint32_t quadrant, double angle) {
  const std::size_t odd = quadrant & 1U;
  constexpr std::size_t kCount = sizeof(kCosSin[0]) / sizeof(double);
  const double value = polynomial<kCount>(&kCosSin[odd][0], angle * angle);
  const double signs[4] = {1.0, -angle, -1.0, angle};
  return signs[quadrant & 3U] * value;
}

}  // namespace vqmath63::bessel
