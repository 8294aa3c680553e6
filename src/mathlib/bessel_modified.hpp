// I and K of orders 0 and 1 without their exponentials, for the higher orders to build on.
#pragma once

namespace vqmath63::bessel {

/// I of order 0 or 1 at finite x >= 0, times e^-x from kIFar on.
double i_zero_part(double x);
double i_one_part(double x);
inline constexpr double kIFar = 8.0;

/// K of order 0 or 1 at finite x > 0, times e^x above kKFar; infinite where it overflows.
double k_zero_part(double x);
double k_one_part(double x);
inline constexpr double kKFar = 1.0;

/// Beyond this x every I overflows that is not small against its order, and K underflows.
inline constexpr double kExponentialLimit = 1000.0;

}  // namespace vqmath63::bessel
