// The solver of linear systems: rounding, pivots, flags, and what it leaves alone.
#include "regression/matrix.hpp"

#include <cmath>
#include <fstream>
#include <limits>

#include "frame/arrays.hpp"
#include "frame/companion_fixture.hpp"

namespace vqmath63 {
namespace {

constexpr float kInf = std::numeric_limits<float>::infinity();
constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr const char* kPlace = "ztAnalyse - matrix (Code) (MatrixEquation)";

class MatrixTest : public CompanionTest {};

using Rows = std::vector<std::vector<float>>;

Array2<float> matrix_of(const Rows& rows, Bounds row_bounds = {1, 0}) {
  const auto n = static_cast<std::int32_t>(rows.size());
  if (row_bounds.count() == 0) row_bounds = {1, n};
  Array2<float> a(row_bounds, {1, static_cast<std::int32_t>(rows.front().size())});
  for (std::size_t i = 0; i < rows.size(); ++i) {
    for (std::size_t j = 0; j < rows[i].size(); ++j) {
      a(row_bounds.lower + static_cast<std::int64_t>(i), static_cast<std::int64_t>(j) + 1) =
          rows[i][j];
    }
  }
  return a;
}

TEST_F(MatrixTest, solutions_round_at_every_step) {
  std::ifstream file(VQ_TEST_DATA "/solver_cases.tsv");
  std::string header;
  std::getline(file, header);
  std::int32_t n = 0;
  int count = 0;
  for (; file >> n; ++count) {
    // Bounds from 0: what stands there must not be looked at.
    Array2<float> a({0, n}, {0, n});
    Array1<float> b(0, n), x(0, n), want(1, n);
    for (std::int32_t i = 0; i <= n; ++i) a(i, 0) = a(0, i) = b(i) = kNaN;
    for (std::int32_t i = 1; i <= n; ++i) {
      for (std::int32_t j = 1; j <= n; ++j) file >> a(i, j);
    }
    for (std::int32_t i = 1; i <= n; ++i) file >> b(i);
    for (std::int32_t i = 1; i <= n; ++i) file >> want(i);
    x(0) = 7;
    const Array2<float> a_before = a;
    const Array1<float> b_before = b;
    bool singular = true, ok = false;
    MatrixEquation(a, b, x, singular, ok);
    EXPECT_TRUE(ok && !singular) << "system " << count;
    for (std::int32_t i = 1; i <= n; ++i) {
      EXPECT_EQ(x(i), want(i)) << "system " << count << ", unknown " << i;
      EXPECT_EQ(b(i), b_before(i));
      for (std::int32_t j = 1; j <= n; ++j) EXPECT_EQ(a(i, j), a_before(i, j));
    }
    EXPECT_EQ(x(0), 7.0F);
  }
  EXPECT_EQ(count, 17);
  EXPECT_TRUE(lines.empty());
}

TEST_F(MatrixTest, flags_and_failures) {
  constexpr float kBig = 3e38F;
  const float least = 2.22e-16F;
  struct Row {
    const char* name;
    Array2<float> a;
    std::vector<float> b, x;
    const char* outcome;  // o solved, s singular, or the error number
    std::vector<float> want;
  };
  const Row rows[] = {
      {"one unknown", matrix_of({{4}}), {2}, {9}, "o", {0.5F}},
      {"one unknown, zero", matrix_of({{0}}), {2}, {9}, "s", {9}},
      {"a pivot at the limit", matrix_of({{least}}), {least}, {9}, "o", {1}},
      {"a pivot below it", matrix_of({{std::nextafter(least, 0.0F)}}), {1}, {9}, "s", {9}},
      {"a negative pivot counts by magnitude",
       matrix_of({{1, 1}, {-2, 0}}),
       {3, -2},
       {9, 9},
       "o",
       {1, 2}},
      {"dependent rows", matrix_of({{1, 2}, {2, 4}}), {1, 2}, {9, 9}, "s", {9, 9}},
      {"rows alike",
       matrix_of({{1, 1, 1}, {0, 2, 1}, {1, 1, 1}}),
       {1, 2, 1},
       {9, 9, 9},
       "s",
       {9, 9, 9}},
      {"a solution longer than asked", matrix_of({{2}}), {2}, {9, 8}, "o", {1, 8}},
      {"a column more than rows is not read", matrix_of({{2, kNaN}}), {2}, {9}, "o", {1}},
      {"a NaN pivot column", matrix_of({{kNaN}}), {1}, {9}, "s", {9}},
      {"a NaN in the right-hand side",
       matrix_of({{1, 0}, {0, 1}}),
       {1, kNaN},
       {9, 9},
       "o",
       {kNaN, kNaN}},
      {"an infinity that nothing meets", matrix_of({{2}}), {kInf}, {9}, "o", {kInf}},
      {"an infinite pivot", matrix_of({{kInf, 1}, {1, 1}}), {1, 1}, {9, 9}, "5", {9, 9}},
      {"overflow in the elimination",
       matrix_of({{1, kBig}, {1, -kBig}}),
       {1, 1},
       {9, 9},
       "6",
       {9, 9}},
      {"overflow before a column without pivot",
       matrix_of({{1, kBig, 0}, {1, -kBig, 0}, {1, kBig, 0}}),
       {1, 1, 1},
       {9, 9, 9},
       "6",
       {9, 9, 9}},
      {"overflow in the substitution", matrix_of({{1e-10F}}), {kBig}, {9}, "6", {9}},
      {"no matrix", {}, {1}, {9}, "9", {9}},
      {"no right-hand side", matrix_of({{1}}), {}, {9}, "9", {9}},
      {"no room for the solution", matrix_of({{1}}), {1}, {}, "9", {}},
      {"right-hand side short", matrix_of({{1, 0}, {0, 1}}), {1}, {9, 9}, "9", {9, 9}},
      {"too few columns", matrix_of({{1}, {1}}), {1, 1}, {9, 9}, "9", {9, 9}},
      {"solution short", matrix_of({{1, 0}, {0, 2}}), {3, 4}, {9}, "9", {3}},
      {"short, but singular first", matrix_of({{1, 1}, {1, 1}}), {3, 4}, {9}, "s", {9}},
      {"rows from 2", matrix_of({{1}}, {2, 2}), {1, 1}, {9, 9}, "9", {9, 9}},
      {"no row", matrix_of({{1}}, {0, 0}), {1}, {9}, "9", {9}},
  };
  for (const Row& row : rows) {
    lines.clear();
    Array2<float> a = row.a;
    Array1<float> b = array_of(row.b), x = array_of(row.x);
    bool singular = true, ok = true;
    MatrixEquation(a, b, x, singular, ok);
    const char outcome = row.outcome[0];
    EXPECT_EQ(ok, outcome == 'o') << row.name;
    EXPECT_EQ(singular, outcome == 's') << row.name;
    std::vector<std::string> want_lines;
    if (outcome <= '9') want_lines.push_back(error_line(outcome - '0', kPlace));
    EXPECT_EQ(lines, want_lines) << row.name;
    for (std::size_t i = 0; i < row.want.size(); ++i) {
      EXPECT_TRUE(same(x(static_cast<std::int64_t>(i) + 1), row.want[i])) << row.name;
    }
  }
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
