// The quadrature rules beside plain loops of the same dependent additions.
#include <benchmark/benchmark.h>

#include <vector>

#include "calculus/integrate.hpp"

namespace {

using vqmath63::Array1;

struct Curve {
  std::vector<float> x;
  std::vector<float> y;
  explicit Curve(std::int64_t n) {
    for (std::int64_t i = 0; i < n; ++i) {
      x.push_back(static_cast<float>(i) * 0.25F);
      y.push_back(static_cast<float>((i * 7919) % 1000) * 0.125F);
    }
  }
};

void integral(benchmark::State& state, std::int32_t rule) {
  Curve curve(state.range(0));
  Array1<float> x(curve.x);
  Array1<float> y(curve.y);
  vqmath63::ztIntegrate integrate;
  integrate.put_IntegrationRule(rule);
  for (auto _ : state) benchmark::DoNotOptimize(integrate.Integral(x, y));
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void Trapezoidal(benchmark::State& state) {
  integral(state, 1);
}
void Simpson(benchmark::State& state) {
  integral(state, 2);
}
void Backward(benchmark::State& state) {
  integral(state, 4);
}

// The same sums as a programmer would write them by hand, without any checks.
void PlainBackward(benchmark::State& state) {
  Curve curve(state.range(0));
  for (auto _ : state) {
    float sum = 0.0F;
    const float* x = curve.x.data();
    const float* y = curve.y.data();
    benchmark::DoNotOptimize(x);
    for (std::size_t i = 0; i + 1 < curve.x.size(); ++i) {
      sum = static_cast<float>(sum + (static_cast<double>(x[i + 1]) - x[i]) * y[i + 1]);
    }
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void PlainTrapezoidal(benchmark::State& state) {
  Curve curve(state.range(0));
  for (auto _ : state) {
    double sum = 0.0;
    const float* x = curve.x.data();
    const float* y = curve.y.data();
    benchmark::DoNotOptimize(x);
    for (std::size_t i = 0; i + 1 < curve.x.size(); ++i) {
      sum += (static_cast<double>(y[i]) + y[i + 1]) * (static_cast<double>(x[i + 1]) - x[i]);
    }
    benchmark::DoNotOptimize(sum * 0.5);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void PlainSimpson(benchmark::State& state) {
  Curve curve(state.range(0));
  for (auto _ : state) {
    const float* x = curve.x.data();
    const float* y = curve.y.data();
    const std::size_t n = curve.y.size();
    benchmark::DoNotOptimize(x);
    float sum = y[0] + y[n - 1];
    for (std::size_t i = 1; i + 1 < n; i += 2) sum = static_cast<float>(sum + 4.0 * y[i]);
    for (std::size_t i = 2; i + 2 < n; i += 2) sum = static_cast<float>(sum + 2.0 * y[i]);
    benchmark::DoNotOptimize((x[1] - x[0]) / 3.0F * sum);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

// Odd numbers of points, so that Simpson's rule has pairs of intervals.
void sizes(benchmark::internal::Benchmark* bench) {
  for (const std::int64_t n : {101, 10'001, 100'001, 1'000'001}) bench->Arg(n);
}
BENCHMARK(Trapezoidal)->Apply(sizes);
BENCHMARK(PlainTrapezoidal)->Apply(sizes);
BENCHMARK(Backward)->Apply(sizes);
BENCHMARK(PlainBackward)->Apply(sizes);
BENCHMARK(Simpson)->Apply(sizes);
BENCHMARK(PlainSimpson)->Apply(sizes);

}  // namespace
