// Holds the elementary functions to correctly rounded values of MPFR: millions of seeded arguments
// a function, by both quick ways, dense where reductions and tables change, beside 0 and 1, over
// all exponents, and beside what is hard to round. Built and run by tools/prove_elementary.sh.
//
// usage: prove_elementary COUNT [FUNCTION...]
#include <mpfr.h>

#include <bit>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "elementary/functions.hpp"

namespace {

namespace ours = vqmath63::elementary;
using One = double (*)(double);
using Two = double (*)(double, double);

class Chance {
 public:
  double real() { return static_cast<double>(bits_() >> 11U) * 0x1p-53; }
  std::uint64_t below(std::uint64_t n) { return bits_() % n; }
  // Any finite number greater than zero, each exponent as often.
  double any() { return std::bit_cast<double>(bits_() % 0x7FF0'0000'0000'0000); }
  double sign() { return below(2) == 0 ? 1.0 : -1.0; }
  double small(std::uint64_t depth) { return std::ldexp(real(), -static_cast<int>(below(depth))); }
  // Within some units in the last place.
  double beside(double x) {
    const double towards = sign() * HUGE_VAL;
    for (std::uint64_t k = below(4); k > 0; --k) x = std::nextafter(x, towards);
    return x;
  }

 private:
  std::mt19937_64 bits_{63};
};

double exponent(Chance& c) {
  switch (c.below(5)) {
    case 0:
      return c.sign() * c.small(64);
    case 1:
      return c.beside((static_cast<double>(c.below(1 << 22U)) - 0x1p21) * 0x1p-12 * M_LN2);
    case 2:
      return -708.0 - 38.0 * c.real();
    case 3:
      return c.sign() * c.any();
    default:
      return -745.0 + 1455.0 * c.real();
  }
}
double positive(Chance& c) {
  switch (c.below(5)) {
    case 0:
      return c.beside(1.0) + c.sign() * c.small(52);
    case 1:
      return c.beside(0.6875 + static_cast<double>(c.below(352)) / 512);
    case 2:
      return c.beside(static_cast<double>(c.below(100000)) + 1.0);
    case 3:
      return 10.0 * c.real();
    default:
      return c.any();
  }
}
double above_minus_one(Chance& c) {
  return c.below(2) == 0   ? positive(c)
         : c.below(2) == 0 ? c.sign() * c.small(70)
                           : positive(c) - 1.0;
}
double angle(Chance& c) {
  switch (c.below(6)) {
    case 0:
      return c.sign() * c.small(60) * 4.0;
    case 1:
      return c.beside(static_cast<double>(c.below(1 << 20U)) * (M_PI / 512));
    case 2:
      return c.beside(static_cast<double>(c.below(1ULL << 50U)) * M_PI_2);
    case 3:
      return c.sign() * 9000.0 * c.real();
    case 4:
      return c.sign() * 100.0 * c.real();
    default:
      return c.sign() * c.any();
  }
}
double tangent(Chance& c) {
  switch (c.below(4)) {
    case 0:
      return c.sign() * c.beside(static_cast<double>(c.below(257)) / 256);
    case 1:
      return c.sign() * c.beside(256.0 / static_cast<double>(c.below(256) + 1));
    case 2:
      return c.sign() * 4.0 * c.real();
    default:
      return c.sign() * c.any();
  }
}
struct Arguments {
  double x, y;
};
Arguments powers(Chance& c) {
  switch (c.below(6)) {
    case 0:
      return {10.0, c.sign() * 330.0 * c.real()};
    case 1:
      return {1.0 + c.sign() * c.small(50) / 2.0, c.sign() * c.any()};
    case 2:
      return {c.any(), c.sign() * 2.0 * c.real()};
    case 3:
      return {static_cast<double>(c.below(1 << 18U) + 1), 0.5 * static_cast<double>(c.below(9))};
    case 4:
      return {c.any(), std::ldexp(c.sign() * c.real(), -static_cast<int>(c.below(60)))};
    default:
      return {10.0 * c.real(), c.sign() * 20.0 * c.real()};
  }
}
Arguments points(Chance& c) {
  switch (c.below(5)) {
    case 0:
      return {c.sign() * c.any(), c.sign() * c.any()};
    case 1:
      return {c.sign() * static_cast<double>(c.below(300)),
              c.sign() * (1.0 + static_cast<double>(c.below(300)))};
    case 2: {
      const double x = c.any();
      return {c.sign() * x * c.real(), c.sign() * x};
    }
    case 3:
      return {c.sign() * static_cast<double>(c.below(1ULL << 53U)),
              static_cast<double>(c.below(1ULL << 53U))};
    default:
      return {c.sign() * c.real(), c.sign() * c.real()};
  }
}

struct Function {
  std::string name;
  std::vector<Two> ways;
  std::function<Arguments(Chance&)> draw;
  std::function<int(mpfr_t, mpfr_t, mpfr_t)> exact;
};

template <One kOne>
double alone(double x, double) {
  return kOne(x);
}
template <double kDraw(Chance&)>
Arguments one(Chance& c) {
  return {kDraw(c), 0.0};
}

#define ONE(name, draw)                                                               \
  {                                                                                   \
#name, {alone < ours::portable::name>, alone < ours::fused::name> }, one < draw>, \
            [](mpfr_t r, mpfr_t x, mpfr_t) { return mpfr_##name(r, x, MPFR_RNDN); }   \
  }
#define TWO(name, draw)                                                                  \
  {                                                                                      \
#name, {ours::portable::name, ours::fused::name }, draw,                             \
            [](mpfr_t r, mpfr_t x, mpfr_t y) { return mpfr_##name(r, x, y, MPFR_RNDN); } \
  }

const std::vector<Function> kFunctions = {
    ONE(exp, exponent),   ONE(log, positive), ONE(log1p, above_minus_one),
    ONE(log10, positive), ONE(sin, angle),    ONE(cos, angle),
    ONE(tan, angle),      ONE(atan, tangent), TWO(pow, powers),
    TWO(atan2, points),   TWO(hypot, points)};

// Arguments of which a value differs.
long prove(const Function& f, long count) {
  Chance chance;
  mpfr_t x, y, value, fine;
  mpfr_inits2(53, x, y, value, static_cast<mpfr_ptr>(nullptr));
  mpfr_init2(fine, 106);
  long wrong = 0;
  for (long i = 0; i < count; ++i) {
    const Arguments at = f.draw(chance);
    mpfr_set_d(x, at.x, MPFR_RNDN);
    mpfr_set_d(y, at.y, MPFR_RNDN);
    const int side = f.exact(value, x, y);
    mpfr_subnormalize(value, side, MPFR_RNDN);
    const double want = mpfr_get_d(value, MPFR_RNDN);
    for (const Two way : f.ways) {
      const double got = way(at.x, at.y);
      if (std::bit_cast<std::uint64_t>(got) == std::bit_cast<std::uint64_t>(want) ||
          (std::isnan(got) && std::isnan(want)))
        continue;
      if (++wrong <= 5)
        std::printf("%s(%a, %a) is %a, not %a\n", f.name.c_str(), at.x, at.y, want, got);
    }
  }
  mpfr_clears(x, y, value, fine, static_cast<mpfr_ptr>(nullptr));
  return wrong;
}

}  // namespace

int main(int count, char** words) {
  mpfr_set_emin(-1073);  // the range of Doubles, with its subnormal numbers
  mpfr_set_emax(1024);
  const long arguments = count > 1 ? std::atol(words[1]) : 100'000;
  bool right = true;
  for (const Function& f : kFunctions) {
    bool wanted = count <= 2;
    for (int i = 2; i < count; ++i) wanted = wanted || f.name == words[i];
    if (!wanted) continue;
    const auto start = std::chrono::steady_clock::now();
    const long wrong = prove(f, arguments);
    const std::chrono::duration<double> passed = std::chrono::steady_clock::now() - start;
    std::printf("%-6s %ld arguments, %ld wrong, %.0f s\n", f.name.c_str(), arguments, wrong,
                passed.count());
    std::fflush(stdout);
    right = right && wrong == 0;
  }
  return right ? 0 : 1;
}
