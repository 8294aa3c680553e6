#include "tolerant/tolerant_arithmetic.hpp"

namespace vqmath63 {
namespace {

constexpr Location kArithmetic{"ztMathLib", "Arithmetic"};
constexpr Location kArithmeticSingle{"ztMathLib", "ArithmeticSingle"};
// The one location with a lower-case l in the module's name.
constexpr Location kArithmeticDiff{"ztMathlib", "ArithmeticDiff"};

void snap(Double larger, double& result) {
  if (larger == 0.0) return;
  const Double ratio = Double(result) / larger;
  if (std::abs(ratio.value()) < 1e-15) result = 0.0;
}

}  // namespace

float ArithmeticSingle(float real1, float real2, std::string_view operation) {
  return trap<float>(kArithmeticSingle,
                     [&](float& result) { result = ArithmeticS(real1, real2, operation); });
}

float ArithmeticDiff(float real1, float real2, float epsilon) {
  return trap<float>(kArithmeticDiff, [&](float& result) {
    result = detail::snapped(Single(real1) - Single(real2), real1, real2, epsilon);
  });
}

void Arithmetic(double real1, double real2, std::string_view operation, double& result) {
  trap(kArithmetic, [&] {
    double larger = std::abs(real1);
    if (larger < std::abs(real2)) larger = std::abs(real2);
    const Double a = real1;
    const Double b = real2;
    if (operation == "+") {
      result = (a + b).value();
      snap(larger, result);
    } else if (operation == "-") {
      result = (a - b).value();
      snap(larger, result);
    } else if (operation == "*") {
      result = (a * b).value();
    } else if (operation == "/") {
      result = real2 == 0.0 ? kOutOfRange : (a / b).value();
    }
    // Any other operation leaves the result alone; the Single forms give 0 instead.
  });
}

}  // namespace vqmath63
