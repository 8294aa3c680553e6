// The sure ways of the elementary functions: correctly rounded by 256 bits, and slow. The quick
// ways come here when their result lies too close to the middle between two Doubles, or in a
// corner.
//
// How close a result comes: the hardest arguments known need some 120 bits (V. Lefevre, J.-M.
// Muller, Worst cases for correct rounding of the elementary functions in double precision, 2001),
// those below 2^-30 up to 160; of the pairs of arguments of a power one may need 181.
#pragma once

#include "elementary/wide.hpp"

namespace vqmath63::elementary::sure {

// Arguments are finite; of logarithms greater than zero (log1p: than -1).
double exp(double x);
double log(double x);
double log1p(double x);
double log10(double x);
double sin(double x);
double cos(double x);
double tan(double x);

/// x^y of x > 0.
double pow(double x, double y);

/// Angle of the point (x, y), x and y > 0: approximation is within 2^-40 of it, absolutely.
Wide angle(double y, double x, double approximation);

/// sqrt(x^2 + y^2).
double hypot(double x, double y);

}  // namespace vqmath63::elementary::sure
