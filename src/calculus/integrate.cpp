#include "calculus/integrate.hpp"

#include "calculus/integration.hpp"
#include "frame/trap.hpp"

namespace vqmath63 {
namespace {

constexpr Location kClassInitialize{"ztAnalyse - ztIntegrate", "Class_Initialize"};
constexpr Location kInitIntegrate{"ztAnalyse - ztIntegrate", "InitIntegrate"};
constexpr Location kIntegral{"ztAnalyse - ztIntegrate", "Integral"};

}  // namespace

ztIntegrate::ztIntegrate() noexcept {
  trap(kClassInitialize, [&] { InitIntegrate(); });
}

void ztIntegrate::InitIntegrate() {
  trap(kInitIntegrate, [&] { rule_ = kTrapezoidal; });
}

std::int32_t ztIntegrate::IntegerationRule() {
  // Answers 0 whatever the rule is: callers never get the rule back.
  put_IntegrationRule(rule_);
  return 0;
}

void ztIntegrate::put_IntegrationRule(const std::int32_t& rule) {
  rule_ = rule;
}

float ztIntegrate::Integral(const Array1<const float>& xVals, const Array1<const float>& yVals) {
  return trap<float>(kIntegral, [&](float& result) {
    switch (rule_) {
      case kSimpson:
        result = Simpson(xVals, yVals);
        break;
      case kForward:
        result = Forward(xVals, yVals);
        break;
      case kBackward:
        result = Backward(xVals, yVals);
        break;
      default:
        result = Trapezoidal(xVals, yVals);
        break;
    }
  });
}

}  // namespace vqmath63
