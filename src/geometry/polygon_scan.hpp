// The quick way of PointInPolygon over columns of coordinates.
#pragma once

#include <cstddef>
#include <optional>

namespace vqmath63 {

/// What PointInPolygon answers for the point (px, py) and the n vertices (x[i], y[i]), n >= 1, bit
/// for bit; nothing when the coordinates are such that one of its steps might fail (non-finite, or
/// extreme beside each other). One pass, no allocation. An edge is looked at closely only where the
/// point is level with it and not clearly to one side.
std::optional<bool> scan_polygon(float px, float py, const float* x, const float* y, std::size_t n);

}  // namespace vqmath63
