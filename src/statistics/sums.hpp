// Running sums over samples 1 to n, the loops behind the measures and the summaries.
#pragma once

#include <cmath>
#include <cstdint>

#include "frame/array.hpp"

namespace vqmath63 {

// All of these raise faults and report nothing: 9 for an unallocated array, an upper bound below 1
// or a missing element, 6 and 5 for the first step that overflows or is invalid. n is the upper
// bound of x; a second array is read at the same indices. Sums are Singles, stored after every
// step in index order; each term is rounded to Single first.

/// x(1) + ... + x(n).
float sum_of(const Array1<const float>& x);
/// Sum of x(i) x(i).
float sum_of_squares(const Array1<const float>& x);
/// Sum of |x(i)|.
float sum_of_magnitudes(const Array1<const float>& x);
/// Sum of x(i) y(i).
float sum_of_products(const Array1<const float>& x, const Array1<const float>& y);

/// What one pass over an array gives.
struct Summary {
  float sum = 0.0F;
  float squares = 0.0F;
  float absolute = 0.0F;  ///< |x(n)|: replaced at every step, not added up
  float minimum = 0.0F;
  float maximum = 0.0F;

  const Summary& value() const { return *this; }
  /// A sample that is not finite leaves a sum that is not.
  bool all_finite() const { return std::isfinite(sum) && std::isfinite(squares); }
};

/// What one pass over a pair of arrays gives.
struct PairSummary {
  Summary x;
  Summary y;
  float products = 0.0F;

  const PairSummary& value() const { return *this; }
  bool all_finite() const { return x.all_finite() && y.all_finite() && std::isfinite(products); }
};

/// One pass; extremes start at element 1 and are replaced by strictly larger or smaller ones only.
Summary summary_of(const Array1<const float>& x);
PairSummary summary_of(const Array1<const float>& x, const Array1<const float>& y);

}  // namespace vqmath63
