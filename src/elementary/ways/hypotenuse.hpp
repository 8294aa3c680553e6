#pragma once

#include "elementary/ways/support.hpp"

namespace vqmath63::elementary::VQ_WAY {
namespace {

// x^2, the first part of 52 bits exact and the second to 2^-79 of the value, or all of it.
inline Pair square_of(double x) {
#ifdef VQ_FUSED_WAY
  return product_of(x, x);
#else
  const double upper = upper_bits<26>(x);
  return {upper * upper, (x - upper) * (x + upper)};
#endif
}

// sqrt(x^2 + y^2) for x >= y, the root's rest by one step of Newton's. Whether root + rest, within
// 2^-76 of the value, rounds to one Double; a middle between two of them is at least 2^-54 of the
// value away from the root, so that 2^-74 of the value are 2^-20 of such a rest.
inline bool quick_hypot(double x, double y, double& result) {
  const Pair first = square_of(x);
  const Pair second = square_of(y);
  const Pair sum = ordered_sum(first.hi, second.hi);
  const double low = sum.lo + (first.lo + second.lo);
  const double root =
      std::sqrt(multiply_add(x, x, y * y));  // platform: rounds correctly everywhere
  const Pair square = square_of(root);
  const double rest = (((sum.hi - square.hi) - square.lo) + low) / root;
  constexpr double kPart = 0x1p-20;
  result = root + rest * (0.5 + 0.5 * kPart);
  return result == root + rest * (0.5 - 0.5 * kPart);
}

// Large, small, or so far apart that the smaller one's square may underflow.
[[gnu::noinline]] double scaled_hypot(double x, double y) {
  if (x == kInfinity || y == kInfinity) return kInfinity;
  if (std::isnan(x) || std::isnan(y)) return x + y;
  if (y < x * 0x1p-60) return x + y;  // y^2 / (2 x) is less than y; neither is seen
  double result;
  // The scaled result is exact in its last place unless it goes down to the subnormal numbers.
  const double scale = x > 1.0 ? 0x1p-600 : 0x1p600;
  if (x >= 0x1p-1000 && quick_hypot(x * scale, y * scale, result)) return result / scale;
  return sure::hypot(x, y);
}

}  // namespace

double hypot(double x, double y) {
  const double a = std::fabs(x);
  const double b = std::fabs(y);
  const double large = a < b ? b : a;
  const double small = a < b ? a : b;
  if (!(large < 0x1p500 && small > 0x1p-400)) [[unlikely]]
    return scaled_hypot(large, small);
  double result;
  if (!quick_hypot(large, small, result)) [[unlikely]]
    return sure::hypot(large, small);
  return result;
}

}  // namespace vqmath63::elementary::VQ_WAY
