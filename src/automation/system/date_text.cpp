// Dates as text.
#include <charconv>
#include <chrono>
#include <cmath>

#include "automation/system/codes.hpp"
#include "automation/system/conversion.hpp"

namespace vqmath63::automation::system {

namespace {

using std::chrono::days;
using std::chrono::sys_days;
using std::chrono::year_month_day;

constexpr sys_days kDayZero{std::chrono::year{1899} / 12 / 30};
constexpr int kFirstDay = -657434;  // 0100-01-01
constexpr int kLastDay = 2958465;   // 9999-12-31
constexpr int kDaySeconds = 86400;

/// Writes a number with leading zeros and moves on.
void put(char*& at, unsigned value, int width) {
  for (int i = width - 1; i >= 0; --i, value /= 10) at[i] = static_cast<char>('0' + value % 10);
  at += width;
}

/// Reads a number of exactly that many digits off the front.
bool take(std::string_view& text, std::size_t width, unsigned& value) {
  if (text.size() < width) return false;
  const char* end = text.data() + width;
  const auto read = std::from_chars(text.data(), end, value);
  if (read.ec != std::errc{} || read.ptr != end) return false;
  text.remove_prefix(width);
  return true;
}

bool take(std::string_view& text, char c) {
  if (text.empty() || text.front() != c) return false;
  text.remove_prefix(1);
  return true;
}

}  // namespace

bool is_date(double value) {
  return value > kFirstDay - 1 && value < kLastDay + 1;
}

HRESULT format_date(DATE value, char (&room)[kFormatRoom], std::string_view& text) {
  if (!is_date(value)) return DISP_E_OVERFLOW;
  int day = static_cast<int>(value);
  // The fraction runs forward from midnight on both sides of day zero: -1.25 is 6:00 of day -1.
  const double passed = std::fabs(value - day) * kDaySeconds;
  auto seconds = static_cast<int>(std::lround(passed));  // platform: exact
  if (seconds == kDaySeconds) {
    if (day < kLastDay) {
      ++day;
      seconds = 0;
    } else {
      --seconds;
    }
  }
  const year_month_day date{kDayZero + days{day}};
  char* at = room;
  put(at, static_cast<unsigned>(static_cast<int>(date.year())), 4);
  *at++ = '-';
  put(at, static_cast<unsigned>(date.month()), 2);
  *at++ = '-';
  put(at, static_cast<unsigned>(date.day()), 2);
  if (seconds != 0) {
    const auto time = static_cast<unsigned>(seconds);
    *at++ = ' ';
    put(at, time / 3600, 2);
    *at++ = ':';
    put(at, time / 60 % 60, 2);
    *at++ = ':';
    put(at, time % 60, 2);
  }
  text = {room, static_cast<std::size_t>(at - room)};
  return S_OK;
}

HRESULT parse_date(std::string_view text, DATE& value) {
  double number = 0;
  const HRESULT hr = parse_real(text, number);
  if (hr != DISP_E_TYPEMISMATCH) {
    if (FAILED(hr)) return hr;
    if (!is_date(number)) return DISP_E_OVERFLOW;
    value = number;
    return S_OK;
  }
  unsigned year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0;
  if (!take(text, 4, year) || !take(text, '-') || !take(text, 2, month) || !take(text, '-') ||
      !take(text, 2, day)) {
    return DISP_E_TYPEMISMATCH;
  }
  if (!text.empty()) {
    if (!take(text, ' ') && !take(text, 'T')) return DISP_E_TYPEMISMATCH;
    if (!take(text, 2, hour) || !take(text, ':') || !take(text, 2, minute)) {
      return DISP_E_TYPEMISMATCH;
    }
    if (!text.empty() && (!take(text, ':') || !take(text, 2, second) || !text.empty())) {
      return DISP_E_TYPEMISMATCH;
    }
  }
  const year_month_day date{std::chrono::year{static_cast<int>(year)}, std::chrono::month{month},
                            std::chrono::day{day}};
  if (year < 100 || !date.ok() || hour > 23 || minute > 59 || second > 59) {
    return DISP_E_TYPEMISMATCH;
  }
  const auto whole = static_cast<double>((sys_days{date} - kDayZero).count());
  const double time = (hour * 3600 + minute * 60 + second) / static_cast<double>(kDaySeconds);
  value = whole < 0 ? whole - time : whole + time;
  return S_OK;
}

}  // namespace vqmath63::automation::system
