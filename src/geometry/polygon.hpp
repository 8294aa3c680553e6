// Points against polygons and segments in the X, Y plane, step by step.
#pragma once

#include "geometry/records.hpp"

namespace vqmath63 {

// A polygon is an array of points from 1 to its upper bound; only X and Y are read. It may be given
// closed (last vertex equal to the first) or open. Coordinates are equal when ArithmeticS says that
// their difference is 0: when they agree to a relative 1e-6. A failure is reported under the
// routine's own name and gives false.

/// Whether `point` is inside `polygon`: counts the edges that a ray towards +X crosses. An edge
/// takes part when exactly one of its end points is at or above the point (exact comparisons), and
/// only when it lies to the right by more than the tolerance. So of a box's edges the left and the
/// upper one belong to it. An edge whose ends are tolerantly equal in Y is never crossed.
bool PointInPolygon(const Point3D& point, const Array1<Point3D>& polygon);

/// PointInPolygon, or with qCheckBoundary also a point that is on one of the edges (PointOnLine);
/// the closing edge is looked at last, from vertex 1 to vertex n.
bool PointOnPolygon(const Point3D& point, const Array1<Point3D>& polygon, bool qCheckBoundary);

/// Whether `point` is on `segment`: tolerantly on its line, and exactly within its ranges of X and
/// Y. A vertical segment (ends tolerantly equal in X and not in Y), and one so flat that its slope
/// is 0 as a Single, comes back with X and Y exchanged in both its points, whatever the answer:
/// pass a copy.
bool PointOnLine(const Point3D& point, Segment3D& segment);

}  // namespace vqmath63
