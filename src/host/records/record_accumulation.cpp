#include "host/records/record_accumulation.hpp"

#include <algorithm>
#include <functional>
#include <limits>
#include <numeric>
#include <unordered_map>

#include "host/data/moment.hpp"
#include "host/data/progress.hpp"
#include "host/failure.hpp"
#include "host/records/parallel.hpp"

namespace vqmath63::host {
namespace {

constexpr std::size_t kBlock = std::size_t{1} << 21;  // of a thread

constexpr std::size_t kAnyRows = std::numeric_limits<std::size_t>::max();

}  // namespace

// Reads pieces on all threads, each a part of it, and then sums them on all threads, each its share
// of the groups: so the rows of a group are taken in the file's order whatever the machine.
class RecordFile::Reading {
 public:
  Reading(const CsvFile& head, RecordPlan& plan, RecordReport& report)
      : head_(head),
        plan_(plan),
        report_(report),
        lines_(head.rows_on_line()),
        step_is_known_(plan.step.has_value() || plan.sort) {
    report_.counts.assign(plan.series.size(), {});
  }

  /// Has rows summed onto a calendar, unless they are more than so many. What is found on the way
  /// is that of the first one.
  void add_calendar(PeriodCalendar& calendar, std::size_t most_rows) {
    Onto& onto = ontos_.emplace_back(Onto{calendar, most_rows, {}});
    for (std::size_t i = 0; i < worker_count(); ++i) onto.shards.emplace_back(plan_, calendar);
  }

  void take(const TextPiece& piece, std::string_view text) {
    std::vector<std::size_t> ends = row_ends(text, worker_count(), piece.is_quoted);
    ends.back() = text.size();  // with a row whose quotes nothing closes
    std::vector<Part> parts = step_is_known_ ? std::move(free_) : std::vector<Part>();
    parts.resize(ends.size());
    in_parallel(ends.size(), [&](std::size_t i) {
      const std::size_t from = i == 0 ? 0 : ends[i - 1];
      parts[i].rows.read(piece, text.substr(from, ends[i] - from), plan_);
    });
    for (Part& part : parts) judge(part);
    if (!piece.is_whole) {
      throw WorkError(head_.path() + ":" + std::to_string(lines_) + ": the row is too long");
    }
    std::erase_if(ontos_, [&](const Onto& onto) { return onto.most_rows < report_.rows; });
    if (step_is_known_) {
      add(parts);
      free_ = std::move(parts);
      return;
    }
    waiting_bytes_ += text.size();
    for (Part& part : parts) {
      watch_steps(part.rows);
      waiting_.push_back(std::move(part));
    }
    constexpr std::size_t kEnoughSteps = 2000;
    constexpr std::size_t kEnoughBytes = std::size_t{1} << 26;
    if (steps_.seen() >= kEnoughSteps || waiting_bytes_ >= kEnoughBytes) add_waiting();
  }

  /// The sums of each calendar that has been kept.
  std::vector<RecordSums> finish() {
    if (!step_is_known_) add_waiting();
    for (Onto& onto : ontos_) {
      StepFinder seen;
      for (GroupSums& shard : onto.shards) {
        if (plan_.sort) shard.sort_rows(seen);
      }
      if (plan_.sort && !plan_.step) plan_.step = seen.usual();
    }
    std::vector<RecordSums> sums;
    for (Onto& onto : ontos_) {
      cover(onto.calendar);
      each_shard(onto, [](GroupSums& shard) { shard.finish(); });
      if (sums.empty()) {
        for (const GroupSums& shard : onto.shards) report_.findings.add(shard.findings());
      }
      sums.emplace_back(std::move(onto.shards), std::move(onto.calendar.get()));
    }
    report_.step = plan_.step;
    return sums;
  }

  std::size_t rows() const { return report_.rows; }

 private:
  struct Part {
    RecordBatch rows;
    std::size_t line = 0;  // the file's line of its first one
  };

  // A calendar, and what hands make of it, each with its share of the groups.
  struct Onto {
    std::reference_wrapper<PeriodCalendar> calendar;
    std::size_t most_rows;
    std::vector<GroupSums> shards;
  };

  [[noreturn]] void refuse(const CellFault& fault, std::size_t from_line) const {
    const std::size_t line = fault.line + from_line;
    if (fault.column < plan_.columns)
      throw WorkError(head_.place(line, fault.column) + fault.problem);
    throw WorkError(head_.path() + ":" + std::to_string(line) + ": " + fault.problem);
  }

