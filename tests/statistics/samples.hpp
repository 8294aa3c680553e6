// What the tests of the statistics room share: arrays from lists, and companions that misbehave.
#pragma once

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "frame/array.hpp"
#include "frame/companion_fixture.hpp"

namespace vqmath63 {

inline constexpr float kInf = std::numeric_limits<float>::infinity();
inline constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

/// An array of its own with these elements from 1 on; elements below 1 are NaN.
inline Array1<float> samples(const std::vector<float>& values, std::int32_t lower = 1) {
  const auto n = static_cast<std::int32_t>(values.size());
  if (n < lower) return {};
  Array1<float> array(lower, n);
  for (std::int32_t i = lower; i < 1; ++i) array(i) = kNaN;
  for (std::int32_t i = 1; i <= n; ++i) array(i) = values[static_cast<std::size_t>(i) - 1];
  return array;
}

template <class T>
Array1<T> listed(const std::vector<T>& values) {
  Array1<T> array(1, static_cast<std::int32_t>(values.size()));
  std::copy(values.begin(), values.end(), array.data());
  return array;
}

/// "Error:<text> (No.<number>) In [<module> (Code) (<routine>)] ".
inline std::string error_line(std::int32_t number, const std::string& module,
                              const std::string& routine) {
  return std::string("Error:") + error_text(number) + " (No." + std::to_string(number) + ") In [" +
         module + " (Code) (" + routine + ")] ";
}

/// The lines of one number in routines of the usual module, in order.
inline std::vector<std::string> lines_of(std::int32_t number,
                                         const std::vector<std::string>& routines) {
  std::vector<std::string> lines;
  for (const std::string& routine : routines) {
    lines.push_back(error_line(number, "ztStatistics", routine));
  }
  return lines;
}

/// The numbers of error lines, in order, such as "9 5".
inline std::string numbers_of(const std::vector<std::string>& lines) {
  std::string numbers;
  for (const std::string& line : lines) {
    const std::size_t at = line.find("(No.") + 4;
    numbers += (numbers.empty() ? "" : " ") + line.substr(at, line.find(')', at) - at);
  }
  return numbers;
}

}  // namespace vqmath63
