// Times the sort companion beside std::sort, on orders that sorts find easy and hard.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <random>
#include <span>
#include <vector>

#include "frame/sort_tools.hpp"

namespace {

enum Order { kRandom, kSorted, kReversed, kConstant, kNearlySorted };

std::vector<float> samples(Order order, std::size_t count, std::size_t run) {
  std::mt19937 random(20240229);
  std::normal_distribution<float> number(0.0F, 1000.0F);
  std::vector<float> values(count);
  for (float& value : values) value = order == kConstant ? 7.5F : number(random);
  for (std::size_t start = 0; start + run <= count; start += run) {
    const std::span<float> part(values.data() + start, run);
    if (order == kSorted || order == kNearlySorted) std::sort(part.begin(), part.end());
    if (order == kReversed) std::sort(part.begin(), part.end(), std::greater<>());
    if (order == kNearlySorted) std::swap(part.front(), part.back());
  }
  return values;
}

template <class Sort>
void run(benchmark::State& state, const Sort& sort) {
  const auto n = static_cast<std::size_t>(state.range(1));
  // Short arrays come from a long bank, so that no branch predictor can learn them by heart.
  const std::size_t total = std::max<std::size_t>(n, 1000000 / n * n);
  const std::vector<float> bank = samples(static_cast<Order>(state.range(0)), total, n);
  std::vector<float> work(n);
  std::size_t start = 0;
  for (auto _ : state) {
    std::copy_n(bank.begin() + static_cast<std::ptrdiff_t>(start), n, work.begin());
    sort(std::span<float>(work));
    benchmark::DoNotOptimize(work.data());
    benchmark::ClobberMemory();
    start = start + 2 * n <= total ? start + n : 0;
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(n));
}

void std_sort(benchmark::State& state) {
  run(state, [](std::span<float> values) { std::sort(values.begin(), values.end()); });
}

void sort_companion(benchmark::State& state) {
  run(state, [](std::span<float> values) { vqmath63::sort_singles(values); });
}

void cases(benchmark::internal::Benchmark* bench) {
  bench->ArgNames({"order", "n"});  // order: the values of Order
  for (const std::int64_t n : {10, 50, 100, 1000, 10000, 1000000}) {
    for (const Order order : {kRandom, kSorted, kReversed, kConstant, kNearlySorted}) {
      bench->Args({order, n});
    }
  }
}
BENCHMARK(std_sort)->Apply(cases);
BENCHMARK(sort_companion)->Apply(cases);

}  // namespace

BENCHMARK_MAIN();
