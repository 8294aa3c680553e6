#include "calculus/differentiation.hpp"

#include <algorithm>
#include <bit>
#include <memory>
#include <type_traits>

#include "frame/speculate.hpp"
#include "frame/trap.hpp"
#include "frame/wide_registers.hpp"

namespace vqmath63 {
namespace {

constexpr Location kFirstUpStream{"ztAnalyse - Differentiation", "FirstDerivativeUpStream"};
constexpr Location kFirstDownStream{"ztAnalyse - Differentiation", "FirstDerivativeDownStream"};
constexpr Location kFirstCentered{"ztAnalyse - Differentiation", "FirstDerivativeCentered"};
constexpr Location kFirstDerivatives{"ztAnalyse - Differentiation", "FirstDerivatives"};
constexpr Location kSecondUpStream{"ztAnalyse - Differentiation", "SecondDerivativeUpStream"};
constexpr Location kSecondDownStream{"ztAnalyse - Differentiation", "SecondDerivativeDownStream"};
constexpr Location kSecondCentered{"ztAnalyse - Differentiation", "SecondDerivativeCentered"};
constexpr Location kSecondDerivatives{"ztAnalyse - Differentiation", "SecondDerivatives"};

using Samples = Array1<const double>;
using Derivatives = Array1<double>;

// Keeps the denominators of first derivatives away from zero.
constexpr double kGuard = 1e-20;

template <class Real>
struct Fraction {
  Real numerator;
  Real denominator;
};

// Each formula gives the derivative at point i as a fraction of sums of products, so that a step
// which is not finite always shows in one of its halves, or in the quotient. It reads the points
// i - kBefore to i + kAfter. Terms that read elements are added one a statement: a compiler takes
// the operands of + and - in an order of its own, and the first of two failures is to be reported.

struct ForwardFirst {
  static constexpr std::int64_t kBefore = 0, kAfter = 1;
  template <class Real, class Reader>
  static Fraction<Real> at(const Reader& x, const Reader& y, std::int64_t i) {
    return {y(i + 1) - y(i), x(i + 1) - x(i) + Real(kGuard)};
  }
};

struct BackwardFirst {
  static constexpr std::int64_t kBefore = 1, kAfter = 0;
  template <class Real, class Reader>
  static Fraction<Real> at(const Reader& x, const Reader& y, std::int64_t i) {
    return {y(i) - y(i - 1), x(i) - x(i - 1) + Real(kGuard)};
  }
};

struct CentredFirst {
  static constexpr std::int64_t kBefore = 1, kAfter = 1;
  template <class Real, class Reader>
  static Fraction<Real> at(const Reader& x, const Reader& y, std::int64_t i) {
    const Real h1 = x(i) - x(i - 1);
    const Real h2 = x(i + 1) - x(i);
    const Real a = h1 * h1;
    const Real b = h2 * h2;
    Real n = a * y(i + 1);
    const Real between = a - b;
    n = n - between * y(i);
    n = n - b * y(i - 1);
    return {n, h1 * b + h2 * a + Real(kGuard)};
  }
};

struct ForwardSecond {
  static constexpr std::int64_t kBefore = 0, kAfter = 2;
  template <class Real, class Reader>
  static Fraction<Real> at(const Reader& x, const Reader& y, std::int64_t i) {
    const Real a = x(i + 1) - x(i);
    const Real b = x(i + 2) - x(i);
    Real n = a * y(i + 2);
    n = n - b * y(i + 1);
    const Real between = b - a;
    n = n + between * y(i);
    return {Real(2.0) * n, between * b * a};
  }
};

struct BackwardSecond {
  static constexpr std::int64_t kBefore = 2, kAfter = 0;
  template <class Real, class Reader>
  static Fraction<Real> at(const Reader& x, const Reader& y, std::int64_t i) {
    const Real a = x(i) - x(i - 1);
    const Real b = x(i) - x(i - 2);
    Real n = a * y(i - 2);
    n = n - b * y(i - 1);
    const Real between = b - a;
    n = n + between * y(i);
    return {Real(2.0) * n, b * a * b - a * a * b};
  }
};

struct CentredSecond {
  static constexpr std::int64_t kBefore = 1, kAfter = 1;
  template <class Real, class Reader>
  static Fraction<Real> at(const Reader& x, const Reader& y, std::int64_t i) {
    const Real h1 = x(i) - x(i - 1);
    const Real h2 = x(i + 1) - x(i);
    const Real s = h2 + h1;
    // The factor 12 makes the centred value a twelfth of the parabola's; the ends stay unscaled.
    const Real t = h1 * Real(12.0) * h2;
    Real n = h1 * y(i + 1);
    n = n - s * y(i);
    n = n + h2 * y(i - 1);
    return {Real(2.0) * n, s * t};
  }
};

// Points first to last, worked through upwards or downwards.
enum class Order { kRising, kFalling };

struct Points {
  std::int64_t first;
  std::int64_t last;
  Order order;
};

// What became of some points.
struct Derived {
  bool in_scratch;          // the derivatives wait in scratch memory
  std::uint64_t trace = 0;  // 0 while every step was finite

