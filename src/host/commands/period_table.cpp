#include "host/commands/period_table.hpp"

#include <algorithm>
#include <cmath>

#include "host/data/moment.hpp"
#include "host/data/number_style.hpp"
#include "host/data/output.hpp"
#include "host/data/values.hpp"
#include "host/text.hpp"

namespace vqmath63::host {
namespace {

// To the microday: the differences of moments carry more digits than they know.
double tidy_days(double days) {
  return std::round(days * 1e6) / 1e6;
}

bool any_time_of_day(const Accumulated& accumulated) {
  return std::any_of(accumulated.boundaries.begin(), accumulated.boundaries.end(), has_time_of_day);
}

constexpr int kDecimals = 5;
constexpr int kRateDigits = 5;
constexpr int kVolumeDigits = 7;  // about what a Single holds

// A series to read: what stands over and under it, and how its values are written.
struct SeriesColumn {
  TableColumn about;
  NumberStyle style;
};

SeriesColumn series_column(const Production& production, const Accumulated& accumulated,
                           std::size_t j) {
  const std::vector<float>& values = accumulated.series[j];
  const std::string& name = production.names[j];
  if (!production.rates[j]) {
    return {{name, Align::kRight, "at end"}, {values, kVolumeDigits, kDecimals}};
  }
  double volume = 0.0;
  for (std::size_t i = 0; i < values.size(); ++i) {
    volume += static_cast<double>(values[i]) * accumulated.days(i);
  }
  const NumberStyle of_volume(std::vector<double>{volume}, kVolumeDigits, kDecimals);
  return {{name, Align::kRight, "mean", of_volume.text(volume)}, {values, kRateDigits, kDecimals}};
}

// The days of each period, and of all at the end.
std::vector<double> days_of(const Accumulated& accumulated) {
  std::vector<double> days;
  for (std::size_t i = 0; i < accumulated.periods(); ++i) {
    days.push_back(tidy_days(accumulated.days(i)));
  }
  days.push_back(tidy_days(accumulated.boundaries.back() - accumulated.boundaries.front()));
  return days;
}

// What a file is said to hold.
std::string content_text(const Production& production, const Accumulated& accumulated) {
  return counted(accumulated.periods(), "period") + " of " +
         std::to_string(production.names.size()) + " series";
}

void put_to_read(const Output& output, const Production& production,
                 const Accumulated& accumulated) {
  const bool with_time = any_time_of_day(accumulated);
  const bool any_rate =
      std::find(production.rates.begin(), production.rates.end(), true) != production.rates.end();
  const std::vector<double> days = days_of(accumulated);
  constexpr int kDayDigits = 8;
  constexpr int kDayDecimals = 4;
  const NumberStyle day_style(days, kDayDigits, kDayDecimals);
  std::vector<TableColumn> columns{
      {"start", Align::kLeft, "", any_rate ? "rate x days" : ""},
      {"end", Align::kLeft},
      {"days", Align::kRight, "", any_rate ? day_style.text(days.back()) : ""}};
  std::vector<NumberStyle> styles;
  for (std::size_t j = 0; j < production.names.size(); ++j) {
    const SeriesColumn column = series_column(production, accumulated, j);
    columns.push_back(column.about);
    styles.push_back(column.style);
  }
  const auto fill = [&](TableWriter& table) {
    Texts row(3 + styles.size());
    for (std::size_t i = 0; i < accumulated.periods(); ++i) {
      row[0] = moment_text(accumulated.boundaries[i], with_time);
      row[1] = moment_text(accumulated.boundaries[i + 1], with_time);
      row[2] = day_style.text(days[i]);
      for (std::size_t j = 0; j < styles.size(); ++j) {
        row[3 + j] = styles[j].text(accumulated.series[j][i]);
      }
      table.row(row);
    }
  };
  put_table(output, std::move(columns), fill, content_text(production, accumulated));
}

}  // namespace

void put_periods(const Output& output, const Production& production,
                 const Accumulated& accumulated) {
  if (output.for_reading()) return put_to_read(output, production, accumulated);
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
  put_table(output, std::move(columns), fill, content_text(production, accumulated));
}

}  // namespace vqmath63::host
