#include "host/data/moment.hpp"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdint>

#include "host/text.hpp"

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

enum class Fault { kNone, kForm, kDay, kTime };

// Takes a Z, or an offset such as +02:00 or +0200, off the front: a clock's time is what it shows.
void pass_zone(std::string_view& text) {
  if (take_char(text, 'Z') || text.empty() || (text.front() != '+' && text.front() != '-')) return;
  std::string_view offset = text.substr(1);
  int number = 0;
  if (!take_number(offset, 2, number)) return;
  if (!offset.empty()) {
    take_char(offset, ':');
    if (!take_number(offset, 2, number)) return;
  }
  text = offset;
}

// Reads the part behind a date, a fraction of a day.
Fault read_time_of_day(std::string_view text, double& days) {
  int hour = 0;
  int minute = 0;
  int second = 0;
  double fraction = 0.0;
  if (!take_number(text, 2, hour) || !take_char(text, ':') || !take_number(text, 2, minute)) {
    return Fault::kForm;
  }
  if (take_char(text, ':')) {
    if (!take_number(text, 2, second)) return Fault::kForm;
    if (take_char(text, '.')) {
      if (text.empty()) return Fault::kForm;
      double scale = 1.0;
      for (int digit = 0; take_number(text, 1, digit);) {
        scale /= 10.0;
        fraction += digit * scale;
      }
    }
  }
  pass_zone(text);
  if (!text.empty()) return Fault::kForm;
  if (hour > 23 || minute > 59 || second > 59) return Fault::kTime;
  days = ((hour * 60 + minute) * 60 + second + fraction) / kSecondsPerDay;
  return Fault::kNone;
}

Fault read(std::string_view text, double& days) {
  int year = 0;
  int month = 0;
  int day = 0;
  if (!take_number(text, 4, year) || !take_char(text, '-') || !take_number(text, 2, month) ||
      !take_char(text, '-') || !take_number(text, 2, day)) {
    return Fault::kForm;
  }
  double time = 0.0;
  if (!text.empty()) {
    if (!take_char(text, ' ') && !take_char(text, 'T')) return Fault::kForm;
    const Fault fault = read_time_of_day(text, time);
    if (fault != Fault::kNone) return fault;
  }
  const std::chrono::year_month_day date{std::chrono::year{year},
                                         std::chrono::month{static_cast<unsigned>(month)},
                                         std::chrono::day{static_cast<unsigned>(day)}};
  if (!date.ok()) return Fault::kDay;
  days = static_cast<double>((sys_days{date} - kDayZero).count()) + time;
  return Fault::kNone;
}

// A moment rounded to whole units.
struct Clock {
  std::chrono::year_month_day date;
  std::chrono::hh_mm_ss<std::chrono::seconds> time;

  Clock(double days, std::chrono::seconds unit) {
    const double length = static_cast<double>(unit.count());
    const double seconds = std::round(days * kSecondsPerDay / length) * length;
    const double whole = std::floor(seconds / kSecondsPerDay);
    date = kDayZero + std::chrono::days{static_cast<std::int32_t>(whole)};
    time = std::chrono::hh_mm_ss{
        std::chrono::seconds{static_cast<std::int64_t>(seconds - whole * kSecondsPerDay)}};
  }
  bool midnight() const { return time.to_duration().count() == 0; }
};

void add_digits(std::string& text, std::int64_t number, std::size_t width) {
  const std::string digits = std::to_string(number);
  text.append(width - std::min(width, digits.size()), '0').append(digits);
}

std::string text_of(const Clock& clock, bool with_time, bool with_seconds) {
  std::string text;
  add_digits(text, int{clock.date.year()}, 4);
  add_digits(text += '-', unsigned{clock.date.month()}, 2);
  add_digits(text += '-', unsigned{clock.date.day()}, 2);
  if (!with_time) return text;
  add_digits(text += ' ', clock.time.hours().count(), 2);
  add_digits(text += ':', clock.time.minutes().count(), 2);
  if (with_seconds) add_digits(text += ':', clock.time.seconds().count(), 2);
  return text;
}

}  // namespace

std::optional<double> parse_moment(std::string_view text) {
  double days = 0.0;
  if (read(text, days) != Fault::kNone) return std::nullopt;
  return days;
}

bool looks_like_moment(std::string_view text) {
  double days = 0.0;
  return read(text, days) != Fault::kForm;
}

std::string why_no_moment(std::string_view text, const char* words) {
  double days = 0.0;
  const Fault fault = read(text, days);
  const std::string quoted = in_quotes(text);
  if (fault == Fault::kDay) return quoted + " is not a date: there is no such day";
  if (fault == Fault::kTime) return quoted + " is not a date: there is no such time of day";
  return quoted + " " + words + " (dates are written YYYY-MM-DD or YYYY-MM-DD hh:mm)";
}

std::string moment_text(double days, bool with_time) {
  return text_of(Clock(days, std::chrono::minutes{1}), with_time, false);
}

std::string exact_moment_text(double days) {
  const Clock clock(days, std::chrono::seconds{1});
  return text_of(clock, !clock.midnight(), clock.time.seconds().count() != 0);
}

bool has_time_of_day(double days) {
  return !Clock(days, std::chrono::minutes{1}).midnight();
}

double roundest_moment(double days, double tolerance) {
  for (const double per_day : {1.0, 24.0, 1440.0, kSecondsPerDay}) {
    const double rounded = std::round(days * per_day) / per_day;
    if (std::fabs(rounded - days) <= tolerance) return rounded;
  }
  return std::round(days * kSecondsPerDay) / kSecondsPerDay;
}

}  // namespace vqmath63::host
