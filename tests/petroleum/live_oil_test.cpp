// Live oil: hand-worked factors of both branches and at the limits of the searches, bad tables.
#include <cmath>

#include "frame/companion_fixture.hpp"
#include "petroleum/live_oil_table.hpp"

namespace vqmath63 {
namespace {

class LiveOilTest : public CompanionTest {};

TEST_F(LiveOilTest, factors_by_hand) {
  each_row("petroleum.tsv", "live oil", 27, [](const TableRow& row) {
    const Result got = live(live_table(row["table"]), row["primary"], row["secondary"]);
    const double want = row["want"];
    EXPECT_TRUE(got.ok);
    // The tabulated factors are rounded to Single.
    EXPECT_NEAR(got.factor, want, 4e-7 * std::fabs(want));
  });
  EXPECT_TRUE(lines.empty());
}

TEST_F(LiveOilTest, saturation_takes_a_hair_above) {
  // 1.000001 x 200 as a Single is 200.000198...; Singles near 200 are 2^-16 apart.
  const float limit = static_cast<float>(200 * 1.000001);
  EXPECT_EQ(live(kOil, 20, limit).factor, 1.4F);
  const Result above = live(kOil, 20, std::nextafter(limit, kInf));
  EXPECT_LT(above.factor, 1.4F);
  EXPECT_NEAR(above.factor, 1.4 - 0.002 * (std::nextafter(limit, kInf) - 200), 2e-7);
  EXPECT_EQ(live(kOil, 20, kNaN).ok, true);
  EXPECT_TRUE(std::isnan(live(kOil, 20, kNaN).factor)) << "a NaN is not saturated";
  EXPECT_EQ(live(kOil, 20, -kInf).factor, 1.4F);
  EXPECT_TRUE(lines.empty());
}

TEST_F(LiveOilTest, bad_tables) {
  each_row("petroleum.tsv", "bad live oil", 30, [&](const TableRow& row) {
    Table table = live_table(row["table"]);
    const std::string changed = row["changed"];
    const Field to = row["to"];
    if (changed == "curves") table.curves = to;
    if (changed == "entries") table.entries = to;
    if (changed == "primary") table.primary = to;
    if (changed == "map") table.map = to;
    if (changed == "secondary") table.secondary = to;
    if (changed == "factors") table.value = to;
    const Result got = live(table, row["primary"], row["secondary"]);
    const float want = row["want"];
    const std::int32_t error = row["error"];
    EXPECT_EQ(got.ok, error == 0);
    const bool close = std::fabs(got.factor - want) <= (error == 0 ? 4e-7 : 0);
    EXPECT_TRUE(close || got.factor == want) << got.factor;
    EXPECT_EQ(taken(), error_lines(error, "ztPetroleum (Code) (GetVolumeCorrectionLive)"));
  });
}

}  // namespace
}  // namespace vqmath63
