// Median, mode and quartiles: hand-worked values, what may surprise, failing sorts, memory.
#include <algorithm>
#include <cstdlib>
#include <new>

#include "statistics/samples.hpp"
#include "statistics/statistics.hpp"

namespace {

// Bytes of arrays in use and their peak. Each block is preceded by its size.
std::size_t in_use = 0;
std::size_t peak = 0;
constexpr std::size_t kHead = alignof(std::max_align_t);

}  // namespace

// Every form that the library's arrays and its sort use.
[[gnu::noinline]] void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  void* block = std::malloc(size + kHead);
  if (block == nullptr) return nullptr;
  *static_cast<std::size_t*>(block) = size;
  in_use += size;
  peak = in_use > peak ? in_use : peak;
  return static_cast<char*>(block) + kHead;
}
[[gnu::noinline]] void* operator new[](std::size_t size) {
  void* block = operator new[](size, std::nothrow);
  return block != nullptr ? block : throw std::bad_alloc();
}
[[gnu::noinline]] void operator delete[](void* pointer) noexcept {
  if (pointer == nullptr) return;
  void* block = static_cast<char*>(pointer) - kHead;
  in_use -= *static_cast<std::size_t*>(block);
  std::free(block);
}
[[gnu::noinline]] void operator delete[](void* pointer, std::size_t) noexcept {
  operator delete[](pointer);
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

struct BadSort final : ztSortTools {
  explicit BadSort(std::function<void(A&, bool&)> how) : how_(std::move(how)) {}
  void SortAscending(A& values, bool& qOK) override { how_(values, qOK); }
  std::function<void(A&, bool&)> how_;
};

TEST_F(OrderMeasuresTest, failing_sorts) {
  struct Row {
    const char* name;
    std::function<void(A&, bool&)> sort;
    float median, mode, quartile;
    const char* numbers;  // of the three in turn
  } const rows[] = {
      {"says nothing", [](A&, bool&) {}, 4, 4, 0, ""},
      {"raises", [](A&, bool&) { throw Fault(70); }, 0, 0, 0, "70 70 70"},
      {"fails by result", [](A&, bool&) { raise_companion_failure(-2147024809); }, 0, 0, 0,
       "-2147024809 -2147024809 -2147024809"},
      {"throws anything", [](A&, bool&) { throw 1; }, 0, 0, 0,
       "-2147467259 -2147467259 -2147467259"},
      {"returns too few", [](A& a, bool& ok) { a.redim(1, 1), ok = true; }, 0, 0, 0, "9 9 9"},
      {"returns none", [](A& a, bool& ok) { a.erase(), ok = true; }, 0, 0, 0, "9 9 9"},
  };
  for (const Row& row : rows) {
    companion_makers().SortTools = [&] { return std::make_shared<BadSort>(row.sort); };
    ztStatistics z;
    A x = samples({4, 1, 3, 2, 5});
    std::int32_t third = 3;
    EXPECT_EQ(z.Median(x), row.median) << row.name;
    EXPECT_EQ(z.Mode(x), row.mode) << row.name;
    EXPECT_EQ(z.Quartile(x, third), row.quartile) << row.name;
    EXPECT_EQ(numbers_of(taken()), row.numbers) << row.name;
  }
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
