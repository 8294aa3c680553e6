// Extremes, sums, means and spreads: values of long columns, edges, failures, and speculation
// against a plain replay.
#include <bit>
#include <cmath>
#include <fstream>
#include <functional>
#include <map>
#include <random>
#include <sstream>

#include "statistics/samples.hpp"
#include "statistics/statistics.hpp"

namespace vqmath63 {
namespace {

using A = Array1<float>;
using Z = ztStatistics;
constexpr float kMax = std::numeric_limits<float>::max();

class MeasuresTest : public CompanionTest {
 protected:
  ztStatistics z;
};

TEST_F(MeasuresTest, long_columns_round_at_every_step) {
  using Measure = std::function<float(Z&, A&, A&)>;
  const auto of_one = [](float (Z::*f)(A&)) { return [f](Z& s, A& v, A&) { return (s.*f)(v); }; };
  const auto of_two = [](float (Z::*f)(A&, A&)) {
    return [f](Z& s, A& v, A& w) { return (s.*f)(v, w); };
  };
  const auto quartile = [](std::int32_t k) {
    return [k](Z& s, A& v, A&) {
      std::int32_t i = k;
      return s.Quartile(v, i);
    };
  };
  const auto kept = [](bool pair, float (Z::*property)() const) {
    return [=](Z&, A& v, A& w) {
      Z fresh;
      bool ok = false;
      if (pair)
        fresh.BasicStatisticsPairs(v, w, ok);
      else
        fresh.BasicStatistics(v, ok);
      return ok ? (fresh.*property)() : kNaN;
    };
  };
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
      {"pair ySigmaN", [&](Z& s, A& v, A& w) { return kept(true, &Z::get_ySigmaN)(s, w, v); }},
      {"pair ySigmaN1", [&](Z& s, A& v, A& w) { return kept(true, &Z::get_ySigmaN1)(s, w, v); }},
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
  EXPECT_EQ(lines, std::vector<std::string>{});
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
      {"one", {-7}, -7, -7, 1, 1},
      {"ties", {1, 5, 5, 1}, 5, 1, 2, 1},
      {"deep ties", deep, 9, -9, 37, 38},
      {"the first zero has the sign", {-0.0F, 0, -0.0F}, -0.0F, -0.0F, 1, 1},
      {"zeros among negatives", zeros, 0.0F, -2, 21, 1},
      {"NaN first stays", {kNaN, 1, 2}, kNaN, kNaN, 1, 1},
      {"NaN later is passed over", {3, kNaN, 4, kNaN, 2}, 4, 2, 3, 5},
      {"infinities", {0, kInf, -kInf, kInf}, kInf, -kInf, 2, 3},
  };
  for (const Row& row : rows) {
    A x = samples(row.x, 0);
    const float most = z.Maximum(x), least = z.Minimum(x);
    EXPECT_TRUE(same(most, row.most) && std::signbit(most) == std::signbit(row.most)) << row.name;
    EXPECT_TRUE(same(least, row.least) && std::signbit(least) == std::signbit(row.least))
        << row.name;
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
  };
  const Row rows[] = {
      {"signs turn without a positive sample", {-2, -4}, {1, 2}, true, ""},
      // 3/7 would be 0.428571433, 1 and 5/41 would be 1 and 0.121951222.
      {"the reciprocal of 7 is rounded first", {3, 7}, {0.428571463F, 1}, true, ""},
      {"the reciprocal of 41 is rounded first", {41, 5}, {0.99999994F, 0.121951215F}, true, ""},
      {"largest is zero", {-5, 0, -1}, {-5, 0, -1}, true, ""},
      {"NaN first", {kNaN, 4}, {kNaN, kNaN}, true, ""},
      {"reciprocal too large", {1e-42F, -1}, {1e-42F, -1}, false, "6"},
      {"the failing sample and those after it stay",
       {1e-20F, -4, -1e30F, -8},
       {1, -4e20F, -1e30F, -8},
       false,
       "6"},
      {"0 x infinity", {2, kInf}, {0, kInf}, false, "5"},
  };
  for (const Row& row : rows) {
    lines.clear();
    A x = samples(row.x);
    EXPECT_EQ(z.Normalise(x), row.result) << row.name;
    EXPECT_EQ(numbers_of(lines), row.numbers) << row.name;
    for (std::size_t i = 0; i < row.x.size(); ++i) {
      EXPECT_TRUE(same(x.data()[i], row.want[i])) << row.name << ' ' << i << ": " << x.data()[i];
    }
  }
  // A Maximum that fails counts as 0: nothing to do.
  lines.clear();
  A zero(0, 0);
  EXPECT_TRUE(z.Normalise(zero));
  EXPECT_EQ(lines, std::vector{error_line(9, "ztAnalyse - ztStatistics", "Maximum")});
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
      {"one entry", {5}, 1, powers, 1},
      {"none, list never read", {5}, 0, powers, 1},
      {"negative count", {5}, -3, powers, 1},
      {"out of range entries skipped", {1, 0, 6, -1, 5}, 5, powers, 17},
      {"repeats count", {1, 3, 3, 3}, 4, powers, 13},
      {"entry 1 again", {4, 1}, 2, powers, 2},
      {"array shorter than the list", {1, 1, 1}, 3, {1, 2}, -32768},
      {"list shorter than its count", {1, 2}, 3, powers, -32768, "9"},
      {"overflow", {1, 1}, 2, {kMax, 1}, -32768, "6"},
      {"infinity flows", {1, 2}, 2, {1, kInf}, kInf},
      {"opposite infinities", {1, 2}, 2, {kInf, -kInf}, -32768, "5"},
  };
  for (const Row& row : rows) {
    lines.clear();
    Array1<std::int32_t> list = listed(row.list);
    A x = samples(row.x);
    std::int32_t count = row.count;
    EXPECT_EQ(z.SumListX(list, count, x), row.want) << row.name;
    EXPECT_EQ(numbers_of(lines), row.numbers) << row.name;
  }
}

