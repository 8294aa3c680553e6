// ztMathLib: elementary and special functions, tolerant arithmetic and geometry.
#pragma once

#include <cstdint>
#include <string>

#include "frame/array.hpp"

namespace vqmath63 {

/// Mathematical functions of Doubles. Outside its domain a function returns the out-of-range value
/// 1e308 (kOutOfRange), without a message. A step that fails (overflow 6, division by zero 11,
/// invalid operation 5) is reported under the member's name and the member returns 0. An
/// infinity in the arguments flows through. NaN: gives NaN. Angles are radians unless a name says
/// degrees.
///
/// Literal constants have 15 significant digits and results show them: pi is 3.14159265358979.
/// All tables are made when the library is compiled; an instance holds nothing and costs nothing.
class ztMathLib {
 public:
  // Where each stands: circular.cpp, hyperbolic.cpp, exponential.cpp (with logarithms, powers and
  // roots), combinatorics.cpp, gamma.cpp, beta.cpp, incomplete_gamma.cpp, error_function.cpp;
  // points and cells in geometry_members.cpp; what hands on to tolerant/ and to bessel.hpp in
  // math_lib.cpp; all others in utilities.cpp.

  // Plane coordinates, by the shared maths companion.

  /// Angle of the point (X, Y) seen from the origin, in (-pi, pi]; 0 for the origin.
  double angle(double X, double Y) const;
  /// X and Y of the point at distance Radius and angle Theta. NaN: both results are NaN.
  void Polar_to_Rectangular(double Radius, double Theta, double& X, double& Y) const;
  /// 1 to 4, counter-clockwise. The positive axes and the origin belong to quadrant 1, the negative
  /// x axis to 2, the negative y axis to 4. NaN: counts as a coordinate that is not negative.
  std::int32_t Quadrant(double X, double Y) const;
  /// Radius and Theta of the point (X, Y). No trap: a failure reaches the caller. NaN: both results
  /// are NaN.
  void Rectangular_to_Polar(double X, double Y, double& Radius, double& Theta) const;

  // Exponentials and logarithms.

  /// e to the power xValue; out of range above 707.47, 0 below -707.47.
  double aLog(double xValue) const;
  /// 10 to the power xValue, guarded on e times xValue: out of range from about 260.26 on, 0 from
  /// about -260.26 down.
  double aLog10(double xValue) const;
  /// Natural logarithm; out of range unless xValue > 0. NaN: gives 1e308.
  double Ln(double xValue) const;
  /// Natural logarithm times 0.434294481903252; out of range unless xValue > 0. NaN: gives 1e308.
  double Log10(double xValue) const;

  // Circular functions.

  /// Sine; exactly 0 where abs(dX) times 0.318309886183791 is whole, which every argument from
  /// about 1.4e16 on is.
  double sine(double dX) const;
  /// Cosine; exactly 0 where twice that product is whole and the product itself is not.
  double cosine(double dX) const;
  /// Arc cosine in [0, pi]; out of range outside [-1, 1]. NaN: gives 0.
  double acos(double dX) const;
  /// Arc sine in [-pi/2, pi/2]; out of range outside [-1, 1].
  double asin(double dX) const;
  /// Arc tangent, by the shared maths companion. No trap.
  double atan(double dX) const;
  /// Arc cotangent, arc tangent of 1 / dX; out of range for 0.
  double acot(double dX) const;
  /// Arc cosecant; out of range for magnitudes below 1; magnitudes within 1e-15 of 1 count as 1.
  /// NaN: gives 1e308.
  double acsc(double dX) const;
  /// Arc secant in [0, pi]; out of range for magnitudes below 1; those within 1e-14 of 1 count
  /// as 1.
  double asec(double dX) const;
  /// Cotangent; out of range where the tangent is 9e-308 or less in magnitude. NaN: gives 1e308.
  double cot(double dX) const;
  /// Cosecant; where the sine is 9e-308 or less in magnitude, 1e308 with its sign (plus for zero).
  double csc(double dX) const;
  /// Secant; where the cosine is 9e-308 or less in magnitude, its sign times 1e308.
  double Sec(double dX) const;

