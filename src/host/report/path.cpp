#include "host/report/path.hpp"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <vector>

namespace vqmath63::host {
namespace {

// What lies far outside the square is not seen; it must not make long numbers either.
constexpr double kFar = 20.0 * kSide;

struct Spot {
  double x;
  double y;
  bool drawn() const { return std::isfinite(x) && std::isfinite(y); }
};
using Line = std::vector<Spot>;

Spot spot_of(double x, double y, const Scale& x_scale, const Scale& y_scale) {
  return {std::clamp(x_scale.place(x) * kSide, -kFar, kFar),
          std::clamp((1.0 - y_scale.place(y)) * kSide, -kFar, kFar)};
}

// Adds the corners of steps, from the left or from the right.
Line step_line(const std::vector<double>& x, const std::vector<double>& y, const Scale& x_scale,
               const Scale& y_scale) {
  Line line;
  line.reserve(2 * y.size());
  for (std::size_t i = 0; i < y.size(); ++i) {
    line.push_back(spot_of(x[i], y[i], x_scale, y_scale));
    line.push_back({std::clamp(x_scale.place(x[i + 1]) * kSide, -kFar, kFar), line.back().y});
  }
  return line;
}

// Keeps of each column the first, the least, the largest and the last spot, and every break.
Line thinned(Line line, int columns) {
  constexpr std::size_t kOfColumn = 4;
  if (line.size() <= kOfColumn * static_cast<std::size_t>(columns)) return line;
  const auto column_of = [&](const Spot& spot) { return std::floor(spot.x * columns / kSide); };
  Line kept;
  for (std::size_t from = 0; from < line.size();) {
    if (!line[from].drawn()) {
      if (!kept.empty() && kept.back().drawn()) kept.push_back(line[from]);
      ++from;
      continue;
    }
    const double column = column_of(line[from]);
    std::size_t least = from;
    std::size_t most = from;
    std::size_t to = from;
    for (; to < line.size() && line[to].drawn() && column_of(line[to]) == column; ++to) {
      if (line[to].y < line[least].y) least = to;
      if (line[to].y > line[most].y) most = to;
    }
    std::size_t ways[] = {from, least, most, to - 1};
    std::sort(std::begin(ways), std::end(ways));
    for (std::size_t i = 0; i < std::size(ways); ++i) {
      if (i == 0 || ways[i] != ways[i - 1]) kept.push_back(line[ways[i]]);
    }
    from = to;
  }
  return kept;
}

// The line from `begin` on as far as it is drawn; "H" and "V" where it runs along an axis.
void add_line(std::string& path, const Line& line) {
  bool down = false;
  std::string x;
  std::string y;
  for (const Spot& spot : line) {
    if (!spot.drawn()) {
      down = false;
      continue;
    }
    const std::string next_x = units(spot.x);
    const std::string next_y = units(spot.y);
    if (!down) {
      path += 'M' + next_x + ' ' + next_y;
    } else if (next_y == y && next_x != x) {
      path += 'H' + next_x;
    } else if (next_x == x && next_y != y) {
      path += 'V' + next_y;
    } else if (next_x != x) {
      path += 'L' + next_x + ' ' + next_y;
    }
    down = true;
    x = next_x;
    y = next_y;
  }
}

// Bars, which keep their edges where neighbours are as high.
std::string bars_path(const Layer& layer, const Scale& x, const Scale& y) {
  std::string path;
  for (std::size_t i = 0; i < layer.y.size(); ++i) {
    const Spot from = spot_of(layer.x[i], layer.y[i], x, y);
    const Spot to = spot_of(layer.x[i + 1], 0.0, x, y);
    if (layer.y[i] == 0.0 || !from.drawn() || !to.drawn()) continue;
    path += 'M' + units(from.x) + ' ' + units(to.y) + 'V' + units(from.y) + 'H' + units(to.x) +
            'V' + units(to.y) + 'Z';
  }
  return path;
}

// Blocks on top of others are one outline: there and back again.
std::string blocks_path(const Layer& layer, const Scale& x, const Scale& y, int columns) {
  const Line top = thinned(step_line(layer.x, layer.y, x, y), columns);
  const Line bottom = thinned(step_line(layer.x, layer.base, x, y), columns);
  Line outline;
  const auto drawn = [](const Spot& spot) { return spot.drawn(); };
  std::copy_if(top.begin(), top.end(), std::back_inserter(outline), drawn);
  std::copy_if(bottom.rbegin(), bottom.rend(), std::back_inserter(outline), drawn);
  std::string path;
  add_line(path, outline);
  return path.empty() ? path : path + 'Z';
}

// A line of no length with round ends is a dot that keeps its shape however the picture is drawn.
std::string dots_path(const Layer& layer, const Scale& x, const Scale& y) {
  std::string path;
  for (std::size_t i = 0; i < layer.y.size(); ++i) {
    const Spot spot = spot_of(layer.x[i], layer.y[i], x, y);
    if (spot.drawn()) path += 'M' + units(spot.x) + ' ' + units(spot.y) + "h0";
  }
  return path;
}

}  // namespace

std::string units(double value) {
  char text[40];
  char* end = std::to_chars(text, text + sizeof text, value, std::chars_format::fixed, 1).ptr;
  if (end[-1] == '0') end -= 2;
  const std::string number(text, end);
  return number == "-0" ? "0" : number;
}

std::string path_of_layer(const Layer& layer, const Scale& x, const Scale& y, int columns) {
  if (layer.kind == Layer::Kind::kBars) return bars_path(layer, x, y);
  if (layer.kind == Layer::Kind::kBlocks) return blocks_path(layer, x, y, columns);
  if (layer.kind == Layer::Kind::kDots) return dots_path(layer, x, y);
  Line line;
  if (layer.kind == Layer::Kind::kSteps) {
    line = step_line(layer.x, layer.y, x, y);
  } else {
    line.reserve(layer.y.size());
    for (std::size_t i = 0; i < layer.y.size(); ++i) {
      line.push_back(spot_of(layer.x[i], layer.y[i], x, y));
    }
  }
  std::string path;
  add_line(path, thinned(std::move(line), columns));
  return path;
}

}  // namespace vqmath63::host
