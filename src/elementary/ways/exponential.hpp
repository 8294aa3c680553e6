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
  // Beyond, the result is subnormal, infinite, or near it.
  if (!(std::fabs(x) < 708.0)) [[unlikely]]
    return std::isnan(x) ? x : sure::exp(x);
  double result;
  if (!settled(quick_exponential(x), 0x1.ap-65, result)) [[unlikely]]
    return careful_exp(x);
  return result;
}

}  // namespace vqmath63::elementary::VQ_WAY
