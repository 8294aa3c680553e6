// Sums the rows of groups over reporting periods, row by row.
#pragma once

#include <cstdint>
#include <deque>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/records/period_calendar.hpp"
#include "host/records/record_batch.hpp"
#include "host/records/record_plan.hpp"

namespace vqmath63::host {

/// How often something was found that a user has to know of, and the most telling case.
struct Finding {
  std::size_t count = 0;
  double size = 0.0;  ///< of the case: days, or a value
  std::string group{};
  std::size_t line = 0;
  double from = 0.0;
  double to = 0.0;

  /// One more case, which is kept when it is larger than the one there is.
  void note(const Finding& found);
  void add(const Finding& others);
};

struct Findings {
  Finding gaps;         ///< longer than the usual step
  Finding no_interval;  ///< first or last rows that say something, and have no interval
  Finding twins;        ///< rows of a stamp that their group has already
  Finding filled;       ///< empty cells that were given a value
  Finding skipped;      ///< rows with an empty cell that were passed over

  void add(const Findings& others);
};

/// What a period has of a group: the days that the group's rows cover, and a number a series: of
/// rates the sum of rate x days, of amounts the sum, of cumulative values the last one (NaN: none).
struct PeriodEntry {
  std::uint32_t group;
  std::int32_t period;
  double days;
};

/// Groups, each with rows in the order of time (in any where the plan sorts them), and what they
/// come to. Memory grows with groups and the periods that each of them has.
class GroupSums {
 public:
  GroupSums(const RecordPlan& plan, const PeriodCalendar& calendar);
  GroupSums(GroupSums&&) = default;

  /// Takes a row; the calendar covers it and a step more at both ends. Throws CellFault with the
  /// line that is wrong.
  void add(const RecordBatch& batch, std::size_t row, std::size_t line);
  /// Where the plan sorts rows: brings them into order, and shows what follows what.
  void sort_rows(StepFinder& steps);
  /// Closes the last intervals and periods.
  void finish();

  std::size_t groups() const { return names_.size(); }
  const std::string& name(std::size_t group) const { return names_[group]; }
  std::size_t first_line(std::size_t group) const { return first_lines_[group]; }
  std::size_t entries() const { return entry_count_; }
  /// The entries of a group come in the order of their periods.
  PeriodEntry entry(std::size_t i) const;
  const double* values(std::size_t i) const;
  const Findings& findings() const { return findings_; }
  /// The moments between which all intervals lie.
  double begin() const { return begin_; }
  double end() const { return end_; }

 private:
  static constexpr double kNever = std::numeric_limits<double>::quiet_NaN();

  // The ends of usual intervals that were asked for before.
  class StepCache {
   public:
    double after(const Step& step, double moment);
    double before(const Step& step, double moment);

   private:
    struct Pair {
      double from = kNever;
      double to = kNever;
    };
    static constexpr std::size_t kPlaces = 1024;
    std::vector<Pair> after_{kPlaces};
    std::vector<Pair> before_{kPlaces};
  };

  struct Group {
    GroupKey key{};
    double before = kNever;  // the stamp before the last one
    double stamp = kNever;   // the last one
    double until = kNever;   // end of the last interval taken
    double days = 0.0;       // taken of the period at hand
    std::size_t line = 0;    // of the last stamp
    std::int32_t period = 0;
    std::uint32_t next = 0;  // the group that came after this one the last time
  };
  struct Row {
    std::uint32_t group;
    double time;
    std::size_t line;
  };

  std::uint32_t group_of(const GroupKey& key, std::size_t line);
  std::uint32_t find_or_add(const GroupKey& key, std::size_t line);
  void grow_index();
  bool fill_gaps(const double* from, std::uint32_t group, std::size_t line);
  void take(std::uint32_t group, double time, std::size_t line, const double* values);
  void take_twin(std::uint32_t group, std::size_t line, const double* values);
  void close_row(std::uint32_t group, double next);
  void close_beginning(std::uint32_t group, double next);
  void close_ending(std::uint32_t group);
  bool gap(std::uint32_t group, double from, double to);
  void without_interval(std::uint32_t group);
  void interval(std::uint32_t group, double from, double to, const double* values);
  void begin_period(std::uint32_t group, std::int32_t period);
  void part(Group& group, double* sums, double days, double share, const double* values) const;
  void reach(double* sums, const double* values) const;
  void flush(std::uint32_t group);
  void take_sorted();

  bool is_cumulative(std::size_t series) const {
    return plan_.series[series].kind == SeriesKind::kCumulative;
  }

  double* pending(std::uint32_t group) { return &numbers_[group * 2 * series_]; }
  double* sums(std::uint32_t group) { return pending(group) + series_; }

  const RecordPlan& plan_;
  const PeriodCalendar& calendar_;
  std::size_t series_;
  std::vector<Group> groups_;
  std::deque<std::string> names_;
  std::vector<std::size_t> first_lines_;
  std::vector<double> numbers_;       // a group: of its last row, and of its period at hand
  std::vector<std::uint32_t> index_;  // by hash: a group's number + 1, 0 for a free place
  std::uint32_t last_ = 0;            // the group of the last row
  std::vector<double> filled_;        // a row with its gaps filled

  std::vector<std::unique_ptr<double[]>> entries_;  // kAtOnce at a time: an entry, then values
  std::size_t entry_count_ = 0;
  double begin_ = std::numeric_limits<double>::infinity();
  double end_ = -std::numeric_limits<double>::infinity();
  std::vector<Row> rows_;  // to be sorted
  std::vector<double> row_values_;
  std::vector<std::size_t> order_;  // of the rows, sorted
  StepCache step_cache_;
  Findings findings_;
};

}  // namespace vqmath63::host
