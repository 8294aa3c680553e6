// The gamma function and its logarithm: members of ztMathLib.
#include "frame/checked_functions.hpp"
#include "mathlib/cody_tables.hpp"
#include "mathlib/constants.hpp"
#include "mathlib/locations.hpp"
#include "mathlib/log_gamma.hpp"
#include "mathlib/math_lib.hpp"
#include "mathlib/special_ways.hpp"
#include "mathlib/stirling.hpp"

namespace vqmath63 {
namespace {

using namespace cody;
using namespace constants;
using namespace locations;

constexpr double kEpsilon = 2.22e-16;    // 1 + smaller rounds to 1
constexpr double kSmallest = 2.23e-308;  // its reciprocal is still finite
constexpr double kGammaLimit = 171.624;  // Gamma overflows just above
constexpr double kLogLimit = 2.55e305;   // LoGamma overflows just above

// Numerator over denominator: (((P1 x) + P2) x + ...), the denominator likewise after its leading
// coefficient.
template <std::size_t kN>
double quotient(const double (&p)[kN], const double (&q)[kN], double leading, double x) {
  double numerator = 0.0;
  double denominator = leading;
  for (std::size_t i = 0; i < kN; ++i) {
    numerator = numerator * x + p[i];
    denominator = denominator * x + q[i];
  }
  return numerator / denominator;
}

// Gamma of 0 < y < 12, by whole steps from (1, 2).
double gamma_below_asymptotic(double y) {
  const int steps = y < 1.0 ? 0 : static_cast<int>(y) - 1;
  const double z = y < 1.0 ? y : y - steps - 1.0;
  double numerator = 0.0;
  double denominator = 1.0;
  for (std::size_t i = 0; i < std::size(kGammaP); ++i) {
    numerator = (numerator + kGammaP[i]) * z;
    denominator = denominator * z + kGammaQ[i];
  }
  double value = numerator / denominator + 1.0;
  if (y < 1.0) return value / y;
  double factor = z + 1.0;
  for (int i = 0; i < steps; ++i) {
    value *= factor;
    factor += 1.0;
  }
  return value;
}

// Gamma of y > 0 within its limits. A NaN passes.
double gamma_of_positive(double y) {
  if (y < kEpsilon) return 1.0 / y;
  if (y < kAsymptotic) return gamma_below_asymptotic(y);
  return special::gamma_from_12(y);
}

double log_gamma_near_one(double x) {
  constexpr double kReduction = 0.6796875;
  const double correction = x < kReduction ? -unchecked::log(x) : 0.0;
  const double from_one = x < kReduction ? x : x - 1.0;
  if (x <= 0.5 || x >= kReduction) {
    return correction +
           from_one * (kLogGammaD1 + from_one * quotient(kLogGammaP1, kLogGammaQ1, 1.0, from_one));
  }
  const double down = x - 1.0;
  return correction + down * (kLogGammaD2 + down * quotient(kLogGammaP2, kLogGammaQ2, 1.0, down));
}

double log_gamma_to_12(double x) {
  if (x <= kEpsilon) return -unchecked::log(x);
  if (x <= 1.5) return log_gamma_near_one(x);
  if (x <= 4.0) {
    const double d = x - 2.0;
    return d * (kLogGammaD2 + d * quotient(kLogGammaP2, kLogGammaQ2, 1.0, d));
  }
  const double d = x - 4.0;
  return kLogGammaD4 + d * quotient(kLogGammaP4, kLogGammaQ4, -1.0, d);
}

}  // namespace

double log_gamma(double x) {
  return x <= kAsymptotic ? log_gamma_to_12(x) : special::log_gamma_from_12(x);
}

double ztMathLib::Gamma(double X) const {
  return trap<double>(kGamma, [&](double& result) {
    Double y = X;
    Double reflection = 1.0;
    bool odd = false;
    if (!(X > 0.0)) {
      y = -y;
      const Double whole = Fix(y);
      const Double rest = y - whole;
      if (rest == 0.0) {
        result = kOutOfRange;
        return;
      }
      odd = whole != Fix(whole * 0.5) * 2.0;
      reflection = Double(-kPi) / Sin(kPi * rest);
      y = y + 1.0;
    }
    // For large negative arguments too, whose Gamma is next to zero: the published routine's way.
    if (y < kSmallest || y > kGammaLimit) {
      result = kOutOfRange;
      return;
    }
    Double value = gamma_of_positive(y.value());
    if (odd) value = -value;
    result = (reflection == 1.0 ? value : reflection / value).value();
  });
}

double ztMathLib::LoGamma(double X) const {
  return trap<double>(kLoGamma, [&](double& result) {
    if (X > kAsymptotic && X <= kLogLimit) {
      result = special::log_gamma_from_12(X);
    } else {
      result = X > 0.0 && X <= kAsymptotic ? log_gamma_to_12(X) : kOutOfRange;
    }
  });
}

}  // namespace vqmath63
