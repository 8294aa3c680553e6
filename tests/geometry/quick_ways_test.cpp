// The prepared cell and the polygon scan beside the step by step routines, bit for bit and message
// for message, on seeded random shapes and points.
#include <cmath>
#include <random>

#include "geometry/polygon.hpp"
#include "geometry/shapes.hpp"
#include "mathlib/math_lib.hpp"

namespace vqmath63 {
namespace {

using Points = std::vector<Point3D>;
constexpr float Point3D::*kAxes[] = {&Point3D::X, &Point3D::Y, &Point3D::Z};

class QuickWaysTest : public CompanionTest {
 protected:
  std::size_t pick(std::size_t n) { return random() % n; }
  float real(float low, float high) {
    return std::uniform_real_distribution<float>(low, high)(random);
  }
  // A Single a few units beside `value`.
  float near(float value) { return value * (1 + 0x1p-23F * (static_cast<float>(pick(7)) - 3)); }
  float wild() {
    const float values[] = {-0.0F,  1e-45F, 1e-20F,   3e9F,      1e25F, 1e33F,
                            -1e30F, 2e38F,  kLargest, -kLargest, kInf,  kNaN};
    return values[pick(std::size(values))];
  }
  // A place and a size: unit, field coordinates, about the tolerance, tiny, huge.
  void move() {
    const Point3D places[][2] = {{{0, 0, 0}, {1, 1, 1}},
                                 {{490000, 6700000, 2500}, {50, 40, 8}},
                                 {{490000, 6700000, -2500}, {9, 9, 0.003F}},
                                 {{0, 0, 0}, {1e-12F, 1e-12F, 1e-12F}},
                                 {{1e6F, -1e6F, 1e6F}, {1e8F, 1e8F, 1e8F}},
                                 {{0, 0, 0}, {1e18F, 1e15F, 1e12F}},
                                 {{5, 5, 5}, {1e-5F, 1e3F, 1}}};
    const auto& [place, extent] = places[pick(std::size(places))];
    at = place;
    size = extent;
  }
  // The unit square or box as it is, nearly, shaken, or shaken with level and collapsed edges.
  void shape(Points& points) {
    const std::size_t kind = pick(4);
    for (Point3D& p : points) {
      for (const auto c : kAxes) {
        float x = p.*c + (kind > 1 ? real(-0.4F, 0.4F) : 0);
        if (kind == 3) x = std::round(x * 4) / 4;
        p.*c = at.*c + size.*c * x;
        if (kind == 1) p.*c = near(p.*c);
      }
    }
    if (pick(9) == 0) points[pick(points.size())].*kAxes[pick(3)] = wild();
  }
  // Beside a vertex, beside the way between two, or anywhere; or each coordinate on its own.
  Point3D point(const Points& vertices) {
    const Point3D& a = vertices[pick(vertices.size())];
    const Point3D& b = vertices[pick(vertices.size())];
    const float t = real(-0.2F, 1.2F);
    const std::size_t kind = pick(5);
    Point3D p;
    for (const auto c : kAxes) {
      const float ways[] = {near(a.*c), near(a.*c + t * (b.*c - a.*c)),
                            at.*c + size.*c * real(-0.5F, 1.5F)};
      p.*c = ways[kind < 3 ? kind : pick(3)];
    }
    if (pick(20) == 0) p.Z = near(std::max(a.Z, b.Z) + 1000);  // the end of the rays
    if (pick(60) == 0) p.*kAxes[pick(3)] = wild();
    return p;
  }

  std::mt19937 random{20231};
  Point3D at, size;
};

TEST_F(QuickWaysTest, prepared_cells_answer_as_the_steps_do) {
  std::int32_t inside = 0;
  std::size_t messages = 0;
  for (int round = 0; round < 1500; ++round) {
    move();
    Cell cell = box(1, 1, 1);
    shape(cell.top);
    shape(cell.bottom);
    Points vertices = cell.top;
    vertices.insert(vertices.end(), cell.bottom.begin(), cell.bottom.end());
    Array1<float> x(1, 60), y(1, 60), z(1, 60);
    for (std::int32_t i = 1; i <= 60; ++i) {
      const Point3D p = point(vertices);
      x(i) = p.X;
      y(i) = p.Y;
      z(i) = p.Z;
    }
    Array1<Boolean> flags;
    Array1<std::int32_t> indices;
    std::int32_t count = -1;
    bool ok = false;
    const Corners top = cell.top_corners(), bottom = cell.bottom_corners();
    PointsInCube(x, y, z, top, bottom, flags, indices, count, ok);
    const Lines quick_lines = taken();
    Array1<Plane3D> planes;
    CubePlanes(top, bottom, planes, ok);
    for (std::int32_t i = 1; i <= 60; ++i) {
      ASSERT_EQ(flags(i), PointIn3DPolygon({x(i), y(i), z(i)}, planes, true))
          << round << ": (" << x(i) << ", " << y(i) << ", " << z(i) << ")";
    }
    ASSERT_EQ(quick_lines, lines) << round;
    inside += count;
    messages += taken().size();
  }
  EXPECT_GT(inside, 1500);  // the points are what they are meant to be
  EXPECT_GT(messages, 150U);
}

TEST_F(QuickWaysTest, polygon_scan_answers_as_the_steps_do) {
  const ztMathLib lib;
  std::size_t inside = 0, messages = 0;
  for (int round = 0; round < 8000; ++round) {
    move();
    Points polygon = box(1, 1, 0).top;
    for (std::size_t n = pick(round % 10 == 0 ? 200 : 5); n > 0; --n) {
      polygon.push_back({real(0, 1), polygon[pick(polygon.size())].Y, 0});
    }
    shape(polygon);
    if (pick(3) == 0) polygon.push_back(polygon.front());
    std::vector<float> x, y;
    for (const Point3D& p : polygon) {
      x.push_back(p.X);
      y.push_back(p.Y);
    }
    for (int k = 0; k < 8; ++k) {
      const Point3D p = point(polygon);
      const bool quick = lib.Point_In_Polygon(p.X, p.Y, x, y);
      const Lines quick_lines = taken();
      ASSERT_EQ(quick, PointInPolygon(p, array_of(polygon)))
          << round << ": (" << p.X << ", " << p.Y << ")";
      ASSERT_EQ(quick_lines, lines) << round;
      inside += quick ? 1 : 0;
      messages += taken().size();
    }
  }
  EXPECT_GT(inside, 4000U);
  EXPECT_GT(messages, 200U);
}

}  // namespace
}  // namespace vqmath63
