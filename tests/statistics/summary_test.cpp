// The kept summary: what each call overwrites, what it leaves, and what a failure leaves.
#include <cmath>

#include "statistics/samples.hpp"
#include "statistics/statistics.hpp"

namespace vqmath63 {
namespace {

using A = Array1<float>;
using Z = ztStatistics;

using Values = std::vector<float>;

// The properties in this order, those of one column first, and what a fresh instance has.
constexpr float (Z::*kProperties[])() const = {
    &Z::get_xBar,     &Z::get_SigmaX,    &Z::get_SigmaX2,  &Z::get_SigmaAbsX, &Z::get_xMax,
    &Z::get_xMin,     &Z::get_xSigmaN,   &Z::get_xSigmaN1, &Z::get_yBar,      &Z::get_SigmaY,
    &Z::get_SigmaY2,  &Z::get_SigmaAbsY, &Z::get_yMax,     &Z::get_yMin,      &Z::get_ySigmaN,
    &Z::get_ySigmaN1, &Z::get_SigmaXY,   &Z::get_xMedian,  &Z::get_xMode,     &Z::get_yMedian};
const Values kFresh = {0, 0, 0, 0, 0, 0, 1, 1, 0, 0, 0, 0, 0, 0, 1, 1, 0, 0, 0, 0};

Values values_of(const Z& z) {
  Values values;
  for (const auto property : kProperties) values.push_back((z.*property)());
  return values;
}

std::size_t changes(const Values& values) {
  std::size_t count = 0;
  for (std::size_t i = 0; i < values.size(); ++i) count += !same(values[i], kFresh[i]);
  return count;
}

class SummaryTest : public CompanionTest {
 protected:
  // After a summary on a fresh instance, whose flag starts wrong.
  Values after(A& x, A* y, bool want_ok) {
    Z z;
    EXPECT_EQ(values_of(z), kFresh);
    bool ok = !want_ok;
    if (y == nullptr) {
      z.BasicStatistics(x, ok);
    } else {
      z.BasicStatisticsPairs(x, *y, ok);
    }
    EXPECT_EQ(ok, want_ok);
    return values_of(z);
  }
  // `want` holds the first ones; the others are as on a fresh instance.
  static void expect_values(const Values& got, const Values& want) {
    for (std::size_t i = 0; i < kFresh.size(); ++i) {
      EXPECT_TRUE(same(got[i], i < want.size() ? want[i] : kFresh[i]))
          << "property " << i << ": " << got[i];
    }
  }
};

TEST_F(SummaryTest, values_worked_by_hand) {
  each_row("statistics.tsv", "summaries", 7, [&](const TableRow& row) {
    for (const std::int32_t lower : {1, 0, -3}) {
      A x = samples(row["x"], lower);
      expect_values(after(x, nullptr, true), row["want"]);
    }
  });
  EXPECT_TRUE(lines.empty());
}

TEST_F(SummaryTest, pairs_leave_xSigmaN_and_never_clear_the_spread_of_x) {
  const auto root = [](double x) { return static_cast<float>(std::sqrt(x)); };
  A x = samples({1, 2, 3, 6}), y = samples({-2, 4, -4, 8}, 0);
  expect_values(after(x, &y, true), {3, 12, 50, 6, 6, 1, 1, root(14.0 / 3), 1.5F, 6, 100, 8, 8, -4,
                                     root(22.75), root(91.0 / 3), 42});
  // A summary before keeps its xSigmaN, which one sample does not bring to 0 either.
  Z z;
  bool ok = false;
  z.BasicStatistics(y, ok);
  const float kept = z.get_xSigmaN();
  A one = samples({9});
  z.BasicStatisticsPairs(one, one, ok);
  EXPECT_EQ((Values{z.get_xSigmaN(), z.get_xSigmaN1(), z.get_ySigmaN()}), (Values{kept, 0, 0}));

  // Sum and squares whose spread comes out as 3/512, below 1e-15 of the squares, 7.9e12.
  Values level(10, 778960);
  level.insert(level.end(), {778959, 778961, 778957});
  A flat = samples(level);
  z.BasicStatisticsPairs(flat, flat, ok);
  EXPECT_EQ((Values{z.get_xSigmaN1(), z.get_ySigmaN1(), z.get_ySigmaN()}),
            (Values{std::sqrt(1 / 2048.0F), 0, 0}));
  // A reciprocal of 3 rounded to Single moves the spread of equal samples away from 0.
  A thirds = samples({2, 2, 2});
  z.BasicStatisticsPairs(thirds, thirds, ok);
  const double spread = 12 - 36 * static_cast<double>(1.0F / 3.0F);
  const float moved = root(std::fabs(spread) / 2);
  EXPECT_EQ((Values{z.get_ySigmaN1(), z.get_xSigmaN1(), z.get_xBar()}), (Values{moved, moved, 2}));
  EXPECT_TRUE(ok);
}

TEST_F(SummaryTest, failures_keep_what_the_steps_before_them_left) {
  each_row("statistics.tsv", "failing summaries", 10, [&](const TableRow& row) {
    for (const std::string of_pairs : {"", " of pairs"}) {
      A x = array_of<float>(row["x"], row["x from"]), y = array_of<float>(row["y"], row["y from"]);
      const std::int32_t number = row["error" + of_pairs];
      const std::size_t changed = row["changes" + of_pairs];
      const Values got = after(x, of_pairs.empty() ? nullptr : &y, number == 0);
      EXPECT_EQ(changes(got), changed) << of_pairs;
      const std::string routine = of_pairs.empty() ? "BasicStatistics" : "BasicStatisticsPairs";
      EXPECT_EQ(taken(), number == 0 ? Lines{} : lines_of(number, {routine})) << of_pairs;
    }
  });
}

TEST_F(SummaryTest, statistics_asks_for_success_and_statistics_pairs_does_not) {
  Z z;
  bool ok = false;
  A x = samples({5, 1, 2, 2, 2}), y = samples({7, 9}), none;
  const auto kept = [&] { return Values{z.get_xMedian(), z.get_xMode(), z.get_xBar()}; };
  z.Statistics(x, ok);
  EXPECT_TRUE(ok && lines.empty());
  EXPECT_EQ(kept(), (Values{2, 1, 2.4F}));
  z.Statistics(none, ok);
  EXPECT_FALSE(ok);
  EXPECT_EQ(kept(), (Values{2, 1, 2.4F}));
  EXPECT_EQ(taken(), lines_of(9, {"BasicStatistics"}));

  z.StatisticsPairs(x, y, ok);
  EXPECT_TRUE(ok) << "though the pair summary failed: y is short";
  EXPECT_EQ((Values{z.get_yMedian(), z.get_yBar()}), (Values{8, 0}));
  EXPECT_EQ(taken(), lines_of(9, {"BasicStatisticsPairs"}));
  z.StatisticsPairs(none, y, ok);
  EXPECT_TRUE(ok);
  EXPECT_EQ(z.get_xMedian(), 0.0F) << "a failing Median counts as 0";
  EXPECT_EQ(taken(), lines_of(9, {"BasicStatisticsPairs", "Median", "Mode"}));
}

TEST_F(SummaryTest, companions_live_with_the_instance) {
  int sorts = 0, used = 0, tools = 0;
  struct Counted final : ztSortTools {
    Counted(int& count, int& uses) : alive(count), used(uses) { ++alive; }
    ~Counted() override { --alive; }
    void SortAscending(A&, bool& qOK) override { qOK = ++used > 0; }
    int &alive, &used;
  };
  companion_makers().SortTools = [&] { return std::make_shared<Counted>(sorts, used); };
  companion_makers().ArrayTools = [&] {
    ++tools;
    return built_in_makers().ArrayTools();
  };
  {
    Z a, b;
    EXPECT_EQ(sorts, 2);
    EXPECT_EQ(tools, 2);
    A x = samples({3, 1});
    bool ok = false;
    a.Statistics(x, ok);
    a.StatisticsPairs(x, x, ok);
    EXPECT_EQ(used, 6) << "a sort of the host's own is asked for median and mode alike";
    EXPECT_EQ(common_globals().ArrayTools, nullptr) << "the shared one is another";
  }
  EXPECT_EQ(sorts, 0);
  companion_makers().SortTools = nullptr;
  Z without;
  EXPECT_EQ(taken(), std::vector{error_line(429, "ztAnalyse - ztStatistics", "InitStatistics")});
  A x = samples({3, 1});
  bool ok = false;
  without.Statistics(x, ok);
  EXPECT_TRUE(ok);
  EXPECT_EQ(without.get_xBar(), 2.0F);
  EXPECT_EQ(taken(), lines_of(429, {"Median", "Mode"}));
  companion_makers() = built_in_makers();
  EXPECT_EQ(without.Median(x), 2.0F) << "the companion is asked for again";
}

}  // namespace
}  // namespace vqmath63
