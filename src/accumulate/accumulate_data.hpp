// The driver that turns a dated profile into one row per reporting period.
#pragma once

#include <cstdint>
#include <string>

#include "frame/array.hpp"
#include "frame/date.hpp"

namespace vqmath63 {

/// Accumulates a dated profile onto reporting periods. See SetAccumulateArray for the arguments
/// up to StartData.
///
/// @param[out] dAccumulate  re-dimensioned (1 to periods, 1 to columns): column 1 the days from
///   the first row of the working table to the period's end; in each further column the mean rate
///   of the period, or the cumulative value reached at its end. Left alone when Period is unknown
///   or the working table could not be built; partly filled after a later failure.
/// @param[out] qOK  true when the work ended normally.
/// @param rule  integration rule for the rates, see ztIntegrate; used as SetAccumulateArray
///   leaves it.
///
/// An unknown Period ends the work without a message. A period of no length (two rows whose times
/// are the same Single) is error 11, a RateArray that ends before the columns do is error 9. A
/// failing rule reports itself and leaves 0 in that place. Cost: linear in rows plus periods.
void AccumulateData(const Array2<const float>& dArr, const Array1<const Boolean>& RateArray,
                    std::int32_t AccumulateIndex, std::string DataPeriod, std::int32_t Frequency,
                    std::string Period, Date StartDate, Date StartData, Array2<float>& dAccumulate,
                    bool& qOK, std::int32_t& rule, std::int32_t& spare);

}  // namespace vqmath63
