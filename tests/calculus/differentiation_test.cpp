// Difference formulas and ztDifferentiate: values, ranges, what a failure leaves written.
#include "calculus/differentiation.hpp"

#include <cmath>
#include <limits>

#include "calculus/differentiate.hpp"
#include "frame/arrays.hpp"
#include "frame/companion_fixture.hpp"

namespace vqmath63 {
namespace {

constexpr double kOld = -77;  // what a result array held before

class DifferentiationTest : public CompanionTest {};

using Values = std::vector<double>;

using Routine = void (*)(Array1<double>&, Array1<double>&, std::int32_t, std::int32_t,
                         Array1<double>&, bool&);
using Member = void (ztDifferentiate::*)(Array1<double>&, Array1<double>&, Array1<double>&, bool&);
constexpr Member kFirst = &ztDifferentiate::FirstDerivative;
constexpr Member kSecond = &ztDifferentiate::SecondDerivative;
constexpr Member kForwards = &ztDifferentiate::FirstDerivativeForwards;
constexpr Member kBackwards = &ztDifferentiate::FirstDerivativeBackwards;

// Routines of the module, by their names in messages.
constexpr const char* kUp = "FirstDerivativeUpStream";
constexpr const char* kDown = "FirstDerivativeDownStream";
constexpr const char* kMid = "FirstDerivativeCentered";
constexpr const char* kSecondUp = "SecondDerivativeUpStream";
constexpr const char* kSecondDown = "SecondDerivativeDownStream";
constexpr const char* kSecondMid = "SecondDerivativeCentered";

Lines routine_lines(std::int32_t number, const std::string& routine) {
  return error_lines(number, "ztAnalyse - Differentiation (Code) (" + routine + ")");
}

// The values, or NaN for NaN, to a rounding or two.
void expect_values(const Array1<double>& got, const Values& want, const char* name) {
  ASSERT_EQ(got.size(), want.size()) << name;
  for (std::size_t i = 0; i < want.size(); ++i) {
    const double value = got.data()[i];
    EXPECT_TRUE(same(value, want[i]) || std::fabs(value - want[i]) <= 4e-16 * std::fabs(want[i]))
        << name << ", point " << i + 1 << ": " << value << " instead of " << want[i];
  }
}

Values squares(const Values& x) {
  Values y;
  for (const double v : x) y.push_back(v * v);
  return y;
}

TEST_F(DifferentiationTest, members_on_curves_worked_by_hand) {
  const Values uneven{0, 1, 3, 6};
  // Of y = x^3 the centred formula gives 3 x^2 + h1 h2, the forward one the chord.
  const Values cube{0, 1, 27, 216};
  struct Row {
    const char* name;
    Member member;
    Values x, y, want;
  } const rows[] = {
      {"first, cubic", kFirst, uneven, cube, {1, 5, 33, 63}},
      {"first, two samples", kFirst, {2, 4}, {1, 7}, {3, 3}},
      {"first, falling abscissae", kFirst, {3, 2, 0}, {9, 4, 0}, {5, 4, 2}},
      // Of y = x^3 a parabola has twice the sum of its three abscissae.
      {"second, cubic", kSecond, uneven, cube, {8, 8.0 / 12, 20.0 / 12, 20}},
      {"second, three samples", kSecond, {0, 1, 3}, {0, 1, 27}, {8, 8.0 / 12, 8}},
      {"forwards", kForwards, uneven, squares(uneven), {1, 4, 9, 0}},
      {"backwards", kBackwards, uneven, squares(uneven), {0, 1, 4, 9}},
      {"backwards, one sample", kBackwards, {2}, {4}, {0}},
      // 1e-20 keeps the denominators from zero; 0 over it is 0.
      {"equal abscissae", kForwards, {1, 1, 2}, {0, 3, 4}, {3e20, 1, 0}},
      {"equal abscissae backwards", kBackwards, {1, 1, 2}, {0, 3, 4}, {0, 3e20, 1}},
      // h1 = 0: A = 0 and B = 1, so 0 - (0 - 1) 3 - 1 x 0 = 3 over 1e-20.
      {"equal abscissae centred", kFirst, {1, 1, 2}, {0, 3, 4}, {3e20, 3e20, 1}},
      {"a NaN flows through", kFirst, {0, 1, 2, 3}, {0, kNaN, 2, 3}, {kNaN, kNaN, kNaN, 1}},
      {"an infinite ordinate flows through", kForwards, {0, 1, 2}, {0, 1, kInf}, {1, kInf, 0}},
      {"an infinite abscissa gives 0", kForwards, {0, 1, kInf}, {0, 1, 2}, {1, 0, 0}},
  };
  ztDifferentiate differentiate;
  for (const Row& row : rows) {
    // Abscissae from 0 and ordinates with one more: neither is looked at.
    Array1<double> x = samples_of(row.x, 0), y = samples_of(row.y, 1, 1);
    Array1<double> d = array_of(Values(row.x.size(), kOld));
    bool ok = false;
    (differentiate.*row.member)(x, y, d, ok);
    EXPECT_TRUE(ok) << row.name;
    expect_values(d, row.want, row.name);
  }
  EXPECT_TRUE(lines.empty());
}

TEST_F(DifferentiationTest, routines_write_their_range_and_no_more) {
  // y = x^2 at 0, 1, 3, 6, 10: differences 1 4 9 16, centred 2 6 12, second 2 or a twelfth of it.
  constexpr double t = 2.0 / 12;
  constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();
  constexpr double o = kOld;
  struct Row {
    const char* name;
    Routine routine;
    std::int32_t i1, i2;
    bool ok;
    Values want;
  } const rows[] = {
      {"up", FirstDerivativeUpStream, 1, 5, true, {1, 4, 9, 16, o}},
      {"up, beyond", FirstDerivativeUpStream, 4, 99, true, {o, o, o, 16, o}},
      {"up, from 0 reads x(0)", FirstDerivativeUpStream, 0, 2, false, {o, o, o, o, o}},
      {"down", FirstDerivativeDownStream, 1, 5, true, {o, 1, 4, 9, 16}},
      {"down, beyond the end", FirstDerivativeDownStream, 4, 6, false, {o, o, o, o, o}},
      {"centred", FirstDerivativeCentered, 1, 5, true, {o, 2, 6, 12, o}},
      {"centred, a far end", FirstDerivativeCentered, 4, kMost, true, {o, o, o, 12, o}},
      {"all", FirstDerivatives, 1, 5, true, {1, 2, 6, 12, 16}},
      {"all, part: no end applies", FirstDerivatives, 3, 4, true, {o, o, 6, 12, o}},
      {"all, from 2: point 1 as well", FirstDerivatives, 2, 3, true, {1, 2, 6, o, o}},
      {"all, to the end", FirstDerivatives, 4, 5, true, {o, o, o, 12, 16}},
      // The backward routine runs from i2 to n; i2 beyond n leaves it nothing.
      {"all, beyond the end", FirstDerivatives, 3, 7, true, {o, o, 6, 12, o}},
      {"all, from below", FirstDerivatives, -3, 3, true, {o, 2, 6, o, o}},
      {"all, nothing to do is no success", FirstDerivatives, 4, 3, false, {o, o, o, o, o}},
      {"all, upside down at the start", FirstDerivatives, 1, 0, true, {1, o, o, o, o}},
      {"second up", SecondDerivativeUpStream, 1, 3, true, {2, 2, 2, o, o}},
      {"second up, unclamped", SecondDerivativeUpStream, 2, 4, false, {o, 2, 2, o, o}},
      {"second down", SecondDerivativeDownStream, 3, 5, true, {o, o, 2, 2, 2}},
      {"second down, unclamped", SecondDerivativeDownStream, 2, 4, false, {o, o, o, o, o}},
      {"second centred", SecondDerivativeCentered, 2, 4, true, {o, t, t, t, o}},
      {"second centred, unclamped", SecondDerivativeCentered, 4, 5, false, {o, o, o, t, o}},
      {"second all", SecondDerivatives, 1, 5, true, {2, t, t, t, 2}},
      {"second all, part", SecondDerivatives, 3, 4, true, {o, o, t, t, o}},
      {"second all, nothing to do", SecondDerivatives, 4, 3, false, {o, o, o, o, o}},
  };
  for (const Row& row : rows) {
    Array1<double> x = array_of<double>({0, 1, 3, 6, 10}), y = array_of(squares(contents(x)));
    Array1<double> d = array_of(Values(5, kOld));
    bool ok = !row.ok;
    row.routine(x, y, row.i1, row.i2, d, ok);
    EXPECT_EQ(ok, row.ok) << row.name;
    expect_values(d, row.want, row.name);
    const bool quiet = row.ok || row.i1 > row.i2;
    EXPECT_EQ(taken().size(), quiet ? 0U : 1U) << row.name;
  }
}

TEST_F(DifferentiationTest, failures_keep_what_was_written_before) {
  constexpr double kBig = 1e308;
  constexpr double o = kOld;
  const Values ramp{0, 1, 2, 3};
  struct Row {
    const char* name;
    Member member;
    Values x, y;
    std::size_t room;  // of the result
    Values want;
    const char* routine;
    std::int32_t error;
  };
  constexpr double t = 2.0 / 12;
  const Values alike{0, 1, 2, 2, 3, 4};
  const Values far{0, 1e103, 2e103, 3e103};  // the cubes of whose steps are beyond Double
  const Row rows[] = {
      {"result short: n comes second", kFirst, ramp, ramp, 3, {1, o, o}, kDown, 9},
      {"result unallocated", kFirst, ramp, ramp, 0, {}, kUp, 9},
      {"ordinates short", kFirst, ramp, {0, 1, 2}, 4, {1, o, o, o}, kDown, 9},
      {"one sample", kFirst, {1}, {1}, 1, {o}, kUp, 9},
      {"short forwards", kForwards, ramp, {0, 1, 2}, 4, {1, 1, 0, 0}, kUp, 9},
      {"two samples", kSecond, {0, 1}, {0, 1}, 4, {0, 0}, kSecondUp, 9},
      {"alike at the start", kSecond, {1, 1, 2, 3}, ramp, 4, {0, 0, 0, 0}, kSecondUp, 11},
      {"alike at the end", kSecond, {0, 1, 2, 2}, ramp, 4, {0, 0, 0, 0}, kSecondDown, 11},
      // 2 and 3 are what the one-sided formulas give at the ends.
      {"alike inside", kSecond, alike, {0, 1, 4, 5, 9, 16}, 4, {2, t, 0, 0, 0, 3}, kSecondMid, 11},
      {"0 over 0", kSecond, alike, {0, 1, 4, 4, 9, 16}, 4, {2, t, 0, 0, 0, 2}, kSecondMid, 5},
      {"ordinates far apart", kFirst, ramp, {kBig, -kBig, 0, 0}, 4, {o, o, o, o}, kUp, 6},
      // The quotient would be finite: 0.
      {"abscissae far apart", kFirst, {-kBig, kBig, 0, 1}, ramp, 4, {o, o, o, o}, kUp, 6},
      {"denominator too large", kFirst, far, ramp, 4, {1e-103, o, o, 1e-103}, kMid, 6},
      {"infinities that cancel", kForwards, ramp, {0, kInf, kInf, 0}, 4, {kInf, 0, 0, 0}, kUp, 5},
      {"from the end", kBackwards, ramp, {0, kInf, kInf, 0}, 4, {0, 0, 0, -kInf}, kDown, 5},
  };
  ztDifferentiate differentiate;
  for (const Row& row : rows) {
    Array1<double> x = array_of(row.x), y = array_of(row.y), d = array_of(Values(row.room, kOld));
    bool ok = true;
    (differentiate.*row.member)(x, y, d, ok);
    EXPECT_FALSE(ok) << row.name;
    EXPECT_EQ(taken(), routine_lines(row.error, row.routine)) << row.name;
    expect_values(d, row.want, row.name);
  }
}

TEST_F(DifferentiationTest, a_fault_deep_in_a_long_curve_stops_there) {
  // Two infinite ordinates side by side: their difference is an invalid operation.
  constexpr std::int32_t kCount = 4000;
  for (const std::int32_t at : {3, 255, 256, 257, 1000, 3998}) {
    for (const bool up : {true, false}) {
      Array1<double> x(1, kCount), y(1, kCount), d(1, kCount), want(1, kCount);
      for (std::int32_t i = 1; i <= kCount; ++i) {
        x(i) = i;
        y(i) = i == at || i == at + 1 ? kInf : 2.0 * i;
        // Forward differences are written below `at`, backward ones above at + 1.
        want(i) = (up ? i < at : i > at + 1) ? 2.0 : kOld;
        d(i) = kOld;
      }
      want(up ? at - 1 : at + 2) = up ? kInf : -kInf;
      bool ok = true;
      (up ? FirstDerivativeUpStream : FirstDerivativeDownStream)(x, y, 1, kCount, d, ok);
      EXPECT_FALSE(ok);
      EXPECT_EQ(taken(), routine_lines(5, up ? kUp : kDown));
      EXPECT_TRUE(contents(d) == contents(want)) << at << (up ? " up" : " down");
    }
  }
}

TEST_F(DifferentiationTest, long_curves_agree_with_a_plain_formula_point_by_point) {
  constexpr std::int32_t kCount = 1000;
  Array1<double> x(1, kCount), y(1, kCount), d(1, kCount), d2;
  for (std::int32_t i = 1; i <= kCount; ++i) {
    x(i) = i + (i % 7) / 16.0;
    y(i) = x(i) * (3 - x(i));  // y' = 3 - 2 x, y'' = -2
  }
  ztDifferentiate differentiate;
  bool ok = false, ok2 = false;
  differentiate.FirstDerivative(x, y, d, ok);
  differentiate.SecondDerivative(x, y, d2, ok2);
  EXPECT_TRUE(ok && ok2);
  for (std::int32_t i = 2; i < kCount; ++i) {
    EXPECT_NEAR(d(i), 3 - 2 * x(i), 1e-9) << i;  // of differences of values up to 1e6
    EXPECT_NEAR(d2(i), -2.0 / 12, 1e-8) << i;
  }
}

TEST_F(DifferentiationTest, the_result_in_place_of_the_ordinates_is_worked_through_in_order) {
  Array1<double> x = array_of<double>({0, 1, 2, 3});
  Array1<double> y = array_of<double>({0, 1, 4, 9});
  bool ok = false;
  ztDifferentiate().FirstDerivative(x, y, y, ok);
  EXPECT_TRUE(ok);
  // 1 at point 1, then 9 - 4 = 5 at point 4; centred (4 - 1) / 2 and (5 - 1.5) / 2.
  EXPECT_EQ(contents(y), (Values{1, 1.5, 1.75, 5}));
  FirstDerivativeUpStream(x, x, 1, 4, x, ok);
  EXPECT_TRUE(ok);
}

TEST_F(DifferentiationTest, members_report_arrays_that_are_not_there) {
  ztDifferentiate differentiate;
  Array1<double> none, some = array_of<double>({1, 2, 3}), zero(0, 0), d = some;
  struct Row {
    const char* name;
    Member member;
    bool empty_is_well;  // an upper bound of 0
  } const rows[] = {{"FirstDerivative", kFirst, true},
                    {"SecondDerivative", kSecond, false},
                    {"FirstDerivativeForwards", kForwards, false},
                    {"FirstDerivativeBackwards", kBackwards, false}};
  for (const Row& row : rows) {
    bool ok = true;
    (differentiate.*row.member)(none, some, d, ok);
    EXPECT_FALSE(ok) << row.name;
    const std::string place = std::string("ztAnalyse - ztDifferentiate (Code) (") + row.name + ")";
    EXPECT_EQ(taken(), error_lines(9, place));
    (differentiate.*row.member)(zero, some, d, ok);
    EXPECT_EQ(ok, row.empty_is_well) << row.name;
    EXPECT_EQ(taken().size(), row.empty_is_well ? 0U : 1U) << row.name;
  }
  EXPECT_EQ(contents(d), contents(some));
  // The work array of no element cannot be made.
  bool ok = true;
  SecondDerivatives(zero, some, 1, 0, d, ok);
  EXPECT_FALSE(ok);
  EXPECT_EQ(taken(), routine_lines(9, "SecondDerivatives"));
}

}  // namespace
}  // namespace vqmath63
