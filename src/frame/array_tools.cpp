// Linear-time masking and removal in arrays of Singles.
#include "frame/array_tools.hpp"

#include <algorithm>
#include <cmath>
#include <span>
#include <utility>

#include "frame/fault.hpp"

namespace vqmath63 {
namespace {

// Elements 1 to n of an array; fault 9 when it has an n but no element 1.
template <class T>
std::span<const T> samples(const Array1<T>& array) {
  const std::int32_t n = array.upper();
  if (n < 1) return {};
  if (!array.covers(1, n)) raise_fault(ErrorNumber::kSubscript);
  return {&array(1), static_cast<std::size_t>(n)};
}

std::int32_t to_count(std::ptrdiff_t n) {
  return static_cast<std::int32_t>(n);
}

// The array that `values` shrinks to: elements below 1 as they are, 1 to `count` still zero.
Array1<float> shortened(const Array1<float>& values, std::int32_t count) {
  if (count == 0) return Array1<float>(1, 1);
  Array1<float> fresh(values.lower(), count);
  std::copy_n(values.data(), 1 - values.lower(), fresh.data());
  return fresh;
}

// `values` without the elements at `positions`, which ascend strictly within 1 .. n.
Array1<float> without(const Array1<float>& values, std::span<const std::int32_t> positions) {
  const std::span<const float> from = samples(values);
  Array1<float> kept = shortened(values, to_count(std::ssize(from) - std::ssize(positions)));
  float* to = &kept(1);
  std::int32_t next = 1;
  for (const std::int32_t position : positions) {
    to = std::copy_n(from.begin() + (next - 1), position - next, to);
    next = position + 1;
  }
  std::copy(from.begin() + (next - 1), from.end(), to);
  return kept;
}

template <class IsNull>
Array1<std::int32_t> positions_of(std::span<const float> data, std::int32_t& found,
                                  const IsNull& is_null) {
  found = to_count(std::count_if(data.begin(), data.end(), is_null));
  Array1<std::int32_t> list(1, std::max(found, 1));
  std::int32_t* next = list.data();
  for (std::size_t i = 0; i < data.size(); ++i) {
    if (is_null(data[i])) *next++ = static_cast<std::int32_t>(i + 1);
  }
  return list;
}

}  // namespace

void BuiltInArrayTools::ApplyMask(Array1<Boolean>& mask, Array1<float>& values, std::int32_t& count,
                                  bool& ok, bool& keepFlag) {
  ok = false;
  const std::span<const float> data = samples(values);
  std::span<const Boolean> flags = samples(mask);
  if (flags.size() < data.size()) raise_fault(ErrorNumber::kSubscript);
  flags = flags.first(data.size());
  const bool wanted = keepFlag;
  const auto is_kept = [=](Boolean flag) { return bool{flag} == wanted; };
  const std::int32_t kept = to_count(std::count_if(flags.begin(), flags.end(), is_kept));
  if (kept == 0 || kept < values.upper()) {
    Array1<float> result = shortened(values, kept);
    float* next = &result(1);
    for (std::size_t i = 0; i < data.size(); ++i) {
      if (is_kept(flags[i])) *next++ = data[i];
    }
    values = std::move(result);
  }
  count = kept;
  ok = true;
}

void BuiltInArrayTools::RemoveNullEntries(float& nullValue, Array1<float>& values,
                                          std::int32_t& count, Array1<std::int32_t>& removedList,
                                          std::int32_t& removedCount, bool& ok) {
  ok = false;
  const float null = nullValue;
  const std::span<const float> data = samples(values);
  std::int32_t removed = 0;
  Array1<std::int32_t> list =
      std::isnan(null) ? positions_of(data, removed, [](float x) { return std::isnan(x); })
                       : positions_of(data, removed, [=](float x) { return x == null; });
  const std::int32_t kept = to_count(std::ssize(data)) - removed;
  const bool shrinks = removed > 0 || kept == 0;
  Array1<float> shorter;
  if (shrinks) shorter = without(values, {list.data(), static_cast<std::size_t>(removed)});
  removedList = std::move(list);
  if (shrinks) values = std::move(shorter);
  removedCount = removed;
  count = kept;
  ok = true;
}

void BuiltInArrayTools::RemoveListedEntries(Array1<std::int32_t>& removedList,
                                            std::int32_t& removedCount, Array1<float>& values,
                                            std::int32_t& newCount, bool& ok) {
  ok = false;
  const std::int32_t n = to_count(std::ssize(samples(values)));
  const std::int32_t removed = removedCount;
  if (removed < 0) raise_fault(ErrorNumber::kInvalidCall);
  std::span<const std::int32_t> positions;
  if (removed > 0) {
    if (!removedList.covers(1, removed)) raise_fault(ErrorNumber::kSubscript);
    positions = {&removedList(1), static_cast<std::size_t>(removed)};
    std::int32_t before = 0;
    for (const std::int32_t position : positions) {
      if (position < 1 || position > n) raise_fault(ErrorNumber::kSubscript);
      if (position <= before) raise_fault(ErrorNumber::kInvalidCall);
      before = position;
    }
  }
  const std::int32_t kept = n - removed;
  if (removed > 0 || kept == 0) values = without(values, positions);
  newCount = kept;
  ok = true;
}

void BuiltInArrayTools::InitialiseFlagArray(std::int32_t& count, bool& /*flagA*/, bool& /*flagB*/,
                                            Array1<Boolean>& arr, bool& ok) {
  ok = false;
  arr.redim(1, count);
  std::fill_n(arr.data(), arr.size(), Boolean(true));
  ok = true;
}

}  // namespace vqmath63
