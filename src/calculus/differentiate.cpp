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

// Bounds 1 to n and zeros for the derivatives. What they held comes back: the samples may be that
// very array, and are still read.
[[nodiscard]] Array1<double> make_room(Array1<double>& derivatives, std::int32_t n,
                                       const Samples& x, const Samples& y) {
  if (overlap(derivatives, x) || overlap(derivatives, y)) return derivatives.replace(1, n);
  derivatives.redim(1, n);
  return {};
}

}  // namespace

ztDifferentiate::ztDifferentiate() {
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
    const std::int32_t n = xVals.upper();
    const Array1<double> before = make_room(d2ydx2, n, xVals, yVals);
    bool ok = false;
    SecondDerivatives(xVals, yVals, 1, n, d2ydx2, ok);
    qOK = ok;
  });
}

void ztDifferentiate::FirstDerivativeForwards(const Array1<const double>& xVals,
                                              const Array1<const double>& yVals,
                                              Array1<double>& dydx, bool& qOK) {
  trap(kForwards, [&] {
    qOK = false;
    const std::int32_t n = xVals.upper();
    const Array1<double> before = make_room(dydx, n, xVals, yVals);
    bool ok = false;
    FirstDerivativeUpStream(xVals, yVals, 1, n, dydx, ok);
    qOK = ok;
  });
}

void ztDifferentiate::FirstDerivativeBackwards(const Array1<const double>& xVals,
                                               const Array1<const double>& yVals,
                                               Array1<double>& dydx, bool& qOK) {
  trap(kBackwards, [&] {
    qOK = false;
    const std::int32_t n = xVals.upper();
    const Array1<double> before = make_room(dydx, n, xVals, yVals);
    bool ok = false;
    FirstDerivativeDownStream(xVals, yVals, 1, n, dydx, ok);
    qOK = ok;
  });
}

}  // namespace vqmath63
