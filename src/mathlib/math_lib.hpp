// ztMathLib: elementary and special functions, tolerant arithmetic and geometry.
#pragma once

#include <cstdint>
#include <string>

#include "frame/array.hpp"

namespace vqmath63 {

/// Mathematical functions of Doubles. Outside its domain a function returns the out-of-range value
/// 1e308 (kOutOfRange), without a message. An infinity in the arguments flows through. NaN: gives
/// NaN. Angles are radians unless a name says degrees.
///
/// Literal constants have 15 significant digits and results show them: pi is 3.14159265358979.
/// All tables are made when the library is compiled; an instance holds nothing and costs nothing.
///
/// @failure An overflow (6), a division by zero (11) or an invalid step (5) is one error line, and
/// the result is 0 or False.
class ztMathLib {
 public:
  // Where each stands: circular.cpp, hyperbolic.cpp, exponential.cpp (with logarithms, powers and
  // roots), combinatorics.cpp, gamma.cpp, beta.cpp, incomplete_gamma.cpp, error_function.cpp;
  // points and cells in geometry_members.cpp; what hands on to tolerant/ and to bessel.hpp in
  // math_lib.cpp; all others in utilities.cpp.

  /// @name Plane coordinates
  /// By the shared maths companion.
  /// @param X coordinate, in any unit
  /// @param Y coordinate, in the unit of X
  /// @param Radius distance from the origin, in the unit of X and Y
  /// @param Theta angle from the positive x axis, radians

  /// Angle of the point (X, Y) seen from the origin, in (-pi, pi]; 0 for the origin.
  /// $$ \theta = \operatorname{atan2}(Y, X) $$
  /// @return radians
  double angle(double X, double Y) const;
  /// X and Y of the point at distance Radius and angle Theta. NaN: both results are NaN.
  /// $$ X = R \cos\theta, \quad Y = R \sin\theta $$
  void Polar_to_Rectangular(double Radius, double Theta, double& X, double& Y) const;
  /// Quadrant of the point (X, Y), counter-clockwise. The positive axes and the origin belong to
  /// quadrant 1, the negative x axis to 2, the negative y axis to 4. NaN: counts as a coordinate
  /// that is not negative.
  /// @return 1 to 4
  std::int32_t Quadrant(double X, double Y) const;
  /// Radius and Theta of the point (X, Y). No trap: a failure reaches the caller. NaN: both results
  /// are NaN.
  /// $$ R = \sqrt{X^2 + Y^2}, \quad \theta = \operatorname{atan2}(Y, X) $$
  void Rectangular_to_Polar(double X, double Y, double& Radius, double& Theta) const;

  /// @name Exponentials and logarithms
  /// @param xValue any number
  /// @return 1e308 outside the domain

  /// e to the power xValue; out of range above 707.47, 0 below -707.47.
  /// $$ e^x $$
  double aLog(double xValue) const;
  /// 10 to the power xValue, guarded on e times xValue: out of range from about 260.26 on, 0 from
  /// about -260.26 down.
  /// $$ 10^x $$
  double aLog10(double xValue) const;
  /// Natural logarithm; out of range unless xValue > 0. NaN: gives 1e308.
  /// $$ \ln x $$
  /// @param xValue above 0
  double Ln(double xValue) const;
  /// Natural logarithm times 0.434294481903252; out of range unless xValue > 0. NaN: gives 1e308.
  /// $$ \log_{10} x $$
  /// @param xValue above 0
  double Log10(double xValue) const;

  /// @name Circular functions
  /// @param dX angle in radians
  /// @return 1e308 outside the domain

