// How a text of rows is written: what stands between its cells, how numbers and gaps are written,
// which lines are none of its rows.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vqmath63::host {

/// What tells the decimal mark of a text's numbers.
enum class MarkIsFrom {
  kCells,      ///< a cell that can be read in no other way
  kDelimiter,  ///< the delimiter, beside nothing but cells like 1,234 or 1.234
  kNothing,    ///< no cell: one like 1,234 that comes later is neither 1234 nor 1.234
};

struct CsvForm {
  char delimiter = ',';        ///< comma, semicolon, tab or vertical bar
  bool decimal_comma = false;  ///< numbers have a decimal comma and not a point
  MarkIsFrom mark_is_from = MarkIsFrom::kCells;
  /// Words that stand for a missing cell besides those that every file may use (is_missing).
  std::vector<std::string> missing{};

  char mark() const { return decimal_comma ? ',' : '.'; }
  /// Whether a cell that is a plain number can be nothing else.
  bool may_be_plain() const { return delimiter != mark() && missing.empty(); }
};

/// The form of a text, by its header line (the delimiter found most often) and its rows (a comma
/// that can be no other: 0,5 and never 0.5), of which no more than it takes are looked at.
char delimiter_of(std::string_view header);
void find_decimal_mark(std::string_view rows, CsvForm& form);

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
/// between groups of three digits ("1,234.5" or "1 234.5"; with a decimal comma "1.234,5" or
/// "1 234,5"; the blank may be one that breaks no line). Bookkeepers' "(12.5)" and "12.5-" are
/// below zero.
std::optional<double> cell_number(std::string_view text, const CsvForm& form);

/// What a user has to know of MarkIsFrom::kDelimiter; nothing where it is not so.
std::string doubtful_mark(const CsvForm& form);

/// What makes a number of a cell that cell_number does not take: " (--decimal comma reads it)", or
/// nothing.
std::string decimal_remedy(std::string_view text, const CsvForm& form);

}  // namespace vqmath63::host
