// ztAccumulate and its driver: settings, flags, rules, failures, and what must add up.
#include "accumulate/accumulate.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <random>

#include "accumulate/accumulate_data.hpp"
#include "accumulate/profile.hpp"
#include "frame/companion_fixture.hpp"

namespace vqmath63 {
namespace {

const Rows kMonthly = {{0, 5, 1}, {1, 20, 2}, {2, 30, 4}, {3, 40, 8}};
const Rows kRates = {{28, 20, 2}, {59, 30, 4}, {89, 40, 8}};

class AccumulateTest : public CompanionTest {
 protected:
  AccumulateTest() { apply({}, *accumulate); }

  // Rows of the result, and whether it went well in `ok`.
  Rows run(const Rows& samples = kMonthly) {
    Array2<float> data = table_of(samples);
    result = table_of(kUntouched);
    ok = true;
    accumulate->Accumulate(data, result, ok);
    return rows_of(result);
  }
  static Rows another() {
    bool well = false;
    const Rows rows = accumulated(kMonthly, {}, {}, well);
    return well ? rows : Rows{};
  }
  void set_rates(const std::vector<bool>& flags) {
    Array1<Boolean> array = flags_of(flags);
    accumulate->put_RateArray(array);
    array(1) = !array(1);  // the array was copied: what becomes of the caller's is no matter
    array.erase();
  }

