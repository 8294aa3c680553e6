// J and Y of orders 0 and 1 inside their domains, for the higher orders to build on.
#pragma once

namespace vqmath63::bessel {

/// J of order 0 or 1 at x >= 0, infinity and NaN included.
double j_zero(double x);
double j_one(double x);

/// Y of order 0 or 1 at x > 0, infinity and NaN included; minus infinity where it overflows.
double y_zero(double x);
double y_one(double x);

}  // namespace vqmath63::bessel
