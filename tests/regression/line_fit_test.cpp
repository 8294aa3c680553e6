// Straight lines: transforms, quiet stops, failures half-way, the shared statistics object.
#include "regression/line_fit.hpp"

#include <cmath>
#include <limits>

#include "frame/arrays.hpp"
#include "frame/companion_fixture.hpp"
#include "info/common_globals.hpp"

namespace vqmath63 {
namespace {

constexpr float kInf = std::numeric_limits<float>::infinity();
constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
const std::string kFitaLinePlace = "ztAnalyse - Regression (Code) (FitaLine)";
const std::string kFitLinePlace = "ztAnalyse - Regression (Code) (FitLine)";

class LineFitTest : public CompanionTest {};

TEST_F(LineFitTest, lines_through_transformed_samples) {
  struct Row {
    const char* name;
    std::int32_t type;
    std::vector<double> x, y;
    double intercept, slope, correlation;
  };
  const Row rows[] = {
      {"exact", 1, {1, 2, 3, 4, 5}, {3, 5, 7, 9, 11}, 1, 2, 1},
      {"exact, falling", 1, {0, 2, 4}, {1, 0, -1}, 1, -0.5, -1},
      // num = 22, dx = 20, dy = 27 by hand.
      {"with scatter", 1, {1, 2, 3, 4}, {1, 2, 4, 4}, 0, 1.1, 22 / std::sqrt(20.0 * 27.0)},
      {"logarithmic", 2, {1, std::exp(1.0), std::exp(2.0)}, {3, 5, 7}, 3, 2, 1},
      {"exponential",
       3,
       {0, 1, 2, 4},
       {2, 2 * std::exp(0.5), 2 * std::exp(1.0), 2 * std::exp(2.0)},
       std::log(2.0),
       0.5,
       1},
      {"power", 4, {1, 2, 4}, {3, 12, 48}, std::log(3.0), 2, 1},
      {"polynomial fits as power", 5, {1, 2, 4}, {3, 12, 48}, std::log(3.0), 2, 1},
      {"so do unknown types", 0, {1, 2, 4}, {3, 12, 48}, std::log(3.0), 2, 1},
      {"and those above", 9, {1, 2, 4}, {3, 12, 48}, std::log(3.0), 2, 1},
  };
  for (const Row& row : rows) {
    // Bounds from 0; element 0 is not a sample.
    Array1<float> x(0, static_cast<std::int32_t>(row.x.size()));
    Array1<float> y(0, x.upper());
    x(0) = y(0) = -1;
    for (std::size_t i = 0; i < row.x.size(); ++i) {
      x(static_cast<std::int64_t>(i) + 1) = static_cast<float>(row.x[i]);
      y(static_cast<std::int64_t>(i) + 1) = static_cast<float>(row.y[i]);
    }
    Line line;
    bool ok = false;
    FitaLine(x, y, row.type, line, ok);
    EXPECT_TRUE(ok) << row.name;
    EXPECT_NEAR(line.intercept, row.intercept, 1e-6) << row.name;
    EXPECT_NEAR(line.slope, row.slope, 1e-6) << row.name;
    EXPECT_NEAR(line.correlation, row.correlation, 1e-6) << row.name;
  }
  EXPECT_TRUE(lines.empty());
}

TEST_F(LineFitTest, degenerate_samples) {
  const auto power = [](int e) { return static_cast<float>(std::ldexp(1.0, e)); };
  // The product dx dy falls below Single and counts as 2.22e-16, as a Single.
  const double faint = std::ldexp(12.0, -100) / std::sqrt(static_cast<double>(2.22e-16F));
  struct Row {
    const char* name;
    std::vector<float> x, y;
    Line before, want;
    std::int32_t error;
  };
  const Row rows[] = {
      {"equal abscissae keep the slope that was", {2, 2, 2}, {1, 2, 3}, {5, 7, 5}, {-12, 7, 0}, 0},
      {"one sample", {3}, {5}, {5, 1, 5}, {2, 1, 0}, 0},
      {"equal ordinates", {1, 2, 3}, {4, 4, 4}, {5, 5, 5}, {4, 0, 0}, 0},
      {"dx dy below Single",
       {power(-50), 2 * power(-50), 3 * power(-50)},
       {2 * power(-50), 4 * power(-50), 6 * power(-50)},
       {},
       {0, 2, static_cast<float>(faint)},
       0},
      {"dx dy beyond Single: only the correlation is lost",
       {power(33), 2 * power(33), 3 * power(33)},
       {power(33), 2 * power(33), 3 * power(33)},
       {5, 5, 5},
       {0, 1, 5},
       6},
      // Sxx = 2^127 fits a Single, dx = 2^128 does not.
      {"dx beyond Single: nothing is set",
       {power(63), -power(63)},
       {1, 2},
       {5, 5, 5},
       {5, 5, 5},
       6},
      {"a NaN flows through", {1, 2, 3}, {1, kNaN, 3}, {}, {kNaN, kNaN, kNaN}, 0},
  };
  for (const Row& row : rows) {
    lines.clear();
    Array1<float> x = array_of(row.x), y = array_of(row.y);
    Line line = row.before;
    bool ok = row.error != 0;
    FitLine(x, y, line, ok);
    EXPECT_EQ(ok, row.error == 0) << row.name;
    EXPECT_TRUE(same(line.intercept, row.want.intercept)) << row.name << ": " << line.intercept;
    EXPECT_TRUE(same(line.slope, row.want.slope)) << row.name << ": " << line.slope;
    EXPECT_TRUE(same(line.correlation, row.want.correlation))
        << row.name << ": " << line.correlation;
    std::vector<std::string> want;
    if (row.error != 0) want.push_back(error_line(row.error, kFitLinePlace));
    EXPECT_EQ(lines, want) << row.name;
  }
}

TEST_F(LineFitTest, quiet_stops_and_failures_leave_the_line) {
  const Array1<float> good = array_of<float>({1, 2, 3});
  struct Row {
    const char* name;
    std::int32_t type;
    Array1<float> x, y;
    std::int32_t error;
  };
  const Row rows[] = {
      {"lengths differ", 1, good, array_of<float>({1, 2}), 0},
      {"no sample", 1, array_of<float>({1}, 0), array_of<float>({1}, 0), 0},
      {"bounds below 1", 1, array_of<float>({1}, -3), array_of<float>({1}, -3), 0},
      {"logarithmic, x at 0", 2, array_of<float>({1, 0, 2}), good, 0},
      {"logarithmic, x below 0", 2, array_of<float>({1, -1, 2}), good, 0},
      {"logarithmic, x no number", 2, array_of<float>({1, kNaN, 2}), good, 0},
      {"exponential, y at 0", 3, good, array_of<float>({1, 2, 0}), 0},
      {"exponential, y no number", 3, good, array_of<float>({1, 2, kNaN}), 0},
      {"power, x at 0", 4, array_of<float>({1, 0, 2}), good, 5},
      {"power, y below 0", 4, good, array_of<float>({1, -2, 2}), 5},
      {"polynomial, x at minus infinity", 5, array_of<float>({1, -kInf, 2}), good, 5},
      {"polynomial, y at 0", 5, good, array_of<float>({1, 2, 0}), 5},
      {"no abscissae", 1, {}, good, 9},
      {"no ordinates", 1, good, {}, 9},
      {"abscissae from 2", 1, array_of<float>({1, 2}, 2), good, 9},
      {"ordinates from 2", 1, good, array_of<float>({1, 2}, 2), 9},
  };
  for (const Row& row : rows) {
    lines.clear();
    Array1<float> x = row.x, y = row.y;
    Line line{5, 6, 7};
    bool ok = true;
    FitaLine(x, y, row.type, line, ok);
    EXPECT_FALSE(ok) << row.name;
    EXPECT_TRUE(line.intercept == 5 && line.slope == 6 && line.correlation == 7) << row.name;
    std::vector<std::string> want;
    if (row.error != 0) want.push_back(error_line(row.error, kFitaLinePlace));
    EXPECT_EQ(lines, want) << row.name;
  }
  // Only the transformed quantity has to be above 0.
  for (const std::int32_t type : {2, 3}) {
    Array1<float> up = good, down = array_of<float>({-1, 0, 1});
    Line line;
    bool ok = false;
    FitaLine(type == 2 ? up : down, type == 2 ? down : up, type, line, ok);
    EXPECT_TRUE(ok) << type;
  }
}

TEST_F(LineFitTest, a_failing_sum_reports_itself_and_counts_as_zero) {
  // Sxy fails on the short y: num = 0 x 3 - 6 x 4 = -24, dx = 6, dy = 8 x 3 - 16 = 8.
  Array1<float> x = array_of<float>({1, 2, 3}), y = array_of<float>({2, 2});
  Line line;
  bool ok = false;
  FitLine(x, y, line, ok);
  EXPECT_TRUE(ok);
  EXPECT_EQ(line.slope, -4.0F);
  EXPECT_EQ(line.intercept, static_cast<float>(28.0 / 3));
  EXPECT_EQ(line.correlation, static_cast<float>(-24 / std::sqrt(48.0)));
  EXPECT_EQ(lines, std::vector<std::string>{error_line(9, "ztStatistics (Code) (SumOfXY)")});

  // Without a sample all five sums fail, and 0 / 0 ends the fit.
  Array1<float> none = array_of<float>({1}, 0);
  lines.clear();
  FitLine(none, none, line, ok);
  EXPECT_FALSE(ok);
  const auto sum = [](const char* name) {
    return error_line(9, std::string("ztStatistics (Code) (") + name + ")");
  };
  EXPECT_EQ(lines,
            (std::vector<std::string>{sum("SumOfX"), sum("SumOfX"), sum("SumOfXY"), sum("SumOfX2"),
                                      sum("SumOfX2"), error_line(5, kFitLinePlace)}));
}

TEST_F(LineFitTest, one_statistics_object_serves_the_thread_until_close_down) {
  Array1<float> x = array_of<float>({1, 2, 3});
  Line line;
  bool ok = false;
  FitLine(x, x, line, ok);
  const std::weak_ptr<void> first = common_globals().LastFurther;
  ASSERT_FALSE(first.expired());
  FitLine(x, x, line, ok);
  EXPECT_EQ(common_globals().LastFurther, first.lock());
  std::string message = "over";
  CLOSEALLCOMMONGLOBALS(message);
  EXPECT_TRUE(first.expired());
  FitLine(x, x, line, ok);
  EXPECT_TRUE(ok);
  EXPECT_NE(common_globals().LastFurther, nullptr);
}

}  // namespace
}  // namespace vqmath63
