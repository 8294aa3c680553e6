// The member table of ztIntegrate.
#pragma once

#include "automation/member_table.hpp"
#include "calculus/integrate.hpp"

namespace vqmath63::members {

using automation::arg;
using automation::get;
using automation::let;
using automation::method;
using automation::number_arg;

inline constexpr automation::NumberName kIntegrationRuleNumbers[] = {
    {"vqTrapezoidal", ztIntegrate::kTrapezoidal},
    {"vqSimpson", ztIntegrate::kSimpson},
    {"vqForward", ztIntegrate::kForward},
    {"vqBackward", ztIntegrate::kBackward}};
inline constexpr automation::NumberNames kIntegrationRules{
    "vqIntegrationRule", "Quadrature rules of ztIntegrate.", kIntegrationRuleNumbers};

inline constexpr auto kIntegrate = automation::table<ztIntegrate>(
    "ztIntegrate", "Integrates sampled curves by one of four quadrature rules.",
    {0x209166AF, 0xC8C5, 0x4783, {0x92, 0x74, 0xE9, 0x74, 0x28, 0x42, 0x0B, 0xCF}},
    {0xAEDEC313, 0x167A, 0x4ACD, {0x95, 0x1E, 0xDA, 0xA8, 0xC5, 0xCD, 0x92, 0xC0}},
    // clang-format off
    get<&ztIntegrate::IntegerationRule>   (1, "IntegerationRule", {}, "Always 0: the rule cannot be read back."),
    let<&ztIntegrate::put_IntegrationRule>(2, "IntegrationRule",  {number_arg("value", kIntegrationRules)}, "Sets the rule: 2 Simpson, 3 forward, 4 backward, any other value trapezoidal."),
    method<&ztIntegrate::Integral>        (3, "Integral",         {arg("xVals"), arg("yVals")}, "Area under yVals over xVals, samples 1 to the upper bound of xVals.")
    // clang-format on
);

}  // namespace vqmath63::members
