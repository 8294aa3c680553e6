// The error function: a member of ztMathLib.
#include <cmath>
#include <cstddef>

#include "mathlib/cody_tables.hpp"
#include "mathlib/locations.hpp"
#include "mathlib/math_lib.hpp"
#include "mathlib/special_ways.hpp"

namespace vqmath63 {
namespace {

using namespace cody;
using namespace locations;

constexpr double kNear = 0.46875;        // up to here by the error function itself
constexpr double kTinySquare = 1.5e-16;  // up to here the square adds nothing

double near_zero(double x, double y) {
  const double square = y > kTinySquare ? y * y : 0.0;
  double numerator = kErfA[4] * square;
  double denominator = square;
  for (std::size_t i = 0; i < 3; ++i) {
    numerator = (numerator + kErfA[i]) * square;
    denominator = (denominator + kErfB[i]) * square;
  }
  return x * (numerator + kErfA[3]) / (denominator + kErfB[3]);
}

double error_function(double x) {
  // The complement vanishes from 26.543 on; from 6 on it no longer shows beside one half.
  constexpr double kOne = 6.0;
  const double y = std::abs(x);
  if (y <= kNear) return near_zero(x, y);
  double complement = 0.0;
  if (y < kOne) {
    complement = special::complement_of_erf(y);
  } else if (std::isnan(y)) {
    return x;
  }
  const double value = (0.5 - complement) + 0.5;
  return std::copysign(value, x);
}

}  // namespace

double ztMathLib::Erf(double xValue) const {
  return trap<double>(kErf, [&](double& result) { result = error_function(xValue); });
}

}  // namespace vqmath63
