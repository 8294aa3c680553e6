#include "frame/checked_functions.hpp"

namespace vqmath63::detail {

double examine_function(double x, double result) {
  if (std::isnan(result)) {
    if (!std::isnan(x)) raise_fault(ErrorNumber::kInvalidCall);
  } else if (std::isfinite(x)) {
    raise_fault(ErrorNumber::kOverflow);
  }
  return result;
}

double examine_logarithm(double x) {
  if (x <= 0.0) raise_fault(ErrorNumber::kInvalidCall);
  return x;
}

}  // namespace vqmath63::detail
