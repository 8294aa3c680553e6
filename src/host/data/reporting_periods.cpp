#include "host/data/reporting_periods.hpp"

#include <algorithm>
#include <cmath>
#include <limits>

#include "host/client/description.hpp"
#include "host/data/moment.hpp"
#include "host/failure.hpp"
#include "host/text.hpp"

namespace vqmath63::host {
namespace {

// `property` is the one that takes the word.
void check_word(const std::string& word, const char* property, const char* option) {
  for (const std::string& known : describe_words("ztAccumulate", property)) {
    if (same_letters(word, known)) return;
  }
  throw WorkError(std::string(option) + " '" + word +
                  "' is no period word; these are: " + period_words_text());
}

}  // namespace

std::string period_words_text() {
  std::string text;
  std::string last;
  for (const std::string& word : describe_words("ztAccumulate", "Period")) {
    if (word == last + "s") continue;
    text += (text.empty() ? "" : ", ") + word;
    last = word;
  }
  return text;
}

void check_period_word(const std::string& word) {
  check_word(word, "Period", "--period");
}

void check_data_period_word(const std::string& word) {
  check_word(word, "DataPeriod", "--time");
}

DispatchObject accumulator(const PeriodSettings& settings, double start_data) {
  DispatchObject object = DispatchObject::create("ztAccumulate");
  object.put("DataPeriod", Value::text(settings.data_period));
  object.put("Period", Value::text(settings.period));
  object.put("Frequency", Value::whole_number(settings.frequency));
  object.put("AccumulateIndex", Value::whole_number(settings.from_row));
  object.put("StartData", Value::date(start_data));
  object.put("StartDate", Value::date(settings.start));
  return object;
}

bool run_accumulate(DispatchObject& object, SAFEARRAY* table, ArrayOwner& result) {
  SAFEARRAY* lent = table;
  std::vector<Argument> arguments;
  arguments.push_back({Value::array_reference(VT_R4, &lent)});
  arguments.push_back({Value::array_reference(VT_R4, result.place())});
  return object.succeeds("Accumulate", std::move(arguments));
}

double single_spacing_at(double days) {
  const auto x = static_cast<float>(std::fabs(days));
  return static_cast<double>(std::nextafter(x, std::numeric_limits<float>::max())) - x;
}

std::vector<double> period_boundaries(double from, double days, const PeriodSettings& settings) {
  DispatchObject object = accumulator(settings, from);
  const ArrayOwner table(new_array(VT_R4, 2, 2));
  static_cast<float*>(table.get()->pvData)[1] = static_cast<float>(days);
  ArrayOwner result;
  if (!run_accumulate(object, table.get(), result)) {
    throw WorkError("the periods from " + exact_moment_text(from) + " on cannot be told");
  }
  const float* ends = static_cast<const float*>(result.get()->pvData);
  std::vector<double> boundaries{std::max(from, settings.start)};
  for (std::size_t i = 0; i < result.get()->rgsabound[1].cElements; ++i) {
    boundaries.push_back(roundest_moment(boundaries.front() + ends[i], single_spacing_at(ends[i])));
  }
  return boundaries;
}

}  // namespace vqmath63::host
