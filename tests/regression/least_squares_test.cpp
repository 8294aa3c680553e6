// Weighted polynomial least squares: accuracy, weights, what cannot be fitted.
#include "regression/least_squares.hpp"

#include <cmath>
#include <fstream>
#include <limits>
#include <numeric>

#include "frame/arrays.hpp"
#include "frame/companion_fixture.hpp"

namespace vqmath63 {
namespace {

class LeastSquaresTest : public CompanionTest {
 protected:
  // The coefficients; none when there was no fit.
  std::vector<float> fit(const std::vector<float>& x, const std::vector<float>& y,
                         const std::vector<float>& w, std::int32_t order) {
    Array1<float> xs = array_of(x), ys = array_of(y), ws = array_of(w), c(1, order);
    bool ok = false;
    LeastSquares(xs, ys, ws, order, c, ok);
    return ok ? contents(c) : std::vector<float>{};
  }
};

TEST_F(LeastSquaresTest, coefficients_agree_with_exact_arithmetic_to_single) {
  std::ifstream file(VQ_TEST_DATA "/least_squares_cases.tsv");
  std::string header;
  std::getline(file, header);
  std::int32_t n = 0;
  int count = 0;
  for (; file >> n; ++count) {
    double offset = 0, step = 0;
    std::int32_t order = 0;
    file >> offset >> step >> order;
    std::vector<float> x, y, w;
    for (std::int32_t i = 1; i <= n; ++i) {
      x.push_back(static_cast<float>(offset + step * (i + (i * i % 3) / 8.0)));
      y.push_back(static_cast<float>((i * 37 % 64) / 4.0 - 5));
      w.push_back(static_cast<float>(1 + (i % 4) / 2.0));
    }
    const std::vector<float> got = fit(x, y, w, order);
    ASSERT_EQ(got.size(), static_cast<std::size_t>(order)) << "case " << count;
    for (const float coefficient : got) {
      double want = 0;
      file >> want;
      // Half a unit of Single, and a little for Double.
      EXPECT_NEAR(coefficient, want, 6.1e-8 * std::fabs(want)) << "case " << count;
    }
  }
  EXPECT_EQ(count, 28);
  EXPECT_TRUE(lines.empty());
}

TEST_F(LeastSquaresTest, weights) {
  struct Row {
    const char* name;
    std::vector<float> x, y, w;
    std::int32_t order;
    std::vector<float> want;
  } const rows[] = {
      {"a weighted mean", {4, 9}, {1, 5}, {3, 1}, 1, {2}},
      {"weight 0 leaves a sample out", {1, 3, 2}, {3, 7, 999}, {1, 1, 0}, 2, {1, 2}},
      {"whatever it is", {1, 3, kNaN}, {3, 7, kInf}, {1, 1, 0}, 2, {1, 2}},
      {"a parabola through three", {0, 1, 3}, {1, 3, 13}, {1, 2, 3}, 3, {1, 1, 1}},
      {"faint weights", {0, 1, 2}, {0, 2, 1}, {1e-44F, 1e-44F, 2e-44F}, 1, {1}},
      {"equal abscissae average", {5, 5}, {1, 2}, {1, 1}, 1, {1.5F}},
      {"nothing but zeros", {0, 1, 2}, {0, 0, 0}, {1, 1, 1}, 2, {0, 0}},
      {"large ordinates", {0, 1}, {3e38F, 2e38F}, {1, 1}, 2, {3e38F, -1e38F}},
  };
  for (const Row& row : rows) {
    const std::vector<float> got = fit(row.x, row.y, row.w, row.order);
    ASSERT_EQ(got.size(), row.want.size()) << row.name;
    for (std::size_t k = 0; k < got.size(); ++k) {
      EXPECT_NEAR(got[k], row.want[k], 2e-7F * std::fabs(row.want[k]) + 1e-14F) << row.name;
    }
  }
  EXPECT_TRUE(lines.empty());
}

TEST_F(LeastSquaresTest, what_cannot_be_fitted) {
  const std::vector<float> up{0, 1, 2}, one(3, 1.0F);
  std::vector<float> many(60);
  std::iota(many.begin(), many.end(), 0.0F);
  struct Row {
    const char* name;
    std::vector<float> x, y, w;
    std::int32_t order, error;  // 0: no fit, no message
    std::int32_t room = 4;      // of the list
  } const rows[] = {
      {"more coefficients than samples", up, up, one, 4, 0},
      {"more than different abscissae", {1, 2, 1}, up, one, 3, 0},
      {"more than samples with weight", up, up, {1, 0, 1}, 3, 0},
      {"more than a double can tell apart", many, many, many, 43, 0},
      {"a huge order", up, up, one, std::numeric_limits<std::int32_t>::max(), 0},
      {"a NaN abscissa", {0, kNaN, 2}, up, one, 2, 0},
      {"a NaN ordinate", up, {0, kNaN, 2}, one, 2, 0},
      {"a NaN weight", up, up, {1, kNaN, 1}, 2, 0},
      {"order 0", up, up, one, 0, 9},
      {"a negative weight", up, up, {1, -1, 1}, 1, 5},
      {"an infinite abscissa", {0, kInf, 2}, up, one, 2, 5},
      {"an infinite ordinate", up, {0, -kInf, 2}, one, 2, 5},
      {"an infinite weight", up, up, {1, kInf, 1}, 2, 5},
      {"a slope beyond Single", {0, 1e-30F}, {0, 1e30F}, {1, 1}, 2, 6},
      {"no abscissae", {}, up, one, 1, 9},
      {"ordinates short", up, {1, 2}, one, 1, 9},
      {"weights short", up, up, {1, 1}, 1, 9},
      {"list short", up, up, one, 3, 9, 2},
  };
  for (const Row& row : rows) {
    Array1<float> x = array_of(row.x), y = array_of(row.y), w = array_of(row.w);
    Array1<float> c(1, row.room);
    c(1) = 7;
    bool ok = true;
    LeastSquares(x, y, w, row.order, c, ok);
    EXPECT_FALSE(ok) << row.name;
    EXPECT_EQ(c(1), 7.0F) << row.name;
    EXPECT_EQ(taken(), error_lines(row.error, "ztAnalyse - Regression (Code) (LeastSquares)"))
        << row.name;
  }
}

}  // namespace
}  // namespace vqmath63
