#include "geometry/polygon.hpp"

#include <cstdint>
#include <utility>

#include "frame/checked.hpp"
#include "frame/trap.hpp"
#include "geometry/crossing.hpp"
#include "geometry/work_array.hpp"
#include "tolerant/tolerant_arithmetic.hpp"

namespace vqmath63 {
namespace {

constexpr Location kPointInPolygon{"Geometry", "PointInPolygon"};
constexpr Location kPointOnPolygon{"Geometry", "PointOnPolygon"};
constexpr Location kPointOnLine{"Geometry", "PointOnLine"};

// Every step checked, its failure reported.
struct Stepwise {
  static float difference(float a, float b) { return ArithmeticS(a, b, "-"); }
  static float offset_at(float dx, float ty, float dy) {
    return Single(Single(dx) * Single(ty) / Single(dy)).value();
  }
};

float difference(float a, float b) {
  return Stepwise::difference(a, b);
}

// Slope and intercept of a segment's line.
struct Line {
  float m = 0.0F;
  float c = 0.0F;
};

float slope(const Segment3D& s, float dx) {
  return Single(Single(difference(s.P1.Y, s.P2.Y)) / Single(dx)).value();
}

float intercept(const Segment3D& s, float m) {
  return difference(s.P1.Y, Single(Single(m) * Single(s.P1.X)).value());
}

void exchange(Point3D& p) {
  std::swap(p.X, p.Y);
}

// The line; a vertical segment and the point are turned over on the way.
Line line_of(Segment3D& s, Point3D& point) {
  Line line;
  const float dx = difference(s.P1.X, s.P2.X);
  if (dx != 0.0F) line.m = slope(s, dx);
  line.c = intercept(s, line.m);
  if (line.m == 0.0F && difference(s.P1.Y, s.P2.Y) != 0.0F) {
    exchange(s.P1);
    exchange(s.P2);
    exchange(point);
    const float turned = difference(s.P1.X, s.P2.X);
    line.m = turned > 0.0F ? slope(s, turned) : 0.0F;
    line.c = intercept(s, line.m);
  }
  return line;
}

bool between(float a, float value, float b) {
  return (a <= value && value <= b) || (b <= value && value <= a);
}

}  // namespace

bool PointInPolygon(const Point3D& point, const Array1<Point3D>& polygon) {
  return trap<bool>(kPointInPolygon, [&](bool& result) {
    const std::int64_t n = polygon.upper();
    const float closing_x = difference(polygon(1).X, polygon(n).X);
    const float closing_y = difference(polygon(1).Y, polygon(n).Y);
    const bool closed = closing_x == 0.0F && closing_y == 0.0F;
    const std::int64_t m = closed ? n : to_long(static_cast<double>(n) + 1.0);
    WorkArray<float> x(m), y(m);
    for (std::int64_t i = 1; i <= m; ++i) {
      const Point3D& vertex = polygon(i <= n ? i : 1);
      x(i) = vertex.X;
      y(i) = vertex.Y;
    }
    bool inside = false;
    for (std::int64_t i = 1; i < m; ++i) {
      inside ^= crosses(Stepwise(), point.X, point.Y, x(i), y(i), x(i + 1), y(i + 1));
    }
    result = inside;
  });
}

bool PointOnPolygon(const Point3D& point, const Array1<Point3D>& polygon, bool qCheckBoundary) {
  return trap<bool>(kPointOnPolygon, [&](bool& result) {
    result = PointInPolygon(point, polygon);
    if (result || !qCheckBoundary) return;
    const std::int64_t n = polygon.upper();
    for (std::int64_t i = 1; i <= n && !result; ++i) {
      Segment3D edge =
          i < n ? Segment3D{polygon(i), polygon(i + 1)} : Segment3D{polygon(1), polygon(n)};
      result = PointOnLine(point, edge);
    }
  });
}

bool PointOnLine(const Point3D& point, Segment3D& segment) {
  return trap<bool>(kPointOnLine, [&](bool& result) {
    Point3D p = point;
    const Line line = line_of(segment, p);
    const Single on_line = Single(p.X) * Single(line.m) + Single(line.c);
    result = difference(p.Y, on_line.value()) == 0.0F && between(segment.P1.Y, p.Y, segment.P2.Y) &&
             between(segment.P1.X, p.X, segment.P2.X);
  });
}

}  // namespace vqmath63
