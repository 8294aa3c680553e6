// The beta function, complete and incomplete: members of ztMathLib.
#include "mathlib/constants.hpp"
#include "mathlib/locations.hpp"
#include "mathlib/math_lib.hpp"
#include "mathlib/platform_functions.hpp"
#include "mathlib/stirling.hpp"
#include "tolerant/out_of_range.hpp"

namespace vqmath63 {
namespace {

using namespace locations;

constexpr int kMostTerms = 100;
constexpr double kPrecision = 1e-15;

// For A and B that the asymptotic series of all three gamma functions holds for, and no step can
// overflow unnoticed.
bool both_large(double a, double b) {
  constexpr double kLargest = 1e9;
  return a >= kAsymptotic && b >= kAsymptotic && a <= kLargest && b <= kLargest;
}

// log(X^A (1 - X)^B Gamma(A + B) / (Gamma(A) Gamma(B))) for such A and B. The large parts of the
// logarithms cancel on paper, and with them their roundings.
double log_front_of_large(double a, double b, double x) {
  const double sum = a + b;
  const double first = a * std::log(x * sum / a) + b * std::log((1.0 - x) * sum / b);
  const double second = 0.5 * std::log(a / sum * b) - constants::kLogSqrtTwoPi;
  return first + second + (stirling_sum(sum) - stirling_sum(a) - stirling_sum(b));
}

}  // namespace

double ztMathLib::beta(double A, double B) const {
  return trap<double>(kBeta, [&](double& result) {
    // From Gamma itself, not from logarithms: the product may overflow.
    const Double of_b = Gamma(B);
    const Double of_a = Gamma(A);
    result = (of_b * of_a / Gamma((Double(A) + B).value())).value();
  });
}

// The fraction by its unscaled recurrence, renormalised by every second denominator.
double ztMathLib::Beta_CF(double A, double B, double X) const {
  return trap<double>(kBeta_CF, [&](double& result) {
    const Double a = A;
    const Double b = B;
    const Double x = X;
    const Double qab = a + b;
    const Double qap = a + 1.0;
    const Double qam = a - 1.0;
    Double am = 1.0;
    Double bm = 1.0;
    Double az = 1.0;
    Double bz = Double(1.0) - qab * x / qap;
    for (int n = 1; n <= kMostTerms; ++n) {
      const Double m = static_cast<double>(n);
      const Double twice = m + m;
      const Double even_top = m * (b - m) * x;  // first, as the first step that can fail
      const Double even = even_top / ((qam + twice) * (a + twice));
      const Double ap = az + even * am;
      const Double bp = bz + even * bm;
      const Double odd_top = -(a + m) * (qab + m) * x;
      const Double odd = odd_top / ((qap + twice) * (a + twice));
      const Double app = ap + odd * az;
      const Double bpp = bp + odd * bz;
      const Double last = az;
      am = ap / bpp;
      bm = bp / bpp;
      az = app / bpp;
      bz = 1.0;
      if (Abs(az - last) < kPrecision * Abs(az)) break;
    }
    result = az.value();
  });
}

double ztMathLib::BetaI(double A, double B, double X) const {
  return trap<double>(kBetaI, [&](double& result) {
    if (X < 0.0 || X > 1.0 || A < 0.0 || B < 0.0) {
      result = kOutOfRange;
      return;
    }
    const Double a = A;
    const Double b = B;
    Double front = 0.0;
    if (X != 0.0 && X != 1.0) {
      const double rest = 1.0 - X;
      const Double logarithm = both_large(A, B) ? Double(log_front_of_large(A, B, X))
                                                : Double(LoGamma((a + b).value())) - LoGamma(A) -
                                                      LoGamma(B) + a * Log(X) + b * Log(rest);
      front = Exp(logarithm);
    }
    if (!(X < (a + 1.0) / (a + b + 2.0))) {
      result = (Double(1.0) - front * Beta_CF(B, A, 1.0 - X) / b).value();
    } else {
      result = (front * Beta_CF(A, B, X) / a).value();
    }
  });
}

}  // namespace vqmath63
