// Numbers of 256 bits, for the sure ways of the elementary functions.
#pragma once

#include <array>
#include <cstdint>

namespace vqmath63::elementary {

/// A number +-0.m 2^exponent whose mantissa m has its top bit set; zero has no bit. Sums, products
/// and quotients are within 2^-252 of their value, of the larger operand where a sum cancels. The
/// exponent neither overflows nor underflows in what is made of Doubles here.
struct Wide {
  std::array<std::uint64_t, 4> words{};  // the lowest first
  int exponent = 0;
  bool negative = false;

  constexpr bool zero() const { return words[3] == 0; }
};

/// A finite Double as it is.
Wide wide(double x);
/// An integer of several words, the lowest first, times 2^exponent; cut to 256 bits.
template <std::size_t kCount>
Wide wide(const std::array<std::uint64_t, kCount>& integer, int exponent);

/// The nearest Double, of two the even one; infinite or subnormal where it must be. What lies
/// within 2^-200 of the middle between two is taken for the middle: of the results here only an
/// exact one comes so close.
double nearest(const Wide& x);

/// x 2^by.
constexpr Wide scaled(Wide x, int by) {
  if (!x.zero()) x.exponent += by;
  return x;
}

constexpr Wide operator-(Wide x) {
  x.negative = !x.negative;
  return x;
}
Wide operator+(const Wide& a, const Wide& b);
inline Wide operator-(const Wide& a, const Wide& b) {
  return a + -b;
}
Wide operator*(const Wide& a, const Wide& b);
/// a / b; b is not zero.
Wide operator/(const Wide& a, const Wide& b);
/// Square root of a > 0.
Wide square_root(const Wide& a);

}  // namespace vqmath63::elementary