TEST_F(MeasuresTest, callees_report_themselves_and_count_as_zero) {
  // The squares overflow: their sum counts as 0, and the spread goes on from the sum alone.
  A big = samples({0x1p100F, 0x1p100F});
  EXPECT_EQ(z.SigmaN(big), 0x1p100F);
  EXPECT_EQ(z.SigmaN1(big), std::sqrt(2.0F) * 0x1p100F);
  const std::string squares = error_line(6, "ztStatistics", "SumOfX2");
  EXPECT_EQ(lines, (std::vector{squares, squares}));
  lines.clear();
  EXPECT_EQ(z.Variance(big), 0.0F);
  EXPECT_EQ(lines, (std::vector{squares, error_line(6, "ztStatistics", "Variance")}));
  lines.clear();
  A steep = samples({kMax, kMax});
  EXPECT_EQ(z.average(steep), 0.0F);
  EXPECT_EQ(lines, std::vector{error_line(6, "ztStatistics", "SumOfX")});
}

TEST_F(MeasuresTest, failures_give_the_default_under_the_routines_own_name) {
  struct Routine {
    const char* module;
    const char* name;
    std::function<double(Z&, A&, A&)> call;  // y is the second array where there is one
    double after;
    const char* numbers;  // for unallocated, 0 to 0, 2 to 3, overflowing samples
  };
  std::int32_t one = 1;
  Array1<std::int32_t> list = listed<std::int32_t>({1});
  const char* const module = "ztStatistics";
  const char* const long_module = "ztAnalyse - ztStatistics";
  const Routine routines[] = {
      {long_module, "Maximum", [](Z& s, A& x, A&) { return s.Maximum(x); }, 0, "9|9|9|"},
      {module, "Minimum", [](Z& s, A& x, A&) { return s.Minimum(x); }, 0, "9|9|9|"},
      {module, "Index_of_Maximum_Of_X", [](Z& s, A& x, A&) { return s.Index_of_Maximum_Of_X(x); },
       0, "9|9|9|"},
      {module, "Index_Of_Minimum_Of_X", [](Z& s, A& x, A&) { return s.Index_Of_Minimum_Of_X(x); },
       0, "9|9|9|"},
      {module, "SumOfX", [](Z& s, A& x, A&) { return s.SumOfX(x); }, 0, "9|9|9|6"},
      {module, "SumOfX2", [](Z& s, A& x, A&) { return s.SumOfX2(x); }, 0, "9|9|9|6"},
      {module, "SumofAbsX", [](Z& s, A& x, A&) { return s.SumofAbsX(x); }, 0, "9|9|9|6"},
      {module, "SumOfXY", [](Z& s, A& x, A& y) { return s.SumOfXY(x, y); }, 0, "9|9|9|6"},
      {module, "SumListX", [&](Z& s, A& x, A&) { return s.SumListX(list, one, x); }, -32768,
       "9||9|"},
      {module, "average", [](Z& s, A& x, A&) { return s.average(x); }, 0, "9|9 5|9|6"},
      {module, "Variance", [](Z& s, A& x, A&) { return s.Variance(x); }, 0, "9|11|9 9|6 6"},
      {module, "SigmaN", [](Z& s, A& x, A&) { return s.SigmaN(x); }, 0, "9|9 9 5|9 9|6 6"},
      {module, "SigmaN1", [](Z& s, A& x, A&) { return s.SigmaN1(x); }, 0, "9||9 9|6 6"},
      {long_module, "Cov", [](Z& s, A& x, A& y) { return s.Cov(x, y); }, 0,
       "9|9 5 9 5 5|9 9 9|6 6"},
      {module, "SumOfSquareDifferences",
       [](Z& s, A& x, A& y) { return s.SumOfSquareDifferences(x, y); }, 0, "9||9|6"},
      {long_module, "Normalise", [](Z& s, A& x, A&) { return s.Normalise(x); }, 0, "9"},
  };
  for (const Routine& routine : routines) {
    const A bad[] = {{}, A(0, 0), A(2, 3), samples({kMax, kMax})};
    const A others[] = {{}, A(0, 0), A(2, 3), samples({kMax, -kMax})};
    std::istringstream wanted(routine.numbers);
    std::string want;
    for (std::size_t k = 0; k < 4 && std::getline(wanted, want, '|'); ++k) {
      lines.clear();
      A x = bad[k], y = others[k];
      const double got = routine.call(z, x, y);
      EXPECT_EQ(numbers_of(lines), want) << routine.name << ", array " << k;
      if (want.find(' ') == std::string::npos && !want.empty()) {
        EXPECT_EQ(got, routine.after) << routine.name << ", array " << k;
      }
      // What fails first without a callee is the routine itself.
      if (k == 0) {
        EXPECT_EQ(lines[0], error_line(9, routine.module, routine.name));
      }
    }
  }
  lines.clear();
  A x = samples({1, 2, 3}), shorter = samples({1, 2}), longer = samples({1, 2, 3, 4}, -1);
  EXPECT_EQ(z.SumOfXY(x, longer), 14.0F);  // read at x's indices, whatever the bounds
  EXPECT_EQ(z.Cov(x, longer), 0.0F);
  EXPECT_EQ(z.SumOfSquareDifferences(x, shorter), 0.0F);
  EXPECT_TRUE(lines.empty());
  EXPECT_EQ(z.SumOfXY(x, shorter), 0.0F);
  EXPECT_EQ(lines, std::vector{error_line(9, "ztStatistics", "SumOfXY")});
}

