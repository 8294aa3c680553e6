// The solver of square linear systems behind the regressions.
#pragma once

#include "frame/array.hpp"

namespace vqmath63 {

/// Solves A x = b by Gaussian elimination with partial pivoting, every stored value a Single.
///
/// A(i, j) is the coefficient of unknown j in equation i; n is the upper bound of A's rows. b holds
/// the right-hand side 1 to n; neither is changed. x must hold elements 1 to n already and gets the
/// solution. Of equal largest pivots the last row is taken. Each difference a - m b is worked out
/// in double precision and rounded once.
///
/// `singular` comes back true, without any message and with x untouched, when the largest
/// magnitude left in a pivot column is below 2.22e-16, or none there is a number; `ok` is true only
/// when x is the solution. Everything else that goes wrong is reported: n below 1, A, b or x too
/// small (9; a short x has been written as far as it goes), a value beyond Single (6).
///
/// O(n^3); up to n = 16 no allocation.
void MatrixEquation(const Array2<const float>& A, const Array1<const float>& b, Array1<float>& x,
                    bool& singular, bool& ok);

}  // namespace vqmath63
