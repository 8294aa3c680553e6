// Points in cells and segments through them: the zoo of cells, what may surprise, failures.
#include <cmath>

#include "frame/test_table.hpp"
#include "geometry/shapes.hpp"
#include "mathlib/math_lib.hpp"

namespace vqmath63 {
namespace {

const std::string kPoints = "ztGeometry (Code) (PointsInCube)";

class CellsTest : public CompanionTest {
 protected:
  struct Through {
    bool ok = true, meets = true;
    std::vector<Point3D> at;
  };
  bool inside(const Cell& cell, Point3D p) const {
    Corners top = cell.top_corners(), bottom = cell.bottom_corners();
    return lib.Point_In_Cube(p.X, p.Y, p.Z, top, bottom);
  }
  Through through(Array1<float> x, Array1<float> y, Array1<float> z, const Cell& cell) const {
    Through t;
    Corners top = cell.top_corners(), bottom = cell.bottom_corners(), points({1, 1}, {1, 1});
    lib.Line_Through_Cube(x, y, z, top, bottom, t.meets, points, t.ok);
    // Untouched, it has the one row it came with.
    for (std::int32_t k = 1; points.rows().upper == 3 && k <= points.columns().upper; ++k) {
      t.at.push_back({points(1, k), points(2, k), points(3, k)});
    }
    return t;
  }
  Through through(const Point3D& p, const Point3D& q, const Cell& cell) const {
    return through(array_of<float>({p.X, q.X}), array_of<float>({p.Y, q.Y}),
                   array_of<float>({p.Z, q.Z}), cell);
  }
  const ztMathLib lib{};
};

std::vector<Point3D> points_of(const std::string& text) {
  std::istringstream numbers(text);
  std::vector<Point3D> points;
  for (Point3D p; numbers >> p.X >> p.Y >> p.Z;) points.push_back(p);
  return points;
}

TEST_F(CellsTest, zoo) {
  std::ifstream file(VQ_TEST_DATA "/cell_cases.tsv");
  Cell cell;
  std::string name;
  int points = 0, exact = 0, segments = 0;
  for (std::string line; std::getline(file, line);) {
    const std::vector<std::string> fields = split(line, '\t');
    if (fields[0] == "cell") {
      name = fields[1];
      const std::vector<Point3D> all = points_of(fields[2]);
      ASSERT_EQ(all.size(), 8U);
      cell = {{all.begin(), all.begin() + 4}, {all.begin() + 4, all.end()}};
    } else if (fields[0] == "points") {
      const std::vector<Point3D> all = points_of(fields[1]);
      for (std::size_t i = 0; i < all.size(); ++i) {
        const char got = inside(cell, all[i]) ? '1' : '0';
        EXPECT_EQ(got, fields[2].at(i)) << name << ": point " << i + 1;
        ++points;
        if (fields[3].at(i) == '-') continue;
        EXPECT_EQ(got, fields[3].at(i)) << name << ": point " << i + 1 << ", exactly";
        ++exact;
      }
    } else {
      const std::vector<Point3D> ends = points_of(fields[1]);
      const Through got = through(ends.at(0), ends.at(1), cell);
      const std::vector<Point3D> want = points_of(fields.size() > 2 ? fields[2] : "");
      EXPECT_TRUE(got.ok);
      EXPECT_EQ(got.meets, !want.empty()) << name << ": " << line;
      EXPECT_EQ(got.at, want) << name << ": " << line;
      ++segments;
    }
  }
  EXPECT_EQ(points, 168);
  EXPECT_EQ(segments, 42);
  EXPECT_GE(exact, 55);
  EXPECT_TRUE(lines.empty());
}

TEST_F(CellsTest, a_ray_from_above_runs_down) {
  // From more than 1000 above the cell, to 1000 above it: nothing is there.
  EXPECT_FALSE(inside(box(8, 8, 8), {2, 3, 1500}));
  EXPECT_FALSE(inside(box(8, 8, 8), {2, 3, 1008}));
  // The ray's length decides the rounding: with an end 999 or 1001 above, other points are lost.
  EXPECT_FALSE(inside(box(8, 8, 8), {2, 3, 0.1F}));
  EXPECT_TRUE(inside(box(8, 8, 8), {2, 3, 0.2F}));
}

TEST_F(CellsTest, a_difference_of_the_tolerance_itself_counts) {
  // 1 / 1e6 is the tolerance; a little less is none, and the face is no longer to the right.
  const Cell cell = box(50, 40, 8, {999950, 0, 0});
  EXPECT_TRUE(inside(cell, {999999, 3, 2}));
  EXPECT_FALSE(inside(cell, {999999.0625F, 3, 2}));
}

TEST_F(CellsTest, shapes_of_cells) {
  const Cell cell = box(8, 8, 8);
  const auto &t = cell.top, &b = cell.bottom;
  const std::vector<Point3D> five{b[0], b[1], b[2], b[3], b[0]}, two{b[0], b[1]};
  struct Row {
    const char* name;
    Corners top, bottom;
    bool inside;
    std::string place;  // of the one message, if any
  };
  Row rows[] = {
      {"3 x 4", corners(t), corners(b), true, ""},
      {"5 x 4 bottom", corners(t), corners(b, 5), true, ""},
      {"5 x 4 top", corners(t, 5), corners(b), true, ""},
      {"5 x 4 both", corners(t, 5), corners(b, 5), false, ""},
      {"3 x 4 with 3 x 5", corners(t), corners(five), false, ""},
      {"five corners", corners(five), corners(five), false, "ztGeometry (Code) (PlanesFromFaces)"},
      {"two corners", corners(two), corners(two), false, ""},
      {"2 x 4 top", corners(t, 2), corners(b), false, "Geometry (Code) (CubeFaces)"},
      {"unallocated top", {}, corners(b), false, kPoints},
  };
  float p[] = {3, 4, 5};
  for (Row& row : rows) {
    EXPECT_EQ(lib.Point_In_Cube(p[0], p[1], p[2], row.top, row.bottom), row.inside) << row.name;
    EXPECT_EQ(taken(), error_lines(row.place.empty() ? 0 : 9, row.place)) << row.name;
  }
  // Corners from 0 have what they need; from 2 they have not.
  Corners from_0({0, 3}, {0, 4}), from_2({2, 3}, {1, 4}), bottom = corners(b);
  for (std::int32_t k = 1; k <= 4; ++k) {
    const Point3D& corner = t[static_cast<std::size_t>(k) - 1];
    from_0(1, k) = corner.X;
    from_0(2, k) = corner.Y;
    from_0(3, k) = corner.Z;
  }
  EXPECT_TRUE(lib.Point_In_Cube(p[0], p[1], p[2], from_0, bottom));
  EXPECT_FALSE(lib.Point_In_Cube(p[0], p[1], p[2], from_2, bottom));
  EXPECT_EQ(lines, std::vector{error_line(9, "Geometry (Code) (CubeFaces)")});
}

TEST_F(CellsTest, arrays_of_points) {
  struct Row {
    const char* name;
    Array1<float> x, y, z;
    bool ok;
    std::int32_t count;  // 77 when not reached
    std::vector<std::int32_t> indices = {};
  };
  const auto some = array_of<float>({3, 4, 5}), ragged = array_of<float>({4, 9, 4});
  const auto fives = array_of<float>({5, 5, 5, 5, 5}, 0), more = array_of<float>({5, 5, 5, 5, 5});
  const Row rows[] = {
      {"none", array_of<float>({-1, 9, 20}), fives, more, true, 0, {0, 0, 0}},
      {"some", array_of<float>({-1, 2, 9, 3}), fives, more, true, 2, {2, 4}},
      {"all", array_of<float>({1, 2, 3}), fives, more, true, 3, {1, 2, 3}},
      {"NaN", array_of<float>({kNaN, 3}), array_of<float>({3, 4}), some, true, 1, {2}},
      {"unallocated X", {}, some, some, false, 77},
      {"X of upper bound 0", array_of<float>({3}, 0), some, some, false, 77},
      {"X from 2", array_of<float>({3, 3}, 2), some, some, false, 0},
      {"unallocated Y", some, {}, some, false, 0},
      {"short Z", array_of<float>({3, 3, 3}), ragged, array_of<float>({5, 5}), false, 1},
  };
  const Corners top = box(8, 8, 8).top_corners(), bottom = box(8, 8, 8).bottom_corners();
  for (const Row& row : rows) {
    Array1<Boolean> flags(1, 99), alone;
    Array1<std::int32_t> indices(1, 1);
    std::int32_t count = 77;
    bool ok = !row.ok;
    lib.Points_In_CubeIndex(row.x, row.y, row.z, top, bottom, count, indices, flags, ok);
    EXPECT_EQ(ok, row.ok) << row.name;
    EXPECT_EQ(count, row.count) << row.name;
    EXPECT_EQ(taken(), error_lines(row.ok ? 0 : 9, kPoints)) << row.name;
    if (!row.ok) continue;
    EXPECT_EQ(contents(indices), row.indices) << row.name;
    EXPECT_EQ(flags.upper(), row.x.upper()) << row.name;
    lib.Points_In_Cube(row.x, row.y, row.z, top, bottom, alone, ok);
    EXPECT_EQ(contents(alone), contents(flags)) << row.name;
  }
  // An infinite coordinate: two differences fail in each of the twelve planes, and the sum in the
  // four that the ray is not parallel to.
  EXPECT_FALSE(inside(box(8, 8, 8), {kInf, 3, 3}));
  EXPECT_EQ(lines, std::vector(28, error_line(5, "ztMathLib (Code) (ArithmeticS)")));
}

TEST_F(CellsTest, a_plane_that_fails_makes_the_point_outside) {
  // Far beside a nearly upright side the crossing is beyond a Single.
  const Cell cell{{{4, 4.00001F, 8}, {12, 12, 8}, {4, 20, 8}, {-4, 12, 8}},
                  {{0, 0, 0}, {8, 8, 0}, {0, 16, 0}, {-8, 8, 0}}};
  EXPECT_TRUE(inside(cell, {3, 9.5F, 4}));
  EXPECT_FALSE(inside(cell, {1e28F, 7, 4}));
  EXPECT_TRUE(lines.empty());
  EXPECT_FALSE(inside(cell, {3e33F, 7, 4}));
  ASSERT_FALSE(lines.empty());
  EXPECT_EQ(lines[0], error_line(6, "Geometry (Code) (ScalarMultVector)"));
  lines.clear();

  // A plane without vertices ends the search for crossings; what was found stays.
  const Plane3D level = plane_of({{0, 0, 2}, {9, 0, 2}, {0, 9, 2}});
  Array1<Point3D> at;
  const Segment3D upright{{1, 1, 0}, {1, 1, 4}};
  EXPECT_TRUE(
      LineIntersectsWith3DPolygon(upright, array_of(std::vector{level, Plane3D{}, level}), at));
  EXPECT_EQ(contents(at), (std::vector<Point3D>{{1, 1, 2}}));
  EXPECT_FALSE(PointIn3DPolygon({1, 1, 0}, array_of(std::vector{level, Plane3D{}}), true));
  EXPECT_TRUE(PointIn3DPolygon({1, 1, 0}, array_of(std::vector{level}), true));
  EXPECT_FALSE(PointIn3DPolygon({1, 1, 0}, array_of(std::vector{level}), false));  // edge-on
  lines.clear();
  // A height that is NaN is not the highest, and its plane is not crossed.
  const Plane3D unknown = plane_of({{0, 0, 2}, {9, 0, 2}, {0, 9, kNaN}});
  EXPECT_TRUE(PointIn3DPolygon({1, 1, 0}, array_of(std::vector{level, unknown}), true));
  // The parameter of an all but upright plane is no Single: false at once.
  const Plane3D wide = plane_of({{0, 0, 2}, {4e12F, 0, 2}, {0, 4e12F, 2}});
  const Plane3D steep = plane_of({{0, 0, 0}, {0, 1, 0}, {1e-30F, 0, 1}});
  EXPECT_TRUE(PointIn3DPolygon({1e12F, 1e12F, 0}, array_of(std::vector{wide}), true));
  EXPECT_FALSE(
      PointIn3DPolygon({1e12F, 1e12F, 0}, array_of(std::vector{wide, steep, steep}), true));
  EXPECT_EQ(lines, std::vector{error_line(6, "Geometry (Code) (PointIntersectionOfLineAndPlane)")});
}

TEST_F(CellsTest, segments_through_a_cell) {
  const Cell cell = box(8, 8, 8);
  // Top first, then bottom, whichever way it goes.
  EXPECT_EQ(through({2, 3, -1}, {2, 3, 9}, cell).at, (std::vector<Point3D>{{2, 3, 8}, {2, 3, 0}}));
  // qInCube tells of the surface: inside from end to end there is none, whichever way it goes.
  for (const Point3D& end : {Point3D{3, 2, 6}, {3, 3, 2}, {2, 2, 2}, {2, 3, 6}}) {
    const Through within = through({2, 3, 2}, end, cell);
    EXPECT_TRUE(within.ok && !within.meets && within.at.empty()) << end.X << " " << end.Y;
  }
  EXPECT_TRUE(inside(cell, {2, 3, 2}));
  EXPECT_TRUE(lines.empty());

  struct Row {
    const char* name;
    std::vector<float> x, y, z;
    bool ok;
    std::int32_t fault;
  };
  const std::vector<float> two = {2, 2}, three = {2, 2, 50}, one = {2}, up = {-1, 9};
  const Row rows[] = {
      {"2, 2, 2", two, {3, 3}, up, true, 0},
      {"3, 3, 3", three, {3, 3, 50}, {-1, 9, 50}, true, 0},
      {"3, 2, 2", three, {3, 3}, up, false, 0},  // the one that is turned away
      {"1, 2, 2", one, {3, 3}, up, false, 0},
      {"3, 3, 2", three, {3, 3, 50}, up, true, 0},
      {"1, 1, 1", one, one, one, false, 9},
      {"2, 1, 2", two, one, up, false, 9},
      {"2, none, 2", two, {}, up, false, 9},
  };
  for (const Row& row : rows) {
    const Through got = through(array_of(row.x), array_of(row.y), array_of(row.z), cell);
    EXPECT_EQ(got.ok, row.ok) << row.name;
    EXPECT_TRUE(got.meets) << row.name;  // as it was, where the work did not come to it
    EXPECT_EQ(got.at.size(), row.ok ? 2U : 0U) << row.name;
    EXPECT_EQ(taken(), error_lines(row.fault, "sMathLib (Code) (Line_Through_Cube)")) << row.name;
  }
  const Cell other{cell.top, {{0, 0, 0}, {8, 0, 0}, {8, 8, 0}, {0, 8, 0}, {0, 0, 0}}};
  EXPECT_FALSE(through({2, 3, -1}, {2, 3, 9}, other).ok);
  Cell tall = cell;
  tall.top_rows = 5;
  EXPECT_EQ(through({2, 3, -1}, {2, 3, 9}, tall).at.size(), 2U);
  tall.bottom_rows = 5;
  EXPECT_FALSE(through({2, 3, -1}, {2, 3, 9}, tall).ok);
  EXPECT_TRUE(lines.empty());

  // Whether the first end is inside is asked too, and reported where that fails.
  Array1<Plane3D> planes;
  Array1<Point3D> at;
  bool success = false;
  CubePlanes(cell.top_corners(), cell.bottom_corners(), planes, success);
  PointIn3DPolygon({kInf, 3, 3}, planes, true);
  LineIntersectsWith3DPolygon({{kInf, 3, 3}, {2, 3, 9}}, planes, at);
  const Lines both = taken();
  EXPECT_FALSE(through({kInf, 3, 3}, {2, 3, 9}, cell).meets);
  EXPECT_EQ(lines, both);
}

}  // namespace
}  // namespace vqmath63
