// Cells in their plainest form, read in one go: a number without an exponent, an ISO day.
#pragma once

#include <chrono>
#include <cstdint>
#include <cstring>

namespace vqmath63::host {

/// Bytes that must be readable behind a text handed to these functions.
inline constexpr std::size_t kCellPadding = 16;

/// Reads digits with at most one decimal mark and a sign, and returns what follows them; null where
/// the text begins with nothing of the kind, or where its value is not sure to be the nearest
/// double: a whole number below 2^53 over a power of ten up to 10^22, both exact, divides to that.
inline const char* take_decimal(const char* at, double& number, char mark = '.') {
  constexpr double kPowers[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8, 1e9,
                                1e10, 1e11, 1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18};
  constexpr std::uint64_t kExact = std::uint64_t{1} << 53;
  constexpr std::ptrdiff_t kMostDigits = 18;
  const bool negative = *at == '-';
  at += negative || *at == '+' ? 1 : 0;
  const auto digit = [&] { return static_cast<unsigned>(*at - '0'); };
  std::uint64_t value = 0;
  const char* const begin = at;
  for (; digit() < 10; ++at) value = value * 10 + digit();
  std::ptrdiff_t digits = at - begin;
  std::ptrdiff_t decimals = 0;
  if (*at == mark) {
    const char* const point = ++at;
    for (; digit() < 10; ++at) value = value * 10 + digit();
    decimals = at - point;
    digits += decimals;
  }
  if (digits == 0 || digits > kMostDigits || value >= kExact) return nullptr;
  number = static_cast<double>(value);
  if (decimals > 0) number /= kPowers[decimals];
  if (negative) number = -number;
  return at;
}

/// Reads YYYY-MM-DD and returns what follows; null where there is none, or no such day. `days`
/// counts from 1899-12-30.
inline const char* take_iso_day(const char* at, double& days) {
  const auto digit = [&](int i) { return static_cast<unsigned>(at[i] - '0'); };
  for (const int i : {0, 1, 2, 3, 5, 6, 8, 9}) {
    if (digit(i) > 9) return nullptr;
  }
  if (at[4] != '-' || at[7] != '-') return nullptr;
  using namespace std::chrono;
  const year_month_day date{
      year{static_cast<int>(digit(0) * 1000 + digit(1) * 100 + digit(2) * 10 + digit(3))},
      month{digit(5) * 10 + digit(6)}, day{digit(8) * 10 + digit(9)}};
  if (!date.ok()) return nullptr;
  constexpr sys_days kDayZero{year{1899} / December / 30};
  days = static_cast<double>((sys_days{date} - kDayZero).count());
  return at + 10;
}

}  // namespace vqmath63::host
