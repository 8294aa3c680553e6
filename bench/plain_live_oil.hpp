// The live-oil factor as one writes it for a program of one's own: its steps over vectors, with the
// library's checks, and nothing kept between calls.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <vector>

namespace bench {

/// Curve p stands in entries map[p] to map[p + 1] - 1; what lies beyond the tables throws, as does
/// a number that does not fit a Single.
class PlainLiveOil {
 public:
  std::vector<float> primary;
  std::vector<std::size_t> map;
  std::vector<float> secondary, value;

  float factor(float data_primary, float data_secondary) const {
    // The curves that bracket the data point: of one curve, that curve and itself.
    const bool single = primary.size() == 1;
    const std::size_t lower = single ? 0 : bracket(data_primary);
    const std::size_t upper = single ? 0 : lower + 1;
    const std::size_t lower_start = map.at(lower), upper_start = map.at(upper);
    // The last entry of the table is no point of the last curve.
    const std::size_t end = upper + 1 < map.size() ? map[upper + 1] : value.size() - 1;

    const double lower_saturation = wide(secondary.at(lower_start));
    const double upper_saturation = wide(secondary.at(upper_start));
    const double step = wide(primary[upper]) - wide(primary[lower]);
    const double distance = wide(data_primary) - wide(primary[lower]);
    const double t = step != 0.0 ? distance / step : 0.0;
    const double slope = step != 0.0 ? (upper_saturation - lower_saturation) / step : 0.0;
    const double saturation = distance * slope + lower_saturation;
    if (stored(saturation * 1.000001) >= data_secondary) {
      return stored(t * wide(value.at(upper_start)) + (1.0 - t) * wide(value.at(lower_start)));
    }
    const double s1 = lower_saturation + wide(data_secondary) - saturation;
    const double s2 = upper_saturation + wide(data_secondary) - saturation;
    const double of_lower = on_curve(lower_start, (single ? end : upper_start) - 1, s1, s1);
    const double of_upper = on_curve(upper_start, end - 1, s2, s1);
    return stored(t * of_upper + (1.0 - t) * of_lower);
  }

 private:
  static double wide(float number) { return static_cast<double>(number); }

  static float stored(double number) {
    const auto single = static_cast<float>(number);
    if (!std::isfinite(single)) throw std::overflow_error("does not fit a Single");
    return single;
  }

  // The interval that holds the value, or the one at the end that is nearest to it.
  std::size_t bracket(float at) const {
    const auto above = std::upper_bound(primary.begin() + 1, primary.end() - 1, at);
    return static_cast<std::size_t>(above - primary.begin()) - 1;
  }

  // The factor at s of the polyline of entries first to last: of the segment that begins at or
  // below s and does not end below `far`, else of the chord.
  double on_curve(std::size_t first, std::size_t last, double s, double far) const {
    std::size_t a = first, b = last;
    if (s >= wide(secondary.at(first)) && s <= wide(secondary.at(last))) {
      // One after the other: quicker on curves of so few points than std::lower_bound.
      for (std::size_t j = first; j < last; ++j) {
        if (far <= wide(secondary[j + 1]) && wide(secondary[j]) <= s) {
          a = j;
          b = j + 1;
          break;
        }
      }
    }
    const double run = wide(secondary.at(a)) - wide(secondary.at(b));
    const double slope = stored(run) != 0.0F ? (wide(value.at(a)) - wide(value.at(b))) / run : 0.0;
    return slope * (s - wide(secondary[a])) + wide(value[a]);
  }
};

}  // namespace bench
