// The solver of linear systems: rounding, pivots, flags, and what it leaves alone.
#include "regression/matrix.hpp"

#include <algorithm>
#include <cmath>
#include <fstream>

#include "frame/arrays.hpp"
#include "frame/companion_fixture.hpp"

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
  std::ifstream file(VQ_TEST_DATA "/solver_cases.tsv");
  std::string header;
  std::getline(file, header);
  std::int32_t n = 0;
  int count = 0;
  for (; file >> n; ++count) {
    // Bounds from 0: what stands there must not be looked at.
    Array2<float> a({0, n}, {0, n});
    Array1<float> b(0, n), x(0, n), want(0, n);
    for (std::int32_t i = 0; i <= n; ++i) a(i, 0) = a(0, i) = b(i) = kNaN;
    for (std::int32_t i = 1; i <= n; ++i) {
      for (std::int32_t j = 1; j <= n; ++j) file >> a(i, j);
    }
    for (std::int32_t i = 1; i <= n; ++i) file >> b(i);
    for (std::int32_t i = 1; i <= n; ++i) file >> want(i);
    x(0) = want(0) = 7;
    const Array2<float> a_before = a;
    const Array1<float> b_before = b;
    bool singular = true, ok = false;
    MatrixEquation(a, b, x, singular, ok);
    EXPECT_TRUE(ok && !singular) << "system " << count;
    EXPECT_EQ(contents(x), contents(want)) << "system " << count;
    EXPECT_TRUE(std::equal(b.data(), b.data() + b.size(), b_before.data(), same));
    EXPECT_TRUE(std::equal(a.data(), a.data() + a.size(), a_before.data(), same));
  }
  EXPECT_EQ(count, 17);
  EXPECT_TRUE(lines.empty());
}

TEST_F(MatrixTest, flags_and_failures) {
  constexpr float kBig = 3e38F;
  const float least = 2.22e-16F;
  struct Row {
    const char* name;
    Rows a;
    std::vector<float> b;
    char outcome;             // o solved, s singular, or the error number
    std::vector<float> want;  // of a solution of that length, 9 before
    std::int32_t first_row = 1;
  } const rows[] = {
      {"one unknown", {{4}}, {2}, 'o', {0.5F}},
      {"a pivot at the limit", {{least}}, {least}, 'o', {1}},
      {"a pivot below it", {{std::nextafter(least, 0.0F)}}, {1}, 's', {9}},
      {"a negative pivot counts by magnitude", {{1, 1}, {-2, 0}}, {3, -2}, 'o', {1, 2}},
      {"rows alike", {{1, 1, 1}, {0, 2, 1}, {1, 1, 1}}, {1, 2, 1}, 's', {9, 9, 9}},
      {"a solution longer than asked", {{2}}, {2}, 'o', {1, 9}},
      {"a column more than rows is not read", {{2, kNaN}}, {2}, 'o', {1}},
      {"a NaN pivot column", {{kNaN}}, {1}, 's', {9}},
      {"a NaN in the right-hand side", {{1, 0}, {0, 1}}, {1, kNaN}, 'o', {kNaN, kNaN}},
      {"an infinity that nothing meets", {{2}}, {kInf}, 'o', {kInf}},
      {"an infinite pivot", {{kInf, 1}, {1, 1}}, {1, 1}, '5', {9, 9}},
      {"overflow in the elimination", {{1, kBig}, {1, -kBig}}, {1, 1}, '6', {9, 9}},
      {"overflow before a column without pivot",
       {{1, kBig, 0}, {1, -kBig, 0}, {1, kBig, 0}},
       {1, 1, 1},
       '6',
       {9, 9, 9}},
      {"overflow in the substitution", {{1e-10F}}, {kBig}, '6', {9}},
      {"no matrix", {}, {1}, '9', {9}},
      {"no room for the solution", {{1}}, {1}, '9', {}},
      {"right-hand side short", {{1, 0}, {0, 1}}, {1}, '9', {9, 9}},
      {"too few columns", {{1}, {1}}, {1, 1}, '9', {9, 9}},
      {"solution short", {{1, 0}, {0, 2}}, {3, 4}, '9', {3}},
      {"short, but singular first", {{1, 1}, {1, 1}}, {3, 4}, 's', {9}},
      {"rows from 2", {{1}}, {1, 1}, '9', {9, 9}, 2},
      {"no row", {{1}}, {1}, '9', {9}, 0},
  };
  for (const Row& row : rows) {
    Array2<float> a = matrix_of(row.a, row.first_row);
    Array1<float> b = array_of(row.b), x = array_of(std::vector<float>(row.want.size(), 9));
    bool singular = true, ok = true;
    MatrixEquation(a, b, x, singular, ok);
    EXPECT_EQ(ok, row.outcome == 'o') << row.name;
    EXPECT_EQ(singular, row.outcome == 's') << row.name;
    EXPECT_EQ(taken(), error_lines(row.outcome <= '9' ? row.outcome - '0' : 0, kPlace)) << row.name;
    EXPECT_TRUE(std::equal(row.want.begin(), row.want.end(), x.data(), same)) << row.name;
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
