// ztDifferentiate: first and second derivatives of a sampled curve.
#pragma once

#include "frame/array.hpp"

namespace vqmath63 {

/// Derivatives at every sample of a curve y(x) with abscissae at any spacing: centred differences
/// of three points inside, one-sided ones at the ends. Samples 1 to n, n being the upper bound of
/// xVals; a derivative comes in units of y over x (x squared). Keeps nothing between calls. qOK is
/// true when every point was reached; a failure is reported under the name of the formula that met
/// it, and what was written by then stays. O(n). NaN: in the points whose formula reads it.
class ztDifferentiate {
 public:
  ztDifferentiate();

  /// First derivative. dydx must hold elements 1 to n already; it is not re-dimensioned. Fails for
  /// a single sample (9).
  void FirstDerivative(const Array1<const double>& xVals, const Array1<const double>& yVals,
                       Array1<double>& dydx, bool& qOK);

  /// Second derivative into d2ydx2, which comes back with bounds 1 to n. The inner points get one
  /// twelfth of the derivative, the end points the whole. Fails for n below 3 (9) and for equal
  /// abscissae within three neighbours (11, or 5 where the numerator is 0 as well).
  void SecondDerivative(const Array1<const double>& xVals, const Array1<const double>& yVals,
                        Array1<double>& d2ydx2, bool& qOK);

  /// Forward differences at points 1 to n - 1 of dydx, which comes back with bounds 1 to n and a 0
  /// at point n. Fails for a single sample (9).
  void FirstDerivativeForwards(const Array1<const double>& xVals, const Array1<const double>& yVals,
                               Array1<double>& dydx, bool& qOK);

  /// Backward differences at points 2 to n of dydx, which comes back with bounds 1 to n and a 0 at
  /// point 1.
  void FirstDerivativeBackwards(const Array1<const double>& xVals,
                                const Array1<const double>& yVals, Array1<double>& dydx, bool& qOK);

 private:
  void InitDiffs(bool& ok);
};

}  // namespace vqmath63
