// Points against polygons and segments: the half-open rule, tolerance and exact ranges, failures.
#include "geometry/polygon.hpp"

#include "geometry/shapes.hpp"
#include "mathlib/math_lib.hpp"

namespace vqmath63 {
namespace {

using Points = std::vector<Point3D>;

class PolygonTest : public CompanionTest {
 protected:
  // Point_In_Polygon's answer; PointInPolygon must say the same.
  bool inside(float px, float py, const Points& polygon) {
    std::vector<float> x, y;
    for (const Point3D& p : polygon) {
      x.push_back(p.X);
      y.push_back(p.Y);
    }
    Array1<float> xs = array_of(x), ys = array_of(y);
    const bool answer = lib.Point_In_Polygon(px, py, xs, ys);
    EXPECT_EQ(PointInPolygon({px, py, 9}, array_of(polygon)), answer) << px << ", " << py;
    return answer;
  }
  const ztMathLib lib{};
};

TEST_F(PolygonTest, inside_outside_and_on_the_boundary) {
  const Points square = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}};
  const Points notched = {{0, 0, 0}, {4, 0, 0}, {4, 4, 0}, {2, 1, 0}, {0, 4, 0}};
  const Points doubled = {{0, 0, 0}, {0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {1, 1, 0}, {0, 1, 0}};
  struct Row {
    const char* name;
    Points polygon;
    float x, y;
    bool inside, on;
  };
  const Row rows[] = {
      {"centre", square, 0.5F, 0.25F, true, true},
      {"left edge", square, 0, 0.5F, true, true},
      {"right edge", square, 1, 0.5F, false, true},
      {"bottom edge", square, 0.5F, 0, false, true},
      {"top edge", square, 0.5F, 1, true, true},
      {"first corner", square, 0, 0, false, true},
      {"beyond the right by a little", square, 1.0000001F, 0.5F, false, false},  // exact range
      {"left", square, -1, 0.5F, false, false},
      {"above", square, 0.5F, 2, false, false},
      {"in the notch", notched, 2, 2, false, false},
      {"beside the notch", notched, 0.5F, 2, true, true},
      {"under the notch", notched, 2, 0.5F, true, true},
      {"repeated vertices", doubled, 0.5F, 0.5F, true, true},
      {"beside repeated vertices", doubled, 1.5F, 0.5F, false, false},
      {"one vertex", {{1, 1, 0}}, 0, 1, false, false},
      {"two equal vertices", {{1, 1, 0}, {1, 1, 0}}, 0, 1, false, false},
      {"there and back", {{0, 0, 0}, {0, 2, 0}}, -1, 1, false, false},
  };
  for (const Row& row : rows) {
    Points closed = row.polygon;
    closed.push_back(closed.front());
    EXPECT_EQ(inside(row.x, row.y, row.polygon), row.inside) << row.name;
    EXPECT_EQ(inside(row.x, row.y, closed), row.inside) << row.name << ", closed";
    const Point3D p{row.x, row.y, 0};
    EXPECT_EQ(PointOnPolygon(p, array_of(row.polygon), true), row.on) << row.name;
    EXPECT_EQ(PointOnPolygon(p, array_of(row.polygon), false), row.inside) << row.name;
  }
  EXPECT_TRUE(lines.empty());
}

TEST_F(PolygonTest, edges_tolerantly_level_are_not_crossed) {
  // 5 of 6.7e6 is nothing: only the upright edges are there, and the closing one where it is
  // upright. So everything to the left of a slanted edge's heights is "inside".
  const Points tilted = {{0, 6700000, 0}, {100, 6700005, 0}, {100, 6700105, 0}, {0, 6700100, 0}};
  EXPECT_TRUE(inside(-1000, 6700003, tilted));
  EXPECT_FALSE(inside(-1000, 6700050, tilted));
  EXPECT_TRUE(inside(50, 6700050, tilted));
  // Taken as closed although its ends differ: the last vertex is not joined to the first.
  EXPECT_TRUE(inside(-1000, 6700003, {{0, 6700000, 0}, {100, 6700100, 0}, {0, 6700005, 0}}));
}

TEST_F(PolygonTest, closing_edge_is_looked_at_on_the_boundary) {
  const Array1<Point3D> open = array_of(Points{{4, 4, 0}, {0, 4, 0}, {0, 0, 0}});
  EXPECT_TRUE(PointOnPolygon({2, 2, 0}, open, true));
  EXPECT_FALSE(PointOnPolygon({2, 2, 0}, open, false));
  // From vertex 1 to vertex n: the other way its intercept, 1 beside 1e7, would be 0.
  const Array1<Point3D> wide = array_of(Points{{0, 1, 0}, {0, 10000001, 0}, {1e7F, 10000001, 0}});
  EXPECT_TRUE(PointOnPolygon({5, 6, 0}, wide, true));
  EXPECT_FALSE(PointOnPolygon({5, 5, 0}, wide, true));
  EXPECT_TRUE(PointOnPolygon({5, 5, 0}, array_of(Points{{5, 5, 0}}), true));
  EXPECT_FALSE(PointOnPolygon({5, 5.00001F, 0}, array_of(Points{{5, 5, 0}}), true));
}

TEST_F(PolygonTest, points_on_lines) {
  struct Row {
    const char* name;
    Segment3D segment;
    float x, y;
    bool on;
    bool exchanged;
  };
  const Row rows[] = {
      {"middle", {{0, 0, 0}, {4, 2, 0}}, 2, 1, true, false},
      {"backwards", {{4, 2, 0}, {0, 0, 0}}, 2, 1, true, false},
      {"end", {{0, 0, 0}, {4, 2, 0}}, 4, 2, true, false},
      {"past the end", {{0, 0, 0}, {4, 2, 0}}, 4.000001F, 2, false, false},
      {"beside", {{0, 0, 0}, {4, 2, 0}}, 2, 1.0001F, false, false},
      {"tolerantly on", {{0, 0, 0}, {4, 2, 0}}, 2, 1.0000005F, true, false},
      {"level", {{0, 3, 0}, {4, 3, 0}}, 2, 3, true, false},
      {"level, beside by a little", {{0, 3, 0}, {4, 3, 0}}, 2, 3.0000005F, false, false},
      {"upright", {{3, 0, 0}, {3, 4, 0}}, 3, 2, true, true},
      {"upright, downwards", {{3, 4, 0}, {3, 0, 0}}, 3, 2, true, true},
      {"upright, beside", {{3, 0, 0}, {3, 4, 0}}, 3.1F, 2, false, true},
      {"tolerantly upright", {{3, 0, 0}, {3.000001F, 4, 0}}, 3.000001F, 2, true, true},
      {"point", {{3, 4, 0}, {3, 4, 0}}, 3, 4, true, false},
      {"slope that vanishes", {{0, 1e-10F, 0}, {1e38F, 2e-10F, 0}}, 1, 1e-10F, false, true},
      {"turned, it overflows", {{1e38F, 2e-10F, 0}, {0, 1e-10F, 0}}, 1, 1e-10F, false, true},
  };
  for (const Row& row : rows) {
    Segment3D given = row.segment;
    const Point3D p{row.x, row.y, 0};
    EXPECT_EQ(PointOnLine(p, given), row.on) << row.name;
    const auto turned = [](const Point3D& q) { return Point3D{q.Y, q.X, q.Z}; };
    EXPECT_EQ(given.P1, row.exchanged ? turned(row.segment.P1) : row.segment.P1) << row.name;
    EXPECT_EQ(given.P2, row.exchanged ? turned(row.segment.P2) : row.segment.P2) << row.name;
  }
  EXPECT_EQ(lines, std::vector{error_line(6, "Geometry (Code) (PointOnLine)")});  // the last row
}

TEST_F(PolygonTest, differences_are_taken_in_order) {
  // Closing in X; of the first edge along X, in Y (too large), in X; of the second along X, in X.
  PointInPolygon({kInf, 3e38F, 0}, array_of<Point3D>({{kInf, -3e38F, 0}, {0, 0, 0}}));
  Lines want;
  for (const std::int32_t fault : {5, 5, 6, 5, 5, 5}) {
    want.push_back(error_line(fault, "ztMathLib (Code) (ArithmeticS)"));
  }
  EXPECT_EQ(lines, want);
}

TEST_F(PolygonTest, failures_are_reported_where_they_arise) {
  const std::string member = "ztMathLib (Code) (Point_In_Polygon)";
  const std::string routine = "Geometry (Code) (PointInPolygon)";
  const std::string arithmetic = "ztMathLib (Code) (ArithmeticS)";
  struct Row {
    const char* name;
    std::vector<float> x, y;
    std::int32_t x_from, y_from;
    std::int32_t fault;
    std::string place;
    bool inside = false;
    float py = 1;
  };
  const Row rows[] = {
      {"unequal", {0, 1, 1}, {0, 0, 1, 1}, 1, 1, 0, ""},
      {"unallocated", {}, {}, 1, 1, 9, member},
      {"unallocated Y", {0, 1, 1}, {}, 1, 1, 9, member},
      {"upper bound 0", {7}, {7}, 0, 0, 9, member},
      {"from 2", {0, 1, 1}, {0, 1, 1}, 2, 2, 9, member},
      {"Y from 2", {0, 1, 1, 0}, {0, 1, 1}, 1, 2, 9, member},
      {"from 0", {kNaN, 0, 3, 0}, {kNaN, 0, 0, 3}, 0, 0, 0, "", true},
      // On an edge that no ray from the point crosses dx ty / dy is beyond a Single.
      {"overflow", {0, 1e20F, 0}, {9, 9.1F, 1e25F}, 1, 1, 6, routine, false, 1e24F},
      {"difference", {kLargest, -kLargest, 0}, {0, 2, 1}, 1, 1, 6, arithmetic, true},
      {"NaN", {0, kNaN, 0}, {0, 0, 4}, 1, 1, 0, ""},
      {"NaN of Y", {0, 4, 0}, {0, kNaN, 4}, 1, 1, 0, ""},
  };
  for (Row row : rows) {
    float px = 1;
    Array1<float> x = array_of(row.x, row.x_from), y = array_of(row.y, row.y_from);
    EXPECT_EQ(lib.Point_In_Polygon(px, row.py, x, y), row.inside) << row.name;
    EXPECT_EQ(taken(), error_lines(row.fault, row.place)) << row.name;
  }

  // A failing ArithmeticS counts as 0, and the work goes on: an infinite vertex is level with all.
  EXPECT_TRUE(inside(1, 1, {{0, kInf, 0}, {4, 0, 0}, {0, 4, 0}}));
  EXPECT_EQ(taken(), std::vector(4, error_line(5, arithmetic)));
  EXPECT_FALSE(PointOnPolygon({1, 1, 0}, array_of(Points{{0, 0, 0}}, 2), true));
  EXPECT_EQ(taken(),
            (Lines{error_line(9, routine), error_line(9, "Geometry (Code) (PointOnPolygon)")}));
  Segment3D steep{{3e38F, 3e38F, 0}, {2.9e38F, -3e38F, 0}};
  EXPECT_FALSE(PointOnLine({1, 1, 0}, steep));
  EXPECT_EQ(lines[0], error_line(6, arithmetic));
}

}  // namespace
}  // namespace vqmath63
