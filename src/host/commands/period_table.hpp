// Shows accumulated periods.
#pragma once

#include "host/commands/accumulation.hpp"
#include "host/data/output.hpp"

namespace vqmath63::host {

/// Puts a table of start, end and days of each period, then the series, where the option -o asks
/// for it. To be read: rates to five digits and cumulative values to seven, at its foot the volume
/// (sum of rate x days) of each rate. For programs: every digit.
void put_periods(const Output& output, const Production& production,
                 const Accumulated& accumulated);

}  // namespace vqmath63::host
