#include "host/data/view.hpp"

#include <algorithm>

namespace vqmath63::host {

View View::oblique(const Spot& least, const Spot& most) {
  View view;
  view.changes_ = true;
  view.from_ = least;
  const double plan = std::max(most[0] - least[0], most[1] - least[1]);
  const double height = most[2] - least[2];
  // The slants are parts of the body's own width and height; a flat one has none.
  const bool solid = plan > 0.0 && height > 0.0;
  const double across = solid ? plan / height : 0.0;
  const double upwards = solid ? height / plan : 0.0;
  // Any turn serves that is no likely angle between a grid and its map.
  constexpr double kCos = 0.874;
  constexpr double kSin = 0.486;
  view.rows_ = {{{kCos, -kSin, 0.31 * across},
                 {kSin, kCos, 0.19 * across},
                 {0.57 * upwards, 0.43 * upwards, 1.0}}};
  return view;
}

Spot View::operator()(const Spot& point) const {
  if (!changes_) return point;
  Spot out{};
  for (std::size_t r = 0; r < 3; ++r) {
    for (std::size_t c = 0; c < 3; ++c) out[r] += rows_[r][c] * (point[c] - from_[c]);
  }
  return out;
}

void View::apply(Columns& table) const {
  if (!changes_) return;
  const std::size_t width = std::min<std::size_t>(table.count(), 3);
  for (std::size_t first = 0; first < table.count(); first += width) {
    for (std::size_t row = 0; row < table.rows(); ++row) {
      Spot point{};
      for (std::size_t c = 0; c < width; ++c) point[c] = table[first + c][row];
      const Spot seen = (*this)(point);
      for (std::size_t c = 0; c < width; ++c) table[first + c][row] = seen[c];
    }
  }
}

}  // namespace vqmath63::host
