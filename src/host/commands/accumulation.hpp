// Accumulates a production table onto reporting periods through the class ztAccumulate, by name.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host/commands/production.hpp"

namespace vqmath63::host {

struct PeriodSettings {
  std::string data_period;     ///< period word in which the times count
  std::string period;          ///< reporting period word
  std::int32_t frequency = 1;  ///< periods per row of the result
  std::int32_t from_row = 1;   ///< first row used
  double start = 0.0;          ///< start of reporting, day count
};

/// The result: period i runs from boundary i to boundary i + 1.
struct Accumulated {
  std::vector<double> boundaries;          ///< day counts, one more than there are periods
  std::vector<std::vector<float>> series;  ///< per series the value of each period

  std::size_t periods() const { return boundaries.size() - 1; }
  double days(std::size_t period) const { return boundaries[period + 1] - boundaries[period]; }
};

/// The reporting period words as the component tells them, without plurals: "minute, hour, ...".
std::string period_words_text();

/// WorkError, with the words that there are, when the component knows none of these letters.
void check_period_word(const std::string& word);

/// The boundaries of the reporting periods of some `days` from a moment on, both ends included.
std::vector<double> period_boundaries(double from, double days, const PeriodSettings& settings);

/// Accumulates. WorkError with a plain sentence when the component says that it did not succeed.
///
/// The component tells the end of a period as elapsed days in a Single, which carries 24 bits: at
/// ten years a third of a minute, at a hundred five minutes. Each boundary is therefore taken as
/// the roundest clock time (midnight, else a whole hour, minute, second) within that spacing.
Accumulated accumulate(const Production& production, const PeriodSettings& settings);

}  // namespace vqmath63::host
