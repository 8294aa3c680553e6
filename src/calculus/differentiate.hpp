// ztDifferentiate: first and second derivatives of a sampled curve.
#pragma once

#include "frame/array.hpp"

namespace vqmath63 {

/// Derivatives at every sample of a curve y(x) with abscissae at any spacing: centred differences
/// of three points inside, one-sided ones at the ends. Samples 1 to n, n being the upper bound of
/// xVals; a derivative comes in units of y over x (x squared). Keeps nothing between calls. O(n).
/// NaN: in the points whose formula reads it.
///
/// @failure One error line under the name of the formula that met it; what was written by then
/// stays, and qOK is False.
/// @param xVals abscissae 1 to n, at any spacing
/// @param yVals ordinates, at the same indices
/// @param qOK receives True when every point was reached
class ztDifferentiate {
 public:
  ztDifferentiate() noexcept;

  /// First derivative; inside from three points, h1 and h2 being the steps before and after a
  /// point. dydx must hold elements 1 to n already; it is not re-dimensioned. Fails for a single
  /// sample (9).
  /// $$ y'_i = \frac{h_1^2 y_{i+1} - (h_1^2 - h_2^2)\, y_i - h_2^2 y_{i-1}}{h_1 h_2 (h_1 + h_2)} $$
  /// @param dydx elements 1 to n, which receive the derivative
  void FirstDerivative(const Array1<const double>& xVals, const Array1<const double>& yVals,
                       Array1<double>& dydx, bool& qOK);

  /// Second derivative into d2ydx2, which comes back with bounds 1 to n. The inner points get one
  /// twelfth of the derivative, the end points the whole. Fails for n below 3 (9) and for equal
  /// abscissae within three neighbours (11, or 5 where the numerator is 0 as well).
  /// $$ \frac{2}{12} \cdot \frac{h_1 y_{i+1} - (h_1 + h_2)\, y_i + h_2 y_{i-1}}{h_1 h_2 (h_1 +
  /// h_2)} $$
  /// @param d2ydx2 receives the second derivative, of the inner points a twelfth of it
  void SecondDerivative(const Array1<const double>& xVals, const Array1<const double>& yVals,
                        Array1<double>& d2ydx2, bool& qOK);

  /// Forward differences at points 1 to n - 1 of dydx, which comes back with bounds 1 to n and a 0
  /// at point n. Fails for a single sample (9).
  /// $$ y'_i = \frac{y_{i+1} - y_i}{x_{i+1} - x_i} $$
  /// @param dydx receives the derivative, 0 at the last point
  void FirstDerivativeForwards(const Array1<const double>& xVals, const Array1<const double>& yVals,
                               Array1<double>& dydx, bool& qOK);

  /// Backward differences at points 2 to n of dydx, which comes back with bounds 1 to n and a 0 at
  /// point 1.
  /// $$ y'_i = \frac{y_i - y_{i-1}}{x_i - x_{i-1}} $$
  /// @param dydx receives the derivative, 0 at the first point
  void FirstDerivativeBackwards(const Array1<const double>& xVals,
                                const Array1<const double>& yVals, Array1<double>& dydx, bool& qOK);

 private:
  void InitDiffs(bool& ok);
};

}  // namespace vqmath63
