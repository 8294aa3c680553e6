// Numbers of two Doubles.
#pragma once

#include <bit>
#include <cstdint>

namespace vqmath63::elementary {

/// A number as the sum of two doubles, the second below the last place of the first.
struct Pair {
  double hi;
  double lo;
};

/// a + b exactly (D. E. Knuth, The Art of Computer Programming, volume 2, section 4.2.2).
inline Pair exact_sum(double a, double b) {
  const double sum = a + b;
  const double part = sum - a;
  return {sum, (a - (sum - part)) + (b - part)};
}

/// a + b exactly where |a| >= |b| or a = 0.
inline Pair ordered_sum(double a, double b) {
  const double sum = a + b;
  return {sum, b - (sum - a)};
}

/// a b exactly, for factors below 1e290 and products above 1e-290 (T. J. Dekker, Numerische
/// Mathematik 18, 1971).
inline Pair exact_product(double a, double b) {
  constexpr double kSplit = 134217729.0;  // 2^27 + 1
  const double pa = kSplit * a;
  const double pb = kSplit * b;
  const double ah = pa - (pa - a);
  const double bh = pb - (pb - b);
  const double al = a - ah;
  const double bl = b - bh;
  const double product = a * b;
  return {product, ((ah * bh - product) + ah * bl + al * bh) + al * bl};
}

/// The number cut to so many of its bits.
template <unsigned kBits>
inline double upper_bits(double x) {
  constexpr std::uint64_t kCut = (std::uint64_t{1} << (53U - kBits)) - 1;
  return std::bit_cast<double>(std::bit_cast<std::uint64_t>(x) & ~kCut);
}

inline Pair operator+(Pair a, Pair b) {
  const Pair high = exact_sum(a.hi, b.hi);
  const Pair low = exact_sum(a.lo, b.lo);
  const Pair sum = ordered_sum(high.hi, high.lo + low.hi);
  return ordered_sum(sum.hi, sum.lo + low.lo);
}

inline Pair operator-(Pair a) {
  return {-a.hi, -a.lo};
}
inline Pair operator-(Pair a, Pair b) {
  return a + -b;
}

inline Pair operator*(Pair a, Pair b) {
  const Pair product = exact_product(a.hi, b.hi);
  return ordered_sum(product.hi, product.lo + (a.hi * b.lo + a.lo * b.hi));
}

inline Pair operator/(Pair a, Pair b) {
  const double first = a.hi / b.hi;
  const Pair rest = a - b * Pair{first, 0.0};
  return ordered_sum(first, (rest.hi + rest.lo) / b.hi);
}

}  // namespace vqmath63::elementary
