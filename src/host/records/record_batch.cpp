#include "host/records/record_batch.hpp"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <memory>

#include "host/data/moment.hpp"

namespace vqmath63::host {
namespace {

// No group's name, with what can be read behind it.
constexpr char kNoLetters[kCellPadding] = {};
constexpr std::string_view kNoName(kNoLetters, 0);

constexpr double kNone = std::numeric_limits<double>::quiet_NaN();

// What a column is to a reader of rows: a series by its number, or one of these.
constexpr int kPass = -1;
constexpr int kDate = -2;
constexpr int kKey = -3;
constexpr int kDatePart = -4;

std::vector<int> roles_of(const RecordPlan& plan) {
  std::vector<int> roles(plan.columns, kPass);
  for (std::size_t s = 0; s < plan.series.size(); ++s) {
    roles[plan.series[s].column] = static_cast<int>(s);
  }
  for (const std::size_t column : plan.by) roles[column] = kKey;
  roles[plan.date] = kDate;
  for (const std::size_t column : plan.date_parts) roles[column] = kDatePart;
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
           " is a number and not a date (--date-format serial: days as spreadsheets count them; "
           "--date YEAR,MONTH: columns that make one together)";
  }
  return why_no_moment(text) + (formats.empty() ? "" : "; --date-format " + formats + " reads it");
}

}  // namespace

GroupKey::GroupKey(std::string_view name) : name_(name) {
  constexpr std::size_t kWord = sizeof(std::uint64_t);
  constexpr std::uint64_t kOdd = 0x9E3779B97F4A7C15U;
  // The bits of a text's first letters, eight at most.
  const auto word_of = [](const char* at, std::size_t letters) {
    std::uint64_t word = 0;
    std::memcpy(&word, at, kWord);
    return letters >= kWord ? word : letters == 0 ? 0 : word << 8 * (kWord - letters);
  };
  begin_[0] = word_of(name.data(), name.size());
  begin_[1] = name.size() > kWord ? word_of(name.data() + kWord, name.size() - kWord) : 0;
  const auto mix = [&](std::uint64_t word) {
    hash_ = (hash_ ^ word) * kOdd;
    hash_ ^= hash_ >> 29;
  };
  mix(begin_[0]);
  mix(begin_[1] + name.size());
  for (std::size_t i = 2 * kWord; i < name.size(); i += kWord) {
    mix(word_of(name.data() + i, name.size() - i));
  }
  hash_ *= kOdd;
}

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
  count_ = 0;
  made_keys_.clear();
  counts_.assign(series_, {});
  fault_.reset();
  parts_.resize(plan.by.size());
  date_parts_.resize(plan.date_parts.size());
  is_plain_ = plan.form.may_be_plain();
  mark_ = plan.form.mark();
  first_time_ = std::numeric_limits<double>::infinity();
  last_time_ = -first_time_;
  FieldScanner scanner(text, 0, plan.form.delimiter);
  try {
    read_rows(scanner, plan);
  } catch (const CellFault& fault) {
    fault_ = fault;
  }
  for (CellCounts& counts : counts_) counts.numbers = count_ - counts.texts - counts.empty;
  line_count_ = scanner.line();
}

void RecordBatch::read_rows(FieldScanner& scanner, const RecordPlan& plan) {
  const std::vector<int> roles = roles_of(plan);
  const std::size_t columns = roles.size();
  while (!scanner.at_end()) {
    if (columns > 1 && scanner.skip_no_row()) continue;
    const std::size_t line = scanner.line();
    if (count_ == rows_.size()) make_room();
    rows_[count_].gaps = false;
    std::size_t c = 0;
    bool beyond = false;  // a cell without a header that is not empty
    do {
      const int role = c < columns ? roles[c] : kPass;
      if (role >= 0) {
        const auto series = static_cast<std::size_t>(role);
        double& value = values_[count_ * series_ + series];
        if (!is_plain_ || !scanner.take_plain_number(value, mark_)) {
          take_other_value(scanner, plan, series);
        }
      } else if (role == kDate) {
        take_time(scanner, plan);
      } else if (role == kKey) {
        take_key(scanner, plan, c);
      } else if (role == kDatePart) {
        for (std::size_t i = 0; i < date_parts_.size(); ++i) {
          if (plan.date_parts[i] == c) date_parts_[i].assign(scanner.take(c));
        }
      } else if (!scanner.take(c).empty() && c >= columns) {
        beyond = true;
      }
      ++c;
    } while (scanner.next_field());
    if (c < columns || beyond) {
      throw CellFault{
          line, columns,
          "the row has " + counted(c, "cell") + ", the header has " + std::to_string(columns)};
    }
    if (!date_parts_.empty()) join_time(line, plan);
    end_row(line);
  }
}

