#include "petroleum/petroleum.hpp"

#include <cmath>
#include <limits>
#include <type_traits>
#include <typeinfo>

#include "frame/common_maths.hpp"
#include "frame/companions.hpp"
#include "frame/speculate.hpp"
#include "frame/trap.hpp"

namespace vqmath63 {
namespace {

constexpr Location kLive{"ztPetroleum", "GetVolumeCorrectionLive"};
constexpr Location kDead{"ztPetroleum", "GetVolumeCorrectionDead"};
constexpr Location kWater{"ztPetroleum", "GetWaterVolumeCorrection"};

// A data point a hair above saturation counts as saturated.
constexpr double kHairAbove = 1.000001;

// Index arithmetic on 32 bits, which can overflow for indices out of a host's table.
constexpr std::int64_t kLeastIndex = std::numeric_limits<std::int32_t>::min();
std::int32_t next(std::int32_t i) {
  if (i == std::numeric_limits<std::int32_t>::max()) raise_fault(ErrorNumber::kOverflow);
  return i + 1;
}

// Asks the thread's mathematical companion. The built-in one runs no code of a host's, which alone
// could release it meanwhile: it is asked without a further reference to it, which would cost as
// much as the search.
void bracket(float& value, Array1<float>& list, std::int32_t& lower, std::int32_t& upper) {
  std::int32_t spare = 0;
  ztCommonMaths* const shared = common_globals().CommonMaths.get();
  if (shared != nullptr && typeid(*shared) == typeid(BuiltInCommonMaths)) [[likely]] {
    static_cast<BuiltInCommonMaths*>(shared)->BracketIndex(value, list, lower, upper, spare);
  } else {
    common_maths()->BracketIndex(value, list, lower, upper, spare);
  }
}

// The arguments of a live-oil factor, and the two curves that bracket the data point.
struct LiveOil {
  const Array1<const float>& primary;
  const Array1<const std::int32_t>& map;
  const Array1<const float>& secondary;
  const Array1<const float>& value;
  std::int32_t curves;
  std::int32_t entries;
  float data_primary;
  float data_secondary;
  std::int32_t lower;
  std::int32_t upper;
};

struct Result {
  float factor;
  bool fits;  // false when a value that had to fit a Single did not
  bool all_finite() const { return fits; }
};

// The formula over one kind of numbers. Between finite data no step can leave the range of Double;
// what can fail are the values that have to fit a Single, and steps on a NaN or an infinity, which
// always end in one of them.
template <class Mode>
class LiveFactor {
  using Single = typename Mode::Single;
  using Double = typename Mode::Double;
  template <class T>
  using Reader = typename Mode::template BoundedReader<T>;

 public:
  explicit LiveFactor(const LiveOil& oil)
      : oil_(oil), primary_(oil.primary), secondary_(oil.secondary), value_(oil.value) {}

  Result value() {
    const float factor = work_out();
    return {factor, fits_};
  }

 private:
  float work_out() {
    const std::int32_t i = oil_.lower;
    const std::int32_t u = oil_.upper;
    const std::int32_t lower_start = oil_.map(i);
    const std::int32_t upper_start = oil_.map(u);
    // For the last curve this leaves out the last entry.
    const std::int32_t end = u != oil_.curves ? oil_.map(next(u)) : oil_.entries;

    const Double step = primary_(u) - primary_(i);
    const Double distance = Single(oil_.data_primary) - primary_(i);
    const bool apart = step != 0.0;
    const Double t = apart ? distance / step : Double(0.0);
    const Double w = Double(1.0) - t;
    const Double lower_saturation = secondary_(lower_start);
    const Double slope = apart ? (secondary_(upper_start) - lower_saturation) / step : Double(0.0);
    const Double saturation = distance * slope + lower_saturation;

    const Single data = oil_.data_secondary;
    if (stored(saturation * kHairAbove) >= data) {
      const Double upper_part = t * value_(upper_start);
      return stored(upper_part + w * value_(lower_start)).value();
    }
    const Double s1 = lower_saturation + data - saturation;
    const Double s2 = secondary_(upper_start) + data - saturation;
    // The only curve of a table has no next one to end before.
    const std::int32_t lower_end = oil_.curves == 1 ? end : upper_start;
    const Double lower_value = on_curve(lower_start, previous(lower_end), s1, s1);
    // The upper curve's segment is found with the lower curve's abscissa; factors rest on that.
    const Double upper_value = on_curve(upper_start, previous(end), s2, s1);
    return stored(t * upper_value + w * lower_value).value();
  }

