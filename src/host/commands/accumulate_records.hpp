// The command accumulate over records: rows of many wells, amounts, gaps.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "host/commands/record_options.hpp"
#include "host/data/output.hpp"
#include "host/records/record_accumulation.hpp"

namespace vqmath63::host {

/// Takes what a user has to know of a file.
using TakeNote = std::function<void(const std::string& note)>;

/// The series of the plan that hold numbers, and notes of what was found while they were read.
std::vector<std::size_t> series_of_records(const RecordPlan& plan, const RecordReport& report,
                                           const RecordSums& sums, const CsvFile& head,
                                           const TakeNote& note);

/// WorkError, with the remedy, where records come to no period.
void refuse_nothing(const RecordSums& sums, const RecordReport& report,
                    const std::optional<double>& start);

/// Accumulates the records of a file and prints the table; tells the user what was found on the way
/// that he has to know of.
void accumulate_records(const RecordOptions& options, const RecordWork& work);

/// What there is to tell of series whose names say that they are something else than they are
/// taken for.
std::vector<std::string> notes_of_names(const std::vector<std::string>& names,
                                        const std::vector<SeriesKind>& kinds);

}  // namespace vqmath63::host
