// Combinatorics and the gamma family of ztMathLib: limits, bad arguments, failures.
#include <cmath>
#include <limits>
#include <numbers>

#include "frame/companion_fixture.hpp"
#include "mathlib/math_lib.hpp"

namespace vqmath63 {
namespace {

constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kOut = 1e308;
constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t kLeast = std::numeric_limits<std::int32_t>::min();

double above(double x) {
  return std::nextafter(x, kInf);
}
double below(double x) {
  return std::nextafter(x, -kInf);
}

struct Row {
  const char* call;
  double got;
  double want;
  double tolerance = 0;  // relative; 0 for a result that is exact
};

class GammaFamilyTest : public CompanionTest {
 protected:
  static std::string line(std::int32_t number, const std::string& routine) {
    return "Error:" + std::string(error_text(number)) + " (No." + std::to_string(number) +
           ") In [ztMathLib (Code) (" + routine + ")] ";
  }
  template <std::size_t kN>
  void expect(const Row (&rows)[kN]) {
    for (const Row& row : rows) {
      if (row.tolerance == 0) {
        EXPECT_TRUE(same(row.got, row.want)) << row.call << " = " << row.got;
      } else {
        EXPECT_NEAR(row.got, row.want, std::abs(row.want) * row.tolerance) << row.call;
      }
    }
  }
  const ztMathLib lib{};
};

#define VQ_CALL(call) #call, lib.call

TEST_F(GammaFamilyTest, counting) {
  const Row rows[] = {
      {VQ_CALL(Factorial(0)), 1},
      {VQ_CALL(Factorial(170)), 7.257415615307998e306, 1e-15},
      {VQ_CALL(Factorial(171)), kOut},
      {VQ_CALL(Factorial(kMost)), kOut},
      {VQ_CALL(Factorial(-1)), 0},  // not out of range
      {VQ_CALL(Factorial(kLeast)), 0},
      {VQ_CALL(Combination(5, 2)), 10},
      {VQ_CALL(Combination(1, 1)), 1},
      {VQ_CALL(Combination(0, 0)), 1},
      {VQ_CALL(Combination(2, 1)), 2},
      {VQ_CALL(Combination(2, 3)), kOut},
      {VQ_CALL(Combination(-1, 0)), kOut},
      {VQ_CALL(Combination(5, -1)), kOut},
      {VQ_CALL(Combination(171, 1)), kOut},
      {VQ_CALL(Combination(kMost, kMost)), kOut},
      {VQ_CALL(Combination(kMost, kLeast)), kOut},
      {VQ_CALL(Permutation(5, 2)), 20},
      {VQ_CALL(Permutation(1, 0)), 1},
      {VQ_CALL(Permutation(2, 1)), 2},
      {VQ_CALL(Permutation(2, 3)), kOut},
      {VQ_CALL(Permutation(200, 199)), kOut},
      {VQ_CALL(Permutation(kLeast, kLeast)), kOut},
  };
  expect(rows);
  EXPECT_TRUE(lines.empty());
}

TEST_F(GammaFamilyTest, limits_and_bad_arguments) {
  const Row rows[] = {
      {VQ_CALL(Gamma(0)), kOut},
      {VQ_CALL(Gamma(-0.0)), kOut},
      {VQ_CALL(Gamma(-2)), kOut},
      {VQ_CALL(Gamma(-1e300)), kOut},
      {VQ_CALL(Gamma(0.5)), 1 / std::numbers::inv_sqrtpi, 1e-14},
      {VQ_CALL(Gamma(-0.5)), -2 / std::numbers::inv_sqrtpi, 1e-14},
      {VQ_CALL(Gamma(-1.5)), 4 / (3 * std::numbers::inv_sqrtpi), 1e-14},
      {VQ_CALL(Gamma(5)), 24, 1e-15},
      {VQ_CALL(Gamma(0x1p-30)), 1073741823.422784336, 3e-16},
      // Beside a pole pi shows its 15 digits: with all of them, ...4227857.
      {VQ_CALL(Gamma(0x1p-20 - 1)), -1048576.4216548470, 2e-10},
      {VQ_CALL(Gamma(2.23e-308)), 1 / 2.23e-308, 1e-15},
      {VQ_CALL(Gamma(below(2.23e-308))), kOut},
      {VQ_CALL(Gamma(5e-324)), kOut},
      {VQ_CALL(Gamma(171.624)), 1.79424e308, 1e-3},
      {VQ_CALL(Gamma(above(171.624))), kOut},
      {VQ_CALL(Gamma(172)), kOut},
      {VQ_CALL(Gamma(kInf)), kOut},
      {VQ_CALL(Gamma(kNaN)), kNaN},
      // The true value is tiny: the published routine's way with large negative arguments.
      {VQ_CALL(Gamma(-170.75)), kOut},
      {VQ_CALL(Gamma(-1000.5)), kOut},
      {VQ_CALL(Gamma(-1e-300)), -1e300, 1e-13},
      {VQ_CALL(LoGamma(0)), kOut},
      {VQ_CALL(LoGamma(-1)), kOut},
      {VQ_CALL(LoGamma(1)), 0},
      {VQ_CALL(LoGamma(2)), 0},
      {VQ_CALL(LoGamma(0x1p-30)), 20.794415416260785304, 4e-16},
      {VQ_CALL(LoGamma(5e-324)), 744.4400719213812, 1e-15},
      {VQ_CALL(LoGamma(2.55e305)), 1.790737e308, 1e-3},
      {VQ_CALL(LoGamma(above(2.55e305))), kOut},
      {VQ_CALL(LoGamma(kInf)), kOut},
      {VQ_CALL(LoGamma(kNaN)), kOut},
      {VQ_CALL(Erf(0)), 0},
      {VQ_CALL(Erf(5e-324)), 5e-324},
      {VQ_CALL(Erf(5.875)), below(1)},  // the last of the complement that shows
      {VQ_CALL(Erf(30)), 1},
      {VQ_CALL(Erf(-kInf)), -1},
      {VQ_CALL(Erf(kNaN)), kNaN},
      {VQ_CALL(beta(1, 1)), 1, 1e-15},
      {VQ_CALL(beta(2, 3)), 1.0 / 12, 1e-15},
      {VQ_CALL(beta(0, 1)), kOut},
      {VQ_CALL(beta(200, 1)), 1},  // both out of range: their quotient
      {VQ_CALL(BetaI(2, 3, 0)), 0},
      {VQ_CALL(BetaI(2, 3, 1)), 1},
      {VQ_CALL(BetaI(2, 3, 0.5)), 0.6875, 1e-14},
      {VQ_CALL(BetaI(2, 3, 1.5)), kOut},
      {VQ_CALL(BetaI(2, 3, above(1))), kOut},
      {VQ_CALL(BetaI(2, 3, -5e-324)), kOut},
      {VQ_CALL(BetaI(-1, 3, 0.5)), kOut},
      {VQ_CALL(BetaI(2, -1e-300, 0.5)), kOut},
      {VQ_CALL(BetaI(2, 3, kNaN)), kNaN},
      {VQ_CALL(Beta_CF(2, 3, 0)), 1},
      {VQ_CALL(Beta_CF(42.5, 1.125, 0.953125)), 22.283887636013322647, 2e-14},
      {VQ_CALL(Gamma_P(1, 0)), 0},
      {VQ_CALL(Gamma_P(0, 1)), kOut},
      {VQ_CALL(Gamma_P(-1, 1)), kOut},
      {VQ_CALL(Gamma_P(1, -5e-324)), kOut},
      {VQ_CALL(Gamma_P(kNaN, 1)), kOut},
      {VQ_CALL(Gamma_P(1, 1)), 1 - 1 / std::numbers::e, 1e-15},
      {VQ_CALL(Gamma_P(1, 2)), 1 - std::exp(-2.0), 1e-15},  // by the fraction
      {VQ_CALL(Gamma_P(1, below(2))), 1 - std::exp(-2.0), 1e-15},
      {VQ_CALL(Gamma_P(1, 1e100)), 1},
      {VQ_CALL(Gamma_P(1e-300, 1e-300)), 1, 1e-12},
      {VQ_CALL(Gamma_P(2, kNaN)), kNaN},
      {VQ_CALL(Gamma_Series(2, 0)), 0},
      {VQ_CALL(Gamma_Series(-2.5, -1)), kOut},
      {VQ_CALL(Gamma_CF(1, 3)), std::exp(-3.0), 1e-14},
  };
  expect(rows);
  EXPECT_TRUE(lines.empty()) << lines.front();
}

TEST_F(GammaFamilyTest, failures_are_reported_by_the_routine_that_fails) {
  struct Failure {
    Row row;
    std::vector<std::string> want;
  };
  const auto run = [&](auto call) {
    lines.clear();
    return call();
  };
#define VQ_FAILURE(call, want, ...)                                                          \
  {                                                                                          \
    const Row row[] = {{#call, run([&] { return lib.call; }), want, want == 0 ? 0 : 1e-14}}; \
    expect(row);                                                                             \
    EXPECT_EQ(lines, (std::vector<std::string>{__VA_ARGS__})) << #call;                      \
  }
  // Its own steps.
  VQ_FAILURE(beta(150, 150), 0, line(6, "Beta"));
  VQ_FAILURE(Gamma(-kInf), 0, line(5, "Gamma"));
  VQ_FAILURE(Gamma(-1e-310), 0, line(6, "Gamma"));
  VQ_FAILURE(Gamma_CF(1, 1.5e154), 0, line(6, "Gamma_CF"));
  VQ_FAILURE(Gamma_CF(1, 1e300), 0, line(6, "Gamma_CF"));
  VQ_FAILURE(Gamma_CF(1, 0), 0, line(6, "Gamma_CF"));  // grows as the factorials
  VQ_FAILURE(Gamma_CF(2.5, -1), 0, line(5, "Gamma_CF"));
  VQ_FAILURE(Gamma_CF(8, 1), 0, line(11, "Gamma_CF"));
  VQ_FAILURE(Gamma_CF(6, 2.22e-16), 0, line(6, "Gamma_CF"));
  VQ_FAILURE(Gamma_Series(0, 1), 0, line(11, "Gamma_Series"));
  VQ_FAILURE(Gamma_Series(-1, 1), 0, line(11, "Gamma_Series"));
  VQ_FAILURE(Gamma_Series(1, 715), 0, line(6, "Gamma_Series"));  // a term times X
  VQ_FAILURE(Gamma_Series(1, 1e300), 0, line(6, "Gamma_Series"));
  VQ_FAILURE(Beta_CF(-1, 2, 0.5), 0, line(11, "Beta_CF"));
  VQ_FAILURE(Beta_CF(1e308, 1e308, 0.5), 0, line(6, "Beta_CF"));
  VQ_FAILURE(BetaI(0, 2, 0.125), 0, line(5, "BetaI"));
  // Those of a routine it uses, whose zero it goes on with.
  VQ_FAILURE(Gamma_P(1, 1e200), 1, line(6, "Gamma_CF"));
  VQ_FAILURE(Gamma_P(2, kInf), 1, line(5, "Gamma_CF"));
  VQ_FAILURE(beta(-kInf, 1), 0, line(5, "Gamma"), line(5, "Gamma"), line(5, "Beta"));
}

}  // namespace
}  // namespace vqmath63
