// The elementary functions, made of IEEE additions, multiplications, divisions, square roots and
// integer operations alone: correctly rounded, so that every compiler and every machine gives the
// same bits.
//
// Each has a quick way, which knows its result with some twelve bits more than a Double holds, and
// a bound for its error. Where the whole range of that error rounds to one Double, that is the
// result; else, one call in some thousands, a middle way (middle.hpp) does the same with twenty
// bits more, and what it cannot tell the sure way (sure.hpp) tells from 256 bits. So it does not
// matter which quick way a call takes: there is one of fused multiply-add for processors that have
// it, and one without. Round to nearest is assumed, as the boundary sets it for every call.
//
// Methods of the quick ways: table and polynomial (P. T. P. Tang, ACM Transactions on Mathematical
// Software 15 and 16, 1989, 1990), reduction by parts of pi of few bits (W. J. Cody, W. Waite,
// Software Manual for the Elementary Functions, 1980), sums and products of two Doubles (T. J.
// Dekker, Numerische Mathematik 18, 1971), the rounding test (A. Ziv, ACM Transactions on
// Mathematical Software 17, 1991).
//
// Special values are those of the C standard, appendix F; no error number is set.
#pragma once

namespace vqmath63::elementary {

#ifdef __x86_64__
/// Whether the processor has fused multiply-add; false until it has been asked, at start.
extern const bool kFused;
#define VQ_ELEMENTARY_WAYS(...) \
  namespace portable {          \
  __VA_ARGS__                   \
  }                             \
  namespace fused {             \
  __VA_ARGS__                   \
  }
#define VQ_ELEMENTARY_CALL(name, ...) \
  (kFused ? fused::name(__VA_ARGS__) : portable::name(__VA_ARGS__))
#else
#define VQ_ELEMENTARY_WAYS(...) \
  namespace portable {          \
  __VA_ARGS__                   \
  }
#define VQ_ELEMENTARY_CALL(name, ...) portable::name(__VA_ARGS__)
#endif

VQ_ELEMENTARY_WAYS(double exp(double x); double log(double x); double log1p(double x);
                   double log10(double x); double pow(double x, double y); double sin(double x);
                   double cos(double x); double tan(double x); double atan(double x);
                   double atan2(double y, double x); double hypot(double x, double y);)

/// e^x.
inline double exp(double x) {
  return VQ_ELEMENTARY_CALL(exp, x);
}
/// Natural logarithm; minus infinity for 0, NaN below.
inline double log(double x) {
  return VQ_ELEMENTARY_CALL(log, x);
}
/// ln(1 + x), also where 1 + x would lose the digits of x.
inline double log1p(double x) {
  return VQ_ELEMENTARY_CALL(log1p, x);
}
/// Logarithm to base 10.
inline double log10(double x) {
  return VQ_ELEMENTARY_CALL(log10, x);
}
/// x^y.
inline double pow(double x, double y) {
  return VQ_ELEMENTARY_CALL(pow, x, y);
}
/// Circular functions of any finite angle, in radians; NaN for an infinity.
inline double sin(double x) {
  return VQ_ELEMENTARY_CALL(sin, x);
}
inline double cos(double x) {
  return VQ_ELEMENTARY_CALL(cos, x);
}
inline double tan(double x) {
  return VQ_ELEMENTARY_CALL(tan, x);
}
/// Arc tangent, from -pi/2 to pi/2.
inline double atan(double x) {
  return VQ_ELEMENTARY_CALL(atan, x);
}
/// Angle of the point (x, y), from -pi to pi.
inline double atan2(double y, double x) {
  return VQ_ELEMENTARY_CALL(atan2, y, x);
}
/// sqrt(x^2 + y^2), without overflow on the way.
inline double hypot(double x, double y) {
  return VQ_ELEMENTARY_CALL(hypot, x, y);
}

#undef VQ_ELEMENTARY_CALL
#undef VQ_ELEMENTARY_WAYS

}  // namespace vqmath63::elementary
