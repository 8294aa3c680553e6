// The Bessel functions against values of 60 digits, and what holds between them.
#include "mathlib/bessel.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

#include "frame/test_table.hpp"
#include "mathlib/bessel_constants.hpp"

namespace vqmath63 {
namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kTiny = std::numeric_limits<double>::denorm_min();
constexpr std::int32_t kLargest = std::numeric_limits<std::int32_t>::max();

struct Function {
  char kind;
  double (*of_order)(std::int32_t, double);
  double (*of_zero)(double);
  double (*of_one)(double);
  double bound;         // of the error over its scale, orders 0 and 1
  double order_bound;   // orders to 300
  double beyond_bound;  // orders to 10000
};
// The bounds that bessel.hpp and the accuracy table state.
constexpr Function kFunctions[] = {
    {'j', Jbn, J0, J1, 1e-15, 8e-15, 3e-15},
    {'y', Ybn, y0, y1, 1e-15, 8e-15, 3e-15},
    {'i', Ibn, I0, i1, 1e-15, 4e-15, 1e-15},
    {'k', Kbn, K0, K1, 1e-15, 5e-15, 1e-15},
};

bool same(double a, double b) {
  return std::isnan(a) ? std::isnan(b) : a == b && std::signbit(a) == std::signbit(b);
}

TEST(Bessel, values_of_60_digits) {
  std::size_t count = 0;
  each_row("bessel_cases.tsv", "", 188, [&](const TableRow& row) {
    const std::string kinds = row["functions"];
    const std::int32_t n = row["order"];
    const double x = row["argument"];
    const std::vector<double> values = row["values"], rests = row["rests"], scales = row["scales"];
    for (const Function& f : kFunctions) {
      const std::size_t at = kinds.find(f.kind);
      if (at == kinds.npos) continue;
      const double value = values.at(at), scale = scales.at(at);
      double bound = n < 2 ? f.bound : n <= 300 ? f.order_bound : f.beyond_bound;
      // Past the recurrences' last orders I and K are expansions.
      if ((f.kind == 'i' && n > 70) || (f.kind == 'k' && n > 80)) bound = f.beyond_bound;
      // Errors grow over the thousands of steps across the turning point.
      if (n == kLargest) bound = 1e-12;
      // Beside zeros, the first of Y apart, nothing is lost to their places.
      if (n < 2 && x > 2.3 && std::fabs(value) < 1e-9 * scale) bound = 1e-16;
      const double got = f.of_order(n, x);
      const double error = std::fabs((got - value) - rests.at(at));
      EXPECT_LE(error, bound * scale + kTiny) << f.kind << " of order " << n << " at " << x << ": "
                                              << got << ", error " << error / scale;
      const double named = n == 0 ? f.of_zero(x) : n == 1 ? f.of_one(x) : got;
      EXPECT_TRUE(same(named, got)) << n << " at " << x << ": " << named;
      ++count;
    }
  });
  EXPECT_EQ(count, 367U);
}

TEST(Bessel, ends_of_the_domains) {
  each_row("mathlib.tsv", "bessel ends", 84, [](const TableRow& row) {
    const char kind = row["kind"];
    const std::int32_t n = row["order"];
    const double x = row["x"], want = row["want"];
    for (const Function& f : kFunctions) {
      if (f.kind != kind) continue;
      const double got = f.of_order(n, x);
      EXPECT_TRUE(same(got, want)) << got;
      if (n != 0 && n != 1) continue;
      const double named = n == 0 ? f.of_zero(x) : f.of_one(x);
      EXPECT_TRUE(same(named, want)) << named;
    }
  });
  for (const Function& f : kFunctions) {
    EXPECT_TRUE(std::isnan(f.of_zero(kNaN)) && std::isnan(f.of_one(kNaN))) << f.kind;
    for (const std::int32_t n : {0, 1, 2, 50, 1000, kLargest}) {
      EXPECT_TRUE(std::isnan(f.of_order(n, kNaN))) << f.kind << n;
    }
  }
}

// J(n + 1) Y(n) - J(n) Y(n + 1) = 2 / (pi x), I(n) K(n + 1) + I(n + 1) K(n) = 1 / x; DLMF 10.5.2,
// 10.28.2. Orders and arguments over all branches and their borders.
TEST(Bessel, wronskians) {
  std::mt19937_64 random(20);
  std::uniform_real_distribution<double> uniform(0.0, 1.0);
  constexpr double kBound = 2e-14;
  int circular = 0, modified = 0;
  for (int i = 0; i < 20000; ++i) {
    const auto n = static_cast<std::int32_t>(std::exp(uniform(random) * std::log(20000.0))) - 1;
    const double x = (n + 1) * std::exp(8.0 * uniform(random) * uniform(random) - 1.0);
    const double j0 = Jbn(n, x), j1 = Jbn(n + 1, x), y0 = Ybn(n, x), y1 = Ybn(n + 1, x);
    if (std::fabs(j1) > 1e-290 && y1 > -1e290) {
      ++circular;
      const double want = 2.0 / (3.14159265358979324 * x);
      const double scale = std::fabs(j1 * y0) + std::fabs(j0 * y1) + want;
      EXPECT_LE(std::fabs(j1 * y0 - j0 * y1 - want), kBound * scale) << "n " << n << ", x " << x;
    }
    const double i0 = Ibn(n, x), i1 = Ibn(n + 1, x), k0 = Kbn(n, x), k1 = Kbn(n + 1, x);
    if (i1 > 1e-290 && k1 < 1e290 && i0 < 1e290 && k0 > 1e-290) {
      ++modified;
      EXPECT_LE(std::fabs(x * (i0 * k1 + i1 * k0) - 1.0), kBound) << "n " << n << ", x " << x;
    }
  }
  EXPECT_GT(circular, 5000);
  EXPECT_GT(modified, 5000);
}

// u_k(1) is (-1)^k times the k-th coefficient of Stirling's series for Gamma, DLMF 5.11.4; those
// beyond the fourth are below 0.1.
TEST(Bessel, debyes_polynomials_at_one_are_stirlings_coefficients) {
  const double known[] = {1, -1.0 / 12, 1.0 / 288, 139.0 / 51840, -571.0 / 2488320};
  const double* c = bessel::kDebye;
  for (std::size_t k = 0; k <= 16; ++k) {
    double sum = 0, largest = 0;
    for (std::size_t j = 0; j <= k; ++j, ++c) {
      sum += *c;
      largest = std::max(largest, std::fabs(*c));
    }
    const bool is_known = k < std::size(known);
    EXPECT_NEAR(sum, is_known ? known[k] : 0, (is_known ? 0 : 0.1) + largest * 0x1p-50) << k;
  }
  EXPECT_EQ(c, std::end(bessel::kDebye));
}

// 2^(k/64) 2^((64-k)/64) is 2, in both parts.
TEST(Bessel, powers_of_two_go_together) {
  const double* powers = bessel::kPowersOfTwo;
  for (int k = 0; k < 64; ++k) {
    const double* other = k == 0 ? powers : powers + 2 * (64 - k);
    const double low = powers[2 * k] * other[1] + powers[2 * k + 1] * other[0];
    const double rest = std::fma(powers[2 * k], other[0], k == 0 ? -1.0 : -2.0) + low;
    EXPECT_LT(std::fabs(rest), 0x1p-104) << k;
  }
}

TEST(Bessel, parity) {
  int count = 0;
  for (const std::int32_t n : {0, 1, 2, 3, 50, 51, 200, 201, 5001}) {
    for (const double x : {1e-310, 0.5, 1.99, 9.0, 48.0, 199.5, 700.0, 5000.5, 1e12}) {
      const double sign = n % 2 == 0 ? 1.0 : -1.0;
      EXPECT_TRUE(same(Jbn(n, -x), sign * Jbn(n, x))) << n << " " << x;
      EXPECT_TRUE(same(Ibn(n, -x), sign * Ibn(n, x))) << n << " " << x;
      ++count;
    }
  }
  EXPECT_EQ(count, 81);
}

}  // namespace
}  // namespace vqmath63
