// The exponential and the logarithm of four Doubles at once, for files that are compiled for
// processors with AVX2 and fused multiply-add. The quick ways' steps side by side; what those
// cannot round, or are not made for, is called one by one, so that the bits are the same.
#pragma once

#include <immintrin.h>

#include "elementary/ways/support.hpp"

namespace vqmath63::elementary::fused {

using Four [[gnu::vector_size(32)]] = double;
using FourBits [[gnu::vector_size(32)]] = std::uint64_t;
/// All bits of a lane are set, or none.
using FourTruths = decltype(Four{} < Four{});

/// A bit a lane.
inline unsigned truths(FourTruths lanes) {
  return static_cast<unsigned>(_mm256_movemask_pd(reinterpret_cast<Four>(lanes)));
}
inline bool any(FourTruths lanes) {
  return truths(lanes) != 0;
}
inline bool all(FourTruths lanes) {
  return truths(lanes) == 15;
}
/// Each lane from `yes` where its truth holds, else from `no`.
inline Four chosen(FourTruths lanes, Four yes, Four no) {
  return lanes ? yes : no;
}
inline Four four(double x) {
  return Four{x, x, x, x};
}
inline Four magnitude(Four x) {
  return reinterpret_cast<Four>(reinterpret_cast<FourBits>(x) & 0x7FFF'FFFF'FFFF'FFFFU);
}
inline Four at(const double* table, FourBits index) {
  return Four{table[index[0]], table[index[1]], table[index[2]], table[index[3]]};
}

inline Four exp(Four x) {
  constexpr double kUnit = 0x1.8p52;
  const Four shifted = x * k4096ByLn2[0] + kUnit;
  const Four steps = shifted - kUnit;
  const auto bits = reinterpret_cast<FourBits>(shifted);
  const FourBits coarse = 2U * (bits >> 6U & 63U);
  const FourBits fine = 2U * (bits & 63U);
  const Four lacking = at(kCoarsePowers + 1, coarse) + at(kFinePowers + 1, fine);
  const Four r = _mm256_fnmadd_pd(steps, four(kLn2By4096[0]), x) +
                 _mm256_fnmadd_pd(steps, four(kLn2By4096[1]), lacking);
  const Four series =
      _mm256_fmadd_pd(r, _mm256_fmadd_pd(r, four(1.0 / 24), four(1.0 / 6)), four(0.5));
  const Four rest = _mm256_fmadd_pd(r * r, series, r);
  const Four high = at(kCoarsePowers, coarse) * at(kFinePowers, fine);
  const Four upper = high + _mm256_fmadd_pd(high, rest, four(kExponentialError));
  const Four lower = high + _mm256_fmadd_pd(high, rest, four(-kExponentialError));
  Four result = reinterpret_cast<Four>(reinterpret_cast<FourBits>(upper) + (bits >> 12U << 52U));
  const FourTruths sure = (upper <= lower) & (magnitude(x) < kMostExponent);
  if (!all(sure)) [[unlikely]] {
    for (int k = 0; k < 4; ++k) {
      if (sure[k] == 0) result[k] = fused::exp(x[k]);
    }
  }
  return result;
}

inline Four log(Four x) {
  constexpr std::uint64_t kLowest = 0x3FE6'0000'0000'0000;  // 11 / 16
  const auto bits = reinterpret_cast<FourBits>(x);
  const FourBits above = bits - kLowest;
  const FourBits row = 3U * (above >> 44U & 255U);
  // The exponent, made positive, as the last bits of a Double.
  const FourBits biased = (above + 0x4000'0000'0000'0000U) >> 52U;
  const Four exponent = reinterpret_cast<Four>(biased | 0x4330'0000'0000'0000U) - (0x1p52 + 1024.0);
  const Four mantissa = reinterpret_cast<Four>(bits - (above & 0xFFF0'0000'0000'0000U));
  const Four factor = at(kLogRows, row);
  const Four high = _mm256_fmadd_pd(exponent, four(kLn2[0]), at(kLogRows + 1, row));
  const Four low = _mm256_fmadd_pd(exponent, four(kLn2[1]), at(kLogRows + 2, row));
  const Four product = mantissa * factor;
  const Four r = (product - 1.0) + _mm256_fmsub_pd(mantissa, factor, product);
  const Four square = r * r;
  const double* c = kShortLogSeries;
  const Four series = _mm256_fmadd_pd(
      square, _mm256_fmadd_pd(square, four(c[4]), _mm256_fmadd_pd(r, four(c[3]), four(c[2]))),
      _mm256_fmadd_pd(r, four(c[1]), four(c[0])));
  const Four sum = high + r;
  const Four rest = _mm256_fmadd_pd(square, series, (r - (sum - high)) + low);
  constexpr double kError = 0x1p-61;
  Four result = sum + (rest + kError);
  const FourTruths sure = (result <= sum + (rest - kError)) & (x >= 0x1p-1022) & (x <= kLargest) &
                          ((x < kNearOne) | (x > kPastOne));
  if (!all(sure)) {
    for (int k = 0; k < 4; ++k) {
      if (sure[k] == 0) result[k] = fused::log(x[k]);
    }
  }
  return result;
}

}  // namespace vqmath63::elementary::fused
