// The statistics beside plain loops of the same dependent additions, and beside GSL where it is.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <map>
#include <random>
#include <span>
#include <utility>
#include <vector>

#include "statistics/sample.hpp"
#include "statistics/statistics.hpp"

#ifdef VQ_HAVE_GSL
#include <gsl/gsl_histogram.h>
#include <gsl/gsl_sort_float.h>
#include <gsl/gsl_statistics_float.h>
#endif

namespace {

using vqmath63::Array1;
using vqmath63::ztStatistics;

constexpr float kNull = -999.25F;

// Drawn once: to draw a long column takes longer than most of what is done with it.
std::vector<float>& column(std::int64_t n, unsigned seed) {
  static std::map<std::pair<std::int64_t, unsigned>, std::vector<float>> drawn;
  std::vector<float>& values = drawn[{n, seed}];
  if (values.empty()) {
    std::mt19937 random(seed);
    std::normal_distribution<float> number(100.0F, 15.0F);
    values.resize(static_cast<std::size_t>(n));
    for (float& value : values) value = number(random);
  }
  return values;
}

// Runs `work` on one column after the other; short ones come from a long bank, so that no branch
// predictor can learn them by heart.
template <class Work>
void of_one(benchmark::State& state, const Work& work) {
  const auto n = static_cast<std::size_t>(state.range(0));
  const std::size_t columns = std::max<std::size_t>(1, 100000 / n);
  std::vector<float>& bank = column(static_cast<std::int64_t>(n * columns), 1);
  std::size_t k = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(bank.data());
    benchmark::ClobberMemory();
    work(std::span<float>(bank).subspan(k * n, n));
    k = k + 1 < columns ? k + 1 : 0;
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

template <class Work>
void of_two(benchmark::State& state, const Work& work) {
  std::vector<float>&x = column(state.range(0), 1), &y = column(state.range(0), 2);
  for (auto _ : state) {
    benchmark::DoNotOptimize(x.data());
    benchmark::DoNotOptimize(y.data());
    benchmark::ClobberMemory();
    work(x, y);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

template <class Measure>
void measure(benchmark::State& state, const Measure& of) {
  ztStatistics z;
  of_one(state, [&](std::span<float> values) {
    Array1<float> x{values};
    benchmark::DoNotOptimize(of(z, x));
  });
}

void SumOfX(benchmark::State& state) {
  measure(state, [](ztStatistics& z, Array1<float>& x) { return z.SumOfX(x); });
}

// The same order of additions as a programmer would write it by hand, without any checks.
void PlainSum(benchmark::State& state) {
  of_one(state, [](std::span<const float> values) {
    float sum = values[0];
    for (std::size_t i = 1; i < values.size(); ++i) sum += values[i];
    benchmark::DoNotOptimize(sum);
  });
}

void SumOfXY(benchmark::State& state) {
  ztStatistics z;
  of_two(state, [&](std::vector<float>& xs, std::vector<float>& ys) {
    Array1<float> x{std::span<float>(xs)}, y{std::span<float>(ys)};
    benchmark::DoNotOptimize(z.SumOfXY(x, y));
  });
}

void PlainSumOfXY(benchmark::State& state) {
  of_two(state, [](const std::vector<float>& x, const std::vector<float>& y) {
    float sum = x[0] * y[0];
    for (std::size_t i = 1; i < x.size(); ++i) sum += x[i] * y[i];
    benchmark::DoNotOptimize(sum);
  });
}

void Maximum(benchmark::State& state) {
  measure(state, [](ztStatistics& z, Array1<float>& x) { return z.Maximum(x); });
}

void BasicStatistics(benchmark::State& state) {
  measure(state, [](ztStatistics& z, Array1<float>& x) {
    bool ok = false;
    z.BasicStatistics(x, ok);
    return z.get_xSigmaN1();
  });
}

struct PlainSummary {
  float sum, squares, low, high;
  explicit PlainSummary(float x) : sum(x), squares(x * x), low(x), high(x) {}
  void add(float x) {
    sum += x;
    squares += x * x;
    if (high < x) high = x;
    if (low > x) low = x;
  }
};

// What a summary is asked for, kept as the member keeps it: mean and both deviations beside the
// sums.
struct PlainResults {
  PlainSummary sums;
  float mean, deviation_n, deviation_n1;
  PlainResults(const PlainSummary& of, double n) : sums(of), mean(static_cast<float>(of.sum / n)) {
    const double sum = of.sum, s = of.squares - sum * sum / n;
    deviation_n = static_cast<float>(std::sqrt(std::fabs(s / n)));
    deviation_n1 = static_cast<float>(std::sqrt(std::fabs(s / (n - 1))));
  }
};

void PlainStatistics(benchmark::State& state) {
  of_one(state, [](std::span<const float> values) {
    PlainSummary x(values[0]);
    for (std::size_t i = 1; i < values.size(); ++i) x.add(values[i]);
    PlainResults results(x, static_cast<double>(values.size()));
    benchmark::DoNotOptimize(results);
  });
}

void BasicStatisticsPairs(benchmark::State& state) {
  ztStatistics z;
  of_two(state, [&](std::vector<float>& xs, std::vector<float>& ys) {
    Array1<float> x{std::span<float>(xs)}, y{std::span<float>(ys)};
    bool ok = false;
    z.BasicStatisticsPairs(x, y, ok);
    benchmark::DoNotOptimize(z.get_SigmaXY());
  });
}

void PlainPairs(benchmark::State& state) {
  of_two(state, [](const std::vector<float>& xs, const std::vector<float>& ys) {
    PlainSummary x(xs[0]), y(ys[0]);
    float products = xs[0] * ys[0];
    for (std::size_t i = 1; i < xs.size(); ++i) {
      x.add(xs[i]);
      y.add(ys[i]);
      products += xs[i] * ys[i];
    }
    const auto n = static_cast<double>(xs.size());
    PlainResults x_results(x, n), y_results(y, n);
    benchmark::DoNotOptimize(x_results);
    benchmark::DoNotOptimize(y_results);
    benchmark::DoNotOptimize(products);
  });
}

void Statistics(benchmark::State& state) {
  measure(state, [](ztStatistics& z, Array1<float>& x) {
    bool ok = false;
    z.Statistics(x, ok);
    return z.get_xMode();
  });
}
void Median(benchmark::State& state) {
  measure(state, [](ztStatistics& z, Array1<float>& x) { return z.Median(x); });
}
void Mode(benchmark::State& state) {
  measure(state, [](ztStatistics& z, Array1<float>& x) { return z.Mode(x); });
}
void Quartile(benchmark::State& state) {
  measure(state, [](ztStatistics& z, Array1<float>& x) {
    std::int32_t third = 3;
    return z.Quartile(x, third);
  });
}

// The least that gives a median alone, and a mode alone.
float std_median(std::vector<float>& copy) {
  const auto middle = copy.begin() + static_cast<std::ptrdiff_t>(copy.size() / 2);
  std::nth_element(copy.begin(), middle, copy.end());
  return *middle;
}
float std_mode(std::vector<float>& copy) {
  std::sort(copy.begin(), copy.end());
  float mode = copy[0];
  std::size_t most = 0;
  for (std::size_t i = 0; i < copy.size();) {
    std::size_t run = 1;
    while (i + run < copy.size() && copy[i + run] == copy[i]) ++run;
    mode = run > most ? copy[i] : mode;
    most = std::max(most, run);
    i += run;
  }
  return mode;
}

void NthElementMedian(benchmark::State& state) {
  of_one(state, [](std::span<const float> values) {
    std::vector<float> copy(values.begin(), values.end());
    benchmark::DoNotOptimize(std_median(copy));
  });
}

void StdSortedMode(benchmark::State& state) {
  of_one(state, [](std::span<const float> values) {
    std::vector<float> copy(values.begin(), values.end());
    benchmark::DoNotOptimize(std_mode(copy));
  });
}

void StdMedianAndMode(benchmark::State& state) {
  of_one(state, [](std::span<const float> values) {
    std::vector<float> copy(values.begin(), values.end());
    benchmark::DoNotOptimize(std_median(copy));
    benchmark::DoNotOptimize(std_mode(copy));
  });
}

void RemoveNullsXYZ(benchmark::State& state) {
  std::vector<float> xs = column(state.range(0), 1), ys = column(state.range(0), 2),
                     zs = column(state.range(0), 3);
  std::mt19937 random(4);
  for (std::vector<float>* values : {&xs, &ys, &zs}) {
    for (float& value : *values) value = random() % 20 == 0 ? kNull : value;
  }
  Array1<float> x{std::span<float>(xs)}, y{std::span<float>(ys)}, w{std::span<float>(zs)};
  ztStatistics z;
  float null = kNull;
  for (auto _ : state) {
    Array1<float> a, b, c;
    std::int32_t rows = 0;
    bool ok = false;
    z.RemoveNullsXYZ(null, x, y, w, a, b, c, rows, ok);
    benchmark::DoNotOptimize(rows);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

constexpr std::int32_t kBins = 50;

void BinVector(benchmark::State& state) {
  vqmath63::ztSample sample;
  of_one(state, [&](std::span<float> values) {
    Array1<float> x{values}, centres, counts;
    std::int32_t bins = kBins;
    bool ok = false;
    sample.BinVector(x, bins, centres, counts, ok);
    benchmark::DoNotOptimize(counts.data());
  });
}

#ifdef VQ_HAVE_GSL
void GslMean(benchmark::State& state) {
  of_one(state, [](std::span<const float> values) {
    benchmark::DoNotOptimize(gsl_stats_float_mean(values.data(), 1, values.size()));
  });
}

// What the summary gives: mean, deviation and extremes.
void GslSummary(benchmark::State& state) {
  of_one(state, [](std::span<const float> values) {
    const double mean = gsl_stats_float_mean(values.data(), 1, values.size());
    float low = 0.0F, high = 0.0F;
    gsl_stats_float_minmax(&low, &high, values.data(), 1, values.size());
    benchmark::DoNotOptimize(gsl_stats_float_sd_m(values.data(), 1, values.size(), mean) + low +
                             high);
  });
}

void GslSortedMedian(benchmark::State& state) {
  of_one(state, [](std::span<const float> values) {
    std::vector<float> copy(values.begin(), values.end());
    gsl_sort_float(copy.data(), 1, copy.size());
    benchmark::DoNotOptimize(gsl_stats_float_median_from_sorted_data(copy.data(), 1, copy.size()));
  });
}

void GslHistogram(benchmark::State& state) {
  of_one(state, [](std::span<const float> values) {
    float low = 0.0F, high = 0.0F;
    gsl_stats_float_minmax(&low, &high, values.data(), 1, values.size());
    gsl_histogram* histogram = gsl_histogram_alloc(kBins);
    gsl_histogram_set_ranges_uniform(histogram, low, high);
    for (const float value : values) gsl_histogram_increment(histogram, value);
    benchmark::DoNotOptimize(histogram->bin);
    gsl_histogram_free(histogram);
  });
}
#endif

void sizes(benchmark::internal::Benchmark* bench) {
  for (const std::int64_t n : {100, 10'000, 1'000'000, 10'000'000}) bench->Arg(n);
}
// Of what takes seconds at ten million.
void fewer(benchmark::internal::Benchmark* bench) {
  for (const std::int64_t n : {100, 1'000, 10'000, 1'000'000}) bench->Arg(n);
}

BENCHMARK(SumOfX)->Apply(sizes);
BENCHMARK(PlainSum)->Apply(sizes);
BENCHMARK(SumOfXY)->Apply(sizes);
BENCHMARK(PlainSumOfXY)->Apply(sizes);
BENCHMARK(Maximum)->Apply(sizes);
BENCHMARK(BasicStatistics)->Apply(sizes);
BENCHMARK(PlainStatistics)->Apply(sizes);
BENCHMARK(BasicStatisticsPairs)->Apply(sizes);
BENCHMARK(PlainPairs)->Apply(sizes);
BENCHMARK(Statistics)->Apply(fewer);
BENCHMARK(Median)->Apply(fewer);
BENCHMARK(Mode)->Apply(fewer);
BENCHMARK(Quartile)->Apply(fewer);
BENCHMARK(NthElementMedian)->Apply(fewer);
BENCHMARK(StdSortedMode)->Apply(fewer);
BENCHMARK(StdMedianAndMode)->Apply(fewer);
BENCHMARK(RemoveNullsXYZ)->Apply(sizes);
BENCHMARK(BinVector)->Apply(sizes);
#ifdef VQ_HAVE_GSL
BENCHMARK(GslMean)->Apply(sizes);
BENCHMARK(GslSummary)->Apply(sizes);
BENCHMARK(GslSortedMedian)->Apply(fewer);
BENCHMARK(GslHistogram)->Apply(sizes);
#endif

}  // namespace
