#include "host/commands/production.hpp"

#include <algorithm>

#include "host/commands/accumulate_records.hpp"
#include "host/data/columns.hpp"
#include "host/data/moment.hpp"
#include "host/data/values.hpp"
#include "host/failure.hpp"
#include "host/records/usual_step.hpp"
#include "host/text.hpp"

namespace vqmath63::host {
namespace {

std::vector<std::size_t> indices_of(const CsvFile& file, const std::vector<std::string>& names) {
  std::vector<std::size_t> indices;
  for (const std::string& name : names) {
    const std::size_t index = file.column(name);
    if (index == 0) throw UsageError("column '" + name + "' is the time, not a series");
    if (std::find(indices.begin(), indices.end(), index) == indices.end()) {
      indices.push_back(index);
    }
  }
  return indices;
}

void check_times(const CsvFile& file, const CsvTable& table, std::size_t from_row) {
  const CsvColumn& times = table.columns[0];
  const auto text = [&](double time) {
    return times.kind == CellKind::kDate ? exact_moment_text(time) : number_text(time);
  };
  for (std::size_t i = from_row; i < times.values.size(); ++i) {
    if (times.values[i] >= times.values[i - 1]) continue;
    throw WorkError(file.place(table.lines[i], 0) + text(times.values[i]) +
                    " lies before the time of the row above, " + text(times.values[i - 1]) +
                    (times.kind == CellKind::kDate
                         ? "; " + file.by_remedy() + ", --sort brings rows into order"
                         : ""));
  }
}

// The first row at the time of the row above, and how many there are: rows of several wells that
// share a file, day by day, do not step back in time.
struct Twins {
  std::size_t count = 0;
  std::size_t first = 0;

