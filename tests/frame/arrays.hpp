// Arrays as tests write them down, and error lines as they expect them.
#pragma once

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "frame/array.hpp"
#include "frame/fault.hpp"

namespace vqmath63 {

inline constexpr float kInf = std::numeric_limits<float>::infinity();
inline constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

/// An array of its own with these elements; without any it is unallocated.
template <class T>
Array1<T> array_of(const std::vector<T>& elements, std::int32_t lower = 1) {
  if (elements.empty()) return {};
  Array1<T> array(lower, lower + static_cast<std::int32_t>(elements.size()) - 1);
  for (std::size_t i = 0; i < elements.size(); ++i) {
    array(lower + static_cast<std::int64_t>(i)) = elements[i];
  }
  return array;
}

/// An array with these elements from 1 on; elements below 1 and after the last are NaN.
template <class T>
Array1<T> samples_of(const std::vector<T>& values, std::int32_t lower, std::int32_t spare = 0) {
  const auto n = static_cast<std::int32_t>(values.size());
  Array1<T> array(lower, n + spare);
  for (std::int32_t i = lower; i <= n + spare; ++i) {
    array(i) = i < 1 || i > n ? T{kNaN} : values[static_cast<std::size_t>(i) - 1];
  }
  return array;
}

/// The line that error `number` becomes in a routine; `place` is all between "In [" and "] ".
inline std::string error_line(std::int32_t number, const std::string& place) {
  return "Error:" + std::string(error_text(number)) + " (No." + std::to_string(number) + ") In [" +
         place + "] ";
}

using Lines = std::vector<std::string>;

/// That line alone; none for the number 0.
inline Lines error_lines(std::int32_t number, const std::string& place) {
  return number == 0 ? Lines{} : Lines{error_line(number, place)};
}

}  // namespace vqmath63
