// ztMathLib's functions beside those of the C library, Boost.Math and GSL, each over the same 1024
// seeded arguments; the time is that of one call. Boost works in Double throughout, as we do. Where
// our steps are promised, also the same steps with the functions of the C library (of Boost).
#include <benchmark/benchmark.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <random>
#include <string>

#include "mathlib/math_lib.hpp"
#include "same_result.hpp"
#include "tolerant/tolerant_arithmetic.hpp"

#if VQ_HAVE_BOOST
#include <boost/math/special_functions.hpp>
#endif
#if VQ_HAVE_GSL
#include <gsl/gsl_errno.h>
#include <gsl/gsl_math.h>
#include <gsl/gsl_sf.h>
#endif

namespace {

using vqmath63::ztMathLib;

constexpr std::size_t kCount = 1024;
using Arguments = std::array<std::array<double, 3>, kCount>;

struct Range {
  double low, high;
};

Arguments draw(Range first, Range second = {}, Range third = {}) {
  std::mt19937_64 generator(63);
  Arguments all{};
  for (auto& row : all) {
    const Range ranges[] = {first, second, third};
    for (std::size_t k = 0; k < 3; ++k) {
      // By hand: the library's own distribution is not the same everywhere.
      const double unit = static_cast<double>(generator() >> 11) * 0x1p-53;
      row[k] = ranges[k].low + unit * (ranges[k].high - ranges[k].low);
    }
  }
  return all;
}

template <class F>
void add(const std::string& name, const Arguments& arguments, F function) {
  benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State& state) {
    std::size_t i = 0;
    for (auto _ : state) {
      benchmark::DoNotOptimize(function(arguments[i][0], arguments[i][1], arguments[i][2]));
      i = (i + 1) % kCount;
    }
  });
}

// A member of ours under its name.
#define VQ_OURS(arguments, call)                                                      \
  add(where + "/ours", arguments, [lib = ztMathLib()](double a, double b, double c) { \
    static_cast<void>(a), static_cast<void>(b), static_cast<void>(c);                 \
    return lib.call;                                                                  \
  })
#define VQ_PEER(peer, arguments, call)                                \
  add(where + "/" peer, arguments, [](double a, double b, double c) { \
    static_cast<void>(a), static_cast<void>(b), static_cast<void>(c); \
    return call;                                                      \
  })

#if VQ_HAVE_BOOST
using namespace boost::math::policies;
constexpr auto kPolicy = policy<promote_double<false>, overflow_error<errno_on_error>>();
#define VQ_BOOST(arguments, call) VQ_PEER("boost", arguments, boost::math::call)
#else
#define VQ_BOOST(arguments, call) static_cast<void>(0)
#endif
#if VQ_HAVE_GSL
#define VQ_GSL(arguments, call) VQ_PEER("gsl", arguments, call)
#else
#define VQ_GSL(arguments, call) static_cast<void>(0)
#endif
#define VQ_LIBC(arguments, call) VQ_PEER("libc", arguments, std::call)

constexpr double kPi = 3.14159265358979, kHalfPi = 1.5707963267949;
constexpr double kOutOfRange = 1e308;

double arc_cosine_by_steps(double x) {
  if (x == 0.0) return kHalfPi;
  if (x == 1.0) return 0.0;
  if (x == -1.0) return kPi;
  if (std::fabs(x) > 1.0) return kOutOfRange;
  const double arc = std::atan(std::sqrt(1.0 - x * x) / x);
  return x > 0.0 ? arc : arc + kPi;
}

double arc_sine_by_steps(double x) {
  if (x == 1.0) return kHalfPi;
  if (x == -1.0) return -kHalfPi;
  if (x == 0.0) return 0.0;
  if (std::fabs(x) > 1.0) return kOutOfRange;
  return std::atan(x / std::sqrt(std::fabs(1.0 - x * x)));
}

// Up to 1e-12: the functions of each library err in digits of their own.
template <class Ours, class Steps>
void add_steps(const std::string& name, const Arguments& arguments, Ours ours, Steps steps) {
  for (const auto& [a, b, c] : arguments) {
    const double expected = ours(a, b, c);
    bench::must_agree(std::fabs(steps(a, b, c) - expected) <= 1e-12 * std::fabs(expected),
                      name.c_str());
  }
  add(name, arguments, steps);
}

