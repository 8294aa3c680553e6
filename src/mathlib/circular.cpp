// Circular functions of ztMathLib, their reciprocals and their inverses.
#include "frame/checked_functions.hpp"
#include "frame/companions.hpp"
#include "frame/steps_only.hpp"
#include "mathlib/constants.hpp"
#include "mathlib/locations.hpp"
#include "mathlib/math_lib.hpp"

namespace vqmath63 {
namespace {

using namespace constants;
using namespace locations;

// Arc tangent of sqrt(|x^2 - 1|), of which arc cosecant and arc secant are made.
Double arc_of_reciprocal(Double x) {
  return Atn(Sqr(Abs(x * x - 1.0)));
}

}  // namespace

double ztMathLib::sine(double dX) const {
  return trap<double>(kSine, [&](double& result) {
    const double turns = std::abs(dX) * kOneOverPi;
    // An infinity counts as whole, so that the sine of what is left cannot fail.
    if (Fix(turns) != turns) result = unchecked::sin(dX);
  });
}

double ztMathLib::cosine(double dX) const {
  return trap<double>(kCosine, [&](double& result) {
    const double turns = std::abs(dX) * kOneOverPi;
    const double twice = turns + turns;
    const bool odd_half = Fix(twice) == twice && Fix(turns) != turns && dX != 0.0;
    if (!odd_half) result = Cos(dX).value();
  });
}

double ztMathLib::cot(double dX) const {
  return trap<double>(kCot, [&](double& result) {
    const Double tangent = Tan(dX);
    result = Abs(tangent) > kTinyDivisor ? (Double(1.0) / tangent).value() : kOutOfRange;
  });
}

double ztMathLib::csc(double dX) const {
  return trap<double>(kCsc, [&](double& result) {
    const Double s = Sin(dX);
    if (Abs(s) > kTinyDivisor) {
      result = (Double(1.0) / s).value();
    } else {
      result = s == 0.0 ? kOutOfRange : (Sgn(s) * kOutOfRange).value();
    }
  });
}

double ztMathLib::Sec(double dX) const {
  return trap<double>(kSec, [&](double& result) {
    const Double c = Cos(dX);
    result = (Abs(c) > kTinyDivisor ? Double(1.0) / c : Sgn(c) * kOutOfRange).value();
  });
}

double arccos(double x) {
  return trap<double>(kArccos, [&](double& result) {
    // Where all steps do well, which a finite ratio tells.
    const double ratio = unchecked::sqrt(1.0 - x * x) / x;
    if (!kStepsOnly && std::abs(x) < 1.0 && std::isfinite(ratio)) [[likely]] {
      result = unchecked::atan(ratio) + (x > 0.0 ? 0.0 : kPi);
    } else if (x == 0.0) {
      result = kHalfPi;
    } else if (x == 1.0) {
      result = 0.0;
    } else if (x == -1.0) {
      result = kPi;
    } else if (std::abs(x) > 1.0) {
      result = kOutOfRange;
    } else if (x > 0.0 || x < 0.0) {  // no branch takes a NaN: 0
      const Double arc = Atn(Sqr(Double(1.0) - Double(x) * x) / x);
      result = (x > 0.0 ? arc : arc + kPi).value();
    }
  });
}

double ztMathLib::acos(double dX) const {
  return trap<double>(kAcos, [&](double& result) { result = arccos(dX); });
}

double ztMathLib::asin(double dX) const {
  return trap<double>(kAsin, [&](double& result) {
    if (std::abs(dX) < 1.0 && dX != 0.0) [[likely]] {  // no step of which can fail
      result = unchecked::atan(dX / unchecked::sqrt(std::abs(1.0 - dX * dX)));
    } else if (std::abs(dX) > 1.0) {
      result = kOutOfRange;
    } else if (dX != 0.0) {  // of a NaN itself
      result = dX == 1.0 ? kHalfPi : dX == -1.0 ? -kHalfPi : unchecked::atan(dX);
    }
  });
}

double ztMathLib::atan(double dX) const {
  return common_maths()->ArcTan(dX);
}

double ztMathLib::acot(double dX) const {
  return trap<double>(kAcot, [&](double& result) {
    result = dX == 0.0 ? kOutOfRange : Atn(Double(1.0) / dX).value();
  });
}

double ztMathLib::acsc(double dX) const {
  return trap<double>(kAcsc, [&](double& result) {
    if (std::abs(std::abs(dX) - 1.0) < kUnitBand) {
      result = dX > 0.0 ? kHalfPi : -kHalfPi;
    } else if (!(std::abs(dX) > 1.0)) {
      result = kOutOfRange;
    } else {
      const Double arc = arc_of_reciprocal(dX);
      result = (dX > 1.0 ? kHalfPi - arc : arc - kHalfPi).value();
    }
  });
}

double ztMathLib::asec(double dX) const {
  return trap<double>(kAsec, [&](double& result) {
    if (std::abs(std::abs(dX) - 1.0) < kWideUnitBand) {
      result = dX < 0.0 ? kPi : 0.0;
    } else if (std::abs(dX) < 1.0) {
      result = kOutOfRange;
    } else {
      const Double arc = arc_of_reciprocal(dX);
      result = (dX > 1.0 ? arc : kPi - arc).value();
    }
  });
}

}  // namespace vqmath63