  explicit Twins(const CsvTable& table) {
    const std::vector<double>& times = table.columns[0].values;
    for (std::size_t i = 1; i < times.size(); ++i) {
      if (times[i] == times[i - 1] && count++ == 0) first = i;
    }
  }
};

// Only the first of them has an interval.
void note_twins(const CsvFile& file, const CsvTable& table, Production& production) {
  const Twins twins(table);
  if (twins.count == 0) return;
  production.notes.push_back(counted(twins.count, "row") + " at the time of the row above, " +
                             (twins.count > 1 ? "the first " : "") + "on line " +
                             std::to_string(table.lines[twins.first]) +
                             ": no interval, so rates there count for nothing (" +
                             file.by_remedy() + ")");
}

// Several wells that share a file are more to know than an empty cell of one.
void refuse_twins(const CsvFile& file, const CsvTable& table) {
  if (table.columns[0].kind != CellKind::kDate) return;
  const Twins twins(table);
  if (twins.count == 0) return;
  throw WorkError(file.place(table.lines[twins.first], 0) +
                  "the row above has this date too: " + file.by_remedy());
}

// What a user has to know of rows with dates: gaps that the row behind them fills.
void note_gaps(const CsvTable& table, Production& production) {
  const std::vector<double>& times = table.columns[0].values;
  StepFinder steps;
  for (std::size_t i = 1; i < times.size(); ++i) steps.add(times[i - 1], times[i]);
  const auto step = steps.usual();
  constexpr std::size_t kEnough = 3;  // steps of which most are alike
  if (!step || steps.seen() < kEnough) return;
  std::size_t count = 0;
  std::size_t longest = 0;
  for (std::size_t i = 1; i < times.size(); ++i) {
    if (!step->is_gap(step->after(times[i - 1]), times[i])) continue;
    if (count++ == 0 || times[i] - times[i - 1] > times[longest] - times[longest - 1]) longest = i;
  }
  if (count == 0) return;
  production.notes.push_back(
      counted(count, "gap") + " between rows that follow each " + step->text() + ", " +
      (count > 1 ? "the longest " : "") + "from " + exact_moment_text(times[longest - 1]) + " to " +
      exact_moment_text(times[longest]) + " (line " + std::to_string(table.lines[longest]) +
      "): taken to be as the row at the end (--gap zero: no production)");
}

// A rate in the first row is that of an interval that ends there, of which nothing is known.
void note_first_row(const ProductionChoice& choice, Production& production) {
  if (!production.dated || choice.from_row > 1) return;
  const float* values = static_cast<const float*>(production.table.get()->pvData);
  for (std::size_t j = 0; j < production.names.size(); ++j) {
    if (!production.rates[j] || values[(j + 1) * production.rows] == 0.0F) continue;
    production.notes.push_back("the first row has no row before it: its rates count for nothing, " +
                               in_quotes(production.names[j]) +
                               " for one (--stamp begin: a row's interval begins at its "
                               "date)");
    return;
  }
}

}  // namespace

Production read_production(const ProductionChoice& choice) {
  const CsvFile file(choice.path);
  std::vector<std::size_t> series = indices_of(file, choice.columns);
  const std::vector<std::size_t> cumulative = indices_of(file, choice.cumulative);
  const bool all_columns = series.empty();
  CsvReading reading;
  reading.empty_as = choice.empty_as;
  reading.wants.assign(file.headers().size(), all_columns ? Want::kNumbersIfAny : Want::kNothing);
  reading.wants[0] = Want::kTimes;
  for (const std::size_t c : cumulative) {
    if (!all_columns && std::find(series.begin(), series.end(), c) == series.end()) {
      series.push_back(c);
    }
    reading.wants[c] = Want::kNumbers;
  }
  for (const std::size_t c : series) reading.wants[c] = Want::kNumbers;
  reading.before_refusing_gap = [&](const CsvTable& table) {
    check_times(file, table, choice.from_row);
    refuse_twins(file, table);
  };
  CsvTable table = read_rows(file, reading);

  Production production;
  CsvColumn& times = table.columns[0];
  production.dated = times.kind == CellKind::kDate;
  if (!production.dated && !choice.start_data) {
    throw UsageError("the first column of " + file.path() +
                     " holds numbers: --start-data DATE must say which moment its time 0 is");
  }
  check_times(file, table, choice.from_row);
  for (std::size_t c = 1; all_columns && c < table.columns.size(); ++c) {
    if (table.columns[c].values.empty()) {
      production.left_out.push_back("column " + in_quotes(file.headers()[c]) + " " +
                                    table.columns[c].why_left_out + " and is left out");
    } else {
      series.push_back(c);
    }
  }
  if (series.empty()) throw WorkError(file.path() + ": no column of numbers follows the time");

  production.doubts = file.notes();
  if (production.dated) {
    note_twins(file, table, production);
    note_gaps(table, production);
  }
  production.rows = table.lines.size();
  production.start_data = choice.start_data.value_or(times.values[0]);
  if (production.dated) {
    for (double& time : times.values) time -= production.start_data;
  }
  production.first_time = times.values[std::min(choice.from_row, production.rows) - 1];
  production.last_time = times.values.back();

  *production.table.place() = new_array(VT_R4, production.rows, series.size() + 1);
  float* out = static_cast<float*>(production.table.get()->pvData);
  series.insert(series.begin(), 0);
  for (const std::size_t c : series) {
    for (std::size_t i = 0; i < production.rows; ++i) *out++ = single_at(file, table, c, i);
    table.columns[c].values = {};
    if (c == 0) continue;
    production.names.push_back(file.headers()[c]);
    production.rates.push_back(std::find(cumulative.begin(), cumulative.end(), c) ==
                               cumulative.end());
  }
  note_first_row(choice, production);
  std::vector<SeriesKind> kinds;
  for (const bool rate : production.rates) {
    kinds.push_back(rate ? SeriesKind::kRate : SeriesKind::kCumulative);
  }
  for (std::string& note : notes_of_names(production.names, kinds)) {
    production.doubts.push_back(std::move(note));
  }
  return production;
}

}  // namespace vqmath63::host