  std::optional<ztAccumulate> accumulate{std::in_place};
  Array2<float> result;
  bool ok = false;
};

TEST_F(AccumulateTest, a_fresh_object_has_its_defaults) {
  const double before = now().value;
  ztAccumulate fresh;
  const double after = now().value;
  EXPECT_EQ(fresh.get_Period(), "Month");
  EXPECT_EQ(fresh.get_Frequency(), 1);
  EXPECT_TRUE(fresh.get_Rates());
  EXPECT_LE(before, fresh.get_StartDate().value);
  EXPECT_LE(fresh.get_StartDate().value, fresh.get_StartData().value);
  EXPECT_LE(fresh.get_StartData().value, after);

  // Data in days from the first row on, in months from this moment.
  Array2<float> data = table_of({{0, 0}, {70, 3}});
  fresh.Accumulate(data, result, ok);
  EXPECT_TRUE(ok);
  const Rows rows = rows_of(result);
  ASSERT_TRUE(rows.size() >= 3 && rows[0][0] >= 28 && rows[0][0] <= 31);
  EXPECT_TRUE(nearly({rows.back()}, {{70, 3}}));
}

TEST_F(AccumulateTest, settings_stay_whatever_they_are) {
  apply({-1.75, -1e300, "day", "No such word", -7}, *accumulate);
  EXPECT_EQ(accumulate->get_Period(), "No such word");
  EXPECT_EQ(accumulate->get_Frequency(), -7);
  EXPECT_EQ(accumulate->get_StartDate().value, -1e300);
  EXPECT_EQ(accumulate->get_StartData().value, -1.75);

  // An unknown period ends the work without a word.
  apply({}, *accumulate);
  for (const char* word : {"", "month ", " month", "bi-monthlys", "fortnight"}) {
    accumulate->put_Period(word);
    EXPECT_EQ(run(), kUntouched) << word;
    EXPECT_FALSE(ok) << word;
  }
  accumulate->put_Period("MONTHS");
  EXPECT_TRUE(nearly(run(), kRates));
  EXPECT_TRUE(lines.empty());
}

TEST_F(AccumulateTest, arrays_of_any_lower_bound_are_read_from_1) {
  Array2<float> data({-1, 4}, {0, 3});
  std::fill_n(data.data(), data.size(), -1e30F);
  for (std::size_t i = 0; i < 12; ++i) {
    data(std::int64_t(i / 3 + 1), std::int64_t(i % 3 + 1)) = kMonthly[i / 3][i % 3];
  }
  accumulate->Accumulate(data, result, ok);
  EXPECT_TRUE(nearly(rows_of(result), kRates));
  accumulate->Accumulate(data, data, ok);  // result over its own data
  EXPECT_TRUE(nearly(rows_of(data), kRates));
  EXPECT_EQ(run({{0}, {1}, {2}}), (Rows{{28}, {59}}));  // a time column alone
  EXPECT_TRUE(lines.empty());
}

// Counts its calls, and says itself what the flags are.
struct FlagTools final : ztArrayTools {
  void ApplyMask(Array1<Boolean>&, Array1<float>&, std::int32_t&, bool&, bool&) override {}
  void RemoveNullEntries(float&, Array1<float>&, std::int32_t&, Array1<std::int32_t>&,
                         std::int32_t&, bool&) override {}
  void RemoveListedEntries(Array1<std::int32_t>&, std::int32_t&, Array1<float>&, std::int32_t&,
                           bool&) override {}
  void InitialiseFlagArray(std::int32_t& count, bool& flagA, bool& flagB, Array1<Boolean>& arr,
                           bool& done) override {
    ++calls;
    arguments_right = count == 3 && flagA && flagB;
    if (failure) failure();
    arr = flags;
    done = false;  // nobody asks
  }
  int calls = 0;
  bool arguments_right = false;
  Array1<Boolean> flags = flags_of({false, true, false});
  std::function<void()> failure;
};

TEST_F(AccumulateTest, flags_are_made_anew_at_each_call_until_they_are_set) {
  const auto tools = std::make_shared<FlagTools>();
  companion_makers().ArrayTools = [&] { return tools; };
  const Rows samples = {{0, 5, 0}, {1.5, 20, 30}, {3, 40, 60}};
  // Between the samples a cumulative is half-way by time: 28 of 43.5 days.
  run(samples);
  EXPECT_TRUE(ok);
  EXPECT_TRUE(tools->arguments_right);
  EXPECT_EQ(result(1, 3), static_cast<float>(30 * 28 / 43.5));
  tools->flags = flags_of({true, true, true});
  run(samples);
  EXPECT_FLOAT_EQ(result(1, 3), 30.0F);
  EXPECT_EQ(tools->calls, 2);
  set_rates({true, true, false});
  run(samples);
  EXPECT_EQ(result(3, 3), 60.0F);
  EXPECT_TRUE(nearly(run(), kRates));
  EXPECT_EQ(tools->calls, 2);
  EXPECT_TRUE(lines.empty());
}

TEST_F(AccumulateTest, a_run_time_error_is_one_line_and_leaves_what_was_filled) {
  const auto flag_tools = std::make_shared<FlagTools>();
  flag_tools->failure = [] { raise_companion_failure(static_cast<std::int32_t>(0x80070005U)); };
  const Array2<float> monthly = table_of(kMonthly), century = table_of({{0, 5}, {36525, 7}});
  const auto none = [] {};
  const auto short_rates = [&] { set_rates({true, true}); };
  const auto no_rates = [&] {
    Array1<Boolean> unallocated;
    accumulate->put_RateArray(unallocated);
  };
  // The boundary 86 s before the last sample is the same Single, a century after the first.
  const auto no_length = [&] { apply({18264, 18263.999, "day", "year", 100}, *accumulate); };
  const auto bad_flags = [&] { companion_makers().ArrayTools = [&] { return flag_tools; }; };
  const auto no_tools = [] { companion_makers().ArrayTools = nullptr; };
  const auto no_dates = [] { companion_makers().DateTools = nullptr; };
  const char* const work = "AccumulateData";
  const char* const calendar = "SetAccumulateArray";
  struct Row {
    const char* name;
    std::function<void()> arrange;
    std::int32_t number;
    const char* routine;
    Array2<float> data;
    Rows left = kUntouched;
  } const rows[] = {
      {"short flags", short_rates, 9, work, monthly, {{28, 20, 0}, {59, 30, 0}, {89, 40, 0}}},
      {"flags unallocated", no_rates, 9, work, monthly, {{28, 0, 0}, {59, 0, 0}, {89, 0, 0}}},
      {"zero length", no_length, 11, work, century, {{36525, 0}, {36525, 0}}},
      {"flags fail", bad_flags, static_cast<std::int32_t>(0x80070005U), "Accumulate", monthly},
      {"no array tools", no_tools, 429, "Accumulate", monthly},
      {"no date tools", no_dates, 429, calendar, monthly},
      {"dArr unallocated", none, 9, "Accumulate", {}},
      {"dArr without column 1", none, 9, "Accumulate", {{1, 3}, {0, 0}}},
      {"dArr from row 2", none, 9, calendar, {{2, 4}, {1, 2}}},
      {"dArr from column 2", none, 9, calendar, {{1, 3}, {2, 3}}},
  };
  for (const Row& row : rows) {
    common_globals() = {};
    companion_makers().ArrayTools = built_in_makers().ArrayTools;
    companion_makers().DateTools = built_in_makers().DateTools;
    accumulate.emplace();
    apply({}, *accumulate);
    EXPECT_TRUE(nearly(run(), kRates)) << "before " << row.name;  // nothing stays of a failure

    common_globals() = {};
    row.arrange();
    Array2<float> data = row.data;
    result = table_of(kUntouched);
    accumulate->Accumulate(data, result, ok);
    EXPECT_FALSE(ok) << row.name;
    EXPECT_TRUE(nearly(rows_of(result), row.left)) << row.name;
    const bool in_class = std::string(row.routine) == "Accumulate";
    const char* const module = in_class ? "ztAccumulate" : "Accumulate";
    EXPECT_EQ(taken(), one_line(row.number, module, row.routine)) << row.name;
  }
}

TEST_F(AccumulateTest, a_failing_rule_reports_itself_and_leaves_0) {
  const float big = 3e38F;
  int inner = 0;
  for (const bool reentrant : {false, true}) {
    // An error line may lead the host to accumulate once more; the sink fails nothing.
    if (reentrant) sink_failure = [&] { inner += nearly(another(), kRates) ? 1 : 0; };
    EXPECT_TRUE(nearly(run({{0, 5, 1}, {1, 20, 2}, {2, big, 4}, {3, 40, 8}}),
                       {{28, 20, 2}, {59, 0, 4}, {89, 40, 8}}));
    EXPECT_TRUE(ok);
  }
  EXPECT_EQ(inner, 1);
  EXPECT_EQ(taken(), Lines(2, one_line(6, "Integration", "Backward")[0]));
  run({{0, 5, 1}, {1, kNaN, 2}, {2, 30, 4}});
  EXPECT_TRUE(ok);
  EXPECT_TRUE(std::isnan(result(1, 2)));  // the caller's own NaN is no fault
  EXPECT_FLOAT_EQ(result(2, 2), 30.0F);
  EXPECT_TRUE(lines.empty());
}

TEST_F(AccumulateTest, the_driver_integrates_by_the_rule_it_is_given) {
  // One period of 4 days: Simpson 4/6 (2 + 4 x 8 + 20), trapezoidal 2 x 5 + 2 x 14, left, right.
  Array2<float> data = table_of({{0, 2}, {2, 8}, {4, 20}});
  Array1<Boolean> flags = flags_of({true, true});
  const std::pair<std::int32_t, float> rows[] = {{1, 9.5F}, {2, 9}, {3, 5}, {4, 14}, {0, 9.5F}};
  for (const auto& [number, want] : rows) {
    std::int32_t rule = number, spare = 3;
    AccumulateData(data, flags, 1, "day", 1, "Week", {44957}, {44957}, result, ok, rule, spare);
    EXPECT_TRUE(ok);
    EXPECT_EQ(rows_of(result), (Rows{{4, want}})) << number;  // 1/4 is exact
    EXPECT_EQ(rule, number);
  }
  // A mean is the area, 287, times 1/41 as a Single, and not 7.
  apply({.data_period = "day", .period = "year"}, *accumulate);
  EXPECT_EQ(run({{0, 7}, {41, 7}}), (Rows{{41, 6.99999952F}}));
}

// Seeded profiles in eighths of a day, a rate and a cumulative, with equal times among them.
class RandomProfiles : public CompanionTest {
 protected:
  int pick(int from, int to) { return std::uniform_int_distribution<int>(from, to)(random); }
  void make() {
    samples = {{static_cast<float>(pick(-80, 0)) / 8, 0, 0}};
    for (int n = pick(3, 60); n > 0; --n) {
      const auto step = static_cast<float>(pick(0, 3) * pick(0, 80));
      samples.push_back({samples.back()[0] + (n == 1 ? 1 : step / 8),
                         static_cast<float>(pick(1, 4000)) / 4,
                         samples.back()[2] + static_cast<float>(pick(0, 4000)) / 4});
    }
    settings.data = 44957 + pick(-60000, 60000);
    settings.start = settings.data - pick(20, 2000) - (settings.data > 2100 ? 0.25 : 0);
    settings.data_period = "days";
    settings.period = std::array{"day", "weeks", "month", "years"}[trial++ % 4];
    settings.frequency = pick(1, 3);
  }
  Rows by(const char* period, std::int32_t frequency) {
    settings.period = period;
    settings.frequency = frequency;
    return results();
  }
  Rows results() {
    bool ok = false;
    Rows rows = accumulated(samples, settings, flags, ok);
    EXPECT_TRUE(ok) << trial;
    return rows;
  }
  // Mean rate x length, summed over the periods that end after `from` and not after `to`.
  void expect_volume(const Rows& rows, float from, float to, double want) const {
    double sum = 0;
    for (std::size_t i = 0; i < rows.size(); ++i) {
      const double begin = i == 0 ? 0.0 : double{rows[i - 1][0]};
      if (rows[i][0] > from && rows[i][0] <= to) sum += (rows[i][0] - begin) * rows[i][1];
    }
    EXPECT_NEAR(sum, want, std::ldexp(want, -24) * static_cast<double>(samples.size() + 4))
        << trial;
  }

