#include "host/commands/report_data.hpp"

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <tuple>

#include "host/data/moment.hpp"
#include "host/data/number_style.hpp"
#include "host/failure.hpp"
#include "host/report/scale.hpp"
#include "host/text.hpp"

namespace vqmath63::host {
namespace {

// "oil (sm3/d)" or "oil [sm3/d]" in its parts; without brackets the unit is empty.
std::pair<std::string, std::string> name_and_unit(const std::string& header) {
  const char close = header.empty() ? ' ' : header.back();
  const auto open = close == ')' ? header.rfind('(') : close == ']' ? header.rfind('[') : 0;
  if (open == std::string::npos || open == 0) return {header, ""};
  return {std::string(trimmed(header.substr(0, open))),
          header.substr(open + 1, header.size() - open - 2)};
}

// What a rate in this unit comes to over days.
std::string volume_unit_of(const std::string& rate_unit) {
  for (const char* const ending : {"/day", "/d"}) {
    if (rate_unit.ends_with(ending)) return rate_unit.substr(0, rate_unit.rfind('/'));
  }
  return rate_unit.empty() ? "" : rate_unit + " x days";
}

// The name before the number at its end; empty for a name without one.
std::string family_of(const std::string& name) {
  const auto last = name.find_last_not_of("0123456789");
  return last == std::string::npos || last + 1 == name.size() ? "" : name.substr(0, last + 1);
}

std::vector<std::size_t> stacked_by_name(const ReportData& data) {
  std::map<std::string, std::vector<std::size_t>> families;
  std::vector<std::size_t> all;
  for (std::size_t j = 0; j < data.series.size(); ++j) {
    const ReportSeries& each = data.series[j];
    if (!each.rate || (!all.empty() && data.series[all.front()].unit != each.unit)) continue;
    all.push_back(j);
    const std::string family = family_of(each.name);
    if (!family.empty()) families[family].push_back(j);
  }
  const std::vector<std::size_t>* best = &all;
  for (const auto& [family, members] : families) {
    if (members.size() > 1 && (best == &all || members.size() > best->size())) best = &members;
  }
  return *best;
}

std::vector<std::size_t> stacked_by_choice(const ReportData& data,
                                           const std::vector<std::string>& names) {
  std::vector<std::size_t> chosen;
  for (const std::string& name : names) {
    std::size_t j = 0;
    while (j < data.series.size() && !same_letters(name, data.series[j].name) &&
           !same_letters(name, data.series[j].header)) {
      ++j;
    }
    if (j == data.series.size()) {
      throw UsageError("--stack: " + in_quotes(name) + " is no series of the report");
    }
    const ReportSeries& each = data.series[j];
    if (!each.rate) throw UsageError("--stack: " + in_quotes(name) + " is cumulative, no rate");
    if (!chosen.empty() && data.series[chosen.front()].unit != each.unit) {
      throw UsageError("--stack: " + in_quotes(name) + " has the unit " + in_quotes(each.unit) +
                       ", the first one " + in_quotes(data.series[chosen.front()].unit));
    }
    if (std::find(chosen.begin(), chosen.end(), j) == chosen.end()) chosen.push_back(j);
  }
  return chosen;
}

std::string days_text(double days) {
  return days < 1.0 ? number_words(days * 24.0) + " hours"
                    : number_words(days) + (days == 1.0 ? " day" : " days");
}

// Tells of steps that are much longer than the usual one, and of rows at the same time.
void tell_of_steps(ReportData& data, std::vector<std::string>& story) {
  std::vector<double> steps;
  std::size_t doubled = 0;
  for (std::size_t i = 1; i < data.moments.size(); ++i) {
    steps.push_back(data.moments[i] - data.moments[i - 1]);
    doubled += steps.back() == 0.0 ? 1U : 0U;
  }
  if (steps.empty()) return;
  std::vector<double> sorted = steps;
  const auto middle = sorted.begin() + static_cast<std::ptrdiff_t>(sorted.size() / 2);
  std::nth_element(sorted.begin(), middle, sorted.end());
  const double usual = *middle;
  constexpr double kMuchLonger = 1.5;
  std::size_t gaps = 0;
  std::size_t longest = 0;
  for (std::size_t i = 0; i < steps.size(); ++i) {
    if (steps[i] > kMuchLonger * usual) ++gaps;
    if (steps[i] > steps[longest]) longest = i;
  }
  std::string text = "Rows usually lie " + days_text(usual) + " apart. ";
  if (gaps == 0) {
    text += "There are no gaps.";
  } else {
    text += counted(gaps, "step") + (gaps == 1 ? " is" : " are") +
            " more than half as long again; the longest, from " +
            exact_moment_text(data.moments[longest]) + " to " +
            exact_moment_text(data.moments[longest + 1]) + ", takes " + days_text(steps[longest]) +
            ". In such a gap the rate of the row that ends it holds.";
  }
  story.push_back(text);
  if (doubled > 0) {
    story.push_back(counted(doubled, "row") + (doubled == 1 ? " stands" : " stand") +
                    " at the time of the row before and make no interval.");
  }
}

void tell_of_values(const ReportData& data, const ReportChoice& choice,
                    std::vector<std::string>& story) {
  std::vector<std::size_t> first;
  std::vector<std::size_t> negative;
  std::size_t negatives = 0;
  for (std::size_t j = 0; j < data.series.size(); ++j) {
    const ReportSeries& each = data.series[j];
    if (!each.rate) continue;
    if (each.values[0] != 0.0F) first.push_back(j);
    const auto below = std::count_if(each.values.begin(), each.values.end(),
                                     [](float value) { return value < 0.0F; });
    negatives += static_cast<std::size_t>(below);
    if (below > 0) negative.push_back(j);
  }
  if (!first.empty()) {
    story.push_back("No interval ends at the first row: its rates (" + data.names_of(first) +
                    ") are in no period.");
  }
  if (choice.data.empty_as) {
    story.push_back("Empty cells stand for " + number_words(*choice.data.empty_as) + ".");
  }
  if (negatives > 0) {
    story.push_back(counted(negatives, "value") + " of " + data.names_of(negative) +
                    (negatives == 1 ? " is" : " are") + " below 0 and taken as written.");
  }
  for (const std::string& column : data.production.left_out) story.push_back("The " + column + ".");
  for (const std::string& doubt : data.production.doubts) story.push_back(sentence(doubt));
}

void tell_story(ReportData& data, const ReportChoice& choice) {
  std::vector<std::string>& story = data.story;
  story.push_back(data.path + ": " + counted(data.rows, "row") + " from " +
                  exact_moment_text(data.moments.front()) + " to " +
                  exact_moment_text(data.moments.back()) + ", " +
                  std::to_string(data.series.size()) + " series.");
  if (std::any_of(data.series.begin(), data.series.end(),
                  [](const ReportSeries& each) { return each.rate; })) {
    story.push_back(
        "A rate is the mean of the interval that ends at its row. Of a period the pictures show "
        "the mean rate, and volumes are mean rate x days.");
  }
  story.push_back(counted(data.periods(), "period") + ", from " +
                  exact_moment_text(data.boundaries.front()) + " to " +
                  exact_moment_text(data.boundaries.back()) +
                  ", where the rows end. Times and values are Singles of 24 bits.");
  tell_of_steps(data, story);
  tell_of_values(data, choice, story);
  if (std::any_of(data.series.begin(), data.series.end(),
                  [](const ReportSeries& each) { return each.unit.empty(); })) {
    story.push_back(
        "Where no unit stands, the file does not tell it: --unit sm3 does, for example.");
  }
}

}  // namespace

std::string file_name(const std::string& path) {
  return path == "-" ? "standard input" : path.substr(path.find_last_of("/\\") + 1);
}

std::string period_words(const ReportChoice& choice) {
  if (choice.frequency == 1) return choice.period;
  const std::string words = std::to_string(choice.frequency) + " " + choice.period;
  return words.ends_with('s') ? words : words + "s";
}

std::string sentence(std::string note) {
  if (!note.empty() && note.front() >= 'a' && note.front() <= 'z') {
    note.front() = static_cast<char>(note.front() - 'a' + 'A');
  }
  return note + ".";
}

void name_series(ReportSeries& series, const std::string& header, bool amount) {
  series.header = header;
  std::tie(series.name, series.unit) = name_and_unit(header);
  series.volume_unit = amount || !series.rate ? series.unit : volume_unit_of(series.unit);
  if (!amount) return;
  if (series.unit.empty()) series.unit = series.volume_unit = kUnitsOfTheFile;
  series.unit += "/d";
}

void take_units(std::vector<ReportSeries*> series, const std::vector<std::string>& units) {
  for (const std::string& text : units) {
    const auto sign = text.find('=');
    const std::string name = sign == std::string::npos ? "" : text.substr(0, sign);
    const std::string unit = sign == std::string::npos ? text : text.substr(sign + 1);
    bool found = false;
    for (ReportSeries* const each : series) {
      if (sign != std::string::npos && !same_letters(name, each->name) &&
          !same_letters(name, each->header) &&
          !same_letters(name, name_and_unit(each->header).first)) {
        continue;
      }
      found = true;
      each->volume_unit = unit;
      each->unit = each->rate ? unit + "/d" : unit;
    }
    if (!found) throw UsageError("--unit " + text + ": there is no series " + in_quotes(name));
  }
}

void give_colours(std::vector<ReportSeries>& series) {
  constexpr std::size_t kColours = 7;
  std::vector<std::size_t> order(series.size());
  for (std::size_t j = 0; j < order.size(); ++j) order[j] = j;
  std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
    return std::fabs(series[a].volume) > std::fabs(series[b].volume);
  });
  order.resize(std::min(order.size(), kColours));
  std::sort(order.begin(), order.end());
  int colour = 1;
  for (const std::size_t j : order) series[j].colour = colour++;
}

