// The member table of ztDifferentiate.
#pragma once

#include "automation/member_table.hpp"
#include "calculus/differentiate.hpp"

namespace vqmath63::members {

using automation::arg;
using automation::method;
using automation::out;

inline constexpr auto kDifferentiate = automation::table<ztDifferentiate>(
    "ztDifferentiate", "First and second derivatives of sampled curves.",
    {0xA93B20C2, 0x9440, 0x4146, {0xB7, 0xC1, 0xAD, 0xD2, 0x3C, 0xA2, 0x4E, 0x82}},
    {0x7E392974, 0x7612, 0x4371, {0x9B, 0x15, 0x92, 0x01, 0xF4, 0x88, 0xCE, 0x36}},
    // clang-format off
    method<&ztDifferentiate::FirstDerivative>         (1, "FirstDerivative",          {arg("xVals"), arg("yVals"), arg("dydx"), out("qOK")}, "First derivative of yVals over xVals, samples 1 to the upper bound of xVals, into dydx, which must hold as many elements already."),
    method<&ztDifferentiate::SecondDerivative>        (2, "SecondDerivative",         {arg("xVals"), arg("yVals"), out("d2ydx2"), out("qOK")}, "Second derivative at the end points and a twelfth of it at the points between, into d2ydx2, which is re-dimensioned."),
    method<&ztDifferentiate::FirstDerivativeForwards> (3, "FirstDerivativeForwards",  {arg("xVals"), arg("yVals"), out("dydx"), out("qOK")}, "Forward differences into dydx, which is re-dimensioned; 0 at the last point."),
    method<&ztDifferentiate::FirstDerivativeBackwards>(4, "FirstDerivativeBackwards", {arg("xVals"), arg("yVals"), out("dydx"), out("qOK")}, "Backward differences into dydx, which is re-dimensioned; 0 at the first point.")
    // clang-format on
);

}  // namespace vqmath63::members
