// The constants of the mathematical functions, each the literal that the results reproduce.
#pragma once

#include "tolerant/out_of_range.hpp"

namespace vqmath63::constants {

// Fifteen significant digits, on purpose not the nearest Doubles: results show them.
inline constexpr double kHalfPi = 1.5707963267949;
inline constexpr double kPi = 3.14159265358979;
inline constexpr double kOneOverPi = 0.318309886183791;
inline constexpr double kE = 2.71828182845905;
inline constexpr double kLog10OfE = 0.434294481903252;
inline constexpr double kDegreesPerRadian = 57.2957795130823;
inline constexpr double kRadiansPerDegree = 0.017453292519943;
inline constexpr double kOneThird = 0.333333333333333;
inline constexpr double kLogSqrtTwoPi = 0.918938533204673;
inline constexpr double kOneOverSqrtPi = 0.564189583547756;

inline constexpr double kExponentLimit = 707.47;  ///< beyond it an exponential is out of range
inline constexpr double kTanhSaturation = 36.8;   ///< beyond it a hyperbolic tangent is its sign
inline constexpr double kSmallArgument = 1e-10;   ///< up to it the first term of a series does
inline constexpr double kTinyDivisor = 9e-308;    ///< up to it a reciprocal is out of range
inline constexpr double kUnitBand = 1e-15;        ///< acoth, acsc: magnitudes that count as 1
inline constexpr double kWideUnitBand = 1e-14;  ///< asec likewise; acsch: arguments that count as 0

}  // namespace vqmath63::constants
