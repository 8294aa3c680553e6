// Axes: which range is shown, and where its ticks stand.
#pragma once

#include <span>
#include <string>
#include <vector>

namespace vqmath63::host {

/// The finite numbers seen so far, from the least to the largest.
class Range {
 public:
  void add(double value);
  void add(std::span<const double> values);
  /// Only numbers above 0, as a logarithmic scale shows.
  void add_above_zero(std::span<const double> values);
  bool empty() const { return !(least_ <= most_); }
  double least() const { return least_; }
  double most() const { return most_; }

 private:
  double least_ = 1.0;
  double most_ = -1.0;
};

struct Tick {
  double at;
  std::string label;
};

enum class ScaleKind {
  kNumbers,      ///< ticks at 1, 2 or 5 times a power of ten; the ends are ticks too
  kFromZero,     ///< the same, with 0 among them
  kLogarithmic,  ///< from one 1, 2 or 5 times a power of ten to another; positive numbers only
  kDates,        ///< day counts, with ticks where years, months, days or hours begin; ends as given
};

class Scale {
 public:
  /// A scale for a range; one for an empty range or a single number has a width too.
  Scale(ScaleKind kind, const Range& range);

  /// Where a value stands, from 0 at the scale's beginning to 1 at its end; NaN for one that has no
  /// place (not finite, no logarithm).
  double place(double value) const;
  double first() const { return first_; }
  double last() const { return last_; }
  const std::vector<Tick>& ticks() const { return ticks_; }
  /// "thousand", "million", ...: what labels count; none for ones.
  const std::string& multiple() const { return multiple_; }

 private:
  void make_numbers(double least, double most);
  void make_logarithmic(double least, double most);
  void make_dates(double least, double most);

  bool logarithmic_ = false;
  double first_ = 0.0;
  double last_ = 1.0;
  std::vector<Tick> ticks_;
  std::string multiple_;
};

/// A number with its digits before the point in groups of three, parted by narrow blanks: "12 500".
std::string grouped(const std::string& number);

}  // namespace vqmath63::host
