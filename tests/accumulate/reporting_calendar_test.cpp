// The reporting calendar: boundaries, inserted rows, phases, and what it refuses.
#include <chrono>
#include <cmath>
#include <fstream>
#include <iterator>
#include <sstream>

#include "accumulate/accumulate_array.hpp"
#include "accumulate/profile.hpp"
#include "frame/companion_fixture.hpp"

namespace vqmath63 {
namespace {

class ReportingCalendarTest : public CompanionTest {};

Lines split(const std::string& text, char by) {
  Lines parts;
  std::istringstream in(text);
  for (std::string part; std::getline(in, part, by);) parts.push_back(part);
  return parts;
}

template <class T>
std::vector<std::vector<T>> numbers(const std::string& text) {
  std::vector<std::vector<T>> rows;
  for (const std::string& part : split(text, ',')) {
    std::istringstream in(part);
    rows.emplace_back(std::istream_iterator<T>(in), std::istream_iterator<T>());
  }
  return rows;
}

// The figures of tools/make_calendar_cases.py, which works in exact rationals and knows no rows.
TEST_F(ReportingCalendarTest, agrees_with_the_definition) {
  std::ifstream file(VQ_TEST_DATA "/calendar_cases.tsv");
  std::string line;
  std::getline(file, line);
  int count = 0;
  for (; std::getline(file, line); ++count) {
    const Lines field = split(line, '\t');
    ASSERT_EQ(field.size(), 12U) << line;
    const Rows samples = numbers<float>(field[10]);
    const std::vector<std::vector<double>> want = numbers<double>(field[11]);
    std::vector<bool> rates{false};  // the time column's flag is never looked at
    for (const std::string& kind : split(field[9], ' ')) rates.push_back(kind == "rate");
    const Settings settings{std::stod(field[2]), std::stod(field[5]), field[3], field[6],
                            std::stoi(field[7]), std::stoi(field[8])};
    bool ok = false;
    const Rows got = accumulated(samples, settings, rates, ok);
    ASSERT_TRUE(ok) << field[0];
    ASSERT_EQ(got.size(), want.size()) << field[0];
    for (std::size_t i = 0; i < want.size(); ++i) {
      // Each time is off by half a unit of a Single at most; a mean feels all of them.
      const double length = want[i][0] - (i == 0 ? 0.0 : want[i - 1][0]);
      const auto n = static_cast<double>(samples.size());
      for (std::size_t j = 0; j < want[i].size(); ++j) {
        double largest = j == 0 ? want[i][0] : 0.0;
        for (const auto& row : samples) {
          if (j > 0) largest = std::fmax(largest, std::fabs(row[j]));
        }
        const double units = rates[j] ? n + 4 + (2 * n + 2) * want.back()[0] / length : 2;
        EXPECT_NEAR(got[i][j], want[i][j], std::ldexp(units * largest, -24))
            << field[0] << ": row " << i << " column " << j;
      }
    }
  }
  EXPECT_EQ(count, 39);
  EXPECT_TRUE(lines.empty());
}

TEST_F(ReportingCalendarTest, a_century_of_minutes_loses_no_boundary) {
  using namespace std::chrono;
  const sys_days from = 1950y / January / 1, month_end = 1950y / January / 31;
  const sys_days until = from + days{36108};
  Rows samples;  // each 4 days, up to 51 995 520 minutes
  for (float i = 0; i <= 9027; ++i) samples.push_back({5760 * i, 2.5F, i});
  struct Row {
    const char* period;
    sys_days start;
    std::size_t periods;
  } const rows[] = {{"day", from, 36108},
                    {"month", month_end, 1186},  // to 2048-10-31, and a rest
                    {"hour", from, 36108 * 24}};
  for (const Row& row : rows) {
    const auto serial = [](sys_days day) {
      return static_cast<double>((day - sys_days{1899y / December / 30}).count());
    };
    bool ok = false;
    const Rows got = accumulated(samples, {serial(from), serial(row.start), "minute", row.period},
                                 {false, true, false}, ok);
    ASSERT_TRUE(ok) << row.period;
    ASSERT_EQ(got.size(), row.periods);
    for (std::size_t i = 0; i < got.size(); ++i) {
      const auto k = static_cast<std::int32_t>(i) + 1;
      double elapsed = row.period[0] == 'd' ? k : k / 24.0;
      if (row.period[0] == 'm') {
        const sys_days end{1950y / January / last + months{k}};  // the 31st, or what there is
        elapsed = static_cast<double>((std::min(end, until) - month_end).count());
      }
      ASSERT_EQ(got[i][0], static_cast<float>(elapsed)) << row.period << i;
      ASSERT_NEAR(got[i][1], 2.5, 1e-6) << row.period << i;
      const double since = elapsed + static_cast<double>((row.start - from).count());
      ASSERT_NEAR(got[i][2], since / 4, 1e-3) << row.period << i;
    }
  }
}

TEST_F(ReportingCalendarTest, the_working_table_has_a_row_at_each_boundary) {
  Array2<float> data = table_of({{0, 1, 0}, {10, 4, 40}, {30, 2, 100}, {30, 8, 108}, {40, 6, 168}});
  Array1<Boolean> flags = flags_of({true, true, false});
  std::string day = "DAY", week = "days";
  Array1<std::int32_t> start_row, end_row;
  Array2<float> work;
  bool ok = false, flag = false;
  std::int32_t rule = 77;
  SetAccumulateArray(data, flags, 1, day, 10.0F, week, {105}, {100}, start_row, end_row, work, ok,
                     rule, flag);
  EXPECT_TRUE(ok);
  EXPECT_EQ(rows_of(work), (Rows{{0, 4, 20},  // between samples: next rate, cumulative half-way
                                 {5, 4, 40},
                                 {10, 2, 55},
                                 {20, 2, 85},
                                 {25, 2, 100},
                                 {25, 8, 108},
                                 {30, 6, 138},
                                 {35, 6, 168}}));
  EXPECT_EQ(contents(start_row), (std::vector<std::int32_t>{1, 3, 4, 7}));
  EXPECT_EQ(contents(end_row), (std::vector<std::int32_t>{3, 4, 7, 8}));
  EXPECT_EQ(rule, 77);
  EXPECT_FALSE(flag);
}

TEST_F(ReportingCalendarTest, what_cannot_be_reported_is_one_line) {
  const Rows monthly = {{0, 5}, {1, 20}, {2, 30}, {3, 40}};
  struct Row {
    const char* name;
    Settings settings;
    Rows samples;
    int number;
  };
  const auto from = [](double data, double start, const char* period) {
    return Settings{data, start, "day", period};
  };
  std::vector<Row> rows = {
      {"unknown data period", {.data_period = "fortnight"}, monthly, 5},
      {"frequency 0", {.frequency = 0}, monthly, 5},
      {"index 0", {.index = 0}, monthly, 9},
      {"index after the rows", {.index = 5}, monthly, 9},
      {"index far after the rows", {.index = 2147483647}, monthly, 9},
      {"one sample left", {.index = 4}, monthly, 5},
      {"start on the last sample", {.start = 45046}, monthly, 5},
      {"start 1 s before the last sample", {.start = 45046 - 1 / 86400.0}, monthly, 5},
      {"time steps back", {}, {{0, 5}, {1, 20}, {0.5, 30}}, 5},
      {"time NaN", {}, {{0, 5}, {kNaN, 20}, {1, 30}}, 5},
      {"time infinite", {.data_period = "day"}, {{0, 5}, {1, 20}, {kInf, 30}}, 5},
      {"time after year 9999", {}, {{0, 5}, {1e30F, 20}}, 5},
      {"days before year 100", from(-657434, 0, "day"), {{-1, 5}, {1, 20}}, 5},
      {"no time passes", {}, {{2, 5}, {2, 20}, {2, 30}}, 5},
      {"too many periods", from(-657434, -657434, "minute"), {{0, 5}, {3600000, 20}}, 7},
  };
  for (const double wild : {double{kNaN}, -1e300, 1e300, 1e7, -1e7, -HUGE_VAL, HUGE_VAL}) {
    for (const char* period : {"hour", "month"}) {
      rows.push_back({"wild start", from(44957, wild, period), monthly, 5});
      rows.push_back({"wild data date", from(wild, 44957, period), monthly, 5});
    }
  }
  for (const Row& row : rows) {
    bool ok = true;
    EXPECT_EQ(accumulated(row.samples, row.settings, {}, ok), kUntouched) << row.name;
    EXPECT_FALSE(ok) << row.name;
    EXPECT_EQ(taken(), one_line(row.number, "Accumulate", "SetAccumulateArray")) << row.name;
  }
}

}  // namespace
}  // namespace vqmath63
