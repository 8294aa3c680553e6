// Masking and removal, and what faults leave behind.
#include "frame/array_tools.hpp"

#include "arrays.hpp"
#include "companion_fixture.hpp"
#include "test_table.hpp"

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
  each_row("frame.tsv", "removals", 7, [&](const TableRow& row) {
    const Values left = row["left"];
    const std::int32_t want_count = row["count"], want_removed = row["removed"],
                       lower_left = row["lower left"];
    Array1<float> values = array_of<float>(row["values"], row["lower"]);
    Array1<float> parallel = values;
    float null = row["null"];
    tools.RemoveNullEntries(null, values, count, list, removed, ok);
    EXPECT_TRUE(ok);
    EXPECT_EQ(count, want_count);
    EXPECT_EQ(contents(values), left);
    EXPECT_EQ(values.lower(), lower_left);
    EXPECT_EQ(removed, want_removed);
    EXPECT_EQ(contents(list), List(row["list"]));
    tools.RemoveListedEntries(list, removed, parallel, count = -5, ok);
    EXPECT_EQ(count, want_count);
    EXPECT_EQ(contents(parallel), left);
  });
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
  each_row("frame.tsv", "masks", 5, [&](const TableRow& row) {
    Array1<float> values = array_of<float>({1, 2, 3});
    Array1<Boolean> mask = array_of<Boolean>(row["mask"]);
    const std::int32_t fault = row["fault"], want_count = row["count"];
    bool keep = row["keep"];
    count = -5;
    const auto apply = [&] { tools.ApplyMask(mask, values, count, ok, keep); };
    EXPECT_EQ(fault_of(apply), fault);
    EXPECT_EQ(ok, fault == 0);
    EXPECT_EQ(count, want_count);
    EXPECT_EQ(contents(values), Values(row["left"]));
  });
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
