#include "host/commands/report_records.hpp"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

#include "host/data/moment.hpp"
#include "host/failure.hpp"
#include "host/records/record_accumulation.hpp"
#include "host/text.hpp"

namespace vqmath63::host {
namespace {

constexpr std::size_t kMostGroups = 12;
constexpr std::size_t kMostPanels = 36;  // of a page
constexpr float kUnknown = std::numeric_limits<float>::quiet_NaN();

constexpr std::size_t kMostRows = 5'000'000;  // of which days are drawn

// Records, read.
struct Pass {
  RecordPlan plan;
  RecordReport report;
  RecordSums sums;
  std::optional<RecordSums> days;
  std::vector<std::size_t> series;  // of the plan, those that hold numbers
  std::vector<std::string> notes;
};

Pass read(const ReportChoice& choice, const RecordOptions& options) {
  RecordFile file(choice.data.path, static_cast<std::size_t>(options.header));
  RecordWork work;
  work.path = choice.data.path;
  work.columns = choice.data.columns;
  work.cumulative = choice.data.cumulative;
  work.empty_as = choice.data.empty_as;
  RecordPlan plan = plan_records(options, work, file.head());
  const auto calendar = [&](const std::string& period, std::int32_t frequency) {
    return PeriodCalendar(period, frequency, choice.start.value_or(kCalendarPhase),
                          choice.start.has_value());
  };
  RecordReport report;
  auto [sums, days] = file.accumulate(plan, calendar(choice.period, choice.frequency),
                                      calendar("day", 1), kMostRows, report);
  std::vector<std::string> notes;
  std::vector<std::size_t> series = series_of_records(
      plan, report, sums, file.head(), [&](const std::string& note) { notes.push_back(note); });
  refuse_nothing(sums, report, choice.start);
  return {std::move(plan), std::move(report), std::move(sums),
          std::move(days), std::move(series), std::move(notes)};
}

std::string group_name(const Pass& pass, std::size_t group) {
  std::string name = pass.sums.name(group);
  std::replace(name.begin(), name.end(), kKeySeparator, ' ');
  return name.empty() ? "all" : name;
}

// What groups have of a series in each period: of rates and amounts the sums, of cumulative values
// the last ones (of several groups their sum).
std::vector<double> sums_of(const Pass& pass, const RecordSums& sums,
                            const std::vector<std::size_t>& groups, std::size_t series) {
  const bool cumulative = pass.plan.series[series].kind == SeriesKind::kCumulative;
  const auto periods = static_cast<std::size_t>(sums.last_period() - sums.first_period() + 1);
  std::vector<double> all(periods, 0.0);
  std::vector<double> own(periods);
  for (const std::size_t group : groups) {
    std::fill(own.begin(), own.end(), cumulative ? std::numeric_limits<double>::quiet_NaN() : 0.0);
    for (std::size_t i = 0; i < sums.entries(group); ++i) {
      const PeriodEntry entry = sums.entry(group, i);
      own[static_cast<std::size_t>(entry.period - sums.first_period())] =
          sums.values(group, i)[series];
    }
    double last = 0.0;
    for (std::size_t p = 0; p < periods; ++p) {
      if (cumulative) own[p] = last = std::isnan(own[p]) ? last : own[p];
      all[p] += std::isnan(own[p]) ? 0.0 : own[p];
    }
  }
  return all;
}

// The ends of periods: where each begins, and where the last one ends.
std::vector<double> edges_of(const RecordSums& sums) {
  std::vector<double> edges;
  for (std::int32_t p = sums.first_period(); p <= sums.last_period(); ++p) {
    edges.push_back(sums.begin(p));
  }
  edges.push_back(sums.end(sums.last_period()));
  return edges;
}

// Numbers of periods as a report has them: of rates and amounts means over the period.
std::vector<float> singles_of(const std::vector<double>& sums, const std::vector<double>& edges,
                              bool rate) {
  std::vector<float> values;
  for (std::size_t p = 0; p < sums.size(); ++p) {
    values.push_back(static_cast<float>(rate ? sums[p] / (edges[p + 1] - edges[p]) : sums[p]));
  }
  return values;
}

// Groups that are shown by themselves, and last the others as one.
std::vector<std::vector<std::size_t>> parted(const Pass& pass, std::size_t series) {
  // Of many series each has fewer panels.
  const std::size_t most =
      std::clamp<std::size_t>(kMostPanels / pass.series.size(), 1, kMostGroups);
  std::vector<double> volumes;
  for (std::size_t group = 0; group < pass.sums.groups(); ++group) {
    double volume = 0.0;
    for (std::size_t i = 0; i < pass.sums.entries(group); ++i) {
      volume += pass.sums.values(group, i)[series];
    }
    volumes.push_back(std::isnan(volume) ? 0.0 : std::fabs(volume));
  }
  std::vector<std::size_t> order(volumes.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::stable_sort(order.begin(), order.end(),
                   [&](std::size_t a, std::size_t b) { return volumes[a] > volumes[b]; });
  const auto shown = static_cast<std::ptrdiff_t>(std::min(order.size(), most));
  std::sort(order.begin(), order.begin() + shown);
  std::vector<std::vector<std::size_t>> parts;
  for (std::ptrdiff_t i = 0; i < shown; ++i) parts.push_back({order[static_cast<std::size_t>(i)]});
  if (order.size() > most) parts.emplace_back(order.begin() + shown, order.end());
  return parts;
}

ReportData data_of(const ReportChoice& choice, const Pass& periods, std::size_t series) {
  const std::optional<RecordSums>& days = periods.days;
  const Series& column = periods.plan.series[series];
  ReportData data;
  data.path = file_name(choice.data.path);
  data.period_words = period_words(choice);
  data.row_word = "day";
  data.rows = periods.report.rows;
  data.boundaries = edges_of(periods.sums);
  data.moments = days ? edges_of(*days) : data.boundaries;
  data.first_value = 1;
  const bool rate = column.kind != SeriesKind::kCumulative;
  for (const std::vector<std::size_t>& groups : parted(periods, series)) {
    ReportSeries each;
    each.rate = rate;
    name_series(each, column.name, column.kind == SeriesKind::kAmount);
    if (data.what.empty()) data.what = each.name;
    each.name =
        groups.size() == 1 ? group_name(periods, groups.front()) : counted(groups.size(), "other");
    each.members = groups.size();
    const std::vector<double> sums = sums_of(periods, periods.sums, groups, series);
    data.numbers.push_back(singles_of(sums, data.boundaries, rate));
    each.periods = data.numbers.back();
    if (rate) each.volumes = sums;
    each.volume = rate ? std::accumulate(sums.begin(), sums.end(), 0.0) : 0.0;
    std::vector<float> values =
        days ? singles_of(sums_of(periods, *days, groups, series), data.moments, rate)
             : data.numbers.back();
    values.insert(values.begin(), kUnknown);
    data.numbers.push_back(std::move(values));
    each.values = data.numbers.back();
    data.series.push_back(std::move(each));
  }
  for (std::size_t j = 0; rate && j < data.series.size(); ++j) data.stacked.push_back(j);
  if (data.stacked.size() < 2) data.stacked.clear();
  give_colours(data.series);
  return data;
}

void tell_story(ReportData& data, const Pass& periods) {
  std::vector<std::string>& story = data.story;
  story.push_back(data.path + ": " + counted(periods.report.rows, "row") + " of " +
                  counted(periods.sums.groups(), "group") + ", from " +
                  exact_moment_text(data.boundaries.front()) + " to " +
                  exact_moment_text(data.boundaries.back()) + ".");
  if (periods.report.step) {
    story.push_back("Rows of a group usually follow each " + periods.report.step->text() + ".");
  }
  story.push_back(
      "Rates are volumes over all days of a period, or of a day, whether a group has rows of them "
      "or not. Sums are taken in double precision.");
  if (std::any_of(data.series.begin(), data.series.end(), [](const ReportSeries& each) {
        return each.volume_unit.empty() || each.volume_unit == kUnitsOfTheFile;
      })) {
    story.push_back("Units that the file does not tell are the file's own; --unit says them.");
  }
  if (!periods.days) story.push_back("The rows are too many to draw their days.");
  for (const std::string& note : periods.notes) story.push_back(sentence(note));
}

}  // namespace

std::vector<ReportData> read_report_records(const ReportChoice& choice,
                                            const RecordOptions& options) {
  if (!choice.stacked.empty()) throw UsageError("--stack is not for records: groups are stacked");
  const Pass periods = read(choice, options);
  std::vector<ReportData> all;
  std::vector<ReportSeries*> series;
  for (const std::size_t s : periods.series) all.push_back(data_of(choice, periods, s));
  for (ReportData& data : all) {
    for (ReportSeries& each : data.series) series.push_back(&each);
  }
  take_units(series, choice.units);
  tell_story(all.back(), periods);
  return all;
}

}  // namespace vqmath63::host
