#pragma once

#include "elementary/middle.hpp"
#include "elementary/ways/support.hpp"

namespace vqmath63::elementary::VQ_WAY {
namespace {

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
    return whole(y) ? sign * VQ_WAY::pow(-x, y) : kNaN;
  }
  // No Double x but 1 has a logarithm below 2^-54.
  return large == (y > 0.0) ? kInfinity : 0.0;
}

// |y ln x| from 2^-60 to 707.
inline bool settled_power(const Bounded& log, double y, double& result) {
  const Pair product = product_of(log.value.hi, y);
  const double tail = multiply_add(log.value.lo, y, product.lo);
  const double error = 2.0 * (std::fabs(y) * log.error + std::fabs(product.hi) * 0x1p-103);
  return settled(quick_exponential(product.hi, tail), 0x1.ap-65 + error, result);
}

[[gnu::noinline]] double careful_pow(double x, double y) {
  const Bounded log = careful_logarithm(log_parts(x));
  const double about = log.value.hi * y;
  // Also what comes of an x of 1, and of a y near or at 0, where products might underflow.
  if (std::fabs(about) < 0x1p-60) return 1.0 + about;
  if (about > 710.0) return kInfinity;
  if (about < -746.0) return 0.0;
  double result;
  if (std::fabs(about) > 707.0) return sure::pow(x, y);
  if (settled_power(log, y, result)) return result;
  const Pair exponent = middle::logarithm(x) * Pair{y, 0.0};
  const double lost = std::fabs(exponent.hi) * 0x1p-84;
  return middle::exp(exponent, lost, result) ? result : sure::pow(x, y);
}

}  // namespace

double pow(double x, double y) {
  if (!(x > 0.0 && x < kInfinity && std::fabs(y) < 0x1p64)) [[unlikely]]
    return power_outside(x, y);
  if (x < 0x1p-1022) [[unlikely]]
    return careful_pow(x, y);
  Bounded log = quick_logarithm(x);
  log.value = ordered_sum(log.value.hi, log.value.lo);
  const double size = std::fabs(log.value.hi * y);
  double result;
  if (!(size < 707.0 && size >= 0x1p-60 && settled_power(log, y, result))) [[unlikely]]
    return careful_pow(x, y);
  return result;
}

}  // namespace vqmath63::elementary::VQ_WAY
