// Null removal and masking: rows that stay and go together, what may surprise, failures.
#include <random>
#include <sstream>

#include "statistics/samples.hpp"
#include "statistics/statistics.hpp"

namespace vqmath63 {
namespace {

using A = Array1<float>;
using Values = std::vector<float>;
constexpr float N = -999.25F;  // the null

// Elements 1 to n; empty for an unallocated array.
Values from_one(const A& array) {
  Values values;
  for (std::int32_t i = 1; array.allocated() && i <= array.upper(); ++i) values.push_back(array(i));
  return values;
}

using Columns = std::vector<Values>;

class NullRemovalTest : public CompanionTest {
 protected:
  // What the last call left.
  void expect_done(std::int32_t want_rows, const Columns& want, const std::vector<A*>& arrays) {
    EXPECT_TRUE(ok);
    EXPECT_EQ(rows, want_rows);
    for (std::size_t i = 0; i < arrays.size(); ++i) {
      EXPECT_EQ(from_one(*arrays[i]), want.at(i)) << "column " << i;
    }
    ok = false;
    rows = -7;
  }
  float null = N;
  bool ok = false;
  bool flag = true;
  std::int32_t rows = -7, remove = 1;
  ztStatistics z;
};

TEST_F(NullRemovalTest, rows_stay_or_go_together) {
  each_row("statistics.tsv", "rows without nulls", 8, [&](const TableRow& row) {
    const Columns in = row["columns"], out = row["left"];
    const std::int32_t left = row["rows"];
    A a = samples(in.at(0), 0), b = samples(in.at(1)), c = samples(in.at(2), -1), x, y, w;
    z.RemoveNullsXYZ(null, a, b, c, x, y, w, rows, ok);
    expect_done(left, out, {&x, &y, &w});
    if (row["pair"]) {
      z.RemoveNullsXY(null, a, b, x, y, rows, ok);
      expect_done(left, out, {&x, &y});
      A d = a, e = b;
      z.RemoveNullValues(null, remove, d, e, rows, ok);
      expect_done(left, out, {&d, &e});
    }
    EXPECT_EQ((Columns{from_one(a), from_one(b), from_one(c)}), in) << "inputs stay";
    z.RemoveNullValuesXYZ(null, remove, a, b, c, rows, ok);
    expect_done(left, out, {&a, &b, &c});
  });
  EXPECT_TRUE(lines.empty());
}

TEST_F(NullRemovalTest, one_array_and_a_nan_null) {
  A x = samples({1, N, 3, N}), kept;
  z.RemoveNulls(null, x, kept, rows, ok);
  expect_done(2, {{1, 3}, {1, N, 3, N}}, {&kept, &x});
  float nan = kNaN;
  A y = samples({kNaN, 5});
  z.RemoveNulls(nan, y, kept, rows, ok);
  expect_done(1, {{5}}, {&kept});
}

TEST_F(NullRemovalTest, results_may_take_the_place_of_any_input) {
  const Columns in = {{1, N, 3}, {4, 5, N}, {7, 8, 9}};
  A a = samples(in[0]), b = samples(in[1]), c = samples(in[2]);
  z.RemoveNullsXYZ(null, a, b, c, c, a, b, rows, ok);
  expect_done(1, {{1}, {4}, {7}}, {&c, &a, &b});
  A d = samples(in[0]), e = samples(in[1]);
  z.RemoveNullsXY(null, d, e, e, d, rows, ok);
  expect_done(1, {{1}, {4}}, {&e, &d});
  A f = samples(in[0]);
  z.RemoveNulls(null, f, f, rows, ok);
  expect_done(2, {{1, 3}}, {&f});
}

TEST_F(NullRemovalTest, unequal_bounds_change_nothing_and_say_nothing) {
  A two = samples({1, N}), three = samples({1, 2, N}), a, b, c;
  Array1<Boolean> mask = array_of<Boolean>({true, false, true});
  struct Row {
    const char* name;
    std::function<void()> call;
    std::int32_t rows = -7;
  } const table[] = {
      {"XY: rows are written first", [&] { z.RemoveNullsXY(null, two, three, a, b, rows, ok); }, 2},
      {"XYZ", [&] { z.RemoveNullsXYZ(null, three, three, two, a, b, c, rows, ok); }, 3},
      {"XYZ, second", [&] { z.RemoveNullsXYZ(null, three, two, three, a, b, c, rows, ok); }, 3},
      {"values", [&] { z.RemoveNullValues(null, remove, two, three, rows, ok); }},
      {"of three", [&] { z.RemoveNullValuesXYZ(null, remove, two, two, three, rows, ok); }},
      {"mask", [&] { z.MaskValuesXY(mask, two, three, rows, ok, flag); }},
      {"mask of three", [&] { z.MaskValuesXYZ(mask, three, three, two, rows, ok, flag); }},
  };
  for (const Row& row : table) {
    ok = true;
    rows = -7;
    row.call();
    EXPECT_FALSE(ok) << row.name;
    EXPECT_EQ(rows, row.rows) << row.name;
    EXPECT_FALSE(a.allocated() || b.allocated() || c.allocated()) << row.name;
    EXPECT_EQ((Columns{from_one(two), from_one(three)}), (Columns{{1, N}, {1, 2, N}})) << row.name;
  }
  remove = 0;
  z.RemoveNullValues(null, remove, two, two, rows, ok);
  expect_done(2, {{1, N}}, {&two});
  z.RemoveNullValuesXYZ(null, remove, three, three, three, rows, ok);
  expect_done(3, {{1, 2, N}}, {&three});
  EXPECT_TRUE(lines.empty());
}

TEST_F(NullRemovalTest, masks) {
  each_row("statistics.tsv", "masks", 4, [&](const TableRow& row) {
    const Values others = row["others"];
    const Columns want{row["x"], others, others};
    for (const bool ignored : {true, false}) {
      flag = ignored;
      Array1<Boolean> mask = array_of<Boolean>(row["mask"]);
      A x = samples({1, 2, 3}), y = samples({1, 2, 3}, 0), w = y, v = x, u = y;
      z.MaskValuesXYZ(mask, x, y, w, rows, ok, flag);
      expect_done(row["rows"], want, {&x, &y, &w});
      z.MaskValuesXY(mask, v, u, rows, ok, flag);
      expect_done(row["rows"], want, {&v, &u});
    }
  });
}

TEST_F(NullRemovalTest, failures_bear_their_locations) {
  A none, x = samples({1, N}), a, b, c;
  A fixed(x.data(), {1, 2}, Resizing::kRefused);
  Array1<Boolean> mask = array_of<Boolean>({true, false}), shorter = array_of<Boolean>({true});
  struct Row {
    std::function<void()> call;
    std::int32_t number;
    const char *module, *routine;
  } const table[] = {
      {[&] { z.RemoveNulls(null, none, a, rows, ok); }, 9, "ztStatistics", "RemoveNulls"},
      {[&] { z.RemoveNulls(null, x, fixed, rows, ok); }, 10, "ztStatistics", "RemoveNulls"},
      {[&] { z.RemoveNullsXY(null, x, none, a, b, rows, ok); }, 9, "ztStatistics", "RemoveNullsXY"},
      // So it names itself.
      {[&] { z.RemoveNullsXYZ(null, x, x, none, a, b, c, rows, ok); }, 9, "ztStatistics",
       "RemoveNullsXY"},
      {[&] { z.RemoveNullValues(null, remove, x, none, rows, ok); }, 9, "ztAnalysis",
       "RemoveNullValues"},
      {[&] { z.RemoveNullValuesXYZ(null, remove, none, x, x, rows, ok); }, 9, "ztAnalysis",
       "RemoveNullsXYZ"},
      {[&] { z.MaskValuesXY(mask, none, x, rows, ok, flag); }, 9, "ztAnalysis", "MaskValuesXY"},
      {[&] { z.MaskValuesXY(shorter, x, x, rows, ok, flag); }, 9, "ztAnalysis", "MaskValuesXY"},
      {[&] { z.MaskValuesXYZ(mask, x, none, x, rows, ok, flag); }, 9, "ztAnalysis",
       "MaskValuesXYZ"},
      {[&] { z.MaskValuesXYZ(shorter, x, x, x, rows, ok, flag); }, 9, "ztAnalysis",
       "MaskValuesXYZ"},
  };
  for (const Row& row : table) {
    ok = true;
    row.call();
    EXPECT_FALSE(ok) << row.routine;
    EXPECT_EQ(taken(), std::vector{error_line(row.number, row.module, row.routine)});
    EXPECT_EQ(from_one(x), (Values{1, N})) << row.routine;
  }
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

// What a call leaves in three results with values of their own, the last of them held fixed or the
// same as the first: their bounds and all their elements, rows and success as text.
std::string left_by(ztStatistics& z, std::uint32_t seed) {
  std::mt19937 random(seed);
  const auto pick = [&](auto... of) { return std::array{of...}[random() % sizeof...(of)]; };
  const std::int32_t n = pick(1, 2, 7, 33);
  const float most = pick(N, 4.0F, 5.0F);
  const auto drawn = [&] {
    A column(pick(1, 1, 0, -2, 2), n + 1);  // an array may begin behind sample 1
    for (std::int32_t i = column.lower(); i <= column.upper(); ++i) {
      column(i) = pick(N, 1.0F, 2.0F, 3.0F, kNaN) == N ? N : pick(most, 6.0F, kNaN, 7.0F);
    }
    return column;
  };
  const A a = drawn(), b = drawn(), c = drawn();
  A x = samples({1}), y = samples({2}), held = samples({3});
  A fixed(held.data(), held.bounds(), pick(Resizing::kAllowed, Resizing::kRefused));
  A& last = pick(0, 0, 0, 1) == 1 ? x : fixed;
  float null = pick(N, kNaN);
  std::int32_t rows = -7;
  bool ok = false;
  z.RemoveNullsXYZ(null, a, b, c, x, y, last, rows, ok);
  std::ostringstream text;
  text << ok << " " << rows;
  for (const A* result : {&x, &y, &fixed}) {
    text << "; " << result->lower() << ":";
    for (const float value : result->elements()) text << " " << value;
  }
  return text.str();
}

TEST_F(NullRemovalTest, one_pass_leaves_what_the_companion_leaves_column_after_column) {
  std::size_t kept = 0;
  for (std::uint32_t seed = 0; seed < 3000; ++seed) {
    ztStatistics quick;
    const auto used = array_tools();  // the built-in one
    const std::string want_quick = left_by(quick, seed);
    const std::vector<std::string> said = taken();
    int calls = 0;
    common_globals().ArrayTools = std::make_shared<Failing>(&calls, 0, false);
    ztStatistics asking;
    EXPECT_EQ(want_quick, left_by(asking, seed)) << seed;
    EXPECT_EQ(said, taken()) << seed;
    common_globals().ArrayTools = used;
    kept += want_quick[0] == '1' && want_quick[2] != '0' ? 1U : 0U;
  }
  EXPECT_GT(kept, 500U);
}

TEST_F(NullRemovalTest, a_failing_companion_keeps_the_callers_arrays) {
  for (const bool raises : {false, true}) {
    for (int at = 1; at <= 10; ++at) {
      int calls = 0;
      common_globals() = {};
      companion_makers().ArrayTools = [&] { return std::make_shared<Failing>(&calls, at, raises); };
      A a = samples({N, 2, 3, 4}), b = samples({1, N, 3, 4}), c = samples({1, 2, N, 4});
      ztStatistics s;
      s.RemoveNullValuesXYZ(null, remove, a, b, c, rows, ok);
      EXPECT_EQ(ok, at == 10);  // three columns, three calls each
      EXPECT_EQ(calls, at == 10 ? 9 : at);
      EXPECT_EQ(from_one(a), ok ? Values{4} : (Values{N, 2, 3, 4})) << at;
      EXPECT_EQ(from_one(c), ok ? Values{4} : (Values{1, 2, N, 4})) << at;
      EXPECT_EQ(numbers_of(taken()), raises && at < 10 ? "51" : "") << at;
    }
  }
  // The mask methods do not ask for success.
  int calls = 0;
  companion_makers().ArrayTools = [&] { return std::make_shared<Failing>(&calls, 1, false); };
  ztStatistics s;
  Array1<Boolean> mask = array_of<Boolean>({true, false});
  A x = samples({1, 2}), y = samples({3, 4});
  s.MaskValuesXY(mask, x, y, rows, ok, flag);
  EXPECT_TRUE(ok);
  EXPECT_EQ(from_one(y), Values{3});
  companion_makers().ArrayTools = nullptr;
  ztStatistics without;
  EXPECT_EQ(numbers_of(taken()), "429");
  without.MaskValuesXY(mask, y, y, rows, ok, flag);
  EXPECT_FALSE(ok);
  EXPECT_EQ(taken(), std::vector{error_line(429, "ztAnalysis", "MaskValuesXY")});
}

}  // namespace
}  // namespace vqmath63
