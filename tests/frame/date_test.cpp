// Dates against the standard calendar, and month arithmetic.
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

double day(std::int32_t year, std::int32_t month, std::int32_t day_of_month) {
  return static_cast<double>(days_from_civil({year, month, day_of_month}));
}

TEST(Date, the_calendar_agrees_with_the_standard_library) {
  using namespace std::chrono;
  EXPECT_EQ(day(1899, 12, 30), 0);
  EXPECT_EQ(day(100, 1, 1), kFirstDay);
  EXPECT_EQ(day(9999, 12, 31), kLastDay);
  int count = 0;
  for (std::int64_t d = -800000; d <= 3000000; d += 7, ++count) {  // years -290 to 10113
    const year_month_day want{sys_days{days{d - 25569}}};          // from 1970-01-01
    const CivilDate got = civil_from_days(d);
    ASSERT_EQ(year(got.year) / got.month / got.day, want) << d;
    ASSERT_EQ(days_from_civil(got), d);
    const auto length = year_month_day_last(want.year(), month_day_last(want.month())).day();
    ASSERT_EQ(static_cast<unsigned>(days_in_month(got.year, got.month)), unsigned{length}) << d;
  }
  EXPECT_EQ(count, 542858);
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

TEST(Date, now_is_the_clock_within_the_time_zones) {
  const std::chrono::duration<double> utc = std::chrono::system_clock::now().time_since_epoch();
  EXPECT_NEAR(now().value, 25569.0 + utc.count() / 86400.0, 15.0 / 24.0);
}

TEST(DateTools, months_are_added_with_the_day_clamped_and_the_time_kept) {
  BuiltInDateTools tools;
  const auto days_of = [](const std::vector<double>& date) {
    const auto part = [&](std::size_t i) { return static_cast<std::int32_t>(date.at(i)); };
    return day(part(0), part(1), part(2)) + date.at(3);
  };
  each_row("frame.tsv", "months", 9, [&](const TableRow& row) {
    const double from = days_of(row["from"]), want = days_of(row["want"]);
    const std::int64_t months = row["months"];
    EXPECT_EQ(tools.AddMonths(from, months), want);
    EXPECT_EQ(tools.MonthsBetween(from, want), months);
  });
  EXPECT_EQ(tools.DateOfDays(tools.DaysOfDate({-1.25})), Date{-1.25});
  for (double d = kFirstDay; d <= kLastDay; d += 1.0) {  // every day, from the calendar's first
    const CivilDate date = civil_from_days(static_cast<std::int64_t>(d));
    const std::int64_t months = (date.year - 100) * 12 + date.month - 1;
    ASSERT_EQ(tools.MonthsBetween(kFirstDay, d + 0.5), months) << d;
    ASSERT_EQ(tools.AddMonths(d, -months), kFirstDay + date.day - 1) << d;
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
