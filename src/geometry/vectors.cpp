#include "geometry/vectors.hpp"

#include <cstdint>

#include "frame/checked.hpp"
#include "frame/trap.hpp"
#include "geometry/polygon.hpp"
#include "geometry/work_array.hpp"
#include "tolerant/tolerant_arithmetic.hpp"

namespace vqmath63 {
namespace {

constexpr Location kVectorSubtraction{"Geometry", "VectorSubtraction"};
constexpr Location kVectorAddition{"Geometry", "VectorAddition"};
constexpr Location kCrossProduct{"Geometry", "CrossProduct"};
constexpr Location kDotProduct{"Geometry", "DotProduct"};
constexpr Location kScalarMultVector{"Geometry", "ScalarMultVector"};
constexpr Location kNormalVectorToPlane{"Geometry", "NormalVectorToPlane"};
constexpr Location kPointIntersection{"Geometry", "PointIntersectionOfLineAndPlane"};
constexpr Location kPointInBoundedPlane{"Geometry", "PointInBoundedPlane"};

Double product(float a, float b) {
  return Single(a) * Single(b);
}

float stored(Double value) {
  return Single(value).value();
}

// A point as its projection is tested: the two coordinates that count, as X and Y.
Point3D xy(const Point3D& p) {
  return {p.X, p.Y, 0.0F};
}
Point3D xz(const Point3D& p) {
  return {p.X, p.Z, 0.0F};
}
Point3D zy(const Point3D& p) {
  return {p.Z, p.Y, 0.0F};
}

}  // namespace

Point3D VectorSubtraction(const Point3D& A, const Point3D& B) {
  return trap<Point3D>(kVectorSubtraction, [&](Point3D& result) {
    result.X = ArithmeticS(B.X, A.X, "-");
    result.Y = ArithmeticS(B.Y, A.Y, "-");
    result.Z = ArithmeticS(B.Z, A.Z, "-");
  });
}

Point3D VectorAddition(const Point3D& A, const Point3D& B) {
  return trap<Point3D>(kVectorAddition, [&](Point3D& result) {
    result.X = ArithmeticS(A.X, B.X, "+");
    result.Y = ArithmeticS(A.Y, B.Y, "+");
    result.Z = ArithmeticS(A.Z, B.Z, "+");
  });
}

Point3D CrossProduct(const Point3D& U, const Point3D& V) {
  return trap<Point3D>(kCrossProduct, [&](Point3D& result) {
    result.X = stored(product(U.Y, V.Z) - product(U.Z, V.Y));
    result.Y = stored(product(U.Z, V.X) - product(U.X, V.Z));
    result.Z = stored(product(U.X, V.Y) - product(U.Y, V.X));
  });
}

float DotProduct(const Point3D& A, const Point3D& B) {
  return trap<float>(kDotProduct, [&](float& result) {
    result = stored((product(A.Y, B.Y) + product(A.X, B.X)) + product(A.Z, B.Z));
  });
}

Point3D ScalarMultVector(const Point3D& V, float S) {
  return trap<Point3D>(kScalarMultVector, [&](Point3D& result) {
    result.X = stored(product(V.X, S));
    result.Y = stored(product(V.Y, S));
    result.Z = stored(product(V.Z, S));
  });
}

void NormalVectorToPlane(const Plane3D& plane, Point3D& normal, bool& success) {
  trap(kNormalVectorToPlane, [&] {
    success = false;
    const Array1<Point3D>& v = plane.Vertices;
    if (!(v.upper() > 2)) return;
    const Point3D U = VectorSubtraction(v(1), v(2));
    const Point3D V = VectorSubtraction(v(1), v(3));
    normal = CrossProduct(U, V);
    success = true;
  });
}

void PointIntersectionOfLineAndPlane(const Segment3D& line, const Plane3D& plane, bool& crosses,
                                     Point3D& point, bool& success) {
  trap(kPointIntersection, [&] {
    success = false;
    crosses = false;
    Point3D normal;
    bool has_normal = false;
    NormalVectorToPlane(plane, normal, has_normal);  // without one it is zero: no crossing
    const Point3D W = VectorSubtraction(line.P1, plane.Vertices(1));
    const Point3D D = VectorSubtraction(line.P1, line.P2);
    const float denominator = DotProduct(D, normal);
    if (denominator != 0.0F) {
      crosses = true;
      const float t = stored(Single(DotProduct(W, normal)) / Single(denominator));
      point = VectorAddition(line.P1, ScalarMultVector(D, t));
    }
    success = true;
  });
}

bool PointInBoundedPlane(const Plane3D& plane, const Point3D& point, bool qCheckBoundary) {
  return trap<bool>(kPointInBoundedPlane, [&](bool& result) {
    const std::int64_t n = plane.Vertices.upper();
    WorkArray<Point3D> polygon(n);
    for (const auto projected : {xy, xz, zy}) {
      for (std::int64_t i = 1; i <= n; ++i) polygon(i) = projected(plane.Vertices(i));
      if (!PointOnPolygon(projected(point), polygon.array(), qCheckBoundary)) return;
    }
    result = true;
  });
}

}  // namespace vqmath63
