// The elementary functions, once for the whole library: as checked steps, and plain.
#pragma once

#include <cmath>
#include <concepts>
#include <cstdint>

#include "elementary/functions.hpp"
#include "frame/checked.hpp"

namespace vqmath63 {

/// The functions themselves, over plain Doubles: those of elementary/, and the square root, which
/// every processor rounds correctly. Infinities and NaN come back where the checked ones below
/// fault, so these are for arguments whose range is known, and for work that looks at its result.
namespace unchecked {

using elementary::atan;
using elementary::atan2;
using elementary::cos;
using elementary::exp;
using elementary::hypot;
using elementary::log;
using elementary::log1p;
using elementary::pow;
using elementary::sin;
using elementary::tan;

inline double sqrt(double x) {
  return std::sqrt(x);  // platform: rounds correctly everywhere
}

}  // namespace unchecked

namespace detail {

// Cold ends, called when a function's result is not finite. A NaN or an infinity that came in flows
// on, unless this call made the NaN.
double examine_function(double x, double result);
double examine_logarithm(double x);

inline Double checked_call(double x, double result) {
  if (!std::isfinite(result)) [[unlikely]]
    return examine_function(x, result);
  return result;
}

}  // namespace detail

/// Exponential; fault 6 on overflow.
inline Double Exp(Double x) {
  return detail::checked_call(x.value(), unchecked::exp(x.value()));
}

/// Natural logarithm; fault 5 for zero and below.
inline Double Log(Double x) {
  const double result = unchecked::log(x.value());
  if (!std::isfinite(result)) [[unlikely]]
    return detail::examine_logarithm(x.value());
  return result;
}

/// Square root; fault 5 below zero.
inline Double Sqr(Double x) {
  return detail::checked_call(x.value(), unchecked::sqrt(x.value()));
}

/// Arc tangent; never faults.
inline Double Atn(Double x) {
  return unchecked::atan(x.value());
}

/// Circular functions; fault 5 for an infinity.
inline Double Sin(Double x) {
  return detail::checked_call(x.value(), unchecked::sin(x.value()));
}
inline Double Cos(Double x) {
  return detail::checked_call(x.value(), unchecked::cos(x.value()));
}
inline Double Tan(Double x) {
  return detail::checked_call(x.value(), unchecked::tan(x.value()));
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

/// For what is written over both kinds of number: the same without a check.
template <class Plain>
concept PlainDouble = std::same_as<Plain, BasicDouble<false>>;

template <PlainDouble Plain>
Plain Exp(Plain x) {
  return unchecked::exp(x.value());
}
template <PlainDouble Plain>
Plain Log(Plain x) {
  return unchecked::log(x.value());
}
template <PlainDouble Plain>
Plain Sqr(Plain x) {
  return unchecked::sqrt(x.value());
}
template <PlainDouble Plain>
Plain Abs(Plain x) {
  return std::abs(x.value());
}

}  // namespace vqmath63
