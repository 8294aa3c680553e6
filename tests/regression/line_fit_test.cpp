// Straight lines: transforms, quiet stops, failures half-way, the shared statistics object.
#include "regression/line_fit.hpp"

#include <cmath>

#include "frame/arrays.hpp"
#include "frame/companion_fixture.hpp"
#include "info/common_globals.hpp"

namespace vqmath63 {
namespace {

const std::string kFitaLinePlace = "ztAnalyse - Regression (Code) (FitaLine)";
const std::string kFitLinePlace = "ztAnalyse - Regression (Code) (FitLine)";

class LineFitTest : public CompanionTest {};

void expect_line(const Line& got, const Line& want, double tolerance, const char* name) {
  const float pairs[][2] = {{got.intercept, want.intercept},
                            {got.slope, want.slope},
                            {got.correlation, want.correlation}};
  for (const auto& [figure, wanted] : pairs) {
    EXPECT_TRUE(same(figure, wanted) || std::fabs(figure - wanted) <= tolerance)
        << name << ": " << figure << " instead of " << wanted;
  }
}

TEST_F(LineFitTest, lines_through_transformed_samples) {
  const auto e = [](double x) { return static_cast<float>(std::exp(x)); };
  const auto ln = [](double x) { return static_cast<float>(std::log(x)); };
  struct Row {
    const char* name;
    std::int32_t type;
    std::vector<float> x, y;
    Line want;
  } const rows[] = {
      {"exact, falling", 1, {0, 2, 4}, {1, 0, -1}, {1, -0.5F, -1}},
      // num = 22, dx = 20, dy = 27 by hand.
      {"with scatter", 1, {1, 2, 3, 4}, {1, 2, 4, 4}, {0, 1.1F, 22 / std::sqrt(540.0F)}},
      {"logarithmic", 2, {1, e(1), e(2)}, {3, 5, 7}, {3, 2, 1}},
      {"exponential", 3, {0, 1, 2}, {2, 2 * e(0.5), 2 * e(1)}, {ln(2), 0.5F, 1}},
      {"one sample", 1, {3}, {5}, {5, 0, 0}},
      {"power", 4, {1, 2, 4}, {3, 12, 48}, {ln(3), 2, 1}},
      {"polynomial fits as power", 5, {1, 2, 4}, {3, 12, 48}, {ln(3), 2, 1}},
      {"so do unknown types", 0, {1, 2, 4}, {3, 12, 48}, {ln(3), 2, 1}},
      // Only the transformed quantity has to be above 0.
      {"logarithms of x", 2, {1, e(1)}, {-1, 0}, {-1, 1, 1}},
      {"logarithms of y", 3, {-1, 0}, {1, e(1)}, {1, 1, 1}},
  };
  for (const Row& row : rows) {
    // Bounds from 0; element 0 is not a sample.
    Array1<float> x = samples_of(row.x, 0), y = samples_of(row.y, 0);
    Line line;
    bool ok = false;
    FitaLine(x, y, row.type, line, ok);
    EXPECT_TRUE(ok) << row.name;
    expect_line(line, row.want, 1e-6, row.name);
  }
  EXPECT_TRUE(lines.empty());
}

TEST_F(LineFitTest, degenerate_samples) {
  // The product dx dy falls below Single and counts as 2.22e-16, as a Single.
  const double faint = std::ldexp(12.0, -100) / std::sqrt(static_cast<double>(2.22e-16F));
  const std::vector<float> tiny{0x1p-50F, 0x2p-50F, 0x3p-50F}, twice{0x2p-50F, 0x4p-50F, 0x6p-50F},
      large{0x1p33F, 0x2p33F, 0x3p33F}, wide{0x1p63F, -0x1p63F};
  struct Row {
    const char* name;
    std::vector<float> x, y;
    Line before, want;
    std::int32_t error = 0;
  } const rows[] = {
      {"equal abscissae keep the slope that was", {2, 2, 2}, {1, 2, 3}, {5, 7, 5}, {-12, 7, 0}},
      {"one sample", {3}, {5}, {5, 1, 5}, {2, 1, 0}},
      {"equal ordinates", {1, 2, 3}, {4, 4, 4}, {5, 5, 5}, {4, 0, 0}},
      {"dx dy below Single", tiny, twice, {}, {0, 2, static_cast<float>(faint)}},
      {"dx dy beyond Single: only the correlation is lost", large, large, {5, 5, 5}, {0, 1, 5}, 6},
      // Sxx = 2^127 fits a Single, dx = 2^128 does not.
      {"dx beyond Single: nothing is set", wide, {1, 2}, {5, 5, 5}, {5, 5, 5}, 6},
      {"a NaN flows through", {1, 2, 3}, {1, kNaN, 3}, {}, {kNaN, kNaN, kNaN}},
  };
  for (const Row& row : rows) {
    Array1<float> x = array_of(row.x), y = array_of(row.y);
    Line line = row.before;
    bool ok = row.error != 0;
    FitLine(x, y, line, ok);
    EXPECT_EQ(ok, row.error == 0) << row.name;
    expect_line(line, row.want, 0, row.name);
    EXPECT_EQ(taken(), error_lines(row.error, kFitLinePlace)) << row.name;
  }
}

TEST_F(LineFitTest, quiet_stops_and_failures_leave_the_line) {
  const Array1<float> good = array_of<float>({1, 2, 3});
  struct Row {
    const char* name;
    std::int32_t type;
    Array1<float> x, y;
    std::int32_t error;
  } const rows[] = {
      {"lengths differ", 1, good, array_of<float>({1, 2}), 0},
      {"no sample", 1, Array1<float>(0, 0), Array1<float>(0, 0), 0},
      {"logarithmic, x at 0", 2, array_of<float>({1, 0, 2}), good, 0},
      {"logarithmic, x no number", 2, array_of<float>({1, kNaN, 2}), good, 0},
      {"exponential, y at 0", 3, good, array_of<float>({1, 2, 0}), 0},
      {"exponential, y no number", 3, good, array_of<float>({1, 2, kNaN}), 0},
      {"power, x at 0", 4, array_of<float>({1, 0, 2}), good, 5},
      {"power, y below 0", 4, good, array_of<float>({1, -2, 2}), 5},
      {"polynomial, x at minus infinity", 5, array_of<float>({1, -kInf, 2}), good, 5},
      {"no abscissae", 1, {}, good, 9},
      {"ordinates from 2", 1, good, array_of<float>({1, 2}, 2), 9},
  };
  for (const Row& row : rows) {
    Array1<float> x = row.x, y = row.y;
    Line line{5, 6, 7};
    bool ok = true;
    FitaLine(x, y, row.type, line, ok);
    EXPECT_FALSE(ok) << row.name;
    expect_line(line, {5, 6, 7}, 0, row.name);
    EXPECT_EQ(taken(), error_lines(row.error, kFitaLinePlace)) << row.name;
  }
}

TEST_F(LineFitTest, a_failing_sum_reports_itself_and_counts_as_zero) {
  // Sxy fails on the short y: num = 0 x 3 - 6 x 4 = -24, dx = 6, dy = 8 x 3 - 16 = 8.
  Array1<float> x = array_of<float>({1, 2, 3}), y = array_of<float>({2, 2});
  Line line;
  bool ok = false;
  FitLine(x, y, line, ok);
  EXPECT_TRUE(ok);
  expect_line(line, {28.0F / 3, -4, static_cast<float>(-24 / std::sqrt(48.0))}, 0, "short y");
  EXPECT_EQ(taken(), Lines{error_line(9, "ztStatistics (Code) (SumOfXY)")});

  // Without a sample all five sums fail, and 0 / 0 ends the fit.
  Array1<float> none = array_of<float>({1}, 0);
  FitLine(none, none, line, ok);
  EXPECT_FALSE(ok);
  const auto sum = [](const char* name) {
    return error_line(9, std::string("ztStatistics (Code) (") + name + ")");
  };
  EXPECT_EQ(taken(), (Lines{sum("SumOfX"), sum("SumOfX"), sum("SumOfXY"), sum("SumOfX2"),
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
