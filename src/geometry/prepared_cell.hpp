// A cell's planes worked out once, to ask about many points.
#pragma once

#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "geometry/records.hpp"

namespace vqmath63 {

/// Where the search for the highest vertex begins, and how far above that every ray ends.
inline constexpr float kLowestHeight = std::bit_cast<float>(0xFF7FFFFDU);
inline constexpr double kAboveHighest = 1000.0;

/// Answers what PointIn3DPolygon with qCheckBoundary true answers, bit for bit, for the points from
/// which no step of it can fail (in_reach); the others must go to that routine itself.
///
/// All the same steps are taken on the same Singles, but what depends on the planes alone was
/// worked out before, and the conditions of a crossing are asked in the order of their cost, since
/// all must hold. A condition is left out only where an exact comparison shows what it gives:
///  - a projection contains nothing outside its exact range of the second coordinate, nothing to
///    the right of it and, when its edges lie level exactly wherever they do tolerantly, nothing to
///    the left of it (by more than quick::kClear);
///  - a ray from above the highest vertex has no crossing in its own range.
class PreparedCell {
 public:
  /// From triangles, at most 12. For any others, and for extreme or non-finite vertices, no point
  /// is in reach.
  explicit PreparedCell(const Array1<Plane3D>& planes);

  /// True when no step of PointIn3DPolygon can fail for the point.
  bool in_reach(const Point3D& p) const {
    const float x = std::abs(p.X), y = std::abs(p.Y), z = std::abs(p.Z);
    const float ray = std::abs(ray_end_ - p.Z);
    // Without branches; a NaN fails every comparison.
    return (x <= reach_) & (y <= reach_) & (z <= reach_) & (ray >= shortest_ray_);
  }

  /// Puts those of the points k = 0 to count - 1 that are not surely outside into `candidates`, in
  /// order, and returns their number. Surely outside are only points in reach; it takes a few
  /// comparisons. count is at most kBlock.
  std::size_t candidates(const float* x, const float* y, const float* z, std::size_t count,
                         std::int32_t* candidates) const;
  static constexpr std::size_t kBlock = 256;

  /// Whether a point in reach is inside the cell.
  bool contains(const Point3D& p) const;

 private:
  // The line of a projected edge as PointOnLine sees it.
  struct Line {
    float low_x, high_x, low_y, high_y;
    float m, c;
    bool exchanged;
  };

  // A triangle seen along one axis. Its edges stand in lanes, the fourth of them empty. An edge
  // that no ray crosses, because its ends are tolerantly level, is off: dx 0, dy 1.
  struct Projection {
    alignas(16) std::array<float, 4> x, y, y_end, dx, dy;
    std::array<std::int32_t, 4> on;
    std::array<Line, 3> lines;
    float low, high;    // range of y
    float left, right;  // beyond these a point is outside

    void prepare(const std::array<float, 3>& xs, const std::array<float, 3>& ys);
    bool crossed_by_ray(float px, float py) const;
    bool on_edge(float px, float py) const;
    // PointOnPolygon with qCheckBoundary true.
    bool contains(float px, float py) const {
      if (!((py >= low) & (py <= high) & (px >= left) & (px <= right))) return false;
      return crossed_by_ray(px, py) || on_edge(px, py);
    }
    // Bounds the factor by which a step can enlarge a coordinate; infinite when a slope overflowed.
    double steepness() const;
  };

  struct Triangle {
    Point3D vertex, normal;
    Projection xy, xz, zy;

    bool prepare(const Array1<Point3D>& vertices);
    bool crossed_above(const Point3D& p, float ray, float ray_end) const;
  };

  static constexpr std::size_t kMost = 12;

  // Where the triangles can be crossed at all: all three projections must contain the crossing.
  struct Extents {
    std::array<float, kMost> low_y, high_y, left, right, high_z;
  };

  bool prepare(const Array1<Plane3D>& planes);
  void add_extent(const Triangle& triangle);

  std::array<Triangle, kMost> triangles_;
  Extents extents_;
  std::size_t count_ = 0;
  float reach_ = -1.0F;
  float ray_end_ = 0.0F;
  float shortest_ray_ = 0.0F;
  float low_y_, high_y_, left_, right_, high_z_;
};

}  // namespace vqmath63
