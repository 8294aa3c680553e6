// The member table of ztRegression.
#pragma once

#include "automation/member_table.hpp"
#include "regression/regression.hpp"

namespace vqmath63::members {

using automation::arg;
using automation::get;
using automation::let;
using automation::method;
using automation::out;

inline constexpr auto kRegression = automation::table<ztRegression>(
    "ztRegression", "Fits straight lines to transformed samples.",
    {0x45EFAD33, 0x8E60, 0x4D1E, {0x96, 0xE7, 0xC6, 0x2E, 0x17, 0x88, 0x60, 0x72}},
    {0xC48388F1, 0x16AF, 0x4276, {0x9B, 0x87, 0xE4, 0xC8, 0x8F, 0x1E, 0xDF, 0xF1}},
    // clang-format off
    let<&ztRegression::put_RegressionType> (1, "RegressionType",  {arg("value")}, "Type by the word's first letter: E exponential, L linear, P polynomial; any other letter leaves the type as it was."),
    let<&ztRegression::put_RegressionOrder>(2, "RegressionOrder", {arg("value")}, "Number of coefficients of the polynomial fit."),
    get<&ztRegression::get_RegressionType> (1, "RegressionType",  {}, "Name of the type, or the word last set when it named none."),
    method<&ztRegression::Regression>      (3, "Regression",      {arg("xA"), arg("yA"), arg("weights"), out("qOK")}, "Fits yA over xA, samples 1 to the upper bound of xA; qOK tells that the call was carried out, not that the fit came about."),
    get<&ztRegression::get_A>              (4, "A",               {}, "Intercept of the last fit."),
    get<&ztRegression::get_B>              (5, "B",               {}, "Slope of the last fit."),
    get<&ztRegression::get_R>              (6, "R",               {}, "Correlation coefficient of the last fit.")
    // clang-format on
);

}  // namespace vqmath63::members