  // The entry before i. A step before may have failed: the plain run leaves the failure to the
  // other.
  std::int64_t previous(std::int64_t i) {
    if (i == kLeastIndex) {
      if constexpr (std::is_same_v<Mode, CheckedMode>) raise_fault(ErrorNumber::kOverflow);
      fits_ = false;
    }
    return i - 1;
  }

  Single stored(Double number) {
    const Single single = number;
    fits_ = fits_ && std::isfinite(single.value());
    return single;
  }

  // The factor at abscissa s of the curve of entries first to last. Its segment is the first one
  // that begins at or below s and does not end below `far`; the chord of the whole curve serves
  // where s is outside of it, or there is none.
  Double on_curve(std::int64_t first, std::int64_t last, Double s, Double far) {
    std::int64_t a = first;
    std::int64_t b = last;
    if (s >= secondary_(first) && s <= secondary_(last)) {
      // Both ends are there, so is all between.
      const typename Mode::template Reader<float> point(oil_.secondary);
      for (std::int64_t j = first; j < last; ++j) {
        if (far <= point(j + 1) && point(j) <= s) {
          a = j;
          b = j + 1;
          break;
        }
      }
    }
    const Double run = secondary_(a) - secondary_(b);
    const Double slope = stored(run).value() != 0.0F ? (value_(a) - value_(b)) / run : Double(0.0);
    const Double along = slope * (s - secondary_(a));
    return along + value_(a);
  }

  const LiveOil& oil_;
  Reader<float> primary_, secondary_, value_;
  bool fits_ = true;
};

}  // namespace

void ztPetroleum::GetVolumeCorrectionLive(
    Array1<float>& dPrimary, const Array1<const std::int32_t>& iMapPrimary,
    const std::int32_t& nPrimary, const Array1<const float>& dSecondary,
    const Array1<const float>& dValue, const std::int32_t& nVal, float& dDataPrimary,
    const float& dDataSecondary, const float& /*dNull*/, float& dB, bool& qOK) {
  trap(kLive, [&] {
    qOK = false;
    std::int32_t i = 1;
    std::int32_t u = 1;
    if (nPrimary != 1) bracket(dDataPrimary, dPrimary, i, u);
    const Array1<const float> primary = dPrimary;
    const LiveOil oil{primary, iMapPrimary,  dSecondary,     dValue, nPrimary,
                      nVal,    dDataPrimary, dDataSecondary, i,      u};
    dB = speculate(true, [&](auto mode) { return LiveFactor<decltype(mode)>(oil); }).factor;
    qOK = true;
  });
}

void ztPetroleum::GetVolumeCorrectionDead(const Array1<const float>& dTable1,
                                          const Array1<const float>& dTable2,
                                          const std::int32_t& nTable, const float& dData1,
                                          float& dB, bool& qOK) {
  trap(kDead, [&] {
    qOK = false;
    // Before a table of any size is made of it.
    if (!dTable1.covers(1, nTable) || !dTable2.covers(1, nTable)) {
      raise_fault(ErrorNumber::kSubscript);
    }
    Array2<float> work({1, nTable}, {1, 2});
    for (std::int32_t row = 1; row <= nTable; ++row) {
      work(row, 1) = dTable1(row);
      work(row, 2) = dTable2(row);
    }
    Array1<float> abscissae(1, 1);
    abscissae(1) = dData1;
    std::int32_t x_column = 1;
    std::int32_t y_column = 2;
    bool ok = false;  // what the companion says of its success does not count
    std::int32_t mode = 0;
    common_maths()->InterpolateTable(abscissae, x_column, y_column, work, ok, mode);
    dB = work(1, 2);
    qOK = true;
  });
}

void ztPetroleum::GetWaterVolumeCorrection(const Array1<const float>& dTable1,
                                           const Array1<const float>& dTable2,
                                           const Array1<const float>& dTable3,
                                           const std::int32_t& /*nTable*/, const float& dData1,
                                           float& dB, bool& qOK) {
  trap(kWater, [&] {
    qOK = false;
    const Single above = Single(dData1) - Single(dTable1(1));
    const Single x = above * Single(dTable3(1));
    const Single reciprocal = Double(1.0) / Single(dTable2(1));
    const Single square = x * x;
    const Single half = square / Double(2.0);
    const Single first_order = x + Double(1.0);
    const Single expansion = half + first_order;
    const Single ratio = reciprocal / expansion;
    dB = Single(Double(1.0) / ratio).value();
    qOK = true;
  });
}

}  // namespace vqmath63
