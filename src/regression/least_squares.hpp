// Weighted polynomial least squares through the solver of linear systems.
#pragma once

#include <cstdint>

#include "frame/array.hpp"

namespace vqmath63 {

/// Most coefficients of a fit. Turning a fit on [-1, 1] into powers costs a factor of 1 + sqrt 2 in
/// accuracy with each degree: with the 42nd power no digit of a double is left.
inline constexpr std::int32_t kMostCoefficients = 42;

/// The polynomial p of `order` coefficients, p(x) = c(1) + c(2) x + ... + c(order) x^(order - 1),
/// that makes the sum over samples 1 to n of weights(i) (y(i) - p(x(i)))^2 least; n is the upper
/// bound of x. `coefficients` must hold elements 1 to `order`.
///
/// The normal equations are set up in double precision for polynomials that are orthogonal over the
/// samples (Forsythe, J. SIAM 5, 1957, 74-88), in the abscissa shifted and scaled onto [-1, 1];
/// MatrixEquation solves them, and solves them again for what is left of the residuals. So a
/// coefficient is accurate to Single as far as the samples, taken as the Singles they are, fix it
/// in double precision.
///
/// A weight of 0 leaves the sample out. No message, `ok` false and the list untouched: when fewer
/// different abscissae than coefficients are left, for an order above kMostCoefficients, and when a
/// NaN stands among the samples. Reported: order below 1, y, weights or list too short (9), a
/// negative weight, an infinite sample (5), a coefficient beyond Single (6).
///
/// Cost: O(n order^2); 5 Doubles of memory a sample.
void LeastSquares(const Array1<const float>& x, const Array1<const float>& y,
                  const Array1<const float>& weights, std::int32_t order,
                  Array1<float>& coefficients, bool& ok);

}  // namespace vqmath63
