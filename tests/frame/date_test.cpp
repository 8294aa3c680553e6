// Dates, and month arithmetic against the standard calendar.
#include "frame/date.hpp"

#include <chrono>
#include <cmath>
#include <limits>
#include <random>

#include "companion_fixture.hpp"
#include "frame/date_tools.hpp"
#include "test_table.hpp"

namespace vqmath63 {
namespace {

using namespace std::chrono;

constexpr sys_days kDayZero{year{1899} / 12 / 30};

double day_number(const year_month_day& date) {
  return static_cast<double>((sys_days{date} - kDayZero).count());
}

TEST(Date, before_the_first_day_the_fraction_is_unsigned) {
  const std::pair<double, double> rows[] = {
      {-1.25, -0.75}, {-1.0, -1.0}, {-2.75, -1.25}, {0.0, 0.0}, {1.25, 1.25}};
  for (const auto& [date, days] : rows) {
    EXPECT_EQ(day_count({date}), days);
    EXPECT_EQ(date_of(days).value, date);
  }
  EXPECT_EQ(day_count({-0.25}), 0.25);    // day zero itself, whatever its sign
  EXPECT_EQ(date_of(-1e-20).value, 0.0);  // rounds to the midnight it precedes, not to one before
  EXPECT_TRUE(std::isnan(day_count({std::nan("")})));
  EXPECT_TRUE(std::isinf(date_of(-std::numeric_limits<double>::infinity()).value));

  std::mt19937_64 random(1899);
  std::uniform_real_distribution<double> moment(-657434.0, -1.0);
  for (int i = 0; i < 10000; ++i) {
    const Date date{moment(random)};
    ASSERT_EQ(date_of(day_count(date)), date) << date.value;
  }
}

TEST(Date, now_is_the_local_clock_to_the_second) {
  const std::time_t before = local_seconds();
  const double moment = (now().value - 25569.0) * 86400.0;
  EXPECT_NEAR(moment, std::nearbyint(moment), 1e-4);
  EXPECT_GE(moment, static_cast<double>(before) - 0.5);
  EXPECT_LE(moment, static_cast<double>(local_seconds()) + 0.5);
}

TEST(DateTools, months_are_added_with_the_day_clamped_and_the_time_kept) {
  BuiltInDateTools tools;
  const auto days_of = [](const std::vector<double>& date) {
    const auto part = [&](std::size_t i) { return static_cast<int>(date.at(i)); };
    return day_number(year{part(0)} / part(1) / part(2)) + date.at(3);
  };
  each_row("frame.tsv", "months", 9, [&](const TableRow& row) {
    const double from = days_of(row["from"]), want = days_of(row["want"]);
    const std::int64_t months = row["months"];
    EXPECT_EQ(tools.AddMonths(from, months), want);
    EXPECT_EQ(tools.MonthsBetween(from, want), months);
  });
  EXPECT_EQ(tools.DateOfDays(tools.DaysOfDate({-1.25})), Date{-1.25});
  EXPECT_EQ(day_number(year{9999} / 12 / 31), kLastDay);
  for (double d = kFirstDay; d <= kLastDay; d += 1.0) {  // every day, from the calendar's first
    const year_month_day date{kDayZero + days{static_cast<int>(d)}};
    const std::int64_t passed = (date.year() / date.month() - year{100} / 1).count();
    ASSERT_EQ(tools.MonthsBetween(kFirstDay, d + 0.5), passed) << d;
    ASSERT_EQ(tools.AddMonths(d, -passed), kFirstDay + unsigned{date.day()} - 1) << d;
  }
}

TEST(DateTools, outside_the_calendar_is_a_fault) {
  const std::pair<double, std::int64_t> rows[] = {{kLastDay, 1},
                                                  {kFirstDay + 30, -1},
                                                  {kLastDay + 1, 0},
                                                  {kFirstDay - 1e-9, 0},
                                                  {std::nan(""), 0},
                                                  {1e300, 1},
                                                  {0, std::numeric_limits<std::int64_t>::min()}};
  BuiltInDateTools tools;
  for (const auto& [days, months] : rows) {
    const auto add = [&, d = days, m = months] { tools.AddMonths(d, m); };
    EXPECT_EQ(fault_of(add), 5) << days;
  }
  EXPECT_EQ(fault_of([&] { tools.MonthsBetween(0, 1e7); }), 5);
}

}  // namespace
}  // namespace vqmath63
