// Points inside cells and segments through them.
#include <algorithm>
#include <bit>

#include "frame/checked.hpp"
#include "frame/trap.hpp"
#include "geometry/cell.hpp"
#include "geometry/prepared_cell.hpp"
#include "geometry/vectors.hpp"

namespace vqmath63 {
namespace {

constexpr Location kPointsInCube{"ztGeometry", "PointsInCube"};
constexpr Location kPointIn3DPolygon{"Geometry", "PointIn3DPolygon"};
constexpr Location kLineIntersects{"Geometry", "LineIntersectsWith3DPolygon"};

bool between(float a, float value, float b) {
  return (a <= value && value <= b) || (b <= value && value <= a);
}

// Within the exact ranges of the segment.
bool in_box(const Segment3D& s, const Point3D& p) {
  return between(s.P1.X, p.X, s.P2.X) && between(s.P1.Y, p.Y, s.P2.Y) &&
         between(s.P1.Z, p.Z, s.P2.Z);
}

// Height at which every ray of these planes ends.
float ray_end(const Array1<Plane3D>& planes) {
  float highest = kLowestHeight;
  for (std::int64_t i = 1; i <= planes.upper(); ++i) {
    const Array1<Point3D>& v = planes(i).Vertices;
    for (std::int64_t k = 1; k <= v.upper(); ++k) {
      if (highest < v(k).Z) highest = v(k).Z;
    }
  }
  return to_single(Double(highest).value() + kAboveHighest);
}

// How many of the points 1 to n can be read from all three arrays.
std::int32_t common_length(std::int32_t n, const Array1<const float>& x,
                           const Array1<const float>& y, const Array1<const float>& z) {
  for (const auto* a : {&x, &y, &z}) n = a->covers(1, 1) ? std::min(n, a->upper()) : 0;
  return n;
}

constexpr auto kBlock = static_cast<std::int64_t>(PreparedCell::kBlock);

}  // namespace

bool PointIn3DPolygon(const Point3D& point, const Array1<Plane3D>& planes, bool qCheckBoundary) {
  return trap<bool>(kPointIn3DPolygon, [&](bool& result) {
    const Segment3D ray{point, {point.X, point.Y, ray_end(planes)}};
    bool inside = false;
    for (std::int64_t i = 1; i <= planes.upper(); ++i) {
      bool crosses = false;
      bool success = false;
      Point3D crossing;
      PointIntersectionOfLineAndPlane(ray, planes(i), crosses, crossing, success);
      if (!success) return;
      if (crosses && in_box(ray, crossing) &&
          PointInBoundedPlane(planes(i), crossing, qCheckBoundary)) {
        inside = !inside;
      }
    }
    result = inside;
  });
}

bool LineIntersectsWith3DPolygon(const Segment3D& segment, const Array1<Plane3D>& planes,
                                 Array1<Point3D>& crossing_points) {
  return trap<bool>(kLineIntersects, [&](bool& result) {
    std::int32_t count = 0;
    for (std::int64_t i = 1; i <= planes.upper(); ++i) {
      bool crosses = false;
      bool success = false;
      Point3D crossing;
      PointIntersectionOfLineAndPlane(segment, planes(i), crosses, crossing, success);
      if (!success) break;
      if (crosses && in_box(segment, crossing) && PointInBoundedPlane(planes(i), crossing, true)) {
        ++count;
        if (count == 1) {
          crossing_points.redim(1, 1);
        } else {
          crossing_points.redim_preserve(count);
        }
        crossing_points(count) = crossing;
      }
    }
    result = count > 0;
  });
}

void PointsInCube(const Array1<const float>& X, const Array1<const float>& Y,
                  const Array1<const float>& Z, const Array2<const float>& top,
                  const Array2<const float>& bottom, Array1<Boolean>& in_cell,
                  Array1<std::int32_t>& indices, std::int32_t& count, bool& success) {
  trap(kPointsInCube, [&] {
    success = false;
    if (bottom.rows().upper != 3 && top.rows().upper != 3) return;
    if (bottom.columns().upper != top.columns().upper) return;
    Array1<Plane3D> planes;
    bool built = false;
    CubePlanes(top, bottom, planes, built);
    if (!built) return;
    const std::int32_t n = X.upper();
    if (can_size_results(X.bounds())) {
      in_cell.redim(1, n);
      indices.redim(1, n);
    }
    count = 0;
    const PreparedCell cell(planes);
    const std::int32_t readable = common_length(n, X, Y, Z);
    std::int32_t candidates[PreparedCell::kBlock];
    for (std::int64_t begin = 1; begin <= readable; begin += kBlock) {
      const auto size =
          static_cast<std::size_t>(std::min<std::int64_t>(kBlock, readable - begin + 1));
      const std::size_t found = cell.candidates(&X(begin), &Y(begin), &Z(begin), size, candidates);
      for (std::size_t k = 0; k < found; ++k) {
        const auto i = static_cast<std::int32_t>(begin + candidates[k]);
        const Point3D point{X(i), Y(i), Z(i)};
        if (cell.in_reach(point) ? cell.contains(point) : PointIn3DPolygon(point, planes, true)) {
          in_cell(i) = true;
          indices(++count) = i;
        }
      }
    }
    if (readable < n) raise_fault(ErrorNumber::kSubscript);  // reading the next point
    if (count > 0 && count < n) indices.redim_preserve(count);
    success = true;
  });
}

}  // namespace vqmath63
