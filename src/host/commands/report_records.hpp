// What a report shows of long records: for each of their series the groups, the largest of them by
// themselves, by period and by day.
#pragma once

#include <vector>

#include "host/commands/accumulate_records.hpp"
#include "host/commands/report_data.hpp"

namespace vqmath63::host {

/// Reads the records once, onto the periods and, unless they have more than five million rows, onto
/// days. What was found on the way stands in the story of the last one.
std::vector<ReportData> read_report_records(const ReportChoice& choice,
                                            const RecordOptions& options);

}  // namespace vqmath63::host
