// The slope of a line in double precision, which tells what the component's sums of Singles lost.
#pragma once

#include <span>

namespace vqmath63::host {

struct LineCheck {
  double slope;
  double unit;  ///< what slopes are compared in: a thousandth of the mean counts as spread
};

/// By least squares, as ztRegression fits; a test holds it to the component where Singles are
/// enough.
LineCheck check_line(std::span<const double> x, std::span<const double> y);

}  // namespace vqmath63::host
