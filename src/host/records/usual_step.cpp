#include "host/records/usual_step.hpp"

#include <algorithm>
#include <chrono>
#include <cmath>

#include "host/data/csv.hpp"
#include "host/data/values.hpp"
#include "host/failure.hpp"
#include "host/text.hpp"

namespace vqmath63::host {
namespace {

using namespace std::chrono;

constexpr sys_days kDayZero{year{1899} / December / 30};
constexpr double kSecondsPerDay = 86400.0;

year_month_day date_of(double moment) {
  return kDayZero + std::chrono::days{static_cast<int>(std::floor(moment))};
}

bool is_last_of_month(const year_month_day& date) {
  return date == date.year() / date.month() / last;
}

// The calendar months between two moments; 0 where they are no whole number of them.
long long months_between(double from, double to) {
  if (std::fabs(from - std::floor(from) - (to - std::floor(to))) * kSecondsPerDay > 1.0) return 0;
  const year_month_day a = date_of(from);
  const year_month_day b = date_of(to);
  if (a.day() != b.day() && !(is_last_of_month(a) && is_last_of_month(b))) return 0;
  return (b.year() / b.month() - a.year() / a.month()).count();
}

struct NamedStep {
  const char* word;
  Step step;
};

constexpr NamedStep kNamed[] = {{"minute", {0, 1.0 / 1440.0}},
                                {"hour", {0, 1.0 / 24.0}},
                                {"day", {0, 1.0}},
                                {"week", {0, 7.0}},
                                {"month", {1, 0.0}},
                                {"quarter", {3, 0.0}},
                                {"half-year", {6, 0.0}},
                                {"year", {12, 0.0}}};

}  // namespace

double Step::moved(double moment, int steps) const {
  if (months == 0) {
    // Clock times stay whole seconds where they were.
    const double moved = moment + steps * days;
    const double seconds = std::round(moved * kSecondsPerDay);
    return std::fabs(moved * kSecondsPerDay - seconds) < 1e-3 ? seconds / kSecondsPerDay : moved;
  }
  const year_month_day date = date_of(moment);
  const year_month month = date.year() / date.month() + std::chrono::months{steps * months};
  const year_month_day end = month / last;
  const year_month_day day =
      is_last_of_month(date) || date.day() > end.day() ? end : month / date.day();
  return static_cast<double>((sys_days{day} - kDayZero).count()) + moment - std::floor(moment);
}

std::string Step::text() const {
  for (const auto& [word, step] : kNamed) {
    if (months == step.months && std::fabs(days - step.days) < 1e-9)
      return std::string("1 ") + word;
  }
  if (months > 0) return std::to_string(months) + " months";
  return plain_text(static_cast<float>(days)) + " days";
}

Step step_from_text(const std::string& text) {
  std::string words;
  for (const auto& [word, step] : kNamed) {
    if (same_letters(text, word)) return step;
    words += std::string(word) + ", ";
  }
  const auto days = parse_number(text);
  if (days && *days > 0.0 && std::isfinite(*days)) return {0, *days};
  throw UsageError("--step " + in_quotes(text) + " is no length of time: " + words +
                   "or a number of days");
}

void StepFinder::add(double from, double to) {
  if (!(to > from)) return;
  ++seen_;
  const long long months = months_between(from, to);
  if (months > 0) {
    ++months_[months];
  } else {
    ++seconds_[std::llround((to - from) * kSecondsPerDay)];
  }
}

std::optional<Step> StepFinder::usual() const {
  const auto most = [](const auto& counts) {
    return std::max_element(counts.begin(), counts.end(),
                            [](const auto& a, const auto& b) { return a.second < b.second; });
  };
  const auto month = most(months_);
  const auto second = most(seconds_);
  if (month != months_.end() && 2 * month->second > seen_) {
    return Step{static_cast<int>(month->first), 0.0};
  }
  if (second != seconds_.end() && 2 * second->second > seen_) {
    return Step{0, static_cast<double>(second->first) / kSecondsPerDay};
  }
  return std::nullopt;
}

}  // namespace vqmath63::host
