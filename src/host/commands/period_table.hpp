// Shows accumulated periods: as a table to read, or as CSV.
#pragma once

#include <iosfwd>

#include "host/commands/accumulation.hpp"

namespace vqmath63::host {

/// An aligned table: start, end and days of each period, then the series, rates to five digits and
/// cumulative values to seven; at its foot the volume (sum of rate x days) of each rate.
void print_table(std::ostream& out, const Production& production, const Accumulated& accumulated);

/// The same rows as CSV with every digit, without the foot.
void print_csv(std::ostream& out, const Production& production, const Accumulated& accumulated);

}  // namespace vqmath63::host
