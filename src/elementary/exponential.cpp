#include "elementary/functions.hpp"
#include "elementary/quick.hpp"
#include "elementary/sure.hpp"

namespace vqmath63::elementary {

double exp(double x) {
  // Beyond, the result is subnormal, infinite, or near it.
  if (!(std::fabs(x) < 708.0)) [[unlikely]] {
    if (std::isnan(x)) return x + x;
    return sure::exp(x);
  }
  const Power power = quick_exponential(x, 0.0);
  double result;
  if (!settled(power.hi, power.lo, 0x1.ap-65, result)) [[unlikely]]
    return sure::exp(x);
  return with_exponent(result, power.exponent);
}

}  // namespace vqmath63::elementary