void elementary() {
  struct {
    const char* name;
    Range range;
    double (ztMathLib::*ours)(double) const;
    double (*libc)(double);
    double (*steps)(double) = nullptr;
  } const rows[] = {
      {"aLog", {-700, 700}, &ztMathLib::aLog, std::exp},
      {"Ln", {0.001, 1000}, &ztMathLib::Ln, std::log},
      {"Log10", {0.001, 1000}, &ztMathLib::Log10, std::log10},
      {"sine", {-10, 10}, &ztMathLib::sine, std::sin},
      {"cosine", {-10, 10}, &ztMathLib::cosine, std::cos},
      {"acos", {-1, 1}, &ztMathLib::acos, std::acos, arc_cosine_by_steps},
      {"asin", {-1, 1}, &ztMathLib::asin, std::asin, arc_sine_by_steps},
      {"sinh", {-5, 5}, &ztMathLib::sinh, std::sinh},
      {"cosh", {-5, 5}, &ztMathLib::cosh, std::cosh},
      {"tanh", {-5, 5}, &ztMathLib::tanh, std::tanh},
      {"asinh", {-5, 5}, &ztMathLib::asinh, std::asinh},
      {"acosh", {1, 10}, &ztMathLib::acosh, std::acosh},
      {"atanh", {-1, 1}, &ztMathLib::atanh, std::atanh},
      {"Square_Root", {0, 1000}, &ztMathLib::Square_Root, std::sqrt},
      {"Cube_Root", {-1000, 1000}, &ztMathLib::Cube_Root, std::cbrt},
  };
  for (const auto& row : rows) {
    const Arguments arguments = draw(row.range);
    const auto ours = [lib = ztMathLib(), f = row.ours](double a, double, double) {
      return (lib.*f)(a);
    };
    add(std::string(row.name) + "/ours", arguments, ours);
    add(std::string(row.name) + "/libc", arguments,
        [f = row.libc](double a, double, double) { return f(a); });
    if (row.steps != nullptr) {
      add_steps(std::string(row.name) + "/steps", arguments, ours,
                [f = row.steps](double a, double, double) { return f(a); });
    }
  }
  const std::string where = "x_to_Power_y";
  const Arguments arguments = draw({0.01, 100}, {-20, 20});
  VQ_OURS(arguments, x_to_Power_y(a, b));
  VQ_LIBC(arguments, pow(a, b));
}

void gamma() {
  for (const Range range : {Range{0.001, 1}, Range{1, 12}, Range{12, 171.6}, Range{-20, 0}}) {
    const std::string where = "Gamma(" + std::to_string(static_cast<int>(range.low)) + ".." +
                              std::to_string(static_cast<int>(range.high)) + ")";
    const Arguments arguments = draw(range);
    VQ_OURS(arguments, Gamma(a));
    VQ_LIBC(arguments, tgamma(a));
    VQ_BOOST(arguments, tgamma(a, kPolicy));
    VQ_GSL(arguments, gsl_sf_gamma(a));
  }
  for (const Range range : {Range{0.001, 4}, Range{4, 12}, Range{12, 1000}}) {
    const std::string where = "LoGamma(" + std::to_string(static_cast<int>(range.low)) + ".." +
                              std::to_string(static_cast<int>(range.high)) + ")";
    const Arguments arguments = draw(range);
    VQ_OURS(arguments, LoGamma(a));
    VQ_LIBC(arguments, lgamma(a));
    VQ_BOOST(arguments, lgamma(a, kPolicy));
    VQ_GSL(arguments, gsl_sf_lngamma(a));
  }
}

void erf() {
  for (const Range range : {Range{-0.46, 0.46}, Range{0.5, 4}, Range{4, 8}}) {
    const std::string where = "Erf(" + std::to_string(range.low).substr(0, 4) + ".." +
                              std::to_string(range.high).substr(0, 4) + ")";
    const Arguments arguments = draw(range);
    VQ_OURS(arguments, Erf(a));
    VQ_LIBC(arguments, erf(a));
    VQ_BOOST(arguments, erf(a, kPolicy));
    VQ_GSL(arguments, gsl_sf_erf(a));
  }
}

