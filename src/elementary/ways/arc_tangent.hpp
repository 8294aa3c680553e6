#pragma once

#include <utility>

#include "elementary/middle.hpp"
#include "elementary/ways/support.hpp"
#include "elementary/wide_constants.hpp"

namespace vqmath63::elementary::VQ_WAY {
namespace {

constexpr double kArcError = 0x1p-66;  // of the value

// atan(a / b) for 0 <= a <= b: with c, the number of 128ths next to a / b, it is
// atan(c) + atan(t), t = (a - c b) / (b + c a), |t| < 2^-7.
struct Quotient {
  Pair above, below;
};

// c x in two parts, exactly, c of 8 bits.
inline Pair short_product(double c, double x) {
#ifdef VQ_FUSED_WAY
  return product_of(c, x);
#else
  const double upper = upper_bits<44>(x);
  return {c * upper, c * (x - upper)};
#endif
}

inline Quotient quotient(double a, double b, double c) {
  const Pair less = short_product(c, b);
  const Pair more = short_product(c, a);
  const double over = a - less.hi;
  const double above = over - less.lo;
  const Pair below = ordered_sum(b, more.hi);
  return {{above, (over - above) - less.lo}, {below.hi, below.lo + more.lo}};
}

// The quotient comes in two parts, so that the first rounding is one of t^3 / 3, 2^-69 of the
// value.
inline Pair quick_arc(std::uint64_t place, const Quotient& q) {
  const Pair t = quotient_of(q.above, q.below, 1.0 / q.below.hi);
  const double whole = t.hi + t.lo;
  const double square = whole * whole;
  const double series = multiply_add(
      square, multiply_add(square, multiply_add(square, 1.0 / 9, -1.0 / 7), 1.0 / 5), -1.0 / 3);
  const double* arc = &kArcs[2 * (place & 255U)];
  const Pair sum = ordered_sum(arc[0], t.hi);
  return {sum.hi, sum.lo + multiply_add(whole * square, series, arc[1] + t.lo)};
}

// Both numbers times a power of two, so that no product leaves the range; false where they lie
// more than 2^300 apart.
bool within_range(double& y, double& x) {
  constexpr double kHigh = 0x1p500;
  constexpr double kLow = 0x1p-480;
  const double scale = y >= kHigh || x >= kHigh ? 0x1p-600 : 0x1p600;
  const auto inside = [](double v) { return v < kHigh && v > kLow; };
  if (inside(y) && inside(x)) return true;
  y *= scale;
  x *= scale;
  return inside(y) && inside(x);
}

// An angle of the first quadrant, turned to where the signs of the point put it.
[[gnu::noinline]] double sure_angle(double y, double x, double about) {
  const Wide first = sure::angle(std::fabs(y), std::fabs(x), about);
  const Wide angle = std::signbit(x) ? scaled(kWideHalfPi, 1) - first : first;
  return std::copysign(nearest(angle), y);
}

[[gnu::noinline]] double careful_atan(double size) {
  double result;
  const bool settled = size <= 1.0 ? middle::arc(0.0, 1.0, size, 1.0, result)
                                   : middle::arc(1.0, -1.0, 1.0, size, result);
  return settled ? result : nearest(sure::angle(size, 1.0, result));
}

// Quarters of the circle less or more an arc.
inline Pair turned(double quarters, double sign, Pair arc) {
  const Pair sum = ordered_sum(quarters * kHalfPi[0], sign * arc.hi);
  return {sum.hi, sum.lo + (quarters * kHalfPi[1] + sign * arc.lo)};
}

// With a zero or an infinity: eighths of the circle.
double angle_of_axes(double y, double x) {
  if (std::isnan(x) || std::isnan(y)) return x + y;
  const bool left = std::signbit(x);
  double eighths = left ? 4.0 : 0.0;
  if (std::isinf(y)) {
    eighths = !std::isinf(x) ? 2.0 : left ? 3.0 : 1.0;
  } else if (x == 0.0 && y != 0.0) {
    eighths = 2.0;
  }
  // Three eighths round otherwise than three times one eighth.
  return std::copysign(eighths == 3.0 ? 0x1.2d97c7f3321d2p1 : eighths * (0.5 * kHalfPi[0]), y);
}

}  // namespace

double atan(double x) {
  const double size = std::fabs(x);
  Pair value;
  if (size <= 1.0) {
    if (size < 0x1p-27) [[unlikely]]
      return x;  // x - x^3 / 3 rounds to it
    const Rounded place = rounded(size * 128.0);
    const double c = place.value * (1.0 / 128);
    const Pair more = short_product(c, size);
    const Pair below = ordered_sum(1.0, more.hi);
    value = quick_arc(place.bits, {{size - c, 0.0}, {below.hi, below.lo + more.lo}});
  } else if (size < 0x1p60) {
    const Rounded place = rounded(128.0 / size);
    const double c = place.value * (1.0 / 128);
    value = turned(1.0, -1.0, quick_arc(place.bits, quotient(1.0, size, c)));
  } else {
    return std::isnan(x) ? x : std::copysign(kHalfPi[0], x);
  }
  double result;
  if (!settled(value.hi, value.lo, value.hi * kArcError, result)) [[unlikely]]
    return std::copysign(careful_atan(size), x);
  return std::copysign(result, x);
}

double atan2(double y, double x) {
  double up = std::fabs(y);
  double along = std::fabs(x);
  if (!(up > 0.0 && along > 0.0 && up <= kLargest && along <= kLargest)) [[unlikely]]
    return angle_of_axes(y, x);
  if (!within_range(up, along)) [[unlikely]]
    return sure_angle(y, x, up > along ? kHalfPi[0] : 0.0);
  const bool steep = up > along;
  if (steep) std::swap(up, along);
  const Rounded place = rounded(up / along * 128.0);
  const Pair arc = quick_arc(place.bits, quotient(up, along, place.value * (1.0 / 128)));
  const bool left = std::signbit(x);
  const double quarters = steep ? 1.0 : left ? 2.0 : 0.0;
  const double sign = steep == left ? 1.0 : -1.0;
  const Pair value = turned(quarters, sign, arc);
  double result;
  if (!settled(value.hi, value.lo, value.hi * kArcError, result) &&
      !middle::arc(quarters, sign, up, along, result)) [[unlikely]]
    return sure_angle(y, x, steep ? kHalfPi[0] - arc.hi : arc.hi);
  return std::copysign(result, y);
}

}  // namespace vqmath63::elementary::VQ_WAY
