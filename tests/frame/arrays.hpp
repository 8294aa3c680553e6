// Arrays as tests write them down, and error lines as they expect them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "frame/array.hpp"
#include "frame/fault.hpp"

namespace vqmath63 {

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

/// The line that error `number` becomes in a routine; `place` is all between "In [" and "] ".
inline std::string error_line(std::int32_t number, const std::string& place) {
  return "Error:" + std::string(error_text(number)) + " (No." + std::to_string(number) + ") In [" +
         place + "] ";
}

}  // namespace vqmath63
