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

void ztDifferentiate::FirstDerivative(Array1<double>& xVals, Array1<double>& yVals,
                                      Array1<double>& dydx, bool& qOK) {
  trap(kFirst, [&] {
    qOK = false;
    const std::int32_t n = xVals.upper();
    bool ok = false;
    FirstDerivatives(xVals, yVals, 1, n, dydx, ok);
    qOK = ok;
  });
}

void ztDifferentiate::SecondDerivative(Array1<double>& xVals, Array1<double>& yVals,
                                       Array1<double>& d2ydx2, bool& qOK) {
  trap(kSecond, [&] {
    qOK = false;
    const std::int32_t n = xVals.upper();
    d2ydx2.redim(1, n);
    bool ok = false;
    SecondDerivatives(xVals, yVals, 1, n, d2ydx2, ok);
    qOK = ok;
  });
}

void ztDifferentiate::FirstDerivativeForwards(Array1<double>& xVals, Array1<double>& yVals,
                                              Array1<double>& dydx, bool& qOK) {
  trap(kForwards, [&] {
    qOK = false;
    const std::int32_t n = xVals.upper();
    dydx.redim(1, n);
    bool ok = false;
    FirstDerivativeUpStream(xVals, yVals, 1, n, dydx, ok);
    qOK = ok;
  });
}

void ztDifferentiate::FirstDerivativeBackwards(Array1<double>& xVals, Array1<double>& yVals,
                                               Array1<double>& dydx, bool& qOK) {
  trap(kBackwards, [&] {
    qOK = false;
    const std::int32_t n = xVals.upper();
    dydx.redim(1, n);
    bool ok = false;
    FirstDerivativeDownStream(xVals, yVals, 1, n, dydx, ok);
    qOK = ok;
  });
}

}  // namespace vqmath63
