// Tail probabilities of chi squared and of Student's t, and the quantile of the latter.
#pragma once

namespace vqmath63 {

/// Two probabilities that add up to 1, each as exact as the other: neither is formed by taking the
/// other from 1 where that would cancel.
struct Tails {
  double lower = 0.0;
  double upper = 0.0;
};

/// Regularized incomplete gamma functions P(a, x) (lower) and Q(a, x) (upper), a > 0, x >= 0.
/// NaN for a NaN; x may be infinite. Relative error below 1e-13 (measured for a up to 5e6). O(sqrt
/// a) steps near x = a. Sources: NIST Digital Library of Mathematical Functions 8.11.4 (series)
/// and 8.9.2 (continued fraction).
Tails incomplete_gamma(double a, double x);

/// Regularized incomplete beta functions I_x(a, b) (lower) and I_y(b, a) (upper), a, b > 0, for
/// x in [0, 1] and its complement y = 1 - x, which the caller knows without cancellation. NaN for a
/// NaN. Relative error below 1e-11 (measured for b up to 5e5, a = 1/2), growing with the larger
/// parameter to 1e-10 at 5e6. O(sqrt) steps in the larger of a and b. Source: NIST Digital
/// Library of Mathematical Functions 8.17.22.
Tails incomplete_beta(double a, double b, double x, double y);

/// Chance that chi squared with `freedom` > 0 degrees of freedom exceeds chi_squared >= 0:
/// Q(freedom / 2, chi_squared / 2).
double chi_squared_exceeded(double chi_squared, double freedom);

/// Student's t with `freedom` > 0 degrees of freedom: the chances that |T| stays below |t| (lower)
/// and that it exceeds |t| (upper).
Tails student_two_sided(double t, double freedom);

/// The t > 0 with which student_two_sided(t, freedom).lower is `level`, for level in (0, 1) and
/// freedom >= 1. Relative error below 1e-12, and what the rounding of 1 - level leaves.
double student_quantile(double level, double freedom);

}  // namespace vqmath63
