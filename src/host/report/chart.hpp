// A chart: layers of lines, steps, blocks and dots over two axes, as SVG that a page can hold.
#pragma once

#include <string>
#include <vector>

#include "host/report/scale.hpp"

namespace vqmath63::host {

/// One thing that a chart draws. Layers lie over one another in the order in which they are added.
struct Layer {
  enum class Kind {
    kLine,    ///< from point to point; one that is not finite parts it
    kSteps,   ///< y[i] from x[i] to x[i + 1]
    kBlocks,  ///< filled from base[i] to y[i], from x[i] to x[i + 1]
    kBars,    ///< the same from 0, each by itself
    kDots,    ///< at points
  };
  Kind kind = Kind::kLine;
  std::string name;            ///< in the legend, and of the path
  std::string look;            ///< classes of the style sheet: "s1" to "s8", "data", "rule"
  std::vector<double> x;       ///< in ascending order, but for lines of few points and dots
  std::vector<double> y;       ///< of steps and blocks one fewer than x
  std::vector<double> base{};  ///< of blocks
};

struct Axis {
  std::string title;
  std::string unit;  ///< none when empty
  ScaleKind kind = ScaleKind::kNumbers;
};

/// Lines of more points than a screen has columns are drawn by the first, least, largest and last
/// value of each of some columns: the picture of all points in a few kilobytes.
class Chart {
 public:
  Chart(Axis x, Axis y) : x_(std::move(x)), y_(std::move(y)) {}

  void add(Layer layer) { layers_.push_back(std::move(layer)); }
  /// Row i of the table that belongs to the chart is what lies between edges i and i + 1: a pointer
  /// there shows it.
  void rows_between(std::vector<double> edges) { edges_ = std::move(edges); }

  /// The legend, the picture and its axes; `label` says in words what is seen, `columns` are those
  /// that it is seen in. Without `rows` a pointer shows none.
  std::string markup(const std::string& label, int columns, bool rows) const;

 private:
  std::string legend() const;

  Axis x_;
  Axis y_;
  std::vector<Layer> layers_;
  std::vector<double> edges_;
};

}  // namespace vqmath63::host
