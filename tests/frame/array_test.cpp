// Bounds, borrowing and re-dimensioning of arrays.
#include "frame/array.hpp"

#include <limits>
#include <numeric>
#include <utility>

#include "arrays.hpp"
#include "companion_fixture.hpp"

namespace vqmath63 {
namespace {

using Values = std::vector<float>;
constexpr auto kMost = std::numeric_limits<std::int32_t>::max();

TEST(Array1, elements_are_those_between_the_bounds) {
  for (const std::int32_t lower : {-3, 0, 1, 2}) {
    Array1<std::int32_t> a(lower, 4);
    std::iota(a.data(), a.data() + a.size(), lower);
    EXPECT_EQ(a(lower), lower);
    EXPECT_EQ(a(4), 4);
    EXPECT_EQ(fault_of([&] { a(lower - 1); }), 9);
    EXPECT_EQ(fault_of([&] { a(5); }), 9);
    EXPECT_EQ(a.covers(1, 4), lower <= 1);
  }
  Array1<float> none;
  EXPECT_EQ(fault_of([&] { none.upper(); }), 9);
  EXPECT_EQ(fault_of([&] { none(1) = 1; }), 9);
  EXPECT_FALSE(none.covers(1, 1));
  EXPECT_EQ(fault_of([] { Array1<float>(1, 0); }), 9);
  EXPECT_EQ(fault_of([] { Array1<float>(-kMost, kMost); }), 7);
}

TEST(Array1, the_lender_sees_writes_but_no_resizing) {
  Values lent{1, 2, 3};
  Array1<float> a(lent);
  a(2) = 20;
  EXPECT_FALSE(a.was_resized());
  a.redim_preserve(4);
  a(1) = -1;
  EXPECT_TRUE(a.was_resized());
  EXPECT_EQ(contents(a), (Values{-1, 20, 3, 0}));
  a.redim(0, 1);  // an owned buffer used again is zero again
  EXPECT_EQ(contents(a), (Values{0, 0}));

  const Array1<float> none;
  Array1<float> assigned{std::span<float>(lent)};
  const Array1<float> copy = assigned;
  assigned = none;
  EXPECT_TRUE(assigned.was_resized());
  EXPECT_FALSE(assigned.allocated());
  EXPECT_EQ(lent, (Values{1, 20, 3}));
  lent[0] = 7;
  EXPECT_EQ(copy(1), 1.0F);

  Values passing{4, 5};
  Array1<float> moved{std::span<float>(lent)};
  moved = Array1<float>{std::span<float>(passing)};
  passing[0] = 0;  // not borrowed: the lender of the right side may be gone by now
  EXPECT_TRUE(moved.was_resized());
  EXPECT_EQ(contents(moved), (Values{4, 5}));
  moved = Array1<float>();
  EXPECT_TRUE(moved.was_resized());
  EXPECT_FALSE(moved.allocated());
}

TEST(Array1, a_fixed_array_refuses_every_resizing) {
  float lent[3] = {1, 2, 3};
  Array1<float> a(lent, {1, 3}, Resizing::kRefused);
  EXPECT_EQ(fault_of([&] { a.redim(1, 2); }), 10);
  EXPECT_EQ(fault_of([&] { a.redim_preserve(2); }), 10);
  EXPECT_EQ(fault_of([&] { a.erase(); }), 10);
  EXPECT_EQ(fault_of([&] { a = Array1<float>(1, 2); }), 10);
  EXPECT_EQ(fault_of([&] { (void)a.replace(1, 2); }), 10);
  EXPECT_EQ(contents(a), (Values{1, 2, 3}));
}

TEST(Array1, what_is_only_read_is_seen_where_it_stands) {
  const auto at = [](const Array1<const float>& view) { return view.data(); };
  const Values kept{1, 2, 3};
  const std::array<float, 3> fixed{1, 2, 3};
  const float plain[] = {1, 2, 3};
  Array1<float> owner(0, 2);
  EXPECT_EQ(at(kept), kept.data());
  EXPECT_EQ(at(std::span<const float>(kept)), kept.data());
  EXPECT_EQ(at(fixed), fixed.data());
  EXPECT_EQ(at(plain), plain);
  EXPECT_EQ(at(owner), owner.data());
  EXPECT_EQ(at(std::as_const(owner)), owner.data());

  const auto sum = [](const Array1<const float>& view) {
    float total = 0;
    for (std::int32_t i = 1; i <= view.upper(); ++i) total += view(i);
    return total;
  };
  EXPECT_EQ(sum(Values{1, 2, 4}), 7.0F);  // a temporary lives through the call
  EXPECT_EQ(sum(Values{}), 0.0F);

  const Array1<const float> view = owner;
  EXPECT_EQ(view.bounds(), (Bounds{0, 2}));
  EXPECT_TRUE(view.covers(0, 2));
  EXPECT_FALSE(view.covers(0, 3));
  EXPECT_EQ(fault_of([&] { view(3); }), 9);
  Array1<float> copy(view);
  copy(1) = 5;
  EXPECT_EQ(copy.bounds(), (Bounds{0, 2}));
  EXPECT_EQ(view(1), 0.0F);

  const Array1<const float> none = Array1<const float>(std::as_const(copy = Array1<float>()));
  EXPECT_FALSE(none.allocated());
  EXPECT_FALSE(none.covers(1, 1));
  EXPECT_EQ(fault_of([&] { none.upper(); }), 9);
  EXPECT_EQ(fault_of([&] { none(1); }), 9);
  EXPECT_FALSE(Array1<float>(none).allocated());

  const float lent[] = {11, 21, 12, 22};
  const Array2<const float> table(lent, {1, 2}, {0, 1});
  EXPECT_EQ(&table(2, 0), lent + 1);
  EXPECT_EQ(fault_of([&] { table(1, 2); }), 9);
  const Array2<float> unset;
  EXPECT_EQ(fault_of([&] { Array2<const float>(unset).columns(); }), 9);
}

TEST(Array1, a_replaced_array_gives_back_what_it_held) {
  Array1<float> a = array_of<float>({1, 2});
  const float* const held = a.data();
  const Array1<float> before = a.replace(0, 0);
  EXPECT_EQ(before.data(), held);
  EXPECT_EQ(contents(before), (Values{1, 2}));
  EXPECT_EQ(contents(a), (Values{0}));
  EXPECT_TRUE(a.was_resized());
}

TEST(Array2, rows_of_a_column_lie_side_by_side) {
  float lent[] = {11, 21, 31, 12, 22, 32};
  Array2<float> a(lent, {0, 2}, {1, 2});
  EXPECT_EQ(a(2, 1), 31.0F);
  EXPECT_EQ(a(0, 2), 12.0F);
  EXPECT_EQ(fault_of([&] { a(3, 1); }), 9);  // a row too far is not the next column
  EXPECT_EQ(fault_of([&] { a(0, 0); }), 9);
}

TEST(Boolean, true_is_minus_one_and_any_stored_bit_counts) {
  EXPECT_EQ(Boolean(true).stored, -1);
  Boolean odd;
  odd.stored = 256;
  EXPECT_TRUE(odd);
}

}  // namespace
}  // namespace vqmath63
