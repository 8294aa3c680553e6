// The command accumulate: periods, dates, days and values, and sums that agree with the data.
#include "host/vqhost_program.hpp"

namespace vqmath63::host {
namespace {

// Numbers that agree to Single precision.
bool same_value(const std::string& got, const std::string& wanted) {
  const double number = number_in(wanted);
  return std::fabs(number_in(got) - number) <= 2.4e-7 * std::fabs(number);
}

struct PeriodRow {
  const char* name;
  std::string csv;
  std::string options;
  std::vector<std::string> out;  // lines; numbers to Single precision
};

const PeriodRow kPeriodRows[] = {
    {"months from the 31st",
     "t,oil\n0,5\n1,20\n2,30\n3,40\n",
     "--time month --start-data 2023-01-31",
     {"start,end,days,oil", "2023-01-31,2023-02-28,28,20", "2023-02-28,2023-03-31,31,30",
      "2023-03-31,2023-04-30,30,40"}},
    // 14 days at 10 and 17 at 20 in January, 12 at 20 in February.
    {"a month's mean of two rates",
     "date,q\n2023-01-01,0\n2023-01-15,10\n2023-02-13,20\n",
     "",
     {"start,end,days,q", "2023-01-01,2023-02-01,31,15.483870967741936",
      "2023-02-01,2023-02-13,12,20"}},
    {"a cumulative column",
     "date,cum\n2023-01-01,0\n2023-03-01,590\n",
     "--cumulative cum",
     {"start,end,days,cum", "2023-01-01,2023-02-01,31,310", "2023-02-01,2023-03-01,28,590"}},
    {"both, in the order of the file",
     "date,cum,q\n2023-01-01,0,0\n2023-03-01,590,10\n",
     "--cumulative cum --frequency 2",
     {"start,end,days,cum,q", "2023-01-01,2023-03-01,59,590,10"}},
    {"the calendar's phase",
     "date,q\n2023-02-10,0\n2023-05-10,7\n",
     "--start 2023-01-01 --period QUARTER",
     {"start,end,days,q", "2023-02-10,2023-04-01,50,7", "2023-04-01,2023-05-10,39,7"}},
    {"a later start",
     "date,q\n2023-01-01,0\n2023-01-31,7\n2023-03-01,9\n",
     "--start 2023-02-01",
     {"start,end,days,q", "2023-02-01,2023-03-01,28,9"}},
    {"hours",
     "date,q\n2020-01-01 06:00,0\n2020-01-02T06:00,4\n2020-01-03 18:00:00,8\n",
     "--period day",
     {"start,end,days,q", "2020-01-01 06:00,2020-01-02 06:00,1,4",
      "2020-01-02 06:00,2020-01-03 06:00,1,8", "2020-01-03 06:00,2020-01-03 18:00,0.5,8"}},
    {"a first time other than 0",
     "t,q\n2,0\n3,10\n",
     "--time months --start-data 2023-01-31",
     {"start,end,days,q", "2023-03-31,2023-04-30,30,10"}},
    {"times below 0",
     "t,q\n-1,0\n1,10\n",
     "--data-period month --start-data 2023-01-31 --start 2022-12-31",
     {"start,end,days,q", "2022-12-31,2023-01-31,31,10", "2023-01-31,2023-02-28,28,10"}},
    {"a row to begin with",
     "date,q\n2023-01-01,0\n2023-02-01,1\n2023-03-01,2\n",
     "--from-row 2",
     {"start,end,days,q", "2023-02-01,2023-03-01,28,2"}},
    {"chosen columns",
     "date,a,\"b, c\",d\n2023-01-01,0,0,0\n2023-02-01,1,2,3\n",
     "--columns 3,a",
     {"start,end,days,\"b, c\",a", "2023-01-01,2023-02-01,31,2,1"}},
    {"dates before time 0",
     "date,q\n1899-12-01,0\n1900-02-01,5\n",
     "--start-data 1900-01-01 --start 1899-12-01",
     {"start,end,days,q", "1899-12-01,1900-01-01,31,5", "1900-01-01,1900-02-01,31,5"}},
    // 14 974.99 days need 14 + 7 bits and more: the ends are Singles, and still midnights.
    {"boundaries beyond a Single's digits",
     "date,q\n1980-01-01 00:10,0\n2021-01-01 00:10,3\n",
     "--start 1950-01-01 --period years --frequency 20",
     {"start,end,days,q", "1980-01-01 00:10,1990-01-01 00:00,3652.993056,3",
      "1990-01-01 00:00,2010-01-01 00:00,7305,3",
      "2010-01-01 00:00,2021-01-01 00:10,4018.006944,3"}},
    {"missing cells",
     "date,q\n2023-01-01,\n2023-02-01,\n2023-03-01,4\n",
     "--empty-as 0",
     {"start,end,days,q", "2023-01-01,2023-02-01,31,0", "2023-02-01,2023-03-01,28,4"}},
};

TEST_F(Vqhost, AccumulatesOntoPeriods) {
  for (const PeriodRow& row : kPeriodRows) {
    SCOPED_TRACE(row.name);
    write("in.csv", row.csv);
    const Outcome outcome = run("accumulate in.csv -o - " + row.options);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "");
    const auto lines = lines_of(outcome.out);
    ASSERT_EQ(lines.size(), row.out.size()) << outcome.out;
    for (std::size_t i = 0; i < lines.size(); ++i) {
      const auto got = fields_of(lines[i]);
      const auto wanted = fields_of(row.out[i]);
      ASSERT_EQ(got.size(), wanted.size()) << lines[i];
      for (std::size_t c = 0; c < got.size(); ++c) {
        // Dates and days to the letter, values to Single precision.
        EXPECT_TRUE(got[c] == wanted[c] || (c > 2 && same_value(got[c], wanted[c])))
            << lines[i] << " instead of " << row.out[i];
      }
    }
  }
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
