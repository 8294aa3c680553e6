// The Bessel functions of integer order: J, Y, and the modified I and K.
#pragma once

#include <cstdint>

namespace vqmath63 {

// What holds for all of them, beside their values:
// - the out-of-range value 1e308 for a negative order, and for Y and K where X <= 0, either zero;
// - where the value overflows, 1e308 with the value's sign: -1e308 for Y, and for I of an odd order
//   at a negative X, since J and I keep their parity to the last bit;
// - 0, or a subnormal number, where the value underflows;
// - the limit at an infinite X (0; infinity for I), and NaN at NaN.
// Made of + - * / and square roots alone, they give the same digits wherever each of these is
// rounded to nearest. An error is meant relative to the value; for J at X >= n and for Y, relative
// to the amplitude sqrt(J^2 + Y^2). The tests hold the bounds.
// Formulas: F. W. J. Olver, L. C. Maximon, NIST Handbook of Mathematical Functions, 2010, chapter
// 10 (DLMF). Polynomials: our own fits, by tools/make_bessel_tables.py.

/// Bessel function of the first kind, order 0, at any X. Error below 1e-15.
double J0(double X);

/// Bessel function of the first kind, order 1, at any X. Error below 1e-15.
double J1(double X);

/// Bessel function of the second kind, order 0, at X > 0. Error below 1e-15.
double y0(double X);

/// Bessel function of the second kind, order 1, at X > 0. Error below 1e-15.
double y1(double X);

/// Modified Bessel function of the first kind, order 0, at any X. Error below 1e-15.
double I0(double X);

/// Modified Bessel function of the first kind, order 1, at any X. Error below 1e-15.
double i1(double X);

/// Modified Bessel function of the second kind, order 0, at X > 0. Error below 1e-15.
double K0(double X);

/// Modified Bessel function of the second kind, order 1, at X > 0. Error below 1e-15.
double K1(double X);

/// Bessel function of the first kind, order n >= 0, at any X. Error below 8e-15 for n up to 300,
/// 3e-15 from there to 10000, 1e-12 at the largest orders. Cost: up to 120 steps of recurrence, or
/// an expansion of constant cost, and beside X = n about 10 cbrt(X) steps more, 13000 at most.
double Jbn(std::int32_t n, double X);

/// Bessel function of the second kind, order n >= 0, at X > 0. Error and cost as those of Jbn.
double Ybn(std::int32_t n, double X);

/// Modified Bessel function of the first kind, order n >= 0, at any X. Error below 4e-15, from
/// order 71 on below 1e-15. Cost: up to 70 steps of recurrence, or an expansion of constant cost.
double Ibn(std::int32_t n, double X);

/// Modified Bessel function of the second kind, order n >= 0, at X > 0. Error below 5e-15, from
/// order 81 on below 1e-15. Cost: up to 80 steps of recurrence, beyond an expansion.
double Kbn(std::int32_t n, double X);

}  // namespace vqmath63
