// Moments counted in period units from an origin: the calendar of samples and of boundaries.
#pragma once

#include <cstdint>
#include <memory>

#include "accumulate/period_words.hpp"
#include "frame/companions.hpp"

namespace vqmath63 {

/// Counts moments in units from an origin. Moments are day counts (see day_count).
///
/// A fixed unit is an exact number of minutes. A calendar unit goes by whole months from the
/// origin itself, the day clamped to the month's end, so that the 31st never drifts: 31 January,
/// 28 February, 31 March. A fraction is that share of the following unit's own length.
class UnitCalendar {
 public:
  /// Fault 5 for an origin that is NaN or outside the years 100 to 9999.
  UnitCalendar(std::shared_ptr<ztDateTools> tools, double origin, PeriodUnit unit);

  double origin() const { return origin_; }

  /// The moment `units` units after the origin (before, when negative). Fault 5 for a NaN and
  /// outside the years 100 to 9999. O(1).
  double moment(double units) const;

  /// The moment of a whole number of units, or infinity when that lies after year 9999.
  double moment_or_never(double units) const;

  /// The largest k >= 0 whose moment k x `step` units after the origin is not later than `time`;
  /// 0 when even the origin is later. O(1).
  std::int64_t last_multiple_until(double time, double step) const;

 private:
  double whole_months(double units) const;

  std::shared_ptr<ztDateTools> tools_;
  double origin_;
  PeriodUnit unit_;
};

}  // namespace vqmath63
