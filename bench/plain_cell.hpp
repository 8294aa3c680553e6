// Points in a cell as one writes it for a program of one's own: the steps of one point against one
// cell, in their order, with what depends on the cell alone taken out of the loop over the points.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <span>
#include <stdexcept>
#include <utility>
#include <vector>

#include "geometry/cell.hpp"

namespace bench {

using vqmath63::Point3D;

/// A number that does not fit a Single throws.
inline float finite(float number) {
  if (!std::isfinite(number)) throw std::overflow_error("does not fit a Single");
  return number;
}
inline float stored(double number) {
  return finite(static_cast<float>(number));
}

inline double wide(float number) {
  return static_cast<double>(number);
}

/// A sum, which is nothing where it is less than a millionth of the larger of its operands.
inline float sum(float a, float b) {
  const float total = finite(a + b);
  const float larger = std::max(std::fabs(a), std::fabs(b));
  return larger != 0.0F && std::fabs(total / larger) < 1e-6F ? 0.0F : total;
}
inline float difference(float a, float b) {
  return sum(a, -b);
}

inline bool between(float a, float value, float b) {
  return (a <= value && value <= b) || (b <= value && value <= a);
}

/// A triangle seen along one axis, its edges for the crossings of a ray towards +X and its lines
/// for the points on them.
class PlainProjection {
 public:
  PlainProjection(const float (&x)[3], const float (&y)[3]) {
    const bool closed = difference(x[0], x[2]) == 0.0F && difference(y[0], y[2]) == 0.0F;
    for (std::size_t i = 0; i < (closed ? 2U : 3U); ++i) {
      const std::size_t end = (i + 1) % 3;
      const float dy = difference(y[end], y[i]);
      if (dy != 0.0F) edges_.push_back({x[i], y[i], y[end], difference(x[end], x[i]), dy});
    }
    for (const auto& [from, to] : {std::pair{0, 1}, {1, 2}, {0, 2}}) {
      lines_.push_back(line({x[from], y[from], 0.0F}, {x[to], y[to], 0.0F}));
    }
  }

  /// Inside or on the boundary.
  bool contains(float x, float y) const {
    bool inside = false;
    for (const Edge& edge : edges_) {
      if ((y <= edge.y) == (y <= edge.y_end)) continue;
      const float ty = difference(y, edge.y);
      const float u = stored(wide(edge.dx) * wide(ty) / wide(edge.dy));
      if (difference(difference(x, edge.x), u) < 0.0F) inside = !inside;
    }
    return inside || std::any_of(lines_.begin(), lines_.end(),
                                 [=](const Line& line) { return line.holds(x, y); });
  }

 private:
  struct Edge {
    float x, y, y_end, dx, dy;
  };
  struct Line {
    Point3D p1, p2;
    float m, c;
    bool exchanged;
    bool holds(float x, float y) const {
      if (exchanged) std::swap(x, y);
      return between(p1.Y, y, p2.Y) && between(p1.X, x, p2.X) &&
             difference(y, stored(wide(x) * wide(m) + wide(c))) == 0.0F;
    }
  };

  static Line line(Point3D p1, Point3D p2) {
    const float dx = difference(p1.X, p2.X), dy = difference(p1.Y, p2.Y);
    float m = dx != 0.0F ? stored(wide(dy) / wide(dx)) : 0.0F;
    const bool exchanged = m == 0.0F && dy != 0.0F;
    if (exchanged) {
      std::swap(p1.X, p1.Y);
      std::swap(p2.X, p2.Y);
      m = 0.0F;  // the other difference, dx, was none
    }
    return {p1, p2, m, difference(p1.Y, stored(wide(m) * wide(p1.X))), exchanged};
  }

  std::vector<Edge> edges_;
  std::vector<Line> lines_;
};

class PlainCell {
 public:
  using Corners = vqmath63::Array2<float>;

