// The step in which the rows of records follow one another: a day, a month, an hour.
#pragma once

#include <algorithm>
#include <cstddef>
#include <map>
#include <optional>
#include <string>

namespace vqmath63::host {

/// A length of time: calendar months, or days.
struct Step {
  int months = 0;
  double days = 0.0;  ///< where it is no months

  /// The moment one step later, or earlier; of months the same day, or the month's last one where
  /// it has no such day, and from a month's last day to the next one's.
  double after(double moment) const { return moved(moment, 1); }
  double before(double moment) const { return moved(moment, -1); }
  /// Whether a row's interval that ends usually at `usual` and lasts until `next` has a gap: is
  /// longer than months differ, or clocks are read.
  bool is_gap(double usual, double next) const {
    constexpr double kOfMonths = 3.5;
    constexpr double kClocks = 1.5 / 86400.0;
    constexpr double kShare = 0.05;
    return next - usual > (months > 0 ? kOfMonths : std::max(kClocks, kShare * days));
  }
  /// "1 day", "3 months", "0.25 days".
  std::string text() const;

 private:
  double moved(double moment, int steps) const;
};

/// A step as a user writes it: a period word of the component in the singular, or days as a number.
/// UsageError for other texts.
Step step_from_text(const std::string& text);

/// Finds the step that most rows take, from the moments of rows that follow one another.
class StepFinder {
 public:
  void add(double from, double to);
  std::size_t seen() const { return seen_; }
  /// The usual step; nothing where no step is that of more than half of the rows.
  std::optional<Step> usual() const;

 private:
  std::map<long long, std::size_t> months_;   // by number
  std::map<long long, std::size_t> seconds_;  // by length
  std::size_t seen_ = 0;
};

}  // namespace vqmath63::host
