// How coordinates are handed to the component: as they are, or as an oblique view of them.
#pragma once

#include <array>

#include "host/data/columns.hpp"

namespace vqmath63::host {

/// X, Y and Z.
using Spot = std::array<double, 3>;

/// An affine change of coordinates: what is inside, and where along a segment it crosses, stays the
/// same. A new one changes nothing.
class View {
 public:
  View() = default;

  /// For a body within `least` and `most`: turned and slanted, so that faces parallel to an axis
  /// are no longer, and moved to coordinates no larger than the body.
  static View oblique(const Spot& least, const Spot& most);

  bool changes() const { return changes_; }
  Spot operator()(const Spot& point) const;
  /// The same for a table, whose columns are X, Y, Z, once or twice, or X and Y.
  void apply(Columns& table) const;

 private:
  bool changes_ = false;
  Spot from_{};                 // taken off first
  std::array<Spot, 3> rows_{};  // of the matrix
};

}  // namespace vqmath63::host
