// A grid cell, read from a CSV file and checked.
#pragma once

#include <array>
#include <string>
#include <utility>
#include <vector>

#include "host/client/dispatch_client.hpp"
#include "host/data/columns.hpp"
#include "host/data/view.hpp"

namespace vqmath63::host {

/// A text "X,Y,Z" of numbers that are Singles; UsageError, which `option` begins, when it is none.
Spot spot_from_text(const char* option, const std::string& text);

/// Tells the user when `extent`, what a cell or polygon measures in one direction, is little beside
/// the tolerance of coordinates as large as `largest`. True when it did.
bool tell_of_blur(double extent, double largest);

/// Coordinates that agree to this part of their size are equal to the component.
inline constexpr double kCoordinateTolerance = 1e-6;

/// A triangle by its corners, 0 to 3 of the top and 4 to 7 of the bottom.
using Triangle = std::array<std::size_t, 3>;

/// The component's triangles of a cell's surface, in its order: of the top, the bottom and the
/// sides, each face split from its first corner to its third. The component does not tell them; a
/// test holds them to where it finds segments to cross.
std::vector<Triangle> cell_triangles();

class Cell {
 public:
  /// Reads eight rows, the corners of the top and then of the bottom, each in order around the
  /// face; corner k of the top belongs above corner k of the bottom. Where a column "face" says top
  /// or bottom (or the first one, whatever its name), the faces may stand in any order. Coordinates
  /// are the columns x, y, z, else the first three beside "face" and "corner", or those that
  /// `columns` names. With `oblique` they are seen so. WorkError with file, line and reason where a
  /// coordinate is missing, no number or too large for a Single, where there are not eight corners,
  /// and where corners do not go around their face.
  Cell(const std::string& path, const std::string& columns, bool oblique);

  /// How points and segments must be seen, as the corners are.
  const View& view() const { return view_; }

  /// The corner arrays, lent to a call.
  Argument top() { return {Value::array_reference(VT_R4, top_.place())}; }
  Argument bottom() { return {Value::array_reference(VT_R4, bottom_.place())}; }

  /// Whether the straight way up from a point meets an edge of two triangles of the surface, as the
  /// diagonal of a face is, so nearly that it counts twice.
  bool in_doubt(const Spot& point) const;

 private:
  void refuse_bow_ties(const Columns& table, const std::vector<std::size_t>& rows) const;
  void measure();
  void find_edges();
  // The largest of coordinate c, whatever its sign.
  double largest(std::size_t c) const;
  bool tell_of_blur() const;
  // Whether any triangle, seen along an axis, is little more than a line.
  bool edge_on() const;

  View view_;
  std::array<Spot, 8> corners_{};  // as Singles; top, then bottom
  ArrayOwner top_;
  ArrayOwner bottom_;
  Spot least_{};
  Spot most_{};
  double band_ = 0.0;  // half the width of what counts as on an edge
  std::vector<std::pair<std::size_t, std::size_t>> edges_;
};

}  // namespace vqmath63::host
