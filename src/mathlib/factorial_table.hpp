// The factorials that a Double holds, made when the library is compiled.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

namespace vqmath63 {

/// 0! to 170!, each the product of its predecessor with its index in Double. Stops before the
/// product would pass the limit, just below the largest Double.
constexpr std::array<double, 171> init_factorial() {
  constexpr double kLimit = std::bit_cast<double>(std::uint64_t{0x7FEFFFFFFFFFFFE2U});
  std::array<double, 171> table{1.0, 1.0};
  double f = 1.0;
  for (std::size_t k = 2; k <= 1000; ++k) {
    const auto factor = static_cast<double>(k);
    if (kLimit / factor < f) break;
    f = factor * f;
    table.at(k) = f;  // an index past 170 would end the compilation
  }
  return table;
}

inline constexpr std::array<double, 171> kFactorials = init_factorial();
static_assert(kFactorials.back() > 7.25e306);

}  // namespace vqmath63
