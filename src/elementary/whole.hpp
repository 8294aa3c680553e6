// The nearest whole number.
#pragma once

#include <cmath>

namespace vqmath63::elementary {

/// x rounded to a whole number, halves to the even one; the sign stays, infinities and NaN too. By
/// two additions: what the C library of Windows has for it, nearbyint and rint, works with the x87
/// registers, whose own rounding a host may have set to another than that of all other arithmetic.
inline double nearest_whole(double x) {
  constexpr double kUnit = 0x1p52;  // from here on the last place is the unit, or more
  if (!(std::fabs(x) < kUnit)) return x;
  const double moved = std::copysign(kUnit, x);
  return std::copysign((x + moved) - moved, x);
}

}  // namespace vqmath63::elementary
