// The solver of linear systems beside the partial-pivot LU of Eigen, both in Single.
#include <benchmark/benchmark.h>

#include <Eigen/LU>

#include "regression/matrix.hpp"

namespace {

using vqmath63::Array1;
using vqmath63::Array2;

// A well-conditioned system without any order in it.
float element(std::int64_t i, std::int64_t j) {
  const auto mixed = static_cast<float>((i * 7919 + j * 104729 + i * j * 31) % 1009);
  return mixed / 1009.0F - 0.5F + (i == j ? 1.0F : 0.0F);
}

void MatrixEquation(benchmark::State& state) {
  const auto n = static_cast<std::int32_t>(state.range(0));
  Array2<float> a({1, n}, {1, n});
  Array1<float> b(1, n);
  Array1<float> x(1, n);
  for (std::int32_t i = 1; i <= n; ++i) {
    b(i) = element(i, n + 1);
    for (std::int32_t j = 1; j <= n; ++j) a(i, j) = element(i, j);
  }
  bool singular = false;
  bool ok = false;
  for (auto _ : state) {
    vqmath63::MatrixEquation(a, b, x, singular, ok);
    benchmark::DoNotOptimize(x(1));
  }
  if (!ok) state.SkipWithError("no solution");
}

void EigenDynamic(benchmark::State& state) {
  const auto n = state.range(0);
  Eigen::MatrixXf a(n, n);
  Eigen::VectorXf b(n);
  for (std::int64_t i = 1; i <= n; ++i) {
    b(i - 1) = element(i, n + 1);
    for (std::int64_t j = 1; j <= n; ++j) a(i - 1, j - 1) = element(i, j);
  }
  Eigen::VectorXf x(n);
  for (auto _ : state) {
    x = a.partialPivLu().solve(b);
    benchmark::DoNotOptimize(x(0));
  }
}

void orders(benchmark::internal::Benchmark* bench) {
  for (const std::int64_t n : {2, 3, 4, 8, 16, 32, 64}) bench->Arg(n);
}
BENCHMARK(MatrixEquation)->Apply(orders);
BENCHMARK(EigenDynamic)->Apply(orders);

}  // namespace
