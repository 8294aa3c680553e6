// Derivatives of a long curve beside a plain loop of the same formula.
#include <benchmark/benchmark.h>

#include <vector>

#include "calculus/differentiate.hpp"

namespace {

using vqmath63::Array1;
using vqmath63::ztDifferentiate;

struct Curve {
  std::vector<double> x, y;
  explicit Curve(std::int64_t n) {
    for (std::int64_t i = 0; i < n; ++i) {
      x.push_back(static_cast<double>(i) * 0.25 + static_cast<double>(i % 7) * 0.01);
      y.push_back(static_cast<double>((i * 7919) % 1000) * 0.125);
    }
  }
};

template <class Member>
void derivative(benchmark::State& state, Member member) {
  Curve curve(state.range(0));
  Array1<double> x(curve.x);
  Array1<double> y(curve.y);
  Array1<double> d(1, static_cast<std::int32_t>(state.range(0)));
  ztDifferentiate differentiate;
  bool ok = false;
  (differentiate.*member)(x, y, d, ok);  // the memory of the result is touched
  for (auto _ : state) {
    (differentiate.*member)(x, y, d, ok);
    benchmark::DoNotOptimize(d.data());
  }
  if (!ok) state.SkipWithError("no derivative");
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void FirstDerivative(benchmark::State& state) {
  derivative(state, &ztDifferentiate::FirstDerivative);
}
void FirstDerivativeForwards(benchmark::State& state) {
  derivative(state, &ztDifferentiate::FirstDerivativeForwards);
}
void SecondDerivative(benchmark::State& state) {
  derivative(state, &ztDifferentiate::SecondDerivative);
}

// The same formulas as a programmer would write them by hand, without any checks.
template <class Formula>
void plain_loop(benchmark::State& state, Formula formula) {
  Curve curve(state.range(0));
  std::vector<double> d(curve.x.size());
  for (auto _ : state) {
    const double* x = curve.x.data();
    const double* y = curve.y.data();
    benchmark::DoNotOptimize(x);
    for (std::size_t i = 1; i + 1 < d.size(); ++i) d[i] = formula(x + i, y + i);
    benchmark::DoNotOptimize(d.data());
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void PlainCentred(benchmark::State& state) {
  plain_loop(state, [](const double* x, const double* y) {
    const double h1 = x[0] - x[-1];
    const double h2 = x[1] - x[0];
    const double a = h1 * h1;
    const double b = h2 * h2;
    return (a * y[1] - (a - b) * y[0] - b * y[-1]) / (h1 * b + h2 * a + 1e-20);
  });
}
void PlainForwards(benchmark::State& state) {
  plain_loop(state, [](const double* x, const double* y) {
    return (y[1] - y[0]) / (x[1] - x[0] + 1e-20);
  });
}
void PlainCentredSecond(benchmark::State& state) {
  plain_loop(state, [](const double* x, const double* y) {
    const double h1 = x[0] - x[-1];
    const double h2 = x[1] - x[0];
    const double s = h2 + h1;
    return 2.0 * (h1 * y[1] - s * y[0] + h2 * y[-1]) / (s * (h1 * 12.0 * h2));
  });
}

void sizes(benchmark::internal::Benchmark* bench) {
  for (const std::int64_t n : {1'000, 10'000, 100'000, 1'000'000}) bench->Arg(n);
}
BENCHMARK(FirstDerivative)->Apply(sizes);
BENCHMARK(PlainCentred)->Apply(sizes);
BENCHMARK(FirstDerivativeForwards)->Apply(sizes);
BENCHMARK(PlainForwards)->Apply(sizes);
BENCHMARK(SecondDerivative)->Apply(sizes);
BENCHMARK(PlainCentredSecond)->Apply(sizes);

}  // namespace
