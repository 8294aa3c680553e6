#include "accumulate/period_unit.hpp"

namespace vqmath63 {
namespace {

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

}  // namespace

std::span<const PeriodWord> period_vocabulary() {
  return kVocabulary;
}

std::string upper_case(std::string_view text) {
  std::string upper(text);
  for (char& c : upper) {
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  }
  return upper;
}

std::optional<PeriodUnit> find_period_unit(std::string_view word) {
  const std::string wanted = upper_case(word);
  for (const PeriodWord& entry : kVocabulary) {
    if (upper_case(entry.word) == wanted) return entry.unit;
  }
  return std::nullopt;
}

}  // namespace vqmath63
