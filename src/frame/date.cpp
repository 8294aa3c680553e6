// Conversions between dates and day counts, and the clock.
#include "frame/date.hpp"

#include <chrono>
#include <cmath>
#include <ctime>

namespace vqmath63 {
double day_count(Date date) {
  const double whole = std::trunc(date.value);
  // The test keeps NaN and infinities as they are, too.
  if (!(date.value < 0.0) || whole == date.value) return date.value;
  return whole + (whole - date.value);
}

Date date_of(double days) {
  const double whole = std::floor(days);
  if (!(days < 0.0) || whole == days) return {days};
  const double date = whole - (days - whole);
  // A moment so close before midnight that its time of day rounds to 24 hours is the next day.
  return {date <= whole - 1.0 ? whole + 1.0 : date};
}

std::tm local_time() {
  const std::time_t seconds = std::time(nullptr);
  std::tm local{};
#ifdef _WIN32
  localtime_s(&local, &seconds);
#else
  localtime_r(&seconds, &local);
#endif
  return local;
}

Date now() {
  using namespace std::chrono;
  const std::tm local = local_time();
  constexpr sys_days kDayZero{year{1899} / 12 / 30};
  const sys_days today{year{local.tm_year + 1900} / (local.tm_mon + 1) / local.tm_mday};
  const int second_of_day = (local.tm_hour * 60 + local.tm_min) * 60 + local.tm_sec;
  return {static_cast<double>((today - kDayZero).count()) + second_of_day / 86400.0};
}

}  // namespace vqmath63
