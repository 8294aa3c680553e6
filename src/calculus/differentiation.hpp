// The difference formulas behind ztDifferentiate, each over a range of points.
#pragma once

#include <cstdint>

#include "frame/array.hpp"

namespace vqmath63 {

// x holds the abscissae and y the ordinates of the samples 1 to n, n being the upper bound of x; d
// receives the derivatives and is not re-dimensioned. Abscissae are taken as they come, rising or
// not. `ok` is false on entry and true when the range was worked through. A failure (an element
// that a formula reads or writes is not there, overflow, ...) is reported under the routine's own
// name; the points before it, in the routine's order, have been written, the others have not.
// First derivatives add 1e-20 to their denominators, so that equal abscissae give a huge value
// rather than a fault; second derivatives do not. Cost: one pass, no allocation.

/// Forward differences at points i1 up to min(i2, n - 1), in rising order. A single sample has no
/// next one: it fails at point 1 (9).
void FirstDerivativeUpStream(const Array1<const double>& x, const Array1<const double>& y,
                             std::int32_t i1, std::int32_t i2, Array1<double>& d, bool& ok);

/// Backward differences at points i2 down to max(i1, 2), in falling order.
void FirstDerivativeDownStream(const Array1<const double>& x, const Array1<const double>& y,
                               std::int32_t i1, std::int32_t i2, Array1<double>& d, bool& ok);

/// The slope at point i of the parabola through points i - 1, i, i + 1, from max(i1, 2) up to i2,
/// or up to n - 1 when i2 + 1 > n.
void FirstDerivativeCentered(const Array1<const double>& x, const Array1<const double>& y,
                             std::int32_t i1, std::int32_t i2, Array1<double>& d, bool& ok);

/// Forward differences at points 1 to i1 when i1 <= 2, backward differences at points n down to i2
/// when i2 >= n, then centred ones at what lies between; i1 or 2 up to i2 or n - 1. `ok` is that of
/// the last of the three that was called, and false when none was.
void FirstDerivatives(const Array1<const double>& x, const Array1<const double>& y, std::int32_t i1,
                      std::int32_t i2, Array1<double>& d, bool& ok);

/// Second derivative of the parabola through points i, i + 1, i + 2, for i from i1 up to i2.
void SecondDerivativeUpStream(const Array1<const double>& x, const Array1<const double>& y,
                              std::int32_t i1, std::int32_t i2, Array1<double>& d, bool& ok);

/// Second derivative of the parabola through points i - 2, i - 1, i, for i from i1 up to i2.
void SecondDerivativeDownStream(const Array1<const double>& x, const Array1<const double>& y,
                                std::int32_t i1, std::int32_t i2, Array1<double>& d, bool& ok);

/// One twelfth of the second derivative of the parabola through points i - 1, i, i + 1, for i from
/// i1 up to i2.
void SecondDerivativeCentered(const Array1<const double>& x, const Array1<const double>& y,
                              std::int32_t i1, std::int32_t i2, Array1<double>& d, bool& ok);

/// As FirstDerivatives, with the second derivatives; the forward ones when i1 < 3. Fails for n
/// below 1 (9).
void SecondDerivatives(const Array1<const double>& x, const Array1<const double>& y,
                       std::int32_t i1, std::int32_t i2, Array1<double>& d, bool& ok);

}  // namespace vqmath63
