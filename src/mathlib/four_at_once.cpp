#include "mathlib/four_at_once.hpp"

#ifdef VQ_FOUR_AT_ONCE

// What is compiled for every processor elsewhere.
#include <immintrin.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <limits>

#include "elementary/functions.hpp"
#include "elementary/pair.hpp"
#include "elementary/sure.hpp"
#include "elementary/tables.hpp"
#include "mathlib/cody_tables.hpp"
#include "mathlib/constants.hpp"
#include "mathlib/exp_of_squares.hpp"

#ifdef __clang__
#pragma clang attribute push(__attribute__((target("avx2,fma"))), apply_to = function)
#else
#pragma GCC push_options
#pragma GCC target("avx2,fma")
#endif

#define VQ_FUSED_WAY
#include "mathlib/four_functions.hpp"
#include "mathlib/four_incomplete.hpp"

namespace vqmath63::special {
namespace {

using fused::Four;
using fused::FourResults;
using fused::FourTruths;

// The numbers of the calls to make: a list of those in a block that take one way.
using Calls = std::uint16_t[kMostInBlock + 3];

Four gathered(const double* column, const std::uint16_t* calls) {
  return Four{column[calls[0]], column[calls[1]], column[calls[2]], column[calls[3]]};
}

// Makes the calls of a list, four at a time; some are made twice where the last four are not full.
template <class Function>
[[gnu::always_inline]] inline void make(Calls& calls, std::size_t count, double* results,
                                        bool* done, Function function) noexcept {
  if (count == 0) return;
  for (std::size_t k = 0; k < 3; ++k) calls[count + k] = calls[count - 1];
  for (std::size_t i = 0; i < count; i += 4) {
    const FourResults four = function(&calls[i]);
    const unsigned good = elementary::fused::truths(four.good);
    for (std::size_t k = 0; k < 4; ++k) {
      results[calls[i + k]] = four.values[k];
      done[calls[i + k]] = (good >> k & 1U) != 0;
    }
  }
}

// The same for a function of one argument, over calls in their order; the last four may be some
// that were made before.
template <FourResults (*kFunction)(Four)>
void make_all(const double* x, double* results, bool* done, std::size_t count) noexcept {
  for (std::size_t i = 0; i < count; i += 4) {
    if (count - i < 4) {
      if (count < 4) {
        for (; i < count; ++i) done[i] = false;
        return;
      }
      i = count - 4;
    }
    const FourResults four = kFunction(_mm256_loadu_pd(x + i));
    _mm256_storeu_pd(results + i, four.values);
    const unsigned good = elementary::fused::truths(four.good);
    for (std::size_t k = 0; k < 4; ++k) done[i + k] = (good >> k & 1U) != 0;
  }
}

// What the four may be asked for.
bool between(double x, double low, double high) {
  return x >= low && x <= high;
}

FourResults log_gamma_results(Four x) {
  const FourTruths good = (x > 0.0) & (x <= 2.25e76);
  return {fused::log_gamma(fused::chosen(good, x, fused::four(1.0))), good};
}

}  // namespace

const bool kFourAtOnce = __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma");

void erf_block(const double* const* arguments, double* results, bool* done,
               std::size_t count) noexcept {
  make_all<fused::erf>(arguments[0], results, done, count);
}

void gamma_block(const double* const* arguments, double* results, bool* done,
                 std::size_t count) noexcept {
  make_all<fused::gamma>(arguments[0], results, done, count);
}

void log_gamma_block(const double* const* arguments, double* results, bool* done,
                     std::size_t count) noexcept {
  make_all<log_gamma_results>(arguments[0], results, done, count);
}

void beta_block(const double* const* arguments, double* results, bool* done,
                std::size_t count) noexcept {
  const double* const a = arguments[0];
  const double* const b = arguments[1];
  for (std::size_t i = 0; i < count; ++i) {
    const FourResults gammas = fused::gamma(Four{b[i], a[i], a[i] + b[i], 1.0});
    results[i] = gammas.values[0] * gammas.values[1] / gammas.values[2];
    done[i] =
        fused::all(gammas.good) && std::fabs(results[i]) <= std::numeric_limits<double>::max();
  }
}

void incomplete_gamma_block(const double* const* arguments, double* results, bool* done,
                            std::size_t count) noexcept {
  const double* const a = arguments[0];
  const double* const x = arguments[1];
  Calls calls[2];
  std::size_t counts[2] = {0, 0};
  for (std::size_t i = 0; i < count; ++i) {
    const bool fraction = !(x[i] < a[i] + 1.0);
    calls[fraction][counts[fraction]] = static_cast<std::uint16_t>(i);
    const bool plain = between(a[i], 1e-100, 1e70) && between(x[i], 1e-100, 1e100);
    counts[fraction] += plain ? 1 : 0;
    done[i] = false;
  }
  make(calls[0], counts[0], results, done, [=](const std::uint16_t* at) {
    return fused::gamma_series(gathered(a, at), gathered(x, at));
  });
  make(calls[1], counts[1], results, done, [=](const std::uint16_t* at) {
    return fused::gamma_fraction(gathered(a, at), gathered(x, at));
  });
}

void incomplete_beta_block(const double* const* arguments, double* results, bool* done,
                           std::size_t count) noexcept {
  Calls calls;
  std::size_t made = 0;
  const double* const a = arguments[0];
  const double* const b = arguments[1];
  const double* const x = arguments[2];
  for (std::size_t i = 0; i < count; ++i) {
    calls[made] = static_cast<std::uint16_t>(i);
    const bool plain =
        between(a[i], 1e-50, 1e50) && between(b[i], 1e-50, 1e50) && x[i] > 0.0 && x[i] < 1.0;
    made += plain ? 1 : 0;
    done[i] = false;
  }
  make(calls, made, results, done, [=](const std::uint16_t* at) {
    return fused::incomplete_beta(gathered(a, at), gathered(b, at), gathered(x, at));
  });
}

}  // namespace vqmath63::special

#ifdef __clang__
#pragma clang attribute pop
#else
#pragma GCC pop_options
#endif

#endif
