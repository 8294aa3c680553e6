// The elementary functions by both quick ways beside those of the C library, each over the same
// 4096 seeded arguments; the time is that of one call. For a C library without fused multiply-add,
// too: GLIBC_TUNABLES=glibc.cpu.hwcaps=-FMA,-AVX2 elementary_bench
// --benchmark_enable_random_interleaving
#include "elementary/functions.hpp"

#include <benchmark/benchmark.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <random>
#include <string>

namespace {

constexpr std::size_t kCount = 4096;
namespace ours = vqmath63::elementary;

struct Range {
  double low, high;
};

template <class F>
void add(const std::string& name, Range range, F function) {
  std::mt19937_64 bits(63);
  std::array<double, kCount> arguments;
  for (double& x : arguments) {
    x = range.low + (range.high - range.low) * (static_cast<double>(bits() >> 11U) * 0x1p-53);
  }
  benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State& state) {
    std::size_t i = 0;
    for (auto _ : state) {
      benchmark::DoNotOptimize(function(arguments[i], arguments[(i * 7 + 13) % kCount]));
      i = (i + 1) % kCount;
    }
  });
}

// As called, by the portable way, and of the C library.
#define VQ_BESIDE(name, range, call)                                             \
  add(std::string(name) + "/ours", range,                                        \
      [](double x, [[maybe_unused]] double y) { return ours::call; });           \
  add(std::string(name) + "/portable", range,                                    \
      [](double x, [[maybe_unused]] double y) { return ours::portable::call; }); \
  add(std::string(name) + "/libm", range,                                        \
      [](double x, [[maybe_unused]] double y) { return std::call; });

}  // namespace

int main(int count, char** words) {
  benchmark::Initialize(&count, words);
  constexpr Range kUnit{-1.0, 1.0};
  constexpr Range kCircle{-3.0, 3.0};
  constexpr Range kPositive{0.01, 100.0};
  VQ_BESIDE("exp", (Range{-20.0, 20.0}), exp(x))
  VQ_BESIDE("exp_far", (Range{-700.0, 700.0}), exp(x))
  VQ_BESIDE("log", kPositive, log(x))
  VQ_BESIDE("log_beside_1", (Range{0.99, 1.01}), log(x))
  VQ_BESIDE("log10", kPositive, log10(x))
  VQ_BESIDE("log1p", (Range{-0.5, 1.0}), log1p(x))
  VQ_BESIDE("pow", (Range{0.1, 10.0}), pow(x, y))
  VQ_BESIDE("pow_of_10", (Range{-20.0, 20.0}), pow(10.0, x))
  VQ_BESIDE("sin", kCircle, sin(x))
  VQ_BESIDE("sin_to_1e9", (Range{-1e9, 1e9}), sin(x))
  VQ_BESIDE("cos", kCircle, cos(x))
  VQ_BESIDE("tan", kCircle, tan(x))
  VQ_BESIDE("atan", kUnit, atan(x))
  VQ_BESIDE("atan_to_20", (Range{-20.0, 20.0}), atan(x))
  VQ_BESIDE("atan2", kCircle, atan2(x, y))
  VQ_BESIDE("hypot", kCircle, hypot(x, y))
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
