// Rows of records as columns of memory.
#pragma once

#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/data/csv_scanner.hpp"
#include "host/records/record_plan.hpp"
#include "host/records/text_blocks.hpp"

namespace vqmath63::host {

/// What the cells of a series' column are.
struct CellCounts {
  std::size_t numbers = 0;
  std::size_t texts = 0;
  std::size_t empty = 0;
  std::size_t empty_line = 0;  ///< of the first empty one
  std::size_t text_line = 0;   ///< of the first text
  std::string text{};

  /// Adds those of later lines.
  void add(const CellCounts& later);
};

/// A group's name in a form that is quick to compare.
class GroupKey {
 public:
  GroupKey() = default;
  /// Of a text behind which kCellPadding bytes can be read; it is kept as it is.
  explicit GroupKey(std::string_view name);

  bool operator==(const GroupKey& other) const {
    return hash_ == other.hash_ && begin_[0] == other.begin_[0] && begin_[1] == other.begin_[1] &&
           name_.size() == other.name_.size() &&
           (name_.size() <= sizeof begin_ || name_ == other.name_);
  }
  std::string_view name() const { return name_; }
  std::uint64_t hash() const { return hash_; }
  /// The same with another text of these letters.
  GroupKey over(std::string_view name) const {
    GroupKey key = *this;
    key.name_ = name;
    return key;
  }
  /// Deals groups out over some hands.
  std::size_t hand_of(std::size_t hands) const {
    return static_cast<std::size_t>((hash_ >> 32) * hands >> 32);
  }

 private:
  std::uint64_t begin_[2] = {};  // its first letters, or all
  std::uint64_t hash_ = 0;
  std::string_view name_;
};

/// Part of a file, read: per row the group's name, the stamp, the line and a value a series.
class RecordBatch {
 public:
  RecordBatch() = default;
  RecordBatch(RecordBatch&&) = default;
  RecordBatch& operator=(RecordBatch&&) = default;

  /// Reads the rows of a text of whole lines that lies in a piece's memory. The first line has the
  /// number 0. Of what cannot be taken the first is told by fault(), and nothing is read beyond.
  void read(const TextPiece& piece, std::string_view text, const RecordPlan& plan);

  struct Row {
    double time;
    GroupKey key;
    std::uint32_t line;
    bool gaps;  ///< whether a value is NaN
  };

  std::size_t rows() const { return count_; }
  const Row& operator[](std::size_t row) const { return rows_[row]; }
  /// One a series; NaN where the cell is empty, 0 for a text.
  const double* values(std::size_t row) const { return &values_[row * series_]; }

  std::size_t line_count() const { return line_count_; }
  double first_time() const { return first_time_; }
  double last_time() const { return last_time_; }
  const std::vector<CellCounts>& counts() const { return counts_; }
  const std::optional<CellFault>& fault() const { return fault_; }

 private:
  void read_rows(FieldScanner& scanner, const RecordPlan& plan);
  void take_time(FieldScanner& scanner, const RecordPlan& plan);
  void join_time(std::size_t line, const RecordPlan& plan);
  void set_time(double days, const RecordPlan& plan);
  void take_other_value(FieldScanner& scanner, const RecordPlan& plan, std::size_t series);
  void take_key(FieldScanner& scanner, const RecordPlan& plan, std::size_t column);
  std::string_view made_key(std::string text);
  void make_room();
  void end_row(std::size_t line);

  std::shared_ptr<const std::string> memory_;  // that the keys lie in
  std::deque<std::string> made_keys_;          // that are no part of it
  std::vector<Row> rows_;  // of which count_ are there, and behind them the one at hand
  std::vector<double> values_;
  std::size_t count_ = 0;
  std::vector<CellCounts> counts_;
  std::size_t series_ = 0;
  bool is_plain_ = true;  // whether numbers may be read the quick way, with this decimal mark
  char mark_ = '.';
  std::size_t line_count_ = 0;
  double first_time_ = 0.0;
  double last_time_ = 0.0;
  std::optional<CellFault> fault_;
  std::vector<std::string> parts_;       // of the key of the row at hand
  std::vector<std::string> date_parts_;  // of its date
};

}  // namespace vqmath63::host
