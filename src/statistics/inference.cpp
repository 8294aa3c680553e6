// The tests and intervals of ztStatistics.

#include "frame/checked_functions.hpp"
#include "frame/speculate.hpp"
#include "frame/trap.hpp"
#include "statistics/probability.hpp"
#include "statistics/statistics.hpp"

namespace vqmath63 {
namespace {

constexpr Location kChiSquared{"ztStatistics", "ChiSquared"};
constexpr Location kChi2Squared{"ztStatistics", "Chi2Squared"};
constexpr Location kTTest{"ztStatistics", "t_Test"};
constexpr Location kConfidenceLimit{"ztStatistics", "ConfidenceLimit"};
constexpr Location kConfidenceInterval{"ztStatistics", "ConfidenceInterval"};

using Samples = Array1<const float>;

[[noreturn]] void refuse() {
  raise_fault(ErrorNumber::kInvalidCall);
}

struct ChiSquare {
  float value = 0.0F;
  float probability = 0.0F;
};

// Running Single sum of difference^2 / divisor over the bins, where divisor(o, e) gives a number
// above 0, or 0 for a bin that takes no part.
template <class Divisor>
ChiSquare chi_square(const Samples& observed, const Samples& expected, std::int32_t constraints,
                     const Divisor& divisor) {
  const std::int64_t n = observed.upper();
  std::int64_t freedom = n - constraints;
  Single sum;
  for (std::int64_t i = 1; i <= n; ++i) {
    const Double o = observed(i);
    const Double e = expected(i);
    const Double by = divisor(o, e);
    if (by == 0.0) {
      --freedom;
      continue;
    }
    const Double difference = o - e;
    sum = sum + Single(difference * difference / by);
  }
  if (freedom < 1) refuse();
  const double exceeded =
      chi_squared_exceeded(static_cast<double>(sum.value()), static_cast<double>(freedom));
  return {sum.value(), to_single(exceeded)};
}

// Sum of term(x(i)) over the samples 1 to n, in double precision. `Term` is called with a mode's
// number.
template <class Term>
Double double_sum(const Samples& x, std::int64_t n, const Term& term) {
  return speculate(x.covers(1, n), [&](auto mode) {
    using Mode = decltype(mode);
    const typename Mode::template Reader<float> xs(x);
    typename Mode::Double sum;
    for (std::int64_t i = 1; i <= n; ++i) sum += term(typename Mode::Double(xs(i)));
    return sum;
  });
}

// Number, mean and sum of the squared distances from it, in double precision and two passes, which
// equal samples leave at exactly 0.
struct Moments {
  Double n;
  Double mean;
  Double squares;
};
Moments moments(const Samples& x) {
  const std::int32_t n = x.upper();
  if (n < 1) raise_fault(ErrorNumber::kSubscript);
  const Double mean = double_sum(x, n, [](auto v) { return v; }) / Double(n);
  const Double squares = double_sum(x, n, [=](auto v) {
    const decltype(v) distance = v - decltype(v)(mean.value());
    return distance * distance;
  });
  return {n, mean, squares};
}

struct Interval {
  Double mean;
  Double half_width;
};
Interval confidence(const Samples& x, double level) {
  if (!(level > 0.0 && level < 1.0)) refuse();
  if (x.upper() < 2) refuse();
  const Moments of_x = moments(x);
  const Double freedom = of_x.n - 1.0;
  const Double error = Sqr(of_x.squares / freedom / of_x.n);
  return {of_x.mean, Double(student_quantile(level, freedom.value())) * error};
}

}  // namespace

void ztStatistics::ChiSquared(const Samples& xObserved, const Samples& xExpected,
                              const std::int32_t& nConstraints, float& ChiSq, float& Probability,
                              bool& qOK) {
  trap(kChiSquared, [&] {
    qOK = false;
    const ChiSquare result =
        chi_square(xObserved, xExpected, nConstraints, [](Double, Double expected) {
          if (expected <= 0.0) refuse();
          return expected;
        });
    ChiSq = result.value;
    Probability = result.probability;
    qOK = true;
  });
}

void ztStatistics::Chi2Squared(const Samples& xA, const Samples& yA,
                               const std::int32_t& nConstraints, float& ChiSq, float& Probability,
                               bool& qOK) {
  trap(kChi2Squared, [&] {
    qOK = false;
    const ChiSquare result = chi_square(xA, yA, nConstraints, [](Double a, Double b) {
      if (a == 0.0 && b == 0.0) return Double(0.0);
      const Double both = a + b;
      if (both <= 0.0) refuse();
      return both;
    });
    ChiSq = result.value;
    Probability = result.probability;
    qOK = true;
  });
}

void ztStatistics::t_Test(const Samples& xA, const Samples& yA, float& t, float& Probability,
                          bool& qOK) {
  trap(kTTest, [&] {
    qOK = false;
    const Moments x = moments(xA);
    const Moments y = moments(yA);
    const Double freedom = x.n + y.n - 2.0;
    if (freedom < 1.0) refuse();
    const Double pooled = (x.squares + y.squares) / freedom;
    const Double error = Sqr(pooled * (1.0 / x.n + 1.0 / y.n));
    const Double ratio = (x.mean - y.mean) / error;
    const float probability = to_single(student_two_sided(ratio.value(), freedom.value()).upper);
    t = to_single(ratio.value());
    Probability = probability;
    qOK = true;
  });
}

float ztStatistics::ConfidenceLimit(const Samples& xA, const double& dLevel) {
  return trap<float>(kConfidenceLimit, [&](float& result) {
    result = to_single(confidence(xA, dLevel).half_width.value());
  });
}

void ztStatistics::ConfidenceInterval(const Samples& xA, const double& dLevel, float& xLower,
                                      float& xUpper, bool& qOK) {
  trap(kConfidenceInterval, [&] {
    qOK = false;
    const Interval interval = confidence(xA, dLevel);
    const float lower = to_single((interval.mean - interval.half_width).value());
    const float upper = to_single((interval.mean + interval.half_width).value());
    xLower = lower;
    xUpper = upper;
    qOK = true;
  });
}

}  // namespace vqmath63
