// The solver of linear systems beside its own steps, plainly, and the partial-pivot LU of Eigen,
// all in Single.
#include <benchmark/benchmark.h>

#include <Eigen/LU>
#include <cmath>
#include <utility>
#include <vector>

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

// The same steps as a programmer would write them by hand: each multiple and each difference in
// Double, stored as Single; rows change places by their pointers.
bool plain_solve(std::size_t n, float** rows) {
  for (std::size_t k = 0; k < n; ++k) {
    std::size_t pivot = k;
    for (std::size_t i = k; i < n; ++i) {
      if (std::fabs(rows[i][k]) >= std::fabs(rows[pivot][k])) pivot = i;
    }
    if (std::fabs(rows[pivot][k]) < 2.22e-16F) return false;
    std::swap(rows[k], rows[pivot]);
    for (std::size_t i = k + 1; i < n; ++i) {
      const auto m = static_cast<double>(rows[i][k] / rows[k][k]);
      for (std::size_t j = k + 1; j <= n; ++j) {
        rows[i][j] = static_cast<float>(static_cast<double>(rows[i][j]) -
                                        m * static_cast<double>(rows[k][j]));
      }
    }
  }
  for (std::size_t i = n; i-- > 0;) {
    float value = rows[i][n];
    for (std::size_t j = i + 1; j < n; ++j) {
      value = static_cast<float>(static_cast<double>(value) -
                                 static_cast<double>(rows[i][j]) * static_cast<double>(rows[j][n]));
    }
    rows[i][n] = value / rows[i][i];
  }
  return true;
}

void PlainSteps(benchmark::State& state) {
  const auto n = static_cast<std::size_t>(state.range(0));
  std::vector<float> given(n * n), right(n), x(n), work(n * (n + 1));
  std::vector<float*> rows(n);
  for (std::size_t i = 0; i < n; ++i) {
    const auto row = static_cast<std::int64_t>(i) + 1;
    right[i] = element(row, state.range(0) + 1);
    for (std::size_t j = 0; j < n; ++j) {
      given[j * n + i] = element(row, static_cast<std::int64_t>(j) + 1);
    }
  }
  for (auto _ : state) {
    for (std::size_t i = 0; i < n; ++i) {
      rows[i] = work.data() + i * (n + 1);
      for (std::size_t j = 0; j < n; ++j) rows[i][j] = given[j * n + i];
      rows[i][n] = right[i];
    }
    if (!plain_solve(n, rows.data())) state.SkipWithError("no solution");
    for (std::size_t i = 0; i < n; ++i) x[i] = rows[i][n];
    benchmark::DoNotOptimize(x.data());
  }
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
BENCHMARK(PlainSteps)->Apply(orders);
BENCHMARK(EigenDynamic)->Apply(orders);

}  // namespace
