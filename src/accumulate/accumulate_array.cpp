#include "accumulate/accumulate_array.hpp"

#include <span>
#include <vector>

#include "accumulate/period_words.hpp"
#include "accumulate/reporting_cuts.hpp"
#include "accumulate/unit_calendar.hpp"
#include "frame/checked.hpp"
#include "frame/companions.hpp"
#include "frame/trap.hpp"

namespace vqmath63 {
namespace {

constexpr Location kSetAccumulateArray{"ztAnalyse - Accumulate", "SetAccumulateArray"};

PeriodUnit unit_of(const std::string& word) {
  const auto unit = find_period_unit(word);
  if (!unit) raise_fault(ErrorNumber::kInvalidCall);
  return *unit;
}

// The samples used, a column's values side by side.
class Samples {
 public:
  Samples(const Array2<const float>& table, std::int32_t first_row)
      : table_(table), first_row_(first_row) {
    const std::int32_t last_row = table.rows().upper;
    if (first_row < 1 || first_row > last_row) raise_fault(ErrorNumber::kSubscript);
    count_ = static_cast<std::size_t>(last_row) - static_cast<std::size_t>(first_row) + 1;
  }
  std::size_t count() const { return count_; }
  std::span<const float> column(std::int32_t j) const { return {&table_(first_row_, j), count_}; }

 private:
  Array2<const float> table_;
  std::int32_t first_row_;
  std::size_t count_;
};

std::vector<double> moments_of(std::span<const float> units, const UnitCalendar& calendar) {
  std::vector<double> times;
  times.reserve(units.size());
  for (std::size_t i = 0; i < units.size(); ++i) {
    times.push_back(calendar.moment(units[i]));
    if (i > 0 && units[i] < units[i - 1]) raise_fault(ErrorNumber::kInvalidCall);
  }
  return times;
}

// Fills one column of the working table: samples from the first cut on, and a row per inserted cut.
template <class OfSample, class OfCut>
void fill_column(float* out, std::span<const ReportingCut> cuts, const OfSample& of_sample,
                 const OfCut& of_cut) {
  std::int32_t sample = cuts.front().sample;
  for (const ReportingCut& cut : cuts) {
    for (; sample < cut.sample; ++sample) *out++ = of_sample(sample);
    if (cut.inserted) *out++ = of_cut(cut);
  }
  *out = of_sample(sample);
}

float interpolated(std::span<const float> values, std::span<const double> times,
                   const ReportingCut& cut) {
  const auto after = static_cast<std::size_t>(cut.sample);
  const std::size_t before = after - 1;
  const Double share = (Double(cut.time) - times[before]) / (Double(times[after]) - times[before]);
  const Double start = Single(values[before]);
  return Single(start + (Single(values[after]) - start) * share).value();
}

bool is_rate(const Array1<const Boolean>& rates, std::int32_t column) {
  return !rates.covers(column, column) || rates(column);
}

}  // namespace

void SetAccumulateArray(const Array2<const float>& dArr, const Array1<const Boolean>& RateArray,
                        std::int32_t AccumulateIndex, const std::string& DataPeriod,
                        float Frequency, const std::string& Period, Date StartDate, Date StartData,
                        Array1<std::int32_t>& PeriodStartRow, Array1<std::int32_t>& PeriodEndRow,
                        Array2<float>& WorkTable, bool& ok, std::int32_t& /*rule*/,
                        bool& /*flag*/) {
  trap(kSetAccumulateArray, [&] {
    ok = false;
    const Samples samples(dArr, AccumulateIndex);
    const std::int32_t columns = dArr.columns().upper;
    if (!(Frequency >= 1.0F)) raise_fault(ErrorNumber::kInvalidCall);
    const std::shared_ptr<ztDateTools> tools = date_tools();
    const UnitCalendar data(tools, tools->DaysOfDate(StartData), unit_of(DataPeriod));
    const UnitCalendar reporting(tools, tools->DaysOfDate(StartDate), unit_of(Period));

    const std::vector<double> times = moments_of(samples.column(1), data);
    const std::vector<ReportingCut> cuts = reporting_cuts(times, reporting, Frequency, columns);

    const auto periods = static_cast<std::int32_t>(cuts.size() - 1);
    PeriodStartRow.redim(1, periods);
    PeriodEndRow.redim(1, periods);
    std::int32_t inserted = 0;
    for (std::int32_t c = 0; c <= periods; ++c) {
      const ReportingCut& cut = cuts[static_cast<std::size_t>(c)];
      const std::int32_t row = 1 + (cut.sample - cuts.front().sample) + inserted;
      if (c < periods) PeriodStartRow(c + 1) = row;
      if (c > 0) PeriodEndRow(c) = row;
      inserted += cut.inserted ? 1 : 0;
    }

    WorkTable.redim({1, PeriodEndRow(periods)}, {1, columns});
    const double zero = cuts.front().time;
    fill_column(
        &WorkTable(1, 1), cuts,
        [&](std::int32_t i) {
          return static_cast<float>(times[static_cast<std::size_t>(i)] - zero);
        },
        [&](const ReportingCut& cut) { return static_cast<float>(cut.time - zero); });
    for (std::int32_t j = 2; j <= columns; ++j) {
      const std::span<const float> values = samples.column(j);
      const auto of_sample = [&](std::int32_t i) { return values[static_cast<std::size_t>(i)]; };
      if (is_rate(RateArray, j)) {
        fill_column(&WorkTable(1, j), cuts, of_sample,
                    [&](const ReportingCut& cut) { return of_sample(cut.sample); });
      } else {
        fill_column(&WorkTable(1, j), cuts, of_sample,
                    [&](const ReportingCut& cut) { return interpolated(values, times, cut); });
      }
    }
    ok = true;
  });
}

}  // namespace vqmath63
