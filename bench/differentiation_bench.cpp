// Derivatives of a long curve beside a plain loop of the same formula.
#include <benchmark/benchmark.h>

#include <vector>

#include "calculus/differentiate.hpp"

namespace {

using vqmath63::Array1;
using vqmath63::ztDifferentiate;

constexpr std::int64_t kPoints = 1'000'000;

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

// The centred first derivative as a programmer would write it by hand, without any checks.
void PlainCentred(benchmark::State& state) {
  Curve curve(state.range(0));
  std::vector<double> d(curve.x.size());
  for (auto _ : state) {
    const double* x = curve.x.data();
    const double* y = curve.y.data();
    benchmark::DoNotOptimize(x);
    for (std::size_t i = 1; i + 1 < d.size(); ++i) {
      const double h1 = x[i] - x[i - 1];
      const double h2 = x[i + 1] - x[i];
      const double a = h1 * h1;
      const double b = h2 * h2;
      d[i] = (a * y[i + 1] - (a - b) * y[i] - b * y[i - 1]) / (h1 * b + h2 * a + 1e-20);
    }
    benchmark::DoNotOptimize(d.data());
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

BENCHMARK(FirstDerivative)->Arg(kPoints)->Unit(benchmark::kMicrosecond);
BENCHMARK(FirstDerivativeForwards)->Arg(kPoints)->Unit(benchmark::kMicrosecond);
BENCHMARK(SecondDerivative)->Arg(kPoints)->Unit(benchmark::kMicrosecond);
BENCHMARK(PlainCentred)->Arg(kPoints)->Unit(benchmark::kMicrosecond);

}  // namespace
