// Vector arithmetic, lines against planes, faces and their triangles.
#include "geometry/vectors.hpp"

#include "geometry/shapes.hpp"

namespace vqmath63 {
namespace {

using Points = std::vector<Point3D>;

class VectorsTest : public CompanionTest {};

TEST_F(VectorsTest, arithmetic) {
  EXPECT_EQ(VectorSubtraction({1, 2, 3}, {1.0000005F, 5, 3}), (Point3D{0, 3, 0}));
  EXPECT_EQ(VectorAddition({1, 2, -3}, {-1.0000005F, 5, 4}), (Point3D{0, 7, 1}));
  EXPECT_EQ(CrossProduct({1, 2, 3}, {4, 5, 7}), (Point3D{-1, 5, -3}));
  // Worked out in double precision: the products alone are not Singles.
  EXPECT_EQ(CrossProduct({0, 16777215, 16777214}, {0, 16777213, 16777212}).X, -2.0F);
  EXPECT_EQ(ScalarMultVector({1, -2, 4}, 0.5F), (Point3D{0.5F, -1, 2}));
  EXPECT_EQ(DotProduct({1, 2, 3}, {4, 5, 6}), 32);
  // Y first, then X, then Z: 1e16 swallows what comes before it is taken away.
  EXPECT_EQ(DotProduct({1, 1e8F, -1e8F}, {1, 1e8F, 1e8F}), 0);
  EXPECT_EQ(DotProduct({-1e8F, 1e8F, 1}, {1e8F, 1e8F, 1}), 1);
  EXPECT_TRUE(lines.empty());
}

TEST_F(VectorsTest, components_before_a_failure_are_kept) {
  const auto line_for = [](const char* routine) {
    return error_line(6, std::string("Geometry (Code) (") + routine + ")");
  };
  EXPECT_EQ(ScalarMultVector({1, 3e38F, 1}, 2), (Point3D{2, 0, 0}));
  EXPECT_EQ(CrossProduct({0, 1, 2e20F}, {1e20F, 0, 1}), (Point3D{1, 0, 0}));
  EXPECT_EQ(DotProduct({2e20F, 0, 0}, {2e20F, 0, 0}), 0);
  EXPECT_EQ(lines, (std::vector{line_for("ScalarMultVector"), line_for("CrossProduct"),
                                line_for("DotProduct")}));
  lines.clear();
  // The difference that fails is 0 and the others follow.
  EXPECT_EQ(VectorSubtraction({-3e38F, 1, 1}, {3e38F, 3, kNaN}).Y, 2);
  EXPECT_EQ(lines, std::vector{error_line(6, "ztMathLib (Code) (ArithmeticS)")});
}

TEST_F(VectorsTest, normals) {
  Point3D normal{7, 7, 7};
  bool success = true;
  NormalVectorToPlane(plane_of({{0, 0, 0}, {1, 0, 0}}), normal, success);
  EXPECT_FALSE(success);
  EXPECT_EQ(normal, (Point3D{7, 7, 7}));
  NormalVectorToPlane(plane_of({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {9, 9, 9}}), normal, success);
  EXPECT_TRUE(success);
  EXPECT_EQ(normal, (Point3D{0, 0, 1}));
  EXPECT_TRUE(lines.empty());
  NormalVectorToPlane(plane_of({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, 2), normal, success);
  NormalVectorToPlane({}, normal, success);
  EXPECT_FALSE(success);
  EXPECT_EQ(lines, std::vector(2, error_line(9, "Geometry (Code) (NormalVectorToPlane)")));
}

TEST_F(VectorsTest, lines_and_planes) {
  const Plane3D level = plane_of({{0, 0, 2}, {1, 0, 2}, {0, 1, 2}});
  struct Row {
    const char* name;
    Segment3D line;
    Plane3D plane;
    bool crosses, success;
    Point3D at;
  };
  const Point3D kept{7, 7, 7};
  const Row rows[] = {
      {"within", {{1, 1, 0}, {3, 1, 4}}, level, true, true, {2, 1, 2}},
      {"beyond an end", {{1, 1, 4}, {2, 1, 6}}, level, true, true, {0, 1, 2}},
      {"parallel", {{1, 1, 0}, {3, 1, 0}}, level, false, true, kept},
      {"two vertices", {{1, 1, 0}, {3, 1, 4}}, plane_of({{0, 0, 2}, {1, 0, 2}}), false, true, kept},
      // The crossing is known to be there before its place fails.
      {"far away",
       {{0, 0, 0}, {1e-30F, 0, 1e-30F}},
       plane_of({{0, 0, 1e20F}, {1, 0, 1e20F}, {0, 1, 1e20F}}),
       true,
       false,
       kept},
      {"no vertices", {{1, 1, 0}, {3, 1, 4}}, {}, false, false, kept},
  };
  for (const Row& row : rows) {
    bool crosses = !row.crosses, success = !row.success;
    Point3D at = kept;
    PointIntersectionOfLineAndPlane(row.line, row.plane, crosses, at, success);
    EXPECT_EQ(crosses, row.crosses) << row.name;
    EXPECT_EQ(success, row.success) << row.name;
    EXPECT_EQ(at, row.at) << row.name;
  }
  const std::string place = "Geometry (Code) (PointIntersectionOfLineAndPlane)";
  EXPECT_EQ(lines, (std::vector{error_line(6, place),
                                error_line(9, "Geometry (Code) (NormalVectorToPlane)"),
                                error_line(9, place)}));
}

TEST_F(VectorsTest, bounded_planes_have_vertices_from_1) {
  EXPECT_FALSE(PointInBoundedPlane(plane_of({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, 2), {}, true));
  EXPECT_EQ(lines, std::vector{error_line(9, "Geometry (Code) (PointInBoundedPlane)")});
}

TEST_F(VectorsTest, faces_that_are_not_split_repeat_the_face_before) {
  const Face3D square{array_of(Points{{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}})};
  const Face3D triangle{array_of(Points{{5, 5, 5}, {6, 5, 5}, {5, 6, 5}})};
  const Face3D line{array_of(Points{{5, 5, 5}, {6, 5, 5}})};
  Array1<Face3D> triangles = array_of(std::vector{line});
  bool success = false;
  TriangulateFace(triangle, triangles, success);
  EXPECT_TRUE(success);
  EXPECT_EQ(triangles.upper(), 1);
  EXPECT_EQ(contents(triangles(1).Outline), contents(line.Outline));

  Array1<Plane3D> planes;
  PlanesFromFaces(array_of(std::vector{square, triangle}), planes, success);
  EXPECT_TRUE(success);
  ASSERT_EQ(planes.upper(), 4);
  const Points first = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}},
               second = {{1, 1, 0}, {0, 1, 0}, {0, 0, 0}};
  for (const std::int32_t k : {1, 3}) {
    EXPECT_EQ(contents(planes(k).Vertices), first) << k;
    EXPECT_EQ(contents(planes(k + 1).Vertices), second) << k;
  }
  PlanesFromFaces(array_of(std::vector{square, line}), planes, success);
  EXPECT_FALSE(success);
  EXPECT_EQ(planes.upper(), 3);
  EXPECT_TRUE(lines.empty());
  triangles = array_of(std::vector{square});
  TriangulateFace(triangles(1), triangles, success);  // into the array it stands in
  EXPECT_EQ(contents(triangles(1).Outline), first);
  EXPECT_EQ(contents(triangles(2).Outline), second);
  PlanesFromFaces(array_of(std::vector{triangle, square}), planes, success);
  EXPECT_FALSE(success);
  TriangulateFace({array_of(Points{{0, 0, 0}, {1, 0, 0}, {1, 1, 0}}, 2)}, triangles, success);
  EXPECT_FALSE(success);
  EXPECT_EQ(lines, (std::vector{error_line(9, "ztGeometry (Code) (PlanesFromFaces)"),
                                error_line(9, "ztGeometry (Code) (TriangulateFace)")}));
}

}  // namespace
}  // namespace vqmath63
