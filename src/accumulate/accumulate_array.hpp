// The per-period working table of the accumulation: samples in days, with a row at every boundary.
#pragma once

#include <cstdint>
#include <string>

#include "frame/array.hpp"
#include "frame/date.hpp"

namespace vqmath63 {

/// Builds the working table of a dated profile and the rows that belong to each reporting period.
///
/// @param dArr  samples, one a row (1 to n): column 1 the time in units of DataPeriod since
///   StartData, ascending (equal times allowed), columns 2 and up the series.
/// @param RateArray  per column, true for a rate (the mean of the interval that ends at its row),
///   false for a cumulative value; a column outside its bounds counts as a rate here.
/// @param AccumulateIndex  first row of dArr used, 1 for all.
/// @param DataPeriod, Period  period words, see UnitCalendar for what they mean.
/// @param Frequency  periods per reporting step, 1 or more.
/// @param StartDate  where reporting starts: boundary k is k x Frequency x Period after it.
/// @param StartData  moment of time 0.
/// @param[out] PeriodStartRow, PeriodEndRow  per period (1 to m) its first and last row in
///   WorkTable; neighbouring periods share a row.
/// @param[out] WorkTable  column 1 days since its first row, columns 2 and up the series. A row is
///   inserted where a boundary falls between samples: a rate takes the next sample's value, a
///   cumulative is interpolated linearly.
/// @param[out] ok  true when all three were built.
/// @param rule, flag  passed through unchanged.
///
/// Errors, reported under this routine's name, ok false: 5 for an unknown word, a Frequency below
/// 1, a time that steps back or is NaN, a moment outside the years 100 to 9999, and when nothing
/// lies after StartDate; 9 for an AccumulateIndex outside 1 to n; 7 for a table beyond 2^31
/// elements. Moments are worked out in double precision and stored as Single last.
/// Cost: linear in rows plus periods, per column; beside the table one double per sample.
void SetAccumulateArray(const Array2<const float>& dArr, const Array1<const Boolean>& RateArray,
                        std::int32_t AccumulateIndex, const std::string& DataPeriod,
                        float Frequency, const std::string& Period, Date StartDate, Date StartData,
                        Array1<std::int32_t>& PeriodStartRow, Array1<std::int32_t>& PeriodEndRow,
                        Array2<float>& WorkTable, bool& ok, std::int32_t& rule, bool& flag);

}  // namespace vqmath63