  std::mt19937 random{20230131};
  std::size_t trial = 0;
  Rows samples;
  Settings settings;
  std::vector<bool> flags = {false, true, false};
};

TEST_F(RandomProfiles, parts_add_up_and_columns_stand_alone) {
  while (trial < 400) {
    make();
    double whole = 0;
    for (std::size_t i = 1; i < samples.size(); ++i) {
      whole += (double{samples[i][0]} - samples[i - 1][0]) * samples[i][1];
    }
    Rows rows = results();
    const float end = samples.back()[0] - samples[0][0];
    EXPECT_EQ(rows.back()[0], end) << trial;
    EXPECT_EQ(rows.back()[2], samples.back()[2]) << trial;
    expect_volume(rows, 0, end, whole);

    const Rows months = by("months", 1);
    float begin = 0;
    for (const std::vector<float>& quarter : trial % 2 == 0 ? by("quarter", 1) : by("month", 3)) {
      const auto last = std::find_if(months.begin(), months.end(),
                                     [&](const auto& month) { return month[0] == quarter[0]; });
      ASSERT_NE(last, months.end()) << trial;
      EXPECT_EQ((*last)[2], quarter[2]) << trial;
      expect_volume(months, begin, quarter[0], (double{quarter[0]} - begin) * quarter[1]);
      begin = quarter[0];
    }

    rows = by("weeks", 2);
    for (Rows* table : {&samples, &rows}) {
      for (std::vector<float>& row : *table) std::swap(row[1], row[2]);
    }
    flags = {true, false, true};
    EXPECT_EQ(results(), rows) << trial;
    flags = {false, true, false};
  }
}

}  // namespace
}  // namespace vqmath63
