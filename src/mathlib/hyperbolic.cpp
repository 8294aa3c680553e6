// Hyperbolic functions of ztMathLib and their inverses.
#include "frame/checked_functions.hpp"
#include "frame/speculate.hpp"
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

// Plainly, and with checks where the result is not finite: no step hides another one's failure.
template <class Formula>
double quickly(double x, const Formula& formula) {
  return speculate(true, [&](auto mode) { return formula(typename decltype(mode)::Double(x)); });
}

// The logarithm that the inverse hyperbolic sine and cosine are, of the square's sign.
template <class Double>
Double logarithm_of_root(Double x, double one) {
  return Log(Sqr(x * x + one) + x);
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
    result = quickly(dX, [](auto x) { return logarithm_of_root(x, 1.0); });
  });
}

double ztMathLib::acosh(double dX) const {
  return trap<double>(kAcosh, [&](double& result) {
    if (std::abs(dX) < 1.0) {
      result = kOutOfRange;
    } else if (std::abs(dX) == 1.0) {
      result = 0.0;
    } else {  // below -1 the logarithm's argument is negative: the trap reports it
      result = quickly(dX, [](auto x) { return logarithm_of_root(x, -1.0); });
    }
  });
}

double ztMathLib::atanh(double dX) const {
  return trap<double>(kAtanh, [&](double& result) {
    const auto formula = [](auto x) { return Log((x + 1.0) / (1.0 - x)) * 0.5; };
    result = std::abs(dX) < 1.0 ? quickly(dX, formula) : kOutOfRange;
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