  // What is to be known of a part before its rows are summed.
  void judge(Part& part) {
    part.line = lines_;
    if (part.rows.fault()) refuse(*part.rows.fault(), part.line);
    lines_ += part.rows.line_count();
    report_.rows += part.rows.rows();
    for (std::size_t s = 0; s < report_.counts.size(); ++s) {
      CellCounts counts = part.rows.counts()[s];
      counts.text_line += part.line;
      counts.empty_line += part.line;
      report_.counts[s].add(counts);
    }
    refuse_far_dates(part);
    first_time_ = std::min(first_time_, part.rows.first_time());
    last_time_ = std::max(last_time_, part.rows.last_time());
  }

  // Dates that no row can mean, 9999-12-31 for instance: the calendar goes on beyond the rows.
  void refuse_far_dates(const Part& part) const {
    constexpr double kFirst = kCalendarPhase + 366.0;
    constexpr double kLast = 2921575.0;  // 9898-12-31
    if (part.rows.first_time() >= kFirst && part.rows.last_time() <= kLast) return;
    for (std::size_t i = 0; i < part.rows.rows(); ++i) {
      const double time = part.rows[i].time;
      if (time >= kFirst && time <= kLast) continue;
      refuse({part.rows[i].line, plan_.date,
              exact_moment_text(time) + " lies outside the years 301 to 9898"},
             part.line);
    }
  }

  void watch_steps(const RecordBatch& rows) {
    for (std::size_t i = 0; i < rows.rows(); ++i) {
      const auto [place, is_new] = last_of_.try_emplace(rows[i].key.name(), rows[i].time);
      if (!is_new) steps_.add(place->second, rows[i].time);
      place->second = rows[i].time;
    }
  }

  void add_waiting() {
    plan_.step = steps_.usual();
    step_is_known_ = true;
    last_of_.clear();
    add(waiting_);
    waiting_.clear();
  }

  // A step before the first row, and one behind the last.
  void cover(PeriodCalendar& calendar) const {
    if (!(first_time_ <= last_time_)) return;
    constexpr double kYear = 366.0;
    const double reach = plan_.step ? std::max(kYear, plan_.step->days) : kYear;
    calendar.cover(first_time_ - reach, last_time_ + reach);
  }

  void add(const std::vector<Part>& parts) {
    for (Onto& onto : ontos_) {
      if (!plan_.sort) cover(onto.calendar);
      each_shard(onto, [&](GroupSums& shard) {
        const auto own = static_cast<std::size_t>(&shard - onto.shards.data());
        for (const Part& part : parts) {
          for (std::size_t i = 0; i < part.rows.rows(); ++i) {
            if (part.rows[i].key.hand_of(onto.shards.size()) != own) continue;
            shard.add(part.rows, i, part.line + part.rows[i].line);
          }
        }
      });
    }
  }

  // Of the shards' faults the one first in the file is told.
  template <class Work>
  void each_shard(Onto& onto, const Work& work) const {
    std::vector<std::optional<CellFault>> faults(onto.shards.size());
    in_parallel(onto.shards.size(), [&](std::size_t i) {
      try {
        work(onto.shards[i]);
      } catch (const CellFault& fault) {
        faults[i] = fault;
      }
    });
    const CellFault* first = nullptr;
    for (const auto& fault : faults) {
      if (fault && (first == nullptr || fault->line < first->line)) first = &*fault;
    }
    if (first != nullptr) refuse(*first, 0);
  }

