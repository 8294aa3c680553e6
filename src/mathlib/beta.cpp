// The beta function, complete and incomplete: members of ztMathLib.
#include "frame/checked_functions.hpp"
#include "frame/speculate.hpp"
#include "frame/steps_only.hpp"
#include "mathlib/four_at_once.hpp"
#include "mathlib/locations.hpp"
#include "mathlib/math_lib.hpp"
#include "tolerant/out_of_range.hpp"

namespace vqmath63 {
namespace {

using namespace locations;

constexpr int kMostTerms = 100;
constexpr double kPrecision = 1e-15;

// The fraction by its unscaled recurrence, renormalised by every second denominator.
template <class Mode>
typename Mode::Double fraction(double A, double B, double X) {
  using Double = typename Mode::Double;
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
  return az;
}

// Arguments for plain numbers: their products stay far from overflow, and no denominator made of
// them is 0. A step that is not finite all the same leaves the fraction so: what is divided by 0 is
// infinite, and then a NaN in the next round.
bool moderate(double a, double b, double x) {
  constexpr double kModerate = 1e50;
  return a >= 0.0 && a <= kModerate && b >= 0.0 && b <= kModerate && x >= 0.0 && x <= 1.0;
}

}  // namespace

double ztMathLib::beta(double A, double B) const {
  return trap<double>(kBeta, [&](double& result) {
#ifdef VQ_FOUR_AT_ONCE
    // All three gammas at once, if all are within Gamma's limits.
    const double* const arguments[] = {&A, &B};
    bool done = false;
    if (special::kFourAtOnce && !kStepsOnly) special::beta_block(arguments, &result, &done, 1);
    if (done) return;
    result = 0.0;
#endif
    // From Gamma itself, not from logarithms: the product may overflow, and does so before the
    // third one is asked.
    const Double of_b = Gamma(B);
    const Double product = of_b * Gamma(A);
    result = (product / Gamma((Double(A) + B).value())).value();
  });
}

double ztMathLib::Beta_CF(double A, double B, double X) const {
  return trap<double>(kBeta_CF, [&](double& result) {
    result =
        speculate(moderate(A, B, X), [&](auto mode) { return fraction<decltype(mode)>(A, B, X); });
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
      // The logarithm of X^A (1 - X)^B Gamma(A + B) / (Gamma(A) Gamma(B)), term by term, so that
      // the first step that fails is the one reported.
      Double logarithm = LoGamma((a + b).value());
      logarithm -= LoGamma(A);
      logarithm -= LoGamma(B);
      logarithm += a * Log(X);
      logarithm += b * Log(Double(1.0) - X);
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
