#include "geometry/polygon_scan.hpp"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>

#include "frame/steps_only.hpp"
#include "frame/wide_registers.hpp"
#include "geometry/crossing.hpp"
#include "geometry/quick_arithmetic.hpp"

namespace vqmath63 {
namespace {

using quick::larger;

// Bits of a magnitude: as integers they are in the order of the numbers, infinity and NaN last.
std::int32_t magnitude_bits(float value) {
  return std::bit_cast<std::int32_t>(value) & 0x7FFFFFFF;
}

double magnitude(std::int32_t bits) {
  return static_cast<double>(std::bit_cast<float>(bits));
}

struct Magnitudes {
  std::int32_t largest_x, largest_y;
  std::int32_t smallest_y = std::numeric_limits<std::int32_t>::max();  // above 0

  void add(float x, float y) {
    largest_x = std::max(largest_x, magnitude_bits(x));
    largest_y = std::max(largest_y, magnitude_bits(y));
    if (y != 0.0F) smallest_y = std::min(smallest_y, magnitude_bits(y));
  }

  // True when dx ty / dy is far from overflow on every edge: a dy that does not count as 0 is at
  // least 1e-6 of an end's Y.
  bool harmless() const {
    constexpr std::int32_t kInfinity = 0x7F800000;
    if (largest_x >= kInfinity || largest_y >= kInfinity) return false;
    const double dx = 2.0 * magnitude(largest_x);
    const double ty = 2.0 * magnitude(largest_y);
    const double dy = smallest_y < kInfinity ? 0.9e-6 * magnitude(smallest_y) : 1.0;
    return dx * ty <= 1e37 * dy && dx <= 1e37 && ty <= 1e37;
  }
};

constexpr std::size_t kBlock = 64;

// What a block of edges comes to: how many are clearly crossed, and which want a closer look.
struct Edges {
  std::int32_t crossed = 0;
  std::int32_t any_close = 0;
  std::int32_t close[kBlock];
};

// The two loops over a block, between x[0], y[0] and x[count], y[count], are written for the
// vectoriser: no branches, conditions as numbers 0 and 1.

// Whether the point is level with any edge. Most blocks of a large polygon have none.
bool any_level(float py, const float* x, const float* y, std::size_t count, Magnitudes& sizes) {
  std::int32_t largest_x = sizes.largest_x, largest_y = sizes.largest_y;
  std::int32_t smallest_y = sizes.smallest_y;
  std::int32_t level = 0;
  for (std::size_t i = 0; i < count; ++i) {
    const std::int32_t size_x = magnitude_bits(x[i]), size_y = magnitude_bits(y[i]);
    largest_x = size_x > largest_x ? size_x : largest_x;
    largest_y = size_y > largest_y ? size_y : largest_y;
    const std::int32_t above_0 = size_y | (((size_y - 1) >> 31) & 0x7FFFFFFF);  // 0: the largest
    smallest_y = above_0 < smallest_y ? above_0 : smallest_y;
    level |= (py <= y[i] ? 1 : 0) ^ (py <= y[i + 1] ? 1 : 0);
  }
  sizes = {largest_x, largest_y, smallest_y};
  return level != 0;
}

Edges look_at(float px, float py, const float* x, const float* y, std::size_t count) {
  Edges edges;
  const float abs_px = std::abs(px);
  std::int32_t crossed = 0, any_close = 0;
  for (std::size_t i = 0; i < count; ++i) {
    const float xa = x[i], ya = y[i], xb = x[i + 1], yb = y[i + 1];
    const float clear = quick::kClear * larger(larger(std::abs(xa), std::abs(xb)), abs_px);
    const float tall = quick::kCounts * larger(std::abs(ya), std::abs(yb));
    const float low_x = xa < xb ? xa : xb;
    const float high_x = larger(xa, xb);
    const std::int32_t level = (py <= ya ? 1 : 0) ^ (py <= yb ? 1 : 0);
    const std::int32_t at_right = px < low_x - clear ? 1 : 0;
    const std::int32_t not_left = px > high_x + clear ? 0 : 1;
    const std::int32_t slanted = std::abs(yb - ya) > tall ? 1 : 0;
    const std::int32_t sure = level & at_right & slanted;
    crossed ^= sure;
    edges.close[i] = (level & not_left) ^ sure;
    any_close |= edges.close[i];
  }
  edges.crossed = crossed;
  edges.any_close = any_close;
  return edges;
}

}  // namespace

std::optional<bool> scan_polygon(float px, float py, const float* x, const float* y,
                                 std::size_t n) {
  if (kStepsOnly) return std::nullopt;
  Magnitudes sizes{magnitude_bits(px), magnitude_bits(py)};
  sizes.add(x[n - 1], y[n - 1]);
  std::int32_t crossed = 0;
  for (std::size_t begin = 0; begin + 1 < n; begin += kBlock) {
    const std::size_t count = std::min(kBlock, n - 1 - begin);
    const float* const xs = x + begin;
    const float* const ys = y + begin;
    if (!in_wide_registers([&] { return any_level(py, xs, ys, count, sizes); })) continue;
    const Edges edges = in_wide_registers([&] { return look_at(px, py, xs, ys, count); });
    crossed ^= edges.crossed;
    if (edges.any_close == 0) continue;
    for (std::size_t i = 0; i < count; ++i) {
      if (edges.close[i] != 0 &&
          crosses(quick::Tolerant(), px, py, xs[i], ys[i], xs[i + 1], ys[i + 1])) {
        crossed ^= 1;
      }
    }
  }
  if (!sizes.harmless()) return std::nullopt;
  // A closed polygon's closing edge is level, so never crossed.
  if (level_with(py, y[n - 1], y[0]) &&
      crosses(quick::Tolerant(), px, py, x[n - 1], y[n - 1], x[0], y[0])) {
    crossed ^= 1;
  }
  return (crossed & 1) != 0;
}

}  // namespace vqmath63
