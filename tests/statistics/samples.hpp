// What the tests of the statistics room share: arrays from lists, and error lines.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "frame/arrays.hpp"
#include "frame/companion_fixture.hpp"
#include "frame/test_table.hpp"

namespace vqmath63 {

/// An array of its own with these elements from 1 on; elements below 1 are NaN.
inline Array1<float> samples(const std::vector<float>& values, std::int32_t lower = 1) {
  return static_cast<std::int32_t>(values.size()) < lower ? Array1<float>()
                                                          : samples_of(values, lower);
}

/// "Error:<text> (No.<number>) In [<module> (Code) (<routine>)] ".
inline std::string error_line(std::int32_t number, const std::string& module,
                              const std::string& routine) {
  return error_line(number, module + " (Code) (" + routine + ")");
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
