#include "host/commands/line_check.hpp"

#include <cmath>
#include <numeric>

namespace vqmath63::host {

LineCheck check_line(std::span<const double> x, std::span<const double> y) {
  const auto count = static_cast<double>(x.size());
  const double x_mean = std::accumulate(x.begin(), x.end(), 0.0) / count;
  const double y_mean = std::accumulate(y.begin(), y.end(), 0.0) / count;
  double xx = 0.0;
  double xy = 0.0;
  double yy = 0.0;
  for (std::size_t i = 0; i < x.size(); ++i) {
    const double dx = x[i] - x_mean;
    const double dy = y[i] - y_mean;
    xx += dx * dx;
    xy += dx * dy;
    yy += dy * dy;
  }
  const double floor = 1e-3 * std::fabs(y_mean) * std::sqrt(count);
  return {xy / xx, (std::sqrt(yy) + floor) / std::sqrt(xx)};
}

}  // namespace vqmath63::host
