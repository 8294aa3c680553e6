// How the routines of ztMathLib name themselves in error messages.
#pragma once

#include "frame/trap.hpp"

namespace vqmath63::locations {

inline constexpr std::string_view kModule = "ztMathLib";
inline constexpr std::string_view kLongModule = "ztAnalyse - ztMathLib";

// Texts of their own, kept because hosts look for them.
inline constexpr Location kArccos{"ztCommonMathFcn", "arccos"};
inline constexpr Location kAngle{kModule, "Angle"};
inline constexpr Location kCeil{kLongModule, "Ceil"};
inline constexpr Location kDCeil{kLongModule, "dCeil"};
inline constexpr Location kFloor{kLongModule, "Floor"};
inline constexpr Location kDFloor{kLongModule, "dFloor"};
inline constexpr Location kCube_Root{kModule, "cube_root"};
inline constexpr Location kSquare_Root{kModule, "Square_Root", " ", ""};  // no closing parenthesis
inline constexpr Location kX_to_Power_y{kModule, "x_to_power_y"};

// The others bear the names of their members, with Beta and x in the case shown.
inline constexpr Location kPolar_to_Rectangular{kModule, "Polar_to_Rectangular"};
inline constexpr Location kQuadrant{kModule, "Quadrant"};
inline constexpr Location kALog{kModule, "aLog"};
inline constexpr Location kALog10{kModule, "aLog10"};
inline constexpr Location kLn{kModule, "Ln"};
inline constexpr Location kLog10{kModule, "Log10"};
inline constexpr Location kSine{kModule, "sine"};
inline constexpr Location kCosine{kModule, "cosine"};
inline constexpr Location kAcos{kModule, "acos"};
inline constexpr Location kAsin{kModule, "asin"};
inline constexpr Location kAcot{kModule, "acot"};
inline constexpr Location kAcsc{kModule, "acsc"};
inline constexpr Location kAsec{kModule, "asec"};
inline constexpr Location kCot{kModule, "cot"};
inline constexpr Location kCsc{kModule, "csc"};
inline constexpr Location kSec{kModule, "Sec"};
inline constexpr Location kSinh{kModule, "sinh"};
inline constexpr Location kCosh{kModule, "cosh"};
inline constexpr Location kTanh{kModule, "tanh"};
inline constexpr Location kCoth{kModule, "coth"};
inline constexpr Location kCsch{kModule, "csch"};
inline constexpr Location kSech{kModule, "sech"};
inline constexpr Location kAsinh{kModule, "asinh"};
inline constexpr Location kAcosh{kModule, "acosh"};
inline constexpr Location kAtanh{kModule, "atanh"};
inline constexpr Location kAcoth{kModule, "acoth"};
inline constexpr Location kAcsch{kModule, "acsch"};
inline constexpr Location kAsech{kModule, "asech"};

inline constexpr Location kMax{kModule, "Max"};
inline constexpr Location kMin{kModule, "Min"};
inline constexpr Location kSign{kModule, "Sign"};
inline constexpr Location kCubed{kModule, "cubed"};
inline constexpr Location kSquared{kModule, "Squared"};
inline constexpr Location kY_Root_of_X{kModule, "y_Root_of_x"};
inline constexpr Location kFactor{kModule, "Factor"};
inline constexpr Location kDTR{kModule, "DTR"};

inline constexpr Location kFactorial{kModule, "Factorial"};
inline constexpr Location kCombination{kModule, "Combination"};
inline constexpr Location kPermutation{kModule, "Permutation"};
inline constexpr Location kGamma{kModule, "Gamma"};
inline constexpr Location kLoGamma{kModule, "LoGamma"};
inline constexpr Location kBeta{kModule, "Beta"};
inline constexpr Location kBeta_CF{kModule, "Beta_CF"};
inline constexpr Location kBetaI{kModule, "BetaI"};
inline constexpr Location kGamma_P{kModule, "Gamma_P"};
inline constexpr Location kGamma_Series{kModule, "Gamma_Series"};
inline constexpr Location kGamma_CF{kModule, "Gamma_CF"};
inline constexpr Location kErf{kModule, "Erf"};

inline constexpr Location kI0{kModule, "I0"};
inline constexpr Location kI1{kModule, "i1"};
inline constexpr Location kJ0{kModule, "J0"};
inline constexpr Location kJ1{kModule, "J1"};
inline constexpr Location kK0{kModule, "K0"};
inline constexpr Location kK1{kModule, "K1"};
inline constexpr Location kY0{kModule, "y0"};
inline constexpr Location kY1{kModule, "y1"};
inline constexpr Location kIbn{kModule, "Ibn"};
inline constexpr Location kJbn{kModule, "Jbn"};
inline constexpr Location kKbn{kModule, "Kbn"};
inline constexpr Location kYbn{kModule, "Ybn"};

// Geometry: most name the module "sMathLib", and error lines keep that word.
inline constexpr std::string_view kLineModule = "sMathLib";
inline constexpr Location kPoint_In_Polygon{kModule, "Point_In_Polygon"};
inline constexpr Location kLineIntersect{kModule, "LineIntersect"};
inline constexpr Location kLineCrossPoint{kLineModule, "LineCrossPoint"};
inline constexpr Location kGetPointOnLine{kLineModule, "GetPointOnLine"};
inline constexpr Location kPoint_In_Cube{kLineModule, "Point_In_Cube"};
inline constexpr Location kPoints_In_Cube{kLineModule, "Points_In_Cube"};
inline constexpr Location kPoints_In_CubeIndex{kLineModule, "Points_In_CubeIndex"};
inline constexpr Location kLine_Through_Cube{kLineModule, "Line_Through_Cube"};

}  // namespace vqmath63::locations
