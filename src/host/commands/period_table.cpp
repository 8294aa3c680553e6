#include "host/commands/period_table.hpp"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <ostream>

#include "host/data/csv.hpp"
#include "host/data/moment.hpp"
#include "host/data/values.hpp"
#include "host/text.hpp"

namespace vqmath63::host {
namespace {

std::string fixed(double value, int decimals) {
  char text[400];
  return {text,
          std::to_chars(text, text + sizeof text, value, std::chars_format::fixed, decimals).ptr};
}

// A column of numbers as texts: whole numbers as they are, else one number of decimals for all, so
// that the largest shows `digits` digits.
std::vector<std::string> number_texts(const std::vector<double>& values, int digits,
                                      int most_decimals) {
  double largest = 0.0;
  bool whole = true;
  for (const double value : values) {
    if (!std::isfinite(value)) continue;
    largest = std::max(largest, std::fabs(value));
    whole = whole && std::trunc(value) == value;
  }
  const int before_point =
      largest > 0.0 ? static_cast<int>(std::floor(std::log10(largest))) + 1 : 1;
  const bool plain = before_point > -2 && before_point <= 15;
  const int decimals = whole ? 0 : std::clamp(digits - before_point, 0, most_decimals);
  std::vector<std::string> texts;
  for (const double value : values) {
    texts.push_back(plain && std::isfinite(value) ? fixed(value, decimals)
                                                  : number_text(static_cast<float>(value)));
  }
  return texts;
}

struct Column {
  std::vector<std::string> cells;  // header, what the values are, the periods, the foot
  std::size_t width = 0;
};

Column make_column(std::string header, std::string kind, std::vector<std::string> values,
                   std::string foot) {
  Column column;
  column.cells = {std::move(header), std::move(kind)};
  std::move(values.begin(), values.end(), std::back_inserter(column.cells));
  column.cells.push_back(std::move(foot));
  for (const std::string& cell : column.cells) {
    column.width = std::max(column.width, width_of(cell));
  }
  return column;
}

// To the microday: the differences of moments carry more digits than they know.
double tidy_days(double days) {
  return std::round(days * 1e6) / 1e6;
}

bool any_time_of_day(const Accumulated& accumulated) {
  return std::any_of(accumulated.boundaries.begin(), accumulated.boundaries.end(), has_time_of_day);
}

Column series_column(const Production& production, const Accumulated& accumulated, std::size_t j) {
  constexpr int kDecimals = 5;
  constexpr int kRateDigits = 5;
  constexpr int kVolumeDigits = 7;  // about what a Single holds
  const std::vector<float>& values = accumulated.series[j];
  if (!production.rates[j]) {
    return make_column(production.names[j], "at end",
                       number_texts({values.begin(), values.end()}, kVolumeDigits, kDecimals), "");
  }
  double volume = 0.0;
  for (std::size_t i = 0; i < values.size(); ++i) {
    volume += static_cast<double>(values[i]) * accumulated.days(i);
  }
  return make_column(production.names[j], "mean",
                     number_texts({values.begin(), values.end()}, kRateDigits, kDecimals),
                     number_texts({volume}, kVolumeDigits, kDecimals).front());
}

}  // namespace

void print_table(std::ostream& out, const Production& production, const Accumulated& accumulated) {
  const bool with_time = any_time_of_day(accumulated);
  std::vector<std::string> starts;
  std::vector<std::string> ends;
  std::vector<double> days;
  for (std::size_t i = 0; i < accumulated.periods(); ++i) {
    starts.push_back(moment_text(accumulated.boundaries[i], with_time));
    ends.push_back(moment_text(accumulated.boundaries[i + 1], with_time));
    days.push_back(tidy_days(accumulated.days(i)));
  }
  const bool any_rate =
      std::find(production.rates.begin(), production.rates.end(), true) != production.rates.end();
  double all_days = 0.0;
  for (const double each : days) all_days += each;
  std::vector<Column> columns;
  columns.push_back(make_column("start", "", std::move(starts), any_rate ? "rate x days" : ""));
  columns.push_back(make_column("end", "", std::move(ends), ""));
  constexpr int kDayDigits = 8;
  constexpr int kDayDecimals = 4;
  days.push_back(tidy_days(all_days));
  std::vector<std::string> day_texts = number_texts(days, kDayDigits, kDayDecimals);
  std::string day_sum = std::move(day_texts.back());
  day_texts.pop_back();
  columns.push_back(make_column("days", "", std::move(day_texts), std::move(day_sum)));
  for (std::size_t j = 0; j < production.names.size(); ++j) {
    columns.push_back(series_column(production, accumulated, j));
  }

  const std::size_t lines = columns.front().cells.size();
  std::size_t whole_width = 0;
  for (const Column& column : columns) whole_width += column.width + 2;
  const std::string rule(whole_width - 2, '-');
  for (std::size_t line = 0; line < lines; ++line) {
    const bool foot = line + 1 == lines;
    if (foot && !any_rate) break;
    if (line == 2 || foot) out << rule << '\n';
    std::string text;
    for (std::size_t c = 0; c < columns.size(); ++c) {
      if (c > 0) text += "  ";
      text += c < 2 ? left_aligned(columns[c].cells[line], columns[c].width)
                    : right_aligned(columns[c].cells[line], columns[c].width);
    }
    out << text.substr(0, text.find_last_not_of(' ') + 1) << '\n';
  }
}

void print_csv(std::ostream& out, const Production& production, const Accumulated& accumulated) {
  const bool with_time = any_time_of_day(accumulated);
  out << "start,end,days";
  for (const std::string& name : production.names) out << ',' << csv_field(name);
  out << '\n';
  for (std::size_t i = 0; i < accumulated.periods(); ++i) {
    out << moment_text(accumulated.boundaries[i], with_time) << ','
        << moment_text(accumulated.boundaries[i + 1], with_time) << ','
        << number_text(tidy_days(accumulated.days(i)));
    for (const std::vector<float>& series : accumulated.series) {
      out << ',' << number_text(series[i]);
    }
    out << '\n';
  }
}

}  // namespace vqmath63::host
