#include "host/commands/report_production.hpp"

#include <algorithm>
#include <cmath>

#include "host/client/dispatch_client.hpp"
#include "host/data/moment.hpp"
#include "host/failure.hpp"
#include "host/text.hpp"

namespace vqmath63::host {
namespace {

constexpr std::size_t kMostPanels = 12;
constexpr int kRateDigits = 5;
constexpr int kVolumeDigits = 7;  // about what a Single holds

const Axis kDateAxis{"Date", "", ScaleKind::kDates};

std::string look_of(const ReportSeries& series) {
  return "s" + std::to_string(series.colour);
}

std::string volume_unit_of(const ReportSeries& series) {
  return series.volume_unit.empty() ? "rate x days" : series.volume_unit;
}

// What an upright axis shows; one whose unit nobody told says so.
Axis axis_of(const std::string& title, const std::string& unit) {
  return {unit.empty() ? title + " (unit of the file)" : title, unit, ScaleKind::kFromZero};
}

Axis volume_axis(const ReportSeries& series) {
  if (series.volume_unit.empty()) {
    return {"Volume (unit of the file x days)", "", ScaleKind::kFromZero};
  }
  return axis_of("Volume", series.volume_unit);
}

std::vector<double> doubles(std::span<const float> values) {
  return {values.begin(), values.end()};
}

std::vector<std::size_t> with_rate(const ReportData& data, bool rate) {
  std::vector<std::size_t> which;
  for (std::size_t j = 0; j < data.series.size(); ++j) {
    if (data.series[j].rate == rate) which.push_back(j);
  }
  return which;
}

// At most `most` of them, those of the largest volumes, in their order.
std::vector<std::size_t> largest(const ReportData& data, std::vector<std::size_t> which,
                                 std::size_t most) {
  if (which.size() <= most) return which;
  std::stable_sort(which.begin(), which.end(), [&](std::size_t a, std::size_t b) {
    return std::fabs(data.series[a].volume) > std::fabs(data.series[b].volume);
  });
  which.resize(most);
  std::sort(which.begin(), which.end());
  return which;
}

DataTable period_columns(const ReportData& data, const std::string& hint) {
  const std::vector<double>& edges = data.boundaries;
  const bool with_time = std::any_of(edges.begin(), edges.end(), has_time_of_day);
  std::vector<std::string> moments;
  std::vector<double> days;
  for (const double edge : edges) moments.push_back(moment_text(edge, with_time));
  for (std::size_t i = 0; i < data.periods(); ++i) {
    days.push_back(std::round(data.days(i) * 1e6) / 1e6);
  }
  DataTable table(hint);
  table.texts("start", {moments.begin(), moments.end() - 1});
  table.texts("end", {moments.begin() + 1, moments.end()});
  constexpr int kDayDigits = 8;
  table.numbers("days", "", days, kDayDigits);
  return table;
}

// What prints all periods, for tables that are too long for a page.
std::string accumulate_hint(const ReportData& data) {
  return "vqhost accumulate " + data.path + " --period " + data.period_words +
         " -o periods.csv writes them, with the report's other options of the data";
}

// The volume of a series until each boundary.
std::vector<double> running_volume(const ReportSeries& series) {
  std::vector<double> volume{0.0};
  for (std::size_t i = 0; i < series.periods.size(); ++i) {
    volume.push_back(volume.back() + series.volumes[i]);
  }
  return volume;
}

std::vector<double> sum_of(const std::vector<double>& a, const std::vector<double>& b) {
  std::vector<double> sum = a;
  for (std::size_t i = 0; i < sum.size(); ++i) sum[i] += b[i];
  return sum;
}

// The members of a sum that are drawn by themselves, and what the others come to.
struct Parts {
  std::vector<std::size_t> shown;
  std::vector<std::size_t> others;
};

// "5 others".
std::string others_name(const ReportData& data, const std::vector<std::size_t>& others) {
  std::size_t members = 0;
  for (const std::size_t j : others) members += data.series[j].members;
  return counted(members, "other");
}

Parts parts_of(const ReportData& data) {
  constexpr std::size_t kMostParts = 8;
  Parts parts;
  parts.shown =
      data.stacked.size() > kMostParts ? largest(data, data.stacked, kMostParts - 1) : data.stacked;
  for (const std::size_t j : data.stacked) {
    if (std::find(parts.shown.begin(), parts.shown.end(), j) == parts.shown.end()) {
      parts.others.push_back(j);
    }
  }
  return parts;
}

std::vector<double> total_rate(const ReportData& data, const std::vector<std::size_t>& which) {
  std::vector<double> total(data.periods(), 0.0);
  for (const std::size_t j : which) total = sum_of(total, doubles(data.series[j].periods));
  return total;
}

std::string with_unit(const std::string& number, const std::string& unit) {
  return unit.empty() ? number : number + " " + unit;
}

// Steps over the rows of a rate, each of which holds from the row before to its own.
Layer rows_of_rate(const ReportData& data, const ReportSeries& series) {
  return {Layer::Kind::kSteps, row_words(data), look_of(series) + " data", data.moments,
          doubles(series.values.subspan(1))};
}

Figure panel(const ReportData& data, const ReportSeries& series) {
  Chart chart(kDateAxis, axis_of("Rate", series.unit));
  chart.add(rows_of_rate(data, series));
  chart.add({Layer::Kind::kSteps, "mean of a " + data.period_words, look_of(series),
             data.boundaries, doubles(series.periods)});
  chart.rows_between(data.boundaries);
  DataTable table = period_columns(data, accumulate_hint(data));
  table.numbers("mean rate", series.unit, series.periods, kRateDigits);
  table.numbers("volume", volume_unit_of(series), series.volumes, kVolumeDigits);
  return {series.name,
          "Volume " + with_unit(number_words(series.volume), volume_unit_of(series)) + ".",
          std::move(chart), std::move(table)};
}

Figure cumulative_panel(const ReportData& data, const ReportSeries& series) {
  Chart chart(kDateAxis, axis_of("Cumulative", series.unit));
  chart.add(
      {Layer::Kind::kLine, row_words(data), look_of(series), data.moments, doubles(series.values)});
  std::vector<double> ends(data.boundaries.begin() + 1, data.boundaries.end());
  chart.add({Layer::Kind::kDots, "end of a " + data.period_words, "rule data", std::move(ends),
             doubles(series.periods)});
  chart.rows_between(data.boundaries);
  DataTable table = period_columns(data, accumulate_hint(data));
  table.numbers("at end", series.unit, series.periods, kVolumeDigits);
  return {series.name, "Cumulative in the file.", std::move(chart), std::move(table)};
}

// Volumes of rates as lines over time, one of all where they make a sum.
Figure volume_figure(const ReportData& data, const std::string& title,
                     const std::vector<std::size_t>& shown, const std::vector<std::size_t>& others,
                     bool with_total) {
  const ReportSeries& first = data.series[shown.front()];
  const std::vector<double>& edges = data.boundaries;
  Chart chart(kDateAxis, volume_axis(first));
  DataTable table = period_columns(data, accumulate_hint(data));
  std::vector<double> total(edges.size(), 0.0);
  const auto add = [&](const std::string& name, const std::string& look,
                       const std::vector<double>& volume) {
    chart.add({Layer::Kind::kLine, name, look, edges, volume});
    table.numbers(name, volume_unit_of(first), std::span(volume).subspan(1), kVolumeDigits);
  };
  for (const std::size_t j : shown) {
    const std::vector<double> volume = running_volume(data.series[j]);
    total = sum_of(total, volume);
    add(data.series[j].name, look_of(data.series[j]), volume);
  }
  if (!others.empty()) {
    std::vector<double> rest(edges.size(), 0.0);
    for (const std::size_t j : others) rest = sum_of(rest, running_volume(data.series[j]));
    total = sum_of(total, rest);
    add(others_name(data, others), "s8", rest);
  }
  if (with_total) add("total", "rule", total);
  chart.rows_between(edges);
  return {title, "Volume until the end of each " + data.period_words + ".", std::move(chart),
          std::move(table)};
}

std::string period_text(const ReportData& data, std::size_t i) {
  const std::vector<double>& edges = data.boundaries;
  return exact_moment_text(edges[i]) + " to " + exact_moment_text(edges[i + 1]);
}

}  // namespace

void add_key_figures(Page& page, const ReportData& data) {
  std::vector<std::size_t> which = data.stacked;
  if (which.empty()) which = largest(data, with_rate(data, true), 1);
  if (which.empty()) return;
  const ReportSeries& first = data.series[which.front()];
  const std::vector<double> rates = total_rate(data, which);
  double volume = 0.0;
  for (const std::size_t j : which) volume += data.series[j].volume;
  const auto peak =
      static_cast<std::size_t>(std::max_element(rates.begin(), rates.end()) - rates.begin());
  const std::string who = data.names_of(which);
  page.key_figures(
      {{data.titled("Volume of " + who), with_unit(number_words(volume), volume_unit_of(first))},
       {"Highest " + data.period_words + ": " + period_text(data, peak),
        with_unit(number_words(rates[peak]), first.unit)},
       {"Last " + data.period_words + ": " + period_text(data, rates.size() - 1),
        with_unit(number_words(rates.back()), first.unit)}});
}

void add_periods(Page& page, const ReportData& data) {
  const std::vector<std::size_t> all = with_rate(data, true);
  if (all.empty()) return;
  const std::vector<std::size_t> shown = largest(data, all, kMostPanels);
  page.section(data.place("periods"), data.titled("Production by " + data.period_words));
  if (shown.size() < all.size()) {
    page.paragraph("The " + std::to_string(shown.size()) + " series of the largest volumes of " +
                   std::to_string(all.size()) + "; --columns chooses others.");
  }
  page.begin_panels();
  for (const std::size_t j : shown) page.figure(panel(data, data.series[j]));
  page.end_panels();
}

void add_stack(Page& page, const ReportData& data) {
  if (data.stacked.empty()) return;
  const Parts parts = parts_of(data);
  const ReportSeries& first = data.series[data.stacked.front()];
  const std::vector<double>& edges = data.boundaries;
  Chart chart(kDateAxis, axis_of("Rate", first.unit));
  DataTable table = period_columns(data, accumulate_hint(data));
  std::vector<double> top(data.periods(), 0.0);
  const auto add = [&](const std::string& name, const std::string& look,
                       const std::vector<double>& rates) {
    std::vector<double> base = top;
    top = sum_of(top, rates);
    chart.add({Layer::Kind::kBlocks, name, look, edges, top, std::move(base)});
    table.numbers(name, first.unit, rates, kRateDigits);
  };
  for (const std::size_t j : parts.shown) {
    add(data.series[j].name, look_of(data.series[j]), doubles(data.series[j].periods));
  }
  if (!parts.others.empty())
    add(others_name(data, parts.others), "s8", total_rate(data, parts.others));
  table.numbers("total", first.unit, top, kRateDigits);
  chart.rows_between(edges);
  page.section(data.place("stack"), data.titled("Production together"));
  page.figure({data.names_of(data.stacked) + ", stacked", "Mean of each " + data.period_words + ".",
               std::move(chart), std::move(table)});
}

void add_cumulative(Page& page, const ReportData& data) {
  page.section(data.place("cumulative"), data.titled("Cumulative production"));
  if (!data.stacked.empty()) {
    const Parts parts = parts_of(data);
    page.figure(volume_figure(data, data.names_of(data.stacked), parts.shown, parts.others, true));
  }
  page.begin_panels();
  std::vector<std::size_t> alone;
  for (const std::size_t j : with_rate(data, true)) {
    const bool stacked =
        std::find(data.stacked.begin(), data.stacked.end(), j) != data.stacked.end();
    if (!stacked) alone.push_back(j);
  }
  for (const std::size_t j : largest(data, alone, kMostPanels)) {
    page.figure(volume_figure(data, data.series[j].name, {j}, {}, false));
  }
  for (const std::size_t j : largest(data, with_rate(data, false), kMostPanels)) {
    page.figure(cumulative_panel(data, data.series[j]));
  }
  page.end_panels();
}

void add_story(Page& page, const ReportData& data) {
  page.section("data", "What was done to the data");
  page.list(data.story);
}

}  // namespace vqmath63::host