  /// Sine; exactly 0 where abs(dX) times 0.318309886183791 is whole, which every argument from
  /// about 1.4e16 on is.
  /// @return -1 to 1
  double sine(double dX) const;
  /// Cosine; exactly 0 where twice abs(dX) times 0.318309886183791 is whole and that product itself
  /// is not.
  /// @return -1 to 1
  double cosine(double dX) const;
  /// Arc cosine in [0, pi]; out of range outside [-1, 1]. NaN: gives 0.
  /// @param dX -1 to 1
  /// @return radians, 0 to pi
  double acos(double dX) const;
  /// Arc sine in [-pi/2, pi/2]; out of range outside [-1, 1].
  /// @param dX -1 to 1
  /// @return radians, -pi/2 to pi/2
  double asin(double dX) const;
  /// Arc tangent, by the shared maths companion. No trap.
  /// @param dX any number
  /// @return radians, -pi/2 to pi/2
  double atan(double dX) const;
  /// Arc cotangent; out of range for 0.
  /// $$ \arctan \frac{1}{x} $$
  /// @param dX any number but 0
  /// @return radians, -pi/2 to pi/2
  double acot(double dX) const;
  /// Arc cosecant; out of range for magnitudes below 1; magnitudes within 1e-15 of 1 count as 1.
  /// NaN: gives 1e308.
  /// $$ \arcsin \frac{1}{x} $$
  /// @param dX of magnitude 1 or more
  /// @return radians, -pi/2 to pi/2
  double acsc(double dX) const;
  /// Arc secant in [0, pi]; out of range for magnitudes below 1; those within 1e-14 of 1 count
  /// as 1.
  /// $$ \arccos \frac{1}{x} $$
  /// @param dX of magnitude 1 or more
  /// @return radians, 0 to pi
  double asec(double dX) const;
  /// Cotangent; out of range where the tangent is 9e-308 or less in magnitude. NaN: gives 1e308.
  /// $$ \frac{1}{\tan x} $$
  double cot(double dX) const;
  /// Cosecant; where the sine is 9e-308 or less in magnitude, 1e308 with its sign (plus for zero).
  /// $$ \frac{1}{\sin x} $$
  double csc(double dX) const;
  /// Secant; where the cosine is 9e-308 or less in magnitude, its sign times 1e308.
  /// $$ \frac{1}{\cos x} $$
  double Sec(double dX) const;

  /// @name Hyperbolic functions
  /// From exp(dX) and exp(-dX) as they stand: relative accuracy is lost in proportion to 1 / dX
  /// near zero for those that are zero or infinite there.
  /// @param dX any number
  /// @return 1e308 outside the domain

  /// Hyperbolic sine; beyond 707.47 the sign times 1e308. abs(dX) for magnitudes up to 1e-10, so
  /// positive there for negative arguments too.
  /// $$ \frac{e^x - e^{-x}}{2} $$
  double sinh(double dX) const;
  /// Hyperbolic cosine; out of range beyond 707.47.
  /// $$ \frac{e^x + e^{-x}}{2} $$
  double cosh(double dX) const;
  /// Hyperbolic tangent; the sign beyond 36.8; dX itself for magnitudes up to 1e-10.
  /// $$ \frac{e^x - e^{-x}}{e^x + e^{-x}} $$
  /// @return -1 to 1
  double tanh(double dX) const;
  /// Hyperbolic cotangent; the sign beyond 707.47; 1 / dX for magnitudes up to 1e-10. The sign
  /// times 1e308 up to 9e-308, so 0 for 0.
  /// $$ \frac{e^x + e^{-x}}{e^x - e^{-x}} $$
  double coth(double dX) const;
  /// Hyperbolic cosecant; 0 beyond 707.47; near zero as coth.
  /// $$ \frac{2}{e^x - e^{-x}} $$
  double csch(double dX) const;
  /// Hyperbolic secant; 0 beyond 707.47; 1 for magnitudes below 1e-10.
  /// $$ \frac{2}{e^x + e^{-x}} $$
  /// @return 0 to 1
  double sech(double dX) const;
  /// Inverse hyperbolic sine. Fails (5) where the sum rounds to zero, below about -9.5e7, and (6)
  /// where the square overflows.
  /// $$ \ln\left(\sqrt{x^2 + 1} + x\right) $$
  double asinh(double dX) const;
  /// Inverse hyperbolic cosine; 0 for 1 and -1; out of range for magnitudes below 1; fails (5)
  /// below -1.
  /// $$ \ln\left(\sqrt{x^2 - 1} + x\right) $$
  /// @param dX 1 or more
  double acosh(double dX) const;
  /// Inverse hyperbolic tangent; out of range unless abs(dX) < 1. NaN: gives 1e308.
  /// $$ \frac{1}{2} \ln \frac{1 + x}{1 - x} $$
  /// @param dX between -1 and 1
  double atanh(double dX) const;
  /// Inverse hyperbolic cotangent; out of range within (-1, 1) and within 1e-15 of either end.
  /// $$ \frac{1}{2} \ln \frac{x + 1}{x - 1} $$
  /// @param dX of magnitude above 1
  double acoth(double dX) const;
  /// Inverse hyperbolic cosecant: asinh of 1 / dX; out of range for magnitudes up to 1e-14; fails
  /// (5) where asinh would. NaN: gives 1e308.
  /// $$ \ln\left(\sqrt{\frac{1}{x^2} + 1} + \frac{1}{x}\right) $$
  /// @param dX any number but 0
  double acsch(double dX) const;
  /// Inverse hyperbolic secant: acosh of 1 / dX; 0 for 1; out of range unless 0 < dX < 1. NaN:
  /// gives 1e308.
  /// $$ \ln\left(\sqrt{\frac{1}{x^2} - 1} + \frac{1}{x}\right) $$
  /// @param dX above 0, at most 1
  double asech(double dX) const;

