#include "elementary/wide.hpp"

#include <bit>
#include <cmath>
#include <limits>

namespace vqmath63::elementary {
namespace {

using Words = std::array<std::uint64_t, 4>;

#ifdef __SIZEOF_INT128__
__extension__ using Product = unsigned __int128;

// sum + a b + carry: its low word stays in sum, its high one is the new carry.
std::uint64_t add_product(std::uint64_t& sum, std::uint64_t a, std::uint64_t b,
                          std::uint64_t carry) {
  const Product all = Product{a} * b + sum + carry;
  sum = static_cast<std::uint64_t>(all);
  return static_cast<std::uint64_t>(all >> 64U);
}
#else
std::uint64_t add_product(std::uint64_t& sum, std::uint64_t a, std::uint64_t b,
                          std::uint64_t carry) {
  constexpr std::uint64_t kLow = 0xFFFF'FFFF;
  const std::uint64_t low = (a & kLow) * (b & kLow);
  const std::uint64_t one = (a >> 32U) * (b & kLow) + (low >> 32U);
  const std::uint64_t other = (a & kLow) * (b >> 32U) + (one & kLow);
  std::uint64_t high = (a >> 32U) * (b >> 32U) + (one >> 32U) + (other >> 32U);
  const std::uint64_t product = other << 32U | (low & kLow);
  const std::uint64_t first = sum + product;
  high += first < sum ? 1 : 0;
  sum = first + carry;
  high += sum < first ? 1 : 0;
  return high;
}
#endif

// The words moved by so many bits towards the lower end, 0 to 255.
Words moved_down(const Words& words, unsigned by) {
  const unsigned whole = by / 64;
  const unsigned part = by % 64;
  Words moved{};
  for (std::size_t i = 0; i + whole < 4; ++i) {
    moved[i] = words[i + whole] >> part;
    if (part > 0 && i + whole + 1 < 4) moved[i] |= words[i + whole + 1] << (64U - part);
  }
  return moved;
}

// Brings the top bit of the mantissa to its place; the words are not all zero.
void normalise(Wide& x) {
  unsigned empty = 0;
  while (x.words[3 - empty] == 0) ++empty;
  const auto part = static_cast<unsigned>(std::countl_zero(x.words[3 - empty]));
  for (std::size_t i = 4; i-- > 0;) {
    const std::uint64_t word = i >= empty ? x.words[i - empty] : 0;
    const std::uint64_t next = i >= empty + 1 ? x.words[i - empty - 1] : 0;
    x.words[i] = part == 0 ? word : word << part | next >> (64U - part);
  }
  x.exponent -= static_cast<int>(64 * empty + part);
}

bool less(const Wide& a, const Wide& b) {
  if (a.exponent != b.exponent) return a.exponent < b.exponent;
  for (std::size_t i = 4; i-- > 0;) {
    if (a.words[i] != b.words[i]) return a.words[i] < b.words[i];
  }
  return false;
}

// |a| + |b| and |a| - |b| for a not the smaller one.
Wide sum_of_magnitudes(Wide a, const Words& b) {
  std::uint64_t carry = 0;
  for (std::size_t i = 0; i < 4; ++i) {
    const std::uint64_t sum = a.words[i] + b[i];
    const std::uint64_t whole = sum + carry;
    carry = (sum < b[i] ? 1U : 0U) + (whole < sum ? 1U : 0U);
    a.words[i] = whole;
  }
  if (carry != 0) {
    a.words = moved_down(a.words, 1);
    a.words[3] |= 0x8000'0000'0000'0000U;
    ++a.exponent;
  }
  return a;
}

Wide difference_of_magnitudes(Wide a, const Words& b) {
  std::uint64_t borrow = 0;
  std::uint64_t any = 0;
  for (std::size_t i = 0; i < 4; ++i) {
    const std::uint64_t rest = a.words[i] - b[i];
    const std::uint64_t whole = rest - borrow;
    borrow = (a.words[i] < b[i] ? 1U : 0U) + (rest < borrow ? 1U : 0U);
    a.words[i] = whole;
    any |= whole;
  }
  if (any == 0) return {};
  normalise(a);
  return a;
}

}  // namespace

Wide wide(double x) {
  const auto bits = std::bit_cast<std::uint64_t>(std::fabs(x));
  const auto field = static_cast<int>(bits >> 52U);
  const std::uint64_t digits = bits & 0x000F'FFFF'FFFF'FFFFU;
  const std::array<std::uint64_t, 4> integer{field == 0 ? digits : digits | 1ULL << 52U};
  Wide result = wide(integer, field == 0 ? -1074 : field - 1075);
  result.negative = std::signbit(x);
  return result;
}

template <std::size_t kCount>
Wide wide(const std::array<std::uint64_t, kCount>& integer, int exponent) {
  std::size_t top = kCount;
  while (top > 0 && integer[top - 1] == 0) --top;
  if (top == 0) return {};
  Wide result;
  for (std::size_t i = 0; i < 4 && i < top; ++i) result.words[3 - i] = integer[top - 1 - i];
  result.exponent = exponent + static_cast<int>(64 * top);
  const auto part = static_cast<unsigned>(std::countl_zero(result.words[3]));
  const std::uint64_t below = top > 4 && part > 0 ? integer[top - 5] >> (64U - part) : 0;
  normalise(result);
  result.words[0] |= below;
  return result;
}
template Wide wide(const std::array<std::uint64_t, 4>&, int);
template Wide wide(const std::array<std::uint64_t, 8>&, int);

double nearest(const Wide& x) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  const double sign = x.negative ? -1.0 : 1.0;
  if (x.zero() || x.exponent < -1074) return sign * 0.0;
  if (x.exponent > 1024) return sign * kInfinity;
  // Bits of the result, 53 or, where it is subnormal, fewer; none below half the smallest number.
  const int kept = x.exponent > -1022 ? 53 : x.exponent + 1074;
  const auto dropped = static_cast<unsigned>(64 - kept);
  std::uint64_t digits = kept == 0 ? 0 : x.words[3] >> dropped;
  // What is dropped, as a fraction of the last place.
  const std::uint64_t high =
      kept == 0 ? x.words[3] : x.words[3] << static_cast<unsigned>(kept) | x.words[2] >> dropped;
  const std::uint64_t low =
      kept == 0 ? x.words[2] : x.words[2] << static_cast<unsigned>(kept) | x.words[1] >> dropped;
  constexpr std::uint64_t kHalf = 0x8000'0000'0000'0000U;
  const bool above = high >= kHalf;
  // The bits behind the half are all 0, or all 1 just below it, to 2^-152 of the last place.
  const std::uint64_t lower =
      kept == 0 ? x.words[1] : x.words[1] << static_cast<unsigned>(kept) | x.words[0] >> dropped;
  constexpr std::uint64_t kAll = ~std::uint64_t{0};
  const bool middle = (high == kHalf && low == 0 && lower >> 40U == 0) ||
                      (high == kHalf - 1 && low == kAll && lower >> 40U == kAll >> 40U);
  if (middle ? (digits & 1U) != 0 : above) ++digits;
  const double scale = kept == 53 ? 1.0 : 0x1p-1074;
  if (kept != 53) return sign * static_cast<double>(digits) * scale;
  // A carry out of the digits makes the next power of two, also the step to infinity.
  const auto field = static_cast<std::uint64_t>(x.exponent + 1021) << 52U;
  return sign * std::bit_cast<double>(field + digits);
}