  PlainCell(const Corners& top, const Corners& bottom) {
    const auto corner = [](const Corners& of, int k) {
      return Point3D{of(1, k), of(2, k), of(3, k)};
    };
    const auto add_face = [&](const Point3D& a, const Point3D& b, const Point3D& c,
                              const Point3D& d) {
      for (const Point3D& p : {a, b, c, d}) highest_ = std::max(highest_, p.Z);
      triangles_.emplace_back(a, b, c);
      triangles_.emplace_back(c, d, a);
    };
    for (const Corners* face : {&top, &bottom}) {
      add_face(corner(*face, 1), corner(*face, 2), corner(*face, 3), corner(*face, 4));
    }
    for (int k = 1; k <= 4; ++k) {
      const int next = k % 4 + 1;
      add_face(corner(bottom, k), corner(top, k), corner(top, next), corner(bottom, next));
    }
  }

  /// Whether a ray upwards from p crosses an odd number of the triangles.
  bool contains(const Point3D& p) const {
    const float end = stored(wide(highest_) + 1000.0);
    const float ray = difference(end, p.Z);
    bool inside = false;
    for (const Triangle& triangle : triangles_) {
      const Point3D& normal = triangle.normal;
      const float denominator = stored(wide(ray) * wide(normal.Z));
      if (denominator == 0.0F) continue;
      const Point3D& vertex = triangle.vertex;
      const float numerator = stored((wide(difference(vertex.Y, p.Y)) * wide(normal.Y) +
                                      wide(difference(vertex.X, p.X)) * wide(normal.X)) +
                                     wide(difference(vertex.Z, p.Z)) * wide(normal.Z));
      const float t = stored(wide(numerator) / wide(denominator));
      const float z = sum(p.Z, stored(wide(ray) * wide(t)));
      if (between(p.Z, z, end) && triangle.xy.contains(p.X, p.Y) && triangle.xz.contains(p.X, z) &&
          triangle.zy.contains(z, p.Y)) {
        inside = !inside;
      }
    }
    return inside;
  }

 private:
  struct Triangle {
    Point3D vertex, normal;
    PlainProjection xy, xz, zy;
    Triangle(const Point3D& a, const Point3D& b, const Point3D& c)
        : vertex(a),
          normal(cross(from_to(a, b), from_to(a, c))),
          xy({a.X, b.X, c.X}, {a.Y, b.Y, c.Y}),
          xz({a.X, b.X, c.X}, {a.Z, b.Z, c.Z}),
          zy({a.Z, b.Z, c.Z}, {a.Y, b.Y, c.Y}) {}
  };

  static Point3D from_to(const Point3D& a, const Point3D& b) {
    return {difference(b.X, a.X), difference(b.Y, a.Y), difference(b.Z, a.Z)};
  }
  static Point3D cross(const Point3D& u, const Point3D& v) {
    return {stored(wide(u.Y) * wide(v.Z) - wide(u.Z) * wide(v.Y)),
            stored(wide(u.Z) * wide(v.X) - wide(u.X) * wide(v.Z)),
            stored(wide(u.X) * wide(v.Y) - wide(u.Y) * wide(v.X))};
  }

  std::vector<Triangle> triangles_;
  float highest_ = -3.4028231E+38F;
};

/// What Points_In_CubeIndex gives: a flag of each point, and the numbers, from 1, of those inside.
struct PlainContainment {
  std::vector<std::int16_t> inside;
  std::vector<std::int32_t> indices;
  std::size_t count = 0;

  PlainContainment(std::span<const float> x, std::span<const float> y, std::span<const float> z,
                   const PlainCell& cell)
      : inside(x.size()), indices(x.size()) {
    if (y.size() < x.size() || z.size() < x.size()) throw std::out_of_range("coordinates");
    for (std::size_t i = 0; i < x.size(); ++i) {
      if (!cell.contains({x[i], y[i], z[i]})) continue;
      inside[i] = -1;
      indices[count++] = static_cast<std::int32_t>(i) + 1;
    }
    if (count > 0) indices.resize(count);
  }
};

}  // namespace bench
