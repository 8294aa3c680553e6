#include "host/records/period_calendar.hpp"

#include <algorithm>
#include <cmath>

#include "host/data/moment.hpp"
#include "host/failure.hpp"

namespace vqmath63::host {
namespace {

constexpr double kFirstMoment = -657434.0;  // 0100-01-01
constexpr double kEnd = 2958465.0;          // 9999-12-31

}  // namespace

PeriodCalendar::PeriodCalendar(std::string period, std::int32_t frequency, double start,
                               bool begins)
    : settings_{"day", std::move(period), frequency, 1, start}, begins_(begins) {
  check_period_word(settings_.period);
}

void PeriodCalendar::begin_at(double moment) {
  // As far around as it takes to find two boundaries, one of them not behind the moment.
  for (double reach = 2.0;; reach *= 2.0) {
    const double from = std::max(begins_ ? settings_.start : kFirstMoment, moment - reach);
    const double to = std::min(kEnd, moment + reach);
    bounds_ = between(from, to);
    const bool all = from == kFirstMoment && to == kEnd;
    if ((begins_ && from == settings_.start) || all) bounds_.insert(bounds_.begin(), from);
    if (all) bounds_.push_back(to);
    if (bounds_.size() > 1 && bounds_.front() <= moment && bounds_.back() > moment) break;
  }
  const double period =
      (bounds_.back() - bounds_.front()) / static_cast<double>(bounds_.size() - 1);
  // The component tells lengths in Singles: the fewer days at once, the finer.
  constexpr double kMostDays = 8192.0;
  constexpr double kMostPeriods = 4096.0;
  chunk_ = std::max(std::ceil(4.0 * period), std::min(kMostDays, std::ceil(kMostPeriods * period)));
}

void PeriodCalendar::cover(double from, double to) {
  if (begins_) from = std::max(from, settings_.start);
  if (from < kFirstMoment || to >= kEnd) {
    throw WorkError("periods from " + exact_moment_text(from) + " to " + exact_moment_text(to) +
                    " lie outside the years 100 to 9999");
  }
  if (!bounds_.empty() && from >= bounds_.front() && to < bounds_.back()) return;
  if (bounds_.empty()) begin_at(from);
  constexpr std::size_t kMostPeriods = 50'000'000;
  const auto check = [&] {
    if (bounds_.size() <= kMostPeriods) return;
    throw WorkError("from " + exact_moment_text(from) + " to " + exact_moment_text(to) +
                    " there are too many periods");
  };
  while (bounds_.back() <= to) {
    const double end = std::min(kEnd, bounds_.back() + chunk_);
    const std::vector<double> more = between(bounds_.back(), end);
    bounds_.insert(bounds_.end(), more.begin(), more.end());
    if (end == kEnd) bounds_.push_back(end);
    check();
  }
  while (bounds_.front() > from) {
    const double begin = std::max(kFirstMoment, bounds_.front() - chunk_);
    std::vector<double> more = between(begin, bounds_.front());
    if (begin == kFirstMoment) more.insert(more.begin(), begin);
    bounds_.insert(bounds_.begin(), more.begin(), more.end());
    first_ -= static_cast<std::int32_t>(more.size());
    check();
  }
  index_days();
}

std::vector<double> PeriodCalendar::between(double from, double to) const {
  if (from >= to) return {};
  const std::vector<double> bounds = period_boundaries(from, to - from, settings_);
  return {bounds.begin() + 1, bounds.end() - 1};
}

void PeriodCalendar::index_days() {
  const double begin = std::floor(bounds_.front());
  const auto days = static_cast<std::size_t>(std::ceil(bounds_.back()) - begin) + 1;
  of_day_.resize(days);
  std::size_t p = 0;
  for (std::size_t d = 0; d < days; ++d) {
    const double midnight = begin + static_cast<double>(d) + kSameMoment;
    while (p + 2 < bounds_.size() && bounds_[p + 1] <= midnight) ++p;
    of_day_[d] = static_cast<std::int32_t>(p);
  }
}

std::int32_t PeriodCalendar::period_of(double moment) const {
  if (moment <= bounds_.front()) return first_;
  const auto day = static_cast<std::size_t>(moment - std::floor(bounds_.front()));
  const auto from = bounds_.begin() + of_day_[day];
  const auto to = bounds_.begin() + of_day_[std::min(day + 1, of_day_.size() - 1)];
  // Of the boundaries from the day's first period to its last one, the last that is passed.
  const auto next = std::upper_bound(from + 1, to + 1, moment + kSameMoment);
  return first_ + static_cast<std::int32_t>(next - bounds_.begin()) - 1;
}

}  // namespace vqmath63::host