void incomplete() {
  {
    const std::string where = "beta(0.25..80)";
    const Arguments arguments = draw({0.25, 80}, {0.25, 80});
    VQ_OURS(arguments, beta(a, b));
    VQ_LIBC(arguments, beta(a, b));
    VQ_BOOST(arguments, beta(a, b, kPolicy));
    VQ_GSL(arguments, gsl_sf_beta(a, b));
    const auto ours = [lib = ztMathLib()](double a, double b, double) { return lib.beta(a, b); };
    add_steps(where + "/steps, libc", arguments, ours, [](double a, double b, double) {
      return std::tgamma(b) * std::tgamma(a) / std::tgamma(a + b);
    });
#if VQ_HAVE_BOOST
    add_steps(where + "/steps, boost", arguments, ours, [](double a, double b, double) {
      using boost::math::tgamma;
      return tgamma(b, kPolicy) * tgamma(a, kPolicy) / tgamma(a + b, kPolicy);
    });
#endif
  }
  for (const Range range : {Range{0.05, 2}, Range{2, 50}}) {
    const std::string to = "(.." + std::to_string(static_cast<int>(range.high)) + ")";
    std::string where = "BetaI" + to;
    const Arguments arguments = draw(range, range, {0.05, 0.95});
    VQ_OURS(arguments, BetaI(a, b, c));
    VQ_BOOST(arguments, ibeta(a, b, c, kPolicy));
    VQ_GSL(arguments, gsl_sf_beta_inc(a, b, c));
    where = "Gamma_P" + to;
    VQ_OURS(arguments, Gamma_P(a, 2 * a * c));
    VQ_BOOST(arguments, gamma_p(a, 2 * a * c, kPolicy));
    VQ_GSL(arguments, gsl_sf_gamma_inc_P(a, 2 * a * c));
    where = "Gamma_CF" + to;
    VQ_OURS(arguments, Gamma_CF(a, a + 1 + 2 * b));
    VQ_BOOST(arguments, gamma_q(a, a + 1 + 2 * b, kPolicy));
    VQ_GSL(arguments, gsl_sf_gamma_inc_Q(a, a + 1 + 2 * b));
  }
}

void counting() {
  std::string where = "Factorial";
  Arguments arguments = draw({0, 171});
  VQ_OURS(arguments, Factorial(static_cast<std::int32_t>(a)));
  VQ_BOOST(arguments, factorial<double>(static_cast<unsigned>(a), kPolicy));
  VQ_GSL(arguments, gsl_sf_fact(static_cast<unsigned>(a)));
  where = "Combination";
  arguments = draw({100, 170}, {0, 100});
  VQ_OURS(arguments, Combination(static_cast<std::int32_t>(a), static_cast<std::int32_t>(b)));
  VQ_BOOST(arguments, binomial_coefficient<double>(static_cast<unsigned>(a),
                                                   static_cast<unsigned>(b), kPolicy));
  VQ_GSL(arguments, gsl_sf_choose(static_cast<unsigned>(a), static_cast<unsigned>(b)));
  where = "Factor";
  arguments = draw({1, 2147483647}, {1, 2147483647});
  VQ_OURS(arguments, Factor(static_cast<std::int32_t>(a), static_cast<std::int32_t>(b)));
}

void tolerant() {
  const std::string where = "tolerant difference";
  const Arguments arguments = draw({1, 2}, {1, 2});
  VQ_PEER("ArithmeticS", arguments,
          vqmath63::ArithmeticS(static_cast<float>(a), static_cast<float>(b), "-"));
  VQ_PEER("ArithmeticDiff", arguments,
          vqmath63::ArithmeticDiff(static_cast<float>(a), static_cast<float>(b), 1e-6F));
  VQ_PEER("by hand", arguments, ([](float x, float y) {
            const float larger = std::fmax(std::fabs(x), std::fabs(y));
            const float d = x - y;
            return larger != 0.0F && std::fabs(d / larger) < 1e-6F ? 0.0F : d;
          }(static_cast<float>(a), static_cast<float>(b))));
}

void Creation(benchmark::State& state) {
  for (auto _ : state) {
    ztMathLib* lib = new ztMathLib;
    benchmark::DoNotOptimize(lib);
    delete lib;
  }
}
BENCHMARK(Creation);

}  // namespace

int main(int argc, char** argv) {
#if VQ_HAVE_GSL
  gsl_set_error_handler_off();
#endif
  elementary();
  gamma();
  erf();
  incomplete();
  counting();
  tolerant();
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
}
