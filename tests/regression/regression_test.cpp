// ztRegression: the words it takes, what it keeps, and what it calls a success.
#include "regression/regression.hpp"

#include <cmath>
#include <limits>

#include "frame/arrays.hpp"
#include "frame/companion_fixture.hpp"
#include "frame/test_table.hpp"

namespace vqmath63 {
namespace {

using Values = std::vector<float>;

// Of errors such as "9 LeastSquares;9 FitaLine".
Lines fit_lines(const std::string& errors) {
  Lines lines;
  for (const std::string& error : split(errors, ';')) {
    const std::string place = "ztAnalyse - Regression (Code) (" + error.substr(2) + ")";
    lines.push_back(error_line(error[0] - '0', place));
  }
  return lines;
}

class RegressionTest : public CompanionTest {
 protected:
  // Fits, and tells qOK.
  bool fit(Array1<float> x, Array1<float> y, Array1<float> w = {}) {
    bool ok = false;
    regression.Regression(x, y, w, ok);
    return ok;
  }
  Values results() const { return {regression.get_A(), regression.get_B(), regression.get_R()}; }

  ztRegression regression;
  const Array1<float> up = array_of<float>({1, 2, 3, 4, 5});
  const Array1<float> odd = array_of<float>({3, 5, 7, 9, 11});
};

TEST_F(RegressionTest, the_first_letter_of_the_word_decides) {
  EXPECT_EQ(regression.get_RegressionType(), "Linear");
  EXPECT_EQ(results(), (Values{0, 0, 0}));
  // Through (0, 1) and (1, 2), which a power cannot meet.
  const Array1<float> x = array_of<float>({0, 1}), y = array_of<float>({1, 2});
  each_row("regression.tsv", "words", 14, [&](const TableRow& row) {
    const char type = row["type"];
    regression.put_RegressionType(row["word"]);
    EXPECT_EQ(regression.get_RegressionType(), std::string(row["read back"]));
    EXPECT_TRUE(fit(x, y, x));
    const float slope = type == 'l' ? 1.0F : type == 'e' ? std::log(2.0F) : 0.0F;
    EXPECT_NEAR(regression.get_B(), slope, 1e-6);
    // ln 0 in the line of a polynomial type.
    EXPECT_EQ(taken().size(), type == 'p' ? 1U : 0U);
  });
}

TEST_F(RegressionTest, a_fit_that_failed_is_a_success_with_zeros) {
  each_row("regression.tsv", "zeros", 5, [&](const TableRow& row) {
    regression.put_RegressionType("Linear");
    EXPECT_TRUE(fit(up, odd));
    EXPECT_EQ(results(), (Values{1, 2, 1}));
    regression.put_RegressionType(row["type"]);
    EXPECT_TRUE(
        fit(array_of<float>(row["x"]), array_of<float>(row["y"]), array_of<float>(row["weights"])));
    EXPECT_EQ(results(), (Values{0, 0, 0}));
    EXPECT_EQ(taken(), fit_lines(row["errors"]));
  });
}

TEST_F(RegressionTest, each_call_starts_from_zero) {
  EXPECT_TRUE(fit(up, odd));
  // Equal abscissae keep a slope, but that of the call: zero.
  EXPECT_TRUE(fit(array_of<float>({2, 2, 2}), array_of<float>({1, 2, 3})));
  EXPECT_EQ(results(), (Values{2, 0, 0}));
  EXPECT_TRUE(lines.empty());
}

TEST_F(RegressionTest, the_polynomial_fit_goes_ahead_of_the_line_and_leaves_nothing) {
  const Array1<float> squares = array_of<float>({1, 4, 9, 16, 25});
  regression.put_RegressionType("Polynomial");
  each_row("regression.tsv", "polynomials", 5, [&](const TableRow& row) {
    regression.put_RegressionOrder(row["order"]);
    EXPECT_TRUE(fit(up, squares, array_of<float>(row["weights"])));
    EXPECT_NEAR(regression.get_A(), 0, 1e-6);
    EXPECT_NEAR(regression.get_B(), 2, 1e-6);
    EXPECT_NEAR(regression.get_R(), 1, 1e-6);
    EXPECT_EQ(taken(), fit_lines(row["errors"]));
  });
  // A list of no coefficient cannot be made: the call itself fails and keeps the old line.
  for (const std::int32_t order : {0, -1, std::numeric_limits<std::int32_t>::min()}) {
    const Values before = results();
    regression.put_RegressionOrder(order);
    EXPECT_FALSE(fit(up, odd, up)) << order;
    EXPECT_EQ(results(), before);
    EXPECT_EQ(taken(), Lines{error_line(9, "ztAnalyse - ztRegression (Code) (Regression)")});
  }
  // Which matters to this type only.
  regression.put_RegressionType("Linear");
  EXPECT_TRUE(fit(up, odd));
}

}  // namespace
}  // namespace vqmath63
