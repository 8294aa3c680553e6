// A live-oil factor on tables of so many curves of as many points, and that nothing is allocated;
// beside it the same steps, plainly, and the live-oil table of the Open Porous Media project.
#include <benchmark/benchmark.h>

#include <bit>
#include <cstdlib>
#include <new>

#ifdef VQ_WITH_OPM
#include <opm/material/fluidsystems/blackoilpvt/LiveOilPvt.hpp>
#endif

#include "petroleum/petroleum.hpp"
#include "plain_live_oil.hpp"
#include "same_result.hpp"

namespace {
std::int64_t allocations = 0;
}  // namespace

// Out of line, so that no compiler takes the pair apart.
[[gnu::noinline]] void* operator new(std::size_t size) {
  ++allocations;
  if (void* memory = std::malloc(size)) return memory;
  throw std::bad_alloc();
}
[[gnu::noinline]] void operator delete(void* memory) noexcept {
  std::free(memory);
}
[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}

namespace {

using vqmath63::Array1;

// The same surface in each, over gas contents of 20 to 200 and 225 above the saturation pressure.
struct LiveOil {
  std::int32_t n;
  Array1<float> primary{1, n};
  Array1<std::int32_t> map{1, n};
  Array1<float> pressure{1, n* n};
  Array1<float> factor{1, n* n};

  explicit LiveOil(std::int64_t curves) : n(static_cast<std::int32_t>(curves)) {
    for (std::int32_t p = 1; p <= n; ++p) {
      primary(p) = 20.0F + 180.0F * static_cast<float>(p - 1) / static_cast<float>(n - 1);
      map(p) = (p - 1) * n + 1;
      for (std::int32_t k = 0; k < n; ++k) {
        const float above = 225.0F * static_cast<float>(k) / static_cast<float>(n - 1);
        pressure(map(p) + k) = 2.5F * primary(p) + above;
        factor(map(p) + k) = 1.0F + 0.002F * primary(p) - 0.00016F * above;
      }
    }
  }
};

// Data points `above` to 210 times `above` over their saturation pressure: all over the table in no
// order, or along a path on which the pressure falls by small steps, as in the life of a field.
class DataPoints {
 public:
  static constexpr std::uint32_t kCount = 0x10000;  // after which they come again

  explicit DataPoints(float above, bool path = false) : above_(above), path_(path) {}
  float primary() const {
    return 20.0F + 180.0F * static_cast<float>(state_) / static_cast<float>(kCount);
  }
  float pressure() const {
    const std::uint32_t step = path_ ? 210U - state_ / 313U : state_ % 211U;
    return 2.5F * primary() + above_ * static_cast<float>(step);
  }
  void next() { state_ = (path_ ? state_ + 1U : state_ * 1103515245U + 12345U) % kCount; }

 private:
  float above_;
  bool path_;
  std::uint32_t state_ = 0;
};

// Ours, asked about one data point after the other.
class Ours {
 public:
  explicit Ours(std::int64_t curves) : oil_(curves), entries_(oil_.n * oil_.n) {}
  float factor(float primary, float pressure) {
    float factor = 0.0F;
    petroleum_.GetVolumeCorrectionLive(oil_.primary, oil_.map, oil_.n, oil_.pressure, oil_.factor,
                                       entries_, primary, pressure, null_, factor, ok_);
    return factor;
  }
  bool ok() const { return ok_; }

