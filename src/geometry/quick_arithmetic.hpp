// Tolerant arithmetic without checks, for values known to be such that no step can fail.
#pragma once

#include <cmath>

#include "tolerant/tolerant_arithmetic.hpp"

namespace vqmath63::quick {

// One operation on two Singles in double precision, rounded to Single, is the Single operation: the
// functions here give ArithmeticS's results bit for bit wherever that does not fail.

inline float larger(float a, float b) {
  return a > b ? a : b;
}

/// A sum above this part of the larger operand is clear of the tolerance by more than all rounding.
inline constexpr float kCounts = 1.001F * detail::kNegligible;

/// ArithmeticS(a, b, "-").
inline float difference(float a, float b) {
  return detail::snapped(a - b, larger(std::abs(a), std::abs(b)));
}

/// ArithmeticS(a, b, "+").
inline float sum(float a, float b) {
  return detail::snapped(a + b, larger(std::abs(a), std::abs(b)));
}

/// dx ty / dy, worked out in double precision and stored as Single.
inline float offset_at(float dx, float ty, float dy) {
  return static_cast<float>(static_cast<double>(dx) * static_cast<double>(ty) /
                            static_cast<double>(dy));
}

/// The arithmetic of geometry/crossing.hpp in these.
struct Tolerant {
  static float difference(float a, float b) { return quick::difference(a, b); }
  static float offset_at(float dx, float ty, float dy) { return quick::offset_at(dx, ty, dy); }
};

/// Beyond this part of the largest magnitude to the left of all ends of a set of edges a point has
/// every edge to its right, and beyond it to the right none, whatever the tolerance does.
inline constexpr float kClear = 8e-6F;

}  // namespace vqmath63::quick
