// The built-in mathematical companion.
#pragma once

#include "frame/companions.hpp"

namespace vqmath63 {

/// Angles, rounding, table look-up and segment crossing, to the contracts of the interface.
///
/// Beyond those: an infinite angle, and a step that goes invalid or overflows on infinite data, is
/// a fault (5, 6). BracketIndex raises fault 9 for a list of fewer than two elements and takes a
/// NaN to the first interval. InterpolateTable raises fault 9 for columns outside the table and
/// for more abscissae than rows, before anything is written; a NaN abscissa gives NaN, but in a
/// table of one row that row's value; `mode` is not looked at and the rows are taken to ascend.
/// SegmentCrossPoint finds no crossing when a coordinate is NaN; a crossing at an end point is
/// that end point exactly.
class BuiltInCommonMaths final : public ztCommonMaths {
 public:
  double VectorAngle(double X, double Y) override;
  void PolarToRectangular(double Radius, double Theta, double& X, double& Y) override;
  void RectangularToPolar(double X, double Y, double& Radius, double& Theta) override;
  double ArcTan(double x) override;
  std::int32_t CeilToLong(double X) override;
  double CeilToDouble(double X) override;
  std::int32_t FloorToLong(double X) override;
  double FloorToDouble(double X) override;
  void BracketIndex(float& value, Array1<float>& list, std::int32_t& lower, std::int32_t& upper,
                    std::int32_t& spare) override;
  void InterpolateTable(Array1<float>& abscissae, std::int32_t& x_column, std::int32_t& y_column,
                        Array2<float>& table, bool& ok, std::int32_t& mode) override;
  void SegmentCrossPoint(float& x1i, float& y1i, float& x2i, float& y2i, float& x1j, float& y1j,
                         float& x2j, float& y2j, float& xi, float& yi, bool& qInt) override;
};

}  // namespace vqmath63
