// Live oil: hand-worked factors of both branches, the limits of the searches, bad tables.
#include <cmath>
#include <limits>

#include "frame/companion_fixture.hpp"
#include "petroleum/live_oil_table.hpp"

namespace vqmath63 {
namespace {

constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t kLeast = std::numeric_limits<std::int32_t>::min();

class LiveOilTest : public CompanionTest {};

struct LiveRow {
  const char* name;
  float primary, secondary;
  double want;
};

void expect_live(const Table& table, const std::vector<LiveRow>& rows) {
  for (const LiveRow& row : rows) {
    const Result got = live(table, row.primary, row.secondary);
    EXPECT_TRUE(got.ok) << row.name;
    // The tabulated factors are rounded to Single.
    EXPECT_NEAR(got.factor, row.want, 4e-7 * std::fabs(row.want)) << row.name;
  }
}

TEST_F(LiveOilTest, factors_by_hand) {
  expect_live(
      kOil,
      {
          {"at a saturation point", 20, 200, 1.4},
          {"between curves, saturated", 12.5F, 100, 1.25},  // 3/4 1.2 + 1/4 1.4
          {"below the first curve", 5, 40, 1.1},            // t = -1/2
          // Psat 50: s1 = 150 gives 1.1, s2 = 250 gives 1.3.
          {"below the first curve, above saturation", 5, 100, 1.5 * 1.1 - 0.5 * 1.3},
          {"above the last curve", 50, 400, 2.0},  // t = 3/2
          // At the lower curve itself: Psat 100, s1 = 150, s2 = 250; 1.1 alone counts.
          {"the last entry of an inner curve", 10, 450, 1.02},
          {"between entries", 10, 200, 1.08},
          // Psat 125: s1 = 100 + 25 gives 1.15; s2 = 225: 1.4 - 25 x 0.12 / 60 = 1.35.
          {"between curves, first segments", 12.5F, 150, 0.75 * 1.15 + 0.25 * 1.35},
          // Psat 150: s1 = 210 on 150..250: 1.076; s2 = 310, but 200..260 ends after s1: 1.18.
          {"between curves, later segments", 15, 260, 0.5 * 1.076 + 0.5 * 1.18},
          // s1 = 550 is past 450: chord 100..450 from 1.2 to 1.02; s2 = 650: chord 1.4 to 1.2.
          {"beyond both curves the chords carry on", 15, 600,
           0.5 * (1.2 - 0.18 * 450 / 350) + 0.5 * (1.4 - 0.2 * 450 / 360)},
      });
  EXPECT_TRUE(lines.empty());
}

TEST_F(LiveOilTest, limits_of_the_searches) {
  // The far end of an upper segment is compared with s1, not s2, so that an earlier segment than
  // the one around s2 is carried on.
  expect_live(kOil, {
                        // Psat 150, s1 = 300: 1.05; s2 = 400, and 260..360 ends after 300.
                        {"an upper segment that s2 is past", 15, 350,
                         0.5 * 1.05 + 0.5 * (1.28 - 0.0004 * 140)},
                        // Psat 200, s1 = 200, s2 = 300: 200..260 does, with a slope of -0.002 ...
                        {"just below a curve's own primary", std::nextafter(20.0F, 0.0F), 300, 1.2},
                        // ... and at the primary itself the curve is the lower one.
                        {"at it", 20, 300, 1.264},
                        // Psat 300, s1 = 340 on 260..360: 1.28 - 80 x 0.0004; s2 = 540: first
                        // segment, slope -0.001: 1.8 - 0.14.
                        {"first upper segment for a value of the second", 30, 440,
                         0.5 * (1.28 - 0.032) + 0.5 * (1.8 - 0.14)},
                        // s2 = 600 is past 580, the last but one entry: the chord 400..580 from 1.8
                        // to 1.62, though the table goes on to 800. s1 = 400: 1.232.
                        {"the final entry is never read", 30, 500, 0.5 * 1.232 + 0.5 * 1.6},
                    });
  // With a wide lower curve s1 can be past both ends that the upper search may take: s1 = 150 and
  // s2 = 30 in the upper curve 10, 20, 40, 70: no far end is >= 150.
  const Table crossed{
      {0, 10, 20}, {1, 3, 7}, {100, 200, 10, 20, 40, 70, 500, 600}, {1, 2, 1, 2, 6, 13, 5, 5}};
  // At primary 5 Psat = 55. s1 = 100 + 75 - 55 = 120: 1.2. s2 = 30: chord 10..70: 1 + 20 x 0.2.
  expect_live(crossed,
              {{"no segment satisfies both tests: the chord", 5, 75, 0.5 * 1.2 + 0.5 * 5}});

  // The last curve of two entries has one point to search, as hosts know it.
  const Table two{{1, 2}, {1, 3}, {100, 300, 200, 400}, {2, 1, 3, 2}};
  expect_live(two, {{"above the last saturation point", 2, 350, 3},
                    // Psat 150; s1 = 150 on 100..300: 1.75; the upper curve stays at 3.
                    {"half-way", 1.5F, 200, 0.5 * 1.75 + 0.5 * 3}});

  // One of a single entry ends before it begins: its chord goes back to the lower curve's end.
  const Table single{{1, 2}, {1, 3}, {100, 300, 200}, {2, 1, 3}};
  // s2 = 250 is past both; slope (3 - 1) / (200 - 300) from (200, 3): 3 - 0.02 x 50.
  expect_live(single, {{"a last curve of one entry", 2, 250, 2}});
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

TEST_F(LiveOilTest, is_continuous_where_the_curves_are_alike) {
  // Across saturation, and along the primary through a curve of the table.
  int count = 0;
  for (float primary = 6; primary < 44; primary += 0.37F, ++count) {
    const float saturation = 10 * primary;
    const float below = live(kOil, primary, saturation * 0.99999F).factor;
    const float above = live(kOil, primary, saturation * 1.00001F).factor;
    EXPECT_NEAR(above, below, 0.003 * saturation * 2e-5 + 2e-7) << primary;
  }
  EXPECT_EQ(count, 103);
  for (const float pressure : {150.0F, 210.0F, 230.0F, 255.0F}) {
    const float at = live(kOil, 20, pressure).factor;
    EXPECT_NEAR(live(kOil, std::nextafter(20.0F, 0.0F), pressure).factor, at, 1e-6) << pressure;
  }
  EXPECT_TRUE(lines.empty());
}

TEST_F(LiveOilTest, of_one_curve_and_of_equal_primaries) {
  const Table one{{10}, {1}, {100, 200, 300, 900}, {2, 1.8F, 1.7F, 1}};
  expect_live(one, {
                       {"saturated", 10, 50, 2},
                       {"first segment", 10, 150, 1.9},
                       {"last but one entry", 10, 300, 1.7},
                       // 100..300 by the chord: -0.3 over 200.
                       {"beyond it, though the table goes on", 10, 500, 1.4},
                   });
  // Its start need not be 1.
  expect_live({{10}, {3}, {0, 0, 100, 200, 300}, {9, 9, 2, 1, 5}},
              {{"a curve from 3", 10, 150, 1.5}});
  // Equal primaries: the lower curve alone, up to the next one's start.
  const Table equal{{10, 10, 20},
                    {1, 4, 7},
                    {100, 200, 300, 150, 250, 350, 200, 300, 400},
                    {2, 1.8F, 1.7F, 5, 5, 5, 6, 6, 6}};
  Table twins = equal;
  twins.primary = {10, 10};
  twins.curves = 2;
  expect_live(twins, {{"saturated", 10, 90, 2}, {"off the value too", 99, 150, 1.9}});
  // With a third curve the companion's interval is the later one.
  expect_live(equal, {{"the later of equal curves", 10, 100, 5}});
  EXPECT_TRUE(lines.empty());
}

TEST_F(LiveOilTest, bad_tables) {
  using T = Table&;
  constexpr float kBig = 3e38F;
  struct Row {
    const char* name;
    void (*change)(Table&);
    float primary, secondary;
    std::int32_t error;  // 0: a factor all the same
    float want = kOld;
  } const rows[] = {
      {"no last curve", [](T t) { t.curves = 0; }, 30, 90, 9},
      {"but its inner curves", [](T t) { t.curves = -5; }, 15, 90, 0, 1.3F},
      {"a count beyond the curves", [](T t) { t.curves = 9; }, 30, 90, 9},
      {"a count of 2 reads on in the map", [](T t) { t.curves = 2; }, 30, 90, 9},
      {"no primary values", [](T t) { t.primary.clear(); }, 15, 90, 9},
      {"one where two are to bracket", [](T t) { t.primary = {10}; }, 15, 90, 9},
      {"no map", [](T t) { t.map.clear(); }, 15, 90, 9},
      {"map below the table", [](T t) { t.map[0] = 0; }, 15, 90, 9},
      {"map beyond the table", [](T t) { t.map[1] = 13; }, 15, 90, 9},
      {"an end beyond it, saturated", [](T t) { t.map[2] = kMost; }, 15, 90, 0, 1.3F},
      {"an end beyond the table", [](T t) { t.map[2] = kMost; }, 15, 350, 9},
      {"an end of which nothing comes before", [](T t) { t.map[2] = kLeast; }, 15, 350, 6},
      {"the like in the count of entries", [](T t) { t.entries = kLeast; }, 30, 500, 6},
      {"entries beyond the table", [](T t) { t.entries = 14; }, 30, 500, 9},
      {"no entries", [](T t) { t.entries = 0; }, 30, 500, 9},
      {"no abscissae", [](T t) { t.secondary.clear(); }, 15, 90, 9},
      {"no factors", [](T t) { t.value.clear(); }, 15, 90, 9},
      {"abscissae short", [](T t) { t.secondary.resize(5); }, 15, 350, 9},
      {"a saturation beyond Single", [](T t) { t.secondary[4] = kBig; }, 1000, 90, 6},
      {"a curve wider than Single", [](T t) { t.secondary[4] = -(t.secondary[5] = kBig); }, 20, 0,
       6},
      {"a factor beyond Single", [](T t) { t.value[4] = kBig; }, 40000, 90, 6},
      {"an infinite factor", [](T t) { t.value[4] = kInf; }, 15, 90, 0, kInf},
      {"without weight it is invalid", [](T t) { t.value[4] = kInf; }, 10, 90, 5},
      {"an infinite primary value", [](T t) { t.primary[0] = -kInf; }, 15, 90, 5},
      {"an infinite pressure on sloping curves", [](T) {}, 15, kInf, 0, -kInf},
      // The search finds no segment in falling abscissae.
      {"falling",
       [](T t) {
         t = {{1}, {1}, {400, 300, 200, 100}, {1, 2, 3, 4}};
       },
       1, 420, 0, 0.8F},
      {"equal",
       [](T t) {
         t = {{1}, {1}, {100, 100, 100, 100}, {1, 2, 3, 4}};
       },
       1, 150, 0, 1},
  };
  for (const Row& row : rows) {
    Table table = kOil;
    row.change(table);
    const Result got = live(table, row.primary, row.secondary);
    EXPECT_EQ(got.ok, row.error == 0) << row.name;
    const bool close = std::fabs(got.factor - row.want) <= (row.error == 0 ? 4e-7 : 0);
    EXPECT_TRUE(close || got.factor == row.want) << row.name << ": " << got.factor;
    EXPECT_EQ(taken(), error_lines(row.error, "ztPetroleum (Code) (GetVolumeCorrectionLive)"))
        << row.name;
  }
}

}  // namespace
}  // namespace vqmath63