  /// @name Whole numbers
  /// By the shared maths companion.
  /// @param X any number
  /// @return a whole number

  /// Smallest whole number not below X; fails (6) outside the range of a Long. NaN: error 6.
  std::int32_t Ceil(double X) const;
  /// As Ceil, as a Double: any X. NaN: gives NaN.
  double dCeil(double X) const;
  /// Largest whole number not above X; fails (6) outside the range of a Long. NaN: error 6.
  std::int32_t Floor(double X) const;
  /// As Floor, as a Double: any X. NaN: gives NaN.
  double dFloor(double X) const;

  /// @name Comparison, powers, roots, conversions
  /// @param X any number
  /// @param n1 any number
  /// @param n2 any number
  /// @return 1e308 outside the domain

  /// The larger of two numbers: n1 unless it is less than n2. NaN: as n1 gives NaN, as n2 gives n1.
  /// @return n1 or n2
  double Max(double n1, double n2) const;
  /// The smaller of two numbers: n1 unless it is greater than n2. NaN: as n1 gives NaN, as n2 gives
  /// n1.
  /// @return n1 or n2
  double Min(double n1, double n2) const;
  /// Magnitude of x1 with the sign of x2 (plus for both zeros). NaN: as x1 gives NaN, as x2 counts
  /// as not negative.
  /// @param x1 whose magnitude is taken
  /// @param x2 whose sign is taken
  /// @return x1 or -x1
  double Sign(double x1, double x2) const;
  /// Cube root of either sign, by exp and log with the exponent 0.333333333333333. NaN: gives 0.
  /// $$ \sqrt[3]{x} $$
  /// @return of the sign of X
  double Cube_Root(double X) const;
  /// X times X times X; fails (6) where that overflows.
  /// $$ x^3 $$
  /// @return any number
  double cubed(double X) const;
  /// Square root; out of range below 0.
  /// $$ \sqrt{x} $$
  /// @param X 0 or more
  double Square_Root(double X) const;
  /// X times X; fails (6) where that overflows.
  /// $$ x^2 $$
  /// @return 0 or more
  double Squared(double X) const;
  /// X to the power Power, with the sign of an odd power of a negative X. 1 for Power 0, also for
  /// X = 0; 0 for X = 0; out of range for a fractional power of a negative X, and where the
  /// exponent exceeds 707.47 (0 below -707.47). Fails (6) for a negative X whose whole Power is no
  /// Long. NaN: gives NaN, but 1 beside a Power of 0, 0 beside an X of 0, and 1e308 as the Power of
  /// a negative X.
  /// $$ x^y = e^{y \ln |x|} $$
  /// @param Power the exponent; whole where X is negative
  double x_to_Power_y(double X, double Power) const;
  /// Root-th root of X, negative for an odd root of a negative X; out of range for Root 0,
  /// for even and fractional roots of a negative X, and as x_to_Power_y. NaN: gives NaN, but 1e308
  /// beside a Root of 0 and as the Root of a negative X, and 0 beside an X of 0.
  /// $$ \sqrt[y]{x} = e^{\ln |x| / y} $$
  /// @param Root which root; odd where X is negative
  double y_Root_of_X(double X, double Root) const;
  /// Smallest common divisor above 1 of Long1 and Long2 that is at most half the smaller magnitude
  /// (halves rounded to even), else 1. Fails (6) for the most negative Long.
  /// @param Long1 any but -2147483648
  /// @param Long2 any but -2147483648
  /// @return 1 or more
  std::int32_t Factor(std::int32_t Long1, std::int32_t Long2) const;
  /// Radians to degrees. No trap.
  /// $$ \frac{180}{\pi} x $$
  /// @param Radians an angle
  /// @return degrees
  double RTD(double Radians) const;
  /// Degrees to radians.
  /// $$ \frac{\pi}{180} x $$
  /// @param Degrees an angle
  /// @return radians
  double DTR(const double& Degrees) const;

