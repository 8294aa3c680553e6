// ztRegression: the words it takes, what it keeps, and what it calls a success.
#include "regression/regression.hpp"

#include <cmath>
#include <limits>

#include "frame/arrays.hpp"
#include "frame/companion_fixture.hpp"

namespace vqmath63 {
namespace {

using Values = std::vector<float>;

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
  struct Row {
    const char* word;
    const char* read_back;
    char type;  // l, e or p
  };
  // An empty reading is the word itself.
  const Row rows[] = {
      {"Quadratic", "", 'l'},
      {"exp", "Exponential", 'e'},
      {"quadratic", "", 'e'},
      {"Logarithmic", "Linear", 'l'},
      {"Power", "Polynomial", 'p'},
      {" Linear", "", 'p'},
      {"?", "", 'p'},
      {"pw", "Polynomial", 'p'},
      {"", "Linear", 'l'},
      {"E", "Exponential", 'e'},
      {"\xC3\x89xp", "", 'e'},
      {"lin", "Linear", 'l'},
      {"2", "", 'l'},
      {"expo", "Exponential", 'e'},
  };
  const Array1<float> x = array_of<float>({0, 1}), y = array_of<float>({1, 2});
  for (const Row& row : rows) {
    regression.put_RegressionType(row.word);
    EXPECT_EQ(regression.get_RegressionType(), *row.read_back ? row.read_back : row.word);
    EXPECT_TRUE(fit(x, y, x)) << row.word;
    const float slope = row.type == 'l' ? 1.0F : row.type == 'e' ? std::log(2.0F) : 0.0F;
    EXPECT_NEAR(regression.get_B(), slope, 1e-6) << row.word;
    // ln 0 in the line of a polynomial type.
    EXPECT_EQ(taken().size(), row.type == 'p' ? 1U : 0U) << row.word;
  }
}

TEST_F(RegressionTest, a_fit_that_failed_is_a_success_with_zeros) {
  const Array1<float> zero = array_of<float>({3, 5, 0, 9, 11});
  const auto line = [](std::int32_t number, const char* routine) {
    return error_line(number, std::string("ztAnalyse - Regression (Code) (") + routine + ")");
  };
  struct Row {
    const char* name;
    const char* type;
    Array1<float> x, y, w;
    Lines want;
  } const rows[] = {
      {"exponential at 0", "Exp", up, zero, {}, {}},
      {"lengths differ", "Lin", up, array_of<float>({1}), {}, {}},
      {"no samples", "Lin", {}, {}, {}, {line(9, "FitaLine")}},
      {"polynomial at 0", "Poly", up, zero, up, {line(5, "FitaLine")}},
      {"nothing at all", "Poly", {}, {}, {}, {line(9, "LeastSquares"), line(9, "FitaLine")}},
  };
  for (const Row& row : rows) {
    regression.put_RegressionType("Linear");
    EXPECT_TRUE(fit(up, odd));
    EXPECT_EQ(results(), (Values{1, 2, 1}));
    regression.put_RegressionType(row.type);
    EXPECT_TRUE(fit(row.x, row.y, row.w)) << row.name;
    EXPECT_EQ(results(), (Values{0, 0, 0})) << row.name;
    EXPECT_EQ(taken(), row.want) << row.name;
  }
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
  const std::string solver = "ztAnalyse - Regression (Code) (LeastSquares)";
  struct Row {
    const char* name;
    std::int32_t order;
    Array1<float> weights;
    Lines want;
  } const rows[] = {
      {"a parabola", 3, up, {}},
      {"more coefficients than samples", 6, up, {}},
      {"far more of them", std::numeric_limits<std::int32_t>::max(), up, {}},
      {"no weights", 3, {}, {error_line(9, solver)}},
      {"a negative weight", 3, array_of<float>({1, 1, 1, 1, -1}), {error_line(5, solver)}},
  };
  for (const Row& row : rows) {
    regression.put_RegressionOrder(row.order);
    EXPECT_TRUE(fit(up, squares, row.weights)) << row.name;
    EXPECT_NEAR(regression.get_A(), 0, 1e-6) << row.name;
    EXPECT_NEAR(regression.get_B(), 2, 1e-6) << row.name;
    EXPECT_NEAR(regression.get_R(), 1, 1e-6) << row.name;
    EXPECT_EQ(taken(), row.want) << row.name;
  }
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
