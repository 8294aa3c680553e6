// The command accumulate over records: rows of many wells, amounts, gaps.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "host/command_line.hpp"
#include "host/commands/accumulation.hpp"
#include "host/data/output.hpp"
#include "host/records/record_accumulation.hpp"

namespace vqmath63::host {

/// What the command line says of records.
struct RecordOptions {
  std::optional<std::string> by;
  std::optional<std::string> date;
  std::optional<std::string> volumes;
  std::optional<std::string> stamp;
  std::optional<std::string> gap;
  std::optional<std::string> step;
  std::optional<std::string> empty;
  std::optional<std::string> twins;
  std::optional<std::string> missing;
  std::optional<std::string> date_format;
  bool sort = false;
  bool wide = false;
  bool total = false;

  /// Whether any of them is given.
  bool any() const;
};

/// What records have in common with a table of one field.
struct RecordWork {
  std::string path;
  std::vector<std::string> columns;
  std::vector<std::string> cumulative;
  std::optional<double> empty_as;
  std::optional<double> start;
  PeriodSettings periods;
  Output output;
};

/// Makes of the options, and of the header that a file has, what its reader is to do.
RecordPlan plan_records(const RecordOptions& options, const RecordWork& work, const CsvFile& head);

/// Takes what a user has to know of a file.
using TakeNote = std::function<void(const std::string& note)>;

/// The series of the plan that hold numbers, and notes of what was found while they were read.
std::vector<std::size_t> series_of_records(const RecordPlan& plan, const RecordReport& report,
                                           const CsvFile& head, const TakeNote& note);

/// Declares the options of records.
void declare_records(Command& command, RecordOptions& options);

/// Accumulates the records of a file and prints the table; tells the user what was found on the way
/// that he has to know of.
void accumulate_records(const RecordOptions& options, const RecordWork& work);

/// Tells of series that are taken for rates although their names say that they are amounts, or
/// cumulative.
void warn_of_names(const std::vector<std::string>& names, const std::vector<bool>& rates);

}  // namespace vqmath63::host
