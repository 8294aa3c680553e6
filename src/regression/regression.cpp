#include "regression/regression.hpp"

#include <utility>

#include "frame/text_case.hpp"
#include "frame/trap.hpp"
#include "regression/least_squares.hpp"

namespace vqmath63 {
namespace {

constexpr Location kClassInitialize{"ztAnalyse - ztRegression", "Class_Initialize"};
constexpr Location kInitRegression{"ztAnalyse - ztRegression", "InitRegression"};
constexpr Location kRegressionType{"ztRegression", "RegressionType"};
constexpr Location kSetRegressionMethod{"ztAnalyse - ztRegression", "setRegressionMethod"};
constexpr Location kRegression{"ztAnalyse - ztRegression", "Regression"};

constexpr std::int32_t kLinear = 1;
constexpr std::int32_t kExponential = 3;
constexpr std::int32_t kPower = 4;
constexpr std::int32_t kPolynomial = 5;

}  // namespace

ztRegression::ztRegression() noexcept {
  trap(kClassInitialize, [&] { InitRegression(); });
}

void ztRegression::InitRegression() {
  trap(kInitRegression, [&] {
    text_ = "Linear";
    type_ = kLinear;
    order_ = 1;
    line_ = {};
  });
}

void ztRegression::put_RegressionType(std::string value) {
  trap(kRegressionType, [&] {
    text_ = std::move(value);
    bool ok = false;
    setRegressionMethod(ok);
  });
}

void ztRegression::setRegressionMethod(bool& ok) {
  trap(kSetRegressionMethod, [&] {
    ok = false;
    const char first = text_.empty() ? 'L' : text_.front();
    switch (lower_case(first)) {
      case 'e':
        text_ = "Exponential";
        type_ = kExponential;
        break;
      // One letter decides: "Logarithmic" is linear and "Power" polynomial.
      case 'l':
        text_ = "Linear";
        type_ = kLinear;
        break;
      case 'p':
        text_ = "Polynomial";
        type_ = kPolynomial;
        break;
      default:
        break;  // the word stays, and so does the type that was in force
    }
    ok = true;
  });
}

void ztRegression::fit_polynomial(const Array1<const float>& xA, const Array1<const float>& yA,
                                  const Array1<const float>& weights) const {
  Array1<float> coefficients;
  // More coefficients than a fit can have are refused before their list, of any size, is looked at.
  if (order_ <= kMostCoefficients) coefficients.redim(1, order_);
  bool ok = false;
  LeastSquares(xA, yA, weights, order_, coefficients, ok);
}

void ztRegression::Regression(const Array1<const float>& xA, const Array1<const float>& yA,
                              const Array1<const float>& weights, bool& qOK) {
  trap(kRegression, [&] {
    qOK = false;
    Line line;
    bool ok = false;  // the fit's own success, which nobody asks for
    if (type_ >= kLinear && type_ <= kPower) {
      FitaLine(xA, yA, type_, line, ok);
    } else if (type_ == kPolynomial) {
      fit_polynomial(xA, yA, weights);
      FitaLine(xA, yA, type_, line, ok);
    }
    line_ = line;
    qOK = true;
  });
}

}  // namespace vqmath63
