// Extremes, sums, means and spreads: values of long columns, edges, failures, and speculation
// against a plain replay.
#include <algorithm>
#include <cmath>
#include <functional>
#include <map>

#include "statistics/samples.hpp"
#include "statistics/statistics.hpp"

namespace vqmath63 {
namespace {

using A = Array1<float>;
using Read = Array1<const float>;
using Z = ztStatistics;
constexpr float kMax = std::numeric_limits<float>::max();

using Measure = std::function<double(Z&, A&, A&)>;

// Measures of the first array, and of both.
template <class R, class X>
Measure of_one(R (Z::*f)(X&)) {
  return [f](Z& z, A& x, A&) { return (z.*f)(x); };
}
Measure of_two(float (Z::*f)(const Read&, const Read&)) {
  return [f](Z& z, A& x, A& y) { return (z.*f)(x, y); };
}
Measure quartile(std::int32_t k) {
  return [k](Z& z, A& x, A&) {
    std::int32_t which = k;
    return z.Quartile(x, which);
  };
}
// A property after the summary of one array, or of both.
Measure kept(bool pair, float (Z::*property)() const) {
  return [=](Z&, A& x, A& y) {
    Z z;
    bool ok = false;
    pair ? z.BasicStatisticsPairs(x, y, ok) : z.BasicStatistics(x, ok);
    return ok ? (z.*property)() : kNaN;
  };
}
// The first array as the second of a pair.
Measure kept_of_y(float (Z::*property)() const) {
  return [=](Z& z, A& x, A& y) { return kept(true, property)(z, y, x); };
}

double sum_of_first(Z& z, A& x, A&) {
  std::int32_t count = 1;
  Array1<std::int32_t> list = array_of<std::int32_t>({1});
  return z.SumListX(list, count, x);
}

const std::map<std::string, Measure> kMeasures = {
    {"Maximum", of_one(&Z::Maximum)},
    {"Minimum", of_one(&Z::Minimum)},
    {"Index_of_Maximum_Of_X", of_one(&Z::Index_of_Maximum_Of_X)},
    {"Index_Of_Minimum_Of_X", of_one(&Z::Index_Of_Minimum_Of_X)},
    {"Normalise", of_one(&Z::Normalise)},
    {"SumListX", sum_of_first},
    {"SumOfX", of_one(&Z::SumOfX)},
    {"SumOfX2", of_one(&Z::SumOfX2)},
    {"SumofAbsX", of_one(&Z::SumofAbsX)},
    {"average", of_one(&Z::average)},
    {"Variance", of_one(&Z::Variance)},
    {"SigmaN", of_one(&Z::SigmaN)},
    {"SigmaN1", of_one(&Z::SigmaN1)},
    {"Median", of_one(&Z::Median)},
    {"lower quartile", quartile(1)},
    {"upper quartile", quartile(3)},
    {"xSigmaN", kept(false, &Z::get_xSigmaN)},
    {"xSigmaN1", kept(false, &Z::get_xSigmaN1)},
    {"pair mean", kept(true, &Z::get_xBar)},
    {"pair xSigmaN1", kept(true, &Z::get_xSigmaN1)},
    {"pair ySigmaN", kept_of_y(&Z::get_ySigmaN)},
    {"pair ySigmaN1", kept_of_y(&Z::get_ySigmaN1)},
    {"SumOfXY", of_two(&Z::SumOfXY)},
    {"Cov", of_two(&Z::Cov)},
    {"SumOfSquareDifferences", of_two(&Z::SumOfSquareDifferences)}};

class MeasuresTest : public CompanionTest {
 protected:
  ztStatistics z;
};

TEST_F(MeasuresTest, long_columns_round_at_every_step) {
  each_row("statistics_cases.tsv", "", 35, [&](const TableRow& row) {
    std::string name = row["measure"];
    const bool of_y = name.starts_with("y ");
    if (of_y || name.starts_with("x ")) name.erase(0, 2);
    const Measure& measure = kMeasures.at(name);
    ASSERT_EQ(row.headings.size(), 9U);
    for (std::size_t k = 1; k < 9; ++k) {
      const std::int32_t n = Field{row.headings[k]};
      const float want = Field{row.fields[k]};
      for (const std::int32_t lower : {1, 0, -2}) {  // elements below 1 take no part
        A x(lower, n), y(lower, n);
        for (std::int32_t i = lower; i < 1; ++i) x(i) = y(i) = kNaN;
        for (std::int32_t i = 1; i <= n; ++i) {
          x(i) = static_cast<float>((37 * i % 101 - 40) / 7.0);
          y(i) = static_cast<float>(i / 10.0);
        }
        EXPECT_EQ(of_y ? measure(z, y, x) : measure(z, x, y), want)
            << "n = " << n << ", from " << lower;
      }
    }
  });
  EXPECT_EQ(taken(), std::vector<std::string>{});
}

TEST_F(MeasuresTest, extremes_keep_the_first_of_ties_and_a_leading_nan) {
  const auto alike = [](float got, float want) {
    return same(got, want) && std::signbit(got) == std::signbit(want);
  };
  each_row("statistics.tsv", "extremes", 9, [&](const TableRow& row) {
    A x = samples(row["x"], 0);
    const std::int32_t most_at = row["most at"], least_at = row["least at"];
    EXPECT_TRUE(alike(z.Maximum(x), row["most"]));
    EXPECT_TRUE(alike(z.Minimum(x), row["least"]));
    EXPECT_EQ(z.Index_of_Maximum_Of_X(x), most_at);
    EXPECT_EQ(z.Index_Of_Minimum_Of_X(x), least_at);
    bool ok = false;
    z.BasicStatistics(x, ok);
    if (!ok) return;  // infinities of both signs have no sum
    EXPECT_TRUE(alike(z.get_xMax(), row["most"]) && alike(z.get_xMin(), row["least"]));
    EXPECT_TRUE(alike(z.get_SigmaX(), z.SumOfX(x)));
    z.BasicStatisticsPairs(x, x, ok);
    EXPECT_TRUE(alike(z.get_yMax(), row["most"]) && alike(z.get_yMin(), row["least"]));
    EXPECT_TRUE(alike(z.get_SigmaY(), z.SumOfX(x)));
  });
}

TEST_F(MeasuresTest, normalise_scales_in_place_until_a_failure) {
  each_row("statistics.tsv", "normalise", 7, [&](const TableRow& row) {
    A x = samples(row["x"]);
    const std::vector<float> want = row["want"];
    const bool ok = row["ok"];
    EXPECT_EQ(z.Normalise(x), ok);
    EXPECT_EQ(numbers_of(taken()), row["errors"].text);
    EXPECT_TRUE(std::equal(x.data(), x.data() + x.size(), want.begin(), want.end(), same));
  });
  // A Maximum that fails counts as 0: nothing to do.
  A zero(0, 0);
  EXPECT_TRUE(z.Normalise(zero));
  EXPECT_EQ(taken(), std::vector{error_line(9, "ztAnalyse - ztStatistics", "Maximum")});
}

TEST_F(MeasuresTest, list_sum_takes_element_1_and_skips_the_first_entry) {
  each_row("statistics.tsv", "list sums", 9, [&](const TableRow& row) {
    Array1<std::int32_t> list = array_of<std::int32_t>(row["list"]);
    A x = samples(row["x"]);
    std::int32_t count = row["count"];
    const float want = row["want"];
    EXPECT_EQ(z.SumListX(list, count, x), want);
    EXPECT_EQ(numbers_of(taken()), row["errors"].text);
  });
}

TEST_F(MeasuresTest, callees_report_themselves_and_count_as_zero) {
  // The squares overflow: their sum counts as 0, and the spread goes on from the sum alone.
  A big = samples({0x1p100F, 0x1p100F});
  EXPECT_EQ(z.SigmaN(big), 0x1p100F);
  EXPECT_EQ(z.SigmaN1(big), std::sqrt(2.0F) * 0x1p100F);
  EXPECT_EQ(z.Variance(big), 0.0F);
  A steep = samples({kMax, kMax});
  EXPECT_EQ(z.average(steep), 0.0F);
  EXPECT_EQ(taken(), lines_of(6, {"SumOfX2", "SumOfX2", "SumOfX2", "Variance", "SumOfX"}));
}

TEST_F(MeasuresTest, failures_give_the_default_under_the_routines_own_name) {
  each_row("statistics.tsv", "failing measures", 16, [&](const TableRow& row) {
    const std::string name = row["name"];
    const double after = row["after"];
    const A bad[] = {{}, A(0, 0), A(2, 3), samples({kMax, kMax})};
    const A others[] = {{}, A(0, 0), A(2, 3), samples({kMax, -kMax})};
    const char* const columns[] = {"unallocated", "0 to 0", "2 to 3", "overflowing"};
    for (std::size_t k = 0; k < 4; ++k) {
      const std::string want = row[columns[k]];
      if (want == "-") continue;
      A x = bad[k], y = others[k];
      const double got = kMeasures.at(name)(z, x, y);
      const std::vector<std::string> told = taken();
      EXPECT_EQ(numbers_of(told), want) << columns[k];
      if (want.find(' ') == std::string::npos && !want.empty()) {
        EXPECT_EQ(got, after) << columns[k];
      }
      // What fails first without a callee is the routine itself.
      if (k == 0) {
        EXPECT_EQ(told.at(0), error_line(9, row["module"], name));
      }
    }
  });
  A x = samples({1, 2, 3}), shorter = samples({1, 2}), longer = samples({1, 2, 3, 4}, -1);
  EXPECT_EQ(z.SumOfXY(x, longer), 14.0F);  // read at x's indices, whatever the bounds
  EXPECT_EQ(z.Cov(x, longer), 0.0F);
  EXPECT_EQ(z.SumOfSquareDifferences(x, shorter), 0.0F);
  EXPECT_TRUE(lines.empty());
  EXPECT_EQ(z.SumOfXY(x, shorter), 0.0F);
  EXPECT_EQ(taken(), lines_of(9, {"SumOfXY"}));
}

}  // namespace
}  // namespace vqmath63
