// J0, J1, y0, y1: polynomials in x^2 near 0, about each zero up to 25, beyond in modulus and phase.
#include "mathlib/bessel_circular.hpp"

#include <iterator>

#include "frame/checked_functions.hpp"
#include "mathlib/bessel.hpp"
#include "mathlib/bessel_elementary.hpp"
#include "mathlib/bessel_fits.hpp"
#include "tolerant/out_of_range.hpp"

namespace vqmath63 {

namespace bessel {
namespace {

constexpr double kOneByPi = 0.31830988618379067;

// The function near a zero, from a row {zero, tail, c1, c2, ...}: t (c1 + c2 t + ...), t = x -
// zero. x - zero is exact beside the zero, where the zero's tail counts.
template <std::size_t kSize>
double about_zero(const double* row, double x) {
  const double t = (x - row[0]) - row[1];
  return t * polynomial<kSize - 2>(row + 2, t);
}

// The same with the row of x: rows follow each other by pi, from x = -start pi on.
template <std::size_t kSize>
double about_zeros(const double (*rows)[kSize], double x, double start) {
  return about_zero<kSize>(rows[static_cast<int>(x * kOneByPi + start)], x);
}

// sqrt(J^2 + Y^2) cos(angle of J + i Y), for x >= kFar; DLMF 10.18.
template <std::size_t kModulus, std::size_t kPhase>
double oscillating(const double (&modulus)[kModulus], const double (&phase)[kPhase], double x,
                   std::uint32_t turn) {
  if (!(x < kInfinity)) [[unlikely]]
    return x == kInfinity ? 0.0 : x;
  const double inverse = 1.0 / x;
  const double square = inverse * inverse;
  const Angle angle = reduced(x);
  const double rest = angle.rest.hi + (angle.rest.lo + inverse * polynomial(phase, square));
  return unchecked::sqrt(inverse) * polynomial(modulus, square) *
         cosine(angle.quadrant + turn, rest);
}

}  // namespace

double j_zero(double x) {
  if (x <= 2.0) return polynomial(kJ0Near, x * x);
  if (x < kFar) return about_zeros(kJ0Zeros, x, -0.25);
  return oscillating(kModulus0, kPhase0, x, 0);
}

double j_one(double x) {
  if (x <= 2.35) return x * polynomial(kJ1Near, x * x);
  if (x < kFar) return about_zeros(kJ1Zeros, x, -0.75);
  return oscillating(kModulus1, kPhase1, x, 3);
}

double y_zero(double x) {
  if (x < 2.35) {
    const double square = x * x;
    return polynomial(kY0Near, square) + logarithm(x) * polynomial(kY0Log, square);
  }
  if (x < 5.49) return about_zero<std::size(kY0SecondZero)>(kY0SecondZero, x);
  if (x < kFar) return about_zeros(kY0Zeros, x, -1.75);
  return oscillating(kModulus0, kPhase0, x, 3);
}

double y_one(double x) {
  if (x < 3.92) {
    // 2 / pi is 0.63661977236758134 (1 + kTail) here.
    constexpr double kTail = -6.1822362e-17;
    const double pole = -0.63661977236758134 / x;
    if (pole == -kInfinity) [[unlikely]]
      return pole;
    const double t = x * x - 8.0;
    return pole +
           (x * (polynomial(kY1Near, t) + logarithm(x) * polynomial(kY1Log, t)) + kTail * pole);
  }
  if (x < 7.06) return about_zero<std::size(kY1SecondZero)>(kY1SecondZero, x);
  if (x < kFar) return about_zeros(kY1Zeros, x, -2.25);
  return oscillating(kModulus1, kPhase1, x, 2);
}

}  // namespace bessel

double J0(double X) {
  return bessel::j_zero(std::fabs(X));
}

double J1(double X) {
  return std::copysign(1.0, X) * bessel::j_one(std::fabs(X));
}

double y0(double X) {
  return X <= 0.0 ? kOutOfRange : bessel::y_zero(X);
}

double y1(double X) {
  if (X <= 0.0) return kOutOfRange;
  const double value = bessel::y_one(X);
  return value == -bessel::kInfinity ? -kOutOfRange : value;
}

}  // namespace vqmath63
