// What a report shows of long records: for each of their series the groups, the largest of them by
// themselves, by period and by day.
#pragma once

#include <vector>

#include "host/commands/accumulate_records.hpp"
#include "host/commands/report_data.hpp"

namespace vqmath63::host {

/// Reads the records twice, once for the periods and once for the days; files of more than five
/// million rows once, without days. What was found on the way stands in the story of the last one.
/// UsageError for the standard input.
std::vector<ReportData> read_report_records(const ReportChoice& choice,
                                            const RecordOptions& options);

}  // namespace vqmath63::host
