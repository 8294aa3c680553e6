// The large finite values that stand for a result outside a function's domain.
#pragma once

#include <bit>
#include <cstdint>

namespace vqmath63 {

/// What every mathematical function returns outside its domain: the Double 1e308. Callers compare
/// with exactly this number.
inline constexpr double kOutOfRange = 1e308;
static_assert(std::bit_cast<std::uint64_t>(kOutOfRange) == 0x7FE1CCF385EBC8A0U);

/// A Single over zero in the tolerant arithmetic: 3.402823E+38, just below the largest Single.
inline constexpr float kSingleOutOfRange = std::bit_cast<float>(0x7F7FFFFDU);

}  // namespace vqmath63
