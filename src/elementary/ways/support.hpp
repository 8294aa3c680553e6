// What the quick ways share: the rounding test, and the exponential and the logarithm in two
// Doubles. The files of this folder are compiled once for every processor and once for those with
// fused multiply-add; a bound of error holds for both.
#pragma once

#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>

#include "elementary/functions.hpp"
#include "elementary/pair.hpp"
#include "elementary/sure.hpp"
#include "elementary/tables.hpp"

#ifdef VQ_FUSED_WAY
#define VQ_WAY fused
#else
#define VQ_WAY portable
#endif

namespace vqmath63::elementary::VQ_WAY {

inline constexpr double kInfinity = std::numeric_limits<double>::infinity();
inline constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
inline constexpr double kLargest = std::numeric_limits<double>::max();

/// a b + c, rounded once or twice.
inline double multiply_add(double a, double b, double c) {
#ifdef VQ_FUSED_WAY
  return __builtin_fma(a, b, c);
#else
  return a * b + c;
#endif
}

/// a b exactly; factors and product as in pair.hpp.
inline Pair product_of(double a, double b) {
#ifdef VQ_FUSED_WAY
  const double product = a * b;
  return {product, __builtin_fma(a, b, -product)};
#else
  return exact_product(a, b);
#endif
}

/// Whether all of hi + lo +- error rounds to one Double, which goes into result; no NaN comes here.
inline bool settled(double hi, double lo, double error, double& result) {
  result = hi + (lo + error);
  return !(result > hi + (lo - error));
}

/// x rounded to an integer, whose lowest 51 bits the other number begins with; |x| < 2^50.
struct Rounded {
  double value;
  std::uint64_t bits;
};
inline Rounded rounded(double x) {
  constexpr double kUnit = 0x1.8p52;  // the last place of such numbers is the unit
  const double shifted = x + kUnit;
  return {shifted - kUnit, std::bit_cast<std::uint64_t>(shifted)};
}

/// hi (1 + rest) 2^exponent, the exponent in the bits from the 12th on.
struct Power {
  double hi;
  double rest;
  std::uint64_t bits;
};

/// a / b from inverse, 1 / b rounded, in two parts, the first of 26 bits where that makes products
/// exact: the second, which may be as large as the second parts of a and b, to a few of its
/// roundings.
inline Pair quotient_of(Pair a, Pair b, double inverse) {
#ifdef VQ_FUSED_WAY
  const double first = a.hi * inverse;
  const double left = __builtin_fma(-first, b.hi, a.hi) - first * b.lo;
#else
  const double first = upper_bits<26>(a.hi * inverse);
  const double upper = upper_bits<26>(b.hi);
  const double left = (a.hi - first * upper) - first * ((b.hi - upper) + b.lo);
#endif
  return {first, (left + a.lo) * inverse};
}

/// Beyond it a power of e is subnormal, infinite, or near it.
inline constexpr double kMostExponent = 708.0;
/// Error of hi and hi rest of the following without a tail.
inline constexpr double kExponentialError = 0x1.ap-65;

/// e^(x + tail) for |x| < 710, tail below the last place of x; hi, from 1 to 2, and rest give it
/// within 2^-65 of hi, and the tail's error.
///
/// x = (64^2 e + 64 m + n) ln 2 / 4096 + r. The table entries of m and n are powers of 2 cut to 26
/// bits, so that their product is exact, and the logarithms of what they lack, which join r. Three
/// roundings of 2^-67 each: of r, |r| < 2^-13.5, of rest, and of hi times rest.
template <class... Tail>
inline Power quick_exponential(double x, Tail... tail) {
  const Rounded steps = rounded(x * k4096ByLn2[0]);
  const double* coarse = &kCoarsePowers[2 * (steps.bits >> 6U & 63U)];
  const double* fine = &kFinePowers[2 * (steps.bits & 63U)];
  const double lacking = ((coarse[1] + fine[1]) + ... + tail);
  const double r = multiply_add(-steps.value, kLn2By4096[0], x) +
                   multiply_add(-steps.value, kLn2By4096[1], lacking);
  const double series = multiply_add(r, multiply_add(r, 1.0 / 24, 1.0 / 6), 0.5);
  return {coarse[0] * fine[0], multiply_add(r * r, series, r), steps.bits};
}

/// hi and hi rest rounded to one Double, if all of +- error does so, and multiplied by the power of
/// two; the result is a normal number.
inline bool settled(const Power& power, double error, double& result) {
#ifdef VQ_FUSED_WAY
  const double upper = power.hi + __builtin_fma(power.hi, power.rest, error);
  const double lower = power.hi + __builtin_fma(power.hi, power.rest, -error);
#else
  const double low = power.hi * power.rest;
  const double upper = power.hi + (low + error);
  const double lower = power.hi + (low - error);
#endif
  result = std::bit_cast<double>(std::bit_cast<std::uint64_t>(upper) + (power.bits >> 12U << 52U));
  return !(upper > lower);
}

/// ln x = hi + first + lo + second + (ln(1 + r) - r), r = first + second; hi a multiple of 2^-42,
/// |r| < 2^-8; second is below 2^-40, and 0 beside 1, where hi is; lo below 2^-32.
struct LogParts {
  double hi, lo, first, second;
};

/// For normal x > 0; extra is subtracted from the exponent. The mantissa, from 11/16 to 11/8, times
/// the factor of 12 bits of its interval is exact in two parts: of 40 bits of it, and of the rest.
inline LogParts log_parts(double x, double extra) {
  constexpr std::uint64_t kLowest = 0x3FE6'0000'0000'0000;  // 11 / 16
  const auto bits = std::bit_cast<std::uint64_t>(x);
  const std::uint64_t above = bits - kLowest;
  const double* row = &kLogRows[3 * (above >> 44U & 255U)];
  const double exponent = static_cast<double>(static_cast<std::int64_t>(above) >> 52) - extra;
  const auto mantissa = std::bit_cast<double>(bits - (above & 0xFFF0'0000'0000'0000U));
  const double hi = multiply_add(exponent, kLn2[0], row[1]);
  const double lo = multiply_add(exponent, kLn2[1], row[2]);
#ifdef VQ_FUSED_WAY
  const Pair product = product_of(mantissa, row[0]);
  return {hi, lo, product.hi - 1.0, product.lo};
#else
  const double upper = upper_bits<40>(mantissa);
  return {hi, lo, upper * row[0] - 1.0, (mantissa - upper) * row[0]};
#endif
}

/// The same for any finite x > 0.
inline LogParts log_parts(double x) {
  if (x < 0x1p-1022) [[unlikely]]
    return log_parts(x * 0x1p54, 54.0);
  const LogParts parts = log_parts(x, 0.0);
  if (parts.hi == 0.0) [[unlikely]]
    return {0.0, 0.0, x - 1.0, 0.0};
  return parts;
}

/// A value of two Doubles and a bound of its error.
struct Bounded {
  Pair value;
  double error;
};

/// From low to below high, both greater than zero, by one comparison of the bits.
inline bool lies_in(double x, double low, double high) {
  const auto bits = [](double v) { return std::bit_cast<std::uint64_t>(v); };
  return bits(x) - bits(low) < bits(high) - bits(low);
}

/// r^2 times this is ln(1 + r) - r, |r| < 2^-8.
inline double log_series(double r, double square) {
  const double* c = kLogSeries;
  const double high = multiply_add(r, c[5], c[4]);
  const double middle = multiply_add(r, c[3], c[2]);
  return multiply_add(square, multiply_add(square, high, middle), multiply_add(r, c[1], c[0]));
}

/// The intervals of mantissas beside 1, where roundings of ln(1 + r) are of the square's size.
inline constexpr double kBelowOne = 1.0 - 0x1p-9;
inline constexpr double kAboveOne = 1.0 + 0x1p-8;
inline Bounded logarithm_beside_one(double r) {
  const double square = r * r;
  return {{r, square * log_series(r, square)}, square * 0x1p-51};
}

/// ln x of normal x > 0. Roundings of the square, of the series and of two sums, 2^-70 each where r
/// is largest.
inline Bounded quick_logarithm(double x) {
  if (lies_in(x, kBelowOne, kAboveOne)) [[unlikely]]
    return logarithm_beside_one(x - 1.0);
  const LogParts parts = log_parts(x, 0.0);
  const double r = parts.first + parts.second;
  const double square = r * r;
  const Pair sum = ordered_sum(parts.hi, parts.first);
  const double rest = sum.lo + (parts.lo + parts.second);
  return {{sum.hi, multiply_add(square, log_series(r, square), rest)}, 0x1p-67};
}

/// ln x from its parts, with the square of r to all its bits, so that the first rounding is one of
/// the cube: 2^-79, three times, and the last sum's. Where hi is 0 they fall as fast as the cube.
inline Bounded careful_logarithm(const LogParts& parts) {
  const double r = parts.first + parts.second;
  const double square = r * r;
  const double even = multiply_add(
      square, multiply_add(square, multiply_add(square, 1.0 / 9, 1.0 / 7), 1.0 / 5), 1.0 / 3);
  const double odd = multiply_add(square, multiply_add(square, -1.0 / 8, -1.0 / 6), -1.0 / 4);
  const double cubic = (r * square) * multiply_add(r, odd, even);
  // What the square of first + second has beside that of the first.
#ifdef VQ_FUSED_WAY
  const double upper = parts.first;
  const double rest = parts.second;
  const Pair half_square = product_of(-0.5 * upper, upper);
  const double mixed = multiply_add(-rest, upper, half_square.lo);
#else
  const double upper = upper_bits<26>(parts.first);
  const double rest = (parts.first - upper) + parts.second;
  const Pair half_square{-0.5 * upper * upper, 0.0};
  const double mixed = -0.5 * rest * (upper + r);
#endif
  const Pair first = ordered_sum(parts.hi, upper);
  const Pair second = ordered_sum(first.hi, half_square.hi);
  const double low = (first.lo + second.lo) + ((rest + parts.lo) + (mixed + cubic));
  const Pair value = ordered_sum(second.hi, low);
  return {value, parts.hi == 0.0 ? std::fabs(value.hi) * 0x1p-67 : 0x1p-76};
}

inline constexpr double kNearOne = 0.875;
inline constexpr double kPastOne = 1.125;

/// ln x of normal x > 0 with r in one Double, whose rounding is the error, 2^-62, and the series
/// within 2^-62.8: of less than an eighth, from kNearOne to kPastOne, that is too much.
inline Bounded short_logarithm(double x) {
  const LogParts parts = log_parts(x, 0.0);
  const double r = parts.first + parts.second;
  const double square = r * r;
  const double* c = kShortLogSeries;
  const double series = multiply_add(
      square, multiply_add(square, c[4], multiply_add(r, c[3], c[2])), multiply_add(r, c[1], c[0]));
  const Pair sum = ordered_sum(parts.hi, r);
  return {{sum.hi, multiply_add(square, series, sum.lo + parts.lo)}, 0x1p-61};
}

}  // namespace vqmath63::elementary::VQ_WAY
