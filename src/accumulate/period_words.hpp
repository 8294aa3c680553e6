// The period words, what each stands for, and the table of them that the accumulation module loads
// for the time of one check.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace vqmath63 {

/// Length of one period: a whole number of calendar months, or else a whole number of minutes.
struct PeriodUnit {
  std::int32_t months = 0;   ///< above 0 for a calendar unit
  std::int32_t minutes = 0;  ///< above 0 for a fixed unit

  constexpr bool by_calendar() const { return months > 0; }
  /// Length of a fixed unit in days.
  constexpr double days() const { return minutes / 1440.0; }
};

/// A period word and its unit.
struct PeriodWord {
  std::string_view word;
  PeriodUnit unit;
};

/// The whole vocabulary, in the order of the period-word table. "bi-monthly" has no plural.
std::span<const PeriodWord> period_vocabulary();

/// The unit of a word of the vocabulary, matched whole and without regard to case; empty for any
/// other text.
std::optional<PeriodUnit> find_period_unit(std::string_view word);

/// True when zPeriod is one of the 17 period words, whatever its letter case; no blanks are
/// trimmed. Loads the table and unloads it again. False after a failure, which is reported.
bool CheckPeriod(const std::string& zPeriod);

/// Loads (qLoad true) or unloads this thread's period-word table. qOK tells that it went well.
void SetAccumulatePeriods(const bool& qLoad, bool& qOK);

}  // namespace vqmath63
