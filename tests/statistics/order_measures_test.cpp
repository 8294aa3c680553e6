// Median, mode and quartiles: hand-worked values, what may surprise, failing sorts, memory.
#include <malloc.h>

#include <algorithm>
#include <cstdlib>
#include <new>

#include "statistics/samples.hpp"
#include "statistics/statistics.hpp"

namespace {

// Bytes of arrays in use and their peak.
std::size_t in_use = 0;
std::size_t peak = 0;

}  // namespace

// Every form that the library's arrays and its sort use.
[[gnu::noinline]] void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  void* block = std::malloc(size);
  in_use += malloc_usable_size(block);
  peak = std::max(peak, in_use);
  return block;
}
[[gnu::noinline]] void* operator new[](std::size_t size) {
  void* block = operator new[](size, std::nothrow);
  return block != nullptr ? block : throw std::bad_alloc();
}
[[gnu::noinline]] void operator delete[](void* block) noexcept {
  in_use -= malloc_usable_size(block);
  std::free(block);
}
[[gnu::noinline]] void operator delete[](void* block, std::size_t) noexcept {
  operator delete[](block);
}

namespace vqmath63 {
namespace {

using A = Array1<float>;

class OrderMeasuresTest : public CompanionTest {};

TEST_F(OrderMeasuresTest, values_worked_by_hand) {
  ztStatistics z;
  each_row("statistics.tsv", "order measures", 12, [&](const TableRow& row) {
    const std::vector<float> values = row["x"];
    for (const std::int32_t lower : {1, 0, -2}) {
      A x = samples(values, lower);
      std::int32_t first = 1, second = 2, third = 3;
      const float got[] = {z.Median(x), z.Quartile(x, first), z.Quartile(x, second),
                           z.Quartile(x, third), z.Mode(x)};
      const float want[] = {row["median"], row["lower"], row["median"], row["upper"], row["mode"]};
      EXPECT_TRUE(std::equal(got, got + 5, want, same)) << ::testing::PrintToString(got);
      EXPECT_TRUE(std::equal(values.begin(), values.end(), &x(1), same)) << "moved";
    }
  });
  A x = samples({1, 2, 3, 4});
  for (std::int32_t which : {-1, 0, 4, 2147483647}) EXPECT_EQ(z.Quartile(x, which), 0.0F);
  EXPECT_TRUE(lines.empty());
}

TEST_F(OrderMeasuresTest, mode_bin_moves_by_one_width_and_drops_the_open_bin) {
  ztStatistics z;
  each_row("statistics.tsv", "mode bins", 12, [&](const TableRow& row) {
    A x = samples(row["sorted"], 0);
    const float got = z.ModeBin(x), want = row["want"];
    EXPECT_TRUE(same(got, want)) << got;
    EXPECT_EQ(numbers_of(taken()), row["errors"].text);
  });
}

TEST_F(OrderMeasuresTest, bad_arrays_are_one_line_and_zero) {
  struct Routine {
    const char* name;
    float (ztStatistics::*call)(const Array1<const float>&);
    const char* numbers;  // unallocated, 0 to 0, 2 to 3
  } const routines[] = {{"Median", &ztStatistics::Median, "999"},
                        {"Mode", &ztStatistics::Mode, "999"},
                        {"ModeBin", &ztStatistics::ModeBin, "959"},
                        {"Quartiles", nullptr, "999"}};
  std::int32_t first = 1;
  ztStatistics z;
  for (const Routine& routine : routines) {
    const A bad[] = {{}, A(0, 0), A(2, 3)};
    for (std::size_t k = 0; k < 3; ++k) {
      A x = bad[k];
      const float got = routine.call ? (z.*routine.call)(x) : z.Quartile(x, first);
      EXPECT_EQ(got, 0.0F) << routine.name << k;
      EXPECT_EQ(taken(), lines_of(routine.numbers[k] - '0', {routine.name}));
    }
  }
}

TEST_F(OrderMeasuresTest, quartiles_alone_ask_whether_the_sort_did_well) {
  struct BadSort final : ztSortTools {
    void SortAscending(A&, bool&) override {}
  };
  companion_makers().SortTools = [] { return std::make_shared<BadSort>(); };
  ztStatistics z;
  A x = samples({4, 1, 3, 2, 5});
  std::int32_t third = 3;
  EXPECT_EQ(z.Median(x), 4);
  EXPECT_EQ(z.Mode(x), 4);
  EXPECT_EQ(z.Quartile(x, third), 0);
  EXPECT_TRUE(lines.empty());
}

TEST_F(OrderMeasuresTest, statistics_needs_a_copy_and_a_scratch_of_its_size) {
  constexpr std::int32_t kCount = 200000;
  A x(1, kCount);
  std::uint32_t state = 1;
  for (std::int32_t i = 1; i <= kCount; ++i) {
    x(i) = static_cast<float>((state = state * 1664525U + 1013904223U) >> 8);
  }
  ztStatistics z;
  std::int32_t third = 3;
  bool ok = false;
  const std::size_t before = in_use;
  peak = before;
  z.Statistics(x, ok);
  z.Quartile(x, third);
  EXPECT_TRUE(ok);
  EXPECT_GE(peak - before, kCount * sizeof(float)) << "the count sees the copy";
  EXPECT_LE(peak - before, 2 * kCount * sizeof(float) + 65536);
  EXPECT_EQ(in_use, before);
}

}  // namespace
}  // namespace vqmath63
