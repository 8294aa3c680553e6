// Path data of SVG in a square of a thousand units, as short as the picture allows.
#pragma once

#include <string>

#include "host/report/chart.hpp"
#include "host/report/scale.hpp"

namespace vqmath63::host {

/// Units of the square's side; y grows downwards.
inline constexpr double kSide = 1000.0;

/// The outline of a layer over two scales, thinned to what is seen in so many columns.
std::string path_of_layer(const Layer& layer, const Scale& x, const Scale& y, int columns);

/// A number of units, to a tenth.
std::string units(double value);

}  // namespace vqmath63::host