  // Hyperbolic functions, from exp(dX) and exp(-dX) as they stand: relative accuracy is lost in
  // proportion to 1 / dX near zero for those that are zero or infinite there.

  /// Beyond 707.47 the sign times 1e308. abs(dX) for magnitudes up to 1e-10, so positive there for
  /// negative arguments too.
  double sinh(double dX) const;
  /// Out of range beyond 707.47.
  double cosh(double dX) const;
  /// The sign beyond 36.8; dX itself for magnitudes up to 1e-10.
  double tanh(double dX) const;
  /// The sign beyond 707.47; 1 / dX for magnitudes up to 1e-10, the sign times 1e308 up to 9e-308,
  /// so 0 for 0.
  double coth(double dX) const;
  /// 0 beyond 707.47; near zero as coth.
  double csch(double dX) const;
  /// 0 beyond 707.47; 1 for magnitudes below 1e-10.
  double sech(double dX) const;
  /// log(sqrt(dX^2 + 1) + dX). Fails (5) where the sum rounds to zero, below about -9.5e7, and (6)
  /// where the square overflows.
  double asinh(double dX) const;
  /// log(sqrt(dX^2 - 1) + dX); 0 for 1 and -1; out of range for magnitudes below 1; fails (5) below
  /// -1.
  double acosh(double dX) const;
  /// Out of range unless abs(dX) < 1. NaN: gives 1e308.
  double atanh(double dX) const;
  /// Out of range within (-1, 1) and within 1e-15 of either end.
  double acoth(double dX) const;
  /// asinh of 1 / dX; out of range for magnitudes up to 1e-14; fails (5) where asinh would. NaN:
  /// gives 1e308.
  double acsch(double dX) const;
  /// acosh of 1 / dX; 0 for 1; out of range unless 0 < dX < 1. NaN: gives 1e308.
  double asech(double dX) const;

  // Whole numbers, by the shared maths companion.

  /// Smallest whole number not below X; fails (6) outside the range of a Long. NaN: error 6.
  std::int32_t Ceil(double X) const;
  /// As Ceil, as a Double: any X. NaN: gives NaN.
  double dCeil(double X) const;
  /// Largest whole number not above X; fails (6) outside the range of a Long. NaN: error 6.
  std::int32_t Floor(double X) const;
  /// As Floor, as a Double: any X. NaN: gives NaN.
  double dFloor(double X) const;

  // Comparison, powers, roots, conversions.

  /// n1 unless it is less than n2. NaN: as n1 gives NaN, as n2 gives n1.
  double Max(double n1, double n2) const;
  /// n1 unless it is greater than n2. NaN: as n1 gives NaN, as n2 gives n1.
  double Min(double n1, double n2) const;
  /// Magnitude of x1 with the sign of x2 (plus for both zeros). NaN: as x1 gives NaN, as x2 counts
  /// as not negative.
  double Sign(double x1, double x2) const;
  /// Cube root of either sign, by exp and log with the exponent 0.333333333333333. NaN: gives 0.
  double Cube_Root(double X) const;
  /// X times X times X; fails (6) where that overflows.
  double cubed(double X) const;
  /// Square root; out of range below 0.
  double Square_Root(double X) const;
  /// X times X; fails (6) where that overflows.
  double Squared(double X) const;
  /// exp(log(abs(X)) Power), with the sign of an odd power of a negative X. 1 for Power 0, also for
  /// X = 0; 0 for X = 0; out of range for a fractional power of a negative X, and where the
  /// exponent exceeds 707.47 (0 below -707.47). Fails (6) for a negative X whose whole Power is no
  /// Long. NaN: gives NaN, but 1 beside a Power of 0, 0 beside an X of 0, and 1e308 as the Power of
  /// a negative X.
  double x_to_Power_y(double X, double Power) const;
  /// exp(log(abs(X)) / Root), negative for an odd root of a negative X; out of range for Root 0,
  /// for even and fractional roots of a negative X, and as x_to_Power_y. NaN: gives NaN, but 1e308
  /// beside a Root of 0 and as the Root of a negative X, and 0 beside an X of 0.
  double y_Root_of_X(double X, double Root) const;
  /// Smallest common divisor above 1 of Long1 and Long2 that is at most half the smaller magnitude
  /// (halves rounded to even), else 1. Fails (6) for the most negative Long.
  std::int32_t Factor(std::int32_t Long1, std::int32_t Long2) const;
  /// Radians to degrees. No trap.
  double RTD(double Radians) const;
  /// Degrees to radians.
  double DTR(const double& Degrees) const;