 private:
  LiveOil oil_;
  std::int32_t entries_;
  float null_ = 0.0F;
  bool ok_ = false;
  vqmath63::ztPetroleum petroleum_;
};

void live_factor(benchmark::State& state, DataPoints data) {
  Ours ours(state.range(0));
  ours.factor(data.primary(), data.pressure());  // the thread's mathematical companion is made now
  const std::int64_t before = allocations;
  for (auto _ : state) {
    data.next();
    benchmark::DoNotOptimize(ours.factor(data.primary(), data.pressure()));
  }
  state.counters["allocations"] = static_cast<double>(allocations - before);
  if (!ours.ok()) state.SkipWithError("no factor");
}

bench::PlainLiveOil plain_table(std::int64_t curves) {
  const LiveOil oil(curves);
  const auto copy = [](const auto& a) { return std::vector(a.data(), a.data() + a.size()); };
  bench::PlainLiveOil plain{copy(oil.primary), {}, copy(oil.pressure), copy(oil.factor)};
  for (const std::int32_t start : oil.map.elements()) {
    plain.map.push_back(static_cast<std::size_t>(start) - 1);
  }
  return plain;
}

void plain_factor(benchmark::State& state, DataPoints data) {
  const bench::PlainLiveOil plain = plain_table(state.range(0));
  for (auto _ : state) {
    data.next();
    benchmark::DoNotOptimize(plain.factor(data.primary(), data.pressure()));
  }
}

const DataPoints kUndersaturated(1.0F), kUndersaturatedPath(1.0F, true), kSaturated(-0.1F);
constexpr std::int64_t kSizes[] = {5, 10, 20, 40};

// Bit for bit, at every data point of every table.
void hold_plain_to_ours() {
  for (const std::int64_t curves : kSizes) {
    Ours ours(curves);
    const bench::PlainLiveOil plain = plain_table(curves);
    for (DataPoints data : {kUndersaturated, kUndersaturatedPath, kSaturated}) {
      for (std::uint32_t k = 0; k < DataPoints::kCount; ++k, data.next()) {
        const float expected = ours.factor(data.primary(), data.pressure());
        const float got = plain.factor(data.primary(), data.pressure());
        bench::must_agree(
            std::bit_cast<std::uint32_t>(got) == std::bit_cast<std::uint32_t>(expected),
            "live-oil factor");
      }
    }
  }
}

void LiveUndersaturated(benchmark::State& state) {
  live_factor(state, kUndersaturated);
}
void LiveUndersaturatedPath(benchmark::State& state) {
  live_factor(state, kUndersaturatedPath);
}
void LiveSaturated(benchmark::State& state) {
  live_factor(state, kSaturated);
}

void PlainUndersaturated(benchmark::State& state) {
  plain_factor(state, kUndersaturated);
}
void PlainUndersaturatedPath(benchmark::State& state) {
  plain_factor(state, kUndersaturatedPath);
}
void PlainSaturated(benchmark::State& state) {
  plain_factor(state, kSaturated);
}

void curves(benchmark::internal::Benchmark* bench) {
  for (const std::int64_t n : kSizes) bench->Arg(n);
}

#ifdef VQ_WITH_OPM
// The same table; its undersaturated points only, and without a look at the saturation pressure.
void opm_factor(benchmark::State& state, DataPoints data) {
  using Pvt = Opm::LiveOilPvt<float>;
  const LiveOil oil(state.range(0));
  Pvt::TabulatedTwoDFunction inverse(Pvt::TabulatedTwoDFunction::InterpolationPolicy::LeftExtreme);
  for (std::int32_t p = 1; p <= oil.n; ++p) {
    const std::size_t row = inverse.appendXPos(oil.primary(p));
    for (std::int32_t k = oil.map(p); k < oil.map(p) + oil.n; ++k) {
      inverse.appendSamplePoint(row, oil.pressure(k), 1.0F / oil.factor(k));
    }
  }
  Pvt pvt;
  pvt.setNumRegions(1);
  pvt.setInverseOilFormationVolumeFactor(0, inverse);
  for (auto _ : state) {
    data.next();
    const float reciprocal =
        pvt.inverseFormationVolumeFactor<float>(0, 0.0F, data.pressure(), data.primary());
    benchmark::DoNotOptimize(1.0F / reciprocal);
  }
}
void OpmUndersaturated(benchmark::State& state) {
  opm_factor(state, kUndersaturated);
}
void OpmUndersaturatedPath(benchmark::State& state) {
  opm_factor(state, kUndersaturatedPath);
}
BENCHMARK(OpmUndersaturated)->Apply(curves);
BENCHMARK(OpmUndersaturatedPath)->Apply(curves);
#endif

BENCHMARK(LiveUndersaturated)->Apply(curves);
BENCHMARK(LiveUndersaturatedPath)->Apply(curves);
BENCHMARK(LiveSaturated)->Apply(curves);
BENCHMARK(PlainUndersaturated)->Apply(curves);
BENCHMARK(PlainUndersaturatedPath)->Apply(curves);
BENCHMARK(PlainSaturated)->Apply(curves);

}  // namespace

int main(int argc, char** argv) {
  hold_plain_to_ours();
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
}
