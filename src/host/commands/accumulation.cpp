#include "host/commands/accumulation.hpp"

#include <algorithm>
#include <cmath>

#include "host/client/dispatch_client.hpp"
#include "host/data/moment.hpp"
#include "host/failure.hpp"
#include "host/text.hpp"

namespace vqmath63::host {
namespace {

// The days that `time` units after time 0 are. The component's own calendar answers: a table of two
// rows that begins or ends there is accumulated, and its length is what it reports.
double days_of_time(double time, const std::string& data_period, double start_data) {
  const auto t = static_cast<float>(time);
  if (t == 0.0F) return 0.0;
  constexpr double kFirstMoment = -657434.0;  // 0100-01-01, no later than any data
  DispatchObject object = accumulator({data_period, "years", 1, 1, kFirstMoment}, start_data);
  const ArrayOwner table(new_array(VT_R4, 2, 2));
  float* values = static_cast<float*>(table.get()->pvData);
  values[0] = std::min(t, 0.0F);
  values[1] = std::max(t, 0.0F);
  ArrayOwner result;
  if (!run_accumulate(object, table.get(), result)) {
    throw WorkError("the time of the first row used is no moment that can be reported");
  }
  const double length =
      static_cast<const float*>(result.get()->pvData)[result.get()->rgsabound[1].cElements - 1];
  return t < 0.0F ? -length : length;
}

// Refuses what lies beyond the data, before the component does with a line of its own.
void refuse_beyond(const Production& production, const PeriodSettings& settings) {
  if (static_cast<std::size_t>(settings.from_row) > production.rows) {
    throw WorkError("--from-row " + std::to_string(settings.from_row) + ": the file has only " +
                    counted(production.rows, "row"));
  }
  if (production.first_time == production.last_time) {
    throw WorkError("the rows used span no time: at least two different times are needed");
  }
  const double last =
      production.start_data +
      days_of_time(production.last_time, settings.data_period, production.start_data);
  if (settings.start >= last) {
    throw WorkError("the start of reporting, " + exact_moment_text(settings.start) +
                    ", is not before the last row, " + exact_moment_text(last));
  }
}

}  // namespace

Accumulated accumulate(const Production& production, const PeriodSettings& settings) {
  check_period_word(settings.period);
  check_data_period_word(settings.data_period);
  refuse_beyond(production, settings);
  DispatchObject object = accumulator(settings, production.start_data);
  const std::size_t series = production.names.size();
  if (std::find(production.rates.begin(), production.rates.end(), false) !=
      production.rates.end()) {
    SAFEARRAY* rates = new_array(VT_BOOL, series + 1);
    VARIANT_BOOL* flags = static_cast<VARIANT_BOOL*>(rates->pvData);
    flags[0] = VARIANT_TRUE;  // the time column's is not consulted
    for (std::size_t j = 0; j < series; ++j) {
      flags[j + 1] = production.rates[j] ? VARIANT_TRUE : VARIANT_FALSE;
    }
    object.put("RateArray", Value::array(VT_BOOL, rates));
  }
  ArrayOwner result;
  if (!run_accumulate(object, production.table.get(), result)) {
    throw WorkError("the accumulation did not succeed (qOK is False)");
  }

  double first_moment = production.start_data + production.first_time;
  if (!production.dated) {
    const double first =
        days_of_time(production.first_time, settings.data_period, production.start_data);
    first_moment = roundest_moment(production.start_data + first, single_spacing_at(first));
  }
  const double begin = std::max(settings.start, first_moment);
  const std::size_t periods = result.get()->rgsabound[1].cElements;
  const float* values = static_cast<const float*>(result.get()->pvData);
  Accumulated out;
  out.boundaries.push_back(begin);
  for (std::size_t i = 0; i < periods; ++i) {
    const double elapsed = *values++;
    const double end = begin + elapsed;
    out.boundaries.push_back(
        roundest_moment(end, single_spacing_at(std::max(end - production.start_data, elapsed))));
  }
  for (std::size_t j = 0; j < series; ++j) {
    out.series.emplace_back(values, values + periods);
    values += periods;
  }
  return out;
}

}  // namespace vqmath63::host
