// The tables of sines and tangents all round, from those of a quarter and an eighth of the circle.
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

/// Sines over the larger of sine and cosine, in size: 1, or the tangent or cotangent; for j from 0
/// to three quarters of the circle. A quarter further on stands what is to be divided by for the
/// tangent.
struct TangentTable {
  double parts[2 * 384];
};

inline constexpr TangentTable kTangents = [] {
  TangentTable tangents{};
  for (std::size_t j = 0; j < 384; ++j) {
    const std::size_t half = j % 256;
    const std::size_t quarter = half <= 128 ? half : 256 - half;
    const double sign = j > 256 ? -1.0 : 1.0;
    tangents.parts[2 * j] = sign * (quarter <= 64 ? kEighthTangents[2 * quarter] : 1.0);
    tangents.parts[2 * j + 1] =
        sign * (quarter <= 64 ? kEighthTangents[2 * quarter + 1] : 0.0) + 0.0;
  }
  return tangents;
}();

}  // namespace vqmath63::elementary
