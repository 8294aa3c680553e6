// Difference formulas and ztDifferentiate: values, ranges, what a failure leaves written.
#include "calculus/differentiation.hpp"

#include <cmath>

#include "calculus/differentiate.hpp"
#include "frame/arrays.hpp"
#include "frame/companion_fixture.hpp"
#include "frame/test_table.hpp"

namespace vqmath63 {
namespace {

constexpr double kOld = -77;  // what a result array held before

class DifferentiationTest : public CompanionTest {};

using Values = std::vector<double>;

using Curve = Array1<const double>;
using Member = void (ztDifferentiate::*)(const Curve&, const Curve&, Array1<double>&, bool&);
constexpr std::pair<const char*, Member> kMembers[] = {
    {"FirstDerivative", &ztDifferentiate::FirstDerivative},
    {"SecondDerivative", &ztDifferentiate::SecondDerivative},
    {"FirstDerivativeForwards", &ztDifferentiate::FirstDerivativeForwards},
    {"FirstDerivativeBackwards", &ztDifferentiate::FirstDerivativeBackwards}};

using Routine = void (*)(const Curve&, const Curve&, std::int32_t, std::int32_t, Array1<double>&,
                         bool&);
constexpr std::pair<const char*, Routine> kRoutines[] = {
    {"FirstDerivativeUpStream", FirstDerivativeUpStream},
    {"FirstDerivativeDownStream", FirstDerivativeDownStream},
    {"FirstDerivativeCentered", FirstDerivativeCentered},
    {"FirstDerivatives", FirstDerivatives},
    {"SecondDerivativeUpStream", SecondDerivativeUpStream},
    {"SecondDerivativeDownStream", SecondDerivativeDownStream},
    {"SecondDerivativeCentered", SecondDerivativeCentered},
    {"SecondDerivatives", SecondDerivatives}};

template <class Table>
auto by_name(const Table& table, const std::string& name) {
  const auto found = std::find_if(std::begin(table), std::end(table),
                                  [&](const auto& entry) { return entry.first == name; });
  if (found == std::end(table)) throw std::invalid_argument("no routine " + name);
  return found->second;
}

Lines routine_lines(std::int32_t number, const std::string& routine) {
  return error_lines(number, "ztAnalyse - Differentiation (Code) (" + routine + ")");
}

// The values, or NaN for NaN, to a rounding or two.
void expect_values(const Array1<double>& got, const Values& want) {
  ASSERT_EQ(got.size(), want.size());
  for (std::size_t i = 0; i < want.size(); ++i) {
    const double value = got.data()[i];
    EXPECT_TRUE(same(value, want[i]) || std::fabs(value - want[i]) <= 4e-16 * std::fabs(want[i]))
        << "point " << i + 1 << ": " << value << " instead of " << want[i];
  }
}

TEST_F(DifferentiationTest, members_on_curves_worked_by_hand) {
  each_row("calculus.tsv", "members", 12, [](const TableRow& row) {
    // Abscissae from 0 and ordinates with one more: neither is looked at.
    Array1<double> x = samples_of<double>(row["x"], 0), y = samples_of<double>(row["y"], 1, 1);
    const Values want = row["want"];
    Array1<double> d = array_of(Values(want.size(), kOld));
    bool ok = false;
    (ztDifferentiate().*by_name(kMembers, row["member"]))(x, y, d, ok);
    EXPECT_TRUE(ok);
    expect_values(d, want);
  });
  EXPECT_TRUE(lines.empty());
}

TEST_F(DifferentiationTest, routines_write_their_range_and_no_more) {
  each_row("calculus.tsv", "ranges", 27, [&](const TableRow& row) {
    Array1<double> x = array_of<double>({0, 1, 3, 6, 10}), y = array_of<double>({0, 1, 9, 36, 100});
    Array1<double> d = array_of(Values(5, kOld));
    const std::int32_t from = row["from"], to = row["to"];
    const bool want_ok = row["ok"];
    bool ok = !want_ok;
    by_name(kRoutines, row["routine"])(x, y, from, to, d, ok);
    EXPECT_EQ(ok, want_ok);
    expect_values(d, row["want"]);
    EXPECT_EQ(taken().size(), want_ok || from > to ? 0U : 1U);
  });
}

TEST_F(DifferentiationTest, failures_keep_what_was_written_before) {
  each_row("calculus.tsv", "failures", 15, [&](const TableRow& row) {
    Array1<double> x = array_of<double>(row["x"]), y = array_of<double>(row["y"]);
    Array1<double> d = array_of(Values(row["room"], kOld));
    bool ok = true;
    (ztDifferentiate().*by_name(kMembers, row["member"]))(x, y, d, ok);
    EXPECT_FALSE(ok);
    EXPECT_EQ(taken(), routine_lines(row["error"], row["routine"]));
    expect_values(d, row["want"]);
  });
}

TEST_F(DifferentiationTest, derivatives_in_place_of_the_samples_are_those_of_the_samples) {
  for (const auto& [name, member] : {kMembers[1], kMembers[2], kMembers[3]}) {
    for (const bool over_x : {true, false}) {
      for (const std::int32_t lower : {0, 1}) {
        Array1<double> x = samples_of<double>({0, 1, 3, 7}, lower);
        Array1<double> y = samples_of<double>({0, 1, 9, 49}, lower);
        Array1<double> want;
        bool ok = false;
        (ztDifferentiate().*member)(x, y, want, ok);
        ASSERT_TRUE(ok) << name;
        Array1<double>& d = over_x ? x : y;
        (ztDifferentiate().*member)(x, y, d, ok);
        EXPECT_TRUE(ok) << name;
        EXPECT_EQ(contents(d), contents(want)) << name;
      }
    }
  }
}

// y(1) is not there, and the products of y with x are beyond Double.
TEST_F(DifferentiationTest, of_two_failures_the_first_in_the_formula_is_reported) {
  const struct {
    decltype(&FirstDerivativeCentered) routine;
    const char* name;
    std::int32_t point, error;
  } rows[] = {
      {&FirstDerivativeCentered, "FirstDerivativeCentered", 2, 6},
      {&SecondDerivativeUpStream, "SecondDerivativeUpStream", 1, 6},
      {&SecondDerivativeDownStream, "SecondDerivativeDownStream", 3, 9},
      {&SecondDerivativeCentered, "SecondDerivativeCentered", 2, 6},
  };
  const Array1<double> x = samples_of<double>({0, 1e100, 2e100, 3e100}, 1);
  std::vector<double> ordinates(3, 1e300);
  const Array1<double> y(ordinates.data(), {2, 4});
  for (const auto& row : rows) {
    Array1<double> d(1, 4);
    bool ok = true;
    row.routine(x, y, row.point, row.point, d, ok);
    EXPECT_FALSE(ok) << row.name;
    EXPECT_EQ(taken(), routine_lines(row.error, row.name));
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
  for (const auto& [name, member] : kMembers) {
    const bool empty_is_well = member == &ztDifferentiate::FirstDerivative;  // upper bound 0
    bool ok = true;
    (differentiate.*member)(none, some, d, ok);
    EXPECT_FALSE(ok) << name;
    const std::string place = std::string("ztAnalyse - ztDifferentiate (Code) (") + name + ")";
    EXPECT_EQ(taken(), error_lines(9, place));
    (differentiate.*member)(zero, some, d, ok);
    EXPECT_EQ(ok, empty_is_well) << name;
    EXPECT_EQ(taken().size(), empty_is_well ? 0U : 1U) << name;
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
