// The member table of ztSample.
#pragma once

#include "automation/member_table.hpp"
#include "statistics/sample.hpp"

namespace vqmath63::members {

using automation::arg;
using automation::method;
using automation::out;

inline constexpr auto kSample = automation::table<ztSample>(
    "ztSample", "Histograms of samples.",
    {0x6E8894D1, 0x8E1E, 0x4C8C, {0x8D, 0x4F, 0x8B, 0xC4, 0x3D, 0x6E, 0x1C, 0x92}},
    {0x9BD06DAD, 0x0948, 0x4CFF, {0xAE, 0xAF, 0x35, 0x9E, 0x3E, 0x1B, 0xD8, 0x19}},
    // clang-format off
    method<&ztSample::setLimits>(1, "setLimits", {arg("xLower"), arg("xUpper"), out("qOK")}, "Sets the limits of the bins; refused unless xLower < xUpper."),
    method<&ztSample::BinVector>(2, "BinVector", {arg("xA"), arg("nBins"), out("xBin"), out("xCount"), out("qOK")}, "Counts xA into nBins equal bins between the limits, by default the smallest and largest sample: xBin the centres, xCount the counts.")
    // clang-format on
);

}  // namespace vqmath63::members
