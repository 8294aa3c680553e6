// The incomplete gamma function: members of ztMathLib.
#include <optional>

#include "frame/checked_functions.hpp"
#include "mathlib/locations.hpp"
#include "mathlib/math_lib.hpp"
#include "tolerant/out_of_range.hpp"

namespace vqmath63 {
namespace {

using namespace locations;

constexpr int kMostTerms = 1000;
constexpr double kPrecision = 1e-15;

// X^A exp(-X) / Gamma(A), from the logarithm of Gamma(A).
Double power_part(Double a, Double x, Double log_gamma) {
  return Exp(a * Log(x) - x - log_gamma);
}

// 1/A + X/(A (A + 1)) + X^2/(A (A + 1) (A + 2)) + ...
Double checked_series(Double a, Double x) {
  Double ap = a;
  Double term = Double(1.0) / a;
  Double sum = term;
  for (int n = 1; n <= kMostTerms; ++n) {
    ap = ap + 1.0;
    term = term * x / ap;
    sum = sum + term;
    if (Abs(term) < Abs(sum) * kPrecision) break;
  }
  return sum;
}

// The same, faster, for arguments with which no step can fail: two terms at a time, for which one
// division does that does not wait for the terms.
double plain_series(double a, double x) {
  const double square = x * x;
  double ap = a;
  double term = 1.0 / a;
  double sum = term;
  for (int n = 1; n < kMostTerms; n += 2) {
    const double inverse = 1.0 / ((ap + 1.0) * (ap + 2.0));
    const double first = term * (x * (ap + 2.0) * inverse);
    term *= square * inverse;
    ap += 2.0;
    sum += first + term;
    if (term < sum * kPrecision) break;
  }
  return sum;
}

// The continued fraction of the complement by its unscaled recurrence, renormalised at each step by
// the last denominator.
Double checked_fraction(Double a, Double x) {
  Double last = 0.0;
  Double value = 0.0;
  Double a0 = 1.0;
  Double a1 = x;
  Double b0 = 0.0;
  Double b1 = 1.0;
  Double scale = 1.0;
  for (int n = 1; n <= kMostTerms; ++n) {
    const Double step = static_cast<double>(n);
    const Double even = step - a;
    a0 = (a1 + a0 * even) * scale;
    b0 = (b1 + b0 * even) * scale;
    const Double odd = step * scale;
    // The first product first, whatever order a compiler takes operands in.
    const Double a_part = x * a0;
    a1 = a_part + odd * a1;
    const Double b_part = x * b0;
    b1 = b_part + odd * b1;
    if (a1 != 0.0) {
      scale = Double(1.0) / a1;
      value = b1 * scale;
      if (Abs((value - last) / value) < kPrecision) break;
      last = value;
    }
  }
  return value;
}

// The same convergents, faster: renormalised, by a power of two, only when the numbers have grown
// large, so that no step waits for a division. None unless every step has done well.
std::optional<double> plain_fraction(double a, double x) {
  constexpr double kLarge = 0x1p200;
  double last = 0.0;
  double a0 = 1.0;
  double a1 = x;
  double b0 = 0.0;
  double b1 = 1.0;
  for (int n = 1; n <= kMostTerms; ++n) {
    const double step = n;
    const double even = step - a;
    a0 = a1 + a0 * even;
    b0 = b1 + b0 * even;
    a1 = x * a0 + step * a1;
    b1 = x * b0 + step * b1;
    const double value = b1 / a1;
    if (std::abs(value - last) < kPrecision * std::abs(value)) return value;
    if (value == 0.0) break;  // which the checked form divides by
    last = value;
    if (!(std::abs(a1) < kLarge)) {
      if (!std::isfinite(value)) break;
      constexpr double kScale = 0x1p-200;
      a0 *= kScale;
      a1 *= kScale;
      b0 *= kScale;
      b1 *= kScale;
    }
  }
  return std::nullopt;
}

// Arguments for the plain forms: their first steps stay far from overflow.
bool moderate(double a, double x) {
  constexpr double kModerate = 1e100;
  return a >= 1.0 / kModerate && a <= kModerate && x >= 1.0 / kModerate && x <= kModerate;
}

}  // namespace

double ztMathLib::Gamma_P(double A, double X) const {
  return trap<double>(kGamma_P, [&](double& result) {
    if (X < 0.0 || !(A > 0.0)) {
      result = kOutOfRange;
    } else if (!(X < Double(A) + 1.0)) {
      result = (Double(1.0) - Gamma_CF(A, X)).value();
    } else {
      result = Gamma_Series(A, X);
    }
  });
}

double ztMathLib::Gamma_Series(double A, double X) const {
  return trap<double>(kGamma_Series, [&](double& result) {
    if (X < 0.0) {
      result = kOutOfRange;
      return;
    }
    if (X == 0.0) return;
    const Double log_gamma = LoGamma(A);
    // What ends below this has had no product near overflow on the way.
    constexpr double kMostSum = 1e150;
    Double sum = moderate(A, X) ? plain_series(A, X) : kMostSum;
    if (!(sum < kMostSum)) sum = checked_series(A, X);
    result = (sum * power_part(A, X, log_gamma)).value();
  });
}

double ztMathLib::Gamma_CF(double A, double X) const {
  return trap<double>(kGamma_CF, [&](double& result) {
    const Double log_gamma = LoGamma(A);
    std::optional<double> value;
    // Below A + 1 sums cancel: there the result, and whether a step fails, hang on each rounding.
    if (moderate(A, X) && X >= A + 1.0) value = plain_fraction(A, X);
    if (!value) value = checked_fraction(A, X).value();
    result = (power_part(A, X, log_gamma) * *value).value();
  });
}

}  // namespace vqmath63
