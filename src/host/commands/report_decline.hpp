// The part of a report that shows how a rate declines: an exponential line through its rows, by
// ztRegression, and when it reaches a limit.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "host/commands/report_data.hpp"
#include "host/report/page.hpp"

namespace vqmath63::host {

struct DeclineChoice {
  std::vector<std::string> series;  ///< by name; empty: the rate of the largest volume
  std::optional<double> from;       ///< first and last moment that counts, day counts; by default
  std::optional<double> to;         ///< from the largest rate on, to the last row
  std::optional<double> limit;      ///< a rate; by default a tenth of the line's first one
};

/// ln rate = A + B days through the rows of rates above 0. A series with fewer than three of them
/// from its largest rate on is told of and has no picture. UsageError for a name that is no rate.
void add_declines(Page& page, const ReportData& data, const DeclineChoice& choice);

}  // namespace vqmath63::host
