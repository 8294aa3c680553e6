#pragma once

#include "elementary/middle.hpp"
#include "elementary/ways/support.hpp"

namespace vqmath63::elementary::VQ_WAY {
namespace {

[[gnu::noinline]] double careful_exp(double x) {
  double result;
  return middle::exp({x, 0.0}, 0.0, result) ? result : sure::exp(x);
}

}  // namespace

double exp(double x) {
  if (!(std::fabs(x) < kMostExponent)) [[unlikely]]
    return std::isnan(x) ? x : sure::exp(x);
  double result;
  if (!settled(quick_exponential(x), kExponentialError, result)) [[unlikely]]
    return careful_exp(x);
  return result;
}

}  // namespace vqmath63::elementary::VQ_WAY
