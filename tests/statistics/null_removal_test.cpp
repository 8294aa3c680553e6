// Null removal and masking: rows that stay and go together, required oddities, failures.
#include <array>

#include "statistics/samples.hpp"
#include "statistics/statistics.hpp"

namespace vqmath63 {
namespace {

using A = Array1<float>;
using Values = std::vector<float>;
constexpr float N = -999.25F;  // the null

class NullRemovalTest : public CompanionTest {
 protected:
  float null = N;
  bool ok = false;
  std::int32_t rows = -7;
  ztStatistics z;
};

// Elements 1 to n; empty for an unallocated array.
Values from_one(const A& array) {
  Values values;
  for (std::int32_t i = 1; array.allocated() && i <= array.upper(); ++i) values.push_back(array(i));
  return values;
}

TEST_F(NullRemovalTest, rows_stay_or_go_together) {
  struct Row {
    const char* name;
    std::array<Values, 3> in, out;
    std::int32_t rows;
  };
  const Row table[] = {
      {"none null", {{{1, 2}, {3, 4}, {5, 6}}}, {{{1, 2}, {3, 4}, {5, 6}}}, 2},
      {"first column", {{{N, 2, N}, {3, 4, 5}, {6, 7, 8}}}, {{{2}, {4}, {7}}}, 1},
      {"last column", {{{1, 2, 9}, {3, 4, 5}, {N, 7, N}}}, {{{2}, {4}, {7}}}, 1},
      {"each column",
       {{{1, N, 3, 4, 5}, {1, 2, N, 4, 5}, {1, 2, 3, N, 5}}},
       {{{1, 5}, {1, 5}, {1, 5}}},
       2},
      {"shared rows", {{{N, 2, N, 4}, {N, N, 3, 4}, {1, N, N, 4}}}, {{{4}, {4}, {4}}}, 1},
      {"all null in the first", {{{N, N}, {1, 2}, {3, 4}}}, {{{0}, {0}, {0}}}, 0},
      {"nothing left in the second", {{{N, 2}, {1, N}, {3, 4}}}, {{{0}, {0}, {0}}}, 0},
      {"nothing left in the third", {{{N, 2, 3}, {1, N, 5}, {3, 4, N}}}, {{{0}, {0}, {0}}}, 0},
      {"one row", {{{1}, {2}, {3}}}, {{{1}, {2}, {3}}}, 1},
  };
  const bool pair_of_first_two[] = {true, true, false, false, false, true, true, false, true};
  std::size_t k = 0;
  for (const Row& row : table) {
    A a = samples(row.in[0], 0), b = samples(row.in[1]), c = samples(row.in[2], -1), x, y, w;
    z.RemoveNullsXYZ(null, a, b, c, x, y, w, rows, ok);
    EXPECT_TRUE(ok) << row.name;
    EXPECT_EQ(rows, row.rows) << row.name;
    EXPECT_EQ(from_one(x), row.out[0]) << row.name;
    EXPECT_EQ(from_one(y), row.out[1]) << row.name;
    EXPECT_EQ(from_one(w), row.out[2]) << row.name;
    EXPECT_EQ(from_one(a), row.in[0]) << row.name << ": inputs stay";
    EXPECT_EQ(from_one(b), row.in[1]) << row.name;
    EXPECT_EQ(from_one(c), row.in[2]) << row.name;
    std::int32_t remove = 1;
    A d = samples(row.in[0]), e = samples(row.in[1]), f = samples(row.in[2]);
    z.RemoveNullValuesXYZ(null, remove, d, e, f, rows, ok);
    EXPECT_TRUE(ok && rows == row.rows) << row.name;
    EXPECT_EQ(from_one(d), row.out[0]) << row.name;
    EXPECT_EQ(from_one(e), row.out[1]) << row.name;
    EXPECT_EQ(from_one(f), row.out[2]) << row.name;
    if (!pair_of_first_two[k++]) continue;
    z.RemoveNullsXY(null, a, b, x, y, rows, ok);
    EXPECT_TRUE(ok && rows == row.rows) << row.name;
    EXPECT_EQ(from_one(x), row.out[0]) << row.name;
    EXPECT_EQ(from_one(y), row.out[1]) << row.name;
    A g = samples(row.in[0]), h = samples(row.in[1]);
    z.RemoveNullValues(null, remove, g, h, rows, ok);
    EXPECT_TRUE(ok && rows == row.rows) << row.name;
    EXPECT_EQ(from_one(g), row.out[0]) << row.name;
    EXPECT_EQ(from_one(h), row.out[1]) << row.name;
  }
  EXPECT_EQ(k, 9U);
  EXPECT_TRUE(lines.empty());
}

TEST_F(NullRemovalTest, one_array_and_a_nan_null) {
  A x = samples({1, N, 3, N}), kept;
  z.RemoveNulls(null, x, kept, rows, ok);
  EXPECT_TRUE(ok);
  EXPECT_EQ(rows, 2);
  EXPECT_EQ(from_one(kept), (Values{1, 3}));
  EXPECT_EQ(from_one(x), (Values{1, N, 3, N}));
  float nan = kNaN;
  A y = samples({kNaN, 5});
  z.RemoveNulls(nan, y, kept, rows, ok);
  EXPECT_TRUE(ok && rows == 1);
  EXPECT_EQ(from_one(kept), Values{5});
}

TEST_F(NullRemovalTest, unequal_bounds_change_nothing_and_say_nothing) {
  A two = samples({1, N}), three = samples({1, 2, N}), a, b, c;
  std::int32_t remove = 1;
  bool flag = true;
  Array1<Boolean> mask = listed<Boolean>({true, false, true});
  const auto unchanged = [&](const char* name, std::int32_t want_rows) {
    EXPECT_FALSE(ok) << name;
    EXPECT_EQ(rows, want_rows) << name;
    EXPECT_FALSE(a.allocated() || b.allocated() || c.allocated()) << name;
    EXPECT_EQ(from_one(two), (Values{1, N})) << name;
    EXPECT_EQ(from_one(three), (Values{1, 2, N})) << name;
    ok = true;
    rows = -7;
  };
  ok = true;
  z.RemoveNullsXY(null, two, three, a, b, rows, ok);
  unchanged("XY: the length is written before the bounds are compared", 2);
  z.RemoveNullsXYZ(null, three, three, two, a, b, c, rows, ok);
  unchanged("XYZ", 3);
  z.RemoveNullsXYZ(null, three, two, three, a, b, c, rows, ok);
  unchanged("XYZ, second", 3);
  z.RemoveNullValues(null, remove, two, three, rows, ok);
  unchanged("values", -7);
  z.RemoveNullValuesXYZ(null, remove, two, two, three, rows, ok);
  unchanged("values of three", -7);
  z.MaskValuesXY(mask, two, three, rows, ok, flag);
  unchanged("mask", -7);
  z.MaskValuesXYZ(mask, three, three, two, rows, ok, flag);
  unchanged("mask of three", -7);
  remove = 0;
  z.RemoveNullValues(null, remove, two, two, rows, ok);
  EXPECT_TRUE(ok && rows == 2) << "counted only";
  z.RemoveNullValuesXYZ(null, remove, three, three, three, rows, ok);
  EXPECT_TRUE(ok && rows == 3) << "counted only";
  EXPECT_EQ(from_one(three), (Values{1, 2, N}));
  EXPECT_TRUE(lines.empty());
}

TEST_F(NullRemovalTest, masks) {
  struct Row {
    const char* name;
    std::vector<Boolean> mask;
    Values x, others;
    std::int32_t rows;
  };
  const Row table[] = {
      {"some", {true, false, true}, {1, 3}, {1, 3}, 2},
      {"all: nothing is touched", {true, true, true}, {1, 2, 3}, {1, 2, 3}, 3},
      {"none: only x is emptied", {false, false, false}, {0}, {1, 2, 3}, 0},
      {"a longer mask", {false, true, false, true}, {2}, {2}, 1},
  };
  for (const Row& row : table) {
    for (bool flag : {true, false}) {  // ignored
      Array1<Boolean> mask = listed(row.mask);
      A x = samples({1, 2, 3}), y = samples({1, 2, 3}, 0), w = samples({1, 2, 3});
      z.MaskValuesXYZ(mask, x, y, w, rows, ok, flag);
      EXPECT_TRUE(ok && rows == row.rows) << row.name;
      EXPECT_EQ(from_one(x), row.x) << row.name;
      EXPECT_EQ(from_one(y), row.others) << row.name;
      EXPECT_EQ(from_one(w), row.others) << row.name;
      A v = samples({1, 2, 3}), u = samples({1, 2, 3});
      z.MaskValuesXY(mask, v, u, rows, ok, flag);
      EXPECT_TRUE(ok && rows == row.rows) << row.name;
      EXPECT_EQ(from_one(v), row.x) << row.name;
      EXPECT_EQ(from_one(u), row.others) << row.name;
    }
  }
  bool flag = true;
  Array1<Boolean> shorter = listed<Boolean>({true, false});
  A x = samples({1, 2, 3}), y = samples({4, 5, 6});
  z.MaskValuesXY(shorter, x, y, rows, ok, flag);
  EXPECT_FALSE(ok);
  z.MaskValuesXYZ(shorter, x, y, y, rows, ok, flag);
  EXPECT_FALSE(ok);
  EXPECT_EQ(from_one(x), (Values{1, 2, 3}));
  EXPECT_EQ(lines, (std::vector{error_line(9, "ztAnalysis", "MaskValuesXY"),
                                error_line(9, "ztAnalysis", "MaskValuesXYZ")}));
}

TEST_F(NullRemovalTest, failures_bear_the_stated_locations) {
  A none, x = samples({1, N}), a, b, c;
  A fixed(x.data(), {1, 2}, Resizing::kRefused);
  std::int32_t remove = 1;
  bool flag = true;
  Array1<Boolean> mask = listed<Boolean>({true, false});
  const auto fails = [&](std::int32_t number, const char* module, const char* routine) {
    EXPECT_FALSE(ok) << routine;
    EXPECT_EQ(lines, std::vector{error_line(number, module, routine)});
    lines.clear();
    ok = true;
  };
  ok = true;
  z.RemoveNulls(null, none, a, rows, ok);
  fails(9, "ztStatistics", "RemoveNulls");
  z.RemoveNulls(null, x, fixed, rows, ok);
  fails(10, "ztStatistics", "RemoveNulls");
  z.RemoveNullsXY(null, x, none, a, b, rows, ok);
  fails(9, "ztStatistics", "RemoveNullsXY");
  z.RemoveNullsXYZ(null, x, x, none, a, b, c, rows, ok);
  fails(9, "ztStatistics", "RemoveNullsXY");  // so it names itself
  z.RemoveNullValues(null, remove, x, none, rows, ok);
  fails(9, "ztAnalysis", "RemoveNullValues");
  z.RemoveNullValuesXYZ(null, remove, none, x, x, rows, ok);
  fails(9, "ztAnalysis", "RemoveNullsXYZ");
  z.MaskValuesXY(mask, none, x, rows, ok, flag);
  fails(9, "ztAnalysis", "MaskValuesXY");
  z.MaskValuesXYZ(mask, x, none, x, rows, ok, flag);
  fails(9, "ztAnalysis", "MaskValuesXYZ");
  EXPECT_EQ(from_one(x), (Values{1, N}));
}

// A companion that counts its calls and fails at a chosen one, by its flag or by raising.
struct Failing final : ztArrayTools {
  int* calls;
  int at;
  bool raises;
  Failing(int* counter, int which, bool by_raising)
      : calls(counter), at(which), raises(by_raising) {}
  void step(bool& ok) const {
    if (++*calls != at) return;
    if (raises) throw Fault(51);
    ok = false;
  }
  void ApplyMask(Array1<Boolean>& mask, A& values, std::int32_t& count, bool& ok,
                 bool& keep) override {
    built_in->ApplyMask(mask, values, count, ok, keep);
    step(ok);
  }
  void RemoveNullEntries(float& value, A& values, std::int32_t& count, Array1<std::int32_t>& list,
                         std::int32_t& removed, bool& ok) override {
    built_in->RemoveNullEntries(value, values, count, list, removed, ok);
    step(ok);
  }
  void RemoveListedEntries(Array1<std::int32_t>& list, std::int32_t& removed, A& values,
                           std::int32_t& count, bool& ok) override {
    built_in->RemoveListedEntries(list, removed, values, count, ok);
    step(ok);
  }
  void InitialiseFlagArray(std::int32_t&, bool&, bool&, Array1<Boolean>&, bool&) override {}
  std::shared_ptr<ztArrayTools> built_in = built_in_makers().ArrayTools();
};

TEST_F(NullRemovalTest, a_failing_companion_keeps_the_callers_arrays) {
  for (const bool raises : {false, true}) {
    for (int at = 1; at <= 10; ++at) {
      int calls = 0;
      common_globals() = {};
      lines.clear();
      companion_makers().ArrayTools = [&] { return std::make_shared<Failing>(&calls, at, raises); };
      A a = samples({N, 2, 3, 4}), b = samples({1, N, 3, 4}), c = samples({1, 2, N, 4});
      std::int32_t remove = 1;
      ztStatistics s;
      s.RemoveNullValuesXYZ(null, remove, a, b, c, rows, ok);
      EXPECT_EQ(ok, at == 10);  // three columns, three calls each
      EXPECT_EQ(calls, at == 10 ? 9 : at);
      EXPECT_EQ(from_one(a), ok ? Values{4} : (Values{N, 2, 3, 4})) << at;
      EXPECT_EQ(from_one(c), ok ? Values{4} : (Values{1, 2, N, 4})) << at;
      EXPECT_EQ(numbers_of(lines), raises && at < 10 ? "51" : "") << at;
    }
  }
  // The mask methods do not ask for success.
  int calls = 0;
  companion_makers().ArrayTools = [&] { return std::make_shared<Failing>(&calls, 1, false); };
  ztStatistics s;
  Array1<Boolean> mask = listed<Boolean>({true, false});
  A x = samples({1, 2}), y = samples({3, 4});
  bool flag = true;
  s.MaskValuesXY(mask, x, y, rows, ok, flag);
  EXPECT_TRUE(ok);
  EXPECT_EQ(from_one(y), Values{3});
  companion_makers().ArrayTools = nullptr;
  ztStatistics without;
  lines.clear();
  without.MaskValuesXY(mask, y, y, rows, ok, flag);
  EXPECT_FALSE(ok);
  EXPECT_EQ(lines, std::vector{error_line(91, "ztAnalysis", "MaskValuesXY")});
}

}  // namespace
}  // namespace vqmath63