std::string ReportData::titled(const std::string& title) const {
  return what.empty() ? title : title + ": " + what;
}

std::string ReportData::place(const std::string& name) const {
  return what.empty() ? name : name + "-" + what;
}

std::string ReportData::names_of(const std::vector<std::size_t>& which) const {
  constexpr std::size_t kMost = 8;
  std::size_t members = 0;
  for (const std::size_t j : which) members += series[j].members;
  std::string text;
  for (std::size_t i = 0; i < which.size(); ++i) {
    const ReportSeries& each = series[which[i]];
    if ((i == kMost && members > 1) || (each.members > 1 && i > 0)) {
      return text + " and " + std::to_string(members) + " others";
    }
    text += (i == 0 ? "" : i + 1 == which.size() ? " and " : ", ") + each.name;
    members -= each.members;
  }
  return text;
}

std::string number_words(double value) {
  constexpr int kDigits = 5;
  const double values[] = {value};
  std::string text = NumberStyle(std::span<const double>(values), kDigits, kDigits + 1).text(value);
  if (text.find('.') != std::string::npos && text.find('e') == std::string::npos) {
    text.erase(text.find_last_not_of('0') + 1);
    if (text.back() == '.') text.pop_back();
  }
  return grouped(text);
}

ReportData read_report_data(const ReportChoice& choice) {
  ReportData data;
  data.path = file_name(choice.data.path);
  data.production = read_production(choice.data);
  const Production& production = data.production;
  PeriodSettings settings;
  settings.data_period = "day";
  settings.period = choice.period;
  settings.frequency = choice.frequency;
  settings.start = choice.start.value_or(production.start_data);
  data.accumulated = accumulate(production, settings);
  data.boundaries = data.accumulated.boundaries;
  data.rows = production.rows;
  data.period_words = period_words(choice);

  const float* const table = static_cast<const float*>(production.table.get()->pvData);
  const std::span<const float> times(table, production.rows);
  for (const float time : times) {
    const double spacing = std::nextafter(time, std::numeric_limits<float>::max()) - time;
    data.moments.push_back(roundest_moment(production.start_data + time, spacing));
  }
  std::vector<ReportSeries*> all;
  data.series.resize(production.names.size());
  for (std::size_t j = 0; j < production.names.size(); ++j) {
    ReportSeries& each = data.series[j];
    each.rate = production.rates[j];
    name_series(each, production.names[j], false);
    each.values = {table + (j + 1) * production.rows, production.rows};
    each.periods = data.accumulated.series[j];
    for (std::size_t i = 0; each.rate && i < each.periods.size(); ++i) {
      each.volumes.push_back(each.periods[i] * data.days(i));
      each.volume += each.volumes.back();
    }
    all.push_back(&each);
  }
  take_units(all, choice.units);
  data.stacked =
      choice.stacked.empty() ? stacked_by_name(data) : stacked_by_choice(data, choice.stacked);
  if (data.stacked.size() < 2) data.stacked.clear();
  give_colours(data.series);
  tell_story(data, choice);
  return data;
}

}  // namespace vqmath63::host
