// A line through samples, as the component fits it.
#pragma once

#include <optional>

#include "host/data/values.hpp"

namespace vqmath63::host {

struct Line {
  float a;
  float b;
  float r;
};

/// Fits with weights of 1; `type` is what the property RegressionType is set to. `x` and `y` are
/// arrays of Singles, as long as one another. Nothing where a sum leaves the range of a Single.
std::optional<Line> fit_line(ArrayOwner x, ArrayOwner y, const char* type);

}  // namespace vqmath63::host
