// The vocabulary of period words and its table, loaded for the time of one check.
#include "accumulate/period_words.hpp"

#include "frame/companion_fixture.hpp"
#include "frame/test_table.hpp"

namespace vqmath63 {
namespace {

class PeriodWordsTest : public CompanionTest {};

TEST_F(PeriodWordsTest, whole_words_in_any_case_are_known) {
  each_row("accumulate.tsv", "words", 31, [](const TableRow& row) {
    std::string word = row["word"];
    const bool known = row["known"];
    EXPECT_EQ(CheckPeriod(word), known);
  });
  std::string zero_inside("month\0", 6), line_end("month\n");
  EXPECT_FALSE(CheckPeriod(zero_inside));
  EXPECT_FALSE(CheckPeriod(line_end));
  std::string kept = "Weeks";
  CheckPeriod(kept);
  EXPECT_EQ(kept, "Weeks");
  EXPECT_TRUE(lines.empty());
}

TEST_F(PeriodWordsTest, the_table_can_be_loaded_and_unloaded_any_number_of_times) {
  for (const bool wanted : {true, true, false, false, true, false}) {
    bool load = wanted;
    bool ok = false;
    SetAccumulatePeriods(load, ok);
    EXPECT_TRUE(ok);
    EXPECT_EQ(load, wanted);
    std::string last = "years", other = "eon";
    EXPECT_TRUE(CheckPeriod(last));  // on a loaded table and on none
    EXPECT_FALSE(CheckPeriod(other));
  }
  EXPECT_TRUE(lines.empty());
}

}  // namespace
}  // namespace vqmath63
