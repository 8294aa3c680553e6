// Accumulates long records onto reporting periods, in one pass over a file of any length.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "host/data/csv.hpp"
#include "host/records/group_sums.hpp"

namespace vqmath63::host {

/// What records come to: groups in the order in which the file has them first, each with entries in
/// the order of their periods.
class RecordSums {
 public:
  RecordSums(std::vector<GroupSums> shards, PeriodCalendar calendar);

  std::size_t groups() const { return groups_.size(); }
  const std::string& name(std::size_t group) const;

  std::size_t entries(std::size_t group) const;
  PeriodEntry entry(std::size_t group, std::size_t i) const;
  const double* values(std::size_t group, std::size_t i) const;
  std::size_t all_entries() const;
  std::size_t first_line(std::size_t group) const;

  /// The periods that have an entry, from the first to the last; none where there is no entry.
  std::int32_t first_period() const { return first_period_; }
  std::int32_t last_period() const { return last_period_; }
  /// The ends of a period, within what the rows cover.
  double begin(std::int32_t period) const;
  double end(std::int32_t period) const;

 private:
  struct Place {
    std::size_t shard;
    std::size_t group;
  };

  std::vector<GroupSums> shards_;
  PeriodCalendar calendar_;
  std::vector<Place> groups_;
  std::vector<std::vector<std::uint32_t>> order_;  // a shard's entries by group
  std::vector<std::vector<std::size_t>> from_;     // a shard's groups: where theirs begin in order_
  double begin_;
  double end_;
  std::int32_t first_period_ = 0;
  std::int32_t last_period_ = -1;
};

/// What was found on the way.
struct RecordReport {
  std::size_t rows = 0;
  std::optional<Step> step{};        ///< the usual one
  std::vector<CellCounts> counts{};  ///< a series
  Findings findings{};
};

/// A file of records, its beginning read.
class RecordFile {
 public:
  /// `path` "-" is the standard input; the header stands on this line, or on the next that is no
  /// comment.
  explicit RecordFile(const std::string& path, std::size_t header_line = 1);

  /// The header, and as many rows as tell how numbers are written.
  const CsvFile& head() const { return *head_; }

  /// Reads all rows. What is missing of the plan's step is found and set. Series whose cells turn
  /// out to be texts are told by the report's counts. WorkError where something is wrong.
  RecordSums accumulate(RecordPlan& plan, PeriodCalendar calendar, RecordReport& report);

  struct BothSums {
    RecordSums sums;
    std::optional<RecordSums> finer;
  };
  /// The same in one pass onto a second calendar too, which is given up where there are more rows
  /// than so many.
  BothSums accumulate(RecordPlan& plan, PeriodCalendar calendar, PeriodCalendar finer,
                      std::size_t most_rows, RecordReport& report);

 private:
  class Reading;
  void read_all(Reading& reading);

  TextBlocks blocks_;
  TextPiece first_;
  std::optional<CsvFile> head_;
};

}  // namespace vqmath63::host
