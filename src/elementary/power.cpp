#include <limits>

#include "elementary/functions.hpp"
#include "elementary/quick.hpp"
#include "elementary/sure.hpp"

namespace vqmath63::elementary {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

bool whole(double y) {
  return std::floor(y) == y;
}
bool odd(double y) {
  return whole(y) && std::fabs(y) < 0x1p53 && !whole(0.5 * y);
}

// Of zeros, infinities and NaN, of negative x, and of exponents beyond 2^64.
double power_outside(double x, double y) {
  if (y == 0.0 || x == 1.0) return 1.0;
  if (std::isnan(x) || std::isnan(y)) return x + y;
  const bool large = std::fabs(x) > 1.0;
  if (std::isinf(y)) {
    if (x == -1.0) return 1.0;
    return large == (y > 0.0) ? kInfinity : 0.0;
  }
  const double sign = std::signbit(x) && odd(y) ? -1.0 : 1.0;
  if (x == 0.0 || std::isinf(x)) return sign * (large == (y > 0.0) ? kInfinity : 0.0);
  if (x < 0.0) {
    return whole(y) ? sign * elementary::pow(-x, y) : std::numeric_limits<double>::quiet_NaN();
  }
  // No Double x but 1 has a logarithm below 2^-54.
  return large == (y > 0.0) ? kInfinity : 0.0;
}

}  // namespace

double pow(double x, double y) {
  const double size = std::fabs(y);
  if (!(x > 0.0 && x < kInfinity && size < 0x1p64)) [[unlikely]]
    return power_outside(x, y);
  const Bounded log = careful_logarithm(log_parts(x));
  const double about = log.value.hi * y;
  if (!(std::fabs(about) < 707.0)) [[unlikely]] {
    if (about > 710.0) return kInfinity;
    if (about < -746.0) return 0.0;
    return sure::pow(x, y);
  }
  // Also what comes of an x of 1, and of a y near or at 0, where products might underflow.
  if (std::fabs(about) < 0x1p-60) return 1.0 + about;
  const Pair product = exact_product(log.value.hi, y);
  const double tail = product.lo + log.value.lo * y;
  const Power power = quick_exponential(product.hi, tail);
  double result;
  const double error = 0x1.ap-65 + 2.0 * (size * log.error + std::fabs(about) * 0x1p-103);
  if (!settled(power.hi, power.lo, error, result)) [[unlikely]]
    return sure::pow(x, y);
  return with_exponent(result, power.exponent);
}

}  // namespace vqmath63::elementary
