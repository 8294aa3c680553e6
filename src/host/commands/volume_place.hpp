// Where a point lies in a table of volume factors. ztPetroleum finds it for itself and does not
// tell it; these are its rules once more, held to its answers by a test.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace vqmath63::host {

/// Where a factor is wanted. The primary value counts for live oil only.
struct Point {
  float primary = 0.0F;
  float pressure = 0.0F;
};

/// The curves of a live-oil table, laid end to end.
struct LiveCurves {
  std::span<const float> primary;        ///< of each curve, ascending
  std::span<const std::int32_t> starts;  ///< the entry, from 1, with which each curve begins
  std::span<const float> pressure;       ///< of each entry, ascending in a curve

  /// The entries from 0 that are read of a curve from 0; the last one of the table never is.
  std::size_t first(std::size_t curve) const;
  std::size_t last(std::size_t curve) const;
};

/// Where a point lies in a live-oil table, by the rules of GetVolumeCorrectionLive.
struct LivePlace {
  std::size_t lower =
      0;  ///< the curves on both sides, from 0; the same one where there is no other
  std::size_t upper = 0;
  double share = 0.0;       ///< that the upper one has in the factor
  double saturation = 0.0;  ///< saturation pressure
  double above = 0.0;       ///< pressure above it
  bool saturated = false;
  bool beyond_lower = false;  ///< above the last pressure of a curve that has a share in the factor
  bool beyond_upper = false;
};
LivePlace live_place(const LiveCurves& curves, const Point& point);

/// The first, from 0, of the two rows from which GetVolumeCorrectionDead takes a factor.
std::size_t dead_row(std::span<const float> pressures, float pressure);

}  // namespace vqmath63::host
