#include "geometry/cell.hpp"

#include "frame/checked.hpp"
#include "frame/trap.hpp"

namespace vqmath63 {
namespace {

constexpr Location kTriangulateFace{"ztGeometry", "TriangulateFace"};
constexpr Location kPlanesFromFaces{"ztGeometry", "PlanesFromFaces"};
constexpr Location kCubeFaces{"Geometry", "CubeFaces"};
constexpr Location kCubePlanes{"Geometry", "CubePlanes"};

using Corners = Array2<const float>;

Point3D corner(const Corners& corners, std::int64_t k) {
  return {corners(1, k), corners(2, k), corners(3, k)};
}

void outline_of(const Corners& corners, std::int32_t n, Array1<Point3D>& outline) {
  outline.redim(1, n);
  for (std::int32_t k = 1; k <= n; ++k) outline(k) = corner(corners, k);
}

void set_triangle(Array1<Point3D>& triangle, const Array1<Point3D>& face, std::int32_t a,
                  std::int32_t b, std::int32_t c) {
  triangle.redim(1, 3);
  triangle(1) = face(a);
  triangle(2) = face(b);
  triangle(3) = face(c);
}

}  // namespace

void TriangulateFace(const Face3D& face, Array1<Face3D>& triangles, bool& success) {
  trap(kTriangulateFace, [&] {
    success = false;
    if (face.Outline.upper() == 4) {
      const Array1<Point3D> outline = face.Outline;  // the face may be one of `triangles`
      triangles.redim(1, 2);
      set_triangle(triangles(1).Outline, outline, 1, 2, 3);
      set_triangle(triangles(2).Outline, outline, 3, 4, 1);
    }
    success = true;
  });
}

void PlanesFromFaces(const Array1<Face3D>& faces, Array1<Plane3D>& planes, bool& success) {
  trap(kPlanesFromFaces, [&] {
    success = false;
    const std::int32_t n = faces.upper();
    planes.redim(1, n);
    std::int32_t written = 0;
    Array1<Face3D> triangles;  // not cleared between faces: one that is not split repeats the last
    for (std::int32_t i = 1; i <= n; ++i) {
      if (faces(i).Outline.upper() < 3) return;
      bool split = false;
      TriangulateFace(faces(i), triangles, split);
      if (!split) return;
      const std::int32_t m = triangles.upper();
      planes.redim_preserve(planes.upper() + m - 1);
      for (std::int32_t j = 1; j <= m; ++j) {
        planes(++written).Vertices = triangles(j).Outline;
      }
    }
    success = true;
  });
}

void CubeFaces(const Corners& top, const Corners& bottom, Array1<Face3D>& faces, bool& success) {
  trap(kCubeFaces, [&] {
    success = false;
    // Either one serves; the other is read in its first three rows.
    if (bottom.rows().upper != 3 && top.rows().upper != 3) return;
    const std::int32_t n = bottom.columns().upper;
    if (top.columns().upper != n) return;
    const std::int32_t count = to_long(n + 2.0);
    if (!can_size_results(top.columns())) corner(top, 1);  // fails
    faces.redim(1, count);
    outline_of(top, n, faces(1).Outline);
    outline_of(bottom, n, faces(2).Outline);
    for (std::int32_t i = 1; i <= n; ++i) {
      const std::int32_t j = i == n ? 1 : i + 1;
      Array1<Point3D>& side = faces(i + 2).Outline;
      side.redim(1, 4);
      side(1) = corner(bottom, i);
      side(2) = corner(top, i);
      side(3) = corner(top, j);
      side(4) = corner(bottom, j);
    }
    success = true;
  });
}

void CubePlanes(const Corners& top, const Corners& bottom, Array1<Plane3D>& planes, bool& success) {
  trap(kCubePlanes, [&] {
    success = false;
    Array1<Face3D> faces;
    bool built = false;
    CubeFaces(top, bottom, faces, built);
    if (!built) return;
    PlanesFromFaces(faces, planes, success);
  });
}

}  // namespace vqmath63
