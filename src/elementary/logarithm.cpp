#include <limits>

#include "elementary/functions.hpp"
#include "elementary/quick.hpp"
#include "elementary/sure.hpp"

namespace vqmath63::elementary {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kLargest = std::numeric_limits<double>::max();

// Of what is no finite number greater than zero.
double logarithm_outside(double x) {
  if (x == 0.0) return -kInfinity;
  return x < 0.0 ? std::numeric_limits<double>::quiet_NaN() : x + x;
}

[[gnu::noinline]] double second_logarithm(const LogParts& parts, double x) {
  const Bounded log = careful_logarithm(parts);
  double result;
  if (settled(log.value.hi, log.value.lo, log.error, result)) [[likely]]
    return result;
  return sure::log(x);
}

}  // namespace

double log(double x) {
  if (!(x >= 0x1p-1022 && x <= kLargest)) [[unlikely]] {
    if (!(x > 0.0 && x <= kLargest)) return logarithm_outside(x);
    return second_logarithm(log_parts(x), x);
  }
  const LogParts parts = log_parts(x, 0.0);
  // Beside 1 the rounding of the square would be seen.
  if (parts.hi == 0.0) [[unlikely]]
    return second_logarithm(parts, x);
  const double r = parts.r;
  const double square = r * r;
  // Roundings of the square, of the polynomial and of two sums: at most 2^-69 together.
  const double even = -1.0 / 2 + square * (-1.0 / 4 + square * (-1.0 / 6 + square * (-1.0 / 8)));
  const double odd = 1.0 / 3 + square * (1.0 / 5 + square * (1.0 / 7));
  const Pair sum = ordered_sum(parts.hi, r);
  const double low = sum.lo + ((parts.lo + parts.tail) + square * (even + r * odd));
  double result;
  if (!settled(sum.hi, low, 0x1.2p-69, result)) [[unlikely]]
    return second_logarithm(parts, x);
  return result;
}

double log1p(double x) {
  if (!(x > -1.0 && x <= kLargest)) [[unlikely]]
    return x == -1.0 ? -kInfinity : x < -1.0 ? std::numeric_limits<double>::quiet_NaN() : x + x;
  if (std::fabs(x) < 0x1p-54) return x;
  const Pair one_more = exact_sum(1.0, x);
  LogParts parts = log_parts(one_more.hi);
  // What the sum has lost comes on top, over the sum; its square is not seen.
  if (parts.hi == 0.0) {
    parts.r = x;
    parts.tail = 0.0;
  } else {
    parts.lo += one_more.lo / one_more.hi;
  }
  const Bounded log = careful_logarithm(parts);
  double result;
  if (settled(log.value.hi, log.value.lo, log.error, result)) [[likely]]
    return result;
  return sure::log1p(x);
}

double log10(double x) {
  if (!(x > 0.0 && x <= kLargest)) [[unlikely]]
    return logarithm_outside(x);
  const Bounded log = careful_logarithm(log_parts(x));
  const Pair product = exact_product(log.value.hi, kLog10OfE[0]);
  const double low = product.lo + (log.value.hi * kLog10OfE[1] + log.value.lo * kLog10OfE[0]);
  double result;
  if (settled(product.hi, low, log.error + std::fabs(product.hi) * 0x1p-100, result)) [[likely]]
    return result;
  // Those of whole powers of 10 are exact.
  double power = 1.0;
  for (double n = 0.0; n <= 22.0 && power <= x; ++n, power *= 10.0) {
    if (power == x) return n;
  }
  return sure::log10(x);
}

}  // namespace vqmath63::elementary