  const CsvFile& head_;
  RecordPlan& plan_;
  RecordReport& report_;
  std::size_t lines_;
  std::vector<Onto> ontos_;
  double first_time_ = std::numeric_limits<double>::infinity();
  double last_time_ = -std::numeric_limits<double>::infinity();
  std::vector<Part> free_;  // kept for their memory
  // While the usual step is looked for:
  bool step_is_known_;
  std::vector<Part> waiting_;
  std::size_t waiting_bytes_ = 0;
  std::unordered_map<std::string_view, double> last_of_;  // a group: its last stamp
  StepFinder steps_;
};

RecordFile::RecordFile(const std::string& path, std::size_t header_line)
    : blocks_(path, worker_count() * kBlock), first_(blocks_.next()) {
  constexpr std::size_t kHead = std::size_t{1} << 16;
  std::string_view head = first_.text;
  if (head.size() > kHead) head = head.substr(0, row_ends(head.substr(0, kHead), 1).back());
  if (head.empty()) head = first_.text;
  head_.emplace(path == "-" ? "standard input" : path, std::string(head), header_line);
}

void RecordFile::read_all(Reading& reading) {
  ReadingProgress progress(head_->path());
  std::string_view text = first_.text.substr(head_->rows_at());
  for (TextPiece piece = std::move(first_); !piece.text.empty();) {
    reading.take(piece, text);
    progress.update(reading.rows(), blocks_.bytes_done(), blocks_.bytes());
    piece = blocks_.next();
    text = piece.text;
  }
  if (reading.rows() == 0) throw WorkError(head_->path() + ": the file has a header and no rows");
}

RecordSums RecordFile::accumulate(RecordPlan& plan, PeriodCalendar calendar, RecordReport& report) {
  Reading reading(*head_, plan, report);
  reading.add_calendar(calendar, kAnyRows);
  read_all(reading);
  return std::move(reading.finish().front());
}

RecordFile::BothSums RecordFile::accumulate(RecordPlan& plan, PeriodCalendar calendar,
                                            PeriodCalendar finer, std::size_t most_rows,
                                            RecordReport& report) {
  Reading reading(*head_, plan, report);
  reading.add_calendar(calendar, kAnyRows);
  reading.add_calendar(finer, most_rows);
  read_all(reading);
  std::vector<RecordSums> sums = reading.finish();
  if (sums.size() == 1) return {std::move(sums[0]), std::nullopt};
  return {std::move(sums[0]), std::move(sums[1])};
}

RecordSums::RecordSums(std::vector<GroupSums> shards, PeriodCalendar calendar)
    : shards_(std::move(shards)),
      calendar_(std::move(calendar)),
      begin_(std::numeric_limits<double>::infinity()),
      end_(-begin_) {
  order_.resize(shards_.size());
  from_.resize(shards_.size());
  std::int32_t first = std::numeric_limits<std::int32_t>::max();
  std::int32_t last = std::numeric_limits<std::int32_t>::min();
  for (std::size_t s = 0; s < shards_.size(); ++s) {
    const GroupSums& shard = shards_[s];
    begin_ = std::min(begin_, shard.begin());
    end_ = std::max(end_, shard.end());
    // Sorted by group with the counts of their entries, which keeps the order of periods.
    std::vector<std::size_t>& from = from_[s];
    from.assign(shard.groups() + 1, 0);
    for (std::size_t i = 0; i < shard.entries(); ++i) {
      const PeriodEntry entry = shard.entry(i);
      ++from[entry.group + 1];
      first = std::min(first, entry.period);
      last = std::max(last, entry.period);
    }
    std::partial_sum(from.begin(), from.end(), from.begin());
    std::vector<std::size_t> next = from;
    order_[s].resize(shard.entries());
    for (std::size_t i = 0; i < shard.entries(); ++i) {
      order_[s][next[shard.entry(i).group]++] = static_cast<std::uint32_t>(i);
    }
    for (std::size_t g = 0; g < shard.groups(); ++g) groups_.push_back({s, g});
  }
  if (first <= last) {
    first_period_ = first;
    last_period_ = last;
  }
  std::sort(groups_.begin(), groups_.end(), [&](const Place& a, const Place& b) {
    return shards_[a.shard].first_line(a.group) < shards_[b.shard].first_line(b.group);
  });
}

const std::string& RecordSums::name(std::size_t group) const {
  return shards_[groups_[group].shard].name(groups_[group].group);
}

std::size_t RecordSums::first_line(std::size_t group) const {
  return shards_[groups_[group].shard].first_line(groups_[group].group);
}

std::size_t RecordSums::entries(std::size_t group) const {
  const auto [s, g] = groups_[group];
  return from_[s][g + 1] - from_[s][g];
}

PeriodEntry RecordSums::entry(std::size_t group, std::size_t i) const {
  const auto [s, g] = groups_[group];
  return shards_[s].entry(order_[s][from_[s][g] + i]);
}

const double* RecordSums::values(std::size_t group, std::size_t i) const {
  const auto [s, g] = groups_[group];
  return shards_[s].values(order_[s][from_[s][g] + i]);
}

std::size_t RecordSums::all_entries() const {
  std::size_t count = 0;
  for (const GroupSums& shard : shards_) count += shard.entries();
  return count;
}

double RecordSums::begin(std::int32_t period) const {
  return std::max(calendar_.bound(period), begin_);
}

double RecordSums::end(std::int32_t period) const {
  return std::min(calendar_.bound(period + 1), end_);
}

}  // namespace vqmath63::host
