// CSV files as people have them: what is read, and what is said where they cannot be read.
#include "host/data/csv.hpp"

#include <gtest/gtest.h>

#include <cstdlib>
#include <sstream>

#include "host/client/dispatch_client.hpp"
#include "host/data/moment.hpp"
#include "host/failure.hpp"

namespace vqmath63::host {
namespace {

// What is asked of a file: a letter for each column, n for numbers, t for times, - for nothing; and
// "*" where empty cells are to be -1.
CsvReading reading_of(const std::string& letters) {
  CsvReading reading;
  for (const char letter : letters) {
    if (letter == '*') {
      reading.empty_as = -1.0;
    } else {
      reading.wants.push_back(letter == 'n'   ? Want::kNumbers
                              : letter == 't' ? Want::kTimes
                                              : Want::kNothing);
    }
  }
  return reading;
}

// The columns of a file, each with its values behind a colon, or why it cannot be read.
std::string read(const std::string& text, const std::string& letters) {
  std::ostringstream out;
  try {
    const CsvFile file("f.csv", text);
    const CsvTable table = file.read(reading_of(letters));
    EXPECT_EQ(table.columns.size(), file.headers().size());
    for (std::size_t c = 0; c < table.columns.size(); ++c) {
      out << (c > 0 ? "|" : "") << file.headers()[c] << ":";
      for (const double value : table.columns[c].values) out << " " << value;
    }
  } catch (const WorkError& error) {
    return error.what();
  }
  return out.str();
}

const std::string kMissing = ": the value is missing (--empty-as VALUE fills such cells)";

struct ReadRow {
  std::string text;
  const char* letters;
  std::string want;
};

const ReadRow kReadRows[] = {
    {"t,oil\n0,5\n1,20\n", "", "t: 0 1|oil: 5 20"},
    {"t,oil\n0,5\n1,20", "", "t: 0 1|oil: 5 20"},
    {"\xEF\xBB\xBFt,oil\r\n0,5\r\n1,20\r\n", "", "t: 0 1|oil: 5 20"},
    {"t;oil, net;gas\n0;5.5;6\n", "", "t: 0|oil, net: 5.5|gas: 6"},
    {"t\toil\n0\t5.5\n1\t6\n", "", "t: 0 1|oil: 5.5 6"},
    {"\"t\",\"oil \"\"net\"\", sm3\"\n\"0\",\"5\"\n", "", "t: 0|oil \"net\", sm3: 5"},
    {"t,note,oil\n0,\"a\nb\",5\n", "", "t: 0|note:|oil: 5"},
    {" t , oil\n 0 , 5 \n1,\t6\r\n", "", "t: 0 1|oil: 5 6"},
    {"a,b,c,d\n+1,-2.5,1e3,.5\n1.,-0,1E-3,+.25\n", "",
     "a: 1 1|b: -2.5 -0|c: 1000 0.001|d: 0.5 0.25"},
    {"t,oil\n\n0,5\n   \r\n1,6\n\n\n", "", "t: 0 1|oil: 5 6"},
    // Columns of text, of text after gaps and of nothing are left out.
    {"t,well,n,x,oil\n0,6406/2-1,,,5\n1,B,a,,6\n", "", "t: 0 1|well:|n:|x:|oil: 5 6"},
    {"t,oil,gas\n0,,1\n1,6,NaN\n2,nan,\n", "*", "t: 0 1 2|oil: -1 6 -1|gas: 1 -1 -1"},
    {"t,oil,gas\n0,5,1\n1,6,abc\n", "nn-", "t: 0 1|oil: 5 6|gas:"},
    {"date,oil\n1899-12-30,1\n1900-01-01 06:00,2\n1900-03-01T12:00:00,3\n", "t",
     "date: 0 2.25 61.5|oil: 1 2 3"},
    {"t,,oil\n0,1,2\n", "", "t: 0|column 2: 1|oil: 2"},
    {"t,oil\n0,1e-400\n1,2\n", "", "t: 0 1|oil: 0 2"},
    {"", "", "f.csv: the file is empty"},
    {" \r\n\n", "", "f.csv: the file is empty"},
    {"\xEF\xBB\xBF", "", "f.csv: the file is empty"},
    {"t,oil\n\n", "", "f.csv: the file has a header and no rows"},
    {std::string("t,\0il\n0,1\n", 10), "", "f.csv: this is no text file"},
    {"0,5\n1,6\n", "", "f.csv:1: the first line must name the columns, but it begins with '0'"},
    {"2020-01-01,5\n", "",
     "f.csv:1: the first line must name the columns, but it begins with '2020-01-01'"},
    {"t,oil,gas,oil\n0,1,2,3\n", "", "f.csv:1: columns 2 and 4 have the same name 'oil'"},
    {"t,gas,oil\n0,1,2\n1,1,abc\n", "", "f.csv:3: column 3 (oil): 'abc' is not a number"},
    {"t,note,oil\n\n0,\"a\nb\",2\n1,c,2x\n", "", "f.csv:5: column 3 (oil): '2x' is not a number"},
    {"t,oil\n0,1\n1,1:5\n2,2.5\n", "nn", "f.csv:3: column 2 (oil): '1:5' is not a number"},
    {"t,oil\n0,1\n1,2 3\n", "", "f.csv:3: column 2 (oil): '2 3' is not a number"},
    {"t,oil,gas\n0,1,2\n1,2\n", "", "f.csv:3: the row has 2 cells, the header has 3"},
    {"t,oil\n0,1,, \n1,2,\n", "", "t: 0 1|oil: 1 2"},
    {"t,oil\n0,1,2\n", "", "f.csv:2: the row has 3 cells, the header has 2"},
    {"sep=;\nt;oil\n0;1\n", "", "t: 0|oil: 1"},
    {"t,oil\r0,1\r1,2\r", "",
     "f.csv: its lines end with a carriage return alone, tr '\\r' '\\n' mends it"},
    // What is a decimal comma, and what parts thousands.
    {"t;oil\n0;1,234\n1;2,5\n", "", "t: 0 1|oil: 1.234 2.5"},
    {"t;oil\n0;1,234\n1;2.5\n", "", "t: 0 1|oil: 1234 2.5"},
    {"t;oil\n0;1,234\n1;1,234,567\n", "", "t: 0 1|oil: 1234 1.23457e+06"},
    {"t;oil\n0;1.234\n1;1.234.567\n", "", "t: 0 1|oil: 1234 1.23457e+06"},
    {"t;oil\n0;1 234,5\n1;1\xC2\xA0\x32\x33\x34,5\n2;-2 345\n", "",
     "t: 0 1 2|oil: 1234.5 1234.5 -2345"},
    {"t,oil\n0,1\xE2\x80\xAF\x32\x33\x34.5\n1,(12.5)\n2,12.5-\n", "",
     "t: 0 1 2|oil: 1234.5 -12.5 -12.5"},
    {"t,oil\n0,()\n", "nn", "f.csv:2: column 2 (oil): '()' is not a number"},
    // Rows of units: of words that are some, or of any where a date would stand.
    {"t,oil\n-,sm3\n0,1\n", "", "t: 0|oil: 1"},
    {"date,oil\nyyyy-mm-dd,kSm3\n2000-01-01,1\n", "t", "date: 36526|oil: 1"},
    {"t,oil\n-,shut\n0,1\n", "nn", "f.csv:2: column 2 (oil): 'shut' is not a number"},
    {"t,oil\n0,1\n1,\n", "", "f.csv:3: column 2 (oil)" + kMissing},
    {"t,oil\n0,\n1,2\n", "", "f.csv:2: column 2 (oil)" + kMissing},
    {"t,oil\n0,1\n1,NaN\n", "", "f.csv:3: column 2 (oil)" + kMissing},
    {"t\toil\n0\t1\n1\t\n", "", "f.csv:3: column 2 (oil)" + kMissing},
    {"oil\n1\n\n2\n", "", "f.csv:3: column 1 (oil)" + kMissing},
    {"t,oil\n0,\n1,\n", "nn", "f.csv:2: column 2 (oil)" + kMissing},
    {"t,oil\n0,1\n,2\n", "t*", "f.csv:3: column 1 (t): the time is missing"},
    {"t,oil\n0,1\n1,-inf\n", "", "f.csv:3: column 2 (oil): '-inf' is not a finite number"},
    {"t,oil\n0,1\n1,1e999\n", "", "f.csv:3: column 2 (oil): '1e999' is not a finite number"},
    {"t,oil\n0,abc\n", "nn", "f.csv:2: column 2 (oil): 'abc' is not a number"},
    {"t,oil\n31/12/2020,1\n", "t",
     "f.csv:2: column 1 (t): '31/12/2020' is neither a number nor a date (dates are written "
     "YYYY-MM-DD or YYYY-MM-DD hh:mm)"},
    {"t,oil\n2020-02-29,1\n2021-02-29,1\n", "t",
     "f.csv:3: column 1 (t): '2021-02-29' is not a date: there is no such day"},
    {"t,oil\n2021-02-28 24:00,1\n", "t",
     "f.csv:2: column 1 (t): '2021-02-28 24:00' is not a date: there is no such time of day"},
    {"t,oil\n0,\"1\n1,2\n", "", "f.csv:2: column 2 (oil): a quote is opened and never closed"},
    {"t,oil\n0,\"1\"2\n", "", "f.csv:2: column 2 (oil): text follows the closing quote"},
};

TEST(Csv, ReadsFilesOrSaysWhereTheyCannotBeRead) {
  for (const ReadRow& row : kReadRows) EXPECT_EQ(read(row.text, row.letters), row.want) << row.text;
}

TEST(Csv, ReadsANumberOfAnyLengthAsTheNearestDouble) {
  const std::string digits = "73920518467391";
  for (std::size_t before = 0; before <= digits.size(); ++before) {
    for (std::size_t after = before == 0 ? 1 : 0; after < digits.size(); ++after) {
      const std::string number = digits.substr(0, before) + "." + digits.substr(0, after);
      const CsvFile file("f.csv", "oil\n1\n" + number + "\n1000000\n");
      EXPECT_EQ(file.read({}).columns[0].values.at(1), std::strtod(number.c_str(), nullptr));
    }
  }
}

TEST(Csv, FindsColumnsByNameAndNumber) {
  const CsvFile file("f.csv", "t,Oil,OIL,3,gas\n0,1,2,3,4\n");
  struct Row {
    const char* given;
    std::size_t index;
  };
  for (const Row& row : {Row{"Oil", 1}, Row{"OIL", 2}, Row{"oil", 1}, Row{"GAS", 4}, Row{"2", 1},
                         Row{"3", 3}, Row{"5", 4}}) {
    EXPECT_EQ(file.column(row.given), row.index) << row.given;
  }
  for (const char* none : {"water", "0", "6", "", "-1", "1x"}) {
    EXPECT_THROW(file.column(none), WorkError) << none;
  }
}

TEST(Csv, TellsProgressOfLongFiles) {
  std::string text = "t,oil\n";
  for (int i = 0; i < 200000; ++i) text += std::to_string(i) + ",1\n";
  std::size_t calls = 0;
  std::size_t last = 0;
  CsvReading reading;
  reading.progress = [&](std::size_t rows, std::size_t done, std::size_t bytes) {
    ++calls;
    EXPECT_GT(rows, last);
    EXPECT_LE(done, bytes);
    last = rows;
  };
  const CsvTable table = CsvFile("f.csv", text).read(reading);
  EXPECT_EQ(table.lines.size(), 200000U);
  EXPECT_EQ(table.lines.back(), 200001U);
  EXPECT_GE(calls, 3U);
}

TEST(Csv, QuotesFieldsThatNeedIt) {
  std::string line;
  for (const char* text : {"W-1", "oil, net", "a \"b\""}) add_csv_field(line += '/', text);
  EXPECT_EQ(line, "/W-1/\"oil, net\"/\"a \"\"b\"\"\"");
}

TEST(Moment, ReadsAndWritesIsoTexts) {
  struct Row {
    const char* text;
    double days;
    const char* written;
  };
  // Day numbers as spreadsheets count them: 36526 is 2000-01-01.
  const Row rows[] = {{"2000-01-01", 36526, "2000-01-01"},
                      {"2000-02-29 18:00", 36585.75, "2000-02-29 18:00"},
                      {"1899-12-29T06:00", -0.75, "1899-12-29 06:00"},
                      {"2000-01-01T06:00:00.000Z", 36526.25, "2000-01-01 06:00"},
                      {"2000-01-01 06:00+02:00", 36526.25, "2000-01-01 06:00"},
                      {"2000-01-01 06:00-0330", 36526.25, "2000-01-01 06:00"},
                      {"0100-01-01", -657434, "0100-01-01"},
                      {"9999-12-31 23:59:59", 2958465.999988426, "9999-12-31 23:59:59"}};
  for (const Row& row : rows) {
    SCOPED_TRACE(row.text);
    const auto days = parse_moment(row.text);
    ASSERT_TRUE(days);
    EXPECT_NEAR(*days, row.days, 1e-9);
    EXPECT_EQ(exact_moment_text(*days), row.written);
    EXPECT_DOUBLE_EQ(day_count(automation_date(*days)), *days);
  }
  EXPECT_EQ(automation_date(-0.75), -1.25);  // the fraction of an automation date is unsigned
  for (const char* text :
       {"", "2000", "2000-1-1", "2000-13-01", "2000-00-10", "2001-02-29", "2000-01-01 ",
        "2000-01-01 24:00", "2000-01-01 6:00", "2000-01-01 06:60", "2000-01-01 06:00:60",
        "2000-01-01 06:00Zz", "2000-01-01 06:00+1", "2000-01-01 06:00:00.", "01-01-2000"}) {
    EXPECT_FALSE(parse_moment(text)) << text;
  }
}

TEST(Moment, TakesTheRoundestClockTimeWithinTheTolerance) {
  constexpr double kSecond = 1.0 / 86400.0;
  const double rows[][2] = {{100.0 + 9 * kSecond, 100.0},
                            {100.0 + 11 * kSecond, 100.0 + 11 * kSecond},
                            {100.25 - 9 * kSecond, 100.25},
                            {100.0 + 605 * kSecond, 100.0 + 600 * kSecond},
                            {-5.0 - 9 * kSecond, -5.0}};
  for (const auto& [days, rounded] : rows) {
    EXPECT_NEAR(roundest_moment(days, 10 * kSecond), rounded, 1e-9) << days;
  }
}

}  // namespace
}  // namespace vqmath63::host
