// The logarithm of the gamma function, for ztMathLib::LoGamma and for the tests of statistics.
#pragma once

namespace vqmath63 {

/// Natural logarithm of the gamma function for 0 < x <= 2.55e305, which is not looked at. Keeps no
/// state, as the C library's does. W. J. Cody's ALGAMA; accuracy: docs/accuracy.md.
double log_gamma(double x);

}  // namespace vqmath63
