// Weighted polynomial least squares: accuracy, weights, what cannot be fitted.
#include "regression/least_squares.hpp"

#include <cmath>
#include <numeric>

#include "frame/arrays.hpp"
#include "frame/companion_fixture.hpp"
#include "frame/test_table.hpp"

namespace vqmath63 {
namespace {

class LeastSquaresTest : public CompanionTest {
 protected:
  // The coefficients; none when there was no fit.
  std::vector<float> fit(const std::vector<float>& x, const std::vector<float>& y,
                         const std::vector<float>& w, std::int32_t order) {
    Array1<float> xs = array_of(x), ys = array_of(y), ws = array_of(w), c(1, order);
    c(1) = 7;
    bool ok = false;
    LeastSquares(xs, ys, ws, order, c, ok);
    if (!ok) {
      EXPECT_EQ(c(1), 7.0F);
    }
    return ok ? contents(c) : std::vector<float>{};
  }
};

TEST_F(LeastSquaresTest, coefficients_agree_with_exact_arithmetic_to_single) {
  each_row("least_squares_cases.tsv", "", 28, [&](const TableRow& row) {
    const std::int32_t n = row["n"], order = row["order"];
    const double offset = row["offset"], step = row["step"];
    std::vector<float> x, y, w;
    for (std::int32_t i = 1; i <= n; ++i) {
      x.push_back(static_cast<float>(offset + step * (i + (i * i % 3) / 8.0)));
      y.push_back(static_cast<float>((i * 37 % 64) / 4.0 - 5));
      w.push_back(static_cast<float>(1 + (i % 4) / 2.0));
    }
    const std::vector<float> got = fit(x, y, w, order);
    const std::vector<double> want = row["coefficients"];
    ASSERT_EQ(got.size(), static_cast<std::size_t>(order));
    ASSERT_EQ(got.size(), want.size());
    for (std::size_t k = 0; k < got.size(); ++k) {
      // Half a unit of Single, and a little for Double.
      EXPECT_NEAR(got[k], want[k], 6.1e-8 * std::fabs(want[k]));
    }
  });
  EXPECT_TRUE(lines.empty());
}

TEST_F(LeastSquaresTest, weights) {
  each_row("regression.tsv", "weights", 8, [&](const TableRow& row) {
    const std::vector<float> got = fit(row["x"], row["y"], row["weights"], row["order"]);
    const std::vector<float> want = row["want"];
    ASSERT_EQ(got.size(), want.size());
    for (std::size_t k = 0; k < got.size(); ++k) {
      EXPECT_NEAR(got[k], want[k], 2e-7F * std::fabs(want[k]) + 1e-14F);
    }
  });
  EXPECT_TRUE(lines.empty());
}

TEST_F(LeastSquaresTest, what_cannot_be_fitted) {
  each_row("regression.tsv", "no fit", 17, [&](const TableRow& row) {
    Array1<float> x = array_of<float>(row["x"]), y = array_of<float>(row["y"]),
                  w = array_of<float>(row["weights"]), c(1, row["room"]);
    c(1) = 7;
    bool ok = true;
    LeastSquares(x, y, w, row["order"], c, ok);
    EXPECT_FALSE(ok);
    EXPECT_EQ(c(1), 7.0F);
    EXPECT_EQ(taken(), error_lines(row["error"], "ztAnalyse - Regression (Code) (LeastSquares)"));
  });
  // More coefficients than a double can tell apart.
  std::vector<float> many(60);
  std::iota(many.begin(), many.end(), 0.0F);
  EXPECT_TRUE(fit(many, many, many, 43).empty());
  EXPECT_TRUE(lines.empty());
}

}  // namespace
}  // namespace vqmath63
