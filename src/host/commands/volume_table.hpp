// Tables of volume factors: read from CSV files, checked, and asked through the class ztPetroleum.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/commands/volume_place.hpp"
#include "host/data/output.hpp"

namespace vqmath63::host {

/// Pressures of a table's rows that are read, in ascending order; of live oil those of the curve of
/// a primary value, from its saturation point on.
struct PressureRows {
  float primary = 0.0F;
  std::vector<float> pressures;
};

class VolumeTable {
 public:
  virtual ~VolumeTable() = default;

  /// The factors of all points; none where the component does not succeed, which its error lines
  /// tell of.
  virtual std::vector<std::optional<float>> factors(const std::vector<Point>& points) = 0;
  std::optional<float> factor(const Point& point) { return factors({point}).front(); }
  /// What a factor comes from.
  virtual Facts story(const Point& point) const = 0;
  /// Whether the table has to be extended to reach the point.
  virtual bool outside(const Point& point) const = 0;
  /// Where a point lies, in a word or two, for a column `state`; none where there is but one state.
  virtual std::optional<std::string> state(const Point& point) const {
    return outside(point) ? "extended" : "within";
  }
  /// One of them, of live oil one for each curve.
  virtual std::vector<PressureRows> rows() const = 0;
};

/// Each reads a table whose columns, named here, are chosen as columns_or() says. WorkError with
/// file, line and reason where a value is missing, no number or too large for a Single, where a
/// factor is not above 0, for more than 100 000 rows, and where what is told below does not hold.

/// primary, pressure, factor: a row an entry, the rows of a curve together, curves in ascending
/// order of the primary value. Pressures ascend in a curve. The last curve has two rows at least.
std::unique_ptr<VolumeTable> read_live_oil(const std::string& path, const std::string& columns);

/// pressure, factor: two rows or more, pressures ascending.
std::unique_ptr<VolumeTable> read_dead_oil(const std::string& path, const std::string& columns);

/// pressure, factor, compressibility: one row, the reference.
std::unique_ptr<VolumeTable> read_water(const std::string& path, const std::string& columns);

}  // namespace vqmath63::host
