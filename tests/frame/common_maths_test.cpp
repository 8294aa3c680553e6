// The mathematical companion, from angles to segment crossings.
#include "frame/common_maths.hpp"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <tuple>

#include "arrays.hpp"
#include "companion_fixture.hpp"
#include "frame/replaced_companions.hpp"
#include "test_table.hpp"

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

TEST(CommonMaths, polar_and_rectangular_at_their_limits) {
  double x = 0, y = 0, radius = 0, theta = 0;
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
  each_row("frame.tsv", "interpolation", 11, [](const TableRow& row) {
    const std::vector<float> x = row["x"], y = row["y"], want = row["want"];
    std::vector<float> cells = x;
    cells.insert(cells.end(), y.begin(), y.end());
    Array2<float> table(cells.data(), {1, static_cast<std::int32_t>(x.size())}, {1, 2});
    Array1<float> at = array_of<float>(row["at"]);
    const std::int32_t fault = row["fault"];
    std::int32_t x_column = row["x column"], y_column = row["y column"], mode = 0;
    bool ok = fault != 0;
    const auto run = [&] { maths.InterpolateTable(at, x_column, y_column, table, ok, mode); };
    EXPECT_EQ(fault_of(run), fault);
    EXPECT_EQ(ok, fault == 0);
    EXPECT_TRUE(std::equal(want.begin(), want.end(), &cells[x.size()], same));
  });
}

TEST(CommonMaths, segments_cross_with_their_end_points) {
  // Either segment first, either way round.
  const std::size_t orders[][8] = {
      {0, 1, 2, 3, 4, 5, 6, 7}, {4, 5, 6, 7, 0, 1, 2, 3}, {0, 1, 2, 3, 6, 7, 4, 5}};
  const auto passed_on = as_host_code(std::make_shared<BuiltInCommonMaths>());
  each_row("frame.tsv", "segments", 12, [&](const TableRow& row) {
    const std::vector<float> ends = row["coordinates"];
    const bool want = row["crosses"];
    const float x = row["x"], y = row["y"];
    for (const auto& order : orders) {
      float c[8];
      for (std::size_t i = 0; i < 8; ++i) c[i] = ends.at(order[i]);
      float x_passed = 0.0F, y_passed = 0.0F;
      bool passed = !want, crosses = !want;
      passed_on->SegmentCrossPoint(c[0], c[1], c[2], c[3], c[4], c[5], c[6], c[7], x_passed,
                                   y_passed, passed);
      // The result may go where a coordinate was.
      maths.SegmentCrossPoint(c[0], c[1], c[2], c[3], c[4], c[5], c[6], c[7], c[0], c[7], crosses);
      EXPECT_EQ(std::tie(crosses, c[0], c[7]), std::tie(want, x, y));
      EXPECT_EQ(std::tie(passed, x_passed, y_passed), std::tie(want, x, y));
    }
  });
}

}  // namespace
}  // namespace vqmath63