  // Combinatorics.

  /// n factorial: 0 for n < 0, out of range above 170.
  double Factorial(std::int32_t n) const;
  /// TotalComb! / ((TotalComb - NumOfComb)! NumOfComb!); out of range for negative counts, for more
  /// taken than there are, and for totals above 170.
  double Combination(std::int32_t TotalComb, std::int32_t NumOfComb) const;
  /// TotalComb! / (TotalComb - NumOfComb)!, else as Combination.
  double Permutation(std::int32_t TotalComb, std::int32_t NumOfComb) const;

  // Gamma, beta and error function. Measured accuracy: docs/accuracy.md.

  /// Gamma function; out of range at 0 and the negative whole numbers, above 171.624, and for
  /// magnitudes of negative X from about 170.6 on. W. J. Cody's GAMMA (see cody_tables.hpp).
  double Gamma(double X) const;
  /// Natural logarithm of the gamma function for 0 < X <= 2.55e305, else out of range. W. J. Cody's
  /// ALGAMA. NaN: gives 1e308.
  double LoGamma(double X) const;
  /// Gamma(A) Gamma(B) / Gamma(A + B), so limited to sums up to 171.624; fails (6) where the
  /// product overflows.
  double beta(double A, double B) const;
  /// Continued fraction of the incomplete beta function, at most 100 terms.
  double Beta_CF(double A, double B, double X) const;
  /// Regularised incomplete beta function I_X(A, B), by Beta_CF and three LoGamma; out of range
  /// unless 0 <= X <= 1, A >= 0 and B >= 0. Relative error below 2e-13 for A and B up to 50, below
  /// 6e-11 up to 1e4; from about 1e5 on the fraction ends before it converges.
  double BetaI(double A, double B, double X) const;
  /// Regularised lower incomplete gamma function P(A, X); out of range for X < 0 or A <= 0. NaN: as
  /// A gives 1e308, as X gives NaN.
  double Gamma_P(double A, double X) const;
  /// P(A, X) by its series, at most 1000 terms; for X < A + 1. Out of range for X < 0.
  double Gamma_Series(double A, double X) const;
  /// 1 - P(A, X) by its continued fraction, at most 1000 steps; for X >= A + 1. Fails (6) where the
  /// recurrence overflows (X above about 1e154).
  double Gamma_CF(double A, double X) const;
  /// Error function. W. J. Cody's CALERF.
  double Erf(double xValue) const;

  // Tolerant arithmetic (tolerant/tolerant_arithmetic.hpp). Operations are "+", "-", "*" and "/",
  // compared exactly.

  /// Result = dReal1 Operation dReal2; a sum or difference below 1e-15 of the larger operand is 0;
  /// over zero it is 1e308. Result stays as it was for any other operation. NaN: Result is NaN.
  void Arithmetic(const double& dReal1, const double& dReal2, const std::string& Operation,
                  double& Result) const;
  /// The same in Single, below 1e-6; over zero it is 3.402823E+38; 0 for any other operation.
  float ArithmeticSingle(const float& dReal1, const float& dReal2,
                         const std::string& Operation) const;
  /// sReal1 - sReal2, 0 when below Epslon (1e-6 unless given) of the larger operand. NaN: gives
  /// NaN; as Epslon nothing is negligible.
  float ArithmeticDiff(const float& sReal1, const float& sReal2, const float& Epslon) const;

