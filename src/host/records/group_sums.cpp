#include "host/records/group_sums.hpp"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <numeric>

#include "host/data/moment.hpp"
#include "host/text.hpp"

namespace vqmath63::host {
namespace {

constexpr std::size_t kAtOnce = 4096;
constexpr std::size_t kEntryWords = sizeof(PeriodEntry) / sizeof(double);
static_assert(sizeof(PeriodEntry) == 2 * sizeof(double));

std::string of_group(const std::string& name) {
  if (name.empty()) return {};
  std::string text = " of '" + name;
  std::replace(text.begin(), text.end(), kKeySeparator, ' ');
  return text + "'";
}

}  // namespace

void Finding::note(const Finding& found) {
  const bool larger = count == 0 || found.size > size;
  const std::size_t total = count + 1;
  if (larger) *this = found;
  count = total;
}

void Finding::add(const Finding& others) {
  const std::size_t total = count + others.count;
  const bool ahead = others.size > size || (others.size == size && others.line < line);
  if (others.count > 0 && (count == 0 || ahead)) *this = others;
  count = total;
}

void Findings::add(const Findings& others) {
  gaps.add(others.gaps);
  no_interval.add(others.no_interval);
  twins.add(others.twins);
  filled.add(others.filled);
  skipped.add(others.skipped);
}

double GroupSums::StepCache::after(const Step& step, double moment) {
  Pair& pair = after_[static_cast<std::size_t>(std::fabs(moment)) % kPlaces];
  if (pair.from != moment) pair = {moment, step.after(moment)};
  return pair.to;
}

double GroupSums::StepCache::before(const Step& step, double moment) {
  Pair& pair = before_[static_cast<std::size_t>(std::fabs(moment)) % kPlaces];
  if (pair.from != moment) pair = {moment, step.before(moment)};
  return pair.to;
}

GroupSums::GroupSums(const RecordPlan& plan, const PeriodCalendar& calendar)
    : plan_(plan), calendar_(calendar), series_(plan.series.size()), filled_(series_) {
  index_.resize(1024);
}

PeriodEntry GroupSums::entry(std::size_t i) const {
  PeriodEntry entry;
  const double* const chunk = entries_[i / kAtOnce].get();
  std::memcpy(&entry, &chunk[i % kAtOnce * (kEntryWords + series_)], sizeof entry);
  return entry;
}

const double* GroupSums::values(std::size_t i) const {
  return &entries_[i / kAtOnce][i % kAtOnce * (kEntryWords + series_) + kEntryWords];
}

std::uint32_t GroupSums::group_of(const GroupKey& key, std::size_t line) {
  // Rows mostly go on with the same group, or with the one that has followed it before.
  if (!groups_.empty()) {
    if (groups_[last_].key == key) return last_;
    const std::uint32_t next = groups_[last_].next;
    if (groups_[next].key == key) return last_ = next;
  }
  const std::uint32_t found = find_or_add(key, line);
  groups_[last_].next = found;
  return last_ = found;
}

std::uint32_t GroupSums::find_or_add(const GroupKey& key, std::size_t line) {
  for (auto at = static_cast<std::size_t>(key.hash());; ++at) {
    std::uint32_t& place = index_[at & (index_.size() - 1)];
    if (place != 0 && groups_[place - 1].key == key) return place - 1;
    if (place != 0) continue;
    const auto group = static_cast<std::uint32_t>(groups_.size());
    place = group + 1;
    groups_.push_back({.key = key.over(names_.emplace_back(key.name()))});
    first_lines_.push_back(line);
    numbers_.resize(numbers_.size() + 2 * series_, kNever);
    if (groups_.size() * 2 > index_.size()) grow_index();
    return group;
  }
}

void GroupSums::grow_index() {
  index_.assign(4 * index_.size(), 0);
  for (std::uint32_t group = 0; group < groups_.size(); ++group) {
    auto at = static_cast<std::size_t>(groups_[group].key.hash());
    while (index_[at & (index_.size() - 1)] != 0) ++at;
    index_[at & (index_.size() - 1)] = group + 1;
  }
}

void GroupSums::add(const RecordBatch& batch, std::size_t row, std::size_t line) {
  const std::uint32_t group = group_of(batch[row].key, line);
  const double* values = batch.values(row);
  if (plan_.sort) {
    rows_.push_back({group, batch[row].time, line});
    row_values_.insert(row_values_.end(), values, values + series_);
    return;
  }
  if (batch[row].gaps) {
    if (!fill_gaps(values, group, line)) return;
    values = filled_.data();
  }
  take(group, batch[row].time, line, values);
}

// Makes a row with no gaps of one with some; false where it is passed over.
bool GroupSums::fill_gaps(const double* from, std::uint32_t group, std::size_t line) {
  const double* last = pending(group);
  for (std::size_t s = 0; s < series_; ++s) {
    filled_[s] = from[s];
    if (!std::isnan(from[s])) continue;
    if (!plan_.series[s].wanted && plan_.empty == EmptyRule::kError) {
      filled_[s] = 0.0;  // judged when all of the column is known
      continue;
    }
    if (plan_.empty == EmptyRule::kSkip) {
      findings_.skipped.note({.group = names_[group], .line = line});
      return false;
    }
    if (plan_.empty == EmptyRule::kError) {
      throw CellFault{line, plan_.series[s].column,
                      "the value is missing (--empty zero, hold or skip says what is done with "
                      "such cells)"};
    }
    const bool holds = plan_.empty == EmptyRule::kHold;
    const double held = std::isnan(last[s]) ? 0.0 : last[s];
    filled_[s] = holds ? held : plan_.empty_value;
    findings_.filled.note({.group = names_[group], .line = line});
  }
  return true;
}

void GroupSums::take(std::uint32_t group, double time, std::size_t line, const double* values) {
  Group& own = groups_[group];
  if (!std::isnan(own.stamp)) {
    if (time == own.stamp) return take_twin(group, line, values);
    if (time < own.stamp) {
      const std::string& name = names_[group];
      throw CellFault{line, plan_.date,
                      exact_moment_text(time) + " lies before " + exact_moment_text(own.stamp) +
                          ", the row" + of_group(name) + " on line " + std::to_string(own.line) +
                          (plan_.by.empty() ? "; " + plan_.by_remedy + "," : ";") +
                          " --sort brings rows into order"};
    }
    close_row(group, time);
  }
  own.before = own.stamp;
  own.stamp = time;
  own.line = line;
  std::copy(values, values + series_, pending(group));
}

void GroupSums::take_twin(std::uint32_t group, std::size_t line, const double* values) {
  const Group& own = groups_[group];
  if (plan_.twins == TwinRule::kError) {
    throw CellFault{line, plan_.date,
                    "there is a row" + of_group(names_[group]) + " of this date already, on line " +
                        std::to_string(own.line) + " (" +
                        (plan_.by.empty() ? plan_.by_remedy + "; " : "") +
                        "--twins sum adds such rows, --twins last takes the last of them)"};
  }
  findings_.twins.note({.group = names_[group], .line = line});
  for (std::size_t s = 0; s < series_; ++s) {
    double& value = pending(group)[s];
    value = plan_.twins == TwinRule::kSum ? value + values[s] : values[s];
  }
}

void GroupSums::close_row(std::uint32_t group, double next) {
  if (plan_.stamp == Stamp::kBegin) {
    close_beginning(group, next);
  } else {
    close_ending(group);
  }
}

// The interval of a row that its stamp begins; `next` is the group's next stamp, or never.
void GroupSums::close_beginning(std::uint32_t group, double next) {
  const Group& own = groups_[group];
  const double from = own.stamp;
  const double* values = pending(group);
  const bool ends = std::isnan(next);
  if (!plan_.step) return ends ? without_interval(group) : interval(group, from, next, values);
  const double usual = step_cache_.after(*plan_.step, from);
  if (!ends && !plan_.step->is_gap(usual, next)) return interval(group, from, next, values);
  const bool hold = !ends && gap(group, usual, next);
  interval(group, from, hold ? next : usual, values);
  if (!ends && !hold) interval(group, usual, next, nullptr);
}

// The interval of a row that its stamp ends.
void GroupSums::close_ending(std::uint32_t group) {
  const Group& own = groups_[group];
  const double to = own.stamp;
  const double* values = pending(group);
  if (std::isnan(own.before)) {
    // Amounts were produced in some interval; a first rate mostly is where the clock was started.
    if (!plan_.step || !plan_.any(SeriesKind::kAmount)) return without_interval(group);
    return interval(group, step_cache_.before(*plan_.step, to), to, values);
  }
  if (plan_.step) {
    const double usual = step_cache_.before(*plan_.step, to);
    if (plan_.step->is_gap(own.before, usual) && !gap(group, own.before, usual)) {
      interval(group, own.before, usual, nullptr);
      return interval(group, usual, to, values);
    }
  }
  interval(group, own.before, to, values);
}

// Notes a gap; true where the row beside it holds through.
bool GroupSums::gap(std::uint32_t group, double from, double to) {
  const std::size_t line = groups_[group].line;
  if (plan_.gap == GapRule::kError) {
    throw CellFault{line, plan_.date,
                    "a gap" + of_group(names_[group]) + " from " + exact_moment_text(from) +
                        " to " + exact_moment_text(to) + " (--gap zero or hold says what it has)"};
  }
  findings_.gaps.note(
      {.size = to - from, .group = names_[group], .line = line, .from = from, .to = to});
  return plan_.gap == GapRule::kHold;
}

void GroupSums::without_interval(std::uint32_t group) {
  Group& own = groups_[group];
  const double* values = pending(group);
  double lost = 0.0;
  for (std::size_t s = 0; s < series_; ++s) {
    if (is_cumulative(s)) {
      sums(group)[s] = values[s];
    } else {
      lost = std::max(lost, std::fabs(values[s]));
    }
  }
  if (lost > 0.0) {
    findings_.no_interval.note({.size = lost, .group = names_[group], .line = own.line});
  }
}

// Takes what a row says of its interval, period by period; without values it is a time of nothing.
void GroupSums::interval(std::uint32_t group, double from, double to, const double* values) {
  Group& own = groups_[group];
  double* const sum = sums(group);
  double share = 1.0;
  const double begin = calendar_.begin();
  if (from < begin) {
    if (to <= begin + kSameMoment) return reach(sum, values);
    share = (to - begin) / (to - from);
    from = begin;
  }
  begin_ = std::min(begin_, from);
  end_ = std::max(end_, to);
  if (std::isnan(own.until)) {
    begin_period(group, calendar_.period_of(from));
  } else if (from >= calendar_.bound(own.period + 1) - kSameMoment) {
    flush(group);
    begin_period(group, calendar_.period_of(from));
  }
  own.until = to;
  const double whole = to - from;
  for (double end = 0.0; to > (end = calendar_.bound(own.period + 1)) + kSameMoment; from = end) {
    part(own, sum, end - from, share * (end - from) / whole, values);
    for (std::size_t s = 0; values != nullptr && s < series_; ++s) {
      // What is cumulative goes straight from where it was to where it comes.
      if (is_cumulative(s)) sum[s] += (values[s] - sum[s]) * (end - from) / (to - from);
    }
    flush(group);
    begin_period(group, own.period + 1);
  }
  part(own, sum, to - from, to - from == whole ? share : share * (to - from) / whole, values);
  reach(sum, values);
}

void GroupSums::begin_period(std::uint32_t group, std::int32_t period) {
  groups_[group].period = period;
  groups_[group].days = 0.0;
  for (std::size_t s = 0; s < series_; ++s) {
    if (!is_cumulative(s)) sums(group)[s] = 0.0;
  }
}

// Some days of a period, and the share that they are of a row's interval.
void GroupSums::part(Group& group, double* sums, double days, double share,
                     const double* values) const {
  group.days += days;
  for (std::size_t s = 0; values != nullptr && s < series_; ++s) {
    if (is_cumulative(s)) continue;
    sums[s] += values[s] * (plan_.series[s].kind == SeriesKind::kAmount ? share : days);
  }
}

// The end of an interval is reached, and so are the cumulative values of its row.
void GroupSums::reach(double* sums, const double* values) const {
  for (std::size_t s = 0; values != nullptr && s < series_; ++s) {
    if (is_cumulative(s)) sums[s] = values[s];
  }
}

void GroupSums::flush(std::uint32_t group) {
  const Group& own = groups_[group];
  if (own.days <= 0.0) return;
  if (entry_count_ % kAtOnce == 0) {
    entries_.push_back(std::make_unique_for_overwrite<double[]>(kAtOnce * (kEntryWords + series_)));
  }
  double* place = &entries_.back()[entry_count_++ % kAtOnce * (kEntryWords + series_)];
  const PeriodEntry entry{group, own.period, own.days};
  std::memcpy(place, &entry, sizeof entry);
  std::copy(sums(group), sums(group) + series_, place + kEntryWords);
}

void GroupSums::finish() {
  if (plan_.sort) take_sorted();
  for (std::uint32_t group = 0; group < groups_.size(); ++group) {
    if (std::isnan(groups_[group].stamp)) continue;
    close_row(group, kNever);
    flush(group);
  }
}

void GroupSums::sort_rows(StepFinder& steps) {
  order_.resize(rows_.size());
  std::iota(order_.begin(), order_.end(), std::size_t{0});
  std::stable_sort(order_.begin(), order_.end(), [&](std::size_t a, std::size_t b) {
    return rows_[a].group != rows_[b].group ? rows_[a].group < rows_[b].group
                                            : rows_[a].time < rows_[b].time;
  });
  for (std::size_t i = 1; i < order_.size(); ++i) {
    const Row& row = rows_[order_[i]];
    const Row& before = rows_[order_[i - 1]];
    if (row.group == before.group) steps.add(before.time, row.time);
  }
}

void GroupSums::take_sorted() {
  for (const std::size_t i : order_) {
    const double* values = &row_values_[i * series_];
    const bool gaps = std::any_of(values, values + series_, [](double v) { return std::isnan(v); });
    if (gaps && !fill_gaps(values, rows_[i].group, rows_[i].line)) continue;
    take(rows_[i].group, rows_[i].time, rows_[i].line, gaps ? filled_.data() : values);
  }
}

}  // namespace vqmath63::host