void RecordBatch::make_room() {
  constexpr std::size_t kLeast = 1024;
  rows_.resize(std::max(kLeast, 2 * rows_.size()));
  values_.resize(rows_.size() * series_);
}

void RecordBatch::end_row(std::size_t line) {
  Row& row = rows_[count_++];
  row.line = static_cast<std::uint32_t>(line);
  if (parts_.size() > 1) {
    std::string key = parts_[0];
    for (std::size_t i = 1; i < parts_.size(); ++i) (key += kKeySeparator) += parts_[i];
    row.key = GroupKey(made_key(std::move(key)));
  } else if (parts_.empty()) {
    row.key = GroupKey(kNoName);
  }
  first_time_ = std::min(first_time_, row.time);
  last_time_ = std::max(last_time_, row.time);
}

std::string_view RecordBatch::made_key(std::string text) {
  const std::size_t size = text.size();
  text.resize(size + kCellPadding);
  return std::string_view(made_keys_.emplace_back(std::move(text))).substr(0, size);
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
  set_time(days, plan);
}

// A year, a month and a day each in a column of its own; a day and a time of day; or what the
// user's format has of them with a blank between each two.
void RecordBatch::join_time(std::size_t line, const RecordPlan& plan) {
  std::string text = date_parts_[0];
  for (std::size_t i = 1; i < date_parts_.size(); ++i) (text += ' ') += date_parts_[i];
  std::optional<double> moment;
  if (plan.date_format) {
    moment = plan.date_format->read(text);
  } else if (!(moment = parse_moment(text))) {
    static const DateFormat days("YYYY M D");
    static const DateFormat months("YYYY M");
    moment = (date_parts_.size() == 2 ? months : days).read(text);
  }
  if (!moment) throw CellFault{line, plan.date, why_no_date(text, plan)};
  set_time(*moment, plan);
}

void RecordBatch::set_time(double days, const RecordPlan& plan) {
  rows_[count_].time = plan.stamp == Stamp::kLast ? std::floor(days) + 1.0 : days;
}

void RecordBatch::take_key(FieldScanner& scanner, const RecordPlan& plan, std::size_t column) {
  const std::string_view text = scanner.take(column);
  if (plan.by.size() == 1) {
    // In place: a copy would have to wait for the hash.
    std::construct_at(&rows_[count_].key,
                      scanner.is_part(text) ? text : made_key(std::string(text)));
    return;
  }
  for (std::size_t i = 0; i < plan.by.size(); ++i) {
    if (plan.by[i] == column) parts_[i].assign(text);
  }
}

void RecordBatch::take_other_value(FieldScanner& scanner, const RecordPlan& plan,
                                   std::size_t series) {
  double& value = values_[count_ * series_ + series];
  CellCounts& counts = counts_[series];
  value = kNone;
  const std::size_t line = scanner.line();
  const Series& about = plan.series[series];
  const std::string_view text = scanner.take(about.column);
  if (is_missing(text, plan.form)) {
    if (counts.empty++ == 0) counts.empty_line = line;
    rows_[count_].gaps = true;
    return;
  }
  const auto number = cell_number(text, plan.form);
  if (number && !std::isnan(*number)) {
    if (!std::isfinite(*number)) {
      throw CellFault{line, about.column, in_quotes(text) + " is not a finite number"};
    }
    value = *number;
    return;
  }
  if (about.wanted) {
    const std::string remedy = decimal_remedy(text, plan.form);
    throw CellFault{
        line, about.column,
        in_quotes(text) + " is not a number" +
            (remedy.empty() ? " (--missing " + std::string(text) + " takes it for an empty cell)"
                            : remedy)};
  }
  value = 0.0;  // the column is judged when all of it is known
  if (counts.texts++ == 0) {
    counts.text_line = line;
    counts.text = text;
  }
}

}  // namespace vqmath63::host
