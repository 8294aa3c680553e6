// Masking and removal, and what faults leave behind.
#include "frame/array_tools.hpp"

#include <cmath>

#include "arrays.hpp"
#include "companion_fixture.hpp"

namespace vqmath63 {
namespace {

using Values = std::vector<float>;
using List = std::vector<std::int32_t>;

class ArrayTools : public ::testing::Test {
 protected:
  BuiltInArrayTools tools;
  std::int32_t count = -5;
  std::int32_t removed = -5;
  Array1<std::int32_t> list;
  bool ok = true;
};

TEST_F(ArrayTools, nulls_and_listed_entries_are_removed) {
  struct Row {
    const char* name;
    float null;
    std::int32_t lower;
    Values values, want;
    std::int32_t want_lower, want_count, want_removed;
    List want_list;
  } const rows[] = {
      {"some", -999, 1, {1, -999, 3, -999}, {1, 3}, 1, 2, 2, {2, 4}},
      {"a run", 0, 1, {0, -0.0F, 5, 0, 0, 6}, {5, 6}, 1, 2, 4, {1, 2, 4, 5}},
      {"from -1", 7, -1, {7, 7, 7, 8, 9}, {7, 7, 8, 9}, -1, 2, 1, {1}},
      {"none", 7, 0, {7, 8, 9}, {7, 8, 9}, 0, 2, 0, {0}},
      {"all", 7, 0, {1, 7, 7}, {0}, 1, 0, 2, {1, 2}},
      {"NaN", NAN, 1, {NAN, 4, -NAN}, {4}, 1, 1, 2, {1, 3}},
      {"no samples", 4, 0, {4}, {0}, 1, 0, 0, {0}},
  };
  for (const Row& row : rows) {
    Array1<float> values = array_of(row.values, row.lower);
    Array1<float> parallel = values;
    float null = row.null;
    tools.RemoveNullEntries(null, values, count, list, removed, ok);
    EXPECT_TRUE(ok) << row.name;
    EXPECT_EQ(count, row.want_count) << row.name;
    EXPECT_EQ(contents(values), row.want) << row.name;
    EXPECT_EQ(values.lower(), row.want_lower) << row.name;
    EXPECT_EQ(removed, row.want_removed) << row.name;
    EXPECT_EQ(contents(list), row.want_list) << row.name;
    tools.RemoveListedEntries(list, removed, parallel, count = -5, ok);
    EXPECT_EQ(count, row.want_count) << row.name;
    EXPECT_EQ(contents(parallel), row.want) << row.name;
  }
}

TEST_F(ArrayTools, faults_leave_the_data_as_they_were) {
  float lent[] = {1, 2, 3};
  const Array1<float> three = array_of<float>({1, 2, 3});
  struct Row {
    const char* name;
    List positions;
    std::int32_t removed, fault;
    Array1<float> values;
  } rows[] = {
      {"position 0", {0}, 1, 9, three},
      {"position 4", {4}, 1, 9, three},
      {"short list", {1, 2}, 3, 9, three},
      {"descending", {2, 1}, 2, 5, three},
      {"twice", {2, 2}, 2, 5, three},
      {"negative", {1}, -1, 5, three},
      {"two-based", {2}, 1, 9, array_of<float>({1, 2, 3}, 2)},
      {"fixed", {2}, 1, 10, Array1<float>(lent, {1, 3}, Resizing::kRefused)},
  };
  for (Row& row : rows) {
    list = array_of(row.positions);
    ok = true;
    const auto remove = [&] {
      tools.RemoveListedEntries(list, row.removed, row.values, count, ok);
    };
    EXPECT_EQ(fault_of(remove), row.fault) << row.name;
    EXPECT_FALSE(ok) << row.name;
    EXPECT_EQ(contents(row.values), (Values{1, 2, 3})) << row.name;
  }
  float null = 2;
  Array1<float>& fixed = rows[7].values;
  EXPECT_EQ(fault_of([&] { tools.RemoveNullEntries(null, fixed, count, list, removed, ok); }), 10);
  EXPECT_EQ(lent[1], 2.0F);
}

TEST_F(ArrayTools, masks_keep_the_elements_of_the_wanted_flag) {
  struct Row {
    const char* name;
    std::vector<Boolean> mask;
    bool keep;
    Values want;
    std::int32_t want_count, fault;
  } rows[] = {
      {"true ones", {true, false, true}, true, {1, 3}, 2, 0},
      {"false ones", {true, false, true}, false, {2}, 1, 0},
      {"none", {false, false, false}, true, {0}, 0, 0},
      {"longer", {false, true, true, true}, true, {2, 3}, 2, 0},
      {"shorter", {false, true}, true, {1, 2, 3}, -5, 9},
  };
  for (Row& row : rows) {
    Array1<float> values = array_of<float>({1, 2, 3});
    Array1<Boolean> mask = array_of(row.mask);
    count = -5;
    const auto apply = [&] { tools.ApplyMask(mask, values, count, ok, row.keep); };
    EXPECT_EQ(fault_of(apply), row.fault) << row.name;
    EXPECT_EQ(ok, row.fault == 0) << row.name;
    EXPECT_EQ(count, row.want_count) << row.name;
    EXPECT_EQ(contents(values), row.want) << row.name;
  }
}

TEST_F(ArrayTools, flags_are_all_true) {
  Array1<Boolean> flags;
  count = 3;
  tools.InitialiseFlagArray(count, ok, ok, flags, ok);
  EXPECT_EQ(flags.lower(), 1);
  EXPECT_EQ(contents(flags), (std::vector<Boolean>{true, true, true}));
  count = 0;
  EXPECT_EQ(fault_of([&] { tools.InitialiseFlagArray(count, ok, ok, flags, ok); }), 9);
}

}  // namespace
}  // namespace vqmath63
