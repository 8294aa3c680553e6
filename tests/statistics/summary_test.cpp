// The kept summary: what each call overwrites, what it leaves, and what a failure leaves.
#include <cmath>
#include <map>

#include "statistics/samples.hpp"
#include "statistics/statistics.hpp"

namespace vqmath63 {
namespace {

using A = Array1<float>;
using Z = ztStatistics;
constexpr float kMax = std::numeric_limits<float>::max();

struct Property {
  const char* name;
  float (Z::*get)() const;
  float fresh;
};
constexpr Property kProperties[] = {
    {"xBar", &Z::get_xBar, 0},           {"xSigmaN1", &Z::get_xSigmaN1, 1},
    {"xSigmaN", &Z::get_xSigmaN, 1},     {"SigmaX", &Z::get_SigmaX, 0},
    {"SigmaX2", &Z::get_SigmaX2, 0},     {"SigmaAbsX", &Z::get_SigmaAbsX, 0},
    {"xMedian", &Z::get_xMedian, 0},     {"xMode", &Z::get_xMode, 0},
    {"xMax", &Z::get_xMax, 0},           {"xMin", &Z::get_xMin, 0},
    {"yBar", &Z::get_yBar, 0},           {"ySigmaN", &Z::get_ySigmaN, 1},
    {"ySigmaN1", &Z::get_ySigmaN1, 1},   {"yMedian", &Z::get_yMedian, 0},
    {"yMax", &Z::get_yMax, 0},           {"yMin", &Z::get_yMin, 0},
    {"SigmaY", &Z::get_SigmaY, 0},       {"SigmaY2", &Z::get_SigmaY2, 0},
    {"SigmaAbsY", &Z::get_SigmaAbsY, 0}, {"SigmaXY", &Z::get_SigmaXY, 0}};

using Values = std::map<std::string, float>;

// The properties that differ from those of a fresh instance.
Values changed(const Z& z) {
  Values values;
  for (const Property& property : kProperties) {
    const float value = (z.*property.get)();
    if (!same(value, property.fresh)) values[property.name] = value;
  }
  return values;
}

class SummaryTest : public CompanionTest {
 protected:
  // After `call` on a fresh instance, whose flag starts wrong.
  Values after(const std::function<void(Z&, bool&)>& call, bool want_ok, const char* name) {
    Z z;
    EXPECT_EQ(changed(z), Values()) << name;
    bool ok = !want_ok;
    call(z, ok);
    EXPECT_EQ(ok, want_ok) << name;
    return changed(z);
  }
};

TEST_F(SummaryTest, values_worked_by_hand) {
  struct Row {
    const char* name;
    std::vector<float> x;
    Values want;  // of BasicStatistics; what is not named is as on a fresh instance
  };
  const float root2 = std::sqrt(2.0F);
  const Row rows[] = {
      {"one sample",
       {5},
       {{"xBar", 5},
        {"SigmaX", 5},
        {"SigmaX2", 25},
        {"SigmaAbsX", 5},
        {"xMax", 5},
        {"xMin", 5},
        {"xSigmaN", 0},
        {"xSigmaN1", 0}}},
      {"SigmaAbsX is the last magnitude",
       {-3, 5, -7},
       {{"xBar", -5.0F / 3},
        {"SigmaX", -5},
        {"SigmaX2", 83},
        {"SigmaAbsX", 7},
        {"xMax", 5},
        {"xMin", -7},
        {"xSigmaN", static_cast<float>(std::sqrt(224.0 / 9))},
        {"xSigmaN1", static_cast<float>(std::sqrt(112.0 / 3))}}},
      {"two samples",
       {2, 4},
       {{"xBar", 3},
        {"SigmaX", 6},
        {"SigmaX2", 20},
        {"SigmaAbsX", 4},
        {"xMax", 4},
        {"xMin", 2},
        {"xSigmaN1", root2}}},
      // 49 - 49^2 x (1/49) is 7e-15 in Doubles, which the 1e-15 rule clears.
      {"equal samples with exact sums",
       std::vector<float>(49, 1.0F),
       {{"xBar", 1},
        {"SigmaX", 49},
        {"SigmaX2", 49},
        {"SigmaAbsX", 1},
        {"xMax", 1},
        {"xMin", 1},
        {"xSigmaN", 0},
        {"xSigmaN1", 0}}},
      // The square of 1 + 2^-12 loses its last bit, 2^-24, as a Single; the spread shows it.
      {"one sample with a rounded square",
       {1 + 0x1p-12F},
       {{"xBar", 1 + 0x1p-12F},
        {"SigmaX", 1 + 0x1p-12F},
        {"SigmaX2", 1 + 0x1p-11F},
        {"SigmaAbsX", 1 + 0x1p-12F},
        {"xMax", 1 + 0x1p-12F},
        {"xMin", 1 + 0x1p-12F},
        {"xSigmaN", 0x1p-12F},
        {"xSigmaN1", 0}}},
      {"all zero", {0, 0}, {{"xSigmaN", 0}, {"xSigmaN1", 0}}},
      {"NaN flows through",
       {1, kNaN, 2},
       {{"xBar", kNaN},
        {"SigmaX", kNaN},
        {"SigmaX2", kNaN},
        {"SigmaAbsX", 2},
        {"xMax", 2},
        {"xMin", 1},
        {"xSigmaN", kNaN},
        {"xSigmaN1", kNaN}}},
  };
  for (const Row& row : rows) {
    for (const std::int32_t lower : {1, 0, -3}) {
      A x = samples(row.x, lower);
      const Values got = after([&](Z& z, bool& ok) { z.BasicStatistics(x, ok); }, true, row.name);
      EXPECT_EQ(got.size(), row.want.size()) << row.name;
      for (const auto& [name, value] : row.want) {
        EXPECT_TRUE(got.contains(name) && same(got.at(name), value)) << row.name << ' ' << name;
      }
    }
  }
  EXPECT_TRUE(lines.empty());
}

TEST_F(SummaryTest, pairs_leave_xSigmaN_and_never_clear_the_spread_of_x) {
  A x = samples({1, 2, 3, 6}), y = samples({-2, 4, -4, 8}, 0);
  EXPECT_EQ(after([&](Z& z, bool& ok) { z.BasicStatisticsPairs(x, y, ok); }, true, "pairs"),
            (Values{{"xBar", 3},
                    {"SigmaX", 12},
                    {"SigmaX2", 50},
                    {"SigmaAbsX", 6},
                    {"xMax", 6},
                    {"xMin", 1},
                    {"xSigmaN1", static_cast<float>(std::sqrt(14.0 / 3))},
                    {"yBar", 1.5F},
                    {"SigmaY", 6},
                    {"SigmaY2", 100},
                    {"SigmaAbsY", 8},
                    {"yMax", 8},
                    {"yMin", -4},
                    {"ySigmaN", static_cast<float>(std::sqrt(22.75))},
                    {"ySigmaN1", static_cast<float>(std::sqrt(91.0 / 3))},
                    {"SigmaXY", 42}}));
  // A summary before keeps its xSigmaN, which one sample does not bring to 0 either.
  Z z;
  bool ok = false;
  z.BasicStatistics(y, ok);
  const float kept = z.get_xSigmaN();
  A one = samples({9});
  z.BasicStatisticsPairs(one, one, ok);
  EXPECT_EQ(z.get_xSigmaN(), kept);
  EXPECT_EQ(z.get_xSigmaN1(), 0.0F);
  EXPECT_EQ(z.get_ySigmaN(), 0.0F);

  // Sum and squares whose spread comes out as 3/512, below 1e-15 of the squares, 7.9e12.
  std::vector<float> level(13, 778960);
  level[10] = 778959;
  level[11] = 778961;
  level[12] = 778957;
  A flat = samples(level);
  z.BasicStatisticsPairs(flat, flat, ok);
  EXPECT_EQ(z.get_xSigmaN1(), std::sqrt(1 / 2048.0F));
  EXPECT_EQ(z.get_ySigmaN1(), 0.0F);
  EXPECT_EQ(z.get_ySigmaN(), 0.0F);
  // A reciprocal of 3 rounded to Single moves the spread of equal samples away from 0.
  A thirds = samples({2, 2, 2});
  z.BasicStatisticsPairs(thirds, thirds, ok);
  const double spread = 12 - 36 * static_cast<double>(1.0F / 3.0F);
  EXPECT_EQ(z.get_ySigmaN1(), static_cast<float>(std::sqrt(std::fabs(spread) / 2)));
  EXPECT_EQ(z.get_xSigmaN1(), z.get_ySigmaN1());
  EXPECT_EQ(z.get_xBar(), 2.0F);
  EXPECT_TRUE(ok);
}

TEST_F(SummaryTest, failures_keep_what_the_steps_before_them_left) {
  struct Row {
    const char* name;
    A x, y;
    const char* one;                                 // numbers of BasicStatistics(x)
    const char* pairs;                               // of BasicStatisticsPairs(x, y)
    std::size_t one_changes = 0, pairs_changes = 0;  // properties written before the failure
  };
  const Row rows[] = {
      {"unallocated", {}, samples({1}), "9", "9"},
      {"no sample: the pair divides by n first", A(0, 0), A(0, 0), "9", "11"},
      {"negative upper bound", A(-4, -2), A(-4, -2), "9", "9"},
      {"no element 1", A(2, 4), A(1, 4), "9", "9"},
      {"y unallocated", samples({1, 2}), {}, "", "9", 8},
      {"y short", samples({1, 2}), samples({1}), "", "9", 8},
      {"sum overflows", samples({kMax, kMax}), samples({1, 1}), "6", "6"},
      {"square overflows", samples({1, 2e19F}), samples({1, 1}), "6", "6"},
      {"square of y overflows", samples({1, 2}), samples({1, 2e19F}), "", "6", 8},
      {"opposite infinities", samples({kInf, -kInf}), samples({1, 1}), "5", "5"},
      // Sums and mean come out infinite, the spread is inf - inf.
      {"infinity", samples({1, kInf}), samples({1, 1}), "5", "5", 6, 6},
      {"infinity in y", samples({1, 2}), samples({1, -kInf}), "", "5", 8, 13},
  };
  for (const Row& row : rows) {
    A x = row.x, y = row.y;
    lines.clear();
    const bool one_ok = *row.one == '\0';
    Values got = after([&](Z& z, bool& ok) { z.BasicStatistics(x, ok); }, one_ok, row.name);
    EXPECT_EQ(numbers_of(lines), row.one) << row.name;
    EXPECT_EQ(got.size(), row.one_changes) << row.name;
    if (!one_ok) {
      EXPECT_EQ(lines,
                std::vector{error_line(std::stoi(row.one), "ztStatistics", "BasicStatistics")});
    }
    lines.clear();
    const bool pairs_ok = *row.pairs == '\0';
    got = after([&](Z& z, bool& ok) { z.BasicStatisticsPairs(x, y, ok); }, pairs_ok, row.name);
    EXPECT_EQ(numbers_of(lines), row.pairs) << row.name;
    EXPECT_EQ(got.size(), row.pairs_changes) << row.name;
    if (!pairs_ok) {
      EXPECT_EQ(lines, std::vector{error_line(std::stoi(row.pairs), "ztStatistics",
                                              "BasicStatisticsPairs")});
    }
  }
}

TEST_F(SummaryTest, statistics_asks_for_success_and_statistics_pairs_does_not) {
  Z z;
  bool ok = false;
  A x = samples({5, 1, 2, 2, 2}), none;
  z.Statistics(x, ok);
  EXPECT_TRUE(ok);
  EXPECT_EQ(z.get_xMedian(), 2.0F);
  EXPECT_EQ(z.get_xMode(), 1.0F);
  EXPECT_EQ(z.get_xBar(), 2.4F);
  EXPECT_TRUE(lines.empty());
  z.Statistics(none, ok);
  EXPECT_FALSE(ok);
  EXPECT_EQ(z.get_xMedian(), 2.0F);
  EXPECT_EQ(z.get_xMode(), 1.0F);
  EXPECT_EQ(lines, std::vector{error_line(9, "ztStatistics", "BasicStatistics")});

  lines.clear();
  A y = samples({7, 9});
  z.StatisticsPairs(x, y, ok);
  EXPECT_TRUE(ok) << "though the pair summary failed: y is short";
  EXPECT_EQ(z.get_yMedian(), 8.0F);
  EXPECT_EQ(z.get_yBar(), 0.0F);
  EXPECT_EQ(lines, std::vector{error_line(9, "ztStatistics", "BasicStatisticsPairs")});
  lines.clear();
  z.StatisticsPairs(none, y, ok);
  EXPECT_TRUE(ok);
  EXPECT_EQ(z.get_xMedian(), 0.0F) << "a failing Median counts as 0";
  EXPECT_EQ(lines, (std::vector{error_line(9, "ztStatistics", "BasicStatisticsPairs"),
                                error_line(9, "ztStatistics", "Median"),
                                error_line(9, "ztStatistics", "Mode")}));
}

TEST_F(SummaryTest, companions_live_with_the_instance) {
  int sorts = 0, tools = 0;
  struct Counted final : ztSortTools {
    explicit Counted(int& count) : alive(count) { ++alive; }
    ~Counted() override { --alive; }
    void SortAscending(A&, bool& qOK) override { qOK = true; }
    int& alive;
  };
  companion_makers().SortTools = [&] { return std::make_shared<Counted>(sorts); };
  companion_makers().ArrayTools = [&] {
    ++tools;
    return built_in_makers().ArrayTools();
  };
  {
    Z a, b;
    EXPECT_EQ(sorts, 2);
    EXPECT_EQ(tools, 2);
    EXPECT_EQ(common_globals().ArrayTools, nullptr) << "the shared one is another";
  }
  EXPECT_EQ(sorts, 0);
  companion_makers().SortTools = nullptr;
  Z without;
  EXPECT_EQ(lines, std::vector{error_line(429, "ztAnalyse - ztStatistics", "InitStatistics")});
  lines.clear();
  A x = samples({3, 1});
  bool ok = false;
  without.Statistics(x, ok);
  EXPECT_TRUE(ok);
  EXPECT_EQ(without.get_xBar(), 2.0F);
  EXPECT_EQ(lines, (std::vector{error_line(91, "ztStatistics", "Median"),
                                error_line(91, "ztStatistics", "Mode")}));
}

}  // namespace
}  // namespace vqmath63
