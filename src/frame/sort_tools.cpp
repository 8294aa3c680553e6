// Radix sort of Singles by their bits.
#include "frame/sort_tools.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <new>
#include <numeric>
#include <utility>

#include "frame/memory.hpp"

namespace vqmath63 {
namespace {

using Key = std::uint32_t;

// The bits of a Single as an integer of the same order: negative numbers have all bits turned
// over, the others the sign bit only. That leaves the negative NaNs below -inf; counting from -inf
// takes them round to the top, where the other NaNs are.
constexpr Key kBelowMinusInfinity = 0x007FFFFFU;
constexpr Key key_of(Key bits) {
  return (bits ^ ((0U - (bits >> 31)) | 0x80000000U)) - kBelowMinusInfinity;
}
constexpr Key bits_of(Key counted) {
  const Key key = counted + kBelowMinusInfinity;
  return key ^ (((key >> 31) - 1U) | 0x80000000U);
}

// Keys kept in the memory of the Singles themselves: bytes are moved, no number is ever loaded.
Key load(const float* slot) {
  Key key;
  std::memcpy(&key, slot, sizeof key);
  return key;
}
void store(float* slot, Key key) {
  std::memcpy(slot, &key, sizeof key);
}
Key load(const Key* slot) {
  return *slot;
}
void store(Key* slot, Key key) {
  *slot = key;
}

constexpr unsigned kDigits = 4;  // of 8 bits each
constexpr std::size_t kDigitValues = 256;
using DigitCounts = std::array<Key, kDigitValues>;

constexpr std::size_t digit(Key key, unsigned d) {
  return (key >> (8 * d)) & 0xFFU;
}

// One pass: keys move, in stable order, to where the counts of their d-th digit say. The last pass
// turns them back into the bits of Singles on the way.
template <bool kLast, class From, class To>
void distribute(const From* from, To* to, std::size_t n, const DigitCounts& counts, unsigned d) {
  DigitCounts places;
  std::exclusive_scan(counts.begin(), counts.end(), places.begin(), Key{0});
  const auto put = [to](Key place, Key key) { store(to + place, kLast ? bits_of(key) : key); };

  // In batches: the places are looked up before any key is stored, because a look-up that follows
  // a store to a place not yet known waits for it. Written out, it halves the time of a pass.
  const auto move_batch = [&]<std::size_t... kNth>(const From* batch,
                                                   std::index_sequence<kNth...>) {
    const Key keys[] = {load(batch + kNth)...};
    const Key to_place[] = {places[digit(keys[kNth], d)]++...};
    (put(to_place[kNth], keys[kNth]), ...);
  };
  constexpr std::size_t kBatch = 8;
  std::size_t i = 0;
  for (; i + kBatch <= n; i += kBatch) move_batch(from + i, std::make_index_sequence<kBatch>());
  for (; i < n; ++i) move_batch(from + i, std::make_index_sequence<1>());
}

template <class From, class To>
void distribute(const From* from, To* to, std::size_t n, const DigitCounts& counts, unsigned d,
                bool last) {
  if (last) {
    distribute<true>(from, to, n, counts, d);
  } else {
    distribute<false>(from, to, n, counts, d);
  }
}

// Radix sort from the lowest digit to the highest; false when there is no scratch memory. The
// values are not all equal.
bool radix_sort(float* values, std::size_t n) noexcept {
  const std::unique_ptr<Key[]> scratch(new (std::nothrow) Key[n]);
  if (!scratch) return false;
  prefer_large_pages(scratch.get(), n * sizeof(Key));

  std::array<DigitCounts, kDigits> counts{};
  for (std::size_t i = 0; i < n; ++i) {
    const Key key = key_of(load(values + i));
    store(values + i, key);
    ++counts[0][digit(key, 0)];
    ++counts[1][digit(key, 1)];
    ++counts[2][digit(key, 2)];
    ++counts[3][digit(key, 3)];
  }

  // A digit that all keys share needs no pass.
  const Key any = load(values);
  unsigned passes[kDigits];
  unsigned pass_count = 0;
  for (unsigned d = 0; d < kDigits; ++d) {
    if (counts[d][digit(any, d)] != n) passes[pass_count++] = d;
  }

  for (unsigned p = 0; p < pass_count; ++p) {
    const unsigned d = passes[p];
    const bool last = p + 1 == pass_count;
    if (p % 2 == 0) {
      distribute(values, scratch.get(), n, counts[d], d, last);
    } else {
      distribute(scratch.get(), values, n, counts[d], d, last);
    }
  }
  if (pass_count % 2 == 1) std::memcpy(values, scratch.get(), n * sizeof(Key));
  return true;
}

// Where the fixed cost of the radix passes is earned back.
constexpr std::size_t kFewest = 48;

}  // namespace

void sort_singles(std::span<float> values) noexcept {
  const auto first = values.begin();
  const auto last = values.end();
  // Both looks end where the order breaks, and at a NaN.
  const auto falls = [](float a, float b) { return !(a <= b); };
  const auto rises = [](float a, float b) { return !(a >= b); };
  if (std::adjacent_find(first, last, falls) == last) return;
  if (values.size() >= kFewest) {
    if (std::adjacent_find(first, last, rises) == last) return std::reverse(first, last);
    if (radix_sort(values.data(), values.size())) return;
  }
  const auto nan = std::partition(first, last, [](float x) { return !std::isnan(x); });
  std::sort(first, nan);
}

void BuiltInSortTools::SortAscending(Array1<float>& values, bool& qOK) {
  qOK = false;
  if (!values.allocated()) return;
  const std::int32_t n = values.upper();
  if (!values.covers(1, n)) return;
  if (n > 1) sort_singles({&values(1), static_cast<std::size_t>(n)});
  qOK = true;
}

}  // namespace vqmath63
