// Arithmetic chosen by an operation text, with sums and differences snapped to zero when
// negligible.
#pragma once

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string_view>

#include "frame/checked.hpp"
#include "frame/trap.hpp"
#include "tolerant/out_of_range.hpp"

namespace vqmath63 {

// Operation texts are "+", "-", "*" and "/", compared character by character: a text with a blank
// is none of them. Overflow (error 6) and invalid operations (error 5) are reported under the
// routine's name. Infinite operands of a sum: its ratio to the larger operand is invalid, error 5.

namespace detail {

inline constexpr Location kArithmeticS{"ztMathLib", "ArithmeticS"};

/// Relative size below which ArithmeticS takes a sum for rounding residue.
inline constexpr float kNegligible = 1e-6F;

/// A sum is negligible exactly when it is below this part of the larger magnitude, in Double. The
/// ratio rounds to less than kNegligible when it is below the middle between that (whose last bit
/// is odd) and the Single before it, or on it; a product with the middle has at most 49 bits, so
/// the few beyond it that are added here let < stand for both.
inline constexpr double kNegligiblePart =
    (static_cast<double>(kNegligible) +
     static_cast<double>(std::bit_cast<float>(std::bit_cast<std::uint32_t>(kNegligible) - 1U))) /
    2.0 * (1.0 + 0x1p-50);

/// `sum` of two Singles the larger of which has this magnitude, or 0 when their ratio, rounded to
/// Single, is below kNegligible: without a division or a branch. Not for infinities.
inline float snapped(float sum, float larger) {
  const bool negligible =
      static_cast<double>(std::abs(sum)) < static_cast<double>(larger) * kNegligiblePart;
  return negligible ? 0.0F : sum;
}

/// `sum`, or 0 when its ratio to the larger magnitude of first and second, rounded to Single, is
/// strictly below `tolerance`.
inline float snapped(Single sum, float first, float second, float tolerance) {
  float larger = std::abs(first);
  if (larger < std::abs(second)) larger = std::abs(second);
  if (larger == 0.0F) return sum.value();
  const Single ratio = sum / Single(larger);
  return std::abs(ratio.value()) < tolerance ? 0.0F : sum.value();
}

/// The same with kNegligible for tolerance.
inline float snapped(Single sum, float first, float second) {
  const float larger = std::max(std::abs(first), std::abs(second));
  if (larger <= std::numeric_limits<float>::max()) [[likely]] {
    return snapped(sum.value(), larger);
  }
  return snapped(sum, first, second, kNegligible);
}

}  // namespace detail

/// first `operation` second in Single. A sum or difference below 1e-6 of the larger operand
/// (strictly, the ratio rounded to Single) is exactly 0; over zero it is 3.402823E+38; an unknown
/// operation, or a failure, gives 0. Geometry compares its coordinates with this.
inline float ArithmeticS(float first, float second, std::string_view operation) {
  return trap<float>(detail::kArithmeticS, [&](float& result) {
    const Single a = first;
    const Single b = second;
    if (operation == "-") {
      result = detail::snapped(a - b, first, second);
    } else if (operation == "+") {
      result = detail::snapped(a + b, first, second);
    } else if (operation == "*") {
      result = Single(a * b).value();
    } else if (operation == "/") {
      result = second == 0.0F ? kSingleOutOfRange : Single(a / b).value();
    }
  });
}

/// What ArithmeticS gives; the routine behind ztMathLib's member of this name.
float ArithmeticSingle(float real1, float real2, std::string_view operation);

/// real1 - real2 in Single, exactly 0 when its ratio to the larger operand (rounded to Single) is
/// strictly below `epsilon`. 0 after a failure.
float ArithmeticDiff(float real1, float real2, float epsilon);

/// result = real1 `operation` real2 in Double. A sum or difference below 1e-15 of the larger
/// operand is exactly 0; over zero it is 1e308. An unknown operation, or a failure of the operation
/// itself, leaves `result` as it was.
void Arithmetic(double real1, double real2, std::string_view operation, double& result);

}  // namespace vqmath63
