#include "accumulate/period_words.hpp"

#include <cstdint>

#include "accumulate/period_unit.hpp"
#include "frame/array.hpp"
#include "frame/trap.hpp"

namespace vqmath63 {
namespace {

constexpr Location kCheckPeriod{"ztAnalyse - Accumulate", "CheckPeriod"};
constexpr Location kSetAccumulatePeriods{"ztAnalyse - Accumulate", "SetAccumulatePeriods"};

struct PeriodWordTable {
  Array1<std::string> words;
  std::int32_t count = 0;  // 0 while the table is unloaded
};

PeriodWordTable& table() {
  thread_local PeriodWordTable words;
  return words;
}

}  // namespace

bool CheckPeriod(const std::string& zPeriod) {
  return trap<bool>(kCheckPeriod, [&](bool& result) {
    if (zPeriod.empty()) return;
    bool load = true;
    bool ok = false;
    SetAccumulatePeriods(load, ok);
    const std::string wanted = upper_case(zPeriod);
    for (std::int32_t i = 1; i <= table().count && !result; ++i) {
      result = upper_case(table().words(i)) == wanted;
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
      for (const PeriodWord& entry : period_vocabulary()) words(++count) = entry.word;
      words.redim_preserve(count);
    }
    qOK = true;
  });
}

}  // namespace vqmath63
