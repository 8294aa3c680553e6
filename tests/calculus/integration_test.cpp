// The quadrature rules and ztIntegrate: rounding, bounds, failures, the rule number.
#include "calculus/integration.hpp"

#include <fstream>
#include <limits>

#include "calculus/integrate.hpp"
#include "frame/arrays.hpp"
#include "frame/companion_fixture.hpp"

namespace vqmath63 {
namespace {

class IntegrationTest : public CompanionTest {};

struct Rule {
  const char* name;
  float (*integrate)(Array1<float>&, Array1<float>&);
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
  struct Row {
    const char* name;
    std::vector<float> x, y;
    float want[4];
  } const rows[] = {
      {"one point fails for Simpson only", {7}, {5}, {0, 0, 0, 0}},
      // Simpson: 8 x 0.333333333333333 = 2.66666674613953 as a Single.
      {"three points", {0, 1, 2}, {0, 1, 4}, {3, 2.66666675F, 1, 5}},
      {"four points: Simpson is Trapezoidal", {0, 1, 2, 4}, {0, 3, 6, 1}, {13, 13, 15, 11}},
      {"five points, weights 1 4 2 4 1", {0, 3, 6, 9, 12}, {1, 2, 4, 8, 16}, {67.5, 65, 45, 90}},
      {"unequal steps: Simpson takes the first", {0, 3, 4}, {1, 2, 6}, {8.5, 15, 5, 12}},
      // 1/3 would give 73441916, half-way to the Single 73441920; the shorter factor stays below.
      {"15 digits", {0, 2546, 5092}, {0, 21634.5F, 0}, {55081436, 73441912, 55081436, 55081436}},
      // The running Single loses each 1; Trapezoidal sums in double precision.
      {"running Singles", {0, 1, 2, 3}, {16777216, 1, 1, 0}, {8388610, 8388610, 16777216, 2}},
      {"an infinity flows through", {0, 1, 2}, {1, kInf, 1}, {kInf, kInf, kInf, kInf}},
      {"a NaN flows through", {0, 1, 2}, {1, kNaN, 1}, {kNaN, kNaN, kNaN, kNaN}},
  };
  for (const Row& row : rows) {
    for (std::size_t r = 0; r < 4; ++r) {
      // Elements 1 to n; an array from 0 has one more, which no rule reads.
      for (const std::int32_t lower : {1, 0, -3}) {
        Array1<float> x = samples_of(row.x, lower), y = samples_of(row.y, 1, 1);
        const float got = kRules[r].integrate(x, y);
        EXPECT_TRUE(same(got, row.want[r])) << row.name << ", " << kRules[r].name << ": " << got;
      }
    }
  }
  EXPECT_EQ(taken(), Lines(3, rule_line(9, "Simpson")));  // only the single point
}

TEST_F(IntegrationTest, areas_of_many_samples_round_at_every_step) {
  std::ifstream file(VQ_TEST_DATA "/integration_cases.tsv");
  std::string header;
  std::getline(file, header);
  std::int32_t n = 0;
  int count = 0;
  for (; file >> n; ++count) {
    Array1<float> x(1, n), y(1, n);
    for (std::int32_t i = 1; i <= n; ++i) {
      x(i) = static_cast<float>(i / 10.0);
      y(i) = static_cast<float>((37 * i % 101 - 40) / 7.0);  // 37 i stays below 2^31
    }
    for (const Rule& rule : kRules) {
      float want = 0;
      file >> want;
      EXPECT_EQ(rule.integrate(x, y), want) << rule.name << ", n = " << n;
    }
  }
  EXPECT_EQ(count, 7);
  EXPECT_TRUE(lines.empty());
}

TEST_F(IntegrationTest, failures_are_one_line_and_zero) {
  constexpr float kBig = 3e38F;
  const Array1<float> three = array_of<float>({0, 1, 2});
  struct Row {
    const char* name;
    Array1<float> x, y;
    const char* want;  // per rule: the error number, or u for nothing to report
  } const rows[] = {
      {"x unallocated", {}, three, "9999"},
      {"y unallocated", three, {}, "9999"},
      {"y short: Forward never reads the last", three, Array1<float>(1, 2), "99u9"},
      {"y starts late: Backward never reads the first", three, Array1<float>(2, 3), "999u"},
      {"x starts late", Array1<float>(2, 3), three, "9999"},
      {"no point", Array1<float>(0, 0), {}, "uuuu"},
      {"areas too large", three, array_of<float>({kBig, kBig, kBig}), "6666"},
      {"steps too large", array_of<float>({0, kBig, -kBig}), three, "6666"},
      {"infinities that cancel", three, array_of<float>({kInf, -kInf, kInf}), "5555"},
  };
  for (const Row& row : rows) {
    for (std::size_t r = 0; r < 4; ++r) {
      Array1<float> x = row.x, y = row.y;
      const float got = kRules[r].integrate(x, y);
      Lines want;
      if (row.want[r] != 'u') {
        EXPECT_EQ(got, 0.0F) << row.name << ", " << kRules[r].name;
        want.push_back(rule_line(row.want[r] - '0', kRules[r].name));
      }
      EXPECT_EQ(taken(), want) << row.name;
    }
  }
}

TEST_F(IntegrationTest, the_rule_number_chooses_and_cannot_be_read_back) {
  Array1<float> x = array_of<float>({0, 1, 2}), y = array_of<float>({0, 1, 4});
  ztIntegrate integrate;
  EXPECT_EQ(integrate.Integral(x, y), 3.0F) << "a fresh instance is trapezoidal";
  constexpr std::int32_t kLeast = std::numeric_limits<std::int32_t>::min();
  const std::pair<std::int32_t, float> rows[] = {{2, 2.66666675F}, {3, 1},     {4, 5}, {1, 3},
                                                 {4, 5},           {7, 3},     {4, 5}, {0, 3},
                                                 {4, 5},           {kLeast, 3}};
  for (const auto& [number, want] : rows) {
    std::int32_t rule = number;
    integrate.put_IntegrationRule(rule);
    EXPECT_EQ(integrate.IntegerationRule(), 0) << number;
    EXPECT_EQ(integrate.Integral(x, y), want) << number;  // the getter changed nothing
    EXPECT_EQ(rule, number);
  }
  EXPECT_TRUE(lines.empty());
}

TEST_F(IntegrationTest, a_failing_sink_reaches_the_caller) {
  Array1<float> none;
  sink_failure = [] { throw Fault(70); };
  EXPECT_EQ(fault_of([&] { Backward(none, none); }), 70);
  // The rule's failure passes through the frame of Integral, whose own report fails as well.
  EXPECT_EQ(fault_of([&] { ztIntegrate().Integral(none, none); }), 70);
}

}  // namespace
}  // namespace vqmath63
