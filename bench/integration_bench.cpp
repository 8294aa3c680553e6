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

constexpr std::int64_t kPoints = 1'000'000;
BENCHMARK(Trapezoidal)->Arg(kPoints)->Unit(benchmark::kMicrosecond);
BENCHMARK(PlainTrapezoidal)->Arg(kPoints)->Unit(benchmark::kMicrosecond);
BENCHMARK(Backward)->Arg(kPoints)->Unit(benchmark::kMicrosecond);
BENCHMARK(PlainBackward)->Arg(kPoints)->Unit(benchmark::kMicrosecond);
BENCHMARK(Simpson)->Arg(kPoints + 1)->Unit(benchmark::kMicrosecond);

}  // namespace
