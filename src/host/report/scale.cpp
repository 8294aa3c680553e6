#include "host/report/scale.hpp"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdint>

#include "host/data/moment.hpp"
#include "host/data/number_style.hpp"
#include "host/data/values.hpp"

namespace vqmath63::host {
namespace {

constexpr int kMostIntervals = 7;  // between ticks: their labels find room side by side
constexpr int kMostYears = 10;

// The least of 1, 2, 5 times a power of ten that is not below `least`.
double nice_step(double least) {
  const double power = std::pow(10.0, std::floor(std::log10(least)));
  for (const double factor : {1.0, 2.0, 5.0}) {
    if (factor * power >= least * (1.0 - 1e-9)) return factor * power;
  }
  return 10.0 * power;
}

// Decimals that numbers of a step need.
int decimals_of(double step) {
  return std::max(0, static_cast<int>(-std::floor(std::log10(step) + 1e-9)));
}

struct Multiple {
  double size;
  const char* word;
};
constexpr Multiple kMultiples[] = {{1e9, "billion"}, {1e6, "million"}, {1e3, "thousand"}};

// What numbers up to `largest` are counted in: ones, unless that takes more than five digits.
Multiple multiple_for(double largest) {
  for (const Multiple& each : kMultiples) {
    if (largest >= std::max(100.0 * 1e3, each.size) && largest < 1e13) return each;
  }
  return {1.0, ""};
}

using std::chrono::sys_days;
constexpr sys_days kDayZero{std::chrono::year{1899} / std::chrono::December / 30};

double day_count_of(int year, unsigned month) {
  const sys_days day{std::chrono::year{year} / std::chrono::month{month} / std::chrono::day{1}};
  return static_cast<double>((day - kDayZero).count());
}

std::chrono::year_month_day date_of(double days) {
  return sys_days{kDayZero + std::chrono::days{static_cast<std::int32_t>(std::floor(days))}};
}

}  // namespace

void Range::add(double value) {
  if (!std::isfinite(value)) return;
  least_ = empty() ? value : std::min(least_, value);
  most_ = least_ > most_ ? value : std::max(most_, value);
}

void Range::add(std::span<const double> values) {
  for (const double value : values) add(value);
}

void Range::add_above_zero(std::span<const double> values) {
  for (const double value : values) {
    if (value > 0.0) add(value);
  }
}

Scale::Scale(ScaleKind kind, const Range& range) {
  double least = range.empty() ? 0.0 : range.least();
  double most = range.empty() ? 1.0 : range.most();
  switch (kind) {
    case ScaleKind::kFromZero:
      make_numbers(std::min(least, 0.0), std::max(most, 0.0));
      break;
    case ScaleKind::kNumbers:
      make_numbers(least, most);
      break;
    case ScaleKind::kLogarithmic:
      if (range.empty()) least = most = 1.0;
      make_logarithmic(least, most);
      break;
    case ScaleKind::kDates:
      make_dates(least, most);
      break;
  }
}

double Scale::place(double value) const {
  const double from = logarithmic_ ? std::log(first_) : first_;
  const double to = logarithmic_ ? std::log(last_) : last_;
  return ((logarithmic_ ? std::log(value) : value) - from) / (to - from);
}

void Scale::make_numbers(double least, double most) {
  constexpr double kNoWidth = 1e-9;  // beside the numbers: ticks would be too close to tell apart
  if (!(most - least > kNoWidth * std::max(std::fabs(least), std::fabs(most)))) {
    const double half = least == 0.0 ? 0.5 : std::fabs(least) / 2.0;
    if (least != 0.0) least -= half;
    most += least == 0.0 ? 1.0 : half;
  }
  // Halves first: a width beyond the range of Double has a step nevertheless.
  const double step = nice_step(most / kMostIntervals - least / kMostIntervals);
  const double from = std::floor(least / step + 1e-9);
  const double to = std::ceil(most / step - 1e-9);
  first_ = from * step;
  last_ = to * step;
  const double largest = std::max(std::fabs(first_), std::fabs(last_));
  const Multiple multiple = multiple_for(largest);
  multiple_ = multiple.word;
  const bool plain = largest < 1e13 && step > 1e-7;
  const int decimals = decimals_of(step / multiple.size);
  for (double k = from; k <= to; k += 1.0) {
    const double at = k * step;
    ticks_.push_back({at, plain ? grouped(fixed_text(at / multiple.size, decimals))
                                : number_text(static_cast<float>(at))});
  }
}

void Scale::make_logarithmic(double least, double most) {
  logarithmic_ = true;
  const auto power = [](double exponent) { return std::pow(10.0, exponent); };
  // Down and up to the next of 1, 2, 5 times a power of ten.
  const double below = power(std::floor(std::log10(least)));
  first_ = least >= 5.0 * below ? 5.0 * below : least >= 2.0 * below ? 2.0 * below : below;
  last_ = nice_step(most);
  if (last_ <= first_) last_ = nice_step(first_ * 1.5);
  const double decades = std::log10(last_ / first_);
  const double stride = std::max(1.0, std::ceil(decades / kMostIntervals));
  constexpr double kFewDecades = 2.1;
  for (double e = std::floor(std::log10(first_)); power(e) <= last_; e += stride) {
    for (const double factor : {1.0, 2.0, 5.0}) {
      const double at = factor * power(e);
      if ((factor != 1.0 && decades > kFewDecades) || at < first_ * 0.999 || at > last_ * 1.001) {
        continue;
      }
      const bool plain = at >= 1e-4 && at < 1e7;
      ticks_.push_back({at, plain ? grouped(fixed_text(at, decimals_of(std::min(at, 1.0))))
                                  : number_text(static_cast<float>(at))});
    }
  }
}

void Scale::make_dates(double least, double most) {
  constexpr double kFar = 1e7;  // days: 27 000 years, as far as calendars count
  if (std::max(std::fabs(least), std::fabs(most)) > kFar) return make_numbers(least, most);
  if (!(most > least)) {
    least -= 0.5;
    most += 0.5;
  }
  first_ = least;
  last_ = most;
  const double span = most - least;
  constexpr double kYear = 365.25;
  constexpr double kMonth = kYear / 12.0;
  if (span > kMostIntervals * 6.0 * kMonth) {
    const int step = static_cast<int>(nice_step(std::max(span / kYear / kMostYears, 1.0)));
    const int begin = int{date_of(least).year()} / step * step;
    for (int year = begin; day_count_of(year, 1) <= most; year += step) {
      const double at = day_count_of(year, 1);
      if (at >= least) ticks_.push_back({at, std::to_string(year)});
    }
    return;
  }
  for (const unsigned step : {1U, 2U, 3U, 6U}) {
    if (span < 2.5 * kMonth || span > kMostIntervals * step * kMonth) continue;
    for (int year = int{date_of(least).year()}; day_count_of(year, 1) <= most; ++year) {
      for (unsigned month = 1; month <= 12; month += step) {
        const double at = day_count_of(year, month);
        if (at < least || at > most) continue;
        ticks_.push_back({at, moment_text(at, false).substr(0, 7)});
      }
    }
    return;
  }
  constexpr double kHour = 1.0 / 24.0;
  constexpr double kSteps[] = {kHour / 60.0, kHour / 12.0, kHour / 4.0,  kHour,
                               3.0 * kHour,  6.0 * kHour,  12.0 * kHour, 1.0,
                               2.0,          5.0,          14.0};
  double step = kSteps[std::size(kSteps) - 1];
  for (const double each : kSteps) {
    if (span > kMostIntervals * each) continue;
    step = each;
    break;
  }
  const bool times = step < 1.0;
  if (span < kMostIntervals * kSteps[0] / 10.0) step = span;  // less than a minute: its beginning
  for (double k = std::ceil(least / step - 1e-9); k * step <= most; k += 1.0) {
    ticks_.push_back({k * step, moment_text(k * step, times).substr(times ? 5 : 0)});
  }
}

std::string grouped(const std::string& number) {
  constexpr const char* kNarrowBlank = "\xE2\x80\xAF";
  const std::size_t begin = number.starts_with('-') ? 1 : 0;
  const std::size_t end = std::min(number.find_first_not_of("0123456789", begin), number.size());
  std::string out;
  for (std::size_t i = 0; i < number.size(); ++i) {
    const bool inside = i > begin && i < end && (end - i) % 3 == 0 && end - begin > 4;
    if (inside) out += kNarrowBlank;
    out += number[i];
  }
  return out;
}

}  // namespace vqmath63::host