  /// @name Combinatorics
  /// @param n 0 to 170
  /// @param TotalComb how many things there are, 0 to 170
  /// @param NumOfComb how many are taken, 0 to TotalComb
  /// @return 1 or more; 1e308 outside the domain

  /// n factorial: 0 for n < 0, out of range above 170.
  /// $$ n! $$
  double Factorial(std::int32_t n) const;
  /// Ways to take NumOfComb of TotalComb things regardless of order; out of range for negative
  /// counts, for more taken than there are, and for totals above 170.
  /// $$ \frac{n!}{(n - k)!\, k!} $$
  double Combination(std::int32_t TotalComb, std::int32_t NumOfComb) const;
  /// Ways to take NumOfComb of TotalComb things in order, else as Combination.
  /// $$ \frac{n!}{(n - k)!} $$
  double Permutation(std::int32_t TotalComb, std::int32_t NumOfComb) const;

  /// @name Gamma, beta and error function
  /// Measured accuracy: docs/accuracy.md.
  /// @param A shape, 0 or more
  /// @param B shape, 0 or more
  /// @param X limit of the integral
  /// @return 1e308 outside the domain

  /// Gamma function; out of range at 0 and the negative whole numbers, above 171.624, and for
  /// magnitudes of negative X from about 170.6 on. W. J. Cody's GAMMA (see cody_tables.hpp).
  /// $$ \Gamma(x) = \int_0^\infty t^{x-1} e^{-t} \, dt $$
  /// @param X up to 171.624, but for 0, -1, -2, ...
  double Gamma(double X) const;
  /// Natural logarithm of the gamma function for 0 < X <= 2.55e305, else out of range. W. J. Cody's
  /// ALGAMA. NaN: gives 1e308.
  /// $$ \ln \Gamma(x) $$
  /// @param X above 0, at most 2.55e305
  double LoGamma(double X) const;
  /// Beta function, so limited to sums up to 171.624; fails (6) where the product overflows.
  /// $$ B(a, b) = \frac{\Gamma(a)\, \Gamma(b)}{\Gamma(a + b)} $$
  double beta(double A, double B) const;
  /// Continued fraction of the incomplete beta function, at most 100 terms: what BetaI multiplies
  /// by its front factor.
  /// $$ I_x(a, b) = \frac{x^a (1 - x)^b}{a\, B(a, b)} \, F(a, b, x) $$
  /// @param X 0 to 1
  /// @return F
  double Beta_CF(double A, double B, double X) const;
  /// Regularised incomplete beta function, by Beta_CF and three LoGamma; out of range
  /// unless 0 <= X <= 1, A >= 0 and B >= 0. Relative error below 2e-13 for A and B up to 50, below
  /// 6e-11 up to 1e4; from about 1e5 on the fraction ends before it converges.
  /// $$ I_x(a, b) = \frac{1}{B(a, b)} \int_0^x t^{a-1} (1 - t)^{b-1} \, dt $$
  /// @param X 0 to 1
  /// @return 0 to 1, 1e308 outside the domain
  double BetaI(double A, double B, double X) const;
  /// Regularised lower incomplete gamma function; out of range for X < 0 or A <= 0. NaN: as
  /// A gives 1e308, as X gives NaN.
  /// $$ P(a, x) = \frac{1}{\Gamma(a)} \int_0^x t^{a-1} e^{-t} \, dt $$
  /// @param A shape, above 0
  /// @param X 0 or more
  /// @return 0 to 1, 1e308 outside the domain
  double Gamma_P(double A, double X) const;
  /// Regularised lower incomplete gamma function by its series, at most 1000 terms. Out of range
  /// for X < 0.
  /// $$ P(a, x) = e^{-x} x^a \sum_{k=0}^\infty \frac{x^k}{\Gamma(a + 1 + k)} $$
  /// @param A shape, above 0
  /// @param X 0 or more; best up to A + 1
  double Gamma_Series(double A, double X) const;
  /// Regularised upper incomplete gamma function by its continued fraction, at most 1000 steps.
  /// Fails (6) where the recurrence overflows (X above about 1e154).
  /// $$ 1 - P(a, x) = \frac{1}{\Gamma(a)} \int_x^\infty t^{a-1} e^{-t} \, dt $$
  /// @param A shape, above 0
  /// @param X above 0; best from A + 1 on
  double Gamma_CF(double A, double X) const;
  /// Error function. W. J. Cody's CALERF.
  /// $$ \operatorname{erf}(x) = \frac{2}{\sqrt{\pi}} \int_0^x e^{-t^2} \, dt $$
  /// @param xValue any number
  /// @return -1 to 1
  double Erf(double xValue) const;

