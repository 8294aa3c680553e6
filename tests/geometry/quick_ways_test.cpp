// The prepared cell and the polygon scan beside the step by step routines, bit for bit and message
// for message, on seeded random shapes and points.
#include <bit>
#include <cmath>
#include <random>

#include "geometry/polygon.hpp"
#include "geometry/shapes.hpp"
#include "mathlib/math_lib.hpp"

namespace vqmath63 {
namespace {

class QuickWaysTest : public CompanionTest {
 protected:
  std::size_t pick(std::size_t n) {
    return std::uniform_int_distribution<std::size_t>(0, n - 1)(random);
  }
  float real(float low, float high) {
    return std::uniform_real_distribution<float>(low, high)(random);
  }

  // `value`, or a Single a few units beside it.
  float near(float value) {
    auto bits = std::bit_cast<std::uint32_t>(value);
    if (value != 0.0F) bits += static_cast<std::uint32_t>(pick(7)) - 3U;
    return std::bit_cast<float>(bits);
  }

  float wild() {
    const float values[] = {0.0F,  -0.0F,  1e-45F, -1e-38F, 1e-20F,   1e-9F,     3e9F, 1e12F, 1e25F,
                            1e33F, -1e30F, 3e37F,  2e38F,   kLargest, -kLargest, kInf, -kInf, kNaN};
    return values[pick(std::size(values))];
  }

  // Sizes and places of cells: unit, field coordinates, tiny, huge.
  struct Frame {
    Point3D at, size;
  };
  Frame frame() {
    const Frame frames[] = {{{0, 0, 0}, {1, 1, 1}},
                            {{0, 0, 0}, {100, 80, 10}},
                            {{490000, 6700000, 2500}, {50, 40, 8}},
                            {{490000, 6700000, 2500}, {250, 250, 20}},
                            {{490000, 6700000, -2500}, {5, 4, 1}},
                            {{-3, 7, -1000}, {9, 9, 3}},
                            {{0, 0, 0}, {1e-12F, 1e-12F, 1e-12F}},
                            {{1e6F, -1e6F, 1e6F}, {1e8F, 1e8F, 1e8F}},
                            {{0, 0, 0}, {1e18F, 1e15F, 1e12F}},
                            {{5, 5, 5}, {1e-5F, 1e3F, 1}}};
    return frames[pick(std::size(frames))];
  }

  Cell cell(const Frame& f) {
    Cell made = box(1, 1, 1);
    const std::size_t kind = pick(7);
    for (auto* face : {&made.top, &made.bottom}) {
      for (Point3D& p : *face) {
        if (kind == 1) p.X += 0.3F * p.Z;                      // sheared
        if (kind == 2) p = {near(p.X), near(p.Y), near(p.Z)};  // all but a box
        if (kind >= 3 && kind < 6)
          p = {p.X + real(-0.3F, 0.3F), p.Y + real(-0.3F, 0.3F), p.Z + real(-0.4F, 0.4F)};
        if (kind == 4) p.Z = std::round(p.Z * 4) / 4;  // level edges, edges of no height
        const float y = p.Y, z = p.Z;
        p = {f.at.X + f.size.X * p.X, f.at.Y + f.size.Y * p.Y, f.at.Z + f.size.Z * p.Z};
        // So flat that the tolerance takes some edges for level and others not.
        if (kind == 6) p.Y = f.at.Y * (1 + 1e-5F * y + real(0, 1e-6F));
        if (kind == 6) p.Z = f.at.Z * (1 + (z > 0 ? 1e-3F : 0.0F) + 5e-6F * y + real(0, 1e-6F));
      }
    }
    if (kind == 5) made.top[pick(4)] = made.bottom[pick(4)];  // a collapsed edge
    if (pick(12) == 0) made.top[pick(4)].Y = wild();
    if (pick(12) == 0) made.bottom[pick(4)].Z = wild();
    return made;
  }

  // In and around the cell; on its vertices, edges, faces and diagonals, and beside them.
  Point3D point(const Cell& c, const Frame& f) {
    const Point3D& a = (pick(2) ? c.top : c.bottom)[pick(4)];
    const Point3D& b = (pick(2) ? c.top : c.bottom)[pick(4)];
    const float t = pick(3) == 0 ? 0.5F : real(-0.2F, 1.2F);
    const Point3D between{a.X + t * (b.X - a.X), a.Y + t * (b.Y - a.Y), a.Z + t * (b.Z - a.Z)};
    switch (pick(8)) {
      case 0:
        return {near(a.X), near(a.Y), near(a.Z)};
      case 1:
        return {near(between.X), near(between.Y), near(between.Z)};
      case 2:
        return {near(between.X), near(between.Y), f.at.Z + f.size.Z * real(-1, 2)};
      case 3:
        return {near(a.X), near(b.Y), f.at.Z + f.size.Z * real(0, 1)};
      case 4: {  // anywhere, also above the end of the rays
        Point3D p{f.at.X + f.size.X * real(-3, 4), pick(2) ? between.Y : near(a.Y), between.Z};
        if (pick(2)) p.Z = near(std::max(a.Z, b.Z) + 1000.0F) + (pick(2) ? 3.0F : 0.0F);
        if (pick(6) == 0) (pick(2) ? p.X : p.Z) = wild();
        return p;
      }
      default:
        return {f.at.X + f.size.X * real(-0.2F, 1.2F), f.at.Y + f.size.Y * real(-0.2F, 1.2F),
                f.at.Z + f.size.Z * real(-0.2F, 1.2F)};
    }
  }

