// The member table of ztMathLib.
#pragma once

#include "automation/member_table.hpp"
#include "mathlib/math_lib.hpp"

namespace vqmath63::members {

using automation::arg;
using automation::method;
using automation::optional_arg;

inline constexpr auto kMathLib = automation::table<ztMathLib>(
    "ztMathLib", "Elementary and special functions, tolerant arithmetic and geometry.",
    {0x47F5A912, 0x841C, 0x4CBA, {0x9D, 0xAE, 0x4A, 0x7B, 0xC1, 0x7D, 0x07, 0xEC}},
    {0x5680D313, 0x79A1, 0x416B, {0xBA, 0xFE, 0x9E, 0x0C, 0x37, 0x87, 0xBA, 0x08}},
    method<&ztMathLib::angle>(
        1, "angle", "Angle in radians of the point (X, Y) seen from the origin, in (-pi, pi].",
        arg("X"), arg("Y")),
    method<&ztMathLib::Polar_to_Rectangular>(
        2, "Polar_to_Rectangular",
        "X and Y of the point at distance Radius and angle Theta (radians).", arg("Radius"),
        arg("Theta"), arg("X"), arg("Y")),
    method<&ztMathLib::Quadrant>(
        3, "Quadrant",
        "Quadrant 1 to 4 of the point (X, Y); the positive axes and the origin belong to 1.",
        arg("X"), arg("Y")),
    method<&ztMathLib::Rectangular_to_Polar>(
        4, "Rectangular_to_Polar",
        "Distance and angle (radians) of the point (X, Y); errors reach the caller.", arg("X"),
        arg("Y"), arg("Radius"), arg("Theta")),
    method<&ztMathLib::aLog>(5, "aLog", "e to the power xValue; 1e308 above 707.47.",
                             arg("xValue")),
    method<&ztMathLib::aLog10>(6, "aLog10",
                               "10 to the power xValue; 1e308 where e times xValue exceeds 707.47.",
                               arg("xValue")),
    method<&ztMathLib::Ln>(7, "Ln", "Natural logarithm; 1e308 unless xValue is positive.",
                           arg("xValue")),
    method<&ztMathLib::Log10>(8, "Log10", "Logarithm to base 10; 1e308 unless xValue is positive.",
                              arg("xValue")),
    method<&ztMathLib::sine>(9, "sine", "Sine of dX (radians), exactly 0 at multiples of pi.",
                             arg("dX")),
    method<&ztMathLib::cosine>(
        10, "cosine", "Cosine of dX (radians), exactly 0 at odd multiples of half pi.", arg("dX")),
    method<&ztMathLib::acos>(11, "acos", "Arc cosine in radians; 1e308 outside -1 to 1.",
                             arg("dX")),
    method<&ztMathLib::asin>(12, "asin", "Arc sine in radians; 1e308 outside -1 to 1.", arg("dX")),
    method<&ztMathLib::atan>(13, "atan", "Arc tangent in radians; errors reach the caller.",
                             arg("dX")),
    method<&ztMathLib::acot>(14, "acot", "Arc cotangent in radians; 1e308 for 0.", arg("dX")),
    method<&ztMathLib::acsc>(15, "acsc", "Arc cosecant in radians; 1e308 for magnitudes below 1.",
                             arg("dX")),
    method<&ztMathLib::asec>(16, "asec", "Arc secant in radians; 1e308 for magnitudes below 1.",
                             arg("dX")),
    method<&ztMathLib::cot>(17, "cot", "Cotangent of dX (radians); 1e308 at its poles.", arg("dX")),
    method<&ztMathLib::csc>(18, "csc", "Cosecant of dX (radians); 1e308 at its poles.", arg("dX")),
    method<&ztMathLib::Sec>(19, "Sec", "Secant of dX (radians).", arg("dX")),
    method<&ztMathLib::sinh>(20, "sinh", "Hyperbolic sine; abs(dX) for magnitudes up to 1e-10.",
                             arg("dX")),
    method<&ztMathLib::cosh>(21, "cosh", "Hyperbolic cosine; 1e308 beyond 707.47.", arg("dX")),
    method<&ztMathLib::tanh>(22, "tanh", "Hyperbolic tangent.", arg("dX")),
    method<&ztMathLib::coth>(23, "coth", "Hyperbolic cotangent; 0 for 0.", arg("dX")),
    method<&ztMathLib::csch>(24, "csch", "Hyperbolic cosecant; 0 for 0.", arg("dX")),
    method<&ztMathLib::sech>(25, "sech", "Hyperbolic secant.", arg("dX")),
    method<&ztMathLib::asinh>(26, "asinh", "Inverse hyperbolic sine.", arg("dX")),
    method<&ztMathLib::acosh>(
        27, "acosh", "Inverse hyperbolic cosine; 1e308 for magnitudes below 1.", arg("dX")),
    method<&ztMathLib::atanh>(28, "atanh",
                              "Inverse hyperbolic tangent; 1e308 unless the magnitude is below 1.",
                              arg("dX")),
    method<&ztMathLib::acoth>(29, "acoth", "Inverse hyperbolic cotangent; 1e308 from -1 to 1.",
                              arg("dX")),
    method<&ztMathLib::acsch>(30, "acsch", "Inverse hyperbolic cosecant; 1e308 for 0.", arg("dX")),
    method<&ztMathLib::asech>(
        31, "asech", "Inverse hyperbolic secant; 1e308 unless dX is above 0 and at most 1.",
        arg("dX")),
    method<&ztMathLib::Ceil>(32, "Ceil", "Smallest whole number not below X, as a Long.", arg("X")),
    method<&ztMathLib::dCeil>(33, "dCeil", "Smallest whole number not below X, as a Double.",
                              arg("X")),
    method<&ztMathLib::Floor>(34, "Floor", "Largest whole number not above X, as a Long.",
                              arg("X")),
    method<&ztMathLib::dFloor>(35, "dFloor", "Largest whole number not above X, as a Double.",
                               arg("X")),
    method<&ztMathLib::Max>(36, "Max", "The larger of two numbers.", arg("n1"), arg("n2")),
    method<&ztMathLib::Min>(37, "Min", "The smaller of two numbers.", arg("n1"), arg("n2")),
    method<&ztMathLib::Sign>(38, "Sign", "Magnitude of x1 with the sign of x2.", arg("x1"),
                             arg("x2")),
    method<&ztMathLib::Cube_Root>(39, "Cube_Root", "Cube root.", arg("X")),
    method<&ztMathLib::cubed>(40, "cubed", "X times X times X.", arg("X")),
    method<&ztMathLib::Square_Root>(41, "Square_Root", "Square root; 1e308 below 0.", arg("X")),
    method<&ztMathLib::Squared>(42, "Squared", "X times X.", arg("X")),
    method<&ztMathLib::x_to_Power_y>(
        43, "x_to_Power_y", "X to the power Power; 1e308 for a fractional power of a negative X.",
        arg("X"), arg("Power")),
    method<&ztMathLib::y_Root_of_X>(
        44, "y_Root_of_X",
        "Root-th root of X; 1e308 for even and fractional roots of a negative X.", arg("X"),
        arg("Root")),
    method<&ztMathLib::Factor>(
        45, "Factor", "Smallest common divisor above 1, up to half the smaller magnitude; else 1.",
        arg("Long1"), arg("Long2")),
    method<&ztMathLib::RTD>(46, "RTD", "Radians to degrees; errors reach the caller.",
                            arg("Radians")),
    method<&ztMathLib::DTR>(47, "DTR", "Degrees to radians.", arg("Degrees")),
    method<&ztMathLib::Factorial>(48, "Factorial", "n factorial; 1e308 above 170, 0 below 0.",
                                  arg("n")),
    method<&ztMathLib::Combination>(
        49, "Combination",
        "Ways to take NumOfComb of TotalComb things regardless of order; totals up to 170.",
        arg("TotalComb"), arg("NumOfComb")),
    method<&ztMathLib::Permutation>(
        50, "Permutation", "Ways to take NumOfComb of TotalComb things in order; totals up to 170.",
        arg("TotalComb"), arg("NumOfComb")),
    method<&ztMathLib::Gamma>(51, "Gamma", "Gamma function; 1e308 at its poles and above 171.624.",
                              arg("X")),
    method<&ztMathLib::LoGamma>(
        52, "LoGamma", "Natural logarithm of the gamma function; 1e308 unless X is positive.",
        arg("X")),
    method<&ztMathLib::beta>(53, "beta", "Beta function, from the gamma function.", arg("A"),
                             arg("B")),
    method<&ztMathLib::Beta_CF>(54, "Beta_CF",
                                "Continued fraction of the incomplete beta function.", arg("A"),
                                arg("B"), arg("X")),
    method<&ztMathLib::BetaI>(
        55, "BetaI",
        "Regularised incomplete beta function; 1e308 outside 0 <= X <= 1 and for negative A or B.",
        arg("A"), arg("B"), arg("X")),
    method<&ztMathLib::Gamma_P>(
        56, "Gamma_P",
        "Regularised lower incomplete gamma function; 1e308 for negative X or A not positive.",
        arg("A"), arg("X")),
    method<&ztMathLib::Gamma_Series>(57, "Gamma_Series",
                                     "Regularised lower incomplete gamma function by its series.",
                                     arg("A"), arg("X")),
    method<&ztMathLib::Gamma_CF>(
        58, "Gamma_CF", "Regularised upper incomplete gamma function by its continued fraction.",
        arg("A"), arg("X")),
    method<&ztMathLib::Erf>(59, "Erf", "Error function.", arg("xValue")),
    method<&ztMathLib::Arithmetic>(
        60, "Arithmetic",
        "Result = dReal1 Operation dReal2, negligible sums being 0; 1e308 over zero.",
        arg("dReal1"), arg("dReal2"), arg("Operation"), arg("Result")),
    method<&ztMathLib::ArithmeticSingle>(
        61, "ArithmeticSingle",
        "dReal1 Operation dReal2 in Single, negligible sums being 0; 3.402823E+38 over zero.",
        arg("dReal1"), arg("dReal2"), arg("Operation")),
    method<&ztMathLib::ArithmeticDiff>(62, "ArithmeticDiff",
                                       "sReal1 - sReal2, 0 when below Epslon of the larger.",
                                       arg("sReal1"), arg("sReal2"), optional_arg("Epslon", 1e-6)),
    method<&ztMathLib::I0>(63, "I0", "Modified Bessel function I of order 0.", arg("X")),
    method<&ztMathLib::i1>(64, "i1", "Modified Bessel function I of order 1.", arg("X")),
    method<&ztMathLib::J0>(65, "J0", "Bessel function J of order 0.", arg("X")),
    method<&ztMathLib::J1>(66, "J1", "Bessel function J of order 1.", arg("X")),
    method<&ztMathLib::K0>(
        67, "K0", "Modified Bessel function K of order 0; 1e308 unless X is positive.", arg("X")),
    method<&ztMathLib::K1>(
        68, "K1", "Modified Bessel function K of order 1; 1e308 unless X is positive.", arg("X")),
    method<&ztMathLib::y0>(69, "y0", "Bessel function Y of order 0; 1e308 unless X is positive.",
                           arg("X")),
    method<&ztMathLib::y1>(70, "y1", "Bessel function Y of order 1; 1e308 unless X is positive.",
                           arg("X")),
    method<&ztMathLib::Ibn>(71, "Ibn", "Modified Bessel function I of order n, 0 or more.",
                            arg("n"), arg("X")),
    method<&ztMathLib::Jbn>(72, "Jbn", "Bessel function J of order n, 0 or more.", arg("n"),
                            arg("X")),
    method<&ztMathLib::Kbn>(
        73, "Kbn", "Modified Bessel function K of order n, 0 or more; 1e308 unless X is positive.",
        arg("n"), arg("X")),
    method<&ztMathLib::Ybn>(74, "Ybn",
                            "Bessel function Y of order n, 0 or more; 1e308 unless X is positive.",
                            arg("n"), arg("X")),
    method<&ztMathLib::Point_In_Polygon>(
        75, "Point_In_Polygon",
        "Whether (x0, y0) is inside the polygon, given open or closed; of a box's edges the left "
        "and the upper one belong to it.",
        arg("x0"), arg("y0"), arg("X"), arg("Y")),
    method<&ztMathLib::LineIntersect>(
        76, "LineIntersect", "Crossing (xi, yi) of segments i and j, and whether there is one.",
        arg("x1i"), arg("y1i"), arg("x2i"), arg("y2i"), arg("x1j"), arg("y1j"), arg("x2j"),
        arg("y2j"), arg("xi"), arg("yi"), arg("qInt")),
    method<&ztMathLib::LineCrossPoint>(
        77, "LineCrossPoint",
        "Crossing of segments i and j by the mathematical companion: both ends of both count.",
        arg("x1i"), arg("y1i"), arg("x2i"), arg("y2i"), arg("x1j"), arg("y1j"), arg("x2j"),
        arg("y2j"), arg("xi"), arg("yi"), arg("qInt")),
    method<&ztMathLib::GetPointOnLine>(
        78, "GetPointOnLine", "PtX and PtY where the line reaches the level PtZ.", arg("x1"),
        arg("y1"), arg("Z1"), arg("x2"), arg("y2"), arg("z2"), arg("PtZ"), arg("qBetweenPoints"),
        arg("PtX"), arg("PtY"), arg("qOK")),
    method<&ztMathLib::Point_In_Cube>(
        79, "Point_In_Cube",
        "Whether a point is inside a cell; corner arrays are (coordinate 1 to 3, corner 1 to 4).",
        arg("x0"), arg("y0"), arg("z0"), arg("sTopFace"), arg("sBottomFace")),
    method<&ztMathLib::Points_In_Cube>(80, "Points_In_Cube", "Which points are inside a cell.",
                                       arg("X"), arg("Y"), arg("Z"), arg("sTopFace"),
                                       arg("sBottomFace"), arg("qInCube"), arg("qOK")),
    method<&ztMathLib::Points_In_CubeIndex>(
        81, "Points_In_CubeIndex", "Which points are inside a cell, their indices and number.",
        arg("X"), arg("Y"), arg("Z"), arg("sTopFace"), arg("sBottomFace"), arg("NumPoints"),
        arg("PointsIndex"), arg("qInCube"), arg("qOK")),
    method<&ztMathLib::Line_Through_Cube>(
        82, "Line_Through_Cube",
        "Where a segment meets a cell's surface, (coordinate, crossing); qInCube tells whether it "
        "does.",
        arg("X"), arg("Y"), arg("Z"), arg("sTopFace"), arg("sBottomFace"), arg("qInCube"),
        arg("sIntersectionPoints"), arg("qOK")));

}  // namespace vqmath63::members
