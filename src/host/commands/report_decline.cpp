#include "host/commands/report_decline.hpp"

#include <algorithm>
#include <cmath>
#include <limits>

#include "host/commands/line_check.hpp"
#include "host/commands/line_fit.hpp"
#include "host/data/moment.hpp"
#include "host/failure.hpp"
#include "host/text.hpp"

namespace vqmath63::host {
namespace {

constexpr double kYear = 365.25;

// The rows of a series that a line goes through: days since the first of them, and rates.
struct Samples {
  double begin = 0.0;  // the moment of day 0
  std::vector<double> days;
  std::vector<double> rates;
  std::size_t left_out = 0;  // rows of no rate
};

double rate_at(const Line& line, double days) {
  return std::exp(line.a + line.b * days);
}

Samples samples_of(const ReportData& data, const ReportSeries& series,
                   const DeclineChoice& choice) {
  const auto largest = std::max_element(series.values.begin(), series.values.end());
  const double from =
      choice.from.value_or(data.moments[static_cast<std::size_t>(largest - series.values.begin())]);
  const double to = choice.to.value_or(data.moments.back());
  Samples samples;
  for (std::size_t i = data.first_value; i < data.moments.size(); ++i) {
    if (data.moments[i] < from || data.moments[i] > to) continue;
    if (!(series.values[i] > 0.0F)) {
      ++samples.left_out;
      continue;
    }
    if (samples.days.empty()) samples.begin = data.moments[i];
    samples.days.push_back(data.moments[i] - samples.begin);
    samples.rates.push_back(series.values[i]);
  }
  return samples;
}

ArrayOwner singles_of(const std::vector<double>& values) {
  ArrayOwner array(new_array(VT_R4, values.size()));
  float* out = static_cast<float*>(array.get()->pvData);
  for (const double value : values) *out++ = static_cast<float>(value);
  return array;
}

// Nothing where the sums of the component lose the line.
std::optional<Line> fit(const Samples& samples) {
  const std::optional<Line> line =
      fit_line(singles_of(samples.days), singles_of(samples.rates), "Exponential");
  if (!line) return line;
  std::vector<double> logarithms;
  for (const double rate : samples.rates) logarithms.push_back(std::log(rate));
  const LineCheck check = check_line(samples.days, logarithms);
  constexpr double kToFail = 0.1;
  constexpr float kMostR = 1.001F;
  const bool holds = std::fabs(line->b - check.slope) / check.unit <= kToFail;
  return holds && std::fabs(line->r) <= kMostR ? line : std::nullopt;
}

std::string with_unit(const std::string& number, const std::string& unit) {
  return unit.empty() ? number : number + " " + unit;
}

// What is known of one line.
struct Decline {
  const ReportSeries* series;
  Samples samples;
  Line line;
  double limit;

  bool declines() const { return line.b < 0.0F; }
  // Days from the line's beginning until it is at the limit.
  double days_to_limit() const { return (std::log(limit) - line.a) / line.b; }
  double part_a_year() const { return -std::expm1(line.b * kYear); }
  // A century beyond the data is further than any line reaches.
  bool within_reach() const {
    constexpr double kFar = 100.0 * kYear;
    return declines() && days_to_limit() > -kFar && days_to_limit() < samples.days.back() + kFar;
  }
  std::string limit_date() const {
    return within_reach() ? moment_text(samples.begin + std::ceil(days_to_limit()), false) : "-";
  }

