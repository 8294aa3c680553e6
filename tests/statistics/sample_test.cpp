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
  each_row("statistics.tsv", "bins", 7, [&](const TableRow& row) {
    z = ztSample();
    Values limits = row["limits"];
    if (!limits.empty()) {
      EXPECT_TRUE(set(limits.at(0), limits.at(1)));
    }
    for (const std::int32_t lower : {1, 0, -20}) {
      A x = samples(row["x"], lower), centres(5, 6), counts;
      std::int32_t bins = row["bins"];
      bool ok = false;
      z.BinVector(x, bins, centres, counts, ok);
      EXPECT_TRUE(ok);
      EXPECT_EQ(contents(centres), Values(row["centres"]));
      EXPECT_EQ(contents(counts), Values(row["counts"]));
      EXPECT_TRUE(centres.lower() == 1 && counts.lower() == 1);
    }
  });
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
  each_row("statistics.tsv", "no bins", 5, [&](const TableRow& row) {
    A x = array_of<float>(row["x"], row["x from"]), centres = samples({5}), counts = samples({6});
    std::int32_t bins = row["bins"];
    bool ok = true;
    z.BinVector(x, bins, centres, counts, ok);
    EXPECT_FALSE(ok);
    EXPECT_EQ(taken(), Lines{error_line(row["error"], "ztAnalyse - Sample", "BinVector")});
    EXPECT_EQ(contents(centres), Values{5});
    EXPECT_EQ(contents(counts), Values{6});
  });
}

}  // namespace
}  // namespace vqmath63
