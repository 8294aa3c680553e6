// Conversions between dates, day counts and the calendar, and the clock.
#include "frame/date.hpp"

#include <cmath>
#include <ctime>

namespace vqmath63 {
namespace {

// The calendar is reckoned from 1 March of a year 0 far enough back for every 32-bit year, so that
// unsigned division serves. Years that begin in March end with their leap day, and 400 of them
// always have 146097 days (E. G. Richards, Calendars, in: Explanatory Supplement to the
// Astronomical Almanac, 3rd ed., 2013, section 15.11).
constexpr std::uint64_t kDaysOf400Years = 146097;
constexpr std::uint64_t kCyclesBack = 5368711;
constexpr std::int64_t kYearsBack = 400 * std::int64_t{kCyclesBack};
constexpr std::int64_t kDaysBack =
    693899 + static_cast<std::int64_t>(kCyclesBack * kDaysOf400Years);  // 693899: 0000-03-01

}  // namespace

double day_count(Date date) {
  const double whole = std::trunc(date.value);
  // The test keeps NaN and infinities as they are, too.
  if (!(date.value < 0.0) || whole == date.value) return date.value;
  return whole + (whole - date.value);
}

Date date_of(double days) {
  const double whole = std::floor(days);
  if (!(days < 0.0) || whole == days) return {days};
  const double date = whole - (days - whole);
  // A moment so close before midnight that its time of day rounds to 24 hours is the next day.
  return {date <= whole - 1.0 ? whole + 1.0 : date};
}

std::int64_t days_from_civil(const CivilDate& civil) {
  const bool early = civil.month <= 2;  // January and February close the year before
  const auto year = static_cast<std::uint64_t>(civil.year + kYearsBack - (early ? 1 : 0));
  const auto month = static_cast<std::uint32_t>(civil.month + (early ? 9 : -3));
  const std::uint64_t century = year / 100;
  const std::uint64_t days_before_year = 365 * year + year / 4 - century + century / 4;
  const std::uint32_t days_before_month = (153 * month + 2) / 5;
  return static_cast<std::int64_t>(days_before_year + days_before_month) + (civil.day - 1) -
         kDaysBack;
}

CivilDate civil_from_days(std::int64_t days) {
  const auto since = static_cast<std::uint64_t>(days + kDaysBack);
  const std::uint64_t cycle = since / kDaysOf400Years;
  // A century, then a year, is found from four times the days: 146097 / 4 and 1461 / 4 days long.
  const auto in_cycle = static_cast<std::uint32_t>(since - cycle * kDaysOf400Years);
  const std::uint32_t century = (4 * in_cycle + 3) / 146097;
  const std::uint32_t in_century = (4 * in_cycle + 3) % 146097 / 4;
  const std::uint32_t year = (4 * in_century + 3) / 1461;
  const std::uint32_t in_year = (4 * in_century + 3) % 1461 / 4;
  const std::uint32_t month = (5 * in_year + 2) / 153;
  const std::uint32_t day = in_year - (153 * month + 2) / 5 + 1;
  const bool early = month >= 10;
  const auto years = static_cast<std::int64_t>(cycle * 400 + century * 100 + year);
  return {static_cast<std::int32_t>(years - kYearsBack + (early ? 1 : 0)),
          static_cast<std::int32_t>(early ? month - 9 : month + 3), static_cast<std::int32_t>(day)};
}

std::int32_t days_in_month(std::int32_t year, std::int32_t month) {
  if (month == 2) return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0) ? 29 : 28;
  return month == 4 || month == 6 || month == 9 || month == 11 ? 30 : 31;
}

Date now() {
  const std::time_t seconds = std::time(nullptr);
  std::tm local{};
#ifdef _WIN32
  localtime_s(&local, &seconds);
#else
  localtime_r(&seconds, &local);
#endif
  const std::int64_t day = days_from_civil({local.tm_year + 1900, local.tm_mon + 1, local.tm_mday});
  const int second_of_day = (local.tm_hour * 60 + local.tm_min) * 60 + local.tm_sec;
  return {static_cast<double>(day) + second_of_day / 86400.0};
}

}  // namespace vqmath63