  /// @name Tolerant arithmetic
  /// A sum or difference that is negligible beside its operands is 0
  /// (tolerant/tolerant_arithmetic.hpp).
  /// @param dReal1 first operand
  /// @param dReal2 second operand
  /// @param Operation "+", "-", "*" or "/", compared exactly
  /// @return the result

  /// Result = dReal1 Operation dReal2; a sum or difference below 1e-15 of the larger operand is 0;
  /// over zero it is 1e308. Result stays as it was for any other operation. NaN: Result is NaN.
  /// @param Result receives the result
  void Arithmetic(const double& dReal1, const double& dReal2, const std::string& Operation,
                  double& Result) const;
  /// The same in Single, below 1e-6; over zero it is 3.402823E+38; 0 for any other operation.
  float ArithmeticSingle(const float& dReal1, const float& dReal2,
                         const std::string& Operation) const;
  /// sReal1 - sReal2, 0 when below Epslon (1e-6 unless given) of the larger operand. NaN: gives
  /// NaN; as Epslon nothing is negligible.
  /// @param sReal1 first operand
  /// @param sReal2 second operand
  /// @param Epslon how much of the larger operand is negligible, a fraction
  float ArithmeticDiff(const float& sReal1, const float& sReal2, const float& Epslon) const;

  /// @name Bessel functions
  /// Of the first and second kind, and modified ones (bessel.hpp). Measured accuracy:
  /// docs/accuracy.md.
  /// @param n the order, 0 or more
  /// @return 1e308 outside the domain

