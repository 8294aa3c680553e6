// Checked arithmetic and functions step by step, and speculation held against the checked run.
#include "frame/checked.hpp"

#include <cmath>
#include <limits>

#include "companion_fixture.hpp"
#include "frame/checked_functions.hpp"
#include "frame/speculate.hpp"
#include "test_table.hpp"

namespace vqmath63 {
namespace {

constexpr double kInf = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

TEST(Checked, a_step_faults_only_when_it_raises_the_condition_itself) {
  each_row("frame.tsv", "steps", 24, [](const TableRow& row) {
    Double got;
    const Double x = double(row["a"]), y = double(row["b"]);
    const char op = row["operator"];
    const std::int32_t fault = row["fault"];
    const auto step = [&] {
      got = op == '+' ? x + y : op == '-' ? x - y : op == '*' ? x * y : x / y;
    };
    EXPECT_EQ(fault_of(step), fault) << row["b"].text;
    EXPECT_TRUE(same(got.value(), row["value"])) << row["b"].text;
  });
}

TEST(CheckedFunctions, fault_as_steps_do) {
  const struct {
    const char* name;
    Double (*call)(Double);
    double x;
    double want;
    std::int32_t fault;
  } rows[] = {
      {"Exp", Exp, 710, 0, 6},
      {"Exp", Exp, -800, 0, 0},
      {"Exp", Exp, kNaN, kNaN, 0},
      {"Log", Log, 0, 0, 5},
      {"Log", Log, -kInf, 0, 5},
      {"Log", Log, kInf, kInf, 0},
      {"Log", Log, kNaN, kNaN, 0},
      {"Sqr", Sqr, -1, 0, 5},
      {"Sqr", Sqr, -0.0, 0, 0},
      {"Sin", Sin, kInf, 0, 5},
      {"Cos", Cos, -kInf, 0, 5},
      {"Tan", Tan, kInf, 0, 5},
      {"Fix", Fix, -2.75, -2, 0},
      {"Fix", Fix, -kInf, -kInf, 0},
      {"Fix", Fix, 4503599627370495.5, 4503599627370495, 0},
      {"Sgn", Sgn, -0.0, 0, 0},
      {"Sgn", Sgn, -5e-324, -1, 0},
      {"Sgn", Sgn, kNaN, kNaN, 0},
  };
  for (const auto& row : rows) {
    double got = 0;
    EXPECT_EQ(fault_of([&] { got = row.call(row.x).value(); }), row.fault) << row.name << row.x;
    EXPECT_TRUE(same(got, row.want)) << row.name << "(" << row.x << ") = " << got;
  }
  // Over plain numbers, and over what is only known to be Double, nothing faults.
  EXPECT_TRUE(same(Log(PlainMode::Double(-1)).value(), kNaN));
  EXPECT_TRUE(same(Sqr(PlainMode::Double(-1)).value(), kNaN));
  EXPECT_EQ(Exp(PlainMode::Double(710)).value(), kInf);
  EXPECT_EQ(Abs(PlainMode::Double(-2)).value(), 2);
  EXPECT_EQ(unchecked::log(0), -kInf);
}

TEST(Checked, singles_are_worked_on_in_double_and_stored_with_one_rounding) {
  const Single big = 3e38F;
  EXPECT_EQ((big * big / big).value(), static_cast<double>(3e38F));  // no overflow before storing
  EXPECT_EQ(fault_of([&] { [[maybe_unused]] Single stored = big + big; }), 6);
  EXPECT_TRUE(std::isinf(to_single(kInf)));
  EXPECT_EQ(to_single(1.0 + 0x1p-24), 1.0F);  // a tie goes to even
}

TEST(Checked, conversion_to_long_rounds_half_to_even) {
  const std::pair<double, std::int32_t> rows[] = {
      {0.5, 0}, {1.5, 2}, {2.5, 2}, {-1.5, -2}, {2.75, 3}, {2147483647.25, 2147483647}};
  for (const auto& [value, want] : rows) EXPECT_EQ(to_long(value), want) << value;
  for (const double bad : {2147483647.5, -2147483649.0, kNaN, -kInf}) {
    EXPECT_EQ(fault_of([&] { to_long(bad); }), 6) << bad;
  }
}

}  // namespace
}  // namespace vqmath63