  // Bessel functions (bessel.hpp).

  /// Orders 0 and 1. I and J of any X, even functions of order 0 and odd ones of order 1; K and Y
  /// out of range unless X > 0. An overflow is 1e308 (Y: with its sign), an underflow 0, and an
  /// infinite X gives the limit.
  double I0(double X) const;
  double i1(double X) const;
  double J0(double X) const;
  double J1(double X) const;
  double K0(double X) const;
  double K1(double X) const;
  double y0(double X) const;
  double y1(double X) const;
  /// Orders n from 0 on, out of range below. A negative X goes by the parity of n for I and J and
  /// is out of range for K and Y; overflow, underflow and infinities as for the orders 0 and 1.
  double Ibn(std::int32_t n, double X) const;
  double Jbn(std::int32_t n, double X) const;
  double Kbn(std::int32_t n, double X) const;
  double Ybn(std::int32_t n, double X) const;

  // Plane geometry. Coordinates share one unit; arrays are read from index 1 to their upper bound.

  /// Whether a ray from (x0, y0) towards +X crosses an odd number of the edges of the polygon with
  /// the vertices (X(i), Y(i)), given open or closed. An edge counts when exactly one of its ends
  /// is at or above the point; one whose ends agree in Y to a relative 1e-6 is never crossed. So of
  /// a box's edges the left and the upper one belong to it. False for X and Y of unequal upper
  /// bounds. About a nanosecond a vertex. NaN: a point with one is outside; the edges at a vertex
  /// with one are not crossed.
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
  void GetPointOnLine(const float& x1, const float& y1, const float& Z1, const float& x2,
                      const float& y2, const float& z2, const float& PtZ,
                      const bool& qBetweenPoints, float& PtX, float& PtY, bool& qOK) const;

  // Cells, given by the corners of their top and bottom: geometry/cell.hpp.

  /// Whether a ray from the point straight up, to 1000 above the highest corner, crosses an odd
  /// number of the cell's 12 triangles. Corner arrays are (X, Y, Z; corner 1 to 4 around the face),
  /// those of the bottom below those of the top; each face is split from its first to its third
  /// corner, and a ray through that diagonal is turned over twice. False for corner arrays of the
  /// wrong shape too. NaN: a point with one is outside; a triangle of the cell with one is never
  /// crossed.
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
  /// The same; NumPoints is the number of points inside, and PointsIndex holds their indices (with
  /// none inside, as many zeros as there are points). NaN: as Point_In_Cube.
  void Points_In_CubeIndex(const Array1<const float>& X, const Array1<const float>& Y,
                           const Array1<const float>& Z, const Array2<const float>& sTopFace,
                           const Array2<const float>& sBottomFace, std::int32_t& NumPoints,
                           Array1<std::int32_t>& PointsIndex, Array1<Boolean>& qInCube,
                           bool& qOK) const;
  /// Where the segment from (X(1), Y(1), Z(1)) to (X(2), Y(2), Z(2)) meets the cell's surface:
  /// sIntersectionPoints (1 to 3, 1 to number of crossings), in the order of the cell's triangles;
  /// as it was when there is none. qInCube tells whether there is one, not whether an end is
  /// inside. NaN: a segment or a triangle with one crosses nothing.
  void Line_Through_Cube(const Array1<const float>& X, const Array1<const float>& Y,
                         const Array1<const float>& Z, const Array2<const float>& sTopFace,
                         const Array2<const float>& sBottomFace, bool& qInCube,
                         Array2<float>& sIntersectionPoints, bool& qOK) const;
};

/// The arc cosine behind ztMathLib::acos, a module routine with a trap of its own.
double arccos(double x);

}  // namespace vqmath63
