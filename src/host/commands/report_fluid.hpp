// The part of a report that shows the volume factors of a fluid table.
#pragma once

#include <string>

#include "host/report/page.hpp"

namespace vqmath63::host {

/// A table as 'vqhost volume-factor' takes it, and points to ask it for; none where they are empty.
struct FluidChoice {
  std::string live;
  std::string dead;
  std::string water;
  std::string columns;
  std::string points;
  std::string point_columns;
  std::string pressure_unit;

  /// The table's path; UsageError where more than one is given, or points without one.
  std::string table() const;
  bool wanted() const { return !table().empty(); }
};

/// Curves of the factor over pressure, by ztPetroleum, with the points asked for on them and in a
/// table.
void add_fluid(Page& page, const FluidChoice& choice);

}  // namespace vqmath63::host
