// Columns of numbers of a CSV file, in the forms that the component takes.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "host/client/dispatch_client.hpp"
#include "host/data/csv.hpp"

namespace vqmath63::host {

/// Reads the rows of a file, telling of the progress where that takes long.
CsvTable read_rows(const CsvFile& file, CsvReading reading);

/// Tells what was made of a file's beginning that its user has to know of.
void tell_notes(const CsvFile& file);

/// Whether a number has a place in the range of Single; a NaN has.
bool fits_single(double value);

/// UsageError when the number of an option is too large for a Single.
void check_single(const char* option, std::optional<double> value);

/// A cell as a Single; WorkError at its place when it is too large.
float single_at(const CsvFile& file, const CsvTable& table, std::size_t column, std::size_t row);

/// A column as an array of Single.
ArrayOwner singles(const CsvFile& file, const CsvTable& table, std::size_t column);

/// The columns of a file that stand for `names`: those given as "COL,...", else the ones of these
/// names, else the first ones of the file. UsageError when `option`, by which they are given, has
/// not as many; WorkError when only some have these names and stand elsewhere.
std::vector<std::string> columns_or(const CsvFile& file, const char* option,
                                    const std::string& given,
                                    const std::vector<std::string>& names);

class Columns;

/// Columns of numbers without gaps, chosen as columns_or() does. Where the first ones were taken
/// and are not numbers, WorkError says which ones are wanted, and how they are named.
Columns numbers_of(const std::string& path, const char* option, const std::string& given,
                   const std::vector<std::string>& names);

/// What can be done about missing cells where there is an option --skip.
inline constexpr const char* kSkipHint = " (--skip leaves such rows out)";

/// Some columns of a file, numbered from 0 as they were asked for. A missing cell is a NaN.
class Columns {
 public:
  /// Reads the columns, which are given by header or number; where `dated_first`, the first one may
  /// hold dates, which are day counts then, written as ISO has it or `format`. UsageError when a
  /// column is given twice.
  Columns(CsvFile file, const std::vector<std::string>& names, bool dated_first,
          std::optional<DateFormat> format = {});

  std::size_t rows() const { return table_.lines.size(); }
  std::size_t count() const { return chosen_.size(); }
  const std::string& name(std::size_t c) const { return file_.headers()[chosen_[c]]; }
  const std::string& path() const { return file_.path(); }
  const CsvFile& file() const { return file_; }
  std::vector<double>& operator[](std::size_t c) { return table_.columns[chosen_[c]].values; }
  const std::vector<double>& operator[](std::size_t c) const {
    return table_.columns[chosen_[c]].values;
  }
  bool dated(std::size_t c) const { return table_.columns[chosen_[c]].kind == CellKind::kDate; }
  /// The line of the file on which a row begins.
  std::size_t line(std::size_t row) const { return table_.lines[row]; }
  /// A cell as the user reads it.
  std::string text(std::size_t row, std::size_t c) const;

  /// WorkError at a cell, behind its text: "f.csv:3: column 2 (oil): 5 is not above 7".
  [[noreturn]] void refuse(std::size_t row, std::size_t c, const std::string& problem) const;
  /// Refuses the first missing cell; `hint` says what else can be done.
  void refuse_gaps(const char* hint = "") const;
  /// Refuses a row of column `c` that is not above the row before it.
  void refuse_steps_back(std::size_t c) const;
  /// Keeps the rows that are wanted, told by their numbers before.
  void keep_rows(const std::function<bool(std::size_t row)>& wanted);
  /// Leaves out the rows that have a missing cell, and tells the user how many.
  void leave_gaps_out();

  ArrayOwner singles(std::size_t c) const { return host::singles(file_, table_, chosen_[c]); }
  float single(std::size_t row, std::size_t c) const {
    return single_at(file_, table_, chosen_[c], row);
  }
  ArrayOwner doubles(std::size_t c) const;

 private:
  CsvFile file_;
  std::vector<std::size_t> chosen_;
  CsvTable table_;
};

}  // namespace vqmath63::host
