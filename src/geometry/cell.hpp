// Grid cells: their triangular planes, the points inside them, the segments through them.
#pragma once

#include <cstdint>

#include "frame/array.hpp"
#include "geometry/records.hpp"

namespace vqmath63 {

// Corner arrays are (coordinate 1 to 3, corner 1 to n): X, Y and Z of the corners in order around
// the top or the bottom; corner k of the top lies above corner k of the bottom. A cell has n = 4. A
// pair of corner arrays is accepted when one of the two has 3 as its upper bound of coordinates and
// both have the same upper bound of corners. Wrong shapes leave `success` false and give no
// message; indices outside an array and failed steps are reported under the routine's own name.

/// The two triangles (1, 2, 3) and (3, 4, 1) of a face of four corners. A face of any other number
/// is not split: a success, and `triangles` stays as it was.
void TriangulateFace(const Face3D& face, Array1<Face3D>& triangles, bool& success);

/// The triangles of the faces in order, as planes. The triangles of one face are kept for the next,
/// so a face that is not split repeats those of the face before it; as the first face it fails
/// (error 9). A face of fewer than three corners ends the work with `success` false.
void PlanesFromFaces(const Array1<Face3D>& faces, Array1<Plane3D>& planes, bool& success);

/// The n + 2 faces of a cell: top, bottom, then for each corner i and its successor j the side
/// (bottom i, top i, top j, bottom j).
void CubeFaces(const Array2<const float>& top, const Array2<const float>& bottom,
               Array1<Face3D>& faces, bool& success);

/// The triangular planes of a cell: 12 for four corners, two for the top, two for the bottom, two
/// for each side.
void CubePlanes(const Array2<const float>& top, const Array2<const float>& bottom,
                Array1<Plane3D>& planes, bool& success);

/// Whether `point` is inside the body that `planes` bound: a ray straight up, to 1000 above the
/// highest vertex, turns the answer over at every plane that it crosses. A crossing counts within
/// the exact ranges of the ray and of the plane's projections, so one on an edge that two triangles
/// share, such as a face's diagonal, counts twice. From a point higher than that the ray runs
/// down. A crossing that fails makes the answer false.
bool PointIn3DPolygon(const Point3D& point, const Array1<Plane3D>& planes, bool qCheckBoundary);

/// Whether `segment` meets any of the planes, boundaries included, and where: in the order of the
/// planes, a point for each, so one on a shared edge stands there twice. Without a crossing
/// `crossing_points` stays as it was. A plane that fails ends the search; what was found is kept.
bool LineIntersectsWith3DPolygon(const Segment3D& segment, const Array1<Plane3D>& planes,
                                 Array1<Point3D>& crossing_points);

/// Which of the points (X(i), Y(i), Z(i)), i = 1 to the upper bound of X, are inside the cell: what
/// PointIn3DPolygon answers for each with qCheckBoundary true, to the last bit and message.
/// `in_cell` has an element for each point. `count` is the number inside; `indices` holds theirs in
/// elements 1 to count, and has that size, or that of the points (and zeros) when all or none are
/// inside. What depends on the cell alone is worked out once: a point outside its extent costs
/// nanoseconds, an inner one some tens. No allocation per point.
void PointsInCube(const Array1<const float>& X, const Array1<const float>& Y,
                  const Array1<const float>& Z, const Array2<const float>& top,
                  const Array2<const float>& bottom, Array1<Boolean>& in_cell,
                  Array1<std::int32_t>& indices, std::int32_t& count, bool& success);

}  // namespace vqmath63
