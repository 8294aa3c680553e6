// The quadrature rules and ztIntegrate: rounding, bounds, failures, the rule number.
#include "calculus/integration.hpp"

#include <limits>

#include "calculus/integrate.hpp"
#include "frame/arrays.hpp"
#include "frame/companion_fixture.hpp"
#include "frame/test_table.hpp"

namespace vqmath63 {
namespace {

class IntegrationTest : public CompanionTest {};

struct Rule {
  const char* name;
  float (*integrate)(const Array1<const float>&, const Array1<const float>&);
};
// In the order of the results in the tables below.
constexpr Rule kRules[] = {{"Trapezoidal", Trapezoidal},
                           {"Simpson", Simpson},
                           {"Forward", Forward},
                           {"Backward", Backward}};

std::string rule_line(std::int32_t number, const std::string& rule) {
  return error_line(number, "ztAnalyse - Integration (Code) (" + rule + ")");
}

TEST_F(IntegrationTest, areas_worked_by_hand) {
  each_row("calculus.tsv", "areas", 9, [](const TableRow& row) {
    const std::vector<float> want = row["want"];
    for (std::size_t r = 0; r < 4; ++r) {
      // Elements 1 to n; an array from 0 has one more, which no rule reads.
      for (const std::int32_t lower : {1, 0, -3}) {
        Array1<float> x = samples_of<float>(row["x"], lower), y = samples_of<float>(row["y"], 1, 1);
        const float got = kRules[r].integrate(x, y);
        EXPECT_TRUE(same(got, want.at(r))) << kRules[r].name << ": " << got;
      }
    }
  });
  EXPECT_EQ(taken(), Lines(3, rule_line(9, "Simpson")));  // only the single point
}

TEST_F(IntegrationTest, areas_of_many_samples_round_at_every_step) {
  each_row("integration_cases.tsv", "", 7, [](const TableRow& row) {
    const std::int32_t n = row["n"];
    Array1<float> x(1, n), y(1, n);
    for (std::int32_t i = 1; i <= n; ++i) {
      x(i) = static_cast<float>(i / 10.0);
      y(i) = static_cast<float>((37 * i % 101 - 40) / 7.0);  // 37 i stays below 2^31
    }
    for (std::size_t r = 0; r < 4; ++r) {
      const float want = Field{row.fields[r + 1]};
      EXPECT_EQ(kRules[r].integrate(x, y), want) << kRules[r].name;
    }
  });
  EXPECT_TRUE(lines.empty());
}

TEST_F(IntegrationTest, failures_are_one_line_and_zero) {
  each_row("calculus.tsv", "area failures", 11, [&](const TableRow& row) {
    const std::string errors = row["errors"];
    for (std::size_t r = 0; r < 4; ++r) {
      Array1<float> x = array_of<float>(row["x"], row["x from"]),
                    y = array_of<float>(row["y"], row["y from"]);
      const float got = kRules[r].integrate(x, y);
      Lines want;
      if (errors.at(r) != 'u') {
        EXPECT_EQ(got, 0.0F) << kRules[r].name;
        want.push_back(rule_line(errors[r] - '0', kRules[r].name));
      }
      EXPECT_EQ(taken(), want);
    }
  });
}

}  // namespace
}  // namespace vqmath63
