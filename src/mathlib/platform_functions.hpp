// The platform's elementary functions as checked steps: a call that raises a fault throws it.
#pragma once

#include <cmath>
#include <cstdint>
#include <limits>

#include "frame/checked.hpp"

namespace vqmath63 {

namespace detail {

// Cold ends, called when a function's result is not finite. A NaN or an infinity that came in flows
// on, unless this call made the NaN.
inline Double examine_function(double x, double result) {
  if (std::isnan(result)) {
    if (!std::isnan(x)) raise_fault(ErrorNumber::kInvalidCall);
  } else if (std::isfinite(x)) {
    raise_fault(ErrorNumber::kOverflow);
  }
  return result;
}

inline Double examine_logarithm(double x) {
  if (x <= 0.0) raise_fault(ErrorNumber::kInvalidCall);
  return x;
}

inline Double checked_call(double x, double result) {
  if (!std::isfinite(result)) [[unlikely]]
    return examine_function(x, result);
  return result;
}

}  // namespace detail

/// Exponential; fault 6 on overflow.
inline Double Exp(Double x) {
  return detail::checked_call(x.value(), std::exp(x.value()));
}

/// Natural logarithm; fault 5 for zero and below.
inline Double Log(Double x) {
  constexpr double kLargest = std::numeric_limits<double>::max();
  // Looked at before the call, so that the platform never sets its error state.
  if (!(x.value() > 0.0 && x.value() <= kLargest)) [[unlikely]] {
    return detail::examine_logarithm(x.value());
  }
  return std::log(x.value());
}

/// Square root; fault 5 below zero.
inline Double Sqr(Double x) {
  return detail::checked_call(x.value(), std::sqrt(x.value()));
}

/// Arc tangent; never faults.
inline Double Atn(Double x) {
  return std::atan(x.value());
}

/// Circular functions; fault 5 for an infinity.
inline Double Sin(Double x) {
  return detail::checked_call(x.value(), std::sin(x.value()));
}
inline Double Cos(Double x) {
  return detail::checked_call(x.value(), std::cos(x.value()));
}
inline Double Tan(Double x) {
  return detail::checked_call(x.value(), std::tan(x.value()));
}

/// Magnitude.
inline Double Abs(Double x) {
  return std::abs(x.value());
}

/// The whole part, towards zero.
inline Double Fix(Double x) {
  // Larger magnitudes are whole already; below, the conversion is much cheaper than a call.
  constexpr double kWhole = 0x1p52;
  if (!(std::abs(x.value()) < kWhole)) return x;
  return static_cast<double>(static_cast<std::int64_t>(x.value()));
}

/// -1, 0 or 1 (0 for both zeros); a NaN stays one.
inline Double Sgn(Double x) {
  if (x > 0.0) return 1.0;
  if (x < 0.0) return -1.0;
  return x == 0.0 ? Double(0.0) : x;
}

}  // namespace vqmath63
