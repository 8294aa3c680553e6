// Month arithmetic on day counts, by a table of month starts.
#include "frame/date_tools.hpp"

#include <algorithm>
#include <array>
#include <chrono>

#include "frame/fault.hpp"

namespace vqmath63 {
namespace {

using std::chrono::months;
using std::chrono::sys_days;
using std::chrono::year;
using std::chrono::year_month;

// The calendar repeats after 400 years. Where its months begin is looked up: a reporting calendar
// steps through months by the million, and the general calendar code takes more than twice as long.
constexpr std::uint32_t kMonths = 4800;
constexpr std::uint32_t kDays = 146097;
constexpr std::int32_t kDaysFromYearZero =
    (sys_days{year{1899} / 12 / 30} - sys_days{year{0} / 1 / 1}).count();

// First day of each month of 400 years, counted from the first of them.
constexpr std::array<std::uint32_t, kMonths + 1> kMonthStarts = [] {
  std::array<std::uint32_t, kMonths + 1> starts{};
  year_month month = year{0} / 1;
  const sys_days first{month / 1};
  for (std::uint32_t& start : starts) {
    start = static_cast<std::uint32_t>((sys_days{month / 1} - first).count());
    month = month + months{1};  // not +=, by which some libraries forget the year
  }
  return starts;
}();
static_assert(kMonthStarts.back() == kDays);

// A calendar day, both counted from year 0: its number and its month, and the days before it in
// that month.
struct Place {
  std::uint32_t day;
  std::uint32_t month;
  std::uint32_t days_before;
};

// Where a moment is; fault 5 when it is outside the calendar of automation dates.
Place place_of(double days) {
  // Negated so that a NaN fails too.
  if (!(days >= kFirstDay && days < kLastDay + 1.0)) raise_fault(ErrorNumber::kInvalidCall);
  const auto towards_zero = static_cast<std::int32_t>(days);
  const std::int32_t floor = towards_zero - (towards_zero > days ? 1 : 0);
  const auto day = static_cast<std::uint32_t>(floor + kDaysFromYearZero);
  const std::uint32_t cycle = day / kDays;
  const std::uint32_t in_cycle = day - cycle * kDays;
  // Months of average length are never more than one month wrong.
  auto month = static_cast<std::uint32_t>(in_cycle * std::uint64_t{kMonths} / kDays);
  month += kMonthStarts[month + 1] <= in_cycle ? 1U : 0U;
  month -= kMonthStarts[month] > in_cycle ? 1U : 0U;
  return {day, cycle * kMonths + month, in_cycle - kMonthStarts[month]};
}

}  // namespace

double BuiltInDateTools::DaysOfDate(Date date) {
  return day_count(date);
}

Date BuiltInDateTools::DateOfDays(double days) {
  return date_of(days);
}

double BuiltInDateTools::AddMonths(double days, std::int64_t months) {
  constexpr std::int64_t kFirstMonth = 100 * 12;
  constexpr std::int64_t kEndMonth = 10000 * 12;
  const Place from = place_of(days);
  // Compared this way round, nothing overflows whatever `months` is.
  if (months < kFirstMonth - from.month || months >= kEndMonth - from.month) {
    raise_fault(ErrorNumber::kInvalidCall);
  }
  const auto month = static_cast<std::uint32_t>(from.month + months);
  const std::uint32_t cycle = month / kMonths;
  const std::uint32_t start = kMonthStarts[month % kMonths];
  const std::uint32_t last = kMonthStarts[month % kMonths + 1] - 1;
  const std::uint32_t day = cycle * kDays + std::min(start + from.days_before, last);
  return days + (static_cast<double>(day) - static_cast<double>(from.day));
}

std::int64_t BuiltInDateTools::MonthsBetween(double from, double to) {
  return std::int64_t{place_of(to).month} - place_of(from).month;
}

}  // namespace vqmath63
