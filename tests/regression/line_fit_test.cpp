// Straight lines: transforms, quiet stops, failures half-way, the shared statistics object.
#include "regression/line_fit.hpp"

#include <cmath>

#include "frame/arrays.hpp"
#include "frame/companion_fixture.hpp"
#include "frame/test_table.hpp"
#include "info/common_globals.hpp"

namespace vqmath63 {
namespace {

const std::string kFitaLinePlace = "ztAnalyse - Regression (Code) (FitaLine)";
const std::string kFitLinePlace = "ztAnalyse - Regression (Code) (FitLine)";

class LineFitTest : public CompanionTest {};

void expect_line(const Line& got, const std::vector<float>& want, double tolerance) {
  const float figures[] = {got.intercept, got.slope, got.correlation};
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_TRUE(same(figures[i], want.at(i)) || std::fabs(figures[i] - want[i]) <= tolerance)
        << figures[i] << " instead of " << want[i];
  }
}

TEST_F(LineFitTest, lines_through_transformed_samples) {
  each_row("regression.tsv", "lines", 10, [](const TableRow& row) {
    // Bounds from 0; element 0 is not a sample.
    Array1<float> x = samples_of<float>(row["x"], 0), y = samples_of<float>(row["y"], 0);
    Line line;
    bool ok = false;
    FitaLine(x, y, row["type"], line, ok);
    EXPECT_TRUE(ok);
    expect_line(line, row["want"], 1e-6);
  });
  EXPECT_TRUE(lines.empty());
}

TEST_F(LineFitTest, degenerate_samples) {
  each_row("regression.tsv", "degenerate lines", 7, [&](const TableRow& row) {
    Array1<float> x = array_of<float>(row["x"]), y = array_of<float>(row["y"]);
    const std::vector<float> before = row["before"];
    const std::int32_t error = row["error"];
    Line line{before.at(0), before.at(1), before.at(2)};
    bool ok = error != 0;
    FitLine(x, y, line, ok);
    EXPECT_EQ(ok, error == 0);
    expect_line(line, row["want"], 0);
    EXPECT_EQ(taken(), error_lines(error, kFitLinePlace));
  });
}

TEST_F(LineFitTest, quiet_stops_and_failures_leave_the_line) {
  each_row("regression.tsv", "no line", 11, [&](const TableRow& row) {
    Array1<float> x = array_of<float>(row["x"], row["x from"]),
                  y = array_of<float>(row["y"], row["y from"]);
    Line line{5, 6, 7};
    bool ok = true;
    FitaLine(x, y, row["type"], line, ok);
    EXPECT_FALSE(ok);
    expect_line(line, {5, 6, 7}, 0);
    EXPECT_EQ(taken(), error_lines(row["error"], kFitaLinePlace));
  });
}

TEST_F(LineFitTest, a_failing_sum_reports_itself_and_counts_as_zero) {
  // Sxy fails on the short y: num = 0 x 3 - 6 x 4 = -24, dx = 6, dy = 8 x 3 - 16 = 8.
  Array1<float> x = array_of<float>({1, 2, 3}), y = array_of<float>({2, 2});
  Line line;
  bool ok = false;
  FitLine(x, y, line, ok);
  EXPECT_TRUE(ok);
  expect_line(line, {28.0F / 3, -4, static_cast<float>(-24 / std::sqrt(48.0))}, 0);
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
  const std::weak_ptr<ztStatistics> first = common_globals().Statistics;
  ASSERT_FALSE(first.expired());
  FitLine(x, x, line, ok);
  EXPECT_EQ(common_globals().Statistics, first.lock());
  std::string message = "over";
  CLOSEALLCOMMONGLOBALS(message);
  EXPECT_TRUE(first.expired());
  FitLine(x, x, line, ok);
  EXPECT_TRUE(ok);
  EXPECT_NE(common_globals().Statistics, nullptr);
}

}  // namespace
}  // namespace vqmath63
