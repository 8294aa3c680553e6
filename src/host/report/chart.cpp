#include "host/report/chart.hpp"

#include <algorithm>
#include <cmath>

#include "host/report/markup.hpp"
#include "host/report/path.hpp"

namespace vqmath63::host {
namespace {

Scale scale_of(const Axis& axis, const std::vector<Layer>& layers, bool upright) {
  Range range;
  for (const Layer& layer : layers) {
    const std::vector<double>& values = upright ? layer.y : layer.x;
    if (axis.kind == ScaleKind::kLogarithmic) {
      range.add_above_zero(values);
    } else {
      range.add(values);
    }
    if (upright) range.add(layer.base);
  }
  return {axis.kind, range};
}

// "Rate, thousand sm3/d".
std::string title_of(const Axis& axis, const Scale& scale) {
  std::string title = axis.title;
  const std::string& multiple = scale.multiple();
  if (!multiple.empty() || !axis.unit.empty()) title += ", ";
  title += multiple;
  if (!multiple.empty() && !axis.unit.empty()) title += ' ';
  return title + axis.unit;
}

// A part of the picture's width or height as a style sheet has it.
std::string percent(double share) {
  return units(share * 100.0) + "%";
}

// Labels beside the picture; every second one gives way where the page is narrow.
std::string labels(const Scale& scale, const char* axis, const char* side) {
  std::string text = "<div class=\"ticks " + std::string(axis) + "\">";
  bool spare = false;
  for (const Tick& tick : scale.ticks()) {
    text += "<span" + std::string(spare ? " class=\"spare\"" : "") + " style=\"" + side + ":" +
            percent(scale.place(tick.at)) + "\">" + escaped(tick.label) + "</span>";
    spare = !spare;
  }
  return text + "</div>\n";
}

std::string grid(const Scale& x, const Scale& y) {
  std::string upright;
  std::string level;
  for (const Tick& tick : x.ticks()) upright += 'M' + units(x.place(tick.at) * kSide) + " 0V1000";
  for (const Tick& tick : y.ticks()) {
    level += "M0 " + units((1.0 - y.place(tick.at)) * kSide) + "H1000";
  }
  const std::string lines = "<path class=\"grid\" d=\"" + upright + level + "\"/>\n";
  const double zero = 1.0 - y.place(0.0);
  if (!(zero > 0.0 && zero < 1.0)) return lines;
  return lines + "<path class=\"grid zero\" d=\"M0 " + units(zero * kSide) + "H1000\"/>\n";
}

const char* word_of(Layer::Kind kind) {
  switch (kind) {
    case Layer::Kind::kSteps:
      return "steps";
    case Layer::Kind::kBlocks:
    case Layer::Kind::kBars:
      return "blocks";
    case Layer::Kind::kDots:
      return "dots";
    default:
      return "line";
  }
}

std::string classes_of(const Layer& layer) {
  return std::string(word_of(layer.kind)) + (layer.look.empty() ? "" : " " + layer.look);
}

}  // namespace

std::string Chart::legend() const {
  std::string text;
  for (const Layer& layer : layers_) {
    if (layer.name.empty()) continue;
    text += "<li><span" + attribute("class", "key " + classes_of(layer)) + "></span>" +
            escaped(layer.name) + "</li>";
  }
  return text.empty() ? text : "<ul class=\"legend\">" + text + "</ul>\n";
}

std::string Chart::markup(const std::string& label, int columns, bool with_rows) const {
  const Scale x = scale_of(x_, layers_, false);
  const Scale y = scale_of(y_, layers_, true);
  std::string rows;
  for (const double edge : with_rows ? edges_ : std::vector<double>()) {
    rows += (rows.empty() ? "" : " ") + units(x.place(edge) * kSide);
  }
  std::string text = legend() + "<p class=\"axis\">" + escaped(title_of(y_, y)) +
                     "</p>\n<div class=\"plot\">\n<svg viewBox=\"0 0 1000 1000\" "
                     "preserveAspectRatio=\"none\" role=\"img\"" +
                     attribute("aria-label", label) +
                     (rows.empty() ? "" : attribute("data-rows", rows)) + ">\n" + grid(x, y);
  for (const Layer& layer : layers_) {
    text += "<path" + attribute("class", classes_of(layer)) + attribute("data-series", layer.name) +
            " d=\"" + path_of_layer(layer, x, y, columns) + "\"/>\n";
  }
  return text + "</svg>\n" + labels(y, "y", "bottom") + labels(x, "x", "left") +
         "</div>\n<p class=\"axis x\">" + escaped(title_of(x_, x)) + "</p>\n";
}

}  // namespace vqmath63::host
