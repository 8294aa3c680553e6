#include "frame/checked.hpp"

namespace vqmath63::detail {

double examine_sum(double a, double b, double result) {
  if (std::isnan(result)) {
    if (!std::isnan(a) && !std::isnan(b)) raise_fault(ErrorNumber::kInvalidCall);
  } else if (std::isfinite(a) && std::isfinite(b)) {
    raise_fault(ErrorNumber::kOverflow);
  }
  return result;
}

double examine_product(double a, double b, double result) {
  return examine_sum(a, b, result);
}

double examine_quotient(double a, double b, double result) {
  if (std::isnan(result)) {
    if (!std::isnan(a) && !std::isnan(b)) raise_fault(ErrorNumber::kInvalidCall);
  } else if (std::isfinite(a)) {
    raise_fault(b == 0.0 ? ErrorNumber::kDivisionByZero : ErrorNumber::kOverflow);
  }
  return result;
}

float examine_narrowing(double value, float result) {
  if (std::isfinite(value)) raise_fault(ErrorNumber::kOverflow);
  return result;
}

}  // namespace vqmath63::detail
