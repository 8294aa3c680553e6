// Exponentials, logarithms, powers and roots of ztMathLib.
#include "frame/checked_functions.hpp"
#include "frame/steps_only.hpp"
#include "mathlib/constants.hpp"
#include "mathlib/locations.hpp"
#include "mathlib/math_lib.hpp"

namespace vqmath63 {
namespace {

using namespace constants;
using namespace locations;

// sign times exp(exponent), within the limits of every exponential here, so that it cannot fail.
double limited_exponential(Double exponent, double sign) {
  if (exponent > kExponentLimit) return kOutOfRange;
  if (exponent < -kExponentLimit) return 0.0;
  return unchecked::exp(exponent.value()) * sign;
}

// Whether x > 0 has this exponential, as nearly all calls have, without a check; what fails is not
// within the limits.
bool plain_exponential(double x, double exponent, double& result) {
  if (kStepsOnly || !(x > 0.0 && std::abs(exponent) <= kExponentLimit)) return false;
  result = unchecked::exp(exponent);
  return true;
}

bool whole(double x) {
  return Fix(x) == x;
}

// Fault 6 for a magnitude that is no Long.
bool odd(double x) {
  return to_long(std::abs(x)) % 2 == 1;
}

}  // namespace

double ztMathLib::aLog(double xValue) const {
  return trap<double>(kALog, [&](double& result) { result = limited_exponential(xValue, 1.0); });
}

double ztMathLib::aLog10(double xValue) const {
  return trap<double>(kALog10, [&](double& result) {
    // Scaled by e, not by the logarithm of 10: the range is narrower than that of Double, on
    // purpose.
    const Double guard = Double(xValue) * kE;
    if (guard > kExponentLimit) {
      result = kOutOfRange;
    } else if (!(guard < -kExponentLimit)) {
      result = unchecked::pow(10.0, xValue);
    }
  });
}

// The logarithm of a positive number cannot fail; a NaN is not positive.
double ztMathLib::Ln(double xValue) const {
  return trap<double>(
      kLn, [&](double& result) { result = xValue > 0.0 ? unchecked::log(xValue) : kOutOfRange; });
}

double ztMathLib::Log10(double xValue) const {
  return trap<double>(kLog10, [&](double& result) {
    result = xValue > 0.0 ? unchecked::log(xValue) * kLog10OfE : kOutOfRange;
  });
}

double ztMathLib::Squared(double X) const {
  return trap<double>(kSquared, [&](double& result) { result = (Double(X) * X).value(); });
}

double ztMathLib::cubed(double X) const {
  return trap<double>(kCubed, [&](double& result) { result = (Double(X) * X * X).value(); });
}

double ztMathLib::Square_Root(double X) const {
  return trap<double>(kSquare_Root,
                      [&](double& result) { result = X < 0.0 ? kOutOfRange : unchecked::sqrt(X); });
}

double ztMathLib::Cube_Root(double X) const {
  return trap<double>(kCube_Root, [&](double& result) {
    const auto root = [](double x) { return unchecked::exp(unchecked::log(x) * kOneThird); };
    if (X > 0.0) {
      result = root(X);
    } else if (X < 0.0) {
      result = -root(-X);
    }
  });
}

double ztMathLib::x_to_Power_y(double X, double Power) const {
  return trap<double>(kX_to_Power_y, [&](double& result) {
    if (plain_exponential(X, unchecked::log(X) * Power, result)) return;
    if (Power == 0.0) {  // before X = 0: zero to the power zero is 1
      result = 1.0;
      return;
    }
    if (X == 0.0) return;
    double sign = 1.0;
    if (X < 0.0) {
      if (!whole(Power)) {
        result = kOutOfRange;
        return;
      }
      if (odd(Power)) sign = -1.0;
    }
    result = limited_exponential(Log(std::abs(X)) * Power, sign);
  });
}

double ztMathLib::y_Root_of_X(double X, double Root) const {
  return trap<double>(kY_Root_of_X, [&](double& result) {
    if (plain_exponential(X, unchecked::log(X) / Root, result)) return;
    if (Root == 0.0) {
      result = kOutOfRange;
      return;
    }
    if (X == 0.0) return;
    double sign = 1.0;
    if (X < 0.0) {
      if (!whole(Root) || !odd(Root)) {
        result = kOutOfRange;
        return;
      }
      sign = -1.0;
    }
    result = limited_exponential(Log(std::abs(X)) / Root, sign);
  });
}

}  // namespace vqmath63
