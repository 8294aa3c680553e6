// The limits of a ztSample and the counting into bins.
#include "statistics/sample.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <utility>

#include "frame/checked.hpp"
#include "frame/trap.hpp"

namespace vqmath63 {
namespace {

constexpr Location kSetLimits{"ztAnalyse - Sample", "setLimits"};
constexpr Location kBinVector{"ztAnalyse - Sample", "BinVector"};

struct Limits {
  float lower;
  float upper;
};

// Smallest and largest number among the samples; fault 5 when there is none.
Limits extremes(std::span<const float> samples) {
  const auto number =
      std::find_if(samples.begin(), samples.end(), [](float x) { return !std::isnan(x); });
  if (number == samples.end()) raise_fault(ErrorNumber::kInvalidCall);
  constexpr std::size_t kLanes = 16;
  std::array<float, kLanes> low, high;
  low.fill(*number);
  high.fill(*number);
  const auto take = [&](std::size_t lane, float x) {  // passes over a NaN
    low[lane] = x < low[lane] ? x : low[lane];
    high[lane] = high[lane] < x ? x : high[lane];
  };
  std::size_t i = 0;
  for (; i + kLanes <= samples.size(); i += kLanes) {
    for (std::size_t lane = 0; lane < kLanes; ++lane) take(lane, samples[i + lane]);
  }
  for (; i < samples.size(); ++i) take(0, samples[i]);
  return {*std::min_element(low.begin(), low.end()), *std::max_element(high.begin(), high.end())};
}

// Counts kept as integers in the memory of the Singles that they become.
std::uint32_t counted(const float* bin) {
  std::uint32_t count;
  std::memcpy(&count, bin, sizeof count);
  return count;
}
void store_count(float* bin, std::uint32_t count) {
  std::memcpy(bin, &count, sizeof count);
}

// Bin k (from 0) of a sample x between the limits is floor((x - lower) nBins / (upper - lower)).
// The differences of Singles and their products are exact in Doubles, for all but samples next to
// nothing beside the limits, and so a sample on an edge meets it. `numbers` are zero before.
void count(std::span<const float> samples, const Limits& limits, std::span<float> numbers) {
  const auto bins = static_cast<std::int32_t>(numbers.size());
  const double lower = limits.lower;
  const double width = static_cast<double>(limits.upper) - lower;
  const double last = bins - 1.0;
  const double scale = width > 0.0 ? width : 1.0;  // all equal: (x - lower) is 0
  float outside = 0.0F;
  const auto bin_of = [&](float x) {
    const double position = std::min((x - lower) * bins / scale, last);
    const bool inside = limits.lower <= x && x <= limits.upper;
    return static_cast<std::int32_t>(inside ? position : -1.0);
  };
  // In blocks, so that the divisions do not wait for the counters.
  constexpr std::size_t kBlock = 256;
  std::int32_t block[kBlock];
  for (std::size_t start = 0; start < samples.size(); start += kBlock) {
    const std::size_t size = std::min(kBlock, samples.size() - start);
    for (std::size_t i = 0; i < size; ++i) block[i] = bin_of(samples[start + i]);
    for (std::size_t i = 0; i < size; ++i) {
      float* const bin = block[i] < 0 ? &outside : &numbers[static_cast<std::size_t>(block[i])];
      store_count(bin, counted(bin) + 1);
    }
  }
  for (float& number : numbers) {
    const std::uint32_t whole = counted(&number);
    if (whole != 0) number = static_cast<float>(whole);
  }
}

}  // namespace

void ztSample::setLimits(const float& xLower, const float& xUpper, bool& qOK) {
  trap(kSetLimits, [&] {
    qOK = xLower < xUpper;
    if (!qOK) return;
    lower_ = xLower;
    upper_ = xUpper;
    limits_set_ = true;
  });
}

void ztSample::BinVector(const Array1<const float>& xA, const std::int32_t& nBins,
                         Array1<float>& xBin, Array1<float>& xCount, bool& qOK) {
  trap(kBinVector, [&] {
    qOK = false;
    const std::int32_t n = xA.upper();
    const std::int32_t bins = nBins;
    if (n < 1 || !xA.covers(1, n)) raise_fault(ErrorNumber::kSubscript);
    if (bins < 1) raise_fault(ErrorNumber::kInvalidCall);
    const std::span<const float> samples(&xA(1), static_cast<std::size_t>(n));
    const Limits limits = limits_set_ ? Limits{lower_, upper_} : extremes(samples);
    const Double lower = limits.lower;
    const Double width = (Double(limits.upper) - lower) / Double(bins);
    if (!std::isfinite(width.value())) raise_fault(ErrorNumber::kInvalidCall);

    expect_memory(2 * sizeof(float) * static_cast<std::uint64_t>(bins));
    Array1<float> centres(1, bins), numbers(1, bins);
    count(samples, limits, {numbers.data(), numbers.size()});
    for (std::int32_t k = 1; k <= bins; ++k) {
      centres(k) = to_single((lower + (Double(k) - 0.5) * width).value());
    }
    xBin = std::move(centres);
    xCount = std::move(numbers);
    qOK = true;
  });
}

}  // namespace vqmath63
