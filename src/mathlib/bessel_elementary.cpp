// The rarer of the elementary functions under the Bessel functions: the logarithm of two doubles
// and the argument reduction of large numbers.
#include "mathlib/bessel_elementary.hpp"

#include <array>

namespace vqmath63::bessel {

Pair logarithm(Pair x) {
  const Exponential parts = parted(x.hi);
  const std::size_t place = log_place(parts.value);
  const double point = log_point(parts.value);
  const Pair mantissa{parts.value, scaled(x.lo, -parts.exponent)};
  const Pair u = (mantissa - Pair{point, 0.0}) / (mantissa + Pair{point, 0.0});
  // ln(mantissa / point) = 2 (u + u^3 / 3 + u^5 / 5 + ...), |u| <= 1 / 128.
  const Pair square = u * u;
  const double s = square.hi;
  const double tail = s * s * (1.0 / 5 + s * (1.0 / 7 + s * (1.0 / 9 + s * (1.0 / 11))));
  constexpr Pair kThird{1.0 / 3, 0x1.5555555555555p-56};
  const Pair series = u + u * (square * kThird + Pair{tail, 0.0});
  const double e = parts.exponent;
  return Pair{e * kLn2[0], 0.0} + exact_product(e, kLn2[1]) +
         Pair{kLogs[2 * place], kLogs[2 * place + 1]} + Pair{2.0 * series.hi, 2.0 * series.lo};
}

Angle reduced_far(double x) {
  // x is an integer below 2^53 times 2^exponent; of 2 / pi only those words are multiplied by it
  // that give neither whole circles nor less than 2^-105.
  constexpr int kWords = 6;
  const auto bits = std::bit_cast<std::uint64_t>(x);
  const int exponent = static_cast<int>(bits >> 52U) - 1075;
  const std::uint64_t integer = (bits & 0x000F'FFFF'FFFF'FFFFU) | 0x0010'0000'0000'0000U;
  const int skipped = exponent >= 2 ? (exponent - 2) / 32 : 0;

  // The product, lowest word first, and zeros for the reader of bits below to run into.
  std::array<std::uint64_t, kWords + 4> product{};
  for (std::size_t i = 0; i < kWords; ++i) {
    const std::uint64_t word = kTwoByPi[static_cast<std::size_t>(skipped) + kWords - 1 - i];
    const std::uint64_t low = (integer & 0xFFFF'FFFFU) * word + product[i];
    product[i] = low & 0xFFFF'FFFFU;
    const std::uint64_t high = (integer >> 32U) * word + product[i + 1] + (low >> 32U);
    product[i + 1] = high & 0xFFFF'FFFFU;
    product[i + 2] = high >> 32U;
  }

  // Its 64 bits from the given one on.
  const auto bits_from = [&product](unsigned first) {
    const std::size_t word = first / 32;
    const unsigned shift = first % 32;
    const std::uint64_t low = product[word] | product[word + 1] << 32U;
    const std::uint64_t high = product[word + 2];
    return shift == 0 ? low : low >> shift | high << (64U - shift);
  };
  const auto point = static_cast<unsigned>(32 * (kWords + skipped) - exponent);
  const auto quadrant = static_cast<std::uint32_t>(bits_from(point) & 3U);
  // The fraction less a half, in exact parts of 53, 11 and 53 bits.
  const auto fraction = static_cast<std::int64_t>(bits_from(point - 64) ^ 0x8000'0000'0000'0000U);
  const std::int64_t low = fraction & 0x7FF;
  const auto rest = static_cast<double>(bits_from(point - 128) >> 11U);
  const Pair part = exact_sum(static_cast<double>(fraction - low) * 0x1p-64,
                              static_cast<double>(low) * 0x1p-64 + rest * 0x1p-117);
  constexpr Pair kQuarter{1.5707963267948966, 6.123233995736766e-17};
  return {quadrant, part * kQuarter};
}

}  // namespace vqmath63::bessel
