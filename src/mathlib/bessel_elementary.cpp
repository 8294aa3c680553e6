// The rarer of the elementary functions under the Bessel functions: the logarithm of two doubles
// and the argument reduction of large numbers.
#include "mathlib/bessel_elementary.hpp"

#include "elementary/two_by_pi.hpp"

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
  const elementary::Quarters<6> turns = elementary::quarters<6>(x);
  const auto quadrant = static_cast<std::uint32_t>(turns.bits_from(turns.point) & 3U);
  // The fraction less a half, in exact parts of 53, 11 and 53 bits.
  const auto fraction =
      static_cast<std::int64_t>(turns.bits_from(turns.point - 64) ^ 0x8000'0000'0000'0000U);
  const std::int64_t low = fraction & 0x7FF;
  const auto rest = static_cast<double>(turns.bits_from(turns.point - 128) >> 11U);
  const Pair part = exact_sum(static_cast<double>(fraction - low) * 0x1p-64,
                              static_cast<double>(low) * 0x1p-64 + rest * 0x1p-117);
  constexpr Pair kQuarter{1.5707963267948966, 6.123233995736766e-17};
  return {quadrant, part * kQuarter};
}

}  // namespace vqmath63::bessel
