// Members of ztMathLib over many arguments: four calls side by side, where the processor can.
#pragma once

#include <cstddef>

#include "mathlib/math_lib.hpp"

namespace vqmath63 {

/// Works out a member for the arguments arguments[0][i], arguments[1][i], ... of each i below count
/// and says which results it has given: the same, bit for bit, as the member's own, of calls that
/// do not fail. The others are the member's to work out. Keeps nothing, whatever the arguments.
using BlockWay = void (*)(const double* const* arguments, double* results, bool* done,
                          std::size_t count) noexcept;

/// As many calls at a time suit the processor's nearest memory.
inline constexpr std::size_t kMostInBlock = 256;

/// The block way of a member; null where it has none, or the processor is not made for it.
BlockWay block_way(double (ztMathLib::*member)(double) const) noexcept;
BlockWay block_way(double (ztMathLib::*member)(double, double) const) noexcept;
BlockWay block_way(double (ztMathLib::*member)(double, double, double) const) noexcept;

}  // namespace vqmath63
