#pragma once

#include "elementary/ways/support.hpp"

namespace vqmath63::elementary::VQ_WAY {
namespace {

// Of what is no finite number greater than zero.
double logarithm_outside(double x) {
  if (x == 0.0) return -kInfinity;
  return x < 0.0 ? kNaN : x + x;
}

// Of any finite x > 0.
[[gnu::noinline]] double careful_log(double x) {
  const Bounded log = careful_logarithm(log_parts(x));
  double result;
  if (settled(log.value.hi, log.value.lo, log.error, result)) [[likely]]
    return result;
  return sure::log(x);
}

[[gnu::noinline]] double log_near_one(double x) {
  const Bounded log = quick_logarithm(x);
  double result;
  if (!settled(log.value.hi, log.value.lo, log.error, result)) [[unlikely]]
    return careful_log(x);
  return result;
}

[[gnu::noinline]] double careful_log1p(double x) {
  const Pair one_more = exact_sum(1.0, x);
  LogParts parts = log_parts(one_more.hi);
  if (parts.hi == 0.0) {
    parts.first = x;
  } else {
    parts.lo += one_more.lo / one_more.hi;
  }
  const Bounded log = careful_logarithm(parts);
  double result;
  if (settled(log.value.hi, log.value.lo, log.error, result)) [[likely]]
    return result;
  return sure::log1p(x);
}

// log10 of x from its natural logarithm.
inline bool settled_log10(const Bounded& log, double& result) {
  const Pair product = product_of(log.value.hi, kLog10OfE[0]);
  const double low = multiply_add(log.value.hi, kLog10OfE[1],
                                  multiply_add(log.value.lo, kLog10OfE[0], product.lo));
  return settled(product.hi, low, log.error + std::fabs(product.hi) * 0x1p-70, result);
}

[[gnu::noinline]] double careful_log10(double x) {
  // Logarithms of whole powers of 10 are exact.
  double power = 1.0;
  for (double n = 0.0; n <= 22.0 && power <= x; ++n, power *= 10.0) {
    if (power == x) return n;
  }
  Bounded log = careful_logarithm(log_parts(x));
  double result;
  if (settled_log10(log, result)) [[likely]]
    return result;
  return sure::log10(x);
}

}  // namespace

double log(double x) {
  if (!lies_in(x, 0x1p-1022, kInfinity)) [[unlikely]]
    return x > 0.0 && x <= kLargest ? careful_log(x) : logarithm_outside(x);
  if (lies_in(x, kNearOne, kPastOne)) return log_near_one(x);
  const Bounded log = short_logarithm(x);
  double result;
  if (!settled(log.value.hi, log.value.lo, log.error, result)) [[unlikely]]
    return careful_log(x);
  return result;
}

double log1p(double x) {
  if (!(x > -1.0 && x <= kLargest)) [[unlikely]]
    return x == -1.0 ? -kInfinity : x < -1.0 ? kNaN : x + x;
  if (std::fabs(x) < 0x1p-54) [[unlikely]]
    return x;
  const Pair one_more = exact_sum(1.0, x);
  Bounded log;
  if (lies_in(one_more.hi, kBelowOne, kAboveOne)) [[unlikely]] {
    log = logarithm_beside_one(x);
  } else {
    // What the sum has lost comes on top, over the sum; its square is not seen.
    log = quick_logarithm(one_more.hi);
    log.value.lo += one_more.lo / one_more.hi;
  }
  double result;
  if (!settled(log.value.hi, log.value.lo, log.error, result)) [[unlikely]]
    return careful_log1p(x);
  return result;
}

double log10(double x) {
  if (!lies_in(x, 0x1p-1022, kInfinity)) [[unlikely]]
    return x > 0.0 && x <= kLargest ? careful_log10(x) : logarithm_outside(x);
  double result;
  if (!settled_log10(quick_logarithm(x), result)) [[unlikely]]
    return careful_log10(x);
  return result;
}

}  // namespace vqmath63::elementary::VQ_WAY
