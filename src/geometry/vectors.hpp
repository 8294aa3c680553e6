// Vectors, and lines against planes.
#pragma once

#include "geometry/records.hpp"

namespace vqmath63 {

// Sums and differences of components go through ArithmeticS: a component that cancels to a relative
// 1e-6 is exactly 0. Each other component is worked out in double precision and stored as Single.
// A failure is reported under the routine's own name; the record then holds the components worked
// out before it, and zeros.

/// The vector from A to B: B - A, component by component.
Point3D VectorSubtraction(const Point3D& A, const Point3D& B);

/// A + B, component by component.
Point3D VectorAddition(const Point3D& A, const Point3D& B);

/// U x V.
Point3D CrossProduct(const Point3D& U, const Point3D& V);

/// (A.Y B.Y + A.X B.X) + A.Z B.Z, in this order.
float DotProduct(const Point3D& A, const Point3D& B);

/// V times S.
Point3D ScalarMultVector(const Point3D& V, float S);

/// The normal (v2 - v1) x (v3 - v1), not of unit length, from the first three vertices. With fewer
/// than three `success` is false and `normal` stays as it was.
void NormalVectorToPlane(const Plane3D& plane, Point3D& normal, bool& success);

/// Where the unbounded line through P1 and P2 crosses the unbounded plane. `crosses` is false for a
/// line exactly parallel to it (and for a plane without a normal), `point` then stays as it was;
/// that is a success too.
void PointIntersectionOfLineAndPlane(const Segment3D& line, const Plane3D& plane, bool& crosses,
                                     Point3D& point, bool& success);

/// Whether the plane's polygon contains `point` in all three projections, (X, Y), (X, Z) and
/// (Z, Y), by PointOnPolygon. A plane that stands edge-on to one of them contains a point only when
/// qCheckBoundary is true.
bool PointInBoundedPlane(const Plane3D& plane, const Point3D& point, bool qCheckBoundary);

}  // namespace vqmath63
