// Angles, rounding, table look-up and segment crossing of the mathematical companion.
#include "frame/common_maths.hpp"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <optional>
#include <span>
#include <vector>

#include "frame/checked_functions.hpp"
#include "frame/fault.hpp"

namespace vqmath63 {
namespace {

// Value at `abscissa` of the polyline through (x(i), y(i)); x ascends and has an element.
float interpolate(std::span<const float> x, std::span<const float> y, Single abscissa) {
  if (x.size() == 1) return y.front();
  if (std::isnan(abscissa.value())) return abscissa.value();
  const auto above =
      std::partition_point(x.begin(), x.end(), [=](float xi) { return xi < abscissa.value(); });
  const auto i = static_cast<std::size_t>(above - x.begin());
  // The first of the rows that stand exactly at the abscissa.
  if (i < x.size() && x[i] == abscissa.value()) return y[i];
  const std::size_t b = std::clamp<std::size_t>(i, 1, x.size() - 1);
  const std::size_t a = b - 1;
  if (x[a] == x[b]) return y[a];
  const Single xa = x[a];
  const Single ya = y[a];
  const Double t = (abscissa - xa) / (Single(x[b]) - xa);
  return Single(ya + t * (Single(y[b]) - ya)).value();
}

struct Point {
  Single x;
  Single y;
};

// Twice the signed area of the triangle a, b, p: its sign tells the side of a-b that p is on.
Double side(const Point& a, const Point& b, const Point& p) {
  return (b.x - a.x) * (p.y - a.y) - (b.y - a.y) * (p.x - a.x);
}

bool on_both_sides(Double s1, Double s2) {
  return (s1 <= 0.0 && s2 >= 0.0) || (s1 >= 0.0 && s2 <= 0.0);
}

// Also when one of the segments is a single point.
bool parallel(const Point& a, const Point& b, const Point& c, const Point& d) {
  return (b.x - a.x) * (d.y - c.y) == (b.y - a.y) * (d.x - c.x);
}

std::optional<Point> crossing(const Point& a, const Point& b, const Point& c, const Point& d) {
  if (parallel(a, b, c, d)) return std::nullopt;
  const Double side_c = side(a, b, c);
  const Double side_d = side(a, b, d);
  const Double side_a = side(c, d, a);
  const Double side_b = side(c, d, b);
  if (!on_both_sides(side_c, side_d) || !on_both_sides(side_a, side_b)) return std::nullopt;
  // An end point on the other segment is the crossing as it stands, free of rounding (for a, t is
  // 0 and says so itself).
  if (side_b == 0.0) return b;
  if (side_c == 0.0) return c;
  if (side_d == 0.0) return d;
  const Double t = side_a / (side_a - side_b);
  return Point{a.x + t * (b.x - a.x), a.y + t * (b.y - a.y)};
}

}  // namespace

double BuiltInCommonMaths::VectorAngle(double X, double Y) {
  if (Y == 0.0) {
    // Whatever the signs of the zeros: the range is open at -pi.
    if (X == 0.0) return 0.0;
    if (X < 0.0) return std::numbers::pi;
  }
  return unchecked::atan2(Y, X);
}

void BuiltInCommonMaths::PolarToRectangular(double Radius, double Theta, double& X, double& Y) {
  const Double x = Double(Radius) * Cos(Theta);
  const Double y = Double(Radius) * Sin(Theta);
  X = x.value();
  Y = y.value();
}

void BuiltInCommonMaths::RectangularToPolar(double X, double Y, double& Radius, double& Theta) {
  const double radius = unchecked::hypot(X, Y);
  if (std::isinf(radius) && std::isfinite(X) && std::isfinite(Y)) {
    raise_fault(ErrorNumber::kOverflow);
  }
  Radius = radius;
  Theta = VectorAngle(X, Y);
}

double BuiltInCommonMaths::ArcTan(double x) {
  return unchecked::atan(x);
}

std::int32_t BuiltInCommonMaths::CeilToLong(double X) {
  return to_long(std::ceil(X));
}

double BuiltInCommonMaths::CeilToDouble(double X) {
  return std::ceil(X);
}

std::int32_t BuiltInCommonMaths::FloorToLong(double X) {
  return to_long(std::floor(X));
}

double BuiltInCommonMaths::FloorToDouble(double X) {
  return std::floor(X);
}

void BuiltInCommonMaths::BracketIndex(float& value, Array1<float>& list, std::int32_t& lower,
                                      std::int32_t& upper, std::int32_t& spare) {
  const std::int32_t n = list.upper();
  if (n < 2 || !list.covers(1, n)) raise_fault(ErrorNumber::kSubscript);
  const float* const first = &list(1);
  const float* at = first;
  // The interval is one of `left` that begin at `at`. Without branches on the data: the values
  // that a host asks for come in any order.
  for (std::int32_t left = n - 1; left > 1;) {
    const std::int32_t half = left / 2;
    at += at[half] <= value ? half : 0;
    left -= half;
  }
  lower = static_cast<std::int32_t>(at - first) + 1;
  upper = lower + 1;
  spare = 0;
}

void BuiltInCommonMaths::InterpolateTable(Array1<float>& abscissae, std::int32_t& x_column,
                                          std::int32_t& y_column, Array2<float>& table, bool& ok,
                                          std::int32_t& /*mode*/) {
  ok = false;
  const std::int32_t count = abscissae.upper();
  const std::int32_t rows = table.rows().upper;
  const Bounds columns = table.columns();
  if (rows < 1 || table.rows().lower > 1 || count > rows || !abscissae.covers(1, count) ||
      !columns.contains(x_column) || !columns.contains(y_column)) {
    raise_fault(ErrorNumber::kSubscript);
  }
  const auto column = [&](std::int32_t c) {
    return std::span<float>(&table(1, c), static_cast<std::size_t>(rows));
  };
  const std::span<float> y = column(y_column);
  std::vector<float> values;
  values.reserve(static_cast<std::size_t>(std::max(count, 0)));
  for (std::int32_t k = 1; k <= count; ++k) {
    values.push_back(interpolate(column(x_column), y, abscissae(k)));
  }
  std::copy(values.begin(), values.end(), y.begin());
  ok = true;
}

void BuiltInCommonMaths::SegmentCrossPoint(float& x1i, float& y1i, float& x2i, float& y2i,
                                           float& x1j, float& y1j, float& x2j, float& y2j,
                                           float& xi, float& yi, bool& qInt) {
  // Copies: the host may want the point in a variable that holds a coordinate.
  const Point a{x1i, y1i};
  const Point b{x2i, y2i};
  const Point c{x1j, y1j};
  const Point d{x2j, y2j};
  xi = 0.0F;
  yi = 0.0F;
  qInt = false;
  if (const std::optional<Point> point = crossing(a, b, c, d)) {
    xi = point->x.value();
    yi = point->y.value();
    qInt = true;
  }
}

}  // namespace vqmath63
