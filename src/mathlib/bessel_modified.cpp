// I0, i1, K0, K1: polynomials in x^2 near 0, beyond the exponential times polynomials in 1 / x.
#include "mathlib/bessel_modified.hpp"

#include "frame/checked_functions.hpp"
#include "mathlib/bessel.hpp"
#include "mathlib/bessel_elementary.hpp"
#include "mathlib/bessel_fits.hpp"
#include "tolerant/out_of_range.hpp"

namespace vqmath63 {

namespace bessel {
namespace {

// The row's polynomial in a / x - b, over sqrt(x).
template <std::size_t kSize>
double falling(const double (&row)[kSize], double x) {
  const double inverse = 1.0 / x;
  return unchecked::sqrt(inverse) * polynomial<kSize - 2>(&row[2], row[0] * inverse - row[1]);
}

// K's rows begin at 1, 2, 4 and 8.
std::size_t k_row(double x) {
  const auto exponent = static_cast<int>(std::bit_cast<std::uint64_t>(x) >> 52U) - 1023;
  return static_cast<std::size_t>(exponent < 3 ? exponent : 3);
}

// e^x part, or the out-of-range value.
double i_value(double part, double x) {
  const double value = times_exponential(part, x);
  return value < kInfinity ? value : kOutOfRange;
}

}  // namespace

double i_zero_part(double x) {
  if (x < kIFar) return polynomial(kI0Near, x * x);
  return falling(kI0Far[x < 16.0 ? 0 : 1], x);
}

double i_one_part(double x) {
  if (x < kIFar) return x * polynomial(kI1Near, x * x);
  return falling(kI1Far[x < 16.0 ? 0 : 1], x);
}

double k_zero_part(double x) {
  if (x > kKFar) return falling(kK0Far[k_row(x)], x);
  const double square = x * x;
  return polynomial(kK0Near, square) - logarithm(x) * polynomial(kK0Log, square);
}

double k_one_part(double x) {
  if (x > kKFar) return falling(kK1Far[k_row(x)], x);
  const double square = x * x;
  return 1.0 / x + x * (polynomial(kK1Near, square) + logarithm(x) * polynomial(kK1Log, square));
}

}  // namespace bessel

double I0(double X) {
  const double x = std::fabs(X);
  if (x < bessel::kIFar) return bessel::i_zero_part(x);
  if (x < bessel::kExponentialLimit) return bessel::i_value(bessel::i_zero_part(x), x);
  return x < bessel::kInfinity ? kOutOfRange : x;
}

double i1(double X) {
  const double x = std::fabs(X);
  const double sign = std::copysign(1.0, X);
  if (x < bessel::kIFar) return sign * bessel::i_one_part(x);
  if (x < bessel::kExponentialLimit) return sign * bessel::i_value(bessel::i_one_part(x), x);
  return sign * (x < bessel::kInfinity ? kOutOfRange : x);
}

double K0(double X) {
  if (X <= 0.0) return kOutOfRange;
  if (X <= bessel::kKFar) return bessel::k_zero_part(X);
  if (X < bessel::kExponentialLimit) return bessel::times_exponential(bessel::k_zero_part(X), -X);
  return X != X ? X : 0.0;
}

double K1(double X) {
  if (X <= 0.0) return kOutOfRange;
  if (X <= bessel::kKFar) {
    const double value = bessel::k_one_part(X);
    return value < bessel::kInfinity ? value : kOutOfRange;
  }
  if (X < bessel::kExponentialLimit) return bessel::times_exponential(bessel::k_one_part(X), -X);
  return X != X ? X : 0.0;
}

}  // namespace vqmath63
