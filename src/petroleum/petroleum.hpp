// ztPetroleum: volume factors of oil and water from tables.
#pragma once

#include <cstdint>

#include "frame/array.hpp"

namespace vqmath63 {

/// Formation volume factors. Tables are addressed from index 1; each abscissa shares its unit with
/// the data point, and the factor dB comes in the unit of the tabulated factors (the water
/// compressibility is per unit of its table's abscissa). Keeps nothing between calls. NaN: flows to
/// dB where the search meets it, and qOK is true.
///
/// @failure One error line; dB stays as it was, and qOK is False.
/// @param dB receives the factor, in the unit of the tabulated ones
/// @param qOK receives True when dB was set
class ztPetroleum {
 public:
  /// Live oil. Curve p, of primary value dPrimary(p) (dissolved gas, say; ascending), stands in
  /// entries iMapPrimary(p) to iMapPrimary(p + 1) - 1 of dSecondary (pressure, say; ascending) and
  /// dValue (factor); its first entry is its saturation point. nVal is the number of entries.
  ///
  /// The saturation value at the data point lies on the line through the saturation points of the
  /// two curves that bracket dDataPrimary. Up to 1.000001 times that value the factor is read off
  /// the line through the two saturated factors. Above it, each curve is read at the data point's
  /// distance above saturation, and the two factors are weighted alike. A curve is a polyline from
  /// its first to its last entry; outside, the chord from first to last carries on. Primary values
  /// outside the table extend its end interval; where two bracketing primaries are equal, the lower
  /// curve alone counts, and a table of one curve is read from that curve.
  ///
  /// Limits kept on purpose: the entry nVal is never read as a point of the last
  /// curve, and the upper curve's search for a segment compares the segment's far end with the
  /// lower curve's abscissa (the chord serves where that finds none). dNull has no effect.
  ///
  /// Double precision throughout; dB, 1.000001 times the saturation value and the differences of
  /// neighbouring abscissae must fit a Single (6). Index outside an array: 9. O(log nPrimary +
  /// length of the two curves), no allocation.
  /// @param dPrimary primary values of the curves, ascending, elements 1 to nPrimary
  /// @param iMapPrimary where each curve begins in dSecondary and dValue, from 1
  /// @param nPrimary how many curves, 1 or more
  /// @param dSecondary abscissae of the curves, one after the other, each ascending
  /// @param dValue factors at the same entries, above 0
  /// @param nVal how many entries
  /// @param dDataPrimary the data point, in the unit of dPrimary
  /// @param dDataSecondary the data point, in the unit of dSecondary
  /// @param dNull without effect
  void GetVolumeCorrectionLive(Array1<float>& dPrimary,
                               const Array1<const std::int32_t>& iMapPrimary,
                               const std::int32_t& nPrimary, const Array1<const float>& dSecondary,
                               const Array1<const float>& dValue, const std::int32_t& nVal,
                               float& dDataPrimary, const float& dDataSecondary, const float& dNull,
                               float& dB, bool& qOK);

  /// Dead oil: the factor dTable2 over dTable1 (pressure, say; ascending), entries 1 to nTable,
  /// interpolated at dData1 by the thread's mathematical companion; qOK is true whether or not the
  /// companion says that it could. nTable below 1, or a table shorter than it: 9. O(nTable).
  /// @param dTable1 abscissae, ascending, elements 1 to nTable
  /// @param dTable2 factors at the same entries
  /// @param nTable how many entries, 1 or more
  /// @param dData1 the data point, in the unit of dTable1
  void GetVolumeCorrectionDead(const Array1<const float>& dTable1,
                               const Array1<const float>& dTable2, const std::int32_t& nTable,
                               const float& dData1, float& dB, bool& qOK);

  /// Water, where P = dTable1(1) is the reference pressure, Bw = dTable2(1) the factor there and C
  /// = dTable3(1) the compressibility; formed through two reciprocals, every step stored as Single.
  /// No other element is read and nTable has no effect. A factor of 0: 11.
  /// $$ B = B_w \left(1 + X + \frac{X^2}{2}\right), \quad X = C \, (p - P) $$
  /// @param dTable1 element 1: the reference pressure
  /// @param dTable2 element 1: the factor there
  /// @param dTable3 element 1: the compressibility, per unit of dTable1
  /// @param nTable without effect
  /// @param dData1 the pressure p, in the unit of dTable1
  void GetWaterVolumeCorrection(const Array1<const float>& dTable1,
                                const Array1<const float>& dTable2,
                                const Array1<const float>& dTable3, const std::int32_t& nTable,
                                const float& dData1, float& dB, bool& qOK);
};

}  // namespace vqmath63
