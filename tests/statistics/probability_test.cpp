// Tail probabilities and quantiles against 50-digit values, closed forms and their own symmetries.
#include "statistics/probability.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <string>

#include "frame/test_table.hpp"

namespace vqmath63 {
namespace {

double relative(double got, double want) {
  return got == want ? 0.0 : std::fabs(got - want) / std::fabs(want);
}

TEST(Probability, agrees_with_fifty_digits) {
  struct Bound {
    double bound;
    int rows = 0;
  };
  std::map<std::string, Bound> bounds = {
      {"chi", {1e-13}}, {"student", {1e-11}}, {"quantile", {1e-12}}};
  each_row("probability_cases.tsv", "", 89, [&](const TableRow& row) {
    const std::string kind = row["kind"];
    const double at = row["at"], freedom = row["freedom"];
    const std::vector<double> want = row["results"];
    ASSERT_EQ(want.size(), kind == "student" ? 2U : 1U);
    double error = 0.0;
    if (kind == "chi") error = relative(chi_squared_exceeded(at, freedom), want[0]);
    if (kind == "quantile") error = relative(student_quantile(at, freedom), want[0]);
    if (kind == "student") {
      const Tails got = student_two_sided(at, freedom);
      error = std::max(relative(got.lower, want[0]), relative(got.upper, want[1]));
      EXPECT_EQ(student_two_sided(-at, freedom).upper, got.upper) << "either sign of t";
    }
    ++bounds.at(kind).rows;
    EXPECT_LT(error, bounds.at(kind).bound) << kind << " at " << at << ", " << freedom;
  });
  for (const auto& [name, bound] : bounds) EXPECT_GT(bound.rows, 25) << name;
}

TEST(Probability, agrees_with_closed_forms) {
  constexpr double kPi = 3.14159265358979323846;
  for (const double t : {1e-9, 0.01, 0.5, 0.99, 1.0, 1.01, 3.0, 1e4, 1e12}) {
    // Cauchy's distribution, and that of two degrees of freedom.
    EXPECT_LT(relative(student_two_sided(t, 1).upper, std::atan2(1.0, t) * 2 / kPi), 1e-14) << t;
    EXPECT_LT(relative(student_two_sided(t, 2).lower, t / std::sqrt(2 + t * t)), 1e-14) << t;
    EXPECT_LT(relative(chi_squared_exceeded(t, 2), std::exp(-t / 2)), 1e-13) << t;
    EXPECT_LT(relative(chi_squared_exceeded(t, 1), std::erfc(std::sqrt(t / 2))), 1e-13) << t;
    EXPECT_LT(
        relative(incomplete_beta(2.5, 1, 1 / (1 + t), t / (1 + t)).lower, std::pow(1 + t, -2.5)),
        1e-13)
        << t;
    EXPECT_LT(relative(incomplete_gamma(1, t).lower, -std::expm1(-t)), 1e-14) << t;
  }
  for (const double level : {1e-200, 1e-12, 0.9e-8, 1.1e-8, 0.3, 0.5, 0.95, 1 - 1e-9}) {
    const double rest = 1 - level;
    const double tangent = level < 0.5 ? std::tan(level * kPi / 2) : 1 / std::tan(rest * kPi / 2);
    EXPECT_LT(relative(student_quantile(level, 1), tangent), 1e-13) << level;
    const double t = level * std::sqrt(2 / (rest * (1 + level)));
    EXPECT_LT(relative(student_quantile(level, 2), t), 1e-13) << level;
  }
  for (const double level : {1e-12, 0.9e-8, 1.1e-8, 0.3, 0.5, 0.95, 1 - 1e-9}) {
    for (const double freedom : {3.0, 17.0, 2000.0}) {
      const Tails tails = student_two_sided(student_quantile(level, freedom), freedom);
      EXPECT_LT(relative(tails.lower, level), 1e-12) << level << ' ' << freedom;
      EXPECT_LT(relative(tails.upper, 1 - level), 1e-11) << level << ' ' << freedom;
    }
  }
}

TEST(Probability, ends_of_the_ranges_and_nan) {
  EXPECT_EQ(chi_squared_exceeded(0, 3), 1);
  EXPECT_EQ(chi_squared_exceeded(INFINITY, 3), 0);
  EXPECT_EQ(incomplete_gamma(2, 0).lower, 0);
  EXPECT_EQ(student_two_sided(0, 3).upper, 1);
  EXPECT_EQ(student_two_sided(INFINITY, 3).lower, 1);
  EXPECT_EQ(student_two_sided(-INFINITY, 3).upper, 0);
  EXPECT_TRUE(std::isnan(chi_squared_exceeded(NAN, 3)));
  EXPECT_TRUE(std::isnan(student_two_sided(NAN, 3).upper));
  EXPECT_TRUE(std::isnan(incomplete_beta(2, NAN, 0.25, 0.75).lower));
}

}  // namespace
}  // namespace vqmath63
