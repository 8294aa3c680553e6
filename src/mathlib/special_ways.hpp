// What of the special functions is compiled twice, as the elementary functions inside are.
#pragma once

#include "elementary/functions.hpp"

namespace vqmath63::special {

#ifdef __x86_64__
#define VQ_SPECIAL_WAYS(...) \
  namespace portable {       \
  __VA_ARGS__                \
  }                          \
  namespace fused {          \
  __VA_ARGS__                \
  }
#define VQ_SPECIAL_CALL(name, x) (elementary::kFused ? fused::name(x) : portable::name(x))
#else
#define VQ_SPECIAL_WAYS(...) \
  namespace portable {       \
  __VA_ARGS__                \
  }
#define VQ_SPECIAL_CALL(name, x) portable::name(x)
#endif

VQ_SPECIAL_WAYS(double gamma_from_12(double y) noexcept;
                double log_gamma_from_12(double x) noexcept;
                double complement_of_erf(double y) noexcept;)

/// Gamma of y >= 12 up to its limit, and a NaN of a NaN.
inline double gamma_from_12(double y) noexcept {
  return VQ_SPECIAL_CALL(gamma_from_12, y);
}
/// The logarithm of Gamma of x > 12, up to its limit.
inline double log_gamma_from_12(double x) noexcept {
  return VQ_SPECIAL_CALL(log_gamma_from_12, x);
}
/// 1 - erf(y) for 0.46875 < y < 6; there are two formulas, the first up to 4.
inline constexpr double kErfMiddle = 4.0;
inline double complement_of_erf(double y) noexcept {
  return VQ_SPECIAL_CALL(complement_of_erf, y);
}

#undef VQ_SPECIAL_CALL
#undef VQ_SPECIAL_WAYS

}  // namespace vqmath63::special
