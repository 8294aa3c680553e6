#include "host/data/number_style.hpp"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "host/data/values.hpp"

namespace vqmath63::host {

std::string fixed_text(double value, int decimals) {
  char text[400];
  return {text,
          std::to_chars(text, text + sizeof text, value, std::chars_format::fixed, decimals).ptr};
}

NumberStyle::NumberStyle(std::span<const float> values, int digits, int most_decimals) {
  look_at(values, digits, most_decimals);
}

NumberStyle::NumberStyle(std::span<const double> values, int digits, int most_decimals) {
  look_at(values, digits, most_decimals);
}

template <class T>
void NumberStyle::look_at(std::span<const T> values, int digits, int most_decimals) {
  double largest = 0.0;
  bool whole = true;
  for (const double value : values) {
    if (!std::isfinite(value)) continue;
    largest = std::max(largest, std::fabs(value));
    whole = whole && std::trunc(value) == value;
  }
  const int before_point =
      largest > 0.0 ? static_cast<int>(std::floor(std::log10(largest))) + 1 : 1;
  plain_ = before_point > -2 && before_point <= 15;
  decimals_ = whole ? 0 : std::clamp(digits - before_point, 0, most_decimals);
}

std::string NumberStyle::text(double value) const {
  return plain_ && std::isfinite(value) ? fixed_text(value, decimals_)
                                        : number_text(static_cast<float>(value));
}

}  // namespace vqmath63::host
