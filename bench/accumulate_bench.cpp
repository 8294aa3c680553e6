// Accumulation of a profile of ten columns onto months: time, and memory beside the table's own.
#include <benchmark/benchmark.h>
#include <sys/resource.h>

#include "accumulate/accumulate.hpp"

namespace {

using vqmath63::Array1;
using vqmath63::Array2;
using vqmath63::Boolean;

constexpr std::int32_t kColumns = 10;

// One row each `step` days; odd columns cumulative, even ones rates.
Array2<float> profile(std::int32_t rows, float step) {
  Array2<float> table({1, rows}, {1, kColumns});
  for (std::int32_t r = 1; r <= rows; ++r) {
    table(r, 1) = static_cast<float>(r - 1) * step;
    for (std::int32_t c = 2; c <= kColumns; ++c) {
      table(r, c) = static_cast<float>((r * 31 + c * 17) % 4096);
    }
  }
  return table;
}

double peak_megabytes() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return static_cast<double>(usage.ru_maxrss) / 1024.0;
}

void Accumulate(benchmark::State& state) {
  const auto rows = static_cast<std::int32_t>(state.range(0));
  Array2<float> table = profile(rows, 0.25F);  // a million quarter days are 684 years
  Array1<Boolean> rates(1, kColumns);
  for (std::int32_t c = 1; c <= kColumns; ++c) rates(c) = c % 2 == 0;
  vqmath63::ztAccumulate accumulate;
  accumulate.put_StartDate({36526.0});  // 2000-01-01
  accumulate.put_StartData({36526.0});
  accumulate.put_RateArray(rates);
  bool ok = false;
  for (auto _ : state) {
    Array2<float> result;
    accumulate.Accumulate(table, result, ok);
    benchmark::DoNotOptimize(result.data());
  }
  if (!ok) state.SkipWithError("the accumulation failed");
  state.SetItemsProcessed(state.iterations() * rows);
  state.counters["table_MB"] = static_cast<double>(rows) * kColumns * sizeof(float) / 1e6;
  state.counters["process_peak_MB"] = peak_megabytes();
}

BENCHMARK(Accumulate)->Arg(1'000)->Arg(10'000)->Arg(100'000)->Arg(1'000'000);

}  // namespace
