// Cells in their plainest form, read in one go: a number without an exponent, an ISO day.
#pragma once

#include <bit>
#include <chrono>
#include <cstdint>
#include <cstring>

namespace vqmath63::host {

/// Bytes that must be readable behind a text handed to these functions.
inline constexpr std::size_t kCellPadding = 16;

/// 10 to the power of 0, 1, ... 18, each exact.
inline constexpr double kPowersOfTen[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8, 1e9,
                                          1e10, 1e11, 1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18};

/// take_decimal of the usual case, a number and what follows it within eight bytes, which it looks
/// at together: no turn depends on how many digits there are. Null where it is another case. Eight
/// bytes must be readable.
inline const char* take_short_decimal(const char* at, double& number, char mark) {
  if constexpr (std::endian::native != std::endian::little) return nullptr;
  constexpr std::uint64_t kEach = 0x0101010101010101U;
  std::uint64_t word = 0;
  std::memcpy(&word, at, sizeof word);
  word ^= kEach * '0';  // a digit's byte is its value now
  // The top bit of each byte that is no digit.
  const std::uint64_t others = (((word & kEach * 0x7F) + kEach * 0x76) | word) & kEach * 0x80;
  if (others == 0) return nullptr;
  const auto bits_before = [](std::uint64_t tops) { return std::countr_zero(tops) & ~7; };
  int bits = bits_before(others);  // of the digits
  int decimals = 0;
  if (at[bits / 8] == mark) {
    const std::uint64_t second = others & (others - 1);
    if (second == 0) return nullptr;
    const std::uint64_t before_mark = (std::uint64_t{1} << bits) - 1;
    word = (word & before_mark) | (word >> 8 & ~before_mark);
    const int all = bits_before(second);
    decimals = all / 8 - bits / 8 - 1;
    bits = all - 8;
    at += 1;
  }
  if (bits == 0) return nullptr;
  word <<= 64 - bits;  // eight digits, with zeros before the first
  word = word * 10 + (word >> 8);
  constexpr std::uint64_t kPairs = 0x000000FF000000FFU;
  word =
      ((word & kPairs) * 0x000F424000000064U + (word >> 16 & kPairs) * 0x0000271000000001U) >> 32;
  number = static_cast<double>(static_cast<std::int64_t>(word)) / kPowersOfTen[decimals];
  return at + bits / 8;
}

/// Reads digits with at most one decimal mark and a sign, and returns what follows them; null where
/// the text begins with nothing of the kind, or where its value is not sure to be the nearest
/// double: a whole number below 2^53 over a power of ten up to 10^22, both exact, divides to that.
inline const char* take_decimal(const char* at, double& number, char mark = '.') {
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
  if (decimals > 0) number /= kPowersOfTen[decimals];
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
