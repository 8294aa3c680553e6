// ztPetroleum: dead oil, water, and the companion behind the factors.
#include "petroleum/petroleum.hpp"

#include <cmath>
#include <limits>

#include "frame/companion_fixture.hpp"
#include "frame/test_table.hpp"
#include "petroleum/live_oil_table.hpp"

namespace vqmath63 {
namespace {

constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();

class PetroleumTest : public CompanionTest {
 protected:
  ztPetroleum petroleum;
};

TEST_F(PetroleumTest, dead_oil) {
  each_row("petroleum.tsv", "dead oil", 9, [&](const TableRow& row) {
    const std::vector<float> pressures = row["pressures"], factors = row["factors"];
    Array1<float> x = array_of(pressures), y = array_of(factors);
    std::int32_t count = row["count"];
    const std::int32_t error = row["error"];
    float at = row["at"], got = kOld;
    const double want = row["want"];
    bool ok = error != 0;
    petroleum.GetVolumeCorrectionDead(x, y, count, at, got, ok);
    EXPECT_EQ(ok, error == 0);
    EXPECT_NEAR(got, want, 2e-7 * std::fabs(want));
    EXPECT_EQ(contents(x), pressures);
    EXPECT_EQ(contents(y), factors) << "the companion writes into a table of its own";
    EXPECT_EQ(taken(), error_lines(error, "ztPetroleum (Code) (GetVolumeCorrectionDead)"));
  });
}

// A companion that says it could not, or fails, and remembers what it was asked.
class DoubtfulMaths : public ztCommonMaths {
 public:
  double VectorAngle(double, double) override { return 0; }
  void PolarToRectangular(double, double, double&, double&) override {}
  void RectangularToPolar(double, double, double&, double&) override {}
  double ArcTan(double) override { return 0; }
  std::int32_t CeilToLong(double) override { return 0; }
  double CeilToDouble(double) override { return 0; }
  std::int32_t FloorToLong(double) override { return 0; }
  double FloorToDouble(double) override { return 0; }
  void SegmentCrossPoint(float&, float&, float&, float&, float&, float&, float&, float&, float&,
                         float&, bool&) override {}
  void BracketIndex(float& value, Array1<float>& list, std::int32_t& lower, std::int32_t& upper,
                    std::int32_t&) override {
    if (fails) raise_companion_failure(-2147467259);
    asked = value == 15 && list.upper() == 3;
    lower = forced_lower;
    upper = forced_upper;
  }
  void InterpolateTable(Array1<float>& abscissae, std::int32_t& x_column, std::int32_t& y_column,
                        Array2<float>& table, bool& ok, std::int32_t& mode) override {
    if (fails) raise_companion_failure(-2147467259);
    asked = abscissae.upper() == 1 && abscissae(1) == 1.5F && x_column == 1 && y_column == 2 &&
            !ok && mode == 0 && table.rows() == Bounds{1, 2} && table.columns() == Bounds{1, 2} &&
            table(1, 1) == 1 && table(2, 1) == 2 && table(1, 2) == 3 && table(2, 2) == 4;
    table(1, 2) = 42;
    ok = false;
  }
  bool asked = false;
  bool fails = false;
  std::int32_t forced_lower = 2;
  std::int32_t forced_upper = 3;
};

TEST_F(PetroleumTest, companions_are_asked_and_believed) {
  const auto maths = std::make_shared<DoubtfulMaths>();
  companion_makers().CommonMaths = [=] { return maths; };
  Array1<float> x = array_of<float>({1, 2}), y = array_of<float>({3, 4});
  std::int32_t count = 2;
  float at = 1.5F, got = kOld;
  bool ok = false;
  petroleum.GetVolumeCorrectionDead(x, y, count, at, got, ok);
  EXPECT_TRUE(ok) << "True whatever the companion says";
  EXPECT_EQ(got, 42.0F);
  EXPECT_TRUE(maths->asked);
  EXPECT_TRUE(lines.empty());

  maths->fails = true;
  got = kOld;
  petroleum.GetVolumeCorrectionDead(x, y, count, at, got, ok);
  EXPECT_FALSE(ok);
  EXPECT_EQ(got, kOld);
  const Result failed = live(kOil, 15, 90);
  EXPECT_FALSE(failed.ok);
  EXPECT_EQ(failed.factor, kOld);
  constexpr std::int32_t kUnspecified = -2147467259;
  EXPECT_EQ(taken(),
            (Lines{error_line(kUnspecified, "ztPetroleum (Code) (GetVolumeCorrectionDead)"),
                   error_line(kUnspecified, "ztPetroleum (Code) (GetVolumeCorrectionLive)")}));
  // A single curve asks nobody.
  EXPECT_TRUE(live(Table{{10}, {1}, {100, 200, 300}, {2, 1, 1}}, 10, 50).ok);
  // The interval is the companion's: 20 to 40 here, t = -1/4.
  maths->fails = false;
  maths->asked = false;
  EXPECT_NEAR(live(kOil, 15, 90).factor, 1.25 * 1.4 - 0.25 * 1.8, 4e-7);
  EXPECT_TRUE(maths->asked);
  // An upper curve out of the blue.
  maths->forced_upper = kMost;
  EXPECT_FALSE(live(kOil, 15, 90).ok);
}

TEST_F(PetroleumTest, water) {
  each_row("petroleum.tsv", "water", 18, [&](const TableRow& row) {
    for (const std::int32_t given_count : {1, 0, -1, 99}) {
      Array1<float> t1 = array_of<float>(row["reference"]), t2 = array_of<float>(row["factor"]),
                    t3 = array_of<float>(row["compressibility"]);
      std::int32_t count = given_count;
      const std::int32_t error = row["error"];
      const float want = row["want"];
      float at = row["at"], got = kOld;
      bool ok = error != 0;
      petroleum.GetWaterVolumeCorrection(t1, t2, t3, count, at, got, ok);
      EXPECT_EQ(ok, error == 0);
      EXPECT_TRUE(same(got, want)) << got;
      EXPECT_EQ(taken(), error_lines(error, "ztPetroleum (Code) (GetWaterVolumeCorrection)"));
    }
  });
}

}  // namespace
}  // namespace vqmath63
