// ztSample: histograms of samples.
#pragma once

#include <cstdint>

#include "frame/array.hpp"

namespace vqmath63 {

/// Counts samples into equal bins. The limits are the instance's own, or the sample's.
class ztSample {
 public:
  /// Sets the limits for all later calls. qOK False, and the old limits stay, unless xLower <
  /// xUpper. NaN: refused like limits in the wrong order.
  /// @param xLower lower edge of the first bin, in the unit of the samples
  /// @param xUpper upper edge of the last bin, above xLower
  /// @param qOK receives whether the limits were taken
  void setLimits(const float& xLower, const float& xUpper, bool& qOK);

  /// Counts elements 1 to the upper bound of xA into nBins equal bins between the limits, by
  /// default the smallest and the largest sample: xBin(1 .. nBins) the centres of the bins,
  /// xCount(1 .. nBins) the counts. A bin holds its lower edge, the last bin both edges; samples
  /// outside the limits, and NaN, are not counted. Without limits, samples that are all equal fall
  /// into the first bin of width 0. Errors, with the arrays unchanged and qOK False: 5 for nBins
  /// below 1, for samples without a number when no limits are set and for limits whose distance is
  /// infinite; 9 for an unallocated array or one without elements from 1. O(n + nBins).
  /// @param xA samples 1 to n, in any unit
  /// @param nBins how many bins, 1 or more
  /// @param xBin receives the centres of the bins, in the unit of the samples
  /// @param xCount receives how many samples each bin holds
  /// @param qOK receives True where all went well
  void BinVector(const Array1<const float>& xA, const std::int32_t& nBins, Array1<float>& xBin,
                 Array1<float>& xCount, bool& qOK);

 private:
  bool limits_set_ = false;
  float lower_ = 0.0F;
  float upper_ = 0.0F;
};

}  // namespace vqmath63
