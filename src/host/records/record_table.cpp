#include "host/records/record_table.hpp"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>

#include "host/data/csv.hpp"
#include "host/data/moment.hpp"
#include "host/data/output.hpp"
#include "host/records/parallel.hpp"
#include "host/text.hpp"

namespace vqmath63::host {
namespace {

constexpr int kDigits = 12;

// Cells that become lines of CSV, in a text that is as long as was needed before.
class CsvCells {
 public:
  explicit CsvCells(std::string& lines) : lines_(lines) {}
  CsvCells(const CsvCells&) = delete;
  CsvCells& operator=(const CsvCells&) = delete;
  ~CsvCells() { lines_.resize(at_); }

  void text(std::string_view cell) {
    make_room(cell.size() + 1);
    std::memcpy(lines_.data() + at_, cell.data(), cell.size());
    at_ += cell.size();
    lines_[at_++] = ',';
  }
  // The same of a text that may want quotes.
  void name(std::string_view cell) {
    if (!wants_quotes(cell)) return text(cell);
    std::string field;
    add_csv_field(field, cell);
    text(field);
  }
  void number(double value) {
    make_room(kNumberRoom + 1);
    char* const begin = lines_.data();
    char* const end = write_number(begin + at_, value);
    *end = ',';
    at_ = static_cast<std::size_t>(end - begin) + 1;
  }
  void end_row() { lines_[at_ - 1] = '\n'; }

 private:
  void make_room(std::size_t count) {
    if (at_ + count > lines_.size()) lines_.resize(std::max(2 * lines_.size(), at_ + 4096 + count));
  }

  std::string& lines_;
  std::size_t at_ = 0;
};

// Cells that become a row of texts; to be read, with the digits that a Single would hold.
struct TextCells {
  TableWriter& table;
  bool to_read;
  Texts row{};

