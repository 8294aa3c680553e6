// Elementary functions of ztMathLib: every branch at its limit, bad arguments, failures.
#include <cmath>
#include <limits>
#include <sstream>

#include "frame/companion_fixture.hpp"
#include "mathlib/math_lib.hpp"

namespace vqmath63 {
namespace {

constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kMax = std::numeric_limits<double>::max();
constexpr double kMin = std::numeric_limits<double>::denorm_min();
constexpr double kOut = 1e308;
constexpr double kHalfPi = 1.5707963267949;
constexpr double kPi = 3.14159265358979;

double above(double x) {
  return std::nextafter(x, kInf);
}
double below(double x) {
  return std::nextafter(x, -kInf);
}

class ElementaryTest : public CompanionTest {
 protected:
  // One line for a failing call, none for any other; takes the lines away.
  void expect_line(std::int32_t fault, const std::string& routine, const std::string& call) {
    if (fault == 0) {
      EXPECT_TRUE(lines.empty()) << call << ": " << (lines.empty() ? "" : lines[0]);
    } else {
      EXPECT_EQ(lines,
                std::vector<std::string>{"Error:" + std::string(error_text(fault)) + " (No." +
                                         std::to_string(fault) + ") In [" + routine + "] "})
          << call;
    }
    lines.clear();
  }
  const ztMathLib lib{};
};

using Member = double (ztMathLib::*)(double) const;
#define VQ_MEMBER(name) #name, &ztMathLib::name

TEST_F(ElementaryTest, branches_and_bad_arguments) {
  struct Row {
    const char* name;
    Member member;
    double x;
    double want;
    double tolerance = 0;  // relative; 0 for a result that is exact
    std::int32_t fault = 0;
  };
  const Row rows[] = {
      {VQ_MEMBER(aLog), 707.47, 1.7797e307, 1e-3},
      {VQ_MEMBER(aLog), above(707.47), kOut},
      {VQ_MEMBER(aLog), 707.48, kOut},
      {VQ_MEMBER(aLog), -707.47, 5.6e-308, 1e-2},
      {VQ_MEMBER(aLog), below(-707.47), 0},
      {VQ_MEMBER(aLog), -800, 0},
      {VQ_MEMBER(aLog), kInf, kOut},
      {VQ_MEMBER(aLog), kNaN, kNaN},
      {VQ_MEMBER(aLog), -0.0, 1},
      // Guarded on e x, not on x log 10.
      {VQ_MEMBER(aLog10), 300, kOut},
      {VQ_MEMBER(aLog10), -300, 0},
      {VQ_MEMBER(aLog10), 260.26, 1.82e260, 1e-2},
      {VQ_MEMBER(aLog10), 260.27, kOut},
      {VQ_MEMBER(aLog10), 2, 100},
      {VQ_MEMBER(aLog10), kMax, 0, 0, 6},  // the guard itself overflows
      {VQ_MEMBER(aLog10), kInf, kOut},
      {VQ_MEMBER(aLog10), kNaN, kNaN},
      {VQ_MEMBER(Ln), 0, kOut},
      {VQ_MEMBER(Ln), -0.0, kOut},
      {VQ_MEMBER(Ln), -kMin, kOut},
      {VQ_MEMBER(Ln), 1, 0},
      {VQ_MEMBER(Ln), kInf, kInf},
      {VQ_MEMBER(Ln), kNaN, kOut},  // not greater than 0
      {VQ_MEMBER(Log10), -1, kOut},
      {VQ_MEMBER(Log10), kNaN, kOut},
      {VQ_MEMBER(sine), 0, 0},
      {VQ_MEMBER(sine), kPi, 0},
      {VQ_MEMBER(sine), 1e300, 0},  // whole multiples of pi, all of them
      {VQ_MEMBER(sine), kInf, 0},
      {VQ_MEMBER(sine), kNaN, kNaN},
      {VQ_MEMBER(cosine), 0, 1},
      {VQ_MEMBER(cosine), kPi / 2, 0},
      {VQ_MEMBER(cosine), -kPi / 2, 0},
      {VQ_MEMBER(cosine), kHalfPi, -3.49e-15, 1e-2},  // next to it, the cosine itself
      {VQ_MEMBER(cosine), kPi, -1},
      {VQ_MEMBER(cosine), kInf, 0, 0, 5},
      {VQ_MEMBER(cosine), kNaN, kNaN},
      {VQ_MEMBER(cot), 0, kOut},
      {VQ_MEMBER(cot), 9e-308, kOut},
      {VQ_MEMBER(cot), above(9e-308), 1.1111e307, 1e-3},
      {VQ_MEMBER(cot), -1e-307, -1e307, 1e-15},
      {VQ_MEMBER(cot), kInf, 0, 0, 5},
      {VQ_MEMBER(cot), kNaN, kOut},
      {VQ_MEMBER(csc), 0, kOut},
      {VQ_MEMBER(csc), -9e-308, -kOut},
      {VQ_MEMBER(csc), kMin, kOut},
      {VQ_MEMBER(csc), -1e-307, -1e307, 1e-15},
      {VQ_MEMBER(csc), -kInf, 0, 0, 5},
      {VQ_MEMBER(csc), kNaN, kNaN},
      {VQ_MEMBER(Sec), 0, 1},
      {VQ_MEMBER(Sec), kInf, 0, 0, 5},
      {VQ_MEMBER(Sec), kNaN, kNaN},
      {VQ_MEMBER(asin), 1, kHalfPi},
      {VQ_MEMBER(asin), -1, -kHalfPi},
      {VQ_MEMBER(asin), -0.0, 0},
      {VQ_MEMBER(asin), above(1), kOut},
      {VQ_MEMBER(asin), below(-1), kOut},
      {VQ_MEMBER(asin), below(1), 1.5707963118937, 1e-12},
      {VQ_MEMBER(asin), kNaN, kNaN},
      {VQ_MEMBER(acot), 0, kOut},
      {VQ_MEMBER(acot), -0.0, kOut},
      {VQ_MEMBER(acot), kMin, 0, 0, 6},
      {VQ_MEMBER(acot), -kInf, -0.0},
      {VQ_MEMBER(acsc), 1, kHalfPi},
      {VQ_MEMBER(acsc), -1 - 8e-16, -kHalfPi},
      {VQ_MEMBER(acsc), 1 - 8e-16, kHalfPi},
      {VQ_MEMBER(acsc), 1 - 2e-15, kOut},
      {VQ_MEMBER(acsc), 1 + 2e-15, kHalfPi, 1e-7},
      {VQ_MEMBER(acsc), 0.5, kOut},
      {VQ_MEMBER(acsc), 1e155, 0, 0, 6},
      {VQ_MEMBER(acsc), kNaN, kOut},
      {VQ_MEMBER(asec), 1 + 9e-15, 0},
      {VQ_MEMBER(asec), -1 + 9e-15, kPi},
      {VQ_MEMBER(asec), 1 - 2e-14, kOut},
      {VQ_MEMBER(asec), 1 + 2e-14, 2e-7, 1e-2},
      {VQ_MEMBER(asec), -1e155, 0, 0, 6},
      {VQ_MEMBER(asec), kNaN, kNaN},
      // Small arguments lose their sign here.
      {VQ_MEMBER(sinh), -1e-11, 1e-11},
      {VQ_MEMBER(sinh), -1e-10, 1e-10},
      {VQ_MEMBER(sinh), below(-1e-10), -1e-10, 1e-5},
      {VQ_MEMBER(sinh), 1e-11, 1e-11},
      {VQ_MEMBER(sinh), above(707.47), kOut},
      {VQ_MEMBER(sinh), below(-707.47), -kOut},
      {VQ_MEMBER(sinh), -707.47, -8.9e306, 1e-2},
      {VQ_MEMBER(sinh), -kInf, -kOut},
      {VQ_MEMBER(sinh), kNaN, kNaN},
      {VQ_MEMBER(cosh), -707.47, 8.9e306, 1e-2},
      {VQ_MEMBER(cosh), below(-707.47), kOut},
      {VQ_MEMBER(cosh), kNaN, kNaN},
      {VQ_MEMBER(tanh), 40, 1},
      {VQ_MEMBER(tanh), above(-36.8), -1, 1e-15},
      {VQ_MEMBER(tanh), -kInf, -1},
      {VQ_MEMBER(tanh), -1e-10, -1e-10},
      {VQ_MEMBER(tanh), kNaN, kNaN},
      {VQ_MEMBER(coth), 0, 0},
      {VQ_MEMBER(coth), -0.0, 0},
      {VQ_MEMBER(coth), 9e-308, kOut},
      {VQ_MEMBER(coth), -9e-308, -kOut},
      {VQ_MEMBER(coth), above(9e-308), 1.1111e307, 1e-3},
      {VQ_MEMBER(coth), -1e-10, -1e10, 1e-15},
      {VQ_MEMBER(coth), -708, -1},
      {VQ_MEMBER(coth), kNaN, kNaN},
      {VQ_MEMBER(csch), 0, 0},
      {VQ_MEMBER(csch), -1e-308, -kOut},
      {VQ_MEMBER(csch), 5e-11, 2e10},
      {VQ_MEMBER(csch), -708, 0},
      {VQ_MEMBER(csch), kNaN, kNaN},
      {VQ_MEMBER(sech), 1e-11, 1},
      {VQ_MEMBER(sech), 708, 0},
      {VQ_MEMBER(sech), kInf, 0},
      {VQ_MEMBER(sech), kNaN, kNaN},
      {VQ_MEMBER(asinh), 0, 0},
      {VQ_MEMBER(asinh), -1e9, 0, 0, 5},  // the sum rounds to zero
      {VQ_MEMBER(asinh), 1e155, 0, 0, 6},
      {VQ_MEMBER(asinh), kInf, kInf},
      {VQ_MEMBER(asinh), -kInf, 0, 0, 5},
      {VQ_MEMBER(acosh), below(1), kOut},
      {VQ_MEMBER(acosh), 1, 0},
      {VQ_MEMBER(acosh), -1, 0},
      {VQ_MEMBER(acosh), -0.5, kOut},
      {VQ_MEMBER(acosh), below(-1), 0, 0, 5},
      {VQ_MEMBER(acosh), -1e100, 0, 0, 5},
      {VQ_MEMBER(acosh), kMax, 0, 0, 6},
      {VQ_MEMBER(acosh), kNaN, kNaN},
      {VQ_MEMBER(atanh), 1, kOut},
      {VQ_MEMBER(atanh), -1, kOut},
      {VQ_MEMBER(atanh), below(1), 18.7149738751185, 1e-12},
      {VQ_MEMBER(atanh), kNaN, kOut},
      {VQ_MEMBER(acoth), 1 + 8e-16, kOut},
      {VQ_MEMBER(acoth), -1 - 8e-16, kOut},
      {VQ_MEMBER(acoth), 1 + 2e-15, 17.2, 1e-2},
      {VQ_MEMBER(acoth), -0.5, kOut},
      {VQ_MEMBER(acoth), 1e300, 0},
      {VQ_MEMBER(acoth), kInf, 0, 0, 5},
      {VQ_MEMBER(acsch), 0, kOut},
      {VQ_MEMBER(acsch), 1e-14, kOut},
      {VQ_MEMBER(acsch), above(1e-14), 32.929, 1e-4},
      {VQ_MEMBER(acsch), -1e-13, 0, 0, 5},
      {VQ_MEMBER(acsch), kNaN, kOut},
      {VQ_MEMBER(asech), 1, 0},
      {VQ_MEMBER(asech), above(1), kOut},
      {VQ_MEMBER(asech), 0, kOut},
      {VQ_MEMBER(asech), -0.5, kOut},
      {VQ_MEMBER(asech), 1e-155, 0, 0, 6},
      {VQ_MEMBER(asech), kNaN, kOut},
      {VQ_MEMBER(cubed), -3, -27},
      {VQ_MEMBER(cubed), 1e103, 0, 0, 6},
      {VQ_MEMBER(cubed), -kInf, -kInf},
      {VQ_MEMBER(Squared), -1.5, 2.25},
      {VQ_MEMBER(Squared), 1e155, 0, 0, 6},
      {VQ_MEMBER(Squared), kMin, 0},
      {VQ_MEMBER(Square_Root), 2.25, 1.5},
      {VQ_MEMBER(Square_Root), -kMin, kOut},
      {VQ_MEMBER(Square_Root), -0.0, -0.0},
      {VQ_MEMBER(Square_Root), kNaN, kNaN},
      {VQ_MEMBER(Cube_Root), 0, 0},
      {VQ_MEMBER(Cube_Root), kMin, 1.7031839360032603e-108, 1e-12},
      {VQ_MEMBER(Cube_Root), -kInf, -kInf},
      {VQ_MEMBER(Cube_Root), kNaN, 0},  // no branch takes it
      {VQ_MEMBER(RTD), kPi, 180, 1e-14},
  };
  for (const Row& row : rows) {
    const double got = (lib.*row.member)(row.x);
    std::ostringstream call;
    call.precision(17);
    call << row.name << "(" << row.x << ") = " << got;
    if (row.tolerance == 0) {
      EXPECT_TRUE(same(got, row.want)) << call.str();
      if (row.want == 0 && row.x != 0) {
        EXPECT_EQ(std::signbit(got), std::signbit(row.want)) << call.str();
      }
    } else {
      EXPECT_NEAR(got, row.want, std::abs(row.want) * row.tolerance) << call.str();
    }
    expect_line(row.fault, "ztMathLib (Code) (" + std::string(row.name) + ")", call.str());
  }
}

TEST_F(ElementaryTest, arc_cosine_fails_under_the_name_of_its_module) {
  struct Row {
    double x, want;
    std::int32_t fault = 0;
  };
  const Row rows[] = {{0, kHalfPi},      {-0.0, kHalfPi}, {1, 0},    {-1, kPi},    {above(1), kOut},
                      {below(-1), kOut}, {kInf, kOut},    {kNaN, 0}, {kMin, 0, 6}, {-1e-310, 0, 6}};
  for (const Row& row : rows) {
    const std::string call = "acos(" + std::to_string(row.x) + ")";
    EXPECT_EQ(lib.acos(row.x), row.want) << call;
    expect_line(row.fault, "ztCommonMathFcn (Code) (arccos)", call);
  }
}

TEST_F(ElementaryTest, powers_and_roots) {
  using Member2 = double (ztMathLib::*)(double, double) const;
  struct Row {
    const char* name;
    Member2 member;
    double x, y;
    double want;
    double tolerance = 0;
    std::int32_t fault = 0;
  };
  const Row rows[] = {
      {VQ_MEMBER(x_to_Power_y), 0, 0, 1},
      {VQ_MEMBER(x_to_Power_y), kNaN, -0.0, 1},
      {VQ_MEMBER(x_to_Power_y), 0, -2, 0},
      {VQ_MEMBER(x_to_Power_y), -0.0, kNaN, 0},
      {VQ_MEMBER(x_to_Power_y), -8, 1.0 / 3, kOut},
      {VQ_MEMBER(x_to_Power_y), -2, 2147483647, kOut},
      {VQ_MEMBER(x_to_Power_y), -1, 2147483647, -1},
      {VQ_MEMBER(x_to_Power_y), -1, -2147483646, 1},
      {VQ_MEMBER(x_to_Power_y), -1, 2147483648.0, 0, 0, 6},
      {VQ_MEMBER(x_to_Power_y), -1, -kInf, 0, 0, 6},
      {VQ_MEMBER(x_to_Power_y), -1, kNaN, kOut},
      {VQ_MEMBER(x_to_Power_y), 10, 308, kOut},
      {VQ_MEMBER(x_to_Power_y), 10, -308, 0},
      {VQ_MEMBER(x_to_Power_y), 10, 307, 1e307, 1e-12},
      {VQ_MEMBER(x_to_Power_y), 10, kMax, 0, 0, 6},
      {VQ_MEMBER(x_to_Power_y), kInf, 2, kOut},
      {VQ_MEMBER(x_to_Power_y), kInf, -2, 0},
      {VQ_MEMBER(x_to_Power_y), 1, kInf, 0, 0, 5},
      {VQ_MEMBER(x_to_Power_y), kNaN, 2, kNaN},
      {VQ_MEMBER(y_Root_of_X), 0, 0, kOut},
      {VQ_MEMBER(y_Root_of_X), 0, -3, 0},
      {VQ_MEMBER(y_Root_of_X), -8, 3, -2, 1e-15},
      {VQ_MEMBER(y_Root_of_X), -8, -3, -0.5, 1e-15},
      {VQ_MEMBER(y_Root_of_X), -16, 4, kOut},
      {VQ_MEMBER(y_Root_of_X), -8, 2.5, kOut},
      {VQ_MEMBER(y_Root_of_X), -8, 2.75, kOut},  // though it rounds to 3
      {VQ_MEMBER(y_Root_of_X), -8, 1e10, 0, 0, 6},
      {VQ_MEMBER(y_Root_of_X), 2, 1e-4, kOut},
      {VQ_MEMBER(y_Root_of_X), 2, -1e-4, 0},
      {VQ_MEMBER(y_Root_of_X), 2, kMin, 0, 0, 6},
      {VQ_MEMBER(y_Root_of_X), 2, kInf, 1},
      {VQ_MEMBER(y_Root_of_X), kInf, kInf, 0, 0, 5},
      {VQ_MEMBER(y_Root_of_X), kNaN, 3, kNaN},
      {VQ_MEMBER(Max), 2, 3, 3},
      {VQ_MEMBER(Max), kNaN, 3, kNaN},  // not less than 3
      {VQ_MEMBER(Max), 3, kNaN, 3},
      {VQ_MEMBER(Min), 2, 3, 2},
      {VQ_MEMBER(Min), kNaN, 3, kNaN},
      {VQ_MEMBER(Min), 3, kNaN, 3},
      {VQ_MEMBER(Sign), -2, -0.0, 2},
      {VQ_MEMBER(Sign), 2, -kMin, -2},
      {VQ_MEMBER(Sign), -2, kNaN, 2},
  };
  for (const Row& row : rows) {
    const double got = (lib.*row.member)(row.x, row.y);
    std::ostringstream call;
    call << row.name << "(" << row.x << ", " << row.y << ") = " << got;
    if (row.tolerance == 0) {
      EXPECT_TRUE(same(got, row.want)) << call.str();
    } else {
      EXPECT_NEAR(got, row.want, std::abs(row.want) * row.tolerance) << call.str();
    }
    // The one power and the one root whose texts differ from their names in one letter.
    std::string routine = row.name;
    if (routine == "x_to_Power_y") routine = "x_to_power_y";
    if (routine == "y_Root_of_X") routine = "y_Root_of_x";
    expect_line(row.fault, "ztMathLib (Code) (" + routine + ")", call.str());
  }
}

TEST_F(ElementaryTest, quadrants_give_the_axes_away_as_stated) {
  const struct {
    double x, y;
    std::int32_t want;
  } rows[] = {{1, 1, 1},     {-1, 1, 2},    {-1, -1, 3},       {1, -1, 4},     {0, 0, 1},
              {1, 0, 1},     {0, 1, 1},     {-1, 0, 2},        {0, -1, 4},     {-0.0, -0.0, 1},
              {-1, kNaN, 2}, {kNaN, -1, 4}, {-kMin, -kMin, 3}, {kNaN, kNaN, 1}};
  for (const auto& row : rows) EXPECT_EQ(lib.Quadrant(row.x, row.y), row.want) << row.x << row.y;
}

TEST_F(ElementaryTest, factor_searches_to_half_the_smaller_magnitude) {
  constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();
  const struct {
    std::int32_t a, b, want;
  } rows[] = {{12, 18, 2},
              {9, 27, 3},
              {4, 4, 2},
              {7, 7, 1},
              {5, 10, 1},
              {3, 6, 1},
              {-12, 18, 2},
              {0, 0, 1},
              {0, 6, 1},
              {35, 49, 7},
              {10, -15, 5},
              {2, 4, 1},
              {6, 9, 3},
              {kMost, kMost, 1},
              {-kMost, 2, 1},
              {2147117569, 2147117569, 46337},
              {kMost - 1, kMost - 1, 2}};
  for (const auto& row : rows)
    EXPECT_EQ(lib.Factor(row.a, row.b), row.want) << row.a << "," << row.b;
  // The search as stated, one candidate after the other.
  for (std::int32_t a = -40; a <= 40; ++a) {
    for (std::int32_t b = -40; b <= 40; ++b) {
      const double half = std::min(std::abs(a), std::abs(b)) / 2.0;
      std::int32_t want = 1;
      for (std::int32_t k = 2; k <= std::nearbyint(half) && want == 1; ++k) {
        if (a % k == 0 && b % k == 0) want = k;
      }
      EXPECT_EQ(lib.Factor(a, b), want) << a << ", " << b;
    }
  }
  EXPECT_TRUE(lines.empty());
  EXPECT_EQ(lib.Factor(std::numeric_limits<std::int32_t>::min(), 4), 0);
  expect_line(6, "ztMathLib (Code) (Factor)", "the most negative Long");
}

TEST_F(ElementaryTest, degrees_are_read_only_and_radians_have_no_trap) {
  double degrees = 180;
  EXPECT_NEAR(lib.DTR(degrees), 3.1415926535897403, 1e-15);
  EXPECT_EQ(degrees, 180);
  EXPECT_EQ(fault_of([&] { lib.RTD(kMax); }), 6);
  EXPECT_TRUE(std::isinf(lib.RTD(kInf)));
  EXPECT_TRUE(lines.empty());
}

}  // namespace
}  // namespace vqmath63
