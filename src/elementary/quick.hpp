// What the quick ways share: the rounding test, and the exponential and the logarithm in two
// Doubles. The bounds of error are derived beside each; tools/prove_elementary.cpp measures them.
#pragma once

#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "elementary/pair.hpp"
#include "elementary/tables.hpp"

namespace vqmath63::elementary {

/// Whether all of hi + lo +- error rounds to one Double, which goes into result.
inline bool settled(double hi, double lo, double error, double& result) {
  result = hi + (lo + error);
  return result == hi + (lo - error);
}

/// x rounded to an integer, and that as one; |x| < 2^50.
struct Rounded {
  double value;
  std::int64_t integer;
};
inline Rounded rounded(double x) {
  constexpr double kUnit = 0x1.8p52;  // the last place of such numbers is the unit
  const double shifted = x + kUnit;
  return {shifted - kUnit, static_cast<std::int64_t>(std::bit_cast<std::uint64_t>(shifted) -
                                                     std::bit_cast<std::uint64_t>(kUnit))};
}

/// (hi + lo) 2^exponent, hi + lo from 1 to 2.
struct Power {
  double hi;
  double lo;
  int exponent;
};

/// e^(x + tail) for |x| < 710, tail below the last place of x; hi + lo is within 2^-64.3 of the
/// value, and twice the tail's error.
///
/// x = (64 m + 64^2 e + n) ln 2 / 4096 + r with |r| < 2^-13.5, so that e^x is a product of two
/// table entries and of 1 + p(r). The first parts of the entries have 26 bits: their product is
/// exact. Roundings: r 2^-67, the last sum of p 2^-67, both times 2; the product with p, and its
/// sum with the low parts, 2^-66 each.
inline Power quick_exponential(double x, double tail) {
  const Rounded steps = rounded(x * k4096ByLn2[0]);
  const double r = (x - steps.value * kLn2By4096[0]) - steps.value * kLn2By4096[1];
  const auto k = static_cast<std::uint64_t>(steps.integer);
  const double* coarse = &kCoarsePowers[2 * (k >> 6U & 63U)];
  const double* fine = &kFinePowers[2 * (k & 63U)];
  const double hi = coarse[0] * fine[0];
  const double low = coarse[0] * fine[1] + coarse[1] * (fine[0] + fine[1]);
  const double whole = r + tail;
  const double p = r + (whole * whole * (0.5 + whole * (1.0 / 6 + whole * (1.0 / 24))) + tail);
  return {hi, low + (hi + low) * p, static_cast<int>(steps.integer >> 12)};
}

/// x 2^exponent for x and a result that are normal numbers.
inline double with_exponent(double x, int exponent) {
  return std::bit_cast<double>(std::bit_cast<std::uint64_t>(x) +
                               (static_cast<std::uint64_t>(exponent) << 52U));
}

/// ln x = hi + r + tail + lo + (ln(1 + r) - r), hi a multiple of 2^-42, |r| < 2^-8, beside 1
/// (hi = 0) and < 2^-8.7 else; tail below the last place of r, lo below 2^-32.
struct LogParts {
  double hi, lo, r, tail;
};

/// For normal x > 0; extra is subtracted from the exponent. The mantissa, from 11/16 to 11/8, times
/// the factor of 12 bits of its interval is exact in two parts: 40 bits of it, and the rest.
inline LogParts log_parts(double x, double extra) {
  constexpr std::uint64_t kLowest = 0x3FE6'0000'0000'0000;  // 11 / 16
  const auto bits = std::bit_cast<std::uint64_t>(x);
  const std::uint64_t above = bits - kLowest;
  const double* row = &kLogRows[3 * (above >> 44U & 255U)];
  const double exponent = static_cast<double>(static_cast<std::int64_t>(above) >> 52) - extra;
  const auto mantissa = std::bit_cast<double>(bits - (above & 0xFFF0'0000'0000'0000U));
  const double upper = upper_bits<40>(mantissa);
  const double first = upper * row[0] - 1.0;
  const double second = (mantissa - upper) * row[0];
  const double r = first + second;
  return {exponent * kLn2[0] + row[1], exponent * kLn2[1] + row[2], r, second - (r - first)};
}

/// The same for any finite x > 0.
inline LogParts log_parts(double x) {
  if (x < 0x1p-1022) [[unlikely]]
    return log_parts(x * 0x1p54, 54.0);
  return log_parts(x, 0.0);
}

/// A value of two Doubles and a bound of its error.
struct Bounded {
  Pair value;
  double error;
};

/// ln x from its parts, with the square of r to all its bits, so that the first rounding is one of
/// the cube: 2^-79, three times, and the last sum's. Where hi is 0 they fall as fast as the cube.
inline Bounded careful_logarithm(const LogParts& parts) {
  const double r = parts.r;
  const double upper = upper_bits<26>(r);
  const double rest = (r - upper) + parts.tail;
  const double cubic =
      r * r * r *
      (1.0 / 3 +
       r * (-1.0 / 4 + r * (1.0 / 5 + r * (-1.0 / 6 + r * (1.0 / 7 + r * (-1.0 / 8 + r / 9))))));
  const Pair first = ordered_sum(parts.hi, upper);
  const Pair second = ordered_sum(first.hi, -0.5 * upper * upper);
  const double low =
      (first.lo + second.lo) + (rest + (cubic - 0.5 * rest * (upper + r))) + parts.lo;
  const Pair value = ordered_sum(second.hi, low);
  return {value, parts.hi == 0.0 ? std::fabs(value.hi) * 0x1p-67 : 0x1p-76};
}

}  // namespace vqmath63::elementary
