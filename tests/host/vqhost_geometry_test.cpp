// The commands on grid cells and polygons: points inside, and crossings of segments.
#include "host/vqhost_program.hpp"

namespace vqmath63::host {
namespace {

// 100 x 100, its bottom at 0, its top from 10 (y = 0) to 14 (y = 100).
const char* const kTop = "top,0,0,10\ntop,100,0,10\ntop,100,100,14\ntop,0,100,14\n";
const char* const kBottom = "bottom,0,0,0\nbottom,100,0,0\nbottom,100,100,0\nbottom,0,100,0\n";
// The same on a map.
const char* const kFar =
    "x,y,z\n431000,6712000,10\n431100,6712000,10\n431100,6712100,14\n431000,6712100,14\n"
    "431000,6712000,0\n431100,6712000,0\n431100,6712100,0\n431000,6712100,0\n";
const char* const kPoints =
    "well,x,y,z\nA,30,20,5\nB,30,20,10.5\nC,30.0,20,11\nD,70,90,13\nE,120,20,5\nF,50,50,5\n";

class VqhostGeometry : public VqhostCommands {
 protected:
  void SetUp() override {
    VqhostCommands::SetUp();
    write("cell.csv", std::string("face,x,y,z\n") + kTop + kBottom);
    write("points.csv", kPoints);
  }
};

TEST_F(VqhostGeometry, TellsPointsInside) {
  write("plain.csv",
        "e;n;d\n0;0;10\n100;0;10\n100;100;14\n0;100;14\n0;0;0\n100;0;0\n100;100;0\n0;100;0\n");
  write("words.csv",
        "part,corner,e,n,d\nBottom,1,0,0,0\nbottom,2,100,0,0\nbottom,3,100,100,0\n"
        "bottom,4,0,100,0\nTOP,1,0,0,10\ntop,2,100,0,10\ntop,3,100,100,14\n"
        "top,4,0,100,14\n");
  write("named.csv", "inside,depth,n,e\n1,5,20,30\n2,12,20,30\n");
  write("far.csv", kFar);
  write("near.csv", "x,y,z\n431001.5,6712000.25,5\n431030.5,6712020.25,10.5\n431001,6711999,5\n");
  write("slanted.csv",
        "x,y,z\n40,40,10\n60,40,10\n60,60,10\n40,60,10\n"
        "0,0,0\n100,0,0\n100,100,0\n0,100,0\n");
  write("under.csv", "x,y,z\n20,20,1\n20,10,1\n20,20,20\n50,40,1\n50,41,1\n");
  write("huge.csv",
        "x,y,z\n0,0,1e30\n1e30,0,1e30\n1e30,1e30,1e30\n0,1e30,1e30\n"
        "0,0,0\n1e30,0,0\n1e30,1e30,0\n0,1e30,0\n");
  write("polygon.csv", "x,y\n0,0\n100,0\n0,100\n");
  write("map.csv", "x,y\n431000,6712000\n431010,6712000\n431000,6712010\n");
  write("gap.csv", "x,y,z\n1,2,3\n1,,3\n");
  const std::string axis = "vqhost: faces of the cell are parallel to an axis";
  const std::string doubt = "vqhost: 1 point lies in line with a diagonal or edge of the cell";
  const Row rows[] = {
      {"inside points.csv cell.csv",
       0,
       {"3 of 6 points are inside the cell\nwell   x   y     z\nA     30  20   5\n"
        "B     30  20  10.5\nD     70  90  13\n"},
       {axis, doubt}},
      {"inside points.csv cell.csv --all -o -",
       0,
       {"well,x,y,z,inside\nA,30,20,5,True\nB,30,20,10.5,True\nC,30.0,20,11,False\n"
        "D,70,90,13,True\nE,120,20,5,False\nF,50,50,5,False\n"},
       {axis, doubt, "vqhost: 3 of 6 points are inside the cell\n"}},
      {"inside - plain.csv -o out.csv <points.csv",
       0,
       {"inside the cell\nout.csv: 3 rows\n"},
       {axis, doubt}},
      {"inside named.csv words.csv --columns e,n,depth --all -o -",
       0,
       {"inside,depth,n,e,inside_\n1,5,20,30,True\n2,12,20,30,False\n"},
       {axis, "1 of 2 points is inside"}},
      {"inside points.csv cell.csv --cell-columns x,z,y",
       0,
       {"0 of 6 points are inside the cell\n"},
       {axis}},
      // Seen from aside, the middle is below no diagonal.
      {"inside points.csv cell.csv --oblique", 0, {"4 of 6 points", "D     70", "F     50"}, {}},
      // In Singles everything within 6.7 of a face is on it.
      {"inside near.csv far.csv --oblique",
       0,
       {"2 of 3 points are inside", "431001.5  6712000.25   5"},
       {}},
      {"inside near.csv far.csv",
       0,
       {"of 3 points"},
       {"as large as 6712100 are equal within 6.7121, much beside an extent of 100; --oblique"}},
      // Below the pillar from (0, 0, 0) to (40, 40, 10), beside it, above all; below the top's
      // edge, and beside it.
      {"inside under.csv slanted.csv", 0, {"5 points"}, {axis, "2 points lie in line"}},
      {"inside points.csv huge.csv",
       1,
       {"of 6 points"},
       {axis, "Error:Overflow", "counts as outside"}},
      {"inside points.csv --polygon polygon.csv",
       0,
       {"3 of 6 points are inside the polygon\n", "A ", "B ", "C "},
       {}},
      {"inside near.csv --polygon map.csv --oblique", 0, {"1 of 3 points is", "431001.5"}, {}},
      {"inside near.csv --polygon map.csv", 0, {"of 3 points"}, {"--oblique avoids that"}},
      {"inside gap.csv cell.csv", 1, {}, {axis, "gap.csv:3: column 2 (y): the value is missing"}},
      {"inside points.csv --polygon gap.csv", 1, {}, {"gap.csv:3: column 2 (y): the value is"}},
      {"inside points.csv --polygon near.csv --cell-columns 1", 2, {}, {"--cell-columns: 2 col"}},
      {"inside points.csv", 2, {}, {"one of CELL and --polygon must be given"}},
      {"inside points.csv cell.csv --polygon polygon.csv", 2, {}, {"one of CELL and --polygon"}},
      {"inside points.csv cell.csv -o cell.csv", 2, {}, {"-o names the input file itself"}},
      {"inside --help", 0, {"face,x,y,z", "Limits:", "shift such a point", "Examples:"}, {}},
  };
  expect_all(rows);
}

// The body 0 < x < 100, 0 < y < 100, 0 < z < 10 + y / 25, moved to coordinates of a map.
TEST_F(VqhostGeometry, SeenObliquelyEveryPointIsAnsweredRightly) {
  write("far.csv", kFar);
  std::string points = "x,y,z\n";
  std::vector<std::string> want;
  for (int i = 0; i < 8000; ++i) {
    const double x = -7.3 + 6.1 * (i % 20);
    const double y = -4.9 + 5.7 * (i / 20 % 20);
    const double z = -3.1 + 0.93 * (i / 400);
    points += std::to_string(431000 + x) + "," + std::to_string(6712000 + y) + "," +
              std::to_string(z) + "\n";
    const bool inside = x > 0 && x < 100 && y > 0 && y < 100 && z > 0 && z < 10 + y / 25;
    want.push_back(inside ? "True" : "False");
  }
  write("grid.csv", points);
  const auto lines = lines_of(run("inside grid.csv far.csv --oblique --all -o -").out);
  ASSERT_EQ(lines.size(), want.size() + 1);
  for (std::size_t i = 0; i < want.size(); ++i) {
    EXPECT_EQ(fields_of(lines[i + 1]).back(), want[i]) << lines[i + 1];
  }
}

TEST_F(VqhostGeometry, RefusesMalformedCellsBeforeAnyAnswer) {
  const std::string bottom = kBottom;
  const struct {
    std::string cell;
    const char* message;
  } rows[] = {
      {"x,y,z\n", "t.csv: the file has a header and no rows"},
      {"x,y\n1,2\n", "t.csv: there is no column '3' (columns: x, y)"},
      {"z,y,a\n1,2,3\n", "t.csv: which columns are x, y, z? --cell-columns COL,... says it"},
      {"x,y,z\n0,0,1\n1,0,1\n1,1,1\n0,1,1\n0,0,0\n1,0,0\n1,1,0\n",
       "t.csv: the bottom has 3 corners"},
      {"x,y,z\n0,0,1\n1,0,1\n1,1,1\n0,1,1\n0,0,0\n1,0,0\n1,1,0\n0,1,0\n0,0,0\n",
       "t.csv:10: a fifth corner of the bottom"},
      {"face,x,y,z\n" + bottom + bottom, "t.csv:6: a fifth corner of the bottom"},
      {"face,x,y,z\n" + bottom + "side,1,1,1\n", "t.csv:6: 'side' is neither top nor bottom"},
      {"face,x,y,z\n" + bottom + "top,0,0,a\n", "t.csv:6: column 4 (z): 'a' is not a number"},
      {"face,x,y,z\n" + bottom + "top,0,nan,9\n", "t.csv:6: column 3 (y): the value is missing"},
      {"face,x,y,z\ntop,0,0,1\ntop,1,0,1\ntop,1,1,1e39\ntop,0,1,1\n" + bottom,
       "t.csv:4: column 4 (z): 1e+39 is too large for a Single"},
      {"face,x,y,z\ntop,0,0,1\ntop,1,0,1\ntop,0,1,1\ntop,1,1,1\n" + bottom,
       "t.csv:4: the corners of the top do not go around it: its edges 2-3 and 4-1 cross"},
      {"face,x,y,z\n" + bottom + "top,0,0,1\ntop,1,1,1\ntop,1,0,1\ntop,0,1,1\n",
       "t.csv:8: the corners of the top do not go around it: its edges 1-2 and 3-4 cross"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.cell);
    write("t.csv", row.cell);
    for (const char* command :
         {"inside points.csv t.csv -o -", "crossing t.csv --from 1,1,1 --to 1,1,9"}) {
      const Outcome outcome = run(command);
      EXPECT_EQ(outcome.status, 1);
      EXPECT_EQ(outcome.out, "");
      expect_in_order(outcome.err, {row.message}, "the error stream");
    }
  }
}

TEST_F(VqhostGeometry, FindsCrossings) {
  write("path.csv", "md,x,y,z\n0,-10,20,5\n60,50,20,5\n70,60,25,5\n100,60,25,27.5\n");
  write("one.csv", "x,y,z\n1,2,3\n");
  write("segments.csv", "x1,y1,z1,x2,y2,z2\n-10,20,-5,110,20,-5\n140,20,5,-60,20,5\n");
  write("far.csv", kFar);
  const std::string axis = "vqhost: faces of the cell are parallel to an axis";
  const std::string ends = "the segment does not meet the cell's surface; ";
  const Row rows[] = {
      // The top at y = 25 is at 11, 0.8 of the way from -5 to 15; top first.
      {"crossing cell.csv --from 30,25,-5 --to 30,25,15",
       0,
       {"meets 2 triangles of the cell's surface; both its ends are outside\n",
        " x   y   z  position\n30  25  11      0.8\n30  25   0      0.25\n"},
       {axis}},
      {"crossing cell.csv --from 50,50,5 --to 50,50,25", 0, {"2 triangles", "12", "12"}, {axis}},
      {"crossing cell.csv --from 30,25,2 --to 30,20,5",
       0,
       {ends + "both its ends are inside\n"},
       {axis}},
      {"crossing cell.csv --from -1,-25,2 --to -30,20,5 -o -",
       0,
       {"x,y,z,position\n"},
       {axis, ends + "both its ends are outside\n"}},
      {"crossing cell.csv --from 30,25,5 --to 30,25,15",
       0,
       {"1 triangle", "it begins inside and"},
       {axis}},
      {"crossing cell.csv --path path.csv",
       0,
       {"2 of 3 segments meet the cell's surface\nsegment   x   y   z    position\n",
        "1   0  20   5  0.16666667\n", "3  60  25  11  0.26666668\n"},
       {axis}},
      {"crossing cell.csv --segments segments.csv -o out.csv",
       0,
       {"1 of 2 segments meets the cell's surface\nout.csv: 2 rows\n"},
       {axis}},
      {"crossing cell.csv --from 1,2 --to 1,2,3", 2, {}, {"--from: X,Y,Z is wanted, not '1,2'"}},
      {"crossing cell.csv --from 1,2,3 --to 1,b,3", 2, {}, {"--to: 'b' is not a number"}},
      {"crossing cell.csv --from 1,2,nan --to 1,2,3", 2, {}, {"--from: 'nan' is not a number"}},
      {"crossing cell.csv --from 1,2,3 --to 1,1e39,3", 2, {}, {"--to: 1e+39 is too large for a"}},
      {"crossing cell.csv --from 1,2,3", 2, {}, {"--to is missing"}},
      {"crossing cell.csv", 2, {}, {"one is wanted: --from and --to, --segments or --path"}},
      {"crossing cell.csv --path a --segments b", 2, {}, {"one is wanted"}},
      {"crossing cell.csv --path one.csv", 1, {}, {axis, "one.csv: a path has 2 rows or more"}},
      {"crossing cell.csv --path path.csv -o path.csv", 2, {}, {"-o names the input file itself"}},
      {"crossing --help", 0, {"twelve triangles", "wholly inside meets nothing", "Examples:"}, {}},
  };
  expect_all(rows);
  // Beside millions, y = 25.125 is kept: the top there is at 11.005.
  const Outcome far =
      run("crossing far.csv --oblique --from 431030.5,6712025.125,-5 --to 431030.5,6712025.125,15 "
          "-o -");
  EXPECT_EQ(far.err,
            "vqhost: the segment meets 2 triangles of the cell's surface; both its ends "
            "are outside\n");
  const double want[2][4] = {{431030.5, 6712025.125, 11.005, 0.80025},
                             {431030.5, 6712025.125, 0.0, 0.25}};
  const auto lines = lines_of(far.out);
  ASSERT_EQ(lines.size(), 3U);
  for (std::size_t i = 0; i < 2; ++i) {
    for (std::size_t c = 0; c < 4; ++c) {
      EXPECT_NEAR(number_in(fields_of(lines[i + 1]).at(c)), want[i][c], 2e-5) << lines[i + 1];
    }
  }
}

}  // namespace
}  // namespace vqmath63::host
