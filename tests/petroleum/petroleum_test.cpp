// ztPetroleum: dead oil, water, and the companion behind the factors.
#include "petroleum/petroleum.hpp"

#include <cmath>

#include "frame/companion_fixture.hpp"
#include "frame/test_table.hpp"
#include "petroleum/live_oil_table.hpp"

namespace vqmath63 {
namespace {

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

TEST_F(PetroleumTest, fails_with_its_companion_but_for_a_single_curve) {
  companion_makers().CommonMaths = nullptr;
  Array1<float> x = array_of<float>({1, 2}), y = array_of<float>({3, 4});
  std::int32_t count = 2;
  float at = 1.5F, got = kOld;
  bool ok = true;
  petroleum.GetVolumeCorrectionDead(x, y, count, at, got, ok);
  const Result failed = live(kOil, 15, 90);
  EXPECT_FALSE(ok || failed.ok);
  EXPECT_TRUE(got == kOld && failed.factor == kOld);
  EXPECT_EQ(taken(), (Lines{error_line(429, "ztPetroleum (Code) (GetVolumeCorrectionDead)"),
                            error_line(429, "ztPetroleum (Code) (GetVolumeCorrectionLive)")}));
  EXPECT_TRUE(live(Table{{10}, {1}, {100, 200, 300}, {2, 1, 1}}, 10, 50).ok);
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
