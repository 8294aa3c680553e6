#include "accumulate/unit_calendar.hpp"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "frame/date.hpp"
#include "frame/fault.hpp"

namespace vqmath63 {
namespace {

constexpr double kNever = std::numeric_limits<double>::infinity();
// More months than the calendar of automation dates holds.
constexpr double kCalendarMonths = 9900.0 * 12.0;

double inside_calendar(double moment) {
  // Negated so that a NaN fails too.
  if (!(moment >= kFirstDay && moment < kLastDay + 1.0)) raise_fault(ErrorNumber::kInvalidCall);
  return moment;
}

}  // namespace

UnitCalendar::UnitCalendar(std::shared_ptr<ztDateTools> tools, double origin, PeriodUnit unit)
    : tools_(std::move(tools)), origin_(inside_calendar(origin)), unit_(unit) {}

double UnitCalendar::whole_months(double units) const {
  const double months = units * unit_.months;
  if (!(std::fabs(months) <= kCalendarMonths)) raise_fault(ErrorNumber::kInvalidCall);
  return tools_->AddMonths(origin_, static_cast<std::int64_t>(months));
}

double UnitCalendar::moment(double units) const {
  // The product is exact for a Single count; dividing by the minutes of a day rounds once.
  if (!unit_.by_calendar()) return inside_calendar(origin_ + units * unit_.minutes / 1440.0);
  const double whole = std::floor(units);
  const double start = whole_months(whole);
  const double fraction = units - whole;
  if (fraction == 0.0) return start;
  return start + fraction * (whole_months(whole + 1.0) - start);
}

double UnitCalendar::moment_or_never(double units) const {
  if (!unit_.by_calendar()) {
    const double time = origin_ + units * unit_.minutes / 1440.0;
    return time < kLastDay + 1.0 ? time : kNever;
  }
  const double months = units * unit_.months;
  const auto room = static_cast<double>(tools_->MonthsBetween(origin_, kLastDay));
  return months <= room ? whole_months(units) : kNever;
}

std::int64_t UnitCalendar::last_multiple_until(double time, double step) const {
  const double passed =
      unit_.by_calendar() ? static_cast<double>(tools_->MonthsBetween(origin_, time)) / unit_.months
                          : (time - origin_) / unit_.days();
  // The estimate is off by one at most: by rounding, or by the day of the month.
  double k = std::max(0.0, std::floor(passed / step));
  while (k > 0.0 && moment_or_never(k * step) > time) k -= 1.0;
  while (moment_or_never((k + 1.0) * step) <= time) k += 1.0;
  return static_cast<std::int64_t>(k);
}

}  // namespace vqmath63
