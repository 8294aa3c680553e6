// Extremes by independent lanes: the same element as one scan keeps, without its chain of waits.
#include "statistics/extremes.hpp"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <functional>
#include <span>

#include "frame/steps_only.hpp"

namespace vqmath63 {
namespace {

std::span<const float> samples(const Array1<const float>& x) {
  const std::int32_t n = x.upper();
  if (n < 1 || !x.covers(1, n)) raise_fault(ErrorNumber::kSubscript);
  return {&x(1), static_cast<std::size_t>(n)};
}

// The first of the values that none replaces; replaces(a, b) says that b takes the place of a.
template <class Replaces>
const float* kept(std::span<const float> values, Replaces replaces) {
  const float* const first = values.data();
  const std::size_t n = values.size();
  const auto take = [replaces](float& best, float x) { best = replaces(best, x) ? x : best; };

  constexpr std::size_t kLanes = 16;
  float lanes[kLanes];
  std::fill_n(lanes, kLanes, *first);
  std::size_t i = 0;
  for (; !kStepsOnly && i + kLanes <= n; i += kLanes) {
    for (std::size_t lane = 0; lane < kLanes; ++lane) take(lanes[lane], first[i + lane]);
  }
  float best = *first;
  for (const float lane : lanes) take(best, lane);
  for (; i < n; ++i) take(best, first[i]);

  // Nothing replaces a NaN, which no value equals either; any other best is met, first of its ties.
  return std::isnan(best) ? first : std::find(first, first + n, best);
}

std::int32_t index_in(std::span<const float> values, const float* element) {
  return static_cast<std::int32_t>(element - values.data()) + 1;
}

// "x by a strictly larger one" as an order of (kept, new).
constexpr std::less<float> kByLarger;
constexpr std::greater<float> kBySmaller;

}  // namespace

float maximum_of(const Array1<const float>& x) {
  return *kept(samples(x), kByLarger);
}

float minimum_of(const Array1<const float>& x) {
  return *kept(samples(x), kBySmaller);
}

std::int32_t index_of_maximum(const Array1<const float>& x) {
  const auto values = samples(x);
  return index_in(values, kept(values, kByLarger));
}

std::int32_t index_of_minimum(const Array1<const float>& x) {
  const auto values = samples(x);
  return index_in(values, kept(values, kBySmaller));
}

}  // namespace vqmath63