  std::string words(const std::string& row_word) const {
    const double end = samples.begin + samples.days.back();
    std::string text = "Line through " + counted(samples.days.size(), row_word) + " from " +
                       exact_moment_text(samples.begin) + " to " + exact_moment_text(end) + ", " +
                       number_words(samples.days.back() / kYear) + " years";
    if (samples.left_out > 0) {
      text += "; " + counted(samples.left_out, row_word) + " without a rate left out";
    }
    text += ". R is " + number_words(line.r) + ". ";
    if (!declines()) return text + "The line does not decline, so it reaches no limit.";
    text += "The rate declines by " + number_words(std::round(part_a_year() * 1000.0) / 10.0) +
            " % a year. ";
    const std::string limit_text = with_unit(number_words(limit), series->unit);
    if (!within_reach()) return text + "It is far from the limit of " + limit_text + ".";
    const double beyond = days_to_limit() - samples.days.back();
    text += "It is at the limit of " + limit_text + " on " + limit_date();
    return text + (beyond > 0.0 ? ", " + number_words(std::round(beyond / kYear * 10.0) / 10.0) +
                                      " years beyond the data: as sure as that they go on alike."
                                : ", within the data.");
  }
};

Figure figure_of(const ReportData& data, const Decline& decline) {
  const Samples& samples = decline.samples;
  const ReportSeries& series = *decline.series;
  const std::string look = "s" + std::to_string(series.colour);
  const double last = samples.days.back();
  const double drawn =
      decline.within_reach() ? std::clamp(decline.days_to_limit() * 1.05, last, 4.0 * last) : last;
  std::vector<double> moments;
  for (const double days : samples.days) moments.push_back(samples.begin + days);
  Chart chart({"Date", "", ScaleKind::kDates},
              {series.unit.empty() ? "Rate (unit of the file)" : "Rate", series.unit,
               ScaleKind::kLogarithmic});
  constexpr std::size_t kFewRows = 1500;
  chart.add({samples.days.size() <= kFewRows ? Layer::Kind::kDots : Layer::Kind::kLine,
             row_words(data), look + " data", std::move(moments), samples.rates});
  const std::vector<double> ends{samples.begin, samples.begin + drawn};
  chart.add({Layer::Kind::kLine,
             "line",
             "rule",
             ends,
             {rate_at(decline.line, 0.0), rate_at(decline.line, drawn)}});
  if (decline.within_reach()) {
    chart.add({Layer::Kind::kLine, "limit", "rule dashed", ends, {decline.limit, decline.limit}});
    if (decline.days_to_limit() >= 0.0 && decline.days_to_limit() <= drawn) {
      chart.add({Layer::Kind::kDots,
                 "",
                 "rule",
                 {samples.begin + decline.days_to_limit()},
                 {decline.limit}});
    }
  }
  std::vector<std::string> begins;
  std::vector<float> means;
  std::vector<double> fitted;
  for (std::size_t i = 0; i < data.periods(); ++i) {
    const double middle = (data.boundaries[i] + data.boundaries[i + 1]) / 2.0;
    const double days = middle - samples.begin;
    begins.push_back(exact_moment_text(data.boundaries[i]));
    means.push_back(series.periods[i]);
    fitted.push_back(days < 0.0 ? std::numeric_limits<double>::quiet_NaN()
                                : rate_at(decline.line, days));
  }
  DataTable table;
  table.texts("start", std::move(begins));
  table.numbers("mean rate", series.unit, means, 5);
  table.numbers("line in the middle", series.unit, fitted, 5);
  return {series.name, decline.words(data.row_word), std::move(chart), std::move(table)};
}

std::vector<const ReportSeries*> chosen_series(const ReportData& data,
                                               const std::vector<std::string>& names) {
  std::vector<const ReportSeries*> chosen;
  for (const std::string& name : names) {
    const auto found = std::find_if(
        data.series.begin(), data.series.end(),
        [&](const ReportSeries& each) { return each.rate && same_letters(each.name, name); });
    if (found == data.series.end()) {
      throw UsageError("--decline: " + in_quotes(name) + " is no rate of the report");
    }
    chosen.push_back(&*found);
  }
  if (!names.empty()) return chosen;
  const ReportSeries* largest = nullptr;
  const auto look_at = [&](const ReportSeries& each) {
    if (!each.rate || each.members > 1) return;  // what many others have together is no one's
    if (largest == nullptr || each.volume > largest->volume) largest = &each;
  };
  for (const std::size_t j : data.stacked) look_at(data.series[j]);
  if (data.stacked.empty()) {
    for (const ReportSeries& each : data.series) look_at(each);
  }
  if (largest != nullptr) chosen.push_back(largest);
  return chosen;
}

}  // namespace

void add_declines(Page& page, const ReportData& data, const DeclineChoice& choice) {
  std::vector<Decline> declines;
  std::vector<std::string> without;
  for (const ReportSeries* const series : chosen_series(data, choice.series)) {
    Samples samples = samples_of(data, *series, choice);
    constexpr std::size_t kFewest = 3;
    if (samples.days.size() < kFewest || samples.days.back() == 0.0) {
      without.push_back(series->name + ": no line, for " +
                        counted(samples.days.size(), data.row_word) +
                        " above 0 from its largest rate on are too few (--decline-from DATE begins "
                        "elsewhere).");
      continue;
    }
    const std::optional<Line> line = fit(samples);
    if (!line) {
      without.push_back(series->name + ": no line, for it is lost in sums of Singles.");
      continue;
    }
    constexpr double kTenth = 0.1;
    const double limit = choice.limit.value_or(kTenth * rate_at(*line, 0.0));
    declines.push_back({series, std::move(samples), *line, limit});
  }
  if (declines.empty() && without.empty()) return;
  page.section(data.place("decline"), data.titled("Decline"));
  if (!choice.limit && !declines.empty()) {
    page.paragraph(
        "The limit is a tenth of the rate at which the line begins; --limit RATE sets "
        "another one.");
  }
  for (const Decline& each : declines) page.figure(figure_of(data, each));
  if (!without.empty()) page.list(without);
  if (declines.empty()) return;
  std::vector<std::string> names;
  std::vector<std::string> dates;
  std::vector<float> a;
  std::vector<float> b;
  std::vector<float> r;
  std::vector<double> limits;
  for (const Decline& each : declines) {
    names.push_back(each.series->name);
    a.push_back(each.line.a);
    b.push_back(each.line.b);
    r.push_back(each.line.r);
    limits.push_back(each.limit);
    dates.push_back(each.limit_date());
  }
  DataTable table;
  table.texts("ln rate = A + B days", std::move(names));
  table.numbers("A", "", a, 6);
  table.numbers("B", "1/day", b, 6);
  table.numbers("R", "", r, 6);
  table.numbers("limit", declines.front().series->unit, limits, 5);
  table.texts("reached on", std::move(dates));
  page.table(table);
}

}  // namespace vqmath63::host
