// Reporting periods as the class ztAccumulate has them, which is used by name.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host/client/dispatch_client.hpp"

namespace vqmath63::host {

struct PeriodSettings {
  std::string data_period;     ///< period word in which the times count
  std::string period;          ///< reporting period word
  std::int32_t frequency = 1;  ///< periods per row of the result
  std::int32_t from_row = 1;   ///< first row used
  double start = 0.0;          ///< start of reporting, day count
};

/// The reporting period words as the component tells them, without plurals: "minute, hour, ...".
std::string period_words_text();

/// WorkError, with the words that there are, when the component knows none of these letters.
void check_period_word(const std::string& word);

/// The same of the period word in which data count time.
void check_data_period_word(const std::string& word);

/// The boundaries of the reporting periods of some `days` from a moment on, both ends included.
std::vector<double> period_boundaries(double from, double days, const PeriodSettings& settings);

/// A new ztAccumulate with these settings; its time 0 is `start_data`.
DispatchObject accumulator(const PeriodSettings& settings, double start_data);

/// Runs Accumulate over the caller's table as it stands, without a copy; false when qOK is False.
bool run_accumulate(DispatchObject& object, SAFEARRAY* table, ArrayOwner& result);

/// How far the Single nearest to a number of days lies from the next one.
double single_spacing_at(double days);

}  // namespace vqmath63::host
