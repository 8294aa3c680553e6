// The solver of linear systems: rounding, pivots, flags, and what it leaves alone.
#include "regression/matrix.hpp"

#include <algorithm>
#include <cmath>
#include <random>

#include "frame/arrays.hpp"
#include "frame/companion_fixture.hpp"
#include "frame/test_table.hpp"

namespace vqmath63 {
namespace {

constexpr const char* kPlace = "ztAnalyse - matrix (Code) (MatrixEquation)";

class MatrixTest : public CompanionTest {};

using Rows = std::vector<std::vector<float>>;

// With columns from 1; unallocated without rows.
Array2<float> matrix_of(const Rows& rows, std::int32_t first_row = 1) {
  if (rows.empty()) return {};
  Array2<float> a({first_row, first_row + static_cast<std::int32_t>(rows.size()) - 1},
                  {1, static_cast<std::int32_t>(rows.front().size())});
  for (std::size_t i = 0; i < a.size(); ++i) a.data()[i] = rows[i % rows.size()][i / rows.size()];
  return a;
}

TEST_F(MatrixTest, solutions_round_at_every_step) {
  each_row("solver_cases.tsv", "", 17, [&](const TableRow& row) {
    // Bounds from 0: what stands there must not be looked at.
    const Rows matrix = row["matrix"];
    const auto n = static_cast<std::int32_t>(matrix.size());
    Array2<float> a({0, n}, {0, n});
    Array1<float> b = samples_of<float>(row["right side"], 0), x(0, n),
                  want = samples_of<float>(row["solution"], 0);
    for (std::int32_t i = 0; i <= n; ++i) a(i, 0) = a(0, i) = kNaN;
    for (std::size_t i = 0; i < matrix.size(); ++i) {
      for (std::size_t j = 0; j < matrix.size(); ++j)
        a(std::int64_t(i + 1), std::int64_t(j + 1)) = matrix[i].at(j);
    }
    x(0) = want(0) = 7;
    const Array2<float> a_before = a;
    const Array1<float> b_before = b;
    bool singular = true, ok = false;
    MatrixEquation(a, b, x, singular, ok);
    EXPECT_TRUE(ok && !singular);
    EXPECT_EQ(contents(x), contents(want));
    EXPECT_TRUE(std::equal(b.data(), b.data() + b.size(), b_before.data(), same));
    EXPECT_TRUE(std::equal(a.data(), a.data() + a.size(), a_before.data(), same));
  });
  EXPECT_TRUE(lines.empty());
}

TEST_F(MatrixTest, flags_and_failures) {
  each_row("regression.tsv", "systems", 23, [&](const TableRow& row) {
    const std::vector<float> want = row["want"];
    const char outcome = row["outcome"];
    Array2<float> a = matrix_of(row["matrix"], row["first row"]);
    Array1<float> b = array_of<float>(row["right side"]),
                  x = array_of(std::vector<float>(want.size(), 9));
    bool singular = true, ok = true;
    MatrixEquation(a, b, x, singular, ok);
    EXPECT_EQ(ok, outcome == 'o');
    EXPECT_EQ(singular, outcome == 's');
    EXPECT_EQ(taken(), error_lines(outcome <= '9' ? outcome - '0' : 0, kPlace));
    EXPECT_TRUE(std::equal(want.begin(), want.end(), x.data(), same));
  });
}

// The steps as they are, all columns at every one, in rows of Singles whose last is the right side;
// false when a number overflows.
bool worked_out(Rows& rows) {
  const std::size_t n = rows.size();
  const auto minus = [](float& a, double m, float b) {
    a = static_cast<float>(double{a} - m * double{b});
    return std::isfinite(a);
  };
  for (std::size_t k = 0; k < n; ++k) {
    std::size_t pivot = k;
    for (std::size_t i = k; i < n; ++i) {
      if (std::fabs(rows[i][k]) >= std::fabs(rows[pivot][k])) pivot = i;
    }
    rows[k].swap(rows[pivot]);
    for (std::size_t i = k + 1; i < n; ++i) {
      const auto m = static_cast<double>(rows[i][k] / rows[k][k]);
      for (std::size_t j = 0; j <= n; ++j) {
        if (!minus(rows[i][j], m, rows[k][j])) return false;
      }
    }
  }
  for (std::size_t i = n; i-- > 0;) {
    for (std::size_t j = i + 1; j < n; ++j) {
      if (!minus(rows[i][n], double{rows[i][j]}, rows[j][n])) return false;
    }
    rows[i][n] /= rows[i][i];
    if (!std::isfinite(rows[i][n])) return false;
  }
  return true;
}

TEST_F(MatrixTest, large_systems_take_the_same_steps) {
  std::mt19937 random(5);
  int overflows = 0;
  constexpr float kGrowing = 0x1p110F;  // nearly doubles at every step, in the last column
  for (const float scale : {1.0F, 1e30F, 1e36F, 2e38F, kGrowing}) {
    for (const std::size_t n : {17U, 20U, 40U, 99U, 100U, 120U}) {
      SCOPED_TRACE(testing::Message() << "order " << n << ", scale " << scale);
      Rows rows(n, std::vector<float>(n + 1));
      for (std::size_t i = 0; i < n; ++i) {
        for (std::size_t j = 0; j <= n; ++j) {
          const float drawn = scale * (static_cast<float>(random() % 2001U) * 1e-3F - 1);
          const float below = j < i ? -0.99F * scale : j == i || j + 1 == n ? scale : 0.0F;
          rows[i][j] = scale == kGrowing ? below : drawn;
        }
      }
      const Array2<float> a = matrix_of(rows);
      Array1<float> b(1, static_cast<std::int32_t>(n)), x = b;
      for (std::size_t i = 0; i < n; ++i) b(std::int64_t(i + 1)) = rows[i][n];
      bool singular = true, ok = false;
      MatrixEquation(a, b, x, singular, ok);
      EXPECT_EQ(ok, worked_out(rows));
      for (std::size_t i = 0; ok && i < n; ++i) EXPECT_EQ(x(std::int64_t(i + 1)), rows[i][n]);
      EXPECT_EQ(taken(), error_lines(ok ? 0 : 6, kPlace));
      overflows += !ok;
    }
  }
  EXPECT_GE(overflows, 7);
}

TEST_F(MatrixTest, the_solution_may_take_the_place_of_the_right_hand_side) {
  Array2<float> a = matrix_of({{0, 2}, {4, 0}});
  Array1<float> b = array_of<float>({6, 8});
  bool singular = true, ok = false;
  MatrixEquation(a, b, b, singular, ok);
  EXPECT_TRUE(ok);
  EXPECT_EQ(contents(b), (std::vector<float>{2, 3}));
}

}  // namespace
}  // namespace vqmath63
