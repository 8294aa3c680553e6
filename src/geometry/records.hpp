// The records of the geometry: points, segments, outlines of faces, bounded planes.
#pragma once

#include "frame/array.hpp"

namespace vqmath63 {

/// A point, or a vector. All coordinates share one unit of the host's choice.
struct Point3D {
  float X = 0.0F;
  float Y = 0.0F;
  float Z = 0.0F;
  friend constexpr bool operator==(const Point3D&, const Point3D&) = default;
};

/// A segment from P1 to P2.
struct Segment3D {
  Point3D P1;
  Point3D P2;
};

/// The outline of a face: its corners in order, indexed from 1.
struct Face3D {
  Array1<Point3D> Outline;
};

/// A bounded plane: its vertices in order, indexed from 1. The first three span it.
struct Plane3D {
  Array1<Point3D> Vertices;
};

}  // namespace vqmath63
