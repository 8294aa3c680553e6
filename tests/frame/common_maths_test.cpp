// The mathematical companion, from angles to segment crossings.
#include "frame/common_maths.hpp"

#include <cmath>
#include <limits>
#include <numbers>

#include "arrays.hpp"
#include "companion_fixture.hpp"

namespace vqmath63 {
namespace {

constexpr double kPi = std::numbers::pi;

BuiltInCommonMaths maths;

TEST(CommonMaths, angles_are_in_the_half_open_circle) {
  struct Row {
    double x, y, want;
  } const rows[] = {{0, 0, 0},       {-0.0, -0.0, 0},   {-1, 0, kPi}, {-1, -0.0, kPi},
                    {3, 3, kPi / 4}, {0, -5, -kPi / 2}, {2, -0.0, 0}, {-1, -1, -3 * kPi / 4}};
  for (const auto& [x, y, want] : rows) {
    EXPECT_DOUBLE_EQ(maths.VectorAngle(x, y), want) << x << ' ' << y;
  }
  EXPECT_EQ(maths.ArcTan(-INFINITY), -kPi / 2);
}

TEST(CommonMaths, polar_and_rectangular_are_inverse) {
  double x = 0, y = 0, radius = 0, theta = 0;
  maths.RectangularToPolar(-3, 4, radius, theta);
  EXPECT_EQ(radius, 5.0);
  maths.PolarToRectangular(radius, theta + 8 * kPi, x, y);  // any angle will do
  EXPECT_NEAR(x, -3, 1e-13);
  EXPECT_NEAR(y, 4, 1e-13);
  maths.RectangularToPolar(1e308, 1e308, radius, theta);
  EXPECT_DOUBLE_EQ(radius, std::numbers::sqrt2 * 1e308);
  EXPECT_EQ(fault_of([&] { maths.RectangularToPolar(1.7e308, 1.7e308, radius, theta); }), 6);
  EXPECT_EQ(fault_of([&] { maths.PolarToRectangular(1, INFINITY, x, y); }), 5);
}

TEST(CommonMaths, ceiling_and_floor) {
  struct Row {
    double x, ceil, floor;
  } const rows[] = {{2.5, 3, 2}, {-2.5, -2, -3}, {7, 7, 7}, {-0.5, -0.0, -1}, {-0.0, -0.0, -0.0}};
  for (const auto& [x, ceil, floor] : rows) {
    EXPECT_EQ(maths.CeilToLong(x), ceil) << x;
    EXPECT_EQ(maths.FloorToLong(x), floor) << x;
    EXPECT_EQ(1 / maths.CeilToDouble(x), 1 / ceil) << x;  // tells the signs of zeros
    EXPECT_EQ(1 / maths.FloorToDouble(x), 1 / floor) << x;
  }
  for (const double bad : {2147483647.5, double{kNaN}}) {
    EXPECT_EQ(fault_of([&] { maths.CeilToLong(bad); }), 6) << bad;
    EXPECT_EQ(fault_of([&] { maths.FloorToLong(-1.5 - bad); }), 6) << bad;
  }
  EXPECT_TRUE(std::isnan(maths.FloorToDouble(kNaN)));
  EXPECT_EQ(maths.CeilToDouble(-kInf), -kInf);
}

TEST(CommonMaths, bracket_is_the_last_interval_that_begins_at_or_below_the_value) {
  float entries[] = {-99, 1, 2, 2, 5};  // the first is element 0
  Array1<float> list(entries, {0, 4});
  std::int32_t lower = 0, upper = 0, spare = 7;
  std::pair<float, std::int32_t> rows[] = {{0.0F, 1}, {1.0F, 1}, {1.5F, 1}, {2.0F, 3},
                                           {4.9F, 3}, {5.0F, 3}, {9.0F, 3}, {kNaN, 1}};
  for (auto& [value, want] : rows) {
    maths.BracketIndex(value, list, lower, upper, spare);
    EXPECT_EQ(lower, want) << value;
    EXPECT_EQ(upper, want + 1) << value;
  }
  EXPECT_EQ(spare, 0);
  for (Array1<float> bad : {Array1<float>(), Array1<float>(1, 1), Array1<float>(2, 4)}) {
    EXPECT_EQ(fault_of([&] { maths.BracketIndex(entries[1], bad, lower, upper, spare); }), 9);
  }
}

TEST(CommonMaths, interpolation) {
  constexpr float kMax = std::numeric_limits<float>::max();
  struct Row {
    const char* name;
    std::vector<float> x, y, at, want;
    std::int32_t fault, x_column, y_column;
  } rows[] = {
      {"step", {1, 2, 2, 4}, {10, 20, 40, 60}, {1.5F, 2, 3, 5}, {15, 20, 50, 70}, 0, 1, 2},
      {"on the table as it came", {1, 2, 4}, {10, 20, 60}, {4, 0, 1}, {60, 0, 10}, 0, 1, 2},
      {"fewer than rows", {1, 2}, {10, 20}, {2}, {20, 20}, 0, 1, 2},
      {"one row", {3}, {8}, {99}, {8}, 0, 1, 2},
      {"one step", {3, 3}, {8, 9}, {2, 4}, {8, 8}, 0, 1, 2},
      {"NaN", {1, 2}, {10, 20}, {kNaN, 1}, {kNaN, 10}, 0, 1, 2},
      {"more than rows", {1, 2}, {10, 20}, {1, 1, 1}, {10, 20}, 9, 1, 2},
      {"x column", {1, 2}, {10, 20}, {1}, {10, 20}, 9, 0, 2},
      {"y column", {1, 2}, {10, 20}, {1}, {10, 20}, 9, 1, 3},
      {"does not fit", {1, 2}, {0, kMax}, {1.5F, 3}, {0, kMax}, 6, 1, 2},
  };
  for (Row& row : rows) {
    const std::size_t n = row.x.size();
    std::vector<float> cells = row.x;
    cells.insert(cells.end(), row.y.begin(), row.y.end());
    Array2<float> table(cells.data(), {1, static_cast<std::int32_t>(n)}, {1, 2});
    Array1<float> at{std::span<float>(row.at)};
    bool ok = row.fault != 0;
    std::int32_t mode = 0;
    const auto run = [&] {
      maths.InterpolateTable(at, row.x_column, row.y_column, table, ok, mode);
    };
    EXPECT_EQ(fault_of(run), row.fault) << row.name;
    EXPECT_EQ(ok, row.fault == 0) << row.name;
    for (std::size_t k = 0; k < n; ++k) EXPECT_TRUE(same(cells[n + k], row.want[k])) << row.name;
  }
}

TEST(CommonMaths, segments_cross_with_their_end_points) {
  struct Row {
    const char* name;
    float c[8];
    bool want;
    float x, y;
  } const rows[] = {
      {"plain", {0, 0, 4, 4, 0, 4, 4, 0}, true, 2, 2},
      {"corner", {0, 0, 1, 1, 1, 1, 2, 0}, true, 1, 1},
      {"T", {0, 0, 4, 2, 2, 1, 7, 9}, true, 2, 1},
      {"short of it", {0, 0, 1, 1, 3, 0, 0, 3}, false, 0, 0},
      {"parallel", {0, 0, 2, 2, 0, 1, 2, 3}, false, 0, 0},
      {"one line", {0.1F, 0.3F, 0.2F, 0.6F, 0.1F, 0.3F, 0.4F, 1.2F}, false, 0, 0},
      {"a point", {1, 1, 1, 1, 0, 0, 2, 2}, false, 0, 0},
      {"field",
       {49e4F, 67e5F, 490004, 6700004, 49e4F, 6700004, 490004, 67e5F},
       true,
       490002,
       6700002},
      {"far end", {-1e30F, 1, 1, 1, 1, -3, 1, 5}, true, 1, 1},
      {"far T", {-1e30F, 1, 4, 1, 1, 1, 1, 5}, true, 1, 1},
      {"huge", {-3e38F, -3e38F, 3e38F, 3e38F, -3e38F, 3e38F, 3e38F, -3e38F}, true, 0, 0},
      {"NaN", {kNaN, 0, 4, 4, 0, 4, 4, 0}, false, 0, 0},
  };
  // Either segment first, either way round.
  const int orders[][8] = {
      {0, 1, 2, 3, 4, 5, 6, 7}, {4, 5, 6, 7, 0, 1, 2, 3}, {0, 1, 2, 3, 6, 7, 4, 5}};
  for (const Row& row : rows) {
    for (const auto& order : orders) {
      float c[8];
      for (int i = 0; i < 8; ++i) c[i] = row.c[order[i]];
      bool crosses = !row.want;  // the result may go where a coordinate was
      maths.SegmentCrossPoint(c[0], c[1], c[2], c[3], c[4], c[5], c[6], c[7], c[0], c[7], crosses);
      EXPECT_EQ(crosses, row.want) << row.name;
      EXPECT_EQ(c[0], row.x) << row.name;
      EXPECT_EQ(c[7], row.y) << row.name;
    }
  }
}

}  // namespace
}  // namespace vqmath63
