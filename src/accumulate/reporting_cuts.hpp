// Where the boundaries of the reporting periods fall among the samples of a profile.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "accumulate/unit_calendar.hpp"

namespace vqmath63 {

/// One edge of a reporting period. Neighbouring periods share theirs.
struct ReportingCut {
  double time = 0.0;        ///< day count; that of the sample where the cut is one
  std::int32_t sample = 0;  ///< the sample it is, or the first one after it (0-based)
  bool inserted = false;    ///< true when it falls between samples and needs a row of its own
};

/// A boundary this close to a sample, in days, is that sample: two reads of the clock that mean
/// the same moment differ by less.
inline constexpr double kSameMoment = 1.5 / 86400.0;

/// Cuts the samples at `times` (ascending day counts) into reporting periods whose boundary k is
/// the moment k x `step` units after the calendar's origin.
///
/// The first cut is the start of reporting: the origin, or the first sample when that is later.
/// The last cut is the last sample. Every period between neighbouring cuts has some length. Of
/// samples at the same time, the last is the cut: a step of a cumulative at a boundary belongs to
/// the period that it ends. Fault 5 when nothing is left to report; fault 11 beyond 2^25 steps,
/// whose ends Singles of days cannot tell apart; fault 7 when the cuts and
/// samples would make a table of `columns` columns too large to address. O(samples + cuts).
std::vector<ReportingCut> reporting_cuts(std::span<const double> times,
                                         const UnitCalendar& boundaries, double step,
                                         std::int64_t columns);

}  // namespace vqmath63
