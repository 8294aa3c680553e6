// The table of sines all round, from that of a quarter of the circle.
#pragma once

#include <cstddef>

#include "elementary/tables.hpp"

namespace vqmath63::elementary {

/// sin(j pi / 256) for j from 0 to a circle and a quarter, each in 26 bits and the rest: the cosine
/// is the sine a quarter further on.
struct SineTable {
  double parts[2 * 640];
};

inline constexpr SineTable kSines = [] {
  SineTable sines{};
  for (std::size_t j = 0; j < 640; ++j) {
    const std::size_t half = j % 256;
    const double* quarter = &kQuarterSines[2 * (half <= 128 ? half : 256 - half)];
    const double sign = j % 512 > 256 ? -1.0 : 1.0;
    sines.parts[2 * j] = sign * quarter[0];
    sines.parts[2 * j + 1] = sign * quarter[1] + 0.0;  // a rest of 0 has no sign
  }
  return sines;
}();

}  // namespace vqmath63::elementary
