// The numbers of a picture: a table to read, and the same as CSV to copy.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <vector>

namespace vqmath63::host {

/// The bytes that a page still takes: together less than three million.
struct PageRoom {
  static constexpr std::size_t kPictures = 1'000'000;
  std::size_t pictures = kPictures;
  std::size_t tables = 600'000;
  std::size_t csv = 500'000;

  static void use(std::size_t& room, std::size_t bytes) { room -= bytes < room ? bytes : room; }
};

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
  /// Whether the table has all rows: of very many, or where a page has no room for them any more,
  /// it has the first and the last ones.
  bool is_whole(const PageRoom& room) const { return rows_shown(room) >= rows(); }
  /// The table and its CSV, each to be opened. The room is made less by what is used of it; CSV for
  /// which it is too small is left out.
  std::string markup(PageRoom& room) const;
  /// The same with the table open to be seen, where there is no picture of it.
  std::string open_markup(PageRoom& room) const;

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
  std::size_t rows_shown(const PageRoom& room) const;
  std::string table(PageRoom& room) const;
  std::string csv_markup(PageRoom& room) const;
  std::string csv() const;

  std::string hint_;
  std::vector<Column> columns_;
};

}  // namespace vqmath63::host
