// The built-in calendar companion.
#pragma once

#include "frame/companions.hpp"

namespace vqmath63 {

/// Calendar arithmetic on day counts, by table. Each call takes a few nanoseconds. MonthsBetween
/// raises fault 5 for a moment outside the calendar of automation dates or NaN, as AddMonths does;
/// the time of day is kept to the resolution of the day count.
class BuiltInDateTools final : public ztDateTools {
 public:
  double DaysOfDate(Date date) override;
  Date DateOfDays(double days) override;
  double AddMonths(double days, std::int64_t months) override;
  std::int64_t MonthsBetween(double from, double to) override;
};

}  // namespace vqmath63
