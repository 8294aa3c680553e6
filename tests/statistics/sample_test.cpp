// ztSample: limits, edges of bins, samples that are not counted, failures.
#include "statistics/sample.hpp"

#include <cmath>
#include <random>

#include "statistics/samples.hpp"

namespace vqmath63 {
namespace {

using A = Array1<float>;
using Values = std::vector<float>;

class SampleTest : public CompanionTest {
 protected:
  bool set(float lower, float upper) {
    bool ok = !(lower < upper);
    z.setLimits(lower, upper, ok);
    return ok;
  }
  ztSample z;
};

TEST_F(SampleTest, counts_worked_by_hand) {
  struct Row {
    const char* name;
    Values x;
    std::int32_t bins;
    Values centres, counts;
    Values limits = {};
  } const rows[] = {
      {"a bin holds its lower edge, the last both", {0, 1, 2, 3, 4}, 2, {1, 3}, {2, 3}},
      {"all equal: first bin, width 0", {7, 7, 7}, 3, {7, 7, 7}, {3, 0, 0}},
      {"NaN is not counted, nor a limit", {kNaN, 1, kNaN, 3, 2}, 2, {1.5F, 2.5F}, {1, 2}},
      {"limits", {-1, 0, 4.5F, 9, 9.5F, kInf, -kInf}, 2, {2.25F, 6.75F}, {1, 2}, {0, 9}},
      {"NaN only, but limits", {kNaN}, 1, {0.5F}, {0}, {0, 1}},
      {"the whole range of Singles", {-3e38F, 0, 3e38F}, 2, {-1.5e38F, 1.5e38F}, {1, 2}},
      {"edges of tenths",
       {0.1F, 0.2F, 0.3F, 0.4F, 0.6F, 0.7F},
       10,
       {0.05F, 0.15F, 0.25F, 0.35F, 0.45F, 0.55F, 0.65F, 0.75F, 0.85F, 0.95F},
       // As Singles 0.7 is below its decimal, the others above.
       {0, 1, 1, 1, 1, 0, 2, 0, 0, 0},
       {0, 1}},
  };
  for (const Row& row : rows) {
    ztSample fresh;
    bool ok = false;
    if (!row.limits.empty()) {
      Values limits = row.limits;
      fresh.setLimits(limits[0], limits[1], ok);
      EXPECT_TRUE(ok) << row.name;
    }
    for (const std::int32_t lower : {1, 0, -20}) {
      A x = samples(row.x, lower), centres(5, 6), counts;
      std::int32_t bins = row.bins;
      fresh.BinVector(x, bins, centres, counts, ok);
      EXPECT_TRUE(ok) << row.name;
      EXPECT_EQ(contents(centres), row.centres) << row.name;
      EXPECT_EQ(contents(counts), row.counts) << row.name;
      EXPECT_TRUE(centres.lower() == 1 && counts.lower() == 1) << row.name;
    }
  }
  EXPECT_TRUE(lines.empty());
}

TEST_F(SampleTest, every_edge_belongs_to_the_bin_above_it) {
  std::mt19937 random(17);
  for (int round = 0; round < 300; ++round) {
    // Edges that Singles hold: a small odd number times a power of two apart.
    const std::int32_t bins = 1 + static_cast<std::int32_t>(random() % 1000);
    const float width = std::ldexp(1.0F + 2.0F * static_cast<float>(random() % 50), -6);
    const float first = width * (static_cast<float>(random() % 2001) - 1000.5F);
    Values edges, below;
    for (std::int32_t k = 0; k <= bins; ++k) {
      edges.push_back(first + width * static_cast<float>(k));
      below.push_back(std::nextafter(edges.back(), -kInf));
    }
    ASSERT_TRUE(set(edges.front(), edges.back()));
    A x = samples(edges), y = samples(below), centres, counts;
    std::int32_t n = bins;
    bool ok = false;
    Values want(static_cast<std::size_t>(bins), 1.0F);
    z.BinVector(y, n, centres, counts, ok);
    EXPECT_EQ(contents(counts), want) << round;
    want.back() = 2;
    z.BinVector(x, n, centres, counts, ok);
    EXPECT_EQ(contents(counts), want) << round;
  }
}

TEST_F(SampleTest, refused_limits_leave_the_old_ones) {
  A x = samples({1, 2, 3, 8}), centres, counts;
  std::int32_t bins = 1;
  bool ok = false;
  EXPECT_TRUE(set(1, 4));
  for (const Values& bad : {Values{4, 4}, Values{5, 1}, Values{kNaN, 1}, Values{1, kNaN}}) {
    EXPECT_FALSE(set(bad[0], bad[1]));
    z.BinVector(x, bins, centres, counts, ok);
    EXPECT_EQ(contents(centres), Values{2.5F});
    EXPECT_EQ(contents(counts), Values{3});
  }
  EXPECT_TRUE(lines.empty());
}

TEST_F(SampleTest, failures_leave_the_arrays) {
  struct Row {
    const char* name;
    A x;
    std::int32_t bins;
    std::int32_t number;
  } const rows[] = {
      {"unallocated", {}, 3, 9},
      {"no element 1", A(2, 4), 3, 9},
      {"no bin", samples({1, 2}), 0, 5},
      {"nothing but NaN", samples({kNaN, kNaN}), 3, 5},
      {"an infinite limit", samples({1, kInf}), 3, 5},
  };
  for (const Row& row : rows) {
    A x = row.x, centres = samples({5}), counts = samples({6});
    std::int32_t bins = row.bins;
    bool ok = true;
    z.BinVector(x, bins, centres, counts, ok);
    EXPECT_FALSE(ok) << row.name;
    EXPECT_EQ(taken(), std::vector{error_line(row.number, "ztAnalyse - Sample", "BinVector")})
        << row.name;
    EXPECT_EQ(contents(centres), Values{5}) << row.name;
    EXPECT_EQ(contents(counts), Values{6}) << row.name;
  }
}

}  // namespace
}  // namespace vqmath63
