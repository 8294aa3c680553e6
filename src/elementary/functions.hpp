// The elementary functions, made of IEEE additions, multiplications, divisions, square roots and
// integer operations alone: correctly rounded, so that every compiler and every machine gives the
// same bits, with fused multiply-add or without.
//
// Each has a quick way, which knows its result with some twelve bits more than a Double holds, and
// a bound for its error. Where the whole range of that error rounds to one Double, that is the
// result; else, one call in some thousands, the sure way (sure.hpp) tells it from 256 bits. Round
// to nearest is assumed, as the boundary sets it for every call. Methods of the quick ways: table
// and polynomial (P. T. P. Tang, ACM Transactions on Mathematical Software 15 and 16, 1989, 1990),
// reduction by parts of pi of few bits (W. J. Cody, W. Waite, Software Manual for the Elementary
// Functions, 1980), sums and products of two Doubles (T. J. Dekker, Numerische Mathematik 18,
// 1971), the rounding test (A. Ziv, ACM Transactions on Mathematical Software 17, 1991).
//
// Special values are those of the C standard, appendix F; no error number is set.
#pragma once

namespace vqmath63::elementary {

/// e^x.
double exp(double x);
/// Natural logarithm; minus infinity for 0, NaN below.
double log(double x);
/// ln(1 + x), also where 1 + x would lose the digits of x.
double log1p(double x);
/// Logarithm to base 10.
double log10(double x);
/// x^y.
double pow(double x, double y);
/// Circular functions of any finite angle, in radians; NaN for an infinity.
double sin(double x);
double cos(double x);
double tan(double x);
/// Arc tangent, from -pi/2 to pi/2.
double atan(double x);
/// Angle of the point (x, y), from -pi to pi.
double atan2(double y, double x);
/// sqrt(x^2 + y^2), without overflow on the way.
double hypot(double x, double y);

}  // namespace vqmath63::elementary
