// What the tests of the geometry share: polygons, corner arrays and cells from lists.
#pragma once

#include <array>
#include <cstdint>
#include <limits>
#include <vector>

#include "frame/arrays.hpp"
#include "frame/companion_fixture.hpp"
#include "geometry/cell.hpp"

namespace vqmath63 {

inline constexpr float kLargest = std::numeric_limits<float>::max();

using Corners = Array2<float>;

/// A corner array of `rows` coordinates: the points' own in rows 1 to 3, NaN in any further row.
inline Corners corners(const std::vector<Point3D>& points, std::int32_t rows = 3) {
  const auto n = static_cast<std::int32_t>(points.size());
  Corners array({1, rows}, {1, n});
  for (std::int32_t k = 1; k <= n; ++k) {
    const Point3D& p = points[static_cast<std::size_t>(k) - 1];
    const float values[] = {p.X, p.Y, p.Z};
    for (std::int32_t row = 1; row <= rows; ++row)
      array(row, k) = row <= 3 ? values[row - 1] : kNaN;
  }
  return array;
}

struct Cell {
  std::vector<Point3D> top, bottom;
  std::int32_t top_rows = 3, bottom_rows = 3;
  Corners top_corners() const { return corners(top, top_rows); }
  Corners bottom_corners() const { return corners(bottom, bottom_rows); }
};

/// The box from the origin to (x, y, z), moved.
inline Cell box(float x, float y, float z, const Point3D& by = {}) {
  Cell cell{{{0, 0, z}, {x, 0, z}, {x, y, z}, {0, y, z}},
            {{0, 0, 0}, {x, 0, 0}, {x, y, 0}, {0, y, 0}}};
  for (auto* face : {&cell.top, &cell.bottom}) {
    for (Point3D& p : *face) p = {p.X + by.X, p.Y + by.Y, p.Z + by.Z};
  }
  return cell;
}

inline Plane3D plane_of(const std::vector<Point3D>& points, std::int32_t lower = 1) {
  return {array_of(points, lower)};
}

}  // namespace vqmath63
