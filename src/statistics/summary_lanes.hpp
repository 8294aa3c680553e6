// The plain run of the summaries, four samples at a time: additions stay in the order of the
// samples, one Single after another, and what has no order among samples goes side by side.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstring>

#include "statistics/sums.hpp"

namespace vqmath63::lanes {

using Singles [[gnu::vector_size(16)]] = float;

inline Singles four_at(const float* x) {
  Singles four;
  std::memcpy(&four, x, sizeof four);
  return four;
}

inline Singles all_of(float x) {
  return Singles{x, x, x, x};
}

/// The first of a column's samples that equals its extreme: zeros of both signs are equal.
inline float first_equal(const float* x, std::size_t n, float extreme) {
  return extreme == 0.0F ? *std::find(x, x + n, 0.0F) : extreme;
}

/// Extremes of one column. Of samples with a NaN they are anything.
class Extremes {
 public:
  explicit Extremes(float first) : low_(all_of(first)), high_(low_) {}

  void add(Singles x) {
    low_ = x < low_ ? x : low_;
    high_ = x > high_ ? x : high_;
  }

  /// Those of the samples x[0] to x[n - 1], of which all were added.
  void store(Summary& to, const float* x, std::size_t n) const {
    float low = low_[0], high = high_[0];
    for (int k = 1; k < 4; ++k) {
      low = std::min(low, low_[k]);
      high = std::max(high, high_[k]);
    }
    to.minimum = first_equal(x, n, low);
    to.maximum = first_equal(x, n, high);
    to.absolute = std::fabs(x[n - 1]);
  }

 private:
  Singles low_, high_;
};

// A sum begins with -0, to which every number adds up to itself.
constexpr float kNothing = -0.0F;

/// Sum, squares and extremes of n samples, n at least 1.
inline Summary summary(const float* x, std::size_t n) {
  Extremes extremes(x[0]);
  Singles sums = all_of(kNothing);  // sum, squares; the upper half is of no use
  const auto add = [&sums](Singles pairs) {
    sums += pairs;
    sums += __builtin_shufflevector(pairs, pairs, 2, 3, 2, 3);
  };
  std::size_t i = 0;
  for (; i + 4 <= n; i += 4) {
    const Singles four = four_at(x + i), squares = four * four;
    add(__builtin_shufflevector(four, squares, 0, 4, 1, 5));
    add(__builtin_shufflevector(four, squares, 2, 6, 3, 7));
    extremes.add(four);
  }
  for (; i < n; ++i) {
    sums += Singles{x[i], x[i] * x[i], 0.0F, 0.0F};
    extremes.add(all_of(x[i]));
  }
  Summary result{sums[0], sums[1]};
  extremes.store(result, x, n);
  return result;
}

/// The same of n pairs, and the sum of their products.
inline PairSummary summary(const float* x, const float* y, std::size_t n) {
  Extremes x_extremes(x[0]), y_extremes(y[0]);
  Singles sums = all_of(kNothing);  // of x, of y, their squares
  float products = kNothing;
  const auto add = [&sums](Singles pairs) {
    const Singles squares = pairs * pairs;
    sums += __builtin_shufflevector(pairs, squares, 0, 1, 4, 5);
    sums += __builtin_shufflevector(pairs, squares, 2, 3, 6, 7);
  };
  std::size_t i = 0;
  for (; i + 4 <= n; i += 4) {
    const Singles xs = four_at(x + i), ys = four_at(y + i), xys = xs * ys;
    add(__builtin_shufflevector(xs, ys, 0, 4, 1, 5));
    add(__builtin_shufflevector(xs, ys, 2, 6, 3, 7));
    for (int k = 0; k < 4; ++k) products += xys[k];
    x_extremes.add(xs);
    y_extremes.add(ys);
  }
  for (; i < n; ++i) {
    sums += Singles{x[i], y[i], x[i] * x[i], y[i] * y[i]};
    products += x[i] * y[i];
    x_extremes.add(all_of(x[i]));
    y_extremes.add(all_of(y[i]));
  }
  PairSummary result{{sums[0], sums[2]}, {sums[1], sums[3]}, products};
  x_extremes.store(result.x, x, n);
  y_extremes.store(result.y, y, n);
  return result;
}

}  // namespace vqmath63::lanes
