// Extremes, sums, means and spreads: values of long columns, edges, failures, and speculation
// against a plain replay.
#include <algorithm>
#include <cmath>
#include <fstream>
#include <functional>
#include <map>
#include <random>
#include <sstream>

#include "frame/checked.hpp"
#include "statistics/samples.hpp"
#include "statistics/statistics.hpp"

namespace vqmath63 {
namespace {

using A = Array1<float>;
using Z = ztStatistics;
constexpr float kMax = std::numeric_limits<float>::max();

using Measure = std::function<double(Z&, A&, A&)>;

// Measures of the first array, and of both.
template <class R>
Measure of_one(R (Z::*f)(A&)) {
  return [f](Z& z, A& x, A&) { return (z.*f)(x); };
}
Measure of_two(float (Z::*f)(A&, A&)) {
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

class MeasuresTest : public CompanionTest {
 protected:
  ztStatistics z;
};

TEST_F(MeasuresTest, long_columns_round_at_every_step) {
  const std::map<std::string, Measure> measures = {
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
  std::ifstream file(VQ_TEST_DATA "/statistics_cases.tsv");
  std::string line, name;
  std::getline(file, line);
  std::istringstream head(line.substr(line.find('\t')));
  const std::vector<std::int32_t> counts{std::istream_iterator<std::int32_t>(head), {}};
  ASSERT_EQ(counts.size(), 8U);
  int rows = 0;
  for (; std::getline(file, line); ++rows) {
    std::istringstream figures(line.substr(line.find('\t')));
    name = line.substr(0, line.find('\t'));
    const bool of_y = name.starts_with("y ");
    if (of_y || name.starts_with("x ")) name.erase(0, 2);
    ASSERT_EQ(measures.count(name), 1U) << name;
    for (const std::int32_t n : counts) {
      float want = kNaN;
      figures >> want;
      for (const std::int32_t lower : {1, 0, -2}) {  // elements below 1 take no part
        A x(lower, n), y(lower, n);
        for (std::int32_t i = lower; i < 1; ++i) x(i) = y(i) = kNaN;
        for (std::int32_t i = 1; i <= n; ++i) {
          x(i) = static_cast<float>((37 * i % 101 - 40) / 7.0);
          y(i) = static_cast<float>(i / 10.0);
        }
        EXPECT_EQ(of_y ? measures.at(name)(z, y, x) : measures.at(name)(z, x, y), want)
            << line.substr(0, line.find('\t')) << ", n = " << n << ", from " << lower;
      }
    }
  }
  EXPECT_EQ(rows, 35);
  EXPECT_EQ(taken(), std::vector<std::string>{});
}

TEST_F(MeasuresTest, extremes_keep_the_first_of_ties_and_a_leading_nan) {
  struct Row {
    const char* name;
    std::vector<float> x;
    float most, least;
    std::int32_t most_at, least_at;
  };
  std::vector<float> deep(70, 1.0F);  // beyond the lanes, and in their tail
  deep[36] = deep[40] = deep[68] = 9.0F;
  deep[37] = deep[69] = -9.0F;
  std::vector<float> zeros(40, -2.0F);
  zeros[21] = -0.0F;
  zeros[20] = zeros[39] = 0.0F;
  const Row rows[] = {
      {"ties", {1, 5, 5, 1}, 5, 1, 2, 1},
      {"deep ties", deep, 9, -9, 37, 38},
      {"the first zero has the sign", {-0.0F, 0, -0.0F}, -0.0F, -0.0F, 1, 1},
      {"zeros among negatives", zeros, 0.0F, -2, 21, 1},
      {"NaN first stays", {kNaN, 1, 2}, kNaN, kNaN, 1, 1},
      {"NaN later is passed over", {3, kNaN, 4, kNaN, 2}, 4, 2, 3, 5},
      {"infinities", {0, kInf, -kInf, kInf}, kInf, -kInf, 2, 3},
  };
  const auto alike = [](float got, float want) {
    return same(got, want) && std::signbit(got) == std::signbit(want);
  };
  for (const Row& row : rows) {
    A x = samples(row.x, 0);
    EXPECT_TRUE(alike(z.Maximum(x), row.most)) << row.name;
    EXPECT_TRUE(alike(z.Minimum(x), row.least)) << row.name;
    EXPECT_EQ(z.Index_of_Maximum_Of_X(x), row.most_at) << row.name;
    EXPECT_EQ(z.Index_Of_Minimum_Of_X(x), row.least_at) << row.name;
  }
}

TEST_F(MeasuresTest, normalise_scales_in_place_until_a_failure) {
  struct Row {
    const char* name;
    std::vector<float> x, want;
    bool result;
    const char* numbers;
  } const rows[] = {
      {"signs turn without a positive sample", {-2, -4}, {1, 2}, true, ""},
      // 3/7 would be 0.428571433, 1 and 5/41 would be 1 and 0.121951222.
      {"the reciprocal of 7 is rounded first", {3, 7}, {0.428571463F, 1}, true, ""},
      {"the reciprocal of 41 is rounded first", {41, 5}, {0.99999994F, 0.121951215F}, true, ""},
      {"largest is zero", {-5, 0, -1}, {-5, 0, -1}, true, ""},
      {"NaN first", {kNaN, 4}, {kNaN, kNaN}, true, ""},
      {"reciprocal too large", {1e-42F, -1}, {1e-42F, -1}, false, "6"},
      {"a failure stays", {1e-20F, -4, -1e30F, -8}, {1, -4e20F, -1e30F, -8}, false, "6"},
      {"0 x infinity", {2, kInf}, {0, kInf}, false, "5"},
  };
  for (const Row& row : rows) {
    A x = samples(row.x);
    EXPECT_EQ(z.Normalise(x), row.result) << row.name;
    EXPECT_EQ(numbers_of(taken()), row.numbers) << row.name;
    EXPECT_TRUE(std::equal(x.data(), x.data() + x.size(), row.want.begin(), same)) << row.name;
  }
  // A Maximum that fails counts as 0: nothing to do.
  A zero(0, 0);
  EXPECT_TRUE(z.Normalise(zero));
  EXPECT_EQ(taken(), std::vector{error_line(9, "ztAnalyse - ztStatistics", "Maximum")});
}

TEST_F(MeasuresTest, list_sum_takes_element_1_and_skips_the_first_entry) {
  struct Row {
    const char* name;
    std::vector<std::int32_t> list;
    std::int32_t count;
    std::vector<float> x;
    float want;
    const char* numbers = "";
  };
  const std::vector<float> powers{1, 2, 4, 8, 16};
  const Row rows[] = {
      {"first entry never used", {5, 2}, 2, powers, 3},
      {"none, list never read", {5}, 0, powers, 1},
      {"negative count", {5}, -3, powers, 1},
      {"out of range entries skipped", {1, 0, 6, -1, 5}, 5, powers, 17},
      {"entry 1 again, and repeats", {4, 1, 3, 3}, 4, powers, 10},
      {"array shorter than the list", {1, 1, 1}, 3, {1, 2}, -32768},
      {"list shorter than its count", {1, 2}, 3, powers, -32768, "9"},
      {"overflow", {1, 1}, 2, {kMax, 1}, -32768, "6"},
      {"opposite infinities", {1, 2}, 2, {kInf, -kInf}, -32768, "5"},
  };
  for (const Row& row : rows) {
    Array1<std::int32_t> list = listed(row.list);
    A x = samples(row.x);
    std::int32_t count = row.count;
    EXPECT_EQ(z.SumListX(list, count, x), row.want) << row.name;
    EXPECT_EQ(numbers_of(taken()), row.numbers) << row.name;
  }
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
  struct Routine {
    const char* name;
    Measure call;
    const char* numbers;  // for unallocated, 0 to 0, 2 to 3, overflowing samples
    double after = 0;
    const char* module = "ztStatistics";
  };
  std::int32_t one = 1;
  Array1<std::int32_t> list = listed<std::int32_t>({1});
  const char* const other = "ztAnalyse - ztStatistics";
  const Routine routines[] = {
      {"Maximum", of_one(&Z::Maximum), "9|9|9|", 0, other},
      {"Minimum", of_one(&Z::Minimum), "9|9|9|"},
      {"Index_of_Maximum_Of_X", of_one(&Z::Index_of_Maximum_Of_X), "9|9|9|"},
      {"Index_Of_Minimum_Of_X", of_one(&Z::Index_Of_Minimum_Of_X), "9|9|9|"},
      {"SumOfX", of_one(&Z::SumOfX), "9|9|9|6"},
      {"SumOfX2", of_one(&Z::SumOfX2), "9|9|9|6"},
      {"SumofAbsX", of_one(&Z::SumofAbsX), "9|9|9|6"},
      {"SumOfXY", of_two(&Z::SumOfXY), "9|9|9|6"},
      {"SumListX", [&](Z& s, A& x, A&) { return s.SumListX(list, one, x); }, "9||9|", -32768},
      {"average", of_one(&Z::average), "9|9 5|9|6"},
      {"Variance", of_one(&Z::Variance), "9|11|9 9|6 6"},
      {"SigmaN", of_one(&Z::SigmaN), "9|9 9 5|9 9|6 6"},
      {"SigmaN1", of_one(&Z::SigmaN1), "9||9 9|6 6"},
      {"Cov", of_two(&Z::Cov), "9|9 5 9 5 5|9 9 9|6 6", 0, other},
      {"SumOfSquareDifferences", of_two(&Z::SumOfSquareDifferences), "9||9|6"},
      {"Normalise", of_one(&Z::Normalise), "9", 0, other},
  };
  for (const Routine& routine : routines) {
    const A bad[] = {{}, A(0, 0), A(2, 3), samples({kMax, kMax})};
    const A others[] = {{}, A(0, 0), A(2, 3), samples({kMax, -kMax})};
    std::istringstream wanted(routine.numbers);
    std::string want;
    for (std::size_t k = 0; k < 4 && std::getline(wanted, want, '|'); ++k) {
      A x = bad[k], y = others[k];
      const double got = routine.call(z, x, y);
      const std::vector<std::string> told = taken();
      EXPECT_EQ(numbers_of(told), want) << routine.name << ", array " << k;
      if (want.find(' ') == std::string::npos && !want.empty()) {
        EXPECT_EQ(got, routine.after) << routine.name << ", array " << k;
      }
      // What fails first without a callee is the routine itself.
      if (k == 0) {
        EXPECT_EQ(told[0], error_line(9, routine.module, routine.name));
      }
    }
  }
  A x = samples({1, 2, 3}), shorter = samples({1, 2}), longer = samples({1, 2, 3, 4}, -1);
  EXPECT_EQ(z.SumOfXY(x, longer), 14.0F);  // read at x's indices, whatever the bounds
  EXPECT_EQ(z.Cov(x, longer), 0.0F);
  EXPECT_EQ(z.SumOfSquareDifferences(x, shorter), 0.0F);
  EXPECT_TRUE(lines.empty());
  EXPECT_EQ(z.SumOfXY(x, shorter), 0.0F);
  EXPECT_EQ(taken(), lines_of(9, {"SumOfXY"}));
}

TEST_F(MeasuresTest, speculation_and_a_plain_replay_agree) {
  // The replay rounds each term and each sum to Single, and looks at every step for a fault.
  const auto replay = [](const std::vector<float>& x, const std::vector<float>& y) {
    Single sum;
    for (std::size_t i = 0; i < x.size(); ++i) {
      const Single term = Single(x[i]) * Single(y[i]);
      sum = sum + term;
    }
    return sum.value();
  };
  std::mt19937 random(63);
  const float wild[] = {kInf, -kInf, kNaN, 0.0F, kMax, -kMax, 1e-45F};
  int failures = 0, flows = 0, finite = 0;
  for (int round = 0; round < 3000; ++round) {
    const std::size_t n = 1 + random() % 12;
    std::vector<float> x(n), y(n);
    const float scale = round % 3 == 0 ? 1.0F : 1e38F;
    for (std::size_t i = 0; i < n; ++i) {
      x[i] = scale * (static_cast<float>(random() % 4001) / 1000.0F - 2.0F);
      y[i] = static_cast<float>(random() % 41) / 20.0F - 1.0F;
      if (round % 4 == 1 && random() % 9 == 0) (random() % 2 ? x : y)[i] = wild[random() % 7];
    }
    for (const bool products : {false, true}) {
      double want = 0;
      const std::vector<float> factors = products ? y : std::vector<float>(n, 1.0F);
      const std::int32_t number = fault_of([&] { want = replay(x, factors); });
      A xs = samples(x), ys = samples(y);
      const float got = products ? z.SumOfXY(xs, ys) : z.SumOfX(xs);
      EXPECT_TRUE(same(got, want)) << round << products << ": " << got << ' ' << want;
      EXPECT_EQ(numbers_of(taken()), number == 0 ? "" : std::to_string(number)) << round;
      ++(number != 0 ? failures : std::isfinite(got) ? finite : flows);
    }
  }
  EXPECT_GT(failures, 500);
  EXPECT_GT(flows, 200);
  EXPECT_GT(finite, 2000);
}

}  // namespace
}  // namespace vqmath63
