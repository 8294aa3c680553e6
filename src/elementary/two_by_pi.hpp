// Products with 2 / pi, for the reduction of large angles.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

#include "elementary/tables.hpp"

namespace vqmath63::elementary {

/// x 2 / pi without whole circles, as an integer of words of 32 bits, the lowest first; so many
/// bits from the lowest on stand behind the binary point.
template <std::size_t kWords>
struct Quarters {
  std::array<std::uint64_t, kWords + 4> words{};
  unsigned point = 0;

  /// The 64 bits from the given one on.
  std::uint64_t bits_from(unsigned first) const {
    const std::size_t word = first / 32;
    const unsigned shift = first % 32;
    const std::uint64_t low = words[word] | words[word + 1] << 32U;
    return shift == 0 ? low : low >> shift | words[word + 2] << (64U - shift);
  }
};

/// For x from 2^-2 on, by so many words of 2 / pi: x is an integer below 2^53 times 2^exponent; of
/// 2 / pi only those words are multiplied by it that give neither whole circles nor too little
/// (M. H. Payne, R. N. Hanek, ACM SIGNUM Newsletter 18, 1983).
template <std::size_t kWords>
Quarters<kWords> quarters(double x) {
  const auto bits = std::bit_cast<std::uint64_t>(x);
  const int exponent = static_cast<int>(bits >> 52U) - 1075;
  const std::uint64_t integer = (bits & 0x000F'FFFF'FFFF'FFFFU) | 0x0010'0000'0000'0000U;
  const int skipped = exponent >= 2 ? (exponent - 2) / 32 : 0;
  Quarters<kWords> product;
  for (std::size_t i = 0; i < kWords; ++i) {
    const std::uint64_t word = kTwoByPi[static_cast<std::size_t>(skipped) + kWords - 1 - i];
    const std::uint64_t low = (integer & 0xFFFF'FFFFU) * word + product.words[i];
    product.words[i] = low & 0xFFFF'FFFFU;
    const std::uint64_t high = (integer >> 32U) * word + product.words[i + 1] + (low >> 32U);
    product.words[i + 1] = high & 0xFFFF'FFFFU;
    product.words[i + 2] = high >> 32U;
  }
  product.point = static_cast<unsigned>(static_cast<int>(32 * kWords) + 32 * skipped - exponent);
  return product;
}

}  // namespace vqmath63::elementary
