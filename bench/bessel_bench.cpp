// The Bessel functions beside those of the C library, Boost.Math and GSL, each over the same 1024
// seeded arguments; the time is that of one call. Boost works in Double throughout, as we do.
#include <benchmark/benchmark.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <random>
#include <string>

#include "mathlib/bessel.hpp"

#if VQ_HAVE_BOOST
#include <boost/math/special_functions/bessel.hpp>
#endif
#if VQ_HAVE_GSL
#include <gsl/gsl_errno.h>
#include <gsl/gsl_sf_bessel.h>
#endif

namespace {

constexpr std::size_t kCount = 1024;

struct Case {
  int order;
  double low, high;
};
constexpr Case kCases[] = {{0, 0, 2},         {0, 2, 8},           {0, 8, 25},
                           {0, 25, 600},      {0, 1e4, 1e5},       {0, 1e8, 1e9},
                           {1, 0, 2},         {1, 2, 8},           {1, 8, 25},
                           {1, 25, 600},      {2, 0.1, 1.5},       {2, 2, 20},
                           {10, 0.1, 3},      {10, 3.5, 10},       {10, 10, 30},
                           {10, 100, 600},    {30, 6, 30},         {30, 30, 90},
                           {100, 5, 9},       {100, 11, 100},      {100, 100, 150},
                           {100, 150, 600},   {1000, 800, 990},    {1000, 1000, 1100},
                           {1000, 2000, 1e4}, {10000, 9500, 9900}, {10000, 20000, 50000}};

template <class F>
void add(const std::string& name, const Case& c, F function) {
  const std::string full = name + " n=" + std::to_string(c.order) + " " +
                           std::to_string(static_cast<long>(c.low)) + ".." +
                           std::to_string(static_cast<long>(std::ceil(c.high)));
  benchmark::RegisterBenchmark(full.c_str(), [=](benchmark::State& state) {
    std::mt19937_64 generator(63);
    static std::array<double, kCount>
        arguments;  // not on the stack, where calls of both kinds stall
    for (double& x : arguments) {
      // By hand: the library's own distribution is not the same everywhere.
      x = c.low + (c.high - c.low) * (static_cast<double>(generator() >> 11) * 0x1p-53);
    }
    std::size_t i = 0;
    for (auto _ : state) {
      benchmark::DoNotOptimize(function(arguments[i]));
      i = (i + 1) % kCount;
    }
  });
}

void add_ours(const Case& c) {
  using namespace vqmath63;
  const std::int32_t n = c.order;
  const bool small = c.high < 700.0;
  if (n == 0) {
    add("J ours", c, [](double x) { return J0(x); });
    add("Y ours", c, [](double x) { return vqmath63::y0(x); });
    if (small) add("I ours", c, [](double x) { return I0(x); });
    if (small) add("K ours", c, [](double x) { return K0(x); });
  } else if (n == 1) {
    add("J ours", c, [](double x) { return J1(x); });
    add("Y ours", c, [](double x) { return vqmath63::y1(x); });
    if (small) add("I ours", c, [](double x) { return i1(x); });
    if (small) add("K ours", c, [](double x) { return K1(x); });
  } else {
    add("J ours", c, [n](double x) { return Jbn(n, x); });
    add("Y ours", c, [n](double x) { return Ybn(n, x); });
    if (small) add("I ours", c, [n](double x) { return Ibn(n, x); });
    if (small) add("K ours", c, [n](double x) { return Kbn(n, x); });
  }
}

void add_peers(const Case& c) {
  const int n = c.order;
  [[maybe_unused]] const bool small = c.high < 700.0;
#ifdef __GLIBC__
  if (n == 0) {
    add("J libm", c, [](double x) { return ::j0(x); });
    add("Y libm", c, [](double x) { return ::y0(x); });
  } else if (n == 1) {
    add("J libm", c, [](double x) { return ::j1(x); });
    add("Y libm", c, [](double x) { return ::y1(x); });
  } else {
    add("J libm", c, [n](double x) { return ::jn(n, x); });
    add("Y libm", c, [n](double x) { return ::yn(n, x); });
  }
#endif
#if VQ_HAVE_BOOST
  using Policy = boost::math::policies::policy<boost::math::policies::promote_double<false>>;
  add("J boost", c, [n](double x) { return boost::math::cyl_bessel_j(n, x, Policy()); });
  add("Y boost", c, [n](double x) { return boost::math::cyl_neumann(n, x, Policy()); });
  if (small) {
    add("I boost", c, [n](double x) { return boost::math::cyl_bessel_i(n, x, Policy()); });
    add("K boost", c, [n](double x) { return boost::math::cyl_bessel_k(n, x, Policy()); });
  }
#endif
#if VQ_HAVE_GSL
  gsl_set_error_handler_off();
  add("J gsl", c, [n](double x) { return gsl_sf_bessel_Jn(n, x); });
  add("Y gsl", c, [n](double x) { return gsl_sf_bessel_Yn(n, x); });
  if (small) {
    add("I gsl", c, [n](double x) { return gsl_sf_bessel_In(n, x); });
    add("K gsl", c, [n](double x) { return gsl_sf_bessel_Kn(n, x); });
  }
#endif
}

[[maybe_unused]] const bool kRegistered = [] {
  for (const Case& c : kCases) {
    add_ours(c);
    add_peers(c);
  }
  return true;
}();

}  // namespace
