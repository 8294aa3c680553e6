// How the numbers of a column are written to be read.
#pragma once

#include <span>
#include <string>

namespace vqmath63::host {

/// With so many digits behind the point, without an exponent.
std::string fixed_text(double value, int decimals);

/// Whole numbers as they are, else with one number of decimals for all, so that the largest of them
/// shows `digits` digits; numbers too large or small for that with their shortest digits.
class NumberStyle {
 public:
  NumberStyle(std::span<const float> values, int digits, int most_decimals);
  NumberStyle(std::span<const double> values, int digits, int most_decimals);

  std::string text(double value) const;

 private:
  template <class T>
  void look_at(std::span<const T> values, int digits, int most_decimals);

  bool plain_ = true;
  int decimals_ = 0;
};

}  // namespace vqmath63::host
