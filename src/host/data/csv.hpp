// Reads a CSV file with a header into columns of numbers, and says where a cell cannot be read.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/data/csv_form.hpp"
#include "host/data/date_format.hpp"

namespace vqmath63::host {

/// What the cells of a column are: of columns asked for by the first filled cell, else by all.
enum class CellKind { kUnknown, kNumber, kDate, kText };

/// What is wanted of a column.
enum class Want {
  kNothing,         ///< pass over it
  kNumbersIfAny,    ///< numbers; a column with more texts or dates than numbers is left out
  kNumbers,         ///< numbers, else an error
  kNumbersOrDates,  ///< numbers, or dates as day counts (see moment.hpp), else an error
  kTimes,           ///< the same, and a missing cell is an error whatever empty_as says
};

struct CsvColumn {
  CellKind kind = CellKind::kUnknown;
  std::vector<double> values;  ///< one per row; none in a column that was left out
  std::string why_left_out{};  ///< "holds no numbers ('closed' on line 7)"
};

struct CsvTable {
  std::vector<CsvColumn> columns;
  std::vector<std::size_t> lines;  ///< line of the file on which each row begins, from 1
};

struct CsvReading {
  std::vector<Want> wants;         ///< per column; missing entries are kNumbersIfAny
  std::optional<double> empty_as;  ///< value of a cell that is empty or says NaN; none: an error
  /// Asked before an empty cell is refused: it may throw what a user should know first.
  std::function<void(const CsvTable& table)> before_refusing_gap{};
  std::optional<DateFormat> date_format{};  ///< how dates are written; none: as ISO has it
  bool takes_date_format = false;  ///< whether the user may name one, which messages propose
  /// Told now and then of rows read, bytes done and bytes in all.
  std::function<void(std::size_t, std::size_t, std::size_t)> progress;
};

/// A CSV file in memory, its header read.
///
/// The delimiter (comma, semicolon, tab or vertical bar) is the one found most often in the header,
/// the decimal mark that of the first rows (see csv_form.hpp, where missing cells stand too);
/// fields may be quoted, lines end with LF or CRLF; for encodings see TextSource. Comments are
/// passed over, a row of units under the header, and empty lines, save within a file of one column,
/// where they are missing cells. Every error is a WorkError that names file, line and column.
class CsvFile {
 public:
  /// Reads the file; `path` "-" is the standard input.
  explicit CsvFile(const std::string& path);
  /// The same over a text in memory, which `path` names in messages; nothing is read of the lines
  /// before the header's.
  CsvFile(std::string path, std::string text, std::size_t header_line = 1);

  const std::string& path() const { return path_; }
  const std::vector<std::string>& headers() const { return headers_; }
  std::size_t bytes() const { return text_.size(); }
  const CsvForm& form() const { return form_; }
  /// Where the rows begin: offset in the text, and line.
  std::size_t rows_at() const { return rows_at_; }
  std::size_t rows_on_line() const { return rows_on_line_; }
  /// What was made of the lines at the beginning that a user has to know of.
  std::vector<std::string> notes() const;

  /// Index from 0 of a column given by its header (letter case matters only where two differ by
  /// nothing else) or by its number from 1.
  std::size_t column(std::string_view name_or_number) const;

  /// Reads the rows.
  CsvTable read(const CsvReading& reading) const;
  /// Hands over the texts of each row's cells, row after row; they live until the next one.
  void each_row(const std::function<void(const std::vector<std::string>&)>& take) const;

  /// "--by COL takes wells apart that share a file", with the column that is likely to name them.
  std::string by_remedy() const;
  /// "wells.csv:17: column 3 (oil): ", the beginning of every message on a cell.
  std::string place(std::size_t line, std::size_t column) const;

 private:
  void read_header(std::size_t header_line);
  void pass_units();
  // Calls take(scanner, column) for each cell of a column, and end_row(line, scanner).
  template <class TakeCell, class EndRow>
  void walk(const TakeCell& take, const EndRow& end_row) const;

  std::string path_;
  std::string text_;
  std::vector<std::string> headers_;
  CsvForm form_;
  std::size_t rows_at_ = 0;       // offset of the first row
  std::size_t rows_on_line_ = 1;  // its line
  std::size_t units_line_ = 0;
};

/// A whole text as a finite or non-finite number in C notation, a leading plus allowed; nothing
/// when it is none. Too small a number is 0, too large a one infinite.
std::optional<double> parse_number(std::string_view text);

/// Whether a CSV file holds a field in quotes; and adds one to a line as such a file holds it.
bool wants_quotes(std::string_view text);
void add_csv_field(std::string& line, std::string_view text);

}  // namespace vqmath63::host
