// The sort on every kind of input, with and without scratch memory.
#include "frame/sort_tools.hpp"

#include <algorithm>
#include <bit>
#include <cmath>
#include <new>
#include <random>

#include "companion_fixture.hpp"

namespace {
bool refuse_scratch = false;
}

// The sort's scratch comes from here, so that a test can say that there is none.
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  if (refuse_scratch) return nullptr;
  try {
    return ::operator new[](size);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

namespace vqmath63 {
namespace {

std::vector<std::uint32_t> sorted_bits(const std::vector<float>& values) {
  std::vector<std::uint32_t> bits(values.size());
  std::transform(values.begin(), values.end(), bits.begin(), std::bit_cast<std::uint32_t, float>);
  std::sort(bits.begin(), bits.end());
  return bits;
}

TEST(SortSingles, every_order_and_length_ends_ascending_with_the_same_bits) {
  std::mt19937 random(6303);
  std::normal_distribution<float> bell(0.0F, 1000.0F);
  const float awkward[] = {0.0F, -0.0F, NAN, -NAN, INFINITY, -INFINITY, 1e-45F, -1e-45F, 3.4e38F};
  const auto steps = [&](std::uint32_t n) { return 1.0F + float(random() % n) * 0x1p-23F; };
  struct Order {
    const char* name;
    std::function<float(std::size_t)> value;
  } const orders[] = {
      {"random bits", [&](auto) { return std::bit_cast<float>(std::uint32_t(random())); }},
      {"bell", [&](auto) { return bell(random); }},
      {"negative", [&](auto) { return -std::abs(bell(random)) - 1.0F; }},
      {"awkward", [&](auto) { return awkward[random() % 9]; }},
      {"one digit differs", [&](auto) { return steps(200); }},
      {"two digits differ", [&](auto) { return steps(50000); }},
      {"ascending", [](std::size_t i) { return float(i); }},
      {"descending", [](std::size_t i) { return 40.0F - float(i); }},
      {"constant", [](auto) { return -2.5F; }},
      {"one out of place", [](std::size_t i) { return i == 46 ? -1.0F : float(i); }},
  };
  const auto is_nan = [](float x) { return std::isnan(x); };
  for (const bool refused : {false, true}) {
    for (const Order& order : orders) {
      for (const std::size_t n : {0U, 1U, 2U, 3U, 47U, 48U, 49U, 300U, 5000U}) {
        std::vector<float> before(n);
        for (std::size_t i = 0; i < n; ++i) before[i] = order.value(i);
        std::vector<float> after = before;
        refuse_scratch = refused;
        sort_singles(after);
        refuse_scratch = false;
        const auto nan = std::find_if(after.begin(), after.end(), is_nan);
        EXPECT_TRUE(std::is_sorted(after.begin(), nan)) << order.name << ' ' << n;
        EXPECT_TRUE(std::all_of(nan, after.end(), is_nan)) << order.name << ' ' << n;
        EXPECT_EQ(sorted_bits(after), sorted_bits(before)) << order.name << ' ' << n;
      }
    }
  }
}

TEST(SortTools, sorts_elements_1_to_n_and_nothing_else) {
  std::vector<float> lent{9, 8, 3, 5, 1};
  Array1<float> zero_based(lent.data(), {0, 3});
  struct Row {
    const char* name;
    Array1<float> array;
    bool want;
  } rows[] = {{"unallocated", {}, false}, {"no element 1", {2, 5}, false}, {"none", {0, 0}, true}};
  BuiltInSortTools tools;
  bool ok = false;
  tools.SortAscending(zero_based, ok);
  EXPECT_TRUE(ok);
  EXPECT_EQ(lent, (std::vector<float>{9, 3, 5, 8, 1}));
  for (Row& row : rows) {
    ok = !row.want;
    tools.SortAscending(row.array, ok);
    EXPECT_EQ(ok, row.want) << row.name;
  }
}

}  // namespace
}  // namespace vqmath63
