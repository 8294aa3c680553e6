// Where results go: a table to read, CSV on the standard output, or a CSV file.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "host/data/table.hpp"

namespace vqmath63::host {

/// UsageError when the option -o names a file that is read.
void check_output(const std::string& output, const std::string& input);

/// Whether the option -o, as it was given, leaves the result to be read on the standard output.
inline bool for_reading(const std::string& output) {
  return output.empty();
}

/// Hands a table's rows to the writer: the same ones each time that it is asked.
using FillTable = std::function<void(TableWriter& table)>;

/// A table as the option -o has it: without one to be read, with "-" as CSV on the standard output,
/// else into a CSV file, of which the user is told `content`, by default the number of its rows:
/// "out.csv: 12 rows". The file is written beside the one that may be there and takes its place
/// when it is whole. WorkError when it cannot be written; what was there stays as it was then.
void put_table(const std::string& output, std::vector<TableColumn> columns, const FillTable& fill,
               const std::string& content = {});

/// The same with rows that are there already.
void put_table(const std::string& output, std::vector<TableColumn> columns,
               const std::vector<Texts>& rows);

/// Rows without a header, on the standard output: what there is to say of a few things.
void print_list(const std::vector<Texts>& rows);

}  // namespace vqmath63::host
