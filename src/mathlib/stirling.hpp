// The asymptotic series that the gamma function and its logarithm share.
#pragma once

#include <cstddef>

#include "mathlib/cody_tables.hpp"

namespace vqmath63 {

/// From here on the series is as exact as a Double.
inline constexpr double kAsymptotic = 12.0;

/// log Gamma(y) - ((y - 1/2) log y - y + log(2 pi) / 2) for y >= 12.
inline double stirling_sum(double y) {
  const double inverse = 1.0 / (y * y);
  double sum = cody::kStirling[6];
  for (std::size_t i = 0; i < 6; ++i) sum = sum * inverse + cody::kStirling[i];
  return sum / y;
}

}  // namespace vqmath63
