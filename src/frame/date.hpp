// Automation dates and the continuous day count that arithmetic is done in.
#pragma once

#include <cstdint>

namespace vqmath63 {

/// An automation date: days since 1899-12-30 00:00, local and without a time zone. Before that day
/// the fraction is unsigned: -1.25 is 1899-12-29 06:00, not 1899-12-28 18:00.
struct Date {
  double value = 0.0;
  friend constexpr bool operator==(const Date&, const Date&) = default;
};

/// A calendar date of the proleptic Gregorian calendar.
struct CivilDate {
  std::int32_t year = 1899;
  std::int32_t month = 12;  ///< 1 to 12
  std::int32_t day = 30;    ///< 1 to the month's length
};

/// First and last day of automation dates (0100-01-01 and 9999-12-31), as day counts; a moment is
/// inside when kFirstDay <= moment < kLastDay + 1.
inline constexpr double kFirstDay = -657434.0;
inline constexpr double kLastDay = 2958465.0;

/// Day count of a date: continuous over all of time, so that differences are elapsed days.
double day_count(Date date);
/// The date of a day count, inverse of day_count.
Date date_of(double days);

/// Days since 1899-12-30 of a calendar date, and back. O(1).
std::int64_t days_from_civil(const CivilDate& civil);
CivilDate civil_from_days(std::int64_t days);

/// Days in a month (28 to 31) of the proleptic Gregorian calendar.
std::int32_t days_in_month(std::int32_t year, std::int32_t month);

/// The current local date and time.
Date now();

}  // namespace vqmath63
