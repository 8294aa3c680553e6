#include "automation/many_calls.hpp"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

namespace vqmath63::automation {
namespace {

[[noreturn]] void refuse(HRESULT why, const char* words, const ArgumentPlace& place,
                         const char* detail) {
  std::string text(words);
  text.append(": argument '").append(place.info.name).append("' of ").append(place.member);
  throw BoundaryError(why, text.append(detail));
}

// The first byte of a column of Doubles, and the one behind its last.
std::pair<std::intptr_t, std::intptr_t> extent(const Column& column, std::int64_t count) {
  const auto first = reinterpret_cast<std::intptr_t>(column.first);
  const auto last = static_cast<std::intptr_t>(first + (count - 1) * column.stride);
  return {std::min(first, last), std::max(first, last) + std::intptr_t{sizeof(double)}};
}

}  // namespace

bool apart(const ManyCalls& calls) noexcept {
  const auto written = extent(calls.result, calls.count);
  return std::all_of(calls.arguments.begin(), calls.arguments.end(), [&](const Column& column) {
    const bool same = column.first == calls.result.first && column.stride == calls.result.stride &&
                      std::abs(column.stride) >= std::int64_t{sizeof(double)};
    const auto [from, to] = extent(column, calls.count);
    return same || to <= written.first || written.second <= from;
  });
}

void require_memory(const Column& column, const ArgumentPlace& place) {
  if (column.first != nullptr || place.info.optional) return;
  refuse(E_POINTER, "Invalid pointer", place, " is a null reference");
}

void require_one_value(const Column& column, const ArgumentPlace& place) {
  if (column.stride == 0) return;
  refuse(E_INVALIDARG, "Invalid argument", place, " has to be one for all calls");
}

}  // namespace vqmath63::automation
