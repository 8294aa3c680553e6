// Dated profiles as the tests of the accumulation write them down.
#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

#include "accumulate/accumulate.hpp"
#include "frame/arrays.hpp"

namespace vqmath63 {

using Rows = std::vector<std::vector<float>>;

/// A table with bounds from 1.
inline Array2<float> table_of(const Rows& rows) {
  const std::size_t n = rows.size();
  Array2<float> table({1, static_cast<std::int32_t>(n)},
                      {1, static_cast<std::int32_t>(rows.front().size())});
  for (std::size_t i = 0; i < table.size(); ++i) table.data()[i] = rows[i % n][i / n];
  return table;
}

/// The elements of a table, row by row.
inline Rows rows_of(const Array2<float>& table) {
  Rows rows(static_cast<std::size_t>(table.rows().count()));
  for (std::size_t i = 0; i < table.size(); ++i) {
    rows[i % rows.size()].push_back(table.data()[i]);
  }
  return rows;
}

/// Equal but for the rounding of a mean: a product of two Singles, one of them a reciprocal.
inline ::testing::AssertionResult nearly(const Rows& got, const Rows& want) {
  bool equal = got.size() == want.size();
  for (std::size_t i = 0; equal && i < got.size(); ++i) {
    equal = got[i].size() == want[i].size();
    for (std::size_t j = 0; equal && j < got[i].size(); ++j) {
      equal = std::fabs(got[i][j] - want[i][j]) <= 2e-7F * std::fabs(want[i][j]);
    }
  }
  if (equal) return ::testing::AssertionSuccess();
  return ::testing::AssertionFailure()
         << ::testing::PrintToString(got) << " instead of " << ::testing::PrintToString(want);
}

inline Array1<Boolean> flags_of(const std::vector<bool>& flags) {
  return array_of(std::vector<Boolean>(flags.begin(), flags.end()));
}

/// What an accumulation is asked for. Dates are automation dates.
struct Settings {
  double data = 44957;  // 2023-01-31
  double start = 44957;
  std::string data_period = "month";
  std::string period = "month";
  std::int32_t frequency = 1;
  std::int32_t index = 1;
};

inline void apply(const Settings& settings, ztAccumulate& accumulate) {
  accumulate.put_StartData({settings.data});
  accumulate.put_StartDate({settings.start});
  accumulate.put_DataPeriod(settings.data_period);
  accumulate.put_Period(settings.period);
  accumulate.put_Frequency(settings.frequency);
  accumulate.put_AccumulateIndex(settings.index);
}

/// What a result holds before the call.
inline const Rows kUntouched = {{-99}};

/// Accumulates on an object of its own; with `flags`, they are its RateArray.
inline Rows accumulated(const Rows& samples, const Settings& settings,
                        const std::vector<bool>& flags, bool& ok) {
  ztAccumulate accumulate;
  apply(settings, accumulate);
  if (!flags.empty()) {
    Array1<Boolean> array = flags_of(flags);
    accumulate.put_RateArray(array);
  }
  Array2<float> data = table_of(samples), result = table_of(kUntouched);
  accumulate.Accumulate(data, result, ok);
  return rows_of(result);
}

/// The line of an error in a routine of a module of the library.
inline Lines one_line(std::int32_t number, const std::string& module, const std::string& routine) {
  return {error_line(number, "ztAnalyse - " + module + " (Code) (" + routine + ")")};
}

}  // namespace vqmath63
