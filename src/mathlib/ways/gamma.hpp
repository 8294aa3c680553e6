// The gamma function and its logarithm from 12 on, W. J. Cody's GAMMA and ALGAMA. The files of this
// folder are compiled as those of elementary/ways are, for the functions inside; products and sums
// of theirs are rounded one by one both ways.
#pragma once

#include <cmath>

#include "elementary/ways/inlined.hpp"
#include "mathlib/constants.hpp"
#include "mathlib/special_ways.hpp"
#include "mathlib/stirling.hpp"

namespace vqmath63::special::VQ_WAY {

using elementary::VQ_WAY::inlined_exp;
using elementary::VQ_WAY::inlined_log;

// A NaN passes by the terms beside the logarithm.
double gamma_from_12(double y) noexcept {
  const double sum = stirling_sum(y) - y + constants::kLogSqrtTwoPi;
  const double logarithm = sum + (y - 0.5) * inlined_log(y);
  // Not so for a NaN and beside the limit.
  if (std::fabs(logarithm) < elementary::VQ_WAY::kMostExponent) [[likely]]
    return inlined_exp(logarithm);
  return elementary::VQ_WAY::exp(logarithm);
}

double log_gamma_from_12(double x) noexcept {
  constexpr double kSeriesLimit = 2.25e76;  // beyond, the asymptotic series adds nothing
  const double series = x <= kSeriesLimit ? stirling_sum(x) : 0.0;
  const double logarithm = inlined_log(x);
  return series + constants::kLogSqrtTwoPi - 0.5 * logarithm + x * (logarithm - 1.0);
}

}  // namespace vqmath63::special::VQ_WAY
