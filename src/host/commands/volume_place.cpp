#include "host/commands/volume_place.hpp"

#include <algorithm>

namespace vqmath63::host {

std::size_t LiveCurves::first(std::size_t curve) const {
  return static_cast<std::size_t>(starts[curve]) - 1;
}

std::size_t LiveCurves::last(std::size_t curve) const {
  return curve + 1 == starts.size() ? pressure.size() - 2 : first(curve + 1) - 1;
}

LivePlace live_place(const LiveCurves& curves, const Point& point) {
  const std::span<const float> primary = curves.primary;
  LivePlace at;
  if (primary.size() > 1) {
    const auto above = std::upper_bound(primary.begin(), primary.end(), point.primary);
    const auto index = std::max<std::ptrdiff_t>(above - primary.begin() - 1, 0);
    at.lower = std::min(static_cast<std::size_t>(index), primary.size() - 2);
    at.upper = at.lower + 1;
    const double low = primary[at.lower];
    at.share = (point.primary - low) / (primary[at.upper] - low);
  }
  const double low = curves.pressure[curves.first(at.lower)];
  at.saturation = low + at.share * (curves.pressure[curves.first(at.upper)] - low);
  at.above = point.pressure - at.saturation;
  // A hair above saturation counts as saturated.
  at.saturated = static_cast<float>(at.saturation * 1.000001) >= point.pressure;
  const auto beyond = [&](std::size_t curve, double share) {
    return !at.saturated && share != 0.0 &&
           curves.pressure[curves.first(curve)] + at.above > curves.pressure[curves.last(curve)];
  };
  at.beyond_lower = beyond(at.lower, 1.0 - at.share);
  at.beyond_upper = beyond(at.upper, at.share);
  return at;
}

std::size_t dead_row(std::span<const float> pressures, float pressure) {
  const auto above = std::upper_bound(pressures.begin() + 1, pressures.end() - 1, pressure);
  return static_cast<std::size_t>(above - pressures.begin()) - 1;
}

}  // namespace vqmath63::host
