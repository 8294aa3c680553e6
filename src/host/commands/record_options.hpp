// What the command line says of records, for the commands that take them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "host/command_line.hpp"
#include "host/commands/accumulation.hpp"
#include "host/data/csv.hpp"
#include "host/data/date_format.hpp"
#include "host/data/output.hpp"
#include "host/records/record_plan.hpp"

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
  std::optional<std::string> decimal;
  std::int32_t header = 1;
  bool sort = false;
  bool wide = false;
  bool total = false;

  /// Whether any of them is given.
  bool any() const;
  /// How dates are written, where the line says it.
  std::optional<DateFormat> dates() const;
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

/// Declares the options of records.
void declare_records(Command& command, RecordOptions& options);

/// Makes of the options, and of the header that a file has, what its reader is to do.
RecordPlan plan_records(const RecordOptions& options, const RecordWork& work, const CsvFile& head);

}  // namespace vqmath63::host