TEST_F(MeasuresTest, speculation_and_a_plain_replay_agree) {
  // The reference adds in Single and looks at every step for a fault of its own.
  struct Replay {
    float sum = 0.0F;
    int number = 0;
    void add(float term, bool from_nan_or_infinity) {
      if (number != 0) return;
      if (!from_nan_or_infinity && !std::isfinite(term)) {
        number = std::isnan(term) ? 5 : 6;
        return;
      }
      const float next = sum + term;
      if (std::isnan(next) && !std::isnan(sum) && !std::isnan(term)) number = 5;
      if (std::isinf(next) && std::isfinite(sum) && std::isfinite(term)) number = 6;
      sum = next;
    }
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
    Replay sums[2];
    for (std::size_t i = 0; i < n; ++i) {
      sums[0].add(x[i], true);
      const bool given = std::isnan(x[i]) || std::isnan(y[i]);
      const bool infinite = std::isinf(x[i]) || std::isinf(y[i]);
      const float product = x[i] * y[i];
      sums[1].add(product, given || (infinite && !std::isnan(product)));
    }
    A xs = samples(x), ys = samples(y);
    for (int k = 0; k < 2; ++k) {
      lines.clear();
      const float got = k == 0 ? z.SumOfX(xs) : z.SumOfXY(xs, ys);
      const float want = sums[k].number == 0 ? sums[k].sum : 0.0F;
      EXPECT_TRUE(same(got, want)) << round << ' ' << k << ": " << got << ' ' << want;
      EXPECT_EQ(numbers_of(lines), sums[k].number == 0 ? "" : std::to_string(sums[k].number))
          << round << ' ' << k;
      ++(sums[k].number != 0 ? failures : std::isfinite(got) ? finite : flows);
    }
  }
  EXPECT_GT(failures, 500);
  EXPECT_GT(flows, 200);
  EXPECT_GT(finite, 2000);
}

}  // namespace
}  // namespace vqmath63
