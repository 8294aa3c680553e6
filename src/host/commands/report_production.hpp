// The parts of a report that show production: by period, stacked, cumulative, and in bins.
#pragma once

#include "host/commands/report_data.hpp"
#include "host/report/page.hpp"

namespace vqmath63::host {

/// A few numbers for who reads no further.
void add_key_figures(Page& page, const ReportData& data);

/// Means of periods as steps over the rows, a panel for each of the largest series.
void add_periods(Page& page, const ReportData& data);

/// Rates of periods on top of one another; nothing where no two series make a sum.
void add_stack(Page& page, const ReportData& data);

/// Volumes produced, and the series that are cumulative in the file.
void add_cumulative(Page& page, const ReportData& data);

/// How often rates are how large, by ztSample and ztStatistics; what these cannot work out is left
/// out.
void add_histograms(Page& page, const ReportData& data, std::int32_t bins);

/// What was done to the data.
void add_story(Page& page, const ReportData& data);

}  // namespace vqmath63::host
