// The command accumulate: periods, dates, days and values, and sums that agree with the data.
#include "frame/test_table.hpp"
#include "host/vqhost_program.hpp"

namespace vqmath63::host {
namespace {

// Numbers that agree to Single precision.
bool same_value(const std::string& got, const std::string& wanted) {
  const double number = number_in(wanted);
  return std::fabs(number_in(got) - number) <= 2.4e-7 * std::fabs(number);
}

TEST_F(Vqhost, AccumulatesOntoPeriods) {
  each_row("accumulate.tsv", "periods by vqhost", 14, [&](const TableRow& row) {
    std::string csv;
    for (const std::string& line : split(row["csv"], '|')) csv += line + "\n";
    write("in.csv", csv);
    const Outcome outcome = run("accumulate in.csv -o - " + row["options"].text);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "");
    const auto lines = lines_of(outcome.out);
    const std::vector<std::string> want = split(row["out"], '|');
    ASSERT_EQ(lines.size(), want.size()) << outcome.out;
    for (std::size_t i = 0; i < lines.size(); ++i) {
      const auto got = fields_of(lines[i]);
      const auto wanted = fields_of(want[i]);
      ASSERT_EQ(got.size(), wanted.size()) << lines[i];
      for (std::size_t c = 0; c < got.size(); ++c) {
        // Dates and days to the letter, values to Single precision.
        EXPECT_TRUE(got[c] == wanted[c] || (c > 2 && same_value(got[c], wanted[c])))
            << lines[i] << " instead of " << want[i];
      }
    }
  });
}

// The sample field: its own columns, and its quarters and years, tell the same volumes.
TEST_F(Vqhost, SampleFieldAddsUp) {
  const fs::path sample = fs::path(VQ_TEST_DATA) / ".." / ".." / "samples" / "field_wells.csv";
  const auto lines = lines_of(contents(sample));
  ASSERT_GE(lines.size(), 100U);
  ASSERT_EQ(lines[0], "date,W-1,W-2,W-3,W-4,W-5,W-6,field_water,field_oil_cum");
  constexpr std::size_t kWells = 6;
  for (const std::string period : {"day", "quarter", "year"}) {
    SCOPED_TRACE(period);
    const Outcome outcome = run("accumulate '" + sample.string() + "' --period " + period +
                                " --start 2015-01-01 --cumulative field_oil_cum -o -");
    ASSERT_EQ(outcome.status, 0) << outcome.err;
    const auto periods = lines_of(outcome.out);
    ASSERT_EQ(periods.size(), period == "day" ? 2923U : period == "quarter" ? 33U : 9U);
    double volume = 0.0;
    for (std::size_t i = 1; i < periods.size(); ++i) {
      const auto fields = fields_of(periods[i]);
      ASSERT_EQ(fields.size(), 3 + kWells + 2);
      for (std::size_t w = 0; w < kWells; ++w) {
        volume += number_in(fields[2]) * number_in(fields[3 + w]);
      }
      const double cumulative = number_in(fields.back());
      EXPECT_NEAR(volume, cumulative, 5e-7 * cumulative) << periods[i];
    }
    EXPECT_NEAR(volume, number_in(fields_of(lines.back()).back()), 5e-7 * volume);
  }
}

}  // namespace
}  // namespace vqmath63::host
