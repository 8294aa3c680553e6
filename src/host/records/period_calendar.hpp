// The reporting calendar of the component, asked for piece by piece.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host/data/reporting_periods.hpp"

namespace vqmath63::host {

/// The boundaries of reporting periods as ztAccumulate cuts them. Period p runs from bound(p) to
/// bound(p + 1); numbers are kept when more of the calendar is asked for.
class PeriodCalendar {
 public:
  /// Periods count from `start` (a day count), of which the calendar has nothing before where
  /// `begins`; else its phase alone is taken from there, and it must lie before all that is asked.
  PeriodCalendar(std::string period, std::int32_t frequency, double start, bool begins);

  /// Makes sure of all periods that have a part between two moments. WorkError when the component
  /// refuses, or the periods are more than can be meant.
  void cover(double from, double to);

  double bound(std::int32_t period) const {
    return bounds_[static_cast<std::size_t>(period - first_)];
  }
  /// What lies before it is not reported.
  double begin() const { return begins_ ? settings_.start : -1e300; }
  std::int32_t first() const { return first_; }
  std::int32_t last() const { return first_ + static_cast<std::int32_t>(bounds_.size()) - 2; }

  /// The period that a moment lies in; one within 1.5 seconds of a boundary lies behind it, as the
  /// component has it. The moment must be covered; before the calendar's begin it is its first one.
  std::int32_t period_of(double moment) const;

 private:
  void begin_at(double moment);
  // The boundaries strictly between two moments.
  std::vector<double> between(double from, double to) const;
  void index_days();

  PeriodSettings settings_;
  bool begins_;
  double chunk_ = 0.0;  // days asked for at once
  std::vector<double> bounds_;
  std::int32_t first_ = 0;
  std::vector<std::int32_t> of_day_;  // the period of each midnight from floor(bounds_.front()) on
};

/// Two moments this near are one to the component: 1.5 seconds.
inline constexpr double kSameMoment = 1.5 / 86400.0;

/// 0300-01-01, a Monday as 1900-01-01 is: from it on, periods of every word begin as calendars have
/// them.
inline constexpr double kCalendarPhase = -584386.0;

}  // namespace vqmath63::host
