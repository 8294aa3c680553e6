#include "host/data/moment.hpp"

#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>

namespace vqmath63::host {
namespace {

using std::chrono::sys_days;

constexpr double kSecondsPerDay = 86400.0;
constexpr sys_days kDayZero{std::chrono::year{1899} / std::chrono::December / 30};

// Takes `count` digits off the front.
bool take_number(std::string_view& text, std::size_t count, int& number) {
  if (text.size() < count) return false;
  number = 0;
  for (std::size_t i = 0; i < count; ++i) {
    const char c = text[i];
    if (c < '0' || c > '9') return false;
    number = number * 10 + (c - '0');
  }
  text.remove_prefix(count);
  return true;
}

bool take_char(std::string_view& text, char wanted) {
  if (text.empty() || text.front() != wanted) return false;
  text.remove_prefix(1);
  return true;
}

std::optional<double> time_of_day(std::string_view text) {
  int hour = 0;
  int minute = 0;
  int second = 0;
  double fraction = 0.0;
  if (!take_number(text, 2, hour) || !take_char(text, ':') || !take_number(text, 2, minute)) {
    return std::nullopt;
  }
  if (take_char(text, ':')) {
    if (!take_number(text, 2, second)) return std::nullopt;
    if (take_char(text, '.')) {
      if (text.empty()) return std::nullopt;
      double scale = 1.0;
      for (int digit = 0; !text.empty();) {
        if (!take_number(text, 1, digit)) return std::nullopt;
        scale /= 10.0;
        fraction += digit * scale;
      }
    }
  }
  if (!text.empty() || hour > 23 || minute > 59 || second > 59) return std::nullopt;
  return ((hour * 60 + minute) * 60 + second + fraction) / kSecondsPerDay;
}

struct Clock {
  int year, hour, minute, second;
  unsigned month, day;
};

Clock clock_of(double days, double unit_seconds) {
  const double seconds = std::round(days * kSecondsPerDay / unit_seconds) * unit_seconds;
  const double whole = std::floor(seconds / kSecondsPerDay);
  const int rest = static_cast<int>(seconds - whole * kSecondsPerDay);
  const std::chrono::year_month_day date{kDayZero +
                                         std::chrono::days{static_cast<std::int32_t>(whole)}};
  return {int{date.year()},       rest / 3600,         rest / 60 % 60, rest % 60,
          unsigned{date.month()}, unsigned{date.day()}};
}

}  // namespace

std::optional<double> parse_moment(std::string_view text) {
  int year = 0;
  int month = 0;
  int day = 0;
  if (!take_number(text, 4, year) || !take_char(text, '-') || !take_number(text, 2, month) ||
      !take_char(text, '-') || !take_number(text, 2, day)) {
    return std::nullopt;
  }
  const std::chrono::year_month_day date{std::chrono::year{year},
                                         std::chrono::month{static_cast<unsigned>(month)},
                                         std::chrono::day{static_cast<unsigned>(day)}};
  if (!date.ok()) return std::nullopt;
  const auto days = static_cast<double>((sys_days{date} - kDayZero).count());
  if (text.empty()) return days;
  if (!take_char(text, ' ') && !take_char(text, 'T')) return std::nullopt;
  const auto time = time_of_day(text);
  if (!time) return std::nullopt;
  return days + *time;
}

std::string moment_text(double days, bool with_time) {
  const Clock c = clock_of(days, 60.0);
  char text[64];
  if (with_time) {
    std::snprintf(text, sizeof text, "%04d-%02u-%02u %02d:%02d", c.year, c.month, c.day, c.hour,
                  c.minute);
  } else {
    std::snprintf(text, sizeof text, "%04d-%02u-%02u", c.year, c.month, c.day);
  }
  return text;
}

std::string exact_moment_text(double days) {
  const Clock c = clock_of(days, 1.0);
  std::string text = moment_text(days, false);
  if (c.second != 0) {
    char time[16];
    text = moment_text(std::floor(days), false);
    std::snprintf(time, sizeof time, " %02d:%02d:%02d", c.hour, c.minute, c.second);
    return text + time;
  }
  return moment_text(days, c.hour != 0 || c.minute != 0);
}

bool has_time_of_day(double days) {
  const Clock c = clock_of(days, 60.0);
  return c.hour != 0 || c.minute != 0;
}

double roundest_moment(double days, double tolerance) {
  for (const double per_day : {1.0, 24.0, 1440.0, kSecondsPerDay}) {
    const double rounded = std::round(days * per_day) / per_day;
    if (std::fabs(rounded - days) <= tolerance) return rounded;
  }
  return std::round(days * kSecondsPerDay) / kSecondsPerDay;
}

}  // namespace vqmath63::host
