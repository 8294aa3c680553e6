// The exponential and the logarithm without a call, for files that are themselves compiled once for
// every processor and once for those with fused multiply-add: their common way stands in the
// caller's code, the rest is called. The same bits, as there is one right result.
#pragma once

#include "elementary/ways/support.hpp"

namespace vqmath63::elementary::VQ_WAY {

/// e^x of |x| < kMostExponent.
inline double inlined_exp(double x) {
  double result;
  if (settled(quick_exponential(x), kExponentialError, result)) [[likely]]
    return result;
  return VQ_WAY::exp(x);
}

/// ln x of finite x >= kPastOne; of a NaN some number.
inline double inlined_log(double x) {
  const Bounded log = short_logarithm(x);
  double result;
  if (settled(log.value.hi, log.value.lo, log.error, result)) [[likely]]
    return result;
  return VQ_WAY::log(x);
}

}  // namespace vqmath63::elementary::VQ_WAY
