// Incomplete gamma and beta functions by series and continued fractions, and what rests on them.
#include "statistics/probability.hpp"

#include <algorithm>
#include <cmath>
#include <limits>

#include "frame/checked_functions.hpp"
#include "mathlib/log_gamma.hpp"

namespace vqmath63 {
namespace {

constexpr double kEpsilon = std::numeric_limits<double>::epsilon();
constexpr double kTwoPi = 6.283185307179586477;

// Series and fractions end after some 10 sqrt(a) steps; the cap only ends a loop that a NaN feeds.
constexpr int kMostSteps = 1'000'000;

// ln Gamma(a + 1) - ((a + 1/2) ln a - a + ln(2 pi) / 2): what Stirling's formula leaves out.
double stirling_rest(double a) {
  constexpr double kHalfLogTwoPi = 0.918938533204672742;
  if (a < 16.0) {
    return log_gamma(a + 1.0) - (a + 0.5) * unchecked::log(a) + a - kHalfLogTwoPi;
  }
  const double b = 1.0 / (a * a);
  return (1.0 / 12 - b * (1.0 / 360 - b * (1.0 / 1260 - b * (1.0 / 1680 - b / 1188)))) / a;
}

// x ln(x / m) + m - x, without the cancellation near x = m. Source: C. Loader, Fast and Accurate
// Computation of Binomial Probabilities (2000), section 3.
double deviance(double x, double m) {
  const double d = x - m;
  if (std::fabs(d) >= 0.1 * (x + m)) return x * unchecked::log(x / m) - d;
  const double v = d / (x + m);
  double sum = d * v;
  double power = 2.0 * x * v;
  for (int k = 3; k < 100; k += 2) {
    power *= v * v;
    const double next = sum + power / k;
    if (next == sum) break;
    sum = next;
  }
  return sum;
}

// x^a e^-x / Gamma(a + 1).
double gamma_density(double a, double x) {
  return unchecked::exp(-stirling_rest(a) - deviance(a, x)) / unchecked::sqrt(kTwoPi * a);
}

// x^a y^b Gamma(a + b) / (Gamma(a) Gamma(b)), from Loader's form of the binomial probability.
double beta_density(double a, double b, double x, double y) {
  const double n = a + b;
  const double exponent = stirling_rest(n) - stirling_rest(a) - stirling_rest(b) -
                          deviance(a, n * x) - deviance(b, n * y);
  return unchecked::exp(exponent) * unchecked::sqrt(a / kTwoPi * (b / n));
}

double series(double a, double x) {
  double term = 1.0;
  double sum = 1.0;
  for (int k = 1; k < kMostSteps && term > kEpsilon * 0.25 * sum; ++k) {
    term *= x / (a + k);
    sum += term;
  }
  return sum;
}

// b0 + a1 / (b1 + a2 / (b2 + ...)) by W. Lentz's method as modified by I. Thompson and A. Barnett
// (J. Comput. Phys. 64, 1986); next(k, numerator, denominator) sets the k-th pair, k = 1, 2, ...
template <class Next>
double continued_fraction(double b0, const Next& next) {
  static constexpr double kTiny = 1e-300;
  const auto not_zero = [](double v) { return v == 0.0 ? kTiny : v; };
  double value = not_zero(b0);
  double c = value;
  double d = 0.0;
  for (int k = 1; k < kMostSteps; ++k) {
    double numerator = 0.0;
    double denominator = 0.0;
    next(k, numerator, denominator);
    d = 1.0 / not_zero(denominator + numerator * d);
    c = not_zero(denominator + numerator / c);
    const double factor = c * d;
    value *= factor;
    if (std::fabs(factor - 1.0) < kEpsilon) break;
  }
  return value;
}

// I_x(a, b) where x is below the mean a / (a + b), about. The terms of 8.17.22.
double lower_beta(double a, double b, double x, double y) {
  const double fraction = continued_fraction(1.0, [=](int k, double& numerator, double& one) {
    const double m = k / 2;  // NOLINT: whole
    const double even = m / (a + 2 * m - 1) * ((b - m) / (a + 2 * m));
    const double odd = -(a + m) / (a + 2 * m) * ((a + b + m) / (a + 2 * m + 1));
    numerator = (k % 2 == 0 ? even : odd) * x;
    one = 1.0;
  });
  return beta_density(a, b, x, y) / (a * fraction);
}

// t^2 / (freedom + t^2) and its complement, without the overflow of t^2.
struct Shares {
  double x;
  double y;
};
Shares shares(double t, double freedom) {
  const double ratio = std::fabs(t) / unchecked::sqrt(freedom);
  if (ratio > 1.0) {
    const double inverse = 1.0 / ratio / ratio;
    return {1.0 / (1.0 + inverse), inverse / (1.0 + inverse)};
  }
  const double square = ratio * ratio;
  return {square / (1.0 + square), 1.0 / (1.0 + square)};
}

}  // namespace

Tails incomplete_gamma(double a, double x) {
  if (std::isnan(a) || std::isnan(x)) return {a + x, a + x};
  if (x == 0.0) return {0.0, 1.0};
  if (std::isinf(x)) return {1.0, 0.0};
  if (x < a + 1.0) {
    const double lower = gamma_density(a, x) * series(a, x);
    return {lower, 1.0 - lower};
  }
  const double fraction =
      continued_fraction(x + 1.0 - a, [=](int k, double& numerator, double& denominator) {
        numerator = k * (a - k);
        denominator = x + 2.0 * k + 1.0 - a;
      });
  const double upper = gamma_density(a, x) * a / fraction;
  return {1.0 - upper, upper};
}

Tails incomplete_beta(double a, double b, double x, double y) {
  if (const double all = a + b + x + y; std::isnan(all)) return {all, all};
  if (x == 0.0) return {0.0, 1.0};
  if (y == 0.0) return {1.0, 0.0};
  if (x * (b + 1.0) <= y * (a + 1.0)) {  // x below (a + 1) / (a + b + 2): the fraction is quick
    const double lower = lower_beta(a, b, x, y);
    return {lower, 1.0 - lower};
  }
  const double upper = lower_beta(b, a, y, x);
  return {1.0 - upper, upper};
}

double chi_squared_exceeded(double chi_squared, double freedom) {
  return incomplete_gamma(0.5 * freedom, 0.5 * chi_squared).upper;
}

Tails student_two_sided(double t, double freedom) {
  const Shares at = shares(t, freedom);
  return incomplete_beta(0.5, 0.5 * freedom, at.x, at.y);
}

double student_quantile(double level, double freedom) {
  // t times the density of |T| at t.
  const auto flow = [freedom](double t) {
    const Shares at = shares(t, freedom);
    return 2.0 * beta_density(0.5, 0.5 * freedom, at.x, at.y);
  };
  constexpr double kSmall = 1e-8;  // up to here the density is that at 0 in all its digits
  if (level < kSmall) return level * kSmall / flow(kSmall);

  // ln P(|T| > t) falls ever faster with ln t. So Newton's steps in these two leap over the root
  // once at most and then run down to it. They start below: no freedom has a density above that of
  // the normal distribution at 0, sqrt(2 / pi). A leap is cut short of where P underflows.
  const double wanted = unchecked::log1p(-level);
  double t = level * 1.25;
  for (int k = 0; k < 200; ++k) {
    const Tails tails = student_two_sided(t, freedom);
    const double reached =
        tails.upper < 0.5 ? unchecked::log(tails.upper) : unchecked::log1p(-tails.lower);
    const double step = std::min((reached - wanted) * tails.upper / flow(t), 1.0);
    t *= unchecked::exp(step);
    if (std::fabs(step) < 1e-14) break;
  }
  return t;
}

}  // namespace vqmath63
