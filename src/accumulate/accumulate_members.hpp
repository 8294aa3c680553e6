// The member table of ztAccumulate.
#pragma once

#include "accumulate/accumulate.hpp"
#include "accumulate/period_words.hpp"
#include "automation/member_table.hpp"

namespace vqmath63::members {

using automation::arg;
using automation::get;
using automation::let;
using automation::method;
using automation::out;
using automation::word_arg;

/// The period words, a line each.
inline std::string period_word_lines() {
  std::string lines;
  for (const PeriodWord& entry : period_vocabulary()) lines.append(entry.word).append("\n");
  return lines;
}

inline constexpr auto kAccumulate = automation::table<ztAccumulate>(
    "ztAccumulate", "Accumulates a dated production profile onto calendar periods.",
    {0x7A35D1A1, 0xEA4F, 0x45B3, {0x91, 0x11, 0x5F, 0xD0, 0xDB, 0x43, 0x55, 0x6B}},
    {0xC2BA8F3A, 0x3768, 0x4033, {0x88, 0x22, 0xF2, 0xF9, 0x7E, 0xC3, 0x3B, 0xFF}},
    // clang-format off
    let<&ztAccumulate::put_StartDate>        ( 1, "StartDate",         {arg("value")}, "Start date of reporting."),
    let<&ztAccumulate::put_Silent>           ( 2, "Silent",            {arg("value")}, "Stored, without effect."),
    let<&ztAccumulate::put_Frequency>        ( 3, "Frequency",         {arg("value")}, "Number of periods per reporting step, 1 or more."),
    let<&ztAccumulate::put_Rates>            ( 4, "Rates",             {arg("value")}, "Stored, without effect on Accumulate: RateArray decides."),
    let<&ztAccumulate::put_RateArray>        ( 5, "RateArray",         {arg("value")}, "Per column of the data (1 is the time), True for a rate, False for a cumulative value."),
    let<&ztAccumulate::put_AccumulateIndex>  ( 6, "AccumulateIndex",   {arg("value")}, "First row of the data that is used, from 1."),
    let<&ztAccumulate::put_DataPeriod>       ( 7, "DataPeriod",        {word_arg("value", period_word_lines)}, "Period word in which the data count their time."),
    let<&ztAccumulate::put_Period>           ( 8, "Period",            {word_arg("value", period_word_lines)}, "Reporting period: minute, hour, day, week, month, bi-monthly, quarter, half-year, year."),
    let<&ztAccumulate::put_StartData>        ( 9, "StartData",         {arg("value")}, "Date of time 0 of the data."),
    let<&ztAccumulate::put_ProductionProfile>(10, "ProductionProfile", {arg("value")}, "Stored, without effect."),
    get<&ztAccumulate::get_StartData>        ( 9, "StartData",         {}, "Date of time 0 of the data."),
    get<&ztAccumulate::get_StartDate>        ( 1, "StartDate",         {}, "Start date of reporting."),
    get<&ztAccumulate::get_Frequency>        ( 3, "Frequency",         {}, "Number of periods per reporting step."),
    get<&ztAccumulate::get_Rates>            ( 4, "Rates",             {}, "The value last set."),
    get<&ztAccumulate::get_Period>           ( 8, "Period",            {}, "Reporting period word."),
    method<&ztAccumulate::Accumulate>        (11, "Accumulate",        {arg("dArr"), out("dAccumulate"), out("qOK")}, "Accumulates dArr (column 1 time, further columns series) into dAccumulate, one row per reporting period: elapsed days, then mean rates or cumulative values.")
    // clang-format on
);

}  // namespace vqmath63::members
