// Jbn, Ybn, Ibn, Kbn: recurrence over the orders in the direction that keeps errors small, power
// series where X is small against the order, and the expansions of large orders.
#include <cmath>

#include "mathlib/bessel.hpp"
#include "mathlib/bessel_circular.hpp"
#include "mathlib/bessel_debye.hpp"
#include "mathlib/bessel_elementary.hpp"
#include "mathlib/bessel_modified.hpp"
#include "tolerant/out_of_range.hpp"

namespace vqmath63 {
namespace {

using bessel::kInfinity;
using bessel::Pair;

// Up to this many steps from orders 0 and 1 cost no more than an expansion.
constexpr double kFewCircularSteps = 120.0;
constexpr double kFewModifiedSteps = 80.0;

// The last order of the power series: beyond it n! is no Double.
constexpr double kLastSeries = 170.0;

// x^n / n! for 0 < x < 7, n from 1 to kLastSeries, by squares whose rounding is kept count of.
double power_over_factorial(double x, int n) {
  constexpr double kSmall = 1e-280;
  const double inverse = bessel::kInverseFactorials[n];
  double square = x;
  double square_excess = 0.0;  // what it lacks, over itself
  double power = 1.0;
  double excess = 0.0;
  for (;;) {
    if (n % 2 != 0) {
      const Pair product = bessel::exact_product(power, square);
      // Beyond this a rounding is not known, nor does a further factor leave anything.
      if (product.hi < kSmall) return n == 1 ? product.hi * inverse : 0.0;
      power = product.hi;
      excess += square_excess + product.lo / power;
    }
    n /= 2;
    if (n == 0) return power * inverse * (1.0 + excess);
    const Pair product = bessel::exact_product(square, square);
    if (product.hi < kSmall) return n == 1 ? power * product.hi * inverse : 0.0;
    square = product.hi;
    square_excess = 2.0 * square_excess + product.lo / square;
  }
}

// (x / 2)^n / n! times the sum of (sign x^2 / 4)^k / (k! (n + 1) ... (n + k)), DLMF 10.2.2 and
// 10.25.2, for x^2 <= n + 1, n <= kLastSeries.
double series(double n, double x, double sign) {
  const double half = 0.5 * x;
  const double t = sign * half * half;
  double sum = 1.0;
  double term = 1.0;
  // Each term is less than a quarter of the one before.
  for (double k = 1.0; std::fabs(term) > 1e-18; k += 1.0) {
    term *= t / (k * (n + k));
    sum += term;
  }
  return power_over_factorial(half, static_cast<int>(n)) * sum;
}

// J (sign -1) or I (sign 1) of order n + 1 over that of order n, n > x for J: the continued
// fraction 1 / (2 (n + 1) / x + sign / (2 (n + 2) / x + ...)), DLMF 10.10.1 and 10.33.1.
double falling_ratio(double n, double x, double sign) {
  double before_above = 0.0;
  double before_below = 1.0;
  double above = 1.0;
  double below = 2.0 * (n + 1.0) / x;
  // The error is less than 1 / below^2. The denominators grow to 1e9 within 60 steps: for J n > x
  // and x < 170, for I n + x <= 70.
  for (double k = n + 2.0; below < 1e9; k += 1.0) {
    const double factor = 2.0 * k / x;
    const double next_above = factor * above + sign * before_above;
    const double next_below = factor * below + sign * before_below;
    before_above = above;
    before_below = below;
    above = next_above;
    below = next_below;
  }
  return above / below;
}

// f of order n, from f of orders 0 and 1: f(k + 1) = (2 k / x) f(k) + sign f(k - 1).
double upward(double zero, double one, double n, double x, double sign) {
  double before = zero;
  double now = one;
  for (double k = 1.0; k < n; k += 1.0) {
    const double next = (2.0 * k / x) * now + sign * before;
    if (!(std::fabs(next) < kInfinity)) return next;
    before = now;
    now = next;
  }
  return now;
}

// J or Y of order n near x, from those of two neighbours: f(m) and the difference to it from the
// order beyond. Differences carry on where a plain recurrence would lose what neighbours have in
// common (C. Reinsch's form of such sums). In the direction of growth: up for Y, down for J beyond
// x.
double carried(double value, double step, double m, double n, double x) {
  const double direction = m < n ? 1.0 : -1.0;
  for (double k = m; k != n; k += direction) {
    step += (2.0 * (k - x) / x) * value;
    value += step;
    if (!(std::fabs(value) < kInfinity)) break;
  }
  return value;
}

// J of order n > x, x^2 > n + 1, from the falling solution, scaled to J of order 0 or 1.
double j_falling(double n, double x) {
  double above = falling_ratio(n, x, -1.0);
  double at = 1.0;  // it grows by 1e120 at most
  for (double k = n; k > 0.0; k -= 1.0) {
    const double below = (2.0 * k / x) * at - above;
    above = at;
    at = below;
  }
  return std::fabs(at) > std::fabs(above) ? bessel::j_zero(x) / at : bessel::j_one(x) / above;
}

// J of order n >= 2 at finite x > 0.
double j_order(double n, double x) {
  if (n <= x) {
    if (n > kFewCircularSteps) {
      if (bessel::oscillates(n, x)) return bessel::debye_circular(n, x).j;
      const double m = bessel::last_oscillating(x);
      if (m > kFewCircularSteps) {
        const double value = bessel::debye_circular(m, x).j;
        return carried(value, value - bessel::debye_circular(m - 1.0, x).j, m, n, x);
      }
    }
    return upward(bessel::j_zero(x), bessel::j_one(x), n, x, -1.0);
  }
  if (n <= kLastSeries && x * x <= n + 1.0) return series(n, x, -1.0);
  if (n > kFewCircularSteps) {
    if (bessel::decays(n, x)) return bessel::debye_decaying(n, x).j;
    if (x > kFewCircularSteps) {
      const double m = bessel::first_decaying(x);
      const double value = bessel::debye_decaying(m, x).j;
      return carried(value, value - bessel::debye_decaying(m + 1.0, x).j, m, n, x);
    }
  }
  return j_falling(n, x);
}

// Y of order n >= 2 at finite x > 0; minus infinity where it overflows.
double y_order(double n, double x) {
  if (n > kFewCircularSteps) {
    if (bessel::oscillates(n, x)) return bessel::debye_circular(n, x).y;
    if (bessel::decays(n, x)) return bessel::debye_decaying(n, x).y;
    const double m = bessel::last_oscillating(x);
    if (m > kFewCircularSteps) {
      const double value = bessel::debye_circular(m, x).y;
      return carried(value, value - bessel::debye_circular(m - 1.0, x).y, m, n, x);
    }
  }
  return upward(bessel::y_zero(x), bessel::y_one(x), n, x, -1.0);
}

// I of order n >= 2 at finite x > 0; infinite where it overflows.
double i_order(double n, double x) {
  if (n * n <= x) {
    if (x > bessel::kExponentialLimit) return kInfinity;
    // (-1)^n I goes by K's recurrence.
    const double part = upward(bessel::i_zero_part(x), -bessel::i_one_part(x), n, x, 1.0);
    return x < bessel::kIFar ? std::fabs(part) : bessel::times_exponential(std::fabs(part), x);
  }
  if (n <= kLastSeries && x * x <= n + 1.0) return series(n, x, 1.0);
  if (n + x > 70.0) return bessel::debye_modified(n, x).i;
  double above = falling_ratio(n, x, 1.0);
  double at = 1.0;
  for (double k = n; k > 0.0; k -= 1.0) {
    const double below = (2.0 * k / x) * at + above;
    above = at;
    at = below;
  }
  const double part = bessel::i_zero_part(x) / at;
  return x < bessel::kIFar ? part : bessel::times_exponential(part, x);
}

// K of order n >= 2 at finite x > 0; infinite where it overflows.
double k_order(double n, double x) {
  if (n > kFewModifiedSteps) return bessel::debye_modified(n, x).k;
  if (x > bessel::kExponentialLimit) return 0.0;
  const double part = upward(bessel::k_zero_part(x), bessel::k_one_part(x), n, x, 1.0);
  return x > bessel::kKFar ? bessel::times_exponential(part, -x) : part;
}

// The value, or the out-of-range value with its sign.
double within_range(double value) {
  return std::fabs(value) < kInfinity ? value : std::copysign(kOutOfRange, value);
}

// -1 for an odd order and a negative argument.
double parity(std::int32_t n, double X) {
  return n % 2 != 0 ? std::copysign(1.0, X) : 1.0;
}

}  // namespace

double Jbn(std::int32_t n, double X) {
  if (n < 0) return kOutOfRange;
  if (n == 0) return J0(X);
  if (n == 1) return J1(X);
  const double x = std::fabs(X);
  if (std::isnan(X)) return X;
  return parity(n, X) * (x == 0.0 || x == kInfinity ? 0.0 : j_order(n, x));
}

double Ybn(std::int32_t n, double X) {
  if (n < 0 || X <= 0.0) return kOutOfRange;
  if (n == 0) return y0(X);
  if (n == 1) return y1(X);
  if (!(X < kInfinity)) return X == kInfinity ? 0.0 : X;
  return within_range(y_order(n, X));
}

double Ibn(std::int32_t n, double X) {
  if (n < 0) return kOutOfRange;
  if (n == 0) return I0(X);
  if (n == 1) return i1(X);
  const double x = std::fabs(X);
  if (!(x < kInfinity)) return x == kInfinity ? parity(n, X) * x : X;
  return parity(n, X) * (x == 0.0 ? 0.0 : within_range(i_order(n, x)));
}

double Kbn(std::int32_t n, double X) {
  if (n < 0 || X <= 0.0) return kOutOfRange;
  if (n == 0) return K0(X);
  if (n == 1) return K1(X);
  if (!(X < kInfinity)) return X == kInfinity ? 0.0 : X;
  return within_range(k_order(n, X));
}

}  // namespace vqmath63
