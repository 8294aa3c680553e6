// The member table of ztMathLib.
#pragma once

#include "automation/many_calls.hpp"
#include "automation/member_table.hpp"
#include "mathlib/blocks.hpp"
#include "mathlib/math_lib.hpp"

namespace vqmath63::members {

using automation::answer;
using automation::arg;
using automation::lent;
using automation::method;
using automation::optional_arg;
using automation::out;

static_assert(automation::kCallsInBlock <= kMostInBlock, "what a block way has room for");

inline constexpr auto kMathLib = automation::table<ztMathLib>(
    "ztMathLib", "Elementary and special functions, tolerant arithmetic and geometry.",
    {0x47F5A912, 0x841C, 0x4CBA, {0x9D, 0xAE, 0x4A, 0x7B, 0xC1, 0x7D, 0x07, 0xEC}},
    {0x5680D313, 0x79A1, 0x416B, {0xBA, 0xFE, 0x9E, 0x0C, 0x37, 0x87, 0xBA, 0x08}},
    // clang-format off
    method<&ztMathLib::angle>               ( 1, "angle",                {arg("X"), arg("Y")}, "Angle in radians of the point (X, Y) seen from the origin, in (-pi, pi]."),
    method<&ztMathLib::Polar_to_Rectangular>( 2, "Polar_to_Rectangular", {arg("Radius"), arg("Theta"), answer("X"), answer("Y")}, "X and Y of the point at distance Radius and angle Theta (radians)."),
    method<&ztMathLib::Quadrant>            ( 3, "Quadrant",             {arg("X"), arg("Y")}, "Quadrant 1 to 4 of the point (X, Y); the positive axes and the origin belong to 1."),
    method<&ztMathLib::Rectangular_to_Polar>( 4, "Rectangular_to_Polar", {arg("X"), arg("Y"), answer("Radius"), answer("Theta")}, "Distance and angle (radians) of the point (X, Y); errors reach the caller."),
    method<&ztMathLib::aLog>                ( 5, "aLog",                 {arg("xValue")}, "e to the power xValue; 1e308 above 707.47."),
    method<&ztMathLib::aLog10>              ( 6, "aLog10",               {arg("xValue")}, "10 to the power xValue; 1e308 where e times xValue exceeds 707.47."),
    method<&ztMathLib::Ln>                  ( 7, "Ln",                   {arg("xValue")}, "Natural logarithm; 1e308 unless xValue is positive."),
    method<&ztMathLib::Log10>               ( 8, "Log10",                {arg("xValue")}, "Logarithm to base 10; 1e308 unless xValue is positive."),
    method<&ztMathLib::sine>                ( 9, "sine",                 {arg("dX")}, "Sine of dX (radians), exactly 0 at multiples of pi."),
    method<&ztMathLib::cosine>              (10, "cosine",               {arg("dX")}, "Cosine of dX (radians), exactly 0 at odd multiples of half pi."),
    method<&ztMathLib::acos>                (11, "acos",                 {arg("dX")}, "Arc cosine in radians; 1e308 outside -1 to 1."),
    method<&ztMathLib::asin>                (12, "asin",                 {arg("dX")}, "Arc sine in radians; 1e308 outside -1 to 1."),
    method<&ztMathLib::atan>                (13, "atan",                 {arg("dX")}, "Arc tangent in radians; errors reach the caller."),
    method<&ztMathLib::acot>                (14, "acot",                 {arg("dX")}, "Arc cotangent in radians; 1e308 for 0."),
    method<&ztMathLib::acsc>                (15, "acsc",                 {arg("dX")}, "Arc cosecant in radians; 1e308 for magnitudes below 1."),
    method<&ztMathLib::asec>                (16, "asec",                 {arg("dX")}, "Arc secant in radians; 1e308 for magnitudes below 1."),
    method<&ztMathLib::cot>                 (17, "cot",                  {arg("dX")}, "Cotangent of dX (radians); 1e308 at its poles."),
    method<&ztMathLib::csc>                 (18, "csc",                  {arg("dX")}, "Cosecant of dX (radians); 1e308 at its poles."),
    method<&ztMathLib::Sec>                 (19, "Sec",                  {arg("dX")}, "Secant of dX (radians)."),
    method<&ztMathLib::sinh>                (20, "sinh",                 {arg("dX")}, "Hyperbolic sine; abs(dX) for magnitudes up to 1e-10."),
    method<&ztMathLib::cosh>                (21, "cosh",                 {arg("dX")}, "Hyperbolic cosine; 1e308 beyond 707.47."),
    method<&ztMathLib::tanh>                (22, "tanh",                 {arg("dX")}, "Hyperbolic tangent."),
    method<&ztMathLib::coth>                (23, "coth",                 {arg("dX")}, "Hyperbolic cotangent; 0 for 0."),
    method<&ztMathLib::csch>                (24, "csch",                 {arg("dX")}, "Hyperbolic cosecant; 0 for 0."),
    method<&ztMathLib::sech>                (25, "sech",                 {arg("dX")}, "Hyperbolic secant."),
    method<&ztMathLib::asinh>               (26, "asinh",                {arg("dX")}, "Inverse hyperbolic sine."),
    method<&ztMathLib::acosh>               (27, "acosh",                {arg("dX")}, "Inverse hyperbolic cosine; 1e308 for magnitudes below 1."),
    method<&ztMathLib::atanh>               (28, "atanh",                {arg("dX")}, "Inverse hyperbolic tangent; 1e308 unless the magnitude is below 1."),
    method<&ztMathLib::acoth>               (29, "acoth",                {arg("dX")}, "Inverse hyperbolic cotangent; 1e308 from -1 to 1."),
    method<&ztMathLib::acsch>               (30, "acsch",                {arg("dX")}, "Inverse hyperbolic cosecant; 1e308 for 0."),
    method<&ztMathLib::asech>               (31, "asech",                {arg("dX")}, "Inverse hyperbolic secant; 1e308 unless dX is above 0 and at most 1."),
    method<&ztMathLib::Ceil>                (32, "Ceil",                 {arg("X")}, "Smallest whole number not below X, as a Long."),
    method<&ztMathLib::dCeil>               (33, "dCeil",                {arg("X")}, "Smallest whole number not below X, as a Double."),
    method<&ztMathLib::Floor>               (34, "Floor",                {arg("X")}, "Largest whole number not above X, as a Long."),
    method<&ztMathLib::dFloor>              (35, "dFloor",               {arg("X")}, "Largest whole number not above X, as a Double."),
    method<&ztMathLib::Max>                 (36, "Max",                  {arg("n1"), arg("n2")}, "The larger of two numbers."),
    method<&ztMathLib::Min>                 (37, "Min",                  {arg("n1"), arg("n2")}, "The smaller of two numbers."),
    method<&ztMathLib::Sign>                (38, "Sign",                 {arg("x1"), arg("x2")}, "Magnitude of x1 with the sign of x2."),
    method<&ztMathLib::Cube_Root>           (39, "Cube_Root",            {arg("X")}, "Cube root."),
    method<&ztMathLib::cubed>               (40, "cubed",                {arg("X")}, "X times X times X."),
    method<&ztMathLib::Square_Root>         (41, "Square_Root",          {arg("X")}, "Square root; 1e308 below 0."),
    method<&ztMathLib::Squared>             (42, "Squared",              {arg("X")}, "X times X."),
    method<&ztMathLib::x_to_Power_y>        (43, "x_to_Power_y",         {arg("X"), arg("Power")}, "X to the power Power; 1e308 for a fractional power of a negative X."),
    method<&ztMathLib::y_Root_of_X>         (44, "y_Root_of_X",          {arg("X"), arg("Root")}, "Root-th root of X; 1e308 for even and fractional roots of a negative X."),
    method<&ztMathLib::Factor>              (45, "Factor",               {arg("Long1"), arg("Long2")}, "Smallest common divisor above 1, up to half the smaller magnitude; else 1."),
    method<&ztMathLib::RTD>                 (46, "RTD",                  {arg("Radians")}, "Radians to degrees; errors reach the caller."),
    method<&ztMathLib::DTR>                 (47, "DTR",                  {arg("Degrees")}, "Degrees to radians."),
    method<&ztMathLib::Factorial>           (48, "Factorial",            {arg("n")}, "n factorial; 1e308 above 170, 0 below 0."),
    method<&ztMathLib::Combination>         (49, "Combination",          {arg("TotalComb"), arg("NumOfComb")}, "Ways to take NumOfComb of TotalComb things regardless of order; totals up to 170."),
    method<&ztMathLib::Permutation>         (50, "Permutation",          {arg("TotalComb"), arg("NumOfComb")}, "Ways to take NumOfComb of TotalComb things in order; totals up to 170."),
    method<&ztMathLib::Gamma>               (51, "Gamma",                {arg("X")}, "Gamma function; 1e308 at its poles and above 171.624."),
    method<&ztMathLib::LoGamma>             (52, "LoGamma",              {arg("X")}, "Natural logarithm of the gamma function; 1e308 unless X is positive."),
    method<&ztMathLib::beta>                (53, "beta",                 {arg("A"), arg("B")}, "Beta function, from the gamma function."),
    method<&ztMathLib::Beta_CF>             (54, "Beta_CF",              {arg("A"), arg("B"), arg("X")}, "Continued fraction of the incomplete beta function."),
    method<&ztMathLib::BetaI>               (55, "BetaI",                {arg("A"), arg("B"), arg("X")}, "Regularised incomplete beta function; 1e308 outside 0 <= X <= 1 and for negative A or B."),
    method<&ztMathLib::Gamma_P>             (56, "Gamma_P",              {arg("A"), arg("X")}, "Regularised lower incomplete gamma function; 1e308 for negative X or A not positive."),
    method<&ztMathLib::Gamma_Series>        (57, "Gamma_Series",         {arg("A"), arg("X")}, "Regularised lower incomplete gamma function by its series."),
    method<&ztMathLib::Gamma_CF>            (58, "Gamma_CF",             {arg("A"), arg("X")}, "Regularised upper incomplete gamma function by its continued fraction."),
    method<&ztMathLib::Erf>                 (59, "Erf",                  {arg("xValue")}, "Error function."),
    method<&ztMathLib::Arithmetic>          (60, "Arithmetic",           {arg("dReal1"), arg("dReal2"), arg("Operation"), answer("Result")}, "Result = dReal1 Operation dReal2, negligible sums being 0; 1e308 over zero."),
    method<&ztMathLib::ArithmeticSingle>    (61, "ArithmeticSingle",     {arg("dReal1"), arg("dReal2"), arg("Operation")}, "dReal1 Operation dReal2 in Single, negligible sums being 0; 3.402823E+38 over zero."),
    method<&ztMathLib::ArithmeticDiff>      (62, "ArithmeticDiff",       {arg("sReal1"), arg("sReal2"), optional_arg("Epslon", 1e-6)}, "sReal1 - sReal2, 0 when below Epslon of the larger."),
    method<&ztMathLib::I0>                  (63, "I0",                   {arg("X")}, "Modified Bessel function I of order 0."),
    method<&ztMathLib::i1>                  (64, "i1",                   {arg("X")}, "Modified Bessel function I of order 1."),
    method<&ztMathLib::J0>                  (65, "J0",                   {arg("X")}, "Bessel function J of order 0."),
    method<&ztMathLib::J1>                  (66, "J1",                   {arg("X")}, "Bessel function J of order 1."),
    method<&ztMathLib::K0>                  (67, "K0",                   {arg("X")}, "Modified Bessel function K of order 0; 1e308 unless X is positive."),
    method<&ztMathLib::K1>                  (68, "K1",                   {arg("X")}, "Modified Bessel function K of order 1; 1e308 unless X is positive."),
    method<&ztMathLib::y0>                  (69, "y0",                   {arg("X")}, "Bessel function Y of order 0; 1e308 unless X is positive."),
    method<&ztMathLib::y1>                  (70, "y1",                   {arg("X")}, "Bessel function Y of order 1; 1e308 unless X is positive."),
    method<&ztMathLib::Ibn>                 (71, "Ibn",                  {arg("n"), arg("X")}, "Modified Bessel function I of order n, 0 or more."),
    method<&ztMathLib::Jbn>                 (72, "Jbn",                  {arg("n"), arg("X")}, "Bessel function J of order n, 0 or more."),
    method<&ztMathLib::Kbn>                 (73, "Kbn",                  {arg("n"), arg("X")}, "Modified Bessel function K of order n, 0 or more; 1e308 unless X is positive."),
    method<&ztMathLib::Ybn>                 (74, "Ybn",                  {arg("n"), arg("X")}, "Bessel function Y of order n, 0 or more; 1e308 unless X is positive."),
    method<&ztMathLib::Point_In_Polygon>    (75, "Point_In_Polygon",     {arg("x0"), arg("y0"), arg("X"), arg("Y")}, "Whether (x0, y0) is inside the polygon, given open or closed; of a box's edges the left and the upper one belong to it."),
    method<&ztMathLib::LineIntersect>       (76, "LineIntersect",        {arg("x1i"), arg("y1i"), arg("x2i"), arg("y2i"), arg("x1j"), arg("y1j"), arg("x2j"), arg("y2j"), out("xi"), out("yi"), out("qInt")}, "Crossing (xi, yi) of segments i and j, and whether there is one."),
    method<&ztMathLib::LineCrossPoint>      (77, "LineCrossPoint",       {lent("x1i"), lent("y1i"), lent("x2i"), lent("y2i"), lent("x1j"), lent("y1j"), lent("x2j"), lent("y2j"), answer("xi"), answer("yi"), answer("qInt")}, "Crossing of segments i and j by the mathematical companion: both ends of both count."),
    method<&ztMathLib::GetPointOnLine>      (78, "GetPointOnLine",       {arg("x1"), arg("y1"), arg("Z1"), arg("x2"), arg("y2"), arg("z2"), arg("PtZ"), arg("qBetweenPoints"), answer("PtX"), answer("PtY"), out("qOK")}, "PtX and PtY where the line reaches the level PtZ."),
    method<&ztMathLib::Point_In_Cube>       (79, "Point_In_Cube",        {arg("x0"), arg("y0"), arg("z0"), arg("sTopFace"), arg("sBottomFace")}, "Whether a point is inside a cell; corner arrays are (coordinate 1 to 3, corner 1 to 4)."),
    method<&ztMathLib::Points_In_Cube>      (80, "Points_In_Cube",       {arg("X"), arg("Y"), arg("Z"), arg("sTopFace"), arg("sBottomFace"), out("qInCube"), out("qOK")}, "Which points are inside a cell."),
    method<&ztMathLib::Points_In_CubeIndex> (81, "Points_In_CubeIndex",  {arg("X"), arg("Y"), arg("Z"), arg("sTopFace"), arg("sBottomFace"), answer("NumPoints"), out("PointsIndex"), out("qInCube"), out("qOK")}, "Which points are inside a cell, their indices and number."),
    method<&ztMathLib::Line_Through_Cube>   (82, "Line_Through_Cube",    {arg("X"), arg("Y"), arg("Z"), arg("sTopFace"), arg("sBottomFace"), answer("qInCube"), out("sIntersectionPoints"), out("qOK")}, "Where a segment meets a cell's surface, (coordinate, crossing); qInCube tells whether it does.")
    // clang-format on
);

}  // namespace vqmath63::members
