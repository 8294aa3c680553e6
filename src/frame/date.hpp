// Automation dates and the continuous day count that arithmetic is done in.
#pragma once

#include <ctime>

namespace vqmath63 {

/// An automation date: days since 1899-12-30 00:00, local and without a time zone. Before that day
/// the fraction is unsigned: -1.25 is 1899-12-29 06:00, not 1899-12-28 18:00.
struct Date {
  double value = 0.0;
  friend constexpr bool operator==(const Date&, const Date&) = default;
};

/// First and last day of automation dates (0100-01-01 and 9999-12-31), as day counts; a moment is
/// inside when kFirstDay <= moment < kLastDay + 1.
inline constexpr double kFirstDay = -657434.0;
inline constexpr double kLastDay = 2958465.0;

/// Day count of a date: continuous over all of time, so that differences are elapsed days.
double day_count(Date date);
/// The date of a day count, inverse of day_count.
Date date_of(double days);

/// The current local date and time: in parts, and as an automation date.
std::tm local_time();
Date now();

}  // namespace vqmath63
