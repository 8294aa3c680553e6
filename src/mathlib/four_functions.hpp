// The gamma function, its logarithm and the error function of four Doubles at once: the steps of
// gamma.cpp, error_function.cpp and ways/, each lane's in the same order. What a member does in one
// of several ways is done in all that one of the lanes takes, and each lane keeps its own.
#pragma once

#include <cstddef>
#include <iterator>

#include "elementary/ways/four.hpp"
#include "mathlib/cody_tables.hpp"
#include "mathlib/constants.hpp"
#include "mathlib/exp_of_squares.hpp"

namespace vqmath63::special::fused {
namespace {

using elementary::fused::all;
using elementary::fused::any;
using elementary::fused::at;
using elementary::fused::chosen;
using elementary::fused::Four;
using elementary::fused::four;
using elementary::fused::FourBits;
using elementary::fused::FourTruths;
using elementary::fused::magnitude;

/// Results, and whether they are good.
struct FourResults {
  Four values;
  FourTruths good;
};

inline Four stirling_sum(Four y) {
  const Four inverse = 1.0 / (y * y);
  Four sum = four(cody::kStirling[6]);
  for (std::size_t i = 0; i < 6; ++i) sum = sum * inverse + cody::kStirling[i];
  return sum / y;
}

// Gamma of 0 < y < 12.
inline Four gamma_to_12(Four y) {
  const FourTruths small = y < 1.0;
  const Four steps = chosen(small, four(0.0), _mm256_floor_pd(y) - 1.0);
  const Four z = chosen(small, y, y - steps - 1.0);
  Four numerator = four(0.0);
  Four denominator = four(1.0);
  for (std::size_t i = 0; i < std::size(cody::kGammaP); ++i) {
    numerator = (numerator + cody::kGammaP[i]) * z;
    denominator = denominator * z + cody::kGammaQ[i];
  }
  Four value = numerator / denominator + 1.0;
  Four factor = z + 1.0;
  for (double step = 0.0; any(step < steps); ++step) {
    value = chosen(step < steps, value * factor, value);
    factor += 1.0;
  }
  return chosen(small, value / y, value);
}

inline FourResults gamma(Four y) {
  const FourTruths good = (y >= 2.22e-16) & (y <= 171.624);
  const FourTruths far = y >= 12.0;
  Four values = four(0.0);
  if (!all(far)) values = gamma_to_12(chosen(far, four(1.0), y));
  if (any(far & good)) {
    const Four from_12 = chosen(far & good, y, four(12.0));
    const Four sum = stirling_sum(from_12) - from_12 + constants::kLogSqrtTwoPi;
    const Four logarithm = sum + (from_12 - 0.5) * elementary::fused::log(from_12);
    values = chosen(far, elementary::fused::exp(logarithm), values);
  }
  return {values, good};
}

inline Four log_gamma_to_12(Four x) {
  constexpr double kReduction = 0.6796875;
  const FourTruths reduced = x < kReduction;
  const FourTruths around_2 = ((x > 0.5) & reduced) | ((x > 1.5) & (x <= 4.0));
  const FourTruths around_4 = x > 4.0;
  const auto of_fit = [&](double first, double second, double fourth) {
    return chosen(around_4, four(fourth), chosen(around_2, four(second), four(first)));
  };
  const Four base = chosen(around_4, four(4.0),
                           chosen(x > 1.5, four(2.0), chosen(x > 0.5, four(1.0), four(0.0))));
  const Four d = x - base;
  Four numerator = four(0.0);
  Four denominator = chosen(around_4, four(-1.0), four(1.0));
  for (std::size_t i = 0; i < std::size(cody::kLogGammaP1); ++i) {
    numerator =
        numerator * d + of_fit(cody::kLogGammaP1[i], cody::kLogGammaP2[i], cody::kLogGammaP4[i]);
    denominator =
        denominator * d + of_fit(cody::kLogGammaQ1[i], cody::kLogGammaQ2[i], cody::kLogGammaQ4[i]);
  }
  const Four value = of_fit(cody::kLogGammaD1, cody::kLogGammaD2, cody::kLogGammaD4) +
                     d * (numerator / denominator);
  Four correction = four(0.0);
  if (any(reduced)) correction = chosen(reduced, -elementary::fused::log(x), correction);
  const Four values = chosen(around_4, value, correction + d * value);
  return chosen(x <= 2.22e-16, correction, values);
}

/// For 0 < x <= 2.25e76.
inline Four log_gamma(Four x) {
  const FourTruths far = x > 12.0;
  Four values = four(0.0);
  if (!all(far)) values = log_gamma_to_12(chosen(far, four(1.0), x));
  if (any(far)) {
    const Four from_12 = chosen(far, x, four(12.0));
    const Four logarithm = elementary::fused::log(from_12);
    const Four value = stirling_sum(from_12) + constants::kLogSqrtTwoPi - 0.5 * logarithm +
                       from_12 * (logarithm - 1.0);
    values = chosen(far, value, values);
  }
  return values;
}

inline Four erf_near_0(Four x, Four y) {
  const Four square = chosen(y > 1.5e-16, y * y, four(0.0));
  Four numerator = cody::kErfA[4] * square;
  Four denominator = square;
  for (std::size_t i = 0; i < 3; ++i) {
    numerator = (numerator + cody::kErfA[i]) * square;
    denominator = (denominator + cody::kErfB[i]) * square;
  }
  return x * (numerator + cody::kErfA[3]) / (denominator + cody::kErfB[3]);
}

inline Four erfc_to_4(Four y) {
  Four numerator = cody::kErfC[8] * y;
  Four denominator = y;
  for (std::size_t i = 0; i < 7; ++i) {
    numerator = (numerator + cody::kErfC[i]) * y;
    denominator = (denominator + cody::kErfD[i]) * y;
  }
  return (numerator + cody::kErfC[7]) / (denominator + cody::kErfD[7]);
}

inline Four erfc_from_4(Four y) {
  const Four inverse = 1.0 / (y * y);
  Four numerator = cody::kErfP[5] * inverse;
  Four denominator = inverse;
  for (std::size_t i = 0; i < 4; ++i) {
    numerator = (numerator + cody::kErfP[i]) * inverse;
    denominator = (denominator + cody::kErfQ[i]) * inverse;
  }
  const Four ratio = inverse * (numerator + cody::kErfP[4]) / (denominator + cody::kErfQ[4]);
  return (constants::kOneOverSqrtPi - ratio) / y;
}

inline FourResults erf(Four x) {
  const Four y = magnitude(x);
  const FourTruths near = y <= 0.46875;
  const FourTruths far = (y > 4.0) & (y < 6.0);
  const FourTruths between = (y > 0.46875) & (y < 6.0);
  Four values = four(1.0);
  if (any(between)) {
    const Four inside = chosen(between, y, four(1.0));
    Four complement = erfc_to_4(inside);
    if (any(far)) complement = chosen(far, erfc_from_4(inside), complement);
    const Four head = _mm256_floor_pd(inside * 16.0) * 0.0625;
    const Four tail = (inside - head) * (inside + head);
    const FourBits sixteenths = reinterpret_cast<FourBits>(head * 16.0 + 0x1p52) & 127U;
    complement = complement * (at(kExpOfMinusSquare, sixteenths) * elementary::fused::exp(-tail));
    values = chosen(between, (0.5 - complement) + 0.5, values);
  }
  const FourBits sign = reinterpret_cast<FourBits>(x) & 0x8000'0000'0000'0000U;
  values = reinterpret_cast<Four>(reinterpret_cast<FourBits>(values) | sign);
  if (any(near)) values = chosen(near, erf_near_0(x, y), values);
  return {chosen(x != x, x, values), FourTruths{-1, -1, -1, -1}};
}

}  // namespace
}  // namespace vqmath63::special::fused
