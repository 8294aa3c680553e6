#include "host/records/record_batch.hpp"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

#include "host/data/moment.hpp"

namespace vqmath63::host {
namespace {

constexpr double kNone = std::numeric_limits<double>::quiet_NaN();

std::uint64_t hash_of(std::string_view text) {
  constexpr std::uint64_t kOdd = 0x9E3779B97F4A7C15U;
  std::uint64_t hash = text.size();
  const auto mix = [&](std::uint64_t word) {
    hash = (hash ^ word) * kOdd;
    hash ^= hash >> 32;
  };
  const char* at = text.data();
  std::size_t left = text.size();
  for (; left >= sizeof(std::uint64_t);
       left -= sizeof(std::uint64_t), at += sizeof(std::uint64_t)) {
    std::uint64_t word = 0;
    std::memcpy(&word, at, sizeof word);
    mix(word);
  }
  std::uint64_t word = 0;
  std::memcpy(&word, at, left);
  mix(word);
  return hash;
}

// What a column is to a reader of rows: a series by its number, or one of these.
constexpr int kPass = -1;
constexpr int kDate = -2;
constexpr int kKey = -3;

std::vector<int> roles_of(const RecordPlan& plan) {
  std::vector<int> roles(plan.columns, kPass);
  for (std::size_t s = 0; s < plan.series.size(); ++s) {
    roles[plan.series[s].column] = static_cast<int>(s);
  }
  for (const std::size_t column : plan.by) roles[column] = kKey;
  roles[plan.date] = kDate;
  return roles;
}

std::string why_no_date(std::string_view text, const RecordPlan& plan) {
  if (text.empty()) return "the date is missing";
  if (plan.date_format) {
    return in_quotes(text) + " is not a date as --date-format " + plan.date_format->pattern() +
           " has it";
  }
  const std::string formats = date_formats_of(text);
  if (formats.empty() && cell_number(text, plan.form)) {
    return in_quotes(text) +
           " is a number and not a date (--date-format serial: days as spreadsheets count them)";
  }
  return why_no_moment(text) + (formats.empty() ? "" : "; --date-format " + formats + " reads it");
}

}  // namespace

void CellCounts::add(const CellCounts& later) {
  if (texts == 0 && later.texts > 0) {
    text_line = later.text_line;
    text = later.text;
  }
  if (empty == 0) empty_line = later.empty_line;
  numbers += later.numbers;
  texts += later.texts;
  empty += later.empty;
}

void RecordBatch::read(const TextPiece& piece, std::string_view text, const RecordPlan& plan) {
  memory_ = piece.memory;
  series_ = plan.series.size();
  times_.clear();
  lines_.clear();
  keys_.clear();
  hashes_.clear();
  values_.clear();
  gaps_.clear();
  made_keys_.clear();
  counts_.assign(series_, {});
  fault_.reset();
  parts_.resize(plan.by.size());
  first_time_ = std::numeric_limits<double>::infinity();
  last_time_ = -first_time_;
  FieldScanner scanner(text, 0, plan.form.delimiter);
  try {
    read_rows(scanner, plan);
  } catch (const CellFault& fault) {
    fault_ = fault;
  }
  line_count_ = scanner.line();
}

void RecordBatch::read_rows(FieldScanner& scanner, const RecordPlan& plan) {
  const std::vector<int> roles = roles_of(plan);
  const std::size_t columns = roles.size();
  while (!scanner.at_end()) {
    if (columns > 1 && scanner.skip_no_row()) continue;
    const std::size_t line = scanner.line();
    const std::size_t row = times_.size();
    gap_ = false;
    values_.resize((row + 1) * series_, kNone);
    keys_.emplace_back();
    std::size_t c = 0;
    do {
      const int role = c < columns ? roles[c] : kPass;
      if (role >= 0) {
        take_value(scanner, plan, static_cast<std::size_t>(role));
      } else if (role == kDate) {
        take_time(scanner, plan);
      } else if (role == kKey) {
        take_key(scanner, plan, c);
      } else {
        scanner.take(c);
      }
      ++c;
    } while (scanner.next_field());
    if (c != columns) {
      throw CellFault{
          line, columns,
          "the row has " + counted(c, "cell") + ", the header has " + std::to_string(columns)};
    }
    lines_.push_back(static_cast<std::uint32_t>(line));
    end_row();
  }
}

void RecordBatch::end_row() {
  if (parts_.size() > 1) {
    std::string& key = made_keys_.emplace_back(parts_[0]);
    for (std::size_t i = 1; i < parts_.size(); ++i) (key += kKeySeparator) += parts_[i];
    keys_.back() = key;
  }
  hashes_.push_back(hash_of(keys_.back()));
  gaps_.push_back(gap_ ? 1 : 0);
  first_time_ = std::min(first_time_, times_.back());
  last_time_ = std::max(last_time_, times_.back());
}

void RecordBatch::take_time(FieldScanner& scanner, const RecordPlan& plan) {
  double days = 0.0;
  if (plan.date_format || !scanner.take_plain_day(days)) {
    const std::size_t line = scanner.line();
    const std::string_view text = scanner.take(plan.date);
    const auto moment = plan.date_format ? plan.date_format->read(text) : parse_moment(text);
    if (!moment) throw CellFault{line, plan.date, why_no_date(text, plan)};
    days = *moment;
  }
  if (plan.stamp == Stamp::kLast) days = std::floor(days) + 1.0;
  times_.push_back(days);
}

void RecordBatch::take_key(FieldScanner& scanner, const RecordPlan& plan, std::size_t column) {
  const std::string_view text = scanner.take(column);
  if (plan.by.size() == 1) {
    keys_.back() = scanner.is_part(text) ? text : made_keys_.emplace_back(text);
    return;
  }
  for (std::size_t i = 0; i < plan.by.size(); ++i) {
    if (plan.by[i] == column) parts_[i].assign(text);
  }
}

void RecordBatch::take_value(FieldScanner& scanner, const RecordPlan& plan, std::size_t series) {
  double& value = values_[values_.size() - series_ + series];
  CellCounts& counts = counts_[series];
  const bool plain = !plan.form.decimal_comma && plan.form.missing.empty();
  if (plain && scanner.take_plain_number(value)) {
    ++counts.numbers;
    return;
  }
  value = kNone;
  const std::size_t line = scanner.line();
  const Series& about = plan.series[series];
  const std::string_view text = scanner.take(about.column);
  if (is_missing(text, plan.form)) {
    if (counts.empty++ == 0) counts.empty_line = line;
    gap_ = true;
    return;
  }
  const auto number = cell_number(text, plan.form);
  if (number && !std::isnan(*number)) {
    if (!std::isfinite(*number)) {
      throw CellFault{line, about.column, in_quotes(text) + " is not a finite number"};
    }
    value = *number;
    ++counts.numbers;
    return;
  }
  if (about.wanted) {
    throw CellFault{line, about.column,
                    in_quotes(text) + " is not a number (--missing " + std::string(text) +
                        " takes it for an empty cell)"};
  }
  gap_ = true;
  if (counts.texts++ == 0) {
    counts.text_line = line;
    counts.text = text;
  }
}

}  // namespace vqmath63::host
