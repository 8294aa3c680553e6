// The middle ways of the elementary functions, for what the quick ways could not round: in numbers
// of two Doubles throughout, some twenty bits nearer and fifteen times faster than the sure ways.
// Each says whether its result could be rounded; one in a million cannot, and goes the sure way.
#pragma once

#include <cstdint>

#include "elementary/pair.hpp"

namespace vqmath63::elementary::middle {

/// e^x, |x| < 708; x is within the given error of the exponent that is meant.
bool exp(Pair x, double exponent_error, double& result);

/// ln x of normal x > 0, within 2^-85 of it.
Pair logarithm(double x);

/// Absolute error of an angle that has been brought beside a point of the table of sines.
constexpr double kReductionError = 0x1p-103;

/// Sine and tangent of steps pi / 256 + angle, |angle| < 2^-7.
bool sin(std::uint64_t steps, Pair angle, double& result);
bool tan(std::uint64_t steps, Pair angle, double& result);

/// So many quarters of the circle and atan(a / b), or less it; 0 < a <= b < 2^500, b > 2^-480, and
/// of quarters 0 the sum.
bool arc(double quarters, double sign, double a, double b, double& result);

}  // namespace vqmath63::elementary::middle
