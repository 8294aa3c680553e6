// Chi squared, t and confidence intervals: worked examples, closed forms, failures.
#include <cmath>

#include "statistics/samples.hpp"
#include "statistics/statistics.hpp"

namespace vqmath63 {
namespace {

using A = Array1<float>;

class InferenceTest : public CompanionTest {
 protected:
  ztStatistics z;
};

void expect_near(float got, double want, const char* name) {
  EXPECT_LE(std::fabs(got - want), 1.2e-7 * std::fabs(want)) << name << ": " << got;
}

TEST_F(InferenceTest, chi_squared_of_counts) {
  struct Row {
    const char* name;
    bool two_sets;
    std::vector<float> x, y;
    std::int32_t constraints;
    float want;
    double probability;
  } const rows[] = {
      // Two degrees of freedom: exp(-chi^2 / 2). One: erfc(sqrt(chi^2 / 2)).
      {"unequal expectations", false, {10, 6, 4}, {4, 8, 8}, 1, 11.5F, std::exp(-5.75)},
      {"no constraint adds one", false, {9, 7}, {8, 8}, 0, 0.25F, std::exp(-0.125)},
      {"one degree of freedom", false, {9, 7}, {8, 8}, 1, 0.25F, std::erfc(std::sqrt(0.125))},
      {"far tail, no cancellation", false, {208, 8, 8}, {8, 8, 8}, 1, 5000, 0},
      {"deep tail", false, {24, 8, 8}, {8, 8, 8}, 1, 32, std::exp(-16.0)},
      {"exact agreement", false, {3, 5}, {3, 5}, 0, 0, 1},
      {"an empty bin is none", true, {6, 0, 10, 4}, {2, 0, 6, 12}, 1, 7, std::exp(-3.5)},
      {"a bin empty in one set", true, {6, 0, 3}, {2, 4, 3}, 1, 6, std::exp(-3.0)},
  };
  for (const Row& row : rows) {
    A x = samples(row.x), y = samples(row.y, 0);
    std::int32_t constraints = row.constraints;
    float chi = -1, probability = -1;
    bool ok = false;
    (z.*(row.two_sets ? &ztStatistics::Chi2Squared : &ztStatistics::ChiSquared))(
        x, y, constraints, chi, probability, ok);
    EXPECT_TRUE(ok) << row.name;
    EXPECT_EQ(chi, row.want) << row.name;
    expect_near(probability, row.probability, row.name);
  }
  EXPECT_TRUE(lines.empty());
}

TEST_F(InferenceTest, t_test_of_two_samples) {
  struct Row {
    const char* name;
    std::vector<float> x, y;
    double t, probability;
  } const rows[] = {
      // Two degrees of freedom: 1 - t / sqrt(t^2 + 2).
      {"two and two", {1, 3}, {4, 8}, -4 / std::sqrt(5.0), 1 - 4 / std::sqrt(26.0)},
      {"one and three", {6}, {1, 2, 3}, 4 / std::sqrt(4.0 / 3), 1 - 4 / std::sqrt(16 + 8.0 / 3)},
      // One: 1 - (2 / pi) atan |t|.
      {"two and one", {0, 2}, {4}, -3 / std::sqrt(3.0), 1.0 / 3},
      {"equal means", {1, 3}, {0, 4}, 0, 1},
      {"a large offset", {16777210, 16777214}, {16777208, 16777208}, 2, 1 - 2 / std::sqrt(6.0)},
  };
  for (const Row& row : rows) {
    A x = samples(row.x, -1), y = samples(row.y);
    float t = kNaN, probability = kNaN;
    bool ok = false;
    z.t_Test(x, y, t, probability, ok);
    EXPECT_TRUE(ok) << row.name;
    expect_near(t, row.t, row.name);
    expect_near(probability, row.probability, row.name);
  }
  EXPECT_TRUE(lines.empty());
}

TEST_F(InferenceTest, confidence_of_the_mean) {
  // Samples of mean 5 and deviation 4 (n = 2), deviation 2 (n = 3): quantiles in closed form.
  struct Row {
    const char* name;
    std::vector<float> x;
    double level, mean, half;
  };
  const double root8 = std::sqrt(8.0);
  const double quantile2 = 0.75 * std::sqrt(2 / (1 - 0.5625));  // of two degrees of freedom
  const Row rows[] = {
      {"half of Cauchy's distribution", {5 - 2, 5 + 2}, 0.5, 5, root8 / std::sqrt(2.0)},
      {"two degrees of freedom", {3, 5, 7}, 0.75, 5, quantile2 * 2 / std::sqrt(3.0)},
      {"no spread", {4, 4, 4}, 0.95, 4, 0},
      {"far from zero", {1e7F - 2, 1e7F, 1e7F + 2}, 0.75, 1e7, quantile2 * 2 / std::sqrt(3.0)},
      {"0.95 of two", {3, 7}, 0.95, 5, 2 / std::tan(0.025 * 3.14159265358979324)},
  };
  for (const Row& row : rows) {
    A x = samples(row.x, 0);
    double level = row.level;
    expect_near(z.ConfidenceLimit(x, level), row.half, row.name);
    float lower = kNaN, upper = kNaN;
    bool ok = false;
    z.ConfidenceInterval(x, level, lower, upper, ok);
    EXPECT_TRUE(ok) << row.name;
    expect_near(lower, row.mean - row.half, row.name);
    expect_near(upper, row.mean + row.half, row.name);
  }
  EXPECT_TRUE(lines.empty());
}

TEST_F(InferenceTest, failures_change_nothing) {
  struct Row {
    const char* name;
    std::vector<float> x, y;
    std::int32_t constraints;
    double level;
    const char* numbers[4];  // of ChiSquared, Chi2Squared, t_Test, the interval of x
  } const rows[] = {
      {"no degree of freedom", {4}, {4}, 1, 0.5, {"5", "5", "5", "5"}},
      {"constraints beyond the bins", {1, 2}, {2, 2}, 2147483647, 0.5, {"5", "5", "", ""}},
      {"expected zero", {1, 2, 3}, {1, 0, 1}, 0, 0.0, {"5", "", "", "5"}},
      {"expected negative", {1, 2, 5}, {1, -2, 1}, 0, 1.0, {"5", "5", "", "5"}},
      {"all bins empty", {0, 0}, {0, 0}, 0, -0.5, {"5", "5", "5", "5"}},
      {"y short", {1, 2, 4}, {1, 2}, 0, 1.5, {"9", "9", "", "5"}},
      {"unallocated", {}, {}, 0, 0.5, {"9", "9", "9", "9"}},
      {"no spread", {3, 3}, {4, 4}, 0, std::nan(""), {"", "", "11", "5"}},
      {"terms too large", {3e38F, 1}, {1, 1}, 0, 0.5, {"6", "", "", ""}},
      {"infinity", {kInf, 1}, {1, 1}, 0, 0.5, {"", "5", "5", "5"}},
  };
  for (const Row& row : rows) {
    A x = samples(row.x), y = samples(row.y);
    std::int32_t constraints = row.constraints;
    double level = row.level;
    const char* const names[] = {"ChiSquared", "Chi2Squared", "t_Test", "ConfidenceInterval"};
    for (int k = 0; k < 4; ++k) {
      float first = -5, second = -6;
      const bool wanted = *row.numbers[k] == '\0';
      bool ok = !wanted;
      if (k == 0) z.ChiSquared(x, y, constraints, first, second, ok);
      if (k == 1) z.Chi2Squared(x, y, constraints, first, second, ok);
      if (k == 2) z.t_Test(x, y, first, second, ok);
      if (k == 3) z.ConfidenceInterval(x, level, first, second, ok);
      EXPECT_EQ(ok, wanted) << row.name << ' ' << names[k];
      if (wanted) {
        EXPECT_TRUE(lines.empty()) << row.name << ' ' << names[k];
        continue;
      }
      const std::int32_t number = std::stoi(row.numbers[k]);
      EXPECT_TRUE(first == -5 && second == -6) << row.name << ' ' << names[k];
      EXPECT_EQ(taken(), lines_of(number, {names[k]})) << row.name;
      if (k != 3) continue;
      EXPECT_EQ(z.ConfidenceLimit(x, level), 0.0F) << row.name;
      EXPECT_EQ(taken(), lines_of(number, {"ConfidenceLimit"}));
    }
  }
}

}  // namespace
}  // namespace vqmath63