  const Derived& value() const { return *this; }
  bool all_finite() const { return trace == 0; }
};

// The derivatives at some points, each handed to put(point, derivative): in the order of the
// routine where numbers are checked, else upwards.
template <class Formula, class Mode, class Put>
Derived derive(Mode, const Samples& x, const Samples& y, const Points& points, const Put& put) {
  constexpr bool kPlain = std::is_same_v<Mode, PlainMode>;
  const typename Mode::template Reader<double> xs(x), ys(y);
  Derived derived{kPlain};
  for (std::int64_t k = 0; k <= points.last - points.first; ++k) {
    const bool rising = kPlain || points.order == Order::kRising;
    const std::int64_t i = rising ? points.first + k : points.last - k;
    const auto [numerator, denominator] = Formula::template at<typename Mode::Double>(xs, ys, i);
    const double quotient = (numerator / denominator).value();
    put(i, quotient);
    // A finite number less itself is +0; anything else leaves bits behind. The product shows what
    // the quotient hides: a denominator that is not finite.
    const double both = quotient * denominator.value();
    derived.trace |= std::bit_cast<std::uint64_t>(both - both);
  }
  return derived;
}

// Writes the derivatives at some points. The quick way writes them to scratch memory first, so that
// points with a fault among them can be done again before anything of them has been written.
template <class Formula>
void write_run(bool quick, const Samples& x, const Samples& y, const Points& points,
               double* scratch, Derivatives& d) {
  const Derived derived = speculate(quick, [&](auto mode) {
    if constexpr (std::is_same_v<decltype(mode), PlainMode>) {
      return in_wide_registers([&] {
        return derive<Formula>(mode, x, y, points, [&](std::int64_t i, double derivative) {
          scratch[i - points.first] = derivative;
        });
      });
    } else {
      return derive<Formula>(mode, x, y, points,
                             [&](std::int64_t i, double derivative) { d(i) = derivative; });
    }
  });
  if (derived.in_scratch) {
    std::copy_n(scratch, points.last - points.first + 1, &d(points.first));
  }
}

// Writes the derivatives at points first to last, in blocks.
template <class Formula>
void write(const Samples& x, const Samples& y, std::int64_t first, std::int64_t last, Order order,
           Derivatives& d) {
  if (first > last) return;
  const std::int64_t least = first - Formula::kBefore;
  const std::int64_t most = last + Formula::kAfter;
  constexpr std::int64_t kBlock = 256;
  double scratch[kBlock];
  // Where the result is one of the samples, each point changes what the next one reads.
  if (!x.covers(least, most) || !y.covers(least, most) || !d.covers(first, last) || overlap(d, x) ||
      overlap(d, y)) {
    write_run<Formula>(false, x, y, {first, last, order}, scratch, d);
    return;
  }
  for (std::int64_t done = 0; done <= last - first; done += kBlock) {
    const std::int64_t count = std::min(kBlock, last - first - done + 1);
    const std::int64_t from = order == Order::kRising ? first + done : last - done - count + 1;
    write_run<Formula>(true, x, y, {from, from + count - 1, order}, scratch, d);
  }
}

}  // namespace

void FirstDerivativeUpStream(const Samples& x, const Samples& y, std::int32_t i1, std::int32_t i2,
                             Derivatives& d, bool& ok) {
  trap(kFirstUpStream, [&] {
    ok = false;
    const std::int64_t n = x.upper();
    // A single sample is not passed over: the formula looks for a second one.
    const std::int64_t last = std::min<std::int64_t>(i2, n == 1 ? 1 : n - 1);
    write<ForwardFirst>(x, y, i1, last, Order::kRising, d);
    ok = true;
  });
}

void FirstDerivativeDownStream(const Samples& x, const Samples& y, std::int32_t i1, std::int32_t i2,
                               Derivatives& d, bool& ok) {
  trap(kFirstDownStream, [&] {
    ok = false;
    write<BackwardFirst>(x, y, std::max(i1, 2), i2, Order::kFalling, d);
    ok = true;
  });
}

void FirstDerivativeCentered(const Samples& x, const Samples& y, std::int32_t i1, std::int32_t i2,
                             Derivatives& d, bool& ok) {
  trap(kFirstCentered, [&] {
    ok = false;
    const std::int64_t last = std::min<std::int64_t>(i2, std::int64_t{x.upper()} - 1);
    write<CentredFirst>(x, y, std::max(i1, 2), last, Order::kRising, d);
    ok = true;
  });
}

void FirstDerivatives(const Samples& x, const Samples& y, std::int32_t i1, std::int32_t i2,
                      Derivatives& d, bool& ok) {
  trap(kFirstDerivatives, [&] {
    ok = false;
    const std::int32_t n = x.upper();
    std::int32_t lo = i1;
    std::int64_t hi = i2;
    if (i1 <= 2) {
      FirstDerivativeUpStream(x, y, 1, i1, d, ok);
      lo = 2;
      if (!ok) return;
    }
    if (i2 >= n) {
      FirstDerivativeDownStream(x, y, i2, n, d, ok);
      hi = std::int64_t{n} - 1;
      if (!ok) return;
    }
    if (lo <= hi) FirstDerivativeCentered(x, y, lo, static_cast<std::int32_t>(hi), d, ok);
  });
}

void SecondDerivativeUpStream(const Samples& x, const Samples& y, std::int32_t i1, std::int32_t i2,
                              Derivatives& d, bool& ok) {
  trap(kSecondUpStream, [&] {
    ok = false;
    write<ForwardSecond>(x, y, i1, i2, Order::kRising, d);
    ok = true;
  });
}

void SecondDerivativeDownStream(const Samples& x, const Samples& y, std::int32_t i1,
                                std::int32_t i2, Derivatives& d, bool& ok) {
  trap(kSecondDownStream, [&] {
    ok = false;
    write<BackwardSecond>(x, y, i1, i2, Order::kRising, d);
    ok = true;
  });
}

void SecondDerivativeCentered(const Samples& x, const Samples& y, std::int32_t i1, std::int32_t i2,
                              Derivatives& d, bool& ok) {
  trap(kSecondCentered, [&] {
    ok = false;
    write<CentredSecond>(x, y, i1, i2, Order::kRising, d);
    ok = true;
  });
}

void SecondDerivatives(const Samples& x, const Samples& y, std::int32_t i1, std::int32_t i2,
                       Derivatives& d, bool& ok) {
  trap(kSecondDerivatives, [&] {
    ok = false;
    const std::int32_t n = x.upper();
    if (n < 1) raise_fault(ErrorNumber::kSubscript);
    if (can_size_results(x.bounds())) {
      // Room for n numbers that nothing uses: that it can be had is part of what this routine
      // tests.
      const auto work = std::make_unique_for_overwrite<double[]>(static_cast<std::size_t>(n));
    }
    std::int32_t lo = i1;
    std::int64_t hi = i2;
    if (i1 < 3) {
      SecondDerivativeUpStream(x, y, 1, i1, d, ok);
      lo = 2;
      if (!ok) return;
    }
    if (i2 >= n) {
      SecondDerivativeDownStream(x, y, i2, n, d, ok);
      hi = std::int64_t{n} - 1;
      if (!ok) return;
    }
    if (lo <= hi) SecondDerivativeCentered(x, y, lo, static_cast<std::int32_t>(hi), d, ok);
  });
}

}  // namespace vqmath63