Wide operator+(const Wide& a, const Wide& b) {
  if (a.zero()) return b;
  if (b.zero()) return a;
  if (less(a, b)) return b + a;
  const int distance = a.exponent - b.exponent;
  if (distance > 255) return a;
  const Words aligned = moved_down(b.words, static_cast<unsigned>(distance));
  return a.negative == b.negative ? sum_of_magnitudes(a, aligned)
                                  : difference_of_magnitudes(a, aligned);
}

Wide operator*(const Wide& a, const Wide& b) {
  if (a.zero() || b.zero()) return {};
  std::array<std::uint64_t, 8> product{};
  for (std::size_t i = 0; i < 4; ++i) {
    std::uint64_t carry = 0;
    for (std::size_t j = 0; j < 4; ++j) {
      carry = add_product(product[i + j], a.words[i], b.words[j], carry);
    }
    product[i + 4] = carry;
  }
  Wide result;
  result.exponent = a.exponent + b.exponent;
  result.negative = a.negative != b.negative;
  const unsigned shift = product[7] >> 63U == 0 ? 1 : 0;
  for (std::size_t i = 0; i < 4; ++i) {
    result.words[i] = product[i + 4] << shift | (shift != 0 ? product[i + 3] >> 63U : 0);
  }
  result.exponent -= static_cast<int>(shift);
  return result;
}

Wide operator/(const Wide& a, const Wide& b) {
  // By Newton's steps towards 1 / b, b brought to 1/2 .. 1: 53, 106, 212, all bits.
  Wide divisor = b;
  divisor.exponent = 0;
  divisor.negative = false;
  const Wide one = wide(1.0);
  Wide inverse = wide(1.0 / nearest(divisor));
  for (int i = 0; i < 3; ++i) inverse = inverse + inverse * (one - divisor * inverse);
  inverse.exponent -= b.exponent;
  inverse.negative = b.negative;
  return a * inverse;
}

Wide square_root(const Wide& a) {
  // By Newton's steps towards 1 / sqrt(a), a brought to 1/4 .. 1.
  Wide square = a;
  const int half = (a.exponent + (a.exponent & 1)) / 2;
  square.exponent = a.exponent - 2 * half;
  const Wide one = wide(1.0);
  const double root = std::sqrt(nearest(square));  // platform: rounds correctly everywhere
  Wide inverse = wide(1.0 / root);
  for (int i = 0; i < 3; ++i) {
    inverse = inverse + scaled(inverse * (one - square * (inverse * inverse)), -1);
  }
  return scaled(square * inverse, half);
}

}  // namespace vqmath63::elementary