  void text(std::string_view cell) { row.emplace_back(cell); }
  void name(std::string_view cell) { row.emplace_back(cell); }
  void number(double value) {
    constexpr int kToRead = 7;
    char text[kNumberRoom];
    double rounded = value;
    if (to_read) {
      const auto end =
          std::to_chars(text, text + sizeof text, value, std::chars_format::general, kToRead).ptr;
      std::from_chars(text, end, rounded);
    }
    row.emplace_back(text, write_number(text, rounded));
  }
  void end_row() {
    table.row(row);
    row.clear();
  }
};

// Hands over the parts of a group's name, as many as there are columns for it.
template <class Take>
void each_part(std::string_view name, std::size_t count, const Take& take) {
  for (std::size_t i = 0; i < count; ++i) {
    const std::size_t end = i + 1 < count ? name.find(kKeySeparator) : std::string_view::npos;
    take(name.substr(0, end));
    name = end == std::string_view::npos ? std::string_view() : name.substr(end + 1);
  }
}

double tidy(double days) {
  return std::round(days * 1e6) / 1e6;
}

}  // namespace

char* write_number(char* to, double number) {
  if (std::isnan(number)) return to;
  constexpr double kLeast = 1e-4;
  constexpr double kMost = 1e12;
  double size = std::fabs(number);
  if (!(size >= kLeast && size < kMost)) {
    if (number == 0.0) size = 0.0;  // of either sign
    const double shown = number == 0.0 ? 0.0 : number;
    return std::to_chars(to, to + kNumberRoom, shown, std::chars_format::general, kDigits).ptr;
  }
  constexpr double kPowers[] = {1e0, 1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7, 1e8,
                                1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15, 1e16};
  int decimals = kDigits - 1;  // behind the point, that make twelve digits
  for (double limit = 10.0; size >= limit; limit *= 10.0) --decimals;
  for (double limit = 1.0; size < limit; limit /= 10.0) ++decimals;
  // The fewest decimals that twelve digits do not add to.
  for (int fewer = 0; fewer <= decimals; ++fewer) {
    const double scaled = size * kPowers[fewer];
    const auto whole = static_cast<std::uint64_t>(scaled + 0.5);
    const double rest = std::fabs(scaled - static_cast<double>(whole));
    if (fewer < decimals && rest * kPowers[decimals - fewer] >= 0.5) continue;
    if (number < 0.0) *to++ = '-';
    char digits[kNumberRoom];
    const auto end = std::to_chars(digits, digits + sizeof digits, whole).ptr;
    const std::ptrdiff_t before = std::max<std::ptrdiff_t>(end - digits - fewer, 0);
    if (before == 0) *to++ = '0';
    to = std::copy(digits, digits + before, to);
    if (fewer > 0) *to++ = '.';
    to = std::fill_n(to, std::max<std::ptrdiff_t>(fewer - (end - digits), 0), '0');
    return std::copy(digits + before, end, to);
  }
  return to;
}

RecordTable::RecordTable(const RecordSums& sums, const RecordPlan& plan, RecordTableShape shape)
    : sums_(sums), plan_(plan), shape_(std::move(shape)) {
  bool with_time = false;
  for (auto p = sums_.first_period(); p <= sums_.last_period(); ++p) {
    with_time = with_time || has_time_of_day(sums_.begin(p)) || has_time_of_day(sums_.end(p));
  }
  for (auto p = sums_.first_period(); p <= sums_.last_period(); ++p) {
    starts_.push_back(moment_text(sums_.begin(p), with_time));
    ends_.push_back(moment_text(sums_.end(p), with_time));
  }
  if (shape_.total) sum_groups();
}

void RecordTable::sum_groups() {
  totals_.assign(starts_.size() * plan_.series.size(), 0.0);
  std::vector<double> lost(totals_.size(), 0.0);  // what the sums have rounded off
  const std::size_t series = plan_.series.size();
  for (std::size_t g = 0; g < sums_.groups(); ++g) {
    const std::size_t count = sums_.entries(g);
    for (std::size_t i = 0; i < count; ++i) {
      const std::size_t from = at(sums_.entry(g, i).period);
      // A cumulative value stays what it was when its group has ended.
      const std::size_t to = i + 1 < count ? at(sums_.entry(g, i + 1).period) : starts_.size();
      const double* values = sums_.values(g, i);
      for (std::size_t s = 0; s < series; ++s) {
        const bool stays = plan_.series[s].kind == SeriesKind::kCumulative;
        if (std::isnan(values[s])) continue;
        for (std::size_t p = from; p < (stays ? to : from + 1); ++p) {
          double& total = totals_[p * series + s];
          double& rest = lost[p * series + s];
          const double sum = total + values[s];
          rest += std::fabs(total) >= std::fabs(values[s]) ? total - sum + values[s]
                                                           : values[s] - sum + total;
          total = sum;
        }
      }
    }
  }
  for (std::size_t i = 0; i < totals_.size(); ++i) totals_[i] += lost[i];
}

template <class Cells>
void RecordTable::add_values(const PeriodEntry& entry, const double* values, Cells& cells) const {
  for (const std::size_t s : shape_.series) {
    cells.number(plan_.series[s].kind == SeriesKind::kRate ? values[s] / entry.days : values[s]);
  }
}

template <class Cells>
void RecordTable::add_group_rows(std::size_t group, Cells& cells) const {
  for (std::size_t i = 0; i < sums_.entries(group); ++i) {
    const PeriodEntry entry = sums_.entry(group, i);
    each_part(sums_.name(group), shape_.by.size(),
              [&](std::string_view part) { cells.name(part); });
    cells.text(starts_[at(entry.period)]);
    cells.text(ends_[at(entry.period)]);
    cells.number(tidy(entry.days));
    add_values(entry, sums_.values(group, i), cells);
    cells.end_row();
  }
}

template <class Cells>
void RecordTable::add_total_rows(Cells& cells) const {
  for (auto p = sums_.first_period(); p <= sums_.last_period(); ++p) {
    for (std::size_t k = 0; k < shape_.by.size(); ++k) cells.text(k == 0 ? "total" : "");
    cells.text(starts_[at(p)]);
    cells.text(ends_[at(p)]);
    cells.number(tidy(days(p)));
    add_values({0, p, days(p)}, &totals_[at(p) * plan_.series.size()], cells);
    cells.end_row();
  }
}

template <class Cells>
void RecordTable::add_period_row(std::int32_t period, Cells& cells) const {
  cells.text(starts_[at(period)]);
  cells.text(ends_[at(period)]);
  cells.number(tidy(days(period)));
  for (std::size_t g = 0; g < sums_.groups(); ++g) {
    // The first entry not before the period.
    std::size_t from = 0;
    for (std::size_t count = sums_.entries(g); count > 0;) {
      const std::size_t half = count / 2;
      const bool before = sums_.entry(g, from + half).period < period;
      if (before) from += half + 1;
      count = before ? count - half - 1 : half;
    }
    if (from < sums_.entries(g) && sums_.entry(g, from).period == period) {
      add_values(sums_.entry(g, from), sums_.values(g, from), cells);
    } else {
      for (std::size_t s = 0; s < shape_.series.size(); ++s) cells.text("");
    }
  }
  if (shape_.total) {
    add_values({0, period, days(period)}, &totals_[at(period) * plan_.series.size()], cells);
  }
  cells.end_row();
}

// A block of the table: a group's rows, or a period's.
template <class Cells>
void RecordTable::add_rows(std::size_t block, Cells& cells) const {
  if (shape_.wide) {
    add_period_row(sums_.first_period() + static_cast<std::int32_t>(block), cells);
  } else if (block < sums_.groups()) {
    add_group_rows(block, cells);
  } else {
    add_total_rows(cells);
  }
}

std::size_t RecordTable::blocks() const {
  return shape_.wide ? starts_.size() : sums_.groups() + (shape_.total ? 1 : 0);
}

std::vector<TableColumn> RecordTable::columns() const {
  std::vector<TableColumn> columns;
  if (!shape_.wide) {
    for (const std::string& name : shape_.by) columns.push_back({name, Align::kLeft});
  }
  columns.push_back({"start", Align::kLeft});
  columns.push_back({"end", Align::kLeft});
  columns.push_back({"days", Align::kPoint});
  const auto add_series = [&](const std::string& group) {
    for (const std::size_t s : shape_.series) {
      const Series& series = plan_.series[s];
      const bool alone = !group.empty() && shape_.series.size() == 1;
      const std::string name = group.empty() ? series.name
                               : alone       ? group
                                             : group + " " + series.name;
      columns.push_back({name, Align::kPoint,
                         series.kind == SeriesKind::kRate     ? "mean"
                         : series.kind == SeriesKind::kAmount ? "sum"
                                                              : "at end"});
    }
  };
  if (!shape_.wide) {
    add_series("");
    return columns;
  }
  for (std::size_t g = 0; g < sums_.groups(); ++g) {
    std::string name;
    each_part(sums_.name(g), shape_.by.size(), [&](std::string_view part) {
      name += (name.empty() ? "" : " ") + std::string(part);
    });
    add_series(name);
  }
  if (shape_.total) add_series("total");
  return columns;
}

std::string RecordTable::content() const {
  const std::string groups = shape_.by.empty() ? "" : counted(sums_.groups(), "group") + " and ";
  return counted(starts_.size(), "period") + " of " + groups +
         std::to_string(shape_.series.size()) + " series";
}

void RecordTable::put(const Output& output) const {
  if (output.table_form() != TableForm::kCsv) {
    const auto fill = [&](TableWriter& table) {
      TextCells cells{table, output.for_reading()};
      for (std::size_t block = 0; block < blocks(); ++block) add_rows(block, cells);
    };
    return put_table(output, columns(), fill, content());
  }
  constexpr std::size_t kRowsAtOnce = 16384;  // of a thread
  const std::size_t rows = sums_.all_entries() / std::max<std::size_t>(sums_.groups(), 1) + 1;
  const std::size_t at_once = shape_.wide ? 1 : std::max<std::size_t>(kRowsAtOnce / rows, 1);
  std::vector<std::string> parts(worker_count());
  std::size_t next = 0;
  bool begun = false;
  put_lines(
      output,
      [&](std::string& lines) {
        if (!begun) {
          CsvCells cells(lines);
          for (const TableColumn& column : columns()) cells.name(column.name);
          cells.end_row();
        }
        begun = true;
        in_parallel(parts.size(), [&](std::size_t i) {
          CsvCells cells(parts[i]);
          const std::size_t from = std::min(next + i * at_once, blocks());
          const std::size_t to = std::min(from + at_once, blocks());
          for (std::size_t block = from; block < to; ++block) add_rows(block, cells);
        });
        next = std::min(next + parts.size() * at_once, blocks());
        for (const std::string& part : parts) lines += part;
      },
      content());
}

}  // namespace vqmath63::host
