// The reporting calendar: boundaries, inserted rows, phases, and what it refuses.
#include <chrono>
#include <cmath>

#include "accumulate/profile.hpp"
#include "frame/companion_fixture.hpp"
#include "frame/test_table.hpp"

namespace vqmath63 {
namespace {

class ReportingCalendarTest : public CompanionTest {};

const Rows kMonthly = {{0, 5}, {1, 20}, {2, 30}, {3, 40}};

// The figures of tools/make_calendar_cases.py, which works in exact rationals and knows no rows.
TEST_F(ReportingCalendarTest, agrees_with_step_functions_in_exact_arithmetic) {
  each_row("calendar_cases.tsv", "", 39, [](const TableRow& row) {
    const Rows samples = row["samples"];
    const std::vector<std::vector<double>> want = row["periods"];
    std::vector<bool> rates{false};  // the time column's flag is never looked at
    for (const std::string& kind : split(row["kinds"], ' ')) rates.push_back(kind == "rate");
    const Settings settings{row["data date"], row["report date"], row["data period"],
                            row["period"],    row["frequency"],   row["index"]};
    bool ok = false;
    const Rows got = accumulated(samples, settings, rates, ok);
    ASSERT_TRUE(ok);
    ASSERT_EQ(got.size(), want.size());
    for (std::size_t i = 0; i < want.size(); ++i) {
      // Each time is off by half a unit of a Single at most; a mean feels all of them.
      const double length = want[i][0] - (i == 0 ? 0.0 : want[i - 1][0]);
      const auto n = static_cast<double>(samples.size());
      for (std::size_t j = 0; j < want[i].size(); ++j) {
        double largest = j == 0 ? want[i][0] : 0.0;
        for (const auto& sample : samples) {
          if (j > 0) largest = std::fmax(largest, std::fabs(sample[j]));
        }
        const double units = rates[j] ? n + 4 + (2 * n + 2) * want.back()[0] / length : 2;
        EXPECT_NEAR(got[i][j], want[i][j], std::ldexp(units * largest, -24))
            << "row " << i << " column " << j;
      }
    }
  });
  EXPECT_TRUE(lines.empty());
}

TEST_F(ReportingCalendarTest, a_century_of_minutes_loses_no_boundary) {
  using namespace std::chrono;
  const sys_days from = 1950y / January / 1, month_end = 1950y / January / 31;
  const sys_days until = from + days{36108};
  Rows samples;  // each 4 days, up to 51 995 520 minutes
  for (float i = 0; i <= 9027; ++i) samples.push_back({5760 * i, 2.5F, i});
  struct Row {
    const char* period;
    sys_days start;
    std::size_t periods;
  } const rows[] = {{"day", from, 36108},
                    {"month", month_end, 1186},  // to 2048-10-31, and a rest
                    {"hour", from, 36108 * 24}};
  for (const Row& row : rows) {
    const auto serial = [](sys_days day) {
      return static_cast<double>((day - sys_days{1899y / December / 30}).count());
    };
    bool ok = false;
    const Rows got = accumulated(samples, {serial(from), serial(row.start), "minute", row.period},
                                 {false, true, false}, ok);
    ASSERT_TRUE(ok) << row.period;
    ASSERT_EQ(got.size(), row.periods);
    for (std::size_t i = 0; i < got.size(); ++i) {
      const auto k = static_cast<std::int32_t>(i) + 1;
      double elapsed = row.period[0] == 'd' ? k : k / 24.0;
      if (row.period[0] == 'm') {
        const sys_days end{1950y / January / last + months{k}};  // the 31st, or what there is
        elapsed = static_cast<double>((std::min(end, until) - month_end).count());
      }
      ASSERT_EQ(got[i][0], static_cast<float>(elapsed)) << row.period << i;
      ASSERT_NEAR(got[i][1], 2.5, 1e-6) << row.period << i;
      const double since = elapsed + static_cast<double>((row.start - from).count());
      ASSERT_NEAR(got[i][2], since / 4, 1e-3) << row.period << i;
    }
  }
}

TEST_F(ReportingCalendarTest, a_boundary_is_the_nearest_sample_of_several) {
  each_row("accumulate.tsv", "near boundaries", 7, [](const TableRow& row) {
    const double end = row["end"], value = row["value"];
    bool ok = false;
    const Rows got =
        accumulated(row["samples"], {45000, 45000, "minute", "hour"}, {false, false}, ok);
    ASSERT_TRUE(ok);
    ASSERT_EQ(got.size(), 2U);
    EXPECT_NEAR(got[0][0], end / 1440, 1e-8);
    EXPECT_NEAR(got[0][1], value, 1e-3);  // between samples the Singles of their minutes are felt
    EXPECT_EQ(got[1][1], 20);
  });
}

TEST_F(ReportingCalendarTest, what_cannot_be_reported_is_one_line) {
  const auto expect_refusal = [&](const Rows& samples, const Settings& settings, int number) {
    bool ok = true;
    EXPECT_EQ(accumulated(samples, settings, {}, ok), kUntouched);
    EXPECT_FALSE(ok);
    EXPECT_EQ(taken(), one_line(number, "Accumulate", "SetAccumulateArray"));
  };
  each_row("accumulate.tsv", "refusals", 15, [&](const TableRow& row) {
    expect_refusal(row["samples"],
                   {row["data date"], row["report date"], row["data period"], row["period"],
                    row["frequency"], row["index"]},
                   row["error"]);
  });
  for (const double wild : {double{kNaN}, -1e300, 1e300, 1e7, -1e7, -HUGE_VAL, HUGE_VAL}) {
    SCOPED_TRACE(wild);
    for (const char* period : {"hour", "month"}) {
      expect_refusal(kMonthly, {44957, wild, "day", period}, 5);
      expect_refusal(kMonthly, {wild, 44957, "day", period}, 5);
    }
  }
}

}  // namespace
}  // namespace vqmath63
