// Coordinates, whole numbers, comparison and conversion members of ztMathLib.
#include <algorithm>
#include <limits>
#include <numeric>

#include "frame/checked.hpp"
#include "frame/companions.hpp"
#include "mathlib/constants.hpp"
#include "mathlib/locations.hpp"
#include "mathlib/math_lib.hpp"

namespace vqmath63 {
namespace {

using namespace constants;
using namespace locations;

// Integer magnitude; fault 6 for the most negative Long.
std::int32_t magnitude(std::int32_t n) {
  if (n == std::numeric_limits<std::int32_t>::min()) raise_fault(ErrorNumber::kOverflow);
  return n < 0 ? -n : n;
}

// Smallest divisor of n that is above 1; n itself when it is prime. n >= 2. At most 46340 trials.
std::int32_t smallest_divisor(std::int32_t n) {
  for (std::int32_t k = 2; k <= n / k; ++k) {
    if (n % k == 0) return k;
  }
  return n;
}

}  // namespace

double ztMathLib::angle(double X, double Y) const {
  return trap<double>(kAngle, [&](double& result) { result = common_maths()->VectorAngle(X, Y); });
}

void ztMathLib::Polar_to_Rectangular(double Radius, double Theta, double& X, double& Y) const {
  trap(kPolar_to_Rectangular, [&] { common_maths()->PolarToRectangular(Radius, Theta, X, Y); });
}

void ztMathLib::Rectangular_to_Polar(double X, double Y, double& Radius, double& Theta) const {
  common_maths()->RectangularToPolar(X, Y, Radius, Theta);
}

std::int32_t ztMathLib::Quadrant(double X, double Y) const {
  return trap<std::int32_t>(kQuadrant, [&](std::int32_t& result) {
    // Negated, so that a NaN counts as positive.
    if (!(X < 0.0)) {
      result = !(Y < 0.0) ? 1 : 4;
    } else {
      result = !(Y < 0.0) ? 2 : 3;
    }
  });
}

std::int32_t ztMathLib::Ceil(double X) const {
  return trap<std::int32_t>(kCeil,
                            [&](std::int32_t& result) { result = common_maths()->CeilToLong(X); });
}

double ztMathLib::dCeil(double X) const {
  return trap<double>(kDCeil, [&](double& result) { result = common_maths()->CeilToDouble(X); });
}

std::int32_t ztMathLib::Floor(double X) const {
  return trap<std::int32_t>(kFloor,
                            [&](std::int32_t& result) { result = common_maths()->FloorToLong(X); });
}

double ztMathLib::dFloor(double X) const {
  return trap<double>(kDFloor, [&](double& result) { result = common_maths()->FloorToDouble(X); });
}

double ztMathLib::Max(double n1, double n2) const {
  return trap<double>(kMax, [&](double& result) { result = !(n1 < n2) ? n1 : n2; });
}

double ztMathLib::Min(double n1, double n2) const {
  return trap<double>(kMin, [&](double& result) { result = !(n1 > n2) ? n1 : n2; });
}

double ztMathLib::Sign(double x1, double x2) const {
  return trap<double>(kSign,
                      [&](double& result) { result = x2 < 0.0 ? -std::abs(x1) : std::abs(x1); });
}

std::int32_t ztMathLib::Factor(std::int32_t Long1, std::int32_t Long2) const {
  return trap<std::int32_t>(kFactor, [&](std::int32_t& result) {
    const std::int32_t a = magnitude(Long1);
    const std::int32_t b = magnitude(Long2);
    const std::int32_t limit = to_long(std::min(a, b) / 2.0);
    result = 1;
    if (limit < 2) return;
    // The smallest common divisor is the smallest divisor of the greatest one. Beyond half the
    // smaller magnitude none counts, so that a prime shares nothing with itself.
    const std::int32_t common = std::gcd(a, b);
    if (common < 2) return;
    const std::int32_t smallest = smallest_divisor(common);
    if (smallest <= limit) result = smallest;
  });
}

double ztMathLib::RTD(double Radians) const {
  return (Double(Radians) * kDegreesPerRadian).value();
}

double ztMathLib::DTR(const double& Degrees) const {
  return trap<double>(
      kDTR, [&](double& result) { result = (Double(Degrees) * kRadiansPerDegree).value(); });
}

}  // namespace vqmath63
