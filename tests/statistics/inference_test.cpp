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

void expect_near(float got, double want) {
  EXPECT_LE(std::fabs(got - want), 1.2e-7 * std::fabs(want)) << got;
}

TEST_F(InferenceTest, chi_squared_of_counts) {
  each_row("statistics.tsv", "chi squared", 9, [&](const TableRow& row) {
    A x = samples(row["x"]), y = samples(row["y"], 0);
    std::int32_t constraints = row["constraints"];
    const float want = row["chi"];
    float chi = -1, probability = -1;
    bool ok = false;
    (z.*(int(row["sets"]) == 2 ? &ztStatistics::Chi2Squared : &ztStatistics::ChiSquared))(
        x, y, constraints, chi, probability, ok);
    EXPECT_TRUE(ok);
    EXPECT_EQ(chi, want);
    expect_near(probability, row["probability"]);
  });
  EXPECT_TRUE(lines.empty());
}

TEST_F(InferenceTest, t_test_of_two_samples) {
  each_row("statistics.tsv", "t test", 5, [&](const TableRow& row) {
    A x = samples(row["x"], -1), y = samples(row["y"]);
    float t = kNaN, probability = kNaN;
    bool ok = false;
    z.t_Test(x, y, t, probability, ok);
    EXPECT_TRUE(ok);
    expect_near(t, row["t"]);
    expect_near(probability, row["probability"]);
  });
  EXPECT_TRUE(lines.empty());
}

TEST_F(InferenceTest, confidence_of_the_mean) {
  each_row("statistics.tsv", "confidence", 5, [&](const TableRow& row) {
    A x = samples(row["x"], 0);
    double level = row["level"];
    const double mean = row["mean"], half = row["half"];
    expect_near(z.ConfidenceLimit(x, level), half);
    float lower = kNaN, upper = kNaN;
    bool ok = false;
    z.ConfidenceInterval(x, level, lower, upper, ok);
    EXPECT_TRUE(ok);
    expect_near(lower, mean - half);
    expect_near(upper, mean + half);
  });
  EXPECT_TRUE(lines.empty());
}

TEST_F(InferenceTest, failures_change_nothing) {
  each_row("statistics.tsv", "inference failures", 10, [&](const TableRow& row) {
    A x = samples(row["x"]), y = samples(row["y"]);
    std::int32_t constraints = row["constraints"];
    double level = row["level"];
    const char* const names[] = {"ChiSquared", "Chi2Squared", "t_Test", "ConfidenceInterval"};
    for (int k = 0; k < 4; ++k) {
      const std::int32_t number = row[names[k]];
      const bool wanted = number == 0;
      float first = -5, second = -6;
      bool ok = !wanted;
      if (k == 0) z.ChiSquared(x, y, constraints, first, second, ok);
      if (k == 1) z.Chi2Squared(x, y, constraints, first, second, ok);
      if (k == 2) z.t_Test(x, y, first, second, ok);
      if (k == 3) z.ConfidenceInterval(x, level, first, second, ok);
      EXPECT_EQ(ok, wanted) << names[k];
      if (wanted) {
        EXPECT_TRUE(lines.empty()) << names[k];
        continue;
      }
      EXPECT_TRUE(first == -5 && second == -6) << names[k];
      EXPECT_EQ(taken(), lines_of(number, {names[k]}));
      if (k != 3) continue;
      EXPECT_EQ(z.ConfidenceLimit(x, level), 0.0F);
      EXPECT_EQ(taken(), lines_of(number, {"ConfidenceLimit"}));
    }
  });
}

}  // namespace
}  // namespace vqmath63
