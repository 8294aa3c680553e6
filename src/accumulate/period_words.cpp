#include "accumulate/period_words.hpp"

#include <cstdint>

#include "frame/array.hpp"
#include "frame/text_case.hpp"
#include "frame/trap.hpp"

namespace vqmath63 {
namespace {

constexpr Location kCheckPeriod{"ztAnalyse - Accumulate", "CheckPeriod"};
constexpr Location kSetAccumulatePeriods{"ztAnalyse - Accumulate", "SetAccumulatePeriods"};

constexpr PeriodUnit minutes(std::int32_t n) {
  return {0, n};
}
constexpr PeriodUnit months(std::int32_t n) {
  return {n, 0};
}

constexpr PeriodWord kVocabulary[] = {
    {"minute", minutes(1)},   {"minutes", minutes(1)},   {"hour", minutes(60)},
    {"hours", minutes(60)},   {"day", minutes(1440)},    {"days", minutes(1440)},
    {"week", minutes(10080)}, {"weeks", minutes(10080)}, {"month", months(1)},
    {"months", months(1)},    {"bi-monthly", months(2)}, {"quarter", months(3)},
    {"quarters", months(3)},  {"half-year", months(6)},  {"half-years", months(6)},
    {"year", months(12)},     {"years", months(12)},
};

struct PeriodWordTable {
  Array1<std::string> words;
  std::int32_t count = 0;  // 0 while the table is unloaded
};

PeriodWordTable& table() {
  thread_local PeriodWordTable words;
  return words;
}

}  // namespace

std::span<const PeriodWord> period_vocabulary() {
  return kVocabulary;
}

std::optional<PeriodUnit> find_period_unit(std::string_view word) {
  for (const PeriodWord& entry : kVocabulary) {
    if (same_letters(entry.word, word)) return entry.unit;
  }
  return std::nullopt;
}

bool CheckPeriod(const std::string& zPeriod) {
  return trap<bool>(kCheckPeriod, [&](bool& result) {
    if (zPeriod.empty()) return;
    bool load = true;
    bool ok = false;
    SetAccumulatePeriods(load, ok);
    for (std::int32_t i = 1; i <= table().count && !result; ++i) {
      result = same_letters(table().words(i), zPeriod);
    }
    load = false;
    SetAccumulatePeriods(load, ok);
  });
}

void SetAccumulatePeriods(const bool& qLoad, bool& qOK) {
  trap(kSetAccumulatePeriods, [&] {
    qOK = false;
    auto& [words, count] = table();
    if (!qLoad) {
      count = 0;
      words.erase();
    } else if (count == 0) {
      words.redim(1, 20);
      for (const PeriodWord& entry : kVocabulary) words(++count) = entry.word;
      words.redim_preserve(count);
    }
    qOK = true;
  });
}

}  // namespace vqmath63
