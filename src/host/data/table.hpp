// Tables: columns and rows of texts, printed to be read or for other programs.
#pragma once

#include <cstddef>
#include <iosfwd>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/failure.hpp"

namespace vqmath63::host {

using Texts = std::vector<std::string>;

/// Where the texts of a column meet: at their ends, their beginnings or their decimal points; or at
/// the points when all are numbers, else at their beginnings.
enum class Align { kRight, kLeft, kPoint, kByContent };

/// A column of a table.
struct TableColumn {
  std::string name;
  Align align = Align::kRight;
  std::string note{};  ///< for a reader, below the name: what the values are
  std::string foot{};  ///< for a reader, at the end: what they come to
};

/// The ways in which a table is printed.
enum class TableForm {
  kAligned,   ///< to be read: two blanks between columns and none at the end of a line
  kCsv,       ///< names and rows; printed row by row
  kJson,      ///< a list with an object a row
  kMarkdown,  ///< to be read on a page: a table of pipes
};

/// The words table, csv, json and markdown, in any letter case.
std::optional<TableForm> table_form(std::string_view word);

/// Lines of texts in columns as wide as the widest of them.
class AlignedLines {
 public:
  AlignedLines() = default;
  explicit AlignedLines(std::vector<Align> aligned)
      : aligned_(std::move(aligned)), widths_(aligned_.size(), 0) {}

  /// Makes room for texts that will stand in a line.
  void widen(const Texts& cells);
  /// The same for texts of a width in a column.
  void widen(std::size_t column, std::size_t width);
  /// A line without its end; texts of columns that do not meet at the left stand at the right.
  std::string line(const Texts& cells) const;
  /// The length of the longest line that there can be.
  std::size_t width() const;

 private:
  std::vector<Align> aligned_;
  std::vector<std::size_t> widths_;
};

/// The stream that a table goes to takes no more.
struct OutputLost : WorkError {
  OutputLost() : WorkError("the output cannot be written") {}
};

/// Prints a table. One whose columns have no names has no header. Rows are not kept: all forms but
/// CSV take them twice, first to measure them. Notes and feet are for a reader, who has them in
/// Markdown as well.
///
/// In JSON a column is of numbers where every filled cell is one as JSON writes it, or a NaN or an
/// infinity, which JSON lacks; of true and false where every filled cell says True or False; else
/// of texts. Cells without such a value are null. A name that an earlier column has gets a number.
///
///   while (table.wants_rows()) { for each row: table.row(cells); }
class TableWriter {
 public:
  TableWriter(std::ostream& out, TableForm form, std::vector<TableColumn> columns);

  /// Whether the rows have to be handed over, from the first to the last, once or once more. When
  /// they need not the table is printed whole.
  bool wants_rows();
  /// Takes a row, a text a column. Throws OutputLost.
  void row(const Texts& cells);
  /// The rows of the table.
  std::size_t rows() const { return count_; }

 private:
  enum class Pass { kNone, kMeasuring, kPrinting, kDone };
  // What the cells of a column come to.
  struct Measure {
    bool numbers = true;
    bool json_numbers = true;  // and what else JSON has a word for
    bool booleans = true;
    std::size_t width = 0;
    std::size_t before_point = 0;
    std::size_t after_point = 0;
  };

  void measure(const Texts& cells);
  void print_aligned(Texts cells);
  void print_csv(const Texts& cells);
  void print_json(const Texts& cells);
  void print_markdown(const Texts& cells);
  void print_head();
  void print_aligned_head();
  void print_markdown_head();
  void print_foot();
  template <class Part>
  Texts texts_of(Part part) const;

  std::ostream& out_;
  TableForm form_;
  std::vector<TableColumn> columns_;
  Pass pass_ = Pass::kNone;
  std::size_t count_ = 0;
  std::vector<Measure> measures_;
  AlignedLines lines_;  // once measured
  Texts keys_;          // of JSON
  std::string line_;    // kept for its room
};

}  // namespace vqmath63::host
