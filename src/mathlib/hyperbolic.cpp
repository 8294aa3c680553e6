// Hyperbolic functions of ztMathLib and their inverses.
#include "frame/checked_functions.hpp"
#include "mathlib/constants.hpp"
#include "mathlib/locations.hpp"
#include "mathlib/math_lib.hpp"

namespace vqmath63 {
namespace {

using namespace constants;
using namespace locations;

// E = exp(x) and F = exp(-x): within the limits of the members nothing made of them can fail.
struct Exponentials {
  double e, f;
  explicit Exponentials(double x) : e(unchecked::exp(x)), f(unchecked::exp(-x)) {}
  double sum() const { return e + f; }
  double difference() const { return e - f; }
};

// 1 / x for the small arguments of coth and csch, limited at the smallest: 0 for 0.
Double limited_reciprocal(Double x) {
  return Abs(x) > kTinyDivisor ? Double(1.0) / x : Sgn(x) * kOutOfRange;
}

}  // namespace

double ztMathLib::sinh(double dX) const {
  return trap<double>(kSinh, [&](double& result) {
    const Double x = dX;
    if (Abs(x) > kExponentLimit) {
      result = (Sgn(x) * kOutOfRange).value();
    } else if (!(Abs(x) > kSmallArgument)) {
      // The sign goes lost here, on purpose: the small branch gives a magnitude.
      result = (Sgn(x) * x).value();
    } else {
      result = Exponentials(dX).difference() * 0.5;
    }
  });
}

double ztMathLib::cosh(double dX) const {
  return trap<double>(kCosh, [&](double& result) {
    result = std::abs(dX) > kExponentLimit ? kOutOfRange : Exponentials(dX).sum() * 0.5;
  });
}

double ztMathLib::tanh(double dX) const {
  return trap<double>(kTanh, [&](double& result) {
    const Double x = dX;
    if (Abs(x) > kTanhSaturation) {
      result = Sgn(x).value();
    } else if (!(Abs(x) > kSmallArgument)) {
      result = dX;
    } else {
      const Exponentials of_x(dX);
      result = of_x.difference() / of_x.sum();
    }
  });
}

double ztMathLib::coth(double dX) const {
  return trap<double>(kCoth, [&](double& result) {
    const Double x = dX;
    if (Abs(x) > kExponentLimit) {
      result = Sgn(x).value();
    } else if (!(Abs(x) > kSmallArgument)) {
      result = limited_reciprocal(x).value();
    } else {
      const Exponentials of_x(dX);
      result = of_x.sum() / of_x.difference();
    }
  });
}

double ztMathLib::csch(double dX) const {
  return trap<double>(kCsch, [&](double& result) {
    const Double x = dX;
    if (Abs(x) > kExponentLimit) {
      result = 0.0;
    } else if (!(Abs(x) > kSmallArgument)) {
      result = limited_reciprocal(x).value();
    } else {
      result = 2.0 / Exponentials(dX).difference();
    }
  });
}

double ztMathLib::sech(double dX) const {
  return trap<double>(kSech, [&](double& result) {
    const Double x = dX;
    if (Abs(x) > kExponentLimit) {
      result = 0.0;
    } else if (Abs(x) < kSmallArgument) {
      result = 1.0;
    } else {
      result = 2.0 / Exponentials(dX).sum();
    }
  });
}

double ztMathLib::asinh(double dX) const {
  return trap<double>(kAsinh, [&](double& result) {
    const Double x = dX;
    result = Log(Sqr(x * x + 1.0) + x).value();
  });
}

double ztMathLib::acosh(double dX) const {
  return trap<double>(kAcosh, [&](double& result) {
    const Double x = dX;
    if (Abs(x) < 1.0) {
      result = kOutOfRange;
    } else if (Abs(x) == 1.0) {
      result = 0.0;
    } else {  // below -1 the logarithm's argument is negative: the trap reports it
      result = Log(Sqr(x * x - 1.0) + x).value();
    }
  });
}

double ztMathLib::atanh(double dX) const {
  return trap<double>(kAtanh, [&](double& result) {
    const Double x = dX;
    result = Abs(x) < 1.0 ? (0.5 * Log((x + 1.0) / (1.0 - x))).value() : kOutOfRange;
  });
}

double ztMathLib::acoth(double dX) const {
  return trap<double>(kAcoth, [&](double& result) {
    const Double x = dX;
    const bool at_end = std::abs(std::abs(dX) - 1.0) < kUnitBand;
    result = at_end || Abs(x) < 1.0 ? kOutOfRange : (0.5 * Log((x + 1.0) / (x - 1.0))).value();
  });
}

double ztMathLib::acsch(double dX) const {
  return trap<double>(kAcsch, [&](double& result) {
    if (!(std::abs(dX) > kWideUnitBand)) {
      result = kOutOfRange;
    } else {
      const Double t = Double(1.0) / dX;
      result = Log(Sqr(t * t + 1.0) + t).value();
    }
  });
}

double ztMathLib::asech(double dX) const {
  return trap<double>(kAsech, [&](double& result) {
    if (dX == 1.0) {
      result = 0.0;
    } else if (!(dX > 0.0 && dX < 1.0)) {
      result = kOutOfRange;
    } else {
      const Double t = Double(1.0) / dX;
      result = Log(Sqr(t * t - 1.0) + t).value();
    }
  });
}

}  // namespace vqmath63
