#include "calculus/differentiate.hpp"

#include <cstdint>

#include "calculus/differentiation.hpp"
#include "frame/trap.hpp"

namespace vqmath63 {
namespace {

constexpr Location kClassInitialize{"ztAnalyse - ztDifferentiate", "Class_Initialize"};
constexpr Location kInitDiffs{"ztAnalyse - ztDifferentiate", "InitDiffs"};
constexpr Location kFirst{"ztAnalyse - ztDifferentiate", "FirstDerivative"};
constexpr Location kSecond{"ztAnalyse - ztDifferentiate", "SecondDerivative"};
constexpr Location kForwards{"ztAnalyse - ztDifferentiate", "FirstDerivativeForwards"};
constexpr Location kBackwards{"ztAnalyse - ztDifferentiate", "FirstDerivativeBackwards"};

using Samples = Array1<const double>;

// Differentiates into a result of bounds 1 to n, all zero before. The samples may be that very
// array and are still read, so what it held is kept until the end. Where it cannot be sized, the
// result stays as it is, and the routine reports that the first sample is missing.
template <class Routine>
void differentiate(const Routine& routine, const Samples& x, const Samples& y,
                   Array1<double>& derivatives, bool& ok) {
  const std::int32_t n = x.upper();
  Array1<double> before;
  if (!can_size_results(x.bounds())) {
    routine(x, y, 1, n, before, ok);
    return;
  }
  if (overlap(derivatives, x) || overlap(derivatives, y)) {
    before = derivatives.replace(1, n);
  } else {
    derivatives.redim(1, n);
  }
  routine(x, y, 1, n, derivatives, ok);
}

}  // namespace

ztDifferentiate::ztDifferentiate() noexcept {
  trap(kClassInitialize, [&] {
    bool ok = false;
    InitDiffs(ok);
  });
}

void ztDifferentiate::InitDiffs(bool& ok) {
  trap(kInitDiffs, [&] { ok = true; });
}

void ztDifferentiate::FirstDerivative(const Array1<const double>& xVals,
                                      const Array1<const double>& yVals, Array1<double>& dydx,
                                      bool& qOK) {
  trap(kFirst, [&] {
    qOK = false;
    const std::int32_t n = xVals.upper();
    bool ok = false;
    FirstDerivatives(xVals, yVals, 1, n, dydx, ok);
    qOK = ok;
  });
}

void ztDifferentiate::SecondDerivative(const Array1<const double>& xVals,
                                       const Array1<const double>& yVals, Array1<double>& d2ydx2,
                                       bool& qOK) {
  trap(kSecond, [&] {
    qOK = false;
    bool ok = false;
    differentiate(SecondDerivatives, xVals, yVals, d2ydx2, ok);
    qOK = ok;
  });
}

void ztDifferentiate::FirstDerivativeForwards(const Array1<const double>& xVals,
                                              const Array1<const double>& yVals,
                                              Array1<double>& dydx, bool& qOK) {
  trap(kForwards, [&] {
    qOK = false;
    bool ok = false;
    differentiate(FirstDerivativeUpStream, xVals, yVals, dydx, ok);
    qOK = ok;
  });
}

void ztDifferentiate::FirstDerivativeBackwards(const Array1<const double>& xVals,
                                               const Array1<const double>& yVals,
                                               Array1<double>& dydx, bool& qOK) {
  trap(kBackwards, [&] {
    qOK = false;
    bool ok = false;
    differentiate(FirstDerivativeDownStream, xVals, yVals, dydx, ok);
    qOK = ok;
  });
}

}  // namespace vqmath63
