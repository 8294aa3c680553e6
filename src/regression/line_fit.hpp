// Straight lines through transformed samples.
#pragma once

#include <cstdint>

#include "frame/array.hpp"

namespace vqmath63 {

/// y = intercept + slope x, and the correlation coefficient of the samples.
struct Line {
  float intercept = 0.0F;
  float slope = 0.0F;
  float correlation = 0.0F;
};

/// Fits a line to samples 1 to n after a transform by type: 1 none, 2 ln x, 3 ln y, any other type
/// ln of both (the logarithms stored as Single). n is the upper bound of x.
///
/// Stops without a message, `line` as it was, when the upper bound of y is another or n is below 1,
/// and for types 2 and 3 at a value to be logged that is not above 0. Types 4 and up make no such
/// test: the logarithm of a value at or below 0 is error 5. `ok` is true when FitLine's was.
void FitaLine(const Array1<const float>& x, const Array1<const float>& y, std::int32_t type,
              Line& line, bool& ok);

/// The least-squares line of samples 1 to n, from this thread's shared statistics object's sums
/// (running Singles): with Sx the sum of x and so on,
///
///     num = n Sxy - Sx Sy,  dx = n Sxx - Sx^2,  dy = n Syy - Sy^2   (each stored as Single)
///     slope = num / dx,  intercept = (Sy - Sx slope) / n,  correlation = num / sqrt|dx dy|
///
/// A dx of 0 leaves line.slope as it is handed in, and it is used as such. A product dx dy (stored
/// as Single) of 0 counts as 2.22e-16. What was set before a failure stays set: a product beyond
/// Single, for one, costs the correlation only.
void FitLine(const Array1<const float>& x, const Array1<const float>& y, Line& line, bool& ok);

}  // namespace vqmath63
