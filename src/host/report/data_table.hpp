// The numbers of a picture: a table to read, and the same as CSV to copy.
#pragma once

#include <span>
#include <string>
#include <vector>

namespace vqmath63::host {

class DataTable {
 public:
  /// `hint` says what else gives the rows where there are too many for a page.
  explicit DataTable(std::string hint = {}) : hint_(std::move(hint)) {}

  /// Columns, all of as many rows; `unit` stands behind the name. The numbers are written to be
  /// read with `digits` digits, and as CSV with all of them.
  void texts(std::string name, std::vector<std::string> values);
  void numbers(std::string name, const std::string& unit, std::span<const float> values,
               int digits);
  void numbers(std::string name, const std::string& unit, std::span<const double> values,
               int digits);

  std::size_t rows() const { return columns_.empty() ? 0 : columns_.front().shown.size(); }
  /// The table and its CSV, each to be opened. Of very many rows the table has the first and the
  /// last ones. `room` is how many bytes of CSV the page still takes, and is made less by those
  /// that are used; a table for which it is too small goes without.
  std::string markup(std::size_t& room) const;
  /// The same with the table open to be seen, where there is no picture of it.
  std::string open_markup(std::size_t& room) const;

 private:
  struct Column {
    std::string name;
    bool number;
    std::vector<std::string> shown;
    std::vector<std::string> exact;  // none where it is what is shown
  };

  template <class T>
  void add_numbers(std::string name, const std::string& unit, std::span<const T> values,
                   int digits);
  std::string table() const;
  std::string csv_markup(std::size_t& room) const;
  std::string csv() const;

  std::string hint_;
  std::vector<Column> columns_;
};

}  // namespace vqmath63::host
