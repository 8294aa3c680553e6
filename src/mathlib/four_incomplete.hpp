// The incomplete gamma and beta functions of four arguments at once: the plain steps of
// incomplete_gamma.cpp and beta.cpp, until the last lane has converged; each keeps what it has by
// then.
#pragma once

#include <cstdint>

#include "mathlib/four_functions.hpp"

namespace vqmath63::special::fused {
namespace {

constexpr double kPrecision = 1e-15;

inline FourTruths finite(Four x) {
  return magnitude(x) < __builtin_inf();
}

// X^A exp(-X) / Gamma(A).
inline Four power_part(Four a, Four x) {
  return elementary::fused::exp(a * elementary::fused::log(x) - x - log_gamma(a));
}

// Gamma_P of 0 < x < a + 1 by its series, both within 1e-100 and 1e100.
inline FourResults gamma_series(Four a, Four x) {
  constexpr int kMostTerms = 1000;
  const Four square = x * x;
  Four ap = a;
  Four term = 1.0 / a;
  Four sum = term;
  FourTruths open{-1, -1, -1, -1};
  for (int n = 1; n < kMostTerms && any(open); n += 2) {
    const Four inverse = 1.0 / ((ap + 1.0) * (ap + 2.0));
    const Four first = term * (x * (ap + 2.0) * inverse);
    term *= square * inverse;
    ap += 2.0;
    sum = chosen(open, sum + (first + term), sum);
    open &= ~(term < sum * kPrecision);
  }
  const Four values = sum * power_part(a, x);
  return {values, (sum < 1e150) & finite(values)};
}

// Gamma_P of x >= a + 1 by the fraction of its complement.
inline FourResults gamma_fraction(Four a, Four x) {
  constexpr int kMostTerms = 1000;
  constexpr double kLarge = 0x1p200;
  Four last = four(0.0);
  Four kept = four(0.0);
  Four a0 = four(1.0);
  Four a1 = x;
  Four b0 = four(0.0);
  Four b1 = four(1.0);
  FourTruths open{-1, -1, -1, -1};
  FourTruths good{};
  for (int n = 1; n <= kMostTerms && any(open); ++n) {
    const Four step = four(n);
    const Four even = step - a;
    a0 = a1 + a0 * even;
    b0 = b1 + b0 * even;
    a1 = x * a0 + step * a1;
    b1 = x * b0 + step * b1;
    const Four value = b1 / a1;
    const FourTruths done = open & (magnitude(value - last) < kPrecision * magnitude(value));
    kept = chosen(done, value, kept);
    good |= done;
    open &= ~done & (value != 0.0);
    last = value;
    const FourTruths large = ~(magnitude(a1) < kLarge);
    if (any(open & large)) [[unlikely]] {
      open &= ~large | finite(value);
      const Four scale = chosen(large, four(0x1p-200), four(1.0));
      a0 *= scale;
      a1 *= scale;
      b0 *= scale;
      b1 *= scale;
    }
  }
  const Four values = 1.0 - power_part(a, x) * kept;
  return {values, good & finite(values)};
}

// BetaI of positive a and b up to 1e50 and 0 < x < 1.
inline FourResults incomplete_beta(Four given_a, Four given_b, Four given_x) {
  constexpr int kMostTerms = 100;
  const Four logarithm = log_gamma(given_a + given_b) - log_gamma(given_a) - log_gamma(given_b) +
                         given_a * elementary::fused::log(given_x) +
                         given_b * elementary::fused::log(1.0 - given_x);
  const Four front = elementary::fused::exp(logarithm);
  const FourTruths turned = ~(given_x < (given_a + 1.0) / (given_a + given_b + 2.0));
  const Four a = chosen(turned, given_b, given_a);
  const Four b = chosen(turned, given_a, given_b);
  const Four x = chosen(turned, 1.0 - given_x, given_x);
  const Four qab = a + b;
  const Four qap = a + 1.0;
  const Four qam = a - 1.0;
  Four am = four(1.0);
  Four bm = four(1.0);
  Four az = four(1.0);
  Four bz = 1.0 - qab * x / qap;
  Four kept = az;
  FourTruths open{-1, -1, -1, -1};
  for (int n = 1; n <= kMostTerms && any(open); ++n) {
    const Four m = four(n);
    const Four twice = m + m;
    const Four even = m * (b - m) * x / ((qam + twice) * (a + twice));
    const Four ap = az + even * am;
    const Four bp = bz + even * bm;
    const Four odd = -(a + m) * (qab + m) * x / ((qap + twice) * (a + twice));
    const Four app = ap + odd * az;
    const Four bpp = bp + odd * bz;
    const Four last = az;
    am = ap / bpp;
    bm = bp / bpp;
    az = app / bpp;
    bz = four(1.0);
    kept = chosen(open, az, kept);
    open &= ~(magnitude(az - last) < kPrecision * magnitude(az));
  }
  const Four part = front * kept / a;
  const Four values = chosen(turned, 1.0 - part, part);
  return {values, finite(values) & finite(kept) & finite(front)};
}

}  // namespace
}  // namespace vqmath63::special::fused
