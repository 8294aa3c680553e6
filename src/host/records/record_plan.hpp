// What is wanted of long records: which columns say what, and how their rows are understood.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "host/data/csv_form.hpp"
#include "host/data/date_format.hpp"
#include "host/records/usual_step.hpp"

namespace vqmath63::host {

/// What the numbers of a series are, and so what a period has of it.
enum class SeriesKind {
  kRate,        ///< mean over the row's interval; a period has the mean over its days
  kAmount,      ///< of the row's interval; a period has the sum
  kCumulative,  ///< reached at the interval's end; a period has the value at its end
};

/// Where the interval of a row lies beside its stamp.
enum class Stamp {
  kBegin,  ///< from the stamp on
  kEnd,    ///< up to the stamp
  kLast,   ///< up to the end of the day that the stamp names
};

/// What the time between a row's usual interval and the next one's has.
enum class GapRule {
  kZero,  ///< nothing
  kHold,  ///< the row's rate; its amount is spread over it
  kError,
};

/// What an empty cell is taken for.
enum class EmptyRule { kError, kValue, kHold, kSkip };

/// What is done with rows of one group and one stamp.
enum class TwinRule { kError, kSum, kLast };

struct Series {
  std::string name;
  std::size_t column = 0;
  SeriesKind kind = SeriesKind::kRate;
  bool wanted = true;  ///< asked for by name; else it is left out where it holds texts
};

struct RecordPlan {
  CsvForm form{};
  std::size_t columns = 0;
  std::size_t date = 0;  ///< column
  std::vector<std::size_t>
      date_parts{};               ///< columns that make a date together; none: the one above
  std::vector<std::size_t> by{};  ///< columns; none: one group
  std::string by_remedy{};        ///< where there are none: what takes groups apart
  std::vector<Series> series{};
  std::optional<DateFormat> date_format{};
  Stamp stamp = Stamp::kEnd;
  std::optional<Step> step{};  ///< as the user says it; else the usual one is found
  GapRule gap = GapRule::kHold;
  EmptyRule empty = EmptyRule::kError;
  double empty_value = 0.0;
  TwinRule twins = TwinRule::kError;
  bool sort = false;

  bool any(SeriesKind kind) const {
    for (const Series& each : series) {
      if (each.kind == kind) return true;
    }
    return false;
  }
};

/// What stands between the parts of a group's name that come from several columns.
inline constexpr char kKeySeparator = '\x1F';

}  // namespace vqmath63::host
