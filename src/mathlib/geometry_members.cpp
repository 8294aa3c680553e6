// The geometry members of ztMathLib.
#include "frame/checked.hpp"
#include "frame/companions.hpp"
#include "frame/trap.hpp"
#include "geometry/cell.hpp"
#include "geometry/polygon.hpp"
#include "geometry/polygon_scan.hpp"
#include "mathlib/locations.hpp"
#include "mathlib/math_lib.hpp"

namespace vqmath63 {
namespace {

using namespace locations;

float larger(float a, float b) {
  return a < b ? b : a;
}

float smaller(float a, float b) {
  return b < a ? b : a;
}

// Whether the ranges a1 .. a2 and b1 .. b2, each in any order, have nothing in common.
bool apart(float a1, float a2, float b1, float b2) {
  return larger(a1, a2) < smaller(b1, b2) || smaller(a1, a2) > larger(b1, b2);
}

Single stored(Double value) {
  return Single(value);
}

// A crossing's parameter along its segment, 1 at the first end point: the tolerance is beyond the
// second one only.
bool on_segment(Single parameter) {
  return !(parameter.value() > 1.0F) && !(static_cast<double>(parameter.value()) < -1e-8);
}

}  // namespace

bool ztMathLib::Point_In_Polygon(const float& x0, const float& y0, const Array1<const float>& X,
                                 const Array1<const float>& Y) const {
  return trap<bool>(kPoint_In_Polygon, [&](bool& result) {
    const std::int32_t n = X.upper();
    if (n != Y.upper()) return;
    // Told before there is memory for all of them.
    if (n < 1 || !X.covers(1, n) || !Y.covers(1, n)) raise_fault(ErrorNumber::kSubscript);
    const auto quick = scan_polygon(x0, y0, &X(1), &Y(1), static_cast<std::size_t>(n));
    if (quick) {
      result = *quick;
      return;
    }
    Array1<Point3D> polygon(1, n);
    for (std::int32_t i = 1; i <= n; ++i) polygon(i) = {X(i), Y(i), 0.0F};
    result = PointInPolygon({x0, y0, 0.0F}, polygon);
  });
}

void ztMathLib::LineIntersect(const float& x1i, const float& y1i, const float& x2i,
                              const float& y2i, const float& x1j, const float& y1j,
                              const float& x2j, const float& y2j, float& xi, float& yi,
                              bool& qInt) const {
  trap(kLineIntersect, [&] {
    xi = 0.0F;
    yi = 0.0F;
    qInt = false;
    if (apart(x1i, x2i, x1j, x2j) || apart(y1i, y2i, y1j, y2j)) return;
    const Single a = Single(x1i) - Single(x2i);
    const Single b = Single(x2j) - Single(x1j);
    const Single c = Single(y1i) - Single(y2i);
    const Single d = Single(y2j) - Single(y1j);
    const Single e = Single(x2j) - Single(x2i);
    const Single f = Single(y2j) - Single(y2i);
    const Double det = d * a - c * b;
    if (static_cast<double>(std::abs(stored(det).value())) < 1e-10) return;
    const Double inverse = Double(1.0) / det;
    const Single s = (d * e - b * f) * inverse;
    const Single t = (a * f - c * e) * inverse;
    if (!on_segment(s) || !on_segment(t)) return;
    qInt = true;
    xi = stored((Single(x1i) - Single(x2i)) * s + Single(x2i)).value();
    yi = stored((Single(y1i) - Single(y2i)) * s + Single(y2i)).value();
  });
}

void ztMathLib::LineCrossPoint(float& x1i, float& y1i, float& x2i, float& y2i, float& x1j,
                               float& y1j, float& x2j, float& y2j, float& xi, float& yi,
                               bool& qInt) const {
  trap(kLineCrossPoint, [&] {
    common_maths()->SegmentCrossPoint(x1i, y1i, x2i, y2i, x1j, y1j, x2j, y2j, xi, yi, qInt);
  });
}

void ztMathLib::GetPointOnLine(const float& x1, const float& y1, const float& Z1, const float& x2,
                               const float& y2, const float& z2, const float& PtZ,
                               const bool& qBetweenPoints, float& PtX, float& PtY,
                               bool& qOK) const {
  trap(kGetPointOnLine, [&] {
    qOK = false;
    if (z2 != Z1) {
      const bool between = (Z1 <= PtZ && PtZ <= z2) || (z2 <= PtZ && PtZ <= Z1);
      if (qBetweenPoints && !between) return;
      const Single f = (Single(PtZ) - Single(Z1)) / (Single(z2) - Single(Z1));
      PtX = stored((Single(x2) - Single(x1)) * f + Single(x1)).value();
      PtY = stored((Single(y2) - Single(y1)) * f + Single(y1)).value();
      qOK = true;
    } else if (x1 == x2 && y1 == y2) {
      PtX = x1;
      PtY = y1;
      qOK = true;
    }
  });
}

bool ztMathLib::Point_In_Cube(const float& x0, const float& y0, const float& z0,
                              const Array2<const float>& sTopFace,
                              const Array2<const float>& sBottomFace) const {
  return trap<bool>(kPoint_In_Cube, [&](bool& result) {
    const Array1<const float> x(&x0, {1, 1}), y(&y0, {1, 1}), z(&z0, {1, 1});
    Array1<Boolean> in_cell;
    bool ok = false;
    Points_In_Cube(x, y, z, sTopFace, sBottomFace, in_cell, ok);
    if (ok) result = in_cell(1);
  });
}

void ztMathLib::Points_In_Cube(const Array1<const float>& X, const Array1<const float>& Y,
                               const Array1<const float>& Z, const Array2<const float>& sTopFace,
                               const Array2<const float>& sBottomFace, Array1<Boolean>& qInCube,
                               bool& qOK) const {
  trap(kPoints_In_Cube, [&] {
    qOK = false;
    Array1<std::int32_t> indices;
    std::int32_t count = 0;
    bool success = false;
    PointsInCube(X, Y, Z, sTopFace, sBottomFace, qInCube, indices, count, success);
    qOK = success;
  });
}

void ztMathLib::Points_In_CubeIndex(const Array1<const float>& X, const Array1<const float>& Y,
                                    const Array1<const float>& Z,
                                    const Array2<const float>& sTopFace,
                                    const Array2<const float>& sBottomFace, std::int32_t& NumPoints,
                                    Array1<std::int32_t>& PointsIndex, Array1<Boolean>& qInCube,
                                    bool& qOK) const {
  trap(kPoints_In_CubeIndex, [&] {
    qOK = false;
    bool success = false;
    PointsInCube(X, Y, Z, sTopFace, sBottomFace, qInCube, PointsIndex, NumPoints, success);
    qOK = success;
  });
}

void ztMathLib::Line_Through_Cube(const Array1<const float>& X, const Array1<const float>& Y,
                                  const Array1<const float>& Z, const Array2<const float>& sTopFace,
                                  const Array2<const float>& sBottomFace, bool& qInCube,
                                  Array2<float>& sIntersectionPoints, bool& qOK) const {
  trap(kLine_Through_Cube, [&] {
    qOK = false;
    if (sTopFace.rows().upper != 3 && sBottomFace.rows().upper != 3) return;
    // Only this one of the wrong combinations is turned away; short arrays fail where they are
    // read.
    const bool two_y = Y.upper() == 2;
    const bool two_z = Z.upper() == 2;
    if (X.upper() != 2 && two_y && two_z) return;
    if (sTopFace.columns().upper != sBottomFace.columns().upper) return;
    Array1<Plane3D> planes;
    bool built = false;
    CubePlanes(sTopFace, sBottomFace, planes, built);
    if (!built) return;
    const Segment3D segment{{X(1), Y(1), Z(1)}, {X(2), Y(2), Z(2)}};
    qInCube = PointIn3DPolygon(segment.P1, planes, true);
    // Written over: hosts read from it whether the segment meets the surface.
    Array1<Point3D> points;
    qInCube = LineIntersectsWith3DPolygon(segment, planes, points);
    if (qInCube) {
      const std::int32_t m = points.upper();
      sIntersectionPoints.redim({1, 3}, {1, m});
      for (std::int32_t k = 1; k <= m; ++k) {
        sIntersectionPoints(1, k) = points(k).X;
        sIntersectionPoints(2, k) = points(k).Y;
        sIntersectionPoints(3, k) = points(k).Z;
      }
    }
    qOK = true;
  });
}

}  // namespace vqmath63
