// The crossing test of points against polygons, one step for every arithmetic it is done in.
#pragma once

namespace vqmath63 {

// An arithmetic has
//   difference(a, b)         a - b in Single, 0 where that is within the tolerance
//   offset_at(dx, ty, dy)    dx ty / dy, worked out in double precision and stored as Single
// and decides what becomes of a step that fails. The steps are taken in one order, so that the
// first to fail is the same everywhere.

/// By how much (px, py) is beside the line of the edge that runs from (x, y) on by (dx, dy),
/// dy != 0, along X: below 0 when the line is to the right.
template <class Arithmetic>
inline float beside(Arithmetic& arithmetic, float px, float py, float x, float y, float dx,
                    float dy) {
  const float ty = arithmetic.difference(py, y);
  const float tx = arithmetic.difference(px, x);
  const float u = arithmetic.offset_at(dx, ty, dy);
  return arithmetic.difference(tx, u);
}

/// Whether exactly one end of an edge from height ya to yb is at or above py.
inline bool level_with(float py, float ya, float yb) {
  return (py <= ya) != (py <= yb);
}

/// Whether the ray from (px, py) towards +X crosses the edge from (xa, ya) to (xb, yb).
template <class Arithmetic>
inline bool crosses(Arithmetic arithmetic, float px, float py, float xa, float ya, float xb,
                    float yb) {
  const float dy = arithmetic.difference(yb, ya);
  if (dy == 0.0F) return false;
  const float dx = arithmetic.difference(xb, xa);
  const bool to_the_right = beside(arithmetic, px, py, xa, ya, dx, dy) < 0.0F;
  return to_the_right && level_with(py, ya, yb);
}

}  // namespace vqmath63
