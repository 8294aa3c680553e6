// ztPetroleum: dead oil, water, and the companion behind the factors.
#include "petroleum/petroleum.hpp"

#include <cmath>
#include <limits>

#include "frame/companion_fixture.hpp"
#include "petroleum/live_oil_table.hpp"

namespace vqmath63 {
namespace {

constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();

class PetroleumTest : public CompanionTest {
 protected:
  ztPetroleum petroleum;
};

TEST_F(PetroleumTest, dead_oil) {
  const std::vector<float> pressure{300, 800, 8000}, factor{1.05F, 1.02F, 1.01F};
  struct Row {
    const char* name;
    std::vector<float> x, y;
    std::int32_t count;
    float at;
    double want;
    std::int32_t error;
  } const rows[] = {
      {"between rows", pressure, factor, 3, 550, 1.035, 0},
      {"below", pressure, factor, 3, 200, 1.056, 0},
      {"above", pressure, factor, 3, 15200, 1.0, 0},
      {"rows beyond the count are not read", pressure, factor, 2, 1300, 0.99, 0},
      {"one row", pressure, factor, 1, 5000, 1.05, 0},
      {"no row", pressure, factor, 0, 500, kOld, 9},
      {"a huge count", pressure, factor, kMost, 500, kOld, 9},
      {"no abscissae", {}, factor, 3, 500, kOld, 9},
      {"factors short", pressure, {1, 2}, 3, 500, kOld, 9},
  };
  for (const Row& row : rows) {
    Array1<float> x = array_of(row.x), y = array_of(row.y);
    std::int32_t count = row.count;
    float at = row.at, got = kOld;
    bool ok = row.error != 0;
    petroleum.GetVolumeCorrectionDead(x, y, count, at, got, ok);
    EXPECT_EQ(ok, row.error == 0) << row.name;
    EXPECT_NEAR(got, row.want, 2e-7 * std::fabs(row.want)) << row.name;
    EXPECT_EQ(contents(x), row.x);
    EXPECT_EQ(contents(y), row.y) << "the companion writes into a table of its own";
    EXPECT_EQ(taken(), error_lines(row.error, "ztPetroleum (Code) (GetVolumeCorrectionDead)"))
        << row.name;
  }
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
  struct Row {
    const char* name;
    std::vector<float> reference, factor, compressibility;
    float at, want;
    std::int32_t error;
  } const rows[] = {
      {"exact steps", {1000}, {2}, {0.0009765625F}, 3048, 10, 0},  // X = 2: 2 (1 + 2 + 2)
      {"below the reference", {1000}, {0.5F}, {0.0009765625F}, 488, 0.3125F, 0},  // X = -1/2
      {"X of -1", {1024}, {4}, {0.0009765625F}, 0, 2, 0},
      {"further elements are not read", {4000, kNaN}, {1.25F, kNaN}, {3e-6F, kNaN}, 4000, 1.25F, 0},
      // 1/7 as a Single is 9586981 / 2^26, and the reciprocal of that is nearest to 7 - 2^-21.
      {"through two reciprocals", {0}, {7}, {1}, 0, 6.99999952F, 0},
      // Steps that would come out one unit higher if what is named were kept in Double.
      {"the expansion is a Single", {0}, {1}, {0.000244140625F}, 1, 0x1.001p0F, 0},
      {"X squared / 2 is a Single", {0}, {1}, {1}, 0x1.00004p-3F, 0x1.220008p0F, 0},
      {"X + 1 is a Single", {0}, {1}, {1}, 0x1.000128p-3F, 0x1.220028p0F, 0},
      {"no factor at the reference", {1000}, {0}, {1e-6F}, 2000, kOld, 11},
      {"the reciprocal below Single", {0}, {3e38F}, {1}, 1e19F, kOld, 11},
      // Half of it would fit.
      {"X squared beyond Single", {0}, {1}, {1}, 2.2e19F, kOld, 6},
      {"the distance beyond Single", {-3e38F}, {1}, {0}, 3e38F, kOld, 6},
      {"the reciprocal beyond Single", {0}, {1e-40F}, {0}, 0, kOld, 6},
      {"an infinite pressure", {0}, {1}, {0}, kInf, kOld, 5},
      {"a NaN flows through", {0}, {1}, {kNaN}, 5, kNaN, 0},
      {"no reference", {}, {1}, {1}, 5, kOld, 9},
      {"no factor", {1}, {}, {1}, 5, kOld, 9},
      {"no compressibility", {1}, {1}, {}, 5, kOld, 9},
  };
  for (const Row& row : rows) {
    for (const std::int32_t stated : {1, 0, -1, 99}) {
      Array1<float> t1 = array_of(row.reference), t2 = array_of(row.factor),
                    t3 = array_of(row.compressibility);
      std::int32_t count = stated;
      float at = row.at, got = kOld;
      bool ok = row.error != 0;
      petroleum.GetWaterVolumeCorrection(t1, t2, t3, count, at, got, ok);
      EXPECT_EQ(ok, row.error == 0) << row.name;
      EXPECT_TRUE(same(got, row.want)) << row.name << ": " << got;
      EXPECT_EQ(taken(), error_lines(row.error, "ztPetroleum (Code) (GetWaterVolumeCorrection)"))
          << row.name;
    }
  }
}

}  // namespace
}  // namespace vqmath63
