// The period words and the calendar length that each stands for.
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

/// Upper-cases the letters a to z.
std::string upper_case(std::string_view text);

/// The unit of a word of the vocabulary, matched whole and without regard to case; empty for any
/// other text.
std::optional<PeriodUnit> find_period_unit(std::string_view word);

}  // namespace vqmath63
