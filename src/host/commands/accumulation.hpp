// Accumulates a production table onto reporting periods through the class ztAccumulate, by name.
#pragma once

#include <string>
#include <vector>

#include "host/commands/production.hpp"
#include "host/data/reporting_periods.hpp"

namespace vqmath63::host {

/// The result: period i runs from boundary i to boundary i + 1.
struct Accumulated {
  std::vector<double> boundaries;          ///< day counts, one more than there are periods
  std::vector<std::vector<float>> series;  ///< per series the value of each period

  std::size_t periods() const { return boundaries.size() - 1; }
  double days(std::size_t period) const { return boundaries[period + 1] - boundaries[period]; }
};

/// Accumulates. WorkError with a plain sentence when the component says that it did not succeed.
///
/// The component tells the end of a period as elapsed days in a Single, which carries 24 bits: at
/// ten years a third of a minute, at a hundred five minutes. Each boundary is therefore taken as
/// the roundest clock time (midnight, else a whole hour, minute, second) within that spacing.
Accumulated accumulate(const Production& production, const PeriodSettings& settings);

}  // namespace vqmath63::host
