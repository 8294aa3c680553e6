// Tables to read: rows of texts in aligned columns.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace vqmath63::host {

/// Rows of as many cells each, the first of them the header.
using TextRows = std::vector<std::vector<std::string>>;

/// Where the texts of a column meet: at their ends, their beginnings or their decimal points.
enum class Align { kRight, kLeft, kPoint };

/// Prints rows with two blanks between columns and none at the end of a line. A column that
/// `aligned` does not tell of is aligned at the right; the header never at a point.
void print_rows(std::ostream& out, TextRows rows, const std::vector<Align>& aligned = {});

/// The same rows as CSV.
void print_csv_rows(std::ostream& out, const TextRows& rows);

}  // namespace vqmath63::host