  /// Bessel functions of order 0 and 1. I and J of any X, even functions of order 0 and odd ones of
  /// order 1; K and Y out of range unless X > 0. An overflow is 1e308 (Y: with its sign), an
  /// underflow 0, and an infinite X gives the limit.
  /// @param X any number for I and J, above 0 for K and Y
  double I0(double X) const;
  double i1(double X) const;
  double J0(double X) const;
  double J1(double X) const;
  double K0(double X) const;
  double K1(double X) const;
  double y0(double X) const;
  double y1(double X) const;
  /// Bessel functions of order n from 0 on, out of range below. A negative X goes by the parity of
  /// n for I and J and is out of range for K and Y; overflow, underflow and infinities as for the
  /// orders 0 and 1.
  /// @param X any number for I and J, above 0 for K and Y
  double Ibn(std::int32_t n, double X) const;
  double Jbn(std::int32_t n, double X) const;
  double Kbn(std::int32_t n, double X) const;
  double Ybn(std::int32_t n, double X) const;

  /// @name Plane geometry
  /// Coordinates share one unit; arrays are read from index 1 to their upper bound.
  /// @param X the vertices' first coordinates
  /// @param Y the vertices' second coordinates, as many as X
  /// @param x0 the point's first coordinate
  /// @param y0 the point's second coordinate
  /// @param x1i segment i, first point
  /// @param y1i segment i, first point
  /// @param x2i segment i, second point
  /// @param y2i segment i, second point
  /// @param x1j segment j, first point
  /// @param y1j segment j, first point
  /// @param x2j segment j, second point
  /// @param y2j segment j, second point
  /// @param xi receives the crossing, 0 without one
  /// @param yi receives the crossing, 0 without one
  /// @param qInt receives whether the segments cross

  /// Whether a ray from (x0, y0) towards +X crosses an odd number of the edges of the polygon with
  /// the vertices (X(i), Y(i)), given open or closed. An edge counts when exactly one of its ends
  /// is at or above the point; one whose ends agree in Y to a relative 1e-6 is never crossed. So of
  /// a box's edges the left and the upper one belong to it. False for X and Y of unequal upper
  /// bounds. About a nanosecond a vertex. NaN: a point with one is outside; the edges at a vertex
  /// with one are not crossed.
  /// @return True inside
  bool Point_In_Polygon(const float& x0, const float& y0, const Array1<const float>& X,
                        const Array1<const float>& Y) const;
  /// Where segment i meets segment j. The ranges of X and Y must meet exactly, and the parameter of
  /// each segment (1 at its first point, 0 at its second) be from -1e-8 to 1: so a crossing just
  /// beyond a second end point counts, one just beyond a first does not. Parallel ones (determinant
  /// below 1e-10) do not cross. Without a crossing qInt is false, xi and yi are 0. NaN: no
  /// comparison refuses it, so a crossing at NaN may be reported.
  void LineIntersect(const float& x1i, const float& y1i, const float& x2i, const float& y2i,
                     const float& x1j, const float& y1j, const float& x2j, const float& y2j,
                     float& xi, float& yi, bool& qInt) const;
  /// Where segment i meets segment j, by the shared maths companion's SegmentCrossPoint: both ends
  /// of both belong to them. NaN: no crossing.
  void LineCrossPoint(float& x1i, float& y1i, float& x2i, float& y2i, float& x1j, float& y1j,
                      float& x2j, float& y2j, float& xi, float& yi, bool& qInt) const;
  /// Where the line from (x1, y1, Z1) to (x2, y2, z2) is at the level PtZ; with qBetweenPoints only
  /// between its ends, these included. A level line has no such point (qOK false), a single point
  /// is one for every level. NaN: flows to PtX and PtY; with qBetweenPoints such a level is not
  /// between the ends.
  /// $$ P_x = x_1 + \frac{P_z - z_1}{z_2 - z_1} (x_2 - x_1) $$
  /// @param x1 first point
  /// @param y1 first point
  /// @param Z1 first point, its level
  /// @param x2 second point
  /// @param y2 second point
  /// @param z2 second point, its level
  /// @param PtZ the level
  /// @param qBetweenPoints True: only between the points, these included
  /// @param PtX receives the point
  /// @param PtY receives the point
  /// @param qOK receives whether there is one
  void GetPointOnLine(const float& x1, const float& y1, const float& Z1, const float& x2,
                      const float& y2, const float& z2, const float& PtZ,
                      const bool& qBetweenPoints, float& PtX, float& PtY, bool& qOK) const;

