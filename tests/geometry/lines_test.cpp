// Segments in the plane: crossings with their one-sided tolerance, levels.
#include <cmath>

#include "geometry/shapes.hpp"
#include "mathlib/math_lib.hpp"

namespace vqmath63 {
namespace {

struct Segment {
  float x1, y1, x2, y2;
};
struct Crossing {
  bool there;
  float x, y;
  bool operator==(const Crossing&) const = default;
};

class LinesTest : public CompanionTest {
 protected:
  Crossing cross(Segment i, Segment j) {
    Crossing c{true, 7, 7};
    lib.LineIntersect(i.x1, i.y1, i.x2, i.y2, j.x1, j.y1, j.x2, j.y2, c.x, c.y, c.there);
    return c;
  }
  const ztMathLib lib{};
};

TEST_F(LinesTest, crossings) {
  const Crossing none{false, 0, 0};
  const Segment across{0, 0, 4, 4};
  struct Row {
    const char* name;
    Segment i, j;
    Crossing want;
  };
  const Row rows[] = {
      {"middle", across, {0, 4, 4, 0}, {true, 2, 2}},
      {"quarter", across, {0, 1, 4, 1}, {true, 1, 1}},
      {"at the second end", across, {4, 0, 4, 8}, {true, 4, 4}},
      {"at the first end", across, {0, -1, 0, 1}, {true, 0, 0}},
      {"end on end", across, {4, 4, 8, 0}, {true, 4, 4}},
      {"short of it", across, {5, 0, 5, 9}, none},
      {"boxes meet, lines do not", across, {3, 0, 4, 3}, none},
      {"beside", across, {9, 0, 8, 4}, none},
      {"above", {0, 0, 4, 1}, {0, 2, 4, 3}, none},
      // Within the tolerance past the second end, but the boxes do not meet.
      {"beside by a little", {1e9F, 0, 0, 0}, {-5, -128, -5, 128}, none},
      {"below by a little", {0, 1e9F, 0, 0}, {-128, -5, 128, -5}, none},
      {"collinear", across, {1, 1, 3, 3}, none},
      {"parallel", across, {1, 0, 4, 3}, none},
      {"point", across, {2, 2, 2, 2}, none},
      {"determinant just below 1e-10", {0, 0, 1e-5F, 0}, {0, 0, 0, 0.99e-5F}, none},
      {"determinant just above 1e-10", {0, 0, 1e-5F, 0}, {0, 0, 0, 1.01e-5F}, {true, 0, 0}},
      {"past the first end", {1, 0, 0, 0}, {1.000001F, -1, 1, 1}, none},
      {"NaN", across, {kNaN, 0, 4, 0}, {true, kNaN, kNaN}},
      // Each difference is rounded to Single, and the parameter; the determinant is not, nor are
      // the differences that the parameter goes along: any other choice gives other digits.
      {"places of rounding",
       {6.7F, 37, 0.87F, 2.1F},
       {5.9F, 31, 0.11F, 0.55F},
       {true, 4.23476219F, 22.242403F}},
      // By the reciprocal of the determinant: a division gives 3.92775011.
      {"reciprocal",
       {4.15F, 6.54F, 2.88F, 3.81F},
       {9.06F, 0.93F, 1.14F, 8.85F},
       {true, 3.92775035F, 6.06225014F}},
  };
  for (const Row& row : rows) {
    const Crossing got = cross(row.i, row.j);
    EXPECT_TRUE(got.there == row.want.there && same(got.x, row.want.x) && same(got.y, row.want.y))
        << row.name << ": " << got.there << " " << got.x << ", " << got.y;
    const Crossing exchanged = cross(row.j, row.i);
    EXPECT_EQ(exchanged.there, row.want.there) << row.name;
    EXPECT_FALSE(std::abs(exchanged.x - row.want.x) > 2e-6F) << row.name;
  }
  EXPECT_TRUE(lines.empty());
}

TEST_F(LinesTest, one_sided_tolerance) {
  // Of 1e9, 10 is the tolerance past the second end; past the first there is none but the rounding
  // of the parameter to Single, which 60 are above.
  struct Row {
    float beyond;
    bool past_second, past_first;
  };
  const Segment to_origin{1e9F, 0, 0, 0}, from_origin{0, 0, 1e9F, 0};
  for (const Row& row : {Row{0, true, true}, Row{-10, true, true}, Row{-11, false, true},
                         Row{-59, false, true}, Row{-61, false, false}}) {
    // Leans, so that its box meets the other's although it cuts the line beyond the origin.
    const Segment leaning{2 * row.beyond - 128, -1, 128, 1};
    EXPECT_EQ(cross(to_origin, leaning).there, row.past_second) << row.beyond;
    EXPECT_EQ(cross(leaning, to_origin).there, row.past_second) << row.beyond;
    EXPECT_EQ(cross(from_origin, leaning).there, row.past_first) << row.beyond;
  }
}

TEST_F(LinesTest, levels) {
  struct Row {
    const char* name;
    Point3D from, to;
    float level;
    bool between;
    bool ok;
    float x, y;
  };
  const Row rows[] = {
      {"middle", {0, 10, 0}, {4, 30, 8}, 2, true, true, 1, 15},
      {"downwards", {4, 30, 8}, {0, 10, 0}, 2, true, true, 1, 15},
      {"at an end", {0, 10, 0}, {4, 30, 8}, 8, true, true, 4, 30},
      {"below", {0, 10, 0}, {4, 30, 8}, -0.00001F, true, false, 7, 7},
      {"above", {0, 10, 0}, {4, 30, 8}, 8.00001F, true, false, 7, 7},
      {"extended", {0, 10, 0}, {4, 30, 8}, 12, false, true, 6, 40},
      {"level line along X", {0, 10, 5}, {4, 10, 5}, 5, false, false, 7, 7},
      {"level line along Y", {4, 10, 5}, {4, 30, 5}, 5, false, false, 7, 7},
      {"NaN end", {0, 10, 0}, {4, 30, kNaN}, 0, true, false, 7, 7},
      {"NaN beginning", {0, 10, kNaN}, {4, 30, 8}, 8, true, false, 7, 7},
      // The part of the way is stored as Single: 25.6687107 without.
      {"rounding", {65.3F, 0, 54.4F}, {24.9F, 0, 7.1F}, 8, true, true, 25.6687088F, 0},
      {"single point", {4, 30, 5}, {4, 30, 5}, 99, true, true, 4, 30},
      {"NaN level", {0, 10, 0}, {4, 30, 8}, kNaN, true, false, 7, 7},
      {"NaN level, extended", {0, 10, 0}, {4, 30, 8}, kNaN, false, true, kNaN, kNaN},
  };
  for (Row row : rows) {
    float x = 7, y = 7;
    bool ok = !row.ok;
    lib.GetPointOnLine(row.from.X, row.from.Y, row.from.Z, row.to.X, row.to.Y, row.to.Z, row.level,
                       row.between, x, y, ok);
    EXPECT_EQ(ok, row.ok) << row.name;
    EXPECT_TRUE(same(x, row.x) && same(y, row.y)) << row.name << ": " << x << ", " << y;
  }
  EXPECT_TRUE(lines.empty());
}

TEST_F(LinesTest, failures_keep_what_was_written) {
  const Segment huge{0, 0, 3e20F, 3e20F}, other{0, 3e20F, 3e20F, 0};
  EXPECT_EQ(cross(huge, other), (Crossing{false, 0, 0}));  // the determinant is no Single
  EXPECT_EQ(cross({-3e38F, 0, 3e38F, 1}, {0, -1, 0, 1}), (Crossing{false, 0, 0}));
  EXPECT_EQ(lines, std::vector(2, error_line(6, "ztMathLib (Code) (LineIntersect)")));
  lines.clear();
  float x1 = 0, y1 = -3e38F, z1 = 0, x2 = 4, y2 = 3e38F, z2 = 1, level = 2, x = 7, y = 7;
  bool between = false, ok = true;
  lib.GetPointOnLine(x1, y1, z1, x2, y2, z2, level, between, x, y, ok);
  EXPECT_EQ(x, 8);
  EXPECT_EQ(y, 7);
  EXPECT_FALSE(ok);
  EXPECT_EQ(lines, std::vector{error_line(6, "sMathLib (Code) (GetPointOnLine)")});
}

}  // namespace
}  // namespace vqmath63
