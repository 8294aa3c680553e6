#include "geometry/prepared_cell.hpp"

#include <algorithm>
#include <limits>
#include <utility>

#include "frame/steps_only.hpp"
#include "frame/wide_registers.hpp"
#include "geometry/crossing.hpp"
#include "geometry/quick_arithmetic.hpp"

namespace vqmath63 {
namespace {

using quick::difference;

constexpr float kInfinity = std::numeric_limits<float>::infinity();

// Larger coordinates are left to the step by step routines, so that no product of the preparation
// overflows.
constexpr float kLargestVertex = 1e9F;
// What a step may enlarge a coordinate to: sums of a few of these are still Singles.
constexpr double kLargestStep = 1e37;
// Quotients by less than this would lose digits.
constexpr double kSmallestDivisor = 1e-30;

double wide(float value) {
  return static_cast<double>(value);
}

float dot(const Point3D& a, const Point3D& b) {
  return static_cast<float>((wide(a.Y) * wide(b.Y) + wide(a.X) * wide(b.X)) +
                            wide(a.Z) * wide(b.Z));
}

// a b - c d.
float determinant(float a, float b, float c, float d) {
  return static_cast<float>(wide(a) * wide(b) - wide(c) * wide(d));
}

// The differences as they are, and whether all of them were clear of the tolerance.
struct Unsnapped {
  std::int32_t counts = 1;
  float difference(float a, float b) {
    const float d = a - b;
    counts &= std::abs(d) > quick::kCounts * quick::larger(std::abs(a), std::abs(b)) ? 1 : 0;
    return d;
  }
  static float offset_at(float dx, float ty, float dy) { return quick::offset_at(dx, ty, dy); }
};

// With the tolerance, without a branch. 0 over 0 is no ratio below it, and the difference is 0 as
// it is.
struct SnappedByRatio {
  static float difference(float a, float b) {
    const float d = a - b;
    const float ratio = std::abs(d) / quick::larger(std::abs(a), std::abs(b));
    return d * static_cast<float>(ratio < detail::kNegligible ? 0 : 1);
  }
  static float offset_at(float dx, float ty, float dy) { return quick::offset_at(dx, ty, dy); }
};

Point3D from_to(const Point3D& a, const Point3D& b) {
  return {difference(b.X, a.X), difference(b.Y, a.Y), difference(b.Z, a.Z)};
}

Point3D normal_of(const Point3D& a, const Point3D& b, const Point3D& c) {
  const Point3D u = from_to(a, b);
  const Point3D v = from_to(a, c);
  return {determinant(u.Y, v.Z, u.Z, v.Y), determinant(u.Z, v.X, u.X, v.Z),
          determinant(u.X, v.Y, u.Y, v.X)};
}

double extent(const Point3D& n) {
  return std::abs(wide(n.X)) + std::abs(wide(n.Y)) + std::abs(wide(n.Z));
}

}  // namespace

void PreparedCell::Projection::prepare(const std::array<float, 3>& xs,
                                       const std::array<float, 3>& ys) {
  // Left of all edges a ray crosses an even number of them, unless one that it should cross counts
  // as level. (The closing edge of a triangle that counts as closed without it does.)
  bool even = true;
  for (std::size_t i = 0; i < 4; ++i) {
    const std::size_t begin = i % 3, end = (i + 1) % 3;
    x[i] = xs[begin];
    y[i] = ys[begin];
    y_end[i] = ys[end];
    dx[i] = difference(xs[end], xs[begin]);
    dy[i] = difference(ys[end], ys[begin]);
    const bool edge = i < 3 && dy[i] != 0.0F;
    on[i] = edge ? 1 : 0;
    if (!edge) {
      even = even && (i == 3 || ys[begin] == ys[end]);
      dx[i] = 0.0F;
      dy[i] = 1.0F;
    }
  }
  const auto [low_x, high_x] = std::minmax_element(xs.begin(), xs.end());
  const auto [low_y, high_y] = std::minmax_element(ys.begin(), ys.end());
  const float clear = quick::kClear * std::max(std::abs(*low_x), std::abs(*high_x));
  low = *low_y;
  high = *high_y;
  left = even ? *low_x - clear : -kInfinity;
  right = *high_x + clear;

  constexpr std::size_t kEnds[3][2] = {{0, 1}, {1, 2}, {0, 2}};
  for (std::size_t i = 0; i < 3; ++i) {
    float x1 = xs[kEnds[i][0]], y1 = ys[kEnds[i][0]], x2 = xs[kEnds[i][1]], y2 = ys[kEnds[i][1]];
    Line& line = lines[i];
    const float run = difference(x1, x2);
    const float rise = difference(y1, y2);
    line.m = run != 0.0F ? rise / run : 0.0F;
    // A slope that vanishes only as a Single exchanges too, but its dx / dy leaves no point in
    // reach.
    line.exchanged = run == 0.0F && rise != 0.0F;
    if (line.exchanged) {
      std::swap(x1, y1);
      std::swap(x2, y2);
    }
    line.c = difference(y1, line.m * x1);
    line.low_x = std::min(x1, x2);
    line.high_x = std::max(x1, x2);
    line.low_y = std::min(y1, y2);
    line.high_y = std::max(y1, y2);
  }
}

bool PreparedCell::Projection::crossed_by_ray(float px, float py) const {
  // All lanes at once, as if nothing were within the tolerance: written for the vectoriser.
  std::int32_t crossed = 0, doubtful = 0;
  for (std::size_t i = 0; i < 4; ++i) {
    const std::int32_t level = (level_with(py, y[i], y_end[i]) ? 1 : 0) & on[i];
    Unsnapped arithmetic;
    const float at = beside(arithmetic, px, py, x[i], y[i], dx[i], dy[i]);
    crossed ^= level & (at < 0.0F ? 1 : 0);
    doubtful |= level & (arithmetic.counts ^ 1);
  }
  if (doubtful == 0) return crossed != 0;
  crossed = 0;
  for (std::size_t i = 0; i < 4; ++i) {
    const std::int32_t level = (level_with(py, y[i], y_end[i]) ? 1 : 0) & on[i];
    SnappedByRatio arithmetic;
    crossed ^= level & (beside(arithmetic, px, py, x[i], y[i], dx[i], dy[i]) < 0.0F ? 1 : 0);
  }
  return crossed != 0;
}

bool PreparedCell::Projection::on_edge(float px, float py) const {
  for (const Line& line : lines) {
    const float a = line.exchanged ? py : px;
    const float b = line.exchanged ? px : py;
    if (!((b >= line.low_y) & (b <= line.high_y) & (a >= line.low_x) & (a <= line.high_x))) {
      continue;
    }
    const auto on_line = static_cast<float>(wide(a) * wide(line.m) + wide(line.c));
    if (difference(b, on_line) == 0.0F) return true;
  }
  return false;
}

double PreparedCell::Projection::steepness() const {
  double most = 0.0;
  for (std::size_t i = 0; i < 3; ++i) {
    most += std::abs(wide(lines[i].m));
    most += std::abs(wide(dx[i]) / wide(dy[i]));
  }
  return most;
}

bool PreparedCell::Triangle::prepare(const Array1<Point3D>& vertices) {
  if (!vertices.allocated() || vertices.lower() > 1 || vertices.upper() != 3) return false;
  const Point3D& a = vertices(1);
  const Point3D& b = vertices(2);
  const Point3D& c = vertices(3);
  for (const Point3D& p : {a, b, c}) {
    for (const float value : {p.X, p.Y, p.Z}) {
      if (!(std::abs(value) <= kLargestVertex)) return false;
    }
  }
  vertex = a;
  normal = normal_of(a, b, c);
  xy.prepare({a.X, b.X, c.X}, {a.Y, b.Y, c.Y});
  xz.prepare({a.X, b.X, c.X}, {a.Z, b.Z, c.Z});
  zy.prepare({a.Z, b.Z, c.Z}, {a.Y, b.Y, c.Y});
  return true;
}

bool PreparedCell::Triangle::crossed_above(const Point3D& p, float ray, float ray_end) const {
  if (!xy.contains(p.X, p.Y)) return false;
  const float t = dot(from_to(p, vertex), normal) / (ray * normal.Z);
  const float z = quick::sum(p.Z, ray * t);
  const bool in_ray = (p.Z <= z && z <= ray_end) || (ray_end <= z && z <= p.Z);
  return in_ray && xz.contains(p.X, z) && zy.contains(z, p.Y);
}

PreparedCell::PreparedCell(const Array1<Plane3D>& planes) {
  if (kStepsOnly || !prepare(planes)) reach_ = -1.0F;
}

bool PreparedCell::prepare(const Array1<Plane3D>& planes) {
  low_y_ = left_ = kInfinity;
  high_y_ = right_ = high_z_ = -kInfinity;
  extents_.low_y.fill(kInfinity);  // no point is within an extent that is not used
  extents_.high_y.fill(-kInfinity);
  float highest = kLowestHeight;
  double growth = 1.0;
  double smallest_slant = kInfinity;
  for (std::int64_t i = 1; i <= planes.upper(); ++i) {
    if (count_ == kMost) return false;
    Triangle& triangle = triangles_[count_];
    if (!triangle.prepare(planes(i).Vertices)) return false;
    highest = std::max(highest, triangle.xz.high);
    growth += extent(triangle.normal) + triangle.xy.steepness() + triangle.xz.steepness() +
              triangle.zy.steepness();
    if (triangle.normal.Z == 0.0F) continue;  // parallel to every ray
    const double slant = std::abs(wide(triangle.normal.Z));
    growth += extent(triangle.normal) / slant;
    smallest_slant = std::min(smallest_slant, slant);
    add_extent(triangle);
    ++count_;
  }
  ray_end_ = static_cast<float>(wide(highest) + kAboveHighest);
  // No step enlarges a coordinate by more than `growth`, nor a vertex beyond kLargestStep.
  const double reach = kLargestStep / growth - wide(kLargestVertex);
  const double shortest = std::max(1.0, kSmallestDivisor / smallest_slant);
  if (!(reach > wide(kLargestVertex) && shortest < kLargestStep)) return false;
  reach_ = static_cast<float>(reach);
  shortest_ray_ = static_cast<float>(shortest);
  return true;
}

void PreparedCell::add_extent(const Triangle& triangle) {
  extents_.low_y[count_] = triangle.xy.low;
  extents_.high_y[count_] = triangle.xy.high;
  extents_.left[count_] = std::max(triangle.xy.left, triangle.xz.left);
  extents_.right[count_] = std::min(triangle.xy.right, triangle.xz.right);
  extents_.high_z[count_] = triangle.xz.high;
  low_y_ = std::min(low_y_, extents_.low_y[count_]);
  high_y_ = std::max(high_y_, extents_.high_y[count_]);
  left_ = std::min(left_, extents_.left[count_]);
  right_ = std::max(right_, extents_.right[count_]);
  high_z_ = std::max(high_z_, extents_.high_z[count_]);
}

std::size_t PreparedCell::candidates(const float* x, const float* y, const float* z,
                                     std::size_t count, std::int32_t* candidates) const {
  std::int32_t wanted[kBlock];
  in_wide_registers([&] {
    for (std::size_t i = 0; i < count; ++i) {
      const std::int32_t reached = in_reach({x[i], y[i], z[i]}) ? 1 : 0;
      const std::int32_t within = ((y[i] >= low_y_) & (y[i] <= high_y_) & (x[i] >= left_) &
                                   (x[i] <= right_) & (z[i] <= high_z_))
                                      ? 1
                                      : 0;
      wanted[i] = (reached ^ 1) | within;
    }
  });
  std::size_t found = 0;
  for (std::size_t i = 0; i < count; ++i) {
    candidates[found] = static_cast<std::int32_t>(i);
    found += static_cast<std::size_t>(wanted[i]);
  }
  return found;
}

constexpr std::array<std::uint32_t, 12> kBits = {1, 2, 4, 8, 16, 32, 64, 128, 256, 512, 1024, 2048};

bool PreparedCell::contains(const Point3D& p) const {
  const float ray = difference(ray_end_, p.Z);
  if (ray == 0.0F) return false;
  std::uint32_t crossable = 0;  // a bit for each triangle
  for (std::size_t i = 0; i < kMost; ++i) {
    const std::uint32_t within_y =
        (p.Y >= extents_.low_y[i] ? 1U : 0U) & (p.Y <= extents_.high_y[i] ? 1U : 0U);
    const std::uint32_t within_x =
        (p.X >= extents_.left[i] ? 1U : 0U) & (p.X <= extents_.right[i] ? 1U : 0U);
    const std::uint32_t below = p.Z <= extents_.high_z[i] ? 1U : 0U;
    crossable |= (0U - (within_x & within_y & below)) & kBits[i];
  }
  bool inside = false;
  for (; crossable != 0; crossable &= crossable - 1) {
    const auto i = static_cast<std::size_t>(std::countr_zero(crossable));
    inside ^= triangles_[i].crossed_above(p, ray, ray_end_);
  }
  return inside;
}

}  // namespace vqmath63
