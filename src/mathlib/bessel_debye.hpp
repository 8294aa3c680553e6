// Bessel functions of large order or argument by expansions that hold evenly over both.
#pragma once

namespace vqmath63::bessel {

struct Circular {
  double j;
  double y;
};

/// J and Y of order n >= 0 at finite x > n that oscillates(n, x). Error 4e-16 of the amplitude.
Circular debye_circular(double n, double x);

/// Whether x lies so far beyond the order n that debye_circular holds: (x^2 - n^2)^(3/2) >= 90 x^2.
inline bool oscillates(double n, double x) {
  const double ratio = n / x;
  const double square = (1.0 - ratio) * (1.0 + ratio);
  return ratio < 1.0 && square * square * square * x >= 8100.0 / x;
}

/// J and Y of order n at 0 < x < n where decays(n, x); J may be 0, Y minus infinity. Error 6e-16 of
/// the value.
Circular debye_decaying(double n, double x);

/// Whether x lies so far below the order n that debye_decaying holds: (n^2 - x^2)^(3/2) >= 90 n^2.
inline bool decays(double n, double x) {
  const double ratio = x / n;
  const double square = (1.0 - ratio) * (1.0 + ratio);
  return ratio < 1.0 && square * square * square * n >= 8100.0 / n;
}

/// About the last whole order that oscillates at x, and the first that decays: off it by a few,
/// never beyond. -1 and infinity for small x, where there is none.
double last_oscillating(double x);
double first_decaying(double x);

struct Modified {
  double i;  ///< infinite where it overflows
  double k;  ///< likewise
};

/// I and K of order n >= 0 at finite x > 0 with n^2 + x^2 >= 900. Error 6e-16 of the value.
Modified debye_modified(double n, double x);

}  // namespace vqmath63::bessel