  std::mt19937 random{20231};
};

TEST_F(QuickWaysTest, prepared_cells_answer_as_the_steps_do) {
  constexpr std::int32_t kPoints = 60;
  std::size_t inside = 0, messages = 0;
  for (int round = 0; round < 1500; ++round) {
    const Frame f = frame();
    const Cell c = cell(f);
    std::vector<float> x, y, z;
    for (std::int32_t i = 0; i < kPoints; ++i) {
      const Point3D p = point(c, f);
      x.push_back(p.X);
      y.push_back(p.Y);
      z.push_back(p.Z);
    }
    Array1<Boolean> flags;
    Array1<std::int32_t> indices;
    std::int32_t count = -1;
    bool ok = false;
    PointsInCube(array_of(x), array_of(y), array_of(z), c.top_corners(), c.bottom_corners(), flags,
                 indices, count, ok);
    ASSERT_TRUE(ok);
    const Lines quick_lines = taken();
    Array1<Plane3D> planes;
    CubePlanes(c.top_corners(), c.bottom_corners(), planes, ok);
    std::vector<std::int32_t> want;
    for (std::int32_t i = 1; i <= kPoints; ++i) {
      const auto k = static_cast<std::size_t>(i) - 1;
      const bool plain = PointIn3DPolygon({x[k], y[k], z[k]}, planes, true);
      ASSERT_EQ(flags(i), plain) << round << ": (" << x[k] << ", " << y[k] << ", " << z[k] << ")";
      if (plain) want.push_back(i);
    }
    ASSERT_EQ(quick_lines, lines) << "round " << round;
    ASSERT_EQ(static_cast<std::size_t>(count), want.size());
    inside += want.size();
    messages += lines.size();
    lines.clear();
    want.resize(count == 0 ? kPoints : want.size());
    ASSERT_EQ(contents(indices), want);
  }
  EXPECT_GT(inside, 1500U);  // the points are what they are meant to be
  EXPECT_GT(messages, 150U);
}

TEST_F(QuickWaysTest, polygon_scan_answers_as_the_steps_do) {
  const ztMathLib lib;
  std::size_t inside = 0, messages = 0;
  for (int round = 0; round < 8000; ++round) {
    const Frame f = frame();
    const std::size_t n = 1 + pick(round % 10 == 0 ? 200 : 8);
    std::vector<float> x, y;
    std::vector<Point3D> polygon;
    const bool jagged = pick(2) == 0;
    for (std::size_t i = 0; i < n; ++i) {
      const double angle = 6.2831853071795862 * static_cast<double>(i) / static_cast<double>(n);
      Point3D p{jagged ? real(-1, 1) : static_cast<float>(std::cos(angle)),
                jagged ? real(-1, 1) : static_cast<float>(std::sin(angle)), 0};
      p = {f.at.X + f.size.X * p.X, f.at.Y + f.size.Y * p.Y, 0};
      if (i > 0 && pick(4) == 0) p = {near(polygon.back().X), near(polygon.back().Y), 0};
      if (i > 0 && i + 1 == n && pick(2) == 0)
        p = {near(polygon.front().X), near(polygon.front().Y), 0};
      if (pick(60) == 0) (pick(2) ? p.X : p.Y) = wild();
      polygon.push_back(p);
      x.push_back(p.X);
      y.push_back(p.Y);
    }
    for (int k = 0; k < 8; ++k) {
      const Point3D& a = polygon[pick(n)];
      const Point3D& b = polygon[pick(n)];
      const float t = real(-0.1F, 1.1F);
      Point3D p{near(a.X), near(a.Y), 0};
      if (k > 2) p = {near(a.X + t * (b.X - a.X)), near(a.Y + t * (b.Y - a.Y)), 0};
      if (k > 4) p = {f.at.X + f.size.X * real(-1.2F, 1.2F), near(b.Y), 0};
      if (pick(60) == 0) (pick(2) ? p.X : p.Y) = wild();
      Array1<float> xs = array_of(x), ys = array_of(y);
      const bool quick = lib.Point_In_Polygon(p.X, p.Y, xs, ys);
      const Lines quick_lines = taken();
      const bool plain = PointInPolygon(p, array_of(polygon));
      ASSERT_EQ(quick, plain) << "round " << round << ": (" << p.X << ", " << p.Y << ")";
      ASSERT_EQ(quick_lines, lines) << "round " << round;
      inside += plain ? 1 : 0;
      messages += lines.size();
      lines.clear();
    }
  }
  EXPECT_GT(inside, 4000U);
  EXPECT_GT(messages, 200U);
}

}  // namespace
}  // namespace vqmath63
