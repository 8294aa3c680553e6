// The table of what records come to: long, a row a group and period, or wide, a row a period.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/data/output.hpp"
#include "host/records/record_accumulation.hpp"

namespace vqmath63::host {

struct RecordTableShape {
  std::vector<std::string> by;      ///< headers of the groups' columns
  std::vector<std::size_t> series;  ///< those of the plan that are shown
  bool wide = false;                ///< groups stand beside one another
  bool total = false;               ///< of all groups, behind them
};

/// Prints what records come to; of both its arguments it only keeps references.
class RecordTable {
 public:
  RecordTable(const RecordSums& sums, const RecordPlan& plan, RecordTableShape shape);

  void put(const Output& output) const;

 private:
  template <class Cells>
  void add_rows(std::size_t block, Cells& cells) const;
  template <class Cells>
  void add_values(const PeriodEntry& entry, const double* values, Cells& cells) const;
  template <class Cells>
  void add_group_rows(std::size_t group, Cells& cells) const;
  template <class Cells>
  void add_total_rows(Cells& cells) const;
  template <class Cells>
  void add_period_row(std::int32_t period, Cells& cells) const;

  void sum_groups();
  void add_group(std::size_t group, std::vector<double>& last, std::vector<char>& has);
  std::vector<TableColumn> columns() const;
  std::size_t blocks() const;
  std::size_t at(std::int32_t period) const {
    return static_cast<std::size_t>(period - sums_.first_period());
  }
  double days(std::int32_t period) const { return sums_.end(period) - sums_.begin(period); }
  std::string content() const;

  const RecordSums& sums_;
  const RecordPlan& plan_;
  RecordTableShape shape_;
  std::vector<std::string> starts_;  // of each period
  std::vector<std::string> ends_;
  std::vector<double> totals_;  // a period: of each series
};

/// Writes a number, and returns what is behind it: at most kNumberRoom letters, with at most twelve
/// significant digits, which a sum of decimals holds whatever its binary digits are, and none that
/// are not needed.
char* write_number(char* to, double number);
inline constexpr std::size_t kNumberRoom = 32;

}  // namespace vqmath63::host
