#include <limits>
#include <utility>

#include "elementary/functions.hpp"
#include "elementary/quick.hpp"
#include "elementary/sure.hpp"
#include "elementary/wide_constants.hpp"

namespace vqmath63::elementary {
namespace {

constexpr double kQuickError = 0x1p-66;  // of the value

// atan(a / b) for 0 <= a <= b, near is a / b within 2^-9: with c = near in 128ths, it is
// atan(c) + atan(t), t = (a - c b) / (b + c a), |t| < 2^-7. The quotient comes in 26 bits and the
// rest, so that the first rounding is one of t^3 / 3, 2^-69 of the value.
inline Pair quick_arc(double a, double b, double near) {
  const Rounded place = rounded(near * 128.0);
  const double c = place.value * (1.0 / 128);
  // Products with c, of 8 bits, are exact in two parts.
  const double b_upper = upper_bits<44>(b);
  const double a_upper = upper_bits<44>(a);
  const double over = a - c * b_upper;
  const double less = c * (b - b_upper);
  const double above = over - less;
  const double above_rest = (over - above) - less;
  const double more = c * a_upper;
  const double below = b + more;
  const double below_rest = ((b - below) + more) + c * (a - a_upper);

  const double inverse = 1.0 / below;
  const double t = upper_bits<26>(above * inverse);
  const double below_upper = upper_bits<26>(below);
  const double left =
      ((above - t * below_upper) - t * ((below - below_upper) + below_rest)) + above_rest;
  const double t_rest = left * inverse;
  const double whole = t + t_rest;
  const double square = whole * whole;
  const double cubic =
      whole * square *
      (-1.0 / 3 + square * (1.0 / 5 + square * (-1.0 / 7 + square * (1.0 / 9 - square / 11))));
  const double* arc = &kArcs[2 * static_cast<std::size_t>(place.integer)];
  const Pair sum = ordered_sum(arc[0], t);
  return {sum.hi, sum.lo + (arc[1] + (t_rest + cubic))};
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
    if (size < 0x1p-27) return x;  // x - x^3 / 3 rounds to it
    value = quick_arc(size, 1.0, size);
  } else if (size < 0x1p60) {
    value = turned(1.0, -1.0, quick_arc(1.0, size, 1.0 / size));
  } else {
    return std::isnan(x) ? x : std::copysign(kHalfPi[0], x);
  }
  double result;
  if (!settled(value.hi, value.lo, value.hi * kQuickError, result)) [[unlikely]]
    return std::copysign(nearest(sure::angle(size, 1.0, result)), x);
  return std::copysign(result, x);
}

double atan2(double y, double x) {
  constexpr double kLargest = std::numeric_limits<double>::max();
  double up = std::fabs(y);
  double along = std::fabs(x);
  if (!(up > 0.0 && along > 0.0 && up <= kLargest && along <= kLargest)) [[unlikely]]
    return angle_of_axes(y, x);
  if (!within_range(up, along)) [[unlikely]]
    return sure_angle(y, x, up > along ? kHalfPi[0] : 0.0);
  const bool steep = up > along;
  if (steep) std::swap(up, along);
  const Pair arc = quick_arc(up, along, up / along);
  const bool left = std::signbit(x);
  Pair value = arc;
  if (steep) {
    value = turned(1.0, left ? 1.0 : -1.0, arc);
  } else if (left) {
    value = turned(2.0, -1.0, arc);
  }
  double result;
  if (!settled(value.hi, value.lo, value.hi * kQuickError, result)) [[unlikely]]
    return sure_angle(y, x, steep ? kHalfPi[0] - arc.hi : arc.hi);
  return std::copysign(result, y);
}

}  // namespace vqmath63::elementary
