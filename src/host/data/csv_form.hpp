// How a text of rows is written: what stands between its cells, how numbers and gaps are written,
// which lines are none of its rows.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vqmath63::host {

struct CsvForm {
  char delimiter = ',';        ///< comma, semicolon, tab or vertical bar
  bool decimal_comma = false;  ///< numbers have a decimal comma and not a point
  /// Words that stand for a missing cell besides those that every file may use (is_missing).
  std::vector<std::string> missing{};
};

/// The form of a text, by its header line (the delimiter found most often) and the rows that begin
/// at `rows_at` (a comma that can be no other: 0,5 and never 0.5).
char delimiter_of(std::string_view header);
bool has_decimal_comma(std::string_view rows, char delimiter);

/// Whether a line that begins so is a comment: with # or --, and no cell of these letters.
inline bool is_comment(std::string_view line, char delimiter) {
  const std::size_t mark = line.starts_with('#') ? 1 : line.starts_with("--") ? 2 : 0;
  if (mark == 0) return false;
  const char next = mark < line.size() ? line[mark] : '\n';
  return next != delimiter && (mark == 1 || next == ' ' || next == '-');
}

/// Whether a cell says that there is nothing: empty, NaN, n/a, na, null, none, #N/A, - or --, in
/// any letter case, or one of the form's own words.
bool is_missing(std::string_view text, const CsvForm& form);

/// A cell as a number: as parse_number has it, with the form's decimal mark, and with separators
/// between groups of three digits ("1,234.5"; with a decimal comma "1.234,5" or "1 234,5").
std::optional<double> cell_number(std::string_view text, const CsvForm& form);

}  // namespace vqmath63::host
