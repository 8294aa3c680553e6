// Where results go: a table to read, CSV on the standard output, or a CSV file.
#pragma once

#include <functional>
#include <iosfwd>
#include <string>
#include <vector>

#include "host/data/table.hpp"

namespace vqmath63::host {

/// UsageError when the option -o names a file that is read.
void check_output(const std::string& output, const std::string& input);

/// Writes a file and tells of it: "out.csv: 12 rows". WorkError when it cannot be written.
void write_file(const std::string& path, const std::string& told,
                const std::function<void(std::ostream&)>& print);

/// Rows as the option -o has it: without one an aligned table, with "-" CSV on the standard output,
/// else a CSV file.
void put_rows(const std::string& output, TextRows rows, const std::vector<Align>& aligned = {});

}  // namespace vqmath63::host