  /// @name Grid cells
  /// Given by the corners of their top and bottom (geometry/cell.hpp). Coordinates share one unit.
  /// @param x0 the point's first coordinate
  /// @param y0 the point's second coordinate
  /// @param z0 the point's third coordinate
  /// @param X the points' first coordinates
  /// @param Y the points' second coordinates
  /// @param Z the points' third coordinates
  /// @param sTopFace corners of the top: (X, Y, Z; corner 1 to 4 around the face)
  /// @param sBottomFace corners of the bottom, each below that of the top
  /// @param qInCube receives for each point whether it is inside
  /// @param NumPoints receives how many are inside
  /// @param PointsIndex receives their indices, from 1
  /// @param qOK receives True where all went well

  /// Whether a ray from the point straight up, to 1000 above the highest corner, crosses an odd
  /// number of the cell's 12 triangles. Corner arrays are (X, Y, Z; corner 1 to 4 around the face),
  /// those of the bottom below those of the top; each face is split from its first to its third
  /// corner, and a ray through that diagonal is turned over twice. False for corner arrays of the
  /// wrong shape too. NaN: a point with one is outside; a triangle of the cell with one is never
  /// crossed.
  /// @return True inside
  bool Point_In_Cube(const float& x0, const float& y0, const float& z0,
                     const Array2<const float>& sTopFace,
                     const Array2<const float>& sBottomFace) const;
  /// Which of the points (X(i), Y(i), Z(i)), i = 1 to the upper bound of X, are inside the cell, as
  /// Point_In_Cube tells; qInCube has an element for each. From coordinates whose products could
  /// overflow some microseconds a point, else nanoseconds. NaN: as Point_In_Cube.
  void Points_In_Cube(const Array1<const float>& X, const Array1<const float>& Y,
                      const Array1<const float>& Z, const Array2<const float>& sTopFace,
                      const Array2<const float>& sBottomFace, Array1<Boolean>& qInCube,
                      bool& qOK) const;
  /// As Points_In_Cube; NumPoints is the number of points inside, and PointsIndex holds their
  /// indices (with none inside, as many zeros as there are points). NaN: as Point_In_Cube.
  void Points_In_CubeIndex(const Array1<const float>& X, const Array1<const float>& Y,
                           const Array1<const float>& Z, const Array2<const float>& sTopFace,
                           const Array2<const float>& sBottomFace, std::int32_t& NumPoints,
                           Array1<std::int32_t>& PointsIndex, Array1<Boolean>& qInCube,
                           bool& qOK) const;
  /// Where the segment from (X(1), Y(1), Z(1)) to (X(2), Y(2), Z(2)) meets the cell's surface:
  /// sIntersectionPoints (1 to 3, 1 to number of crossings), in the order of the cell's triangles;
  /// as it was when there is none. qInCube tells whether there is one, not whether an end is
  /// inside. NaN: a segment or a triangle with one crosses nothing.
  /// @param X the two ends' first coordinates
  /// @param Y the two ends' second coordinates
  /// @param Z the two ends' third coordinates
  /// @param qInCube receives whether there is a crossing
  /// @param sIntersectionPoints receives the crossings: (X, Y, Z; crossing)
  void Line_Through_Cube(const Array1<const float>& X, const Array1<const float>& Y,
                         const Array1<const float>& Z, const Array2<const float>& sTopFace,
                         const Array2<const float>& sBottomFace, bool& qInCube,
                         Array2<float>& sIntersectionPoints, bool& qOK) const;
};

/// The arc cosine behind ztMathLib::acos, a module routine with a trap of its own.
double arccos(double x);

}  // namespace vqmath63
