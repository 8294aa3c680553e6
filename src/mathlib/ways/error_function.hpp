// The error function, W. J. Cody's CALERF.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>

#include "elementary/ways/inlined.hpp"
#include "mathlib/cody_tables.hpp"
#include "mathlib/constants.hpp"
#include "mathlib/exp_of_squares.hpp"
#include "mathlib/special_ways.hpp"

namespace vqmath63::special::VQ_WAY {
namespace {

using elementary::VQ_WAY::inlined_exp;

// Numerator and denominator, side by side.
using Both [[gnu::vector_size(16)]] = double;

// exp(-y^2) for y up to 6, the square split in two so that the exponential loses no precision: that
// of the sixteenths comes from a table.
double exp_of_minus_square(double y) {
  const auto bits = std::bit_cast<std::uint64_t>(y);
  // The bits behind the sixteenths are cut off: fewer, the larger y is.
  const auto cut = static_cast<unsigned>(1071U - (bits >> 52U));
  const double head = std::bit_cast<double>(bits >> cut << cut);
  const auto sixteenths = ((bits & 0xF'FFFF'FFFF'FFFFU) | 0x10'0000'0000'0000U) >> cut;
  const double tail = (y - head) * (y + head);
  return kExpOfMinusSquare[sixteenths] * inlined_exp(-tail);
}

// 1 - erf(y) for 0.46875 < y <= 4.
double complement_middle(double y) {
  Both both{cody::kErfC[8], 1.0};
  both *= y;
  for (std::size_t i = 0; i < 7; ++i) both = (both + Both{cody::kErfC[i], cody::kErfD[i]}) * y;
  both += Both{cody::kErfC[7], cody::kErfD[7]};
  return both[0] / both[1] * exp_of_minus_square(y);
}

// 1 - erf(y) for y > 4.
double complement_far(double y) {
  const double inverse = 1.0 / (y * y);
  Both both{cody::kErfP[5], 1.0};
  both *= inverse;
  for (std::size_t i = 0; i < 4; ++i)
    both = (both + Both{cody::kErfP[i], cody::kErfQ[i]}) * inverse;
  both += Both{cody::kErfP[4], cody::kErfQ[4]};
  const double ratio = inverse * both[0] / both[1];
  return (constants::kOneOverSqrtPi - ratio) / y * exp_of_minus_square(y);
}

}  // namespace

double complement_of_erf(double y) noexcept {
  return y <= kErfMiddle ? complement_middle(y) : complement_far(y);
}

}  // namespace vqmath63::special::VQ_WAY
