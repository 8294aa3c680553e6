#include "host/commands/period_table.hpp"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "host/data/moment.hpp"
#include "host/data/output.hpp"
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

// To the microday: the differences of moments carry more digits than they know.
double tidy_days(double days) {
  return std::round(days * 1e6) / 1e6;
}

bool any_time_of_day(const Accumulated& accumulated) {
  return std::any_of(accumulated.boundaries.begin(), accumulated.boundaries.end(), has_time_of_day);
}

// A column of a table to read, and its texts.
struct Column {
  TableColumn about;
  Texts texts;
};

Column series_column(const Production& production, const Accumulated& accumulated, std::size_t j) {
  constexpr int kDecimals = 5;
  constexpr int kRateDigits = 5;
  constexpr int kVolumeDigits = 7;  // about what a Single holds
  const std::vector<float>& values = accumulated.series[j];
  const std::vector<double> numbers(values.begin(), values.end());
  const std::string& name = production.names[j];
  if (!production.rates[j]) {
    return {{name, Align::kRight, "at end"}, number_texts(numbers, kVolumeDigits, kDecimals)};
  }
  double volume = 0.0;
  for (std::size_t i = 0; i < values.size(); ++i) volume += numbers[i] * accumulated.days(i);
  return {{name, Align::kRight, "mean", number_texts({volume}, kVolumeDigits, kDecimals).front()},
          number_texts(numbers, kRateDigits, kDecimals)};
}

// The days of each period, and of all at the foot.
Column days_column(const Accumulated& accumulated, bool with_foot) {
  constexpr int kDigits = 8;
  constexpr int kDecimals = 4;
  std::vector<double> days;
  double all = 0.0;
  for (std::size_t i = 0; i < accumulated.periods(); ++i) {
    days.push_back(tidy_days(accumulated.days(i)));
    all += days.back();
  }
  days.push_back(tidy_days(all));
  Column column{{"days"}, number_texts(days, kDigits, kDecimals)};
  if (with_foot) column.about.foot = column.texts.back();
  return column;
}

void put_to_read(const Production& production, const Accumulated& accumulated) {
  const bool with_time = any_time_of_day(accumulated);
  const bool any_rate =
      std::find(production.rates.begin(), production.rates.end(), true) != production.rates.end();
  std::vector<Column> numbers{days_column(accumulated, any_rate)};
  for (std::size_t j = 0; j < production.names.size(); ++j) {
    numbers.push_back(series_column(production, accumulated, j));
  }
  std::vector<TableColumn> columns{{"start", Align::kLeft, "", any_rate ? "rate x days" : ""},
                                   {"end", Align::kLeft}};
  for (const Column& column : numbers) columns.push_back(column.about);
  put_table("", std::move(columns), [&](TableWriter& table) {
    for (std::size_t i = 0; i < accumulated.periods(); ++i) {
      Texts row{moment_text(accumulated.boundaries[i], with_time),
                moment_text(accumulated.boundaries[i + 1], with_time)};
      for (const Column& column : numbers) row.push_back(column.texts[i]);
      table.row(row);
    }
  });
}

}  // namespace

void put_periods(const std::string& output, const Production& production,
                 const Accumulated& accumulated) {
  if (for_reading(output)) return put_to_read(production, accumulated);
  const bool with_time = any_time_of_day(accumulated);
  std::vector<TableColumn> columns{{"start"}, {"end"}, {"days"}};
  for (const std::string& name : production.names) columns.push_back({name});
  const auto fill = [&](TableWriter& table) {
    Texts row(3 + accumulated.series.size());
    for (std::size_t i = 0; i < accumulated.periods(); ++i) {
      row[0] = moment_text(accumulated.boundaries[i], with_time);
      row[1] = moment_text(accumulated.boundaries[i + 1], with_time);
      row[2] = number_text(tidy_days(accumulated.days(i)));
      for (std::size_t j = 0; j < accumulated.series.size(); ++j) {
        row[3 + j] = number_text(accumulated.series[j][i]);
      }
      table.row(row);
    }
  };
  put_table(output, std::move(columns), fill,
            counted(accumulated.periods(), "period") + " of " +
                std::to_string(production.names.size()) + " series");
}

}  // namespace vqmath63::host
