// The member table of ztStatistics.
#pragma once

#include "automation/member_table.hpp"
#include "statistics/statistics.hpp"

namespace vqmath63::members {

using automation::answer;
using automation::arg;
using automation::get;
using automation::lent;
using automation::method;
using automation::number_arg;
using automation::optional_arg;
using automation::out;
using automation::reduced;

inline constexpr automation::NumberName kQuartileNumbers[] = {
    {"vqLowerQuartile", 1}, {"vqMiddleQuartile", 2}, {"vqUpperQuartile", 3}};
inline constexpr automation::NumberNames kQuartiles{"vqQuartile", "Quartiles of ztStatistics.",
                                                    kQuartileNumbers};

inline constexpr automation::NumberName kNullRowsNumbers[] = {{"vqCountNullRows", 0},
                                                              {"vqRemoveNullRows", 1}};
inline constexpr automation::NumberNames kNullRows{
    "vqNullRows", "What RemoveNullValues does with the rows that hold a null.", kNullRowsNumbers};

inline constexpr auto kStatistics = automation::table<ztStatistics>(
    "ztStatistics", "Descriptive statistics, tests and null handling of samples.",
    {0x210248FF, 0x9527, 0x4380, {0xB0, 0x90, 0x34, 0x39, 0x1C, 0x9A, 0xB8, 0x30}},
    {0xDDA77C95, 0x9670, 0x4617, {0x9F, 0x64, 0x2D, 0x00, 0x6C, 0xD8, 0xF7, 0x6A}},
    // clang-format off
    method<&ztStatistics::BasicStatistics>       ( 1, "BasicStatistics",        {arg("xA"), out("qOK")}, "Sums, mean, extremes and standard deviations of xA, kept for the properties."),
    method<&ztStatistics::Statistics>            ( 2, "Statistics",             {arg("xA"), out("qOK")}, "BasicStatistics, then median and mode."),
    method<&ztStatistics::BasicStatisticsPairs>  ( 3, "BasicStatisticsPairs",   {arg("xA"), arg("yA"), out("qOK")}, "Sums, means, extremes, standard deviations and sum of products of two arrays; xSigmaN is left as it was."),
    method<&ztStatistics::StatisticsPairs>       ( 4, "StatisticsPairs",        {arg("xA"), arg("yA"), out("qOK")}, "BasicStatisticsPairs, then medians and modes; qOK does not tell whether the first step did well."),
    get<&ztStatistics::get_xBar>                 ( 5, "xBar",                   {}, "Mean of x of the last summary."),
    get<&ztStatistics::get_xSigmaN1>             ( 6, "xSigmaN1",               {}, "Standard deviation of x with divisor n - 1 of the last summary."),
    get<&ztStatistics::get_xSigmaN>              ( 7, "xSigmaN",                {}, "Standard deviation of x with divisor n of the last summary."),
    get<&ztStatistics::get_SigmaX>               ( 8, "SigmaX",                 {}, "Sum of x of the last summary."),
    get<&ztStatistics::get_SigmaX2>              ( 9, "SigmaX2",                {}, "Sum of x squared of the last summary."),
    get<&ztStatistics::get_SigmaAbsX>            (10, "SigmaAbsX",              {}, "Magnitude of the last x, of the last summary."),
    get<&ztStatistics::get_xMedian>              (11, "xMedian",                {}, "Median of x of the last summary."),
    get<&ztStatistics::get_xMode>                (12, "xMode",                  {}, "Mode of x of the last summary."),
    get<&ztStatistics::get_xMax>                 (13, "xMax",                   {}, "Largest x of the last summary."),
    get<&ztStatistics::get_xMin>                 (14, "xMin",                   {}, "Smallest x of the last summary."),
    get<&ztStatistics::get_yBar>                 (15, "yBar",                   {}, "Mean of y of the last summary."),
    get<&ztStatistics::get_ySigmaN>              (16, "ySigmaN",                {}, "Standard deviation of y with divisor n of the last summary."),
    get<&ztStatistics::get_ySigmaN1>             (17, "ySigmaN1",               {}, "Standard deviation of y with divisor n - 1 of the last summary."),
    get<&ztStatistics::get_yMedian>              (18, "yMedian",                {}, "Median of y of the last summary."),
    get<&ztStatistics::get_yMax>                 (19, "yMax",                   {}, "Largest y of the last summary."),
    get<&ztStatistics::get_yMin>                 (20, "yMin",                   {}, "Smallest y of the last summary."),
    get<&ztStatistics::get_SigmaY>               (21, "SigmaY",                 {}, "Sum of y of the last summary."),
    get<&ztStatistics::get_SigmaY2>              (22, "SigmaY2",                {}, "Sum of y squared of the last summary."),
    get<&ztStatistics::get_SigmaAbsY>            (23, "SigmaAbsY",              {}, "Magnitude of the last y, of the last summary."),
    get<&ztStatistics::get_SigmaXY>              (24, "SigmaXY",                {}, "Sum of the products of x and y of the last summary."),
    method<&ztStatistics::Maximum>               (25, "Maximum",                {arg("xA")}, "Largest sample."),
    method<&ztStatistics::Minimum>               (26, "Minimum",                {arg("xA")}, "Smallest sample."),
    method<&ztStatistics::Index_of_Maximum_Of_X> (27, "Index_of_Maximum_Of_X",  {arg("xA")}, "Index of the largest sample, from 1; the first of ties."),
    method<&ztStatistics::Index_Of_Minimum_Of_X> (28, "Index_Of_Minimum_Of_X",  {arg("xA")}, "Index of the smallest sample, from 1; the first of ties."),
    method<&ztStatistics::Normalise>             (29, "Normalise",              {arg("xA")}, "Divides the samples in place by the largest signed one, unless that is 0."),
    method<&ztStatistics::SumOfX>                (30, "SumOfX",                 {arg("xA")}, "Sum of the samples."),
    method<&ztStatistics::SumOfX2>               (31, "SumOfX2",                {arg("xA")}, "Sum of the squared samples."),
    method<&ztStatistics::SumofAbsX>             (32, "SumofAbsX",              {arg("xA")}, "Sum of the magnitudes of the samples."),
    method<&ztStatistics::SumOfXY>               (33, "SumOfXY",                {arg("xA"), arg("yA")}, "Sum of the products of two arrays."),
    method<&ztStatistics::SumListX>              (34, "SumListX",               {arg("iList"), arg("nList"), arg("xArray")}, "Sum of xArray(1) and of the samples that iList names from its second entry on; -32768 when xArray is shorter than nList."),
    method<&ztStatistics::average>               (35, "average",                {arg("xA")}, "Mean of the samples."),
    method<&ztStatistics::Variance>              (36, "Variance",               {arg("xA")}, "Variance of the samples with divisor n."),
    method<&ztStatistics::SigmaN>                (37, "SigmaN",                 {arg("xA")}, "Standard deviation with divisor n."),
    method<&ztStatistics::SigmaN1>               (38, "SigmaN1",                {arg("xA")}, "Standard deviation with divisor n - 1; 0 for one sample."),
    method<&ztStatistics::Cov>                   (39, "Cov",                    {arg("xA"), arg("yA")}, "Covariance of two arrays with divisor n; 0 for arrays of unequal upper bounds."),
    method<&ztStatistics::Median>                (40, "Median",                 {arg("xA")}, "Median of the samples, which keep their order."),
    method<&ztStatistics::Mode>                  (41, "Mode",                   {arg("xA")}, "Mode of the samples by changes of value in ascending order, else by ModeBin."),
    method<&ztStatistics::ModeBin>               (42, "ModeBin",                {arg("dSort")}, "Mean of the fullest bin over ascending samples; 0 when no bin holds more than one."),
    method<&ztStatistics::Quartile>              (43, "Quartile",               {arg("xA"), number_arg("ithQuartile", kQuartiles)}, "First, second or third quartile (1, 2, 3); 0 for any other number."),
    method<&ztStatistics::RemoveNulls>           (44, "RemoveNulls",            {lent("xNull"), arg("xA"), out("xANew"), answer("nANew"), out("qOK")}, "Copies xA without the samples equal to xNull; nANew is the number left."),
    method<&ztStatistics::RemoveNullsXY>         (45, "RemoveNullsXY",          {lent("xNull"), arg("xA"), arg("xB"), out("xANew"), out("xBNew"), answer("NewLength"), out("qOK")}, "Copies two arrays without the rows in which one equals xNull."),
    method<&ztStatistics::RemoveNullsXYZ>        (46, "RemoveNullsXYZ",         {lent("xNull"), arg("xA"), arg("xB"), arg("xC"), out("xANew"), out("xBNew"), out("xCNew"), answer("NewLength"), out("qOK")}, "Copies three arrays without the rows in which one equals xNull."),
    method<&ztStatistics::RemoveNullValues>      (47, "RemoveNullValues",       {lent("dNull"), number_arg("iNull", kNullRows), reduced("dX"), reduced("dY"), answer("nRows"), out("qOK")}, "Removes the rows in which one of two arrays equals dNull, in place; only counts them when iNull is 0."),
    method<&ztStatistics::RemoveNullValuesXYZ>   (48, "RemoveNullValuesXYZ",    {lent("dNull"), number_arg("iNull", kNullRows), reduced("dX"), reduced("dY"), reduced("dZ"), answer("nRows"), out("qOK")}, "Removes the rows in which one of three arrays equals dNull, in place; only counts them when iNull is 0."),
    method<&ztStatistics::MaskValuesXY>          (49, "MaskValuesXY",           {lent("qMask"), reduced("dX"), reduced("dY"), answer("nRows"), out("qOK"), optional_arg("qFlag", true)}, "Keeps the rows of two arrays whose mask entry is True, in place; qFlag is ignored."),
    method<&ztStatistics::MaskValuesXYZ>         (50, "MaskValuesXYZ",          {lent("qMask"), reduced("dX"), reduced("dY"), reduced("dZ"), answer("nRows"), out("qOK"), optional_arg("qFlag", true)}, "Keeps the rows of three arrays whose mask entry is True, in place; qFlag is ignored."),
    method<&ztStatistics::SumOfSquareDifferences>(51, "SumOfSquareDifferences", {arg("xA"), arg("yA")}, "Sum of the squared differences of two arrays; 0 for unequal upper bounds."),
    method<&ztStatistics::ChiSquared>            (52, "ChiSquared",             {arg("xObserved"), arg("xExpected"), arg("nConstraints"), answer("ChiSq"), answer("Probability"), out("qOK")}, "Chi squared of observed against expected counts and the chance of a larger one."),
    method<&ztStatistics::Chi2Squared>           (53, "Chi2Squared",            {arg("xA"), arg("yA"), arg("nConstraints"), answer("ChiSq"), answer("Probability"), out("qOK")}, "Chi squared of two sets of counts and the chance of a larger one."),
    method<&ztStatistics::t_Test>                (54, "t_Test",                 {arg("xA"), arg("yA"), answer("t"), answer("Probability"), out("qOK")}, "Student's t for two samples of equal variance and the two-sided chance of a larger one."),
    method<&ztStatistics::ConfidenceLimit>       (55, "ConfidenceLimit",        {arg("xA"), arg("dLevel")}, "Half width of the confidence interval of the mean at level dLevel, 0 to 1."),
    method<&ztStatistics::ConfidenceInterval>    (56, "ConfidenceInterval",     {arg("xA"), arg("dLevel"), answer("xLower"), answer("xUpper"), out("qOK")}, "Confidence interval of the mean at level dLevel, 0 to 1.")
    // clang-format on
);

}  // namespace vqmath63::members
