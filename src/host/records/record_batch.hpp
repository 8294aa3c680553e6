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

/// Part of a file, read: per row the group's name, the stamp, the line and a value a series.
class RecordBatch {
 public:
  /// Reads the rows of a text of whole lines that lies in a piece's memory. The first line has the
  /// number 0. Of what cannot be taken the first is told by fault(), and nothing is read beyond.
  void read(const TextPiece& piece, std::string_view text, const RecordPlan& plan);

  std::size_t rows() const { return times_.size(); }
  double time(std::size_t row) const { return times_[row]; }
  std::size_t line(std::size_t row) const { return lines_[row]; }
  std::string_view key(std::size_t row) const { return keys_[row]; }
  std::uint64_t hash(std::size_t row) const { return hashes_[row]; }
  /// One a series; NaN where the cell is empty or no number.
  const double* values(std::size_t row) const { return &values_[row * series_]; }
  /// Whether one of them is NaN.
  bool gaps(std::size_t row) const { return gaps_[row] != 0; }

  std::size_t line_count() const { return line_count_; }
  double first_time() const { return first_time_; }
  double last_time() const { return last_time_; }
  const std::vector<CellCounts>& counts() const { return counts_; }
  const std::optional<CellFault>& fault() const { return fault_; }

 private:
  void read_rows(FieldScanner& scanner, const RecordPlan& plan);
  void take_time(FieldScanner& scanner, const RecordPlan& plan);
  void take_value(FieldScanner& scanner, const RecordPlan& plan, std::size_t series);
  void take_key(FieldScanner& scanner, const RecordPlan& plan, std::size_t column);
  void end_row();

  std::shared_ptr<const std::string> memory_;  // that the keys lie in
  std::deque<std::string> made_keys_;          // that are no part of it
  std::vector<double> times_;
  std::vector<std::uint32_t> lines_;
  std::vector<std::string_view> keys_;
  std::vector<std::uint64_t> hashes_;
  std::vector<double> values_;
  std::vector<char> gaps_;
  std::vector<CellCounts> counts_;
  std::size_t series_ = 0;
  std::size_t line_count_ = 0;
  double first_time_ = 0.0;
  double last_time_ = 0.0;
  std::optional<CellFault> fault_;
  std::vector<std::string> parts_;  // of the key of the row at hand
  bool gap_ = false;                // in the row at hand
};

}  // namespace vqmath63::host
