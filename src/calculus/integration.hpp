// The quadrature rules behind ztIntegrate.
#pragma once

#include "frame/array.hpp"

namespace vqmath63 {

// In every rule x holds the abscissae and y the ordinates of the samples 1 to n, n being the upper
// bound of x (an element 0 is ignored). The area comes in the product of their units. A failure (an
// element that the rule reads is not there, overflow, ...) is reported under the rule's own name
// and the result is 0. Cost: one pass, at the speed of the dependent additions; no allocation.

/// Simpson's one-third rule on a uniform step: h/3 (y1 + 4 y2 + 2 y3 + ... + 4 y(n-1) + yn) with
/// h = x(2) - x(1); the other abscissae are not read. An even n is handed to Trapezoidal.
/// n = 1 fails: the rule reads x(2).
float Simpson(const Array1<const float>& x, const Array1<const float>& y);

/// Trapezoidal rule, any spacing: half the sum of (y(i) + y(i+1)) (x(i+1) - x(i)), summed in double
/// precision. 0 for n below 2.
float Trapezoidal(const Array1<const float>& x, const Array1<const float>& y);

/// Rectangles on each interval's left-hand ordinate, summed in Single. 0 for n below 2.
float Forward(const Array1<const float>& x, const Array1<const float>& y);

/// Rectangles on each interval's right-hand ordinate, summed in Single. 0 for n below 2.
float Backward(const Array1<const float>& x, const Array1<const float>& y);

}  // namespace vqmath63
