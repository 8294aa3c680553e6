// The error function: a member of ztMathLib.
#include "frame/checked_functions.hpp"
#include "mathlib/cody_tables.hpp"
#include "mathlib/constants.hpp"
#include "mathlib/exp_of_squares.hpp"
#include "mathlib/locations.hpp"
#include "mathlib/math_lib.hpp"

namespace vqmath63 {
namespace {

using namespace cody;
using namespace constants;
using namespace locations;

constexpr double kNear = 0.46875;        // up to here by the error function itself
constexpr double kMiddle = 4.0;          // then by its complement, in two pieces
constexpr double kTinySquare = 1.5e-16;  // up to here the square adds nothing

// exp(-y^2) for y up to 6, the square split in two so that the exponential loses no precision: that
// of the sixteenths comes from a table.
double exp_of_minus_square(double y) {
  const int sixteenths = static_cast<int>(y * 16.0);
  const double head = sixteenths * 0.0625;
  const double tail = (y - head) * (y + head);
  return kExpOfMinusSquare[static_cast<std::size_t>(sixteenths)] * unchecked::exp(-tail);
}

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

// 1 - erf(y) for 0.46875 < y <= 4.
double complement_middle(double y) {
  double numerator = kErfC[8] * y;
  double denominator = y;
  for (std::size_t i = 0; i < 7; ++i) {
    numerator = (numerator + kErfC[i]) * y;
    denominator = (denominator + kErfD[i]) * y;
  }
  return (numerator + kErfC[7]) / (denominator + kErfD[7]) * exp_of_minus_square(y);
}

// 1 - erf(y) for y > 4.
double complement_far(double y) {
  const double inverse = 1.0 / (y * y);
  double numerator = kErfP[5] * inverse;
  double denominator = inverse;
  for (std::size_t i = 0; i < 4; ++i) {
    numerator = (numerator + kErfP[i]) * inverse;
    denominator = (denominator + kErfQ[i]) * inverse;
  }
  const double ratio = inverse * (numerator + kErfP[4]) / (denominator + kErfQ[4]);
  return (kOneOverSqrtPi - ratio) / y * exp_of_minus_square(y);
}

double error_function(double x) {
  // The complement vanishes from 26.543 on; from 6 on it no longer shows beside one half.
  constexpr double kOne = 6.0;
  const double y = std::abs(x);
  if (y <= kNear) return near_zero(x, y);
  if (std::isnan(y)) return x;
  double complement = 0.0;
  if (y <= kMiddle) {
    complement = complement_middle(y);
  } else if (y < kOne) {
    complement = complement_far(y);
  }
  const double value = (0.5 - complement) + 0.5;
  return std::copysign(value, x);
}

}  // namespace

double ztMathLib::Erf(double xValue) const {
  return trap<double>(kErf, [&](double& result) { result = error_function(xValue); });
}

}  // namespace vqmath63
