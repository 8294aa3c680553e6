#include "elementary/sure.hpp"

#include <cmath>
#include <cstddef>

#include "elementary/tables.hpp"
#include "elementary/two_by_pi.hpp"
#include "elementary/whole.hpp"
#include "elementary/wide_constants.hpp"

namespace vqmath63::elementary::sure {
namespace {

const Wide kOne = wide(1.0);

// e^x, |x| < 2000: the series for x less whole ln 2, over 1024, then squared ten times. The squares
// are those of e^t - 1, so that what is small stays accurate.
Wide exponential(const Wide& x) {
  const double whole = nearest_whole(nearest(x) * k4096ByLn2[0] / 4096);
  const Wide t = scaled(x - wide(whole) * kWideLn2, -10);
  constexpr std::size_t kTerms = 17;  // 2^-11.5 per term: beyond 2^-250
  Wide sum = kInverseFactorials[kTerms];
  for (std::size_t n = kTerms; n-- > 1;) sum = kInverseFactorials[n] + t * sum;
  Wide less_one = t * sum;
  for (int i = 0; i < 10; ++i) less_one = scaled(less_one, 1) + less_one * less_one;
  return scaled(kOne + less_one, static_cast<int>(whole));
}

// 1 + t / 3 + t^2 / 5 + ..., |t| < 2^-20, to 2^-260.
Wide odd_series(const Wide& t) {
  if (t.zero()) return kOne;
  Wide sum;
  for (auto n = static_cast<std::size_t>(260 / -t.exponent + 1); n-- > 0;) {
    sum = kOddReciprocals[n] + t * sum;
  }
  return sum;
}

// ln((1 + s) / (1 - s)) = 2 (s + s^3 / 3 + s^5 / 5 + ...), |s| < 2^-10.
Wide series_of_logarithm(const Wide& s) {
  return scaled(s * odd_series(s * s), 1);
}

// ln x of x > 0. What a Double knows of it is taken out first; beside 1 there is no need.
Wide logarithm(const Wide& x) {
  const Wide distance = x - kOne;
  if (distance.zero() || distance.exponent < -9) {
    return series_of_logarithm(distance / (x + kOne));
  }
  const int whole = x.exponent;
  Wide mantissa = x;
  mantissa.exponent = 0;
  // ln m = 2 artanh((m - 1) / (m + 1)), |.| <= 1 / 3.
  const double m = nearest(mantissa);
  const double s = (m - 1.0) / (m + 1.0);
  double about = 0.0;
  for (int n = 13; n > 0; n -= 2) about = 1.0 / n + s * s * about;
  const Wide known = wide(2.0 * s * about);
  const Wide rest = mantissa * exponential(-known);
  return wide(whole) * kWideLn2 + known + series_of_logarithm((rest - kOne) / (rest + kOne));
}

struct SineCosine {
  Wide sine, cosine;
};

// Of |x| <= 0.8 by the series; x small stays accurate.
SineCosine sine_cosine(const Wide& x) {
  const Wide square = -(x * x);
  constexpr std::size_t kTerms = 44;
  Wide cosine = kInverseFactorials[kTerms];
  Wide sine = kInverseFactorials[kTerms + 1];
  for (std::size_t n = kTerms; n > 0; n -= 2) {
    cosine = kInverseFactorials[n - 2] + square * cosine;
    sine = kInverseFactorials[n - 1] + square * sine;
  }
  return {x * sine, cosine};
}

// x = quadrant pi / 2 + rest, |rest| <= pi / 4.
struct Reduced {
  unsigned quadrant;
  Wide rest;
};

// By 384 bits of 2 / pi; no Double comes closer than 2^-62 to a multiple of pi / 2.
Reduced reduced(double x) {
  if (std::fabs(x) < 0.78) return {0, wide(x)};
  const Quarters<12> turns = quarters<12>(std::fabs(x));
  auto quadrant = static_cast<unsigned>(turns.bits_from(turns.point) & 3U);
  // The 320 bits behind the point, the last word cut.
  std::array<std::uint64_t, 8> fraction{};
  for (unsigned i = 0; i < 5; ++i) fraction[i] = turns.bits_from(turns.point - 64 * (5 - i));
  Wide rest = wide(fraction, -320);
  if (!rest.zero() && rest.exponent == 0) {  // a half or more
    rest = rest - kOne;
    ++quadrant;
  }
  rest = rest * kWideHalfPi;
  if (std::signbit(x)) return {0U - quadrant, -rest};
  return {quadrant, rest};
}

double sine(double x, unsigned quarters_added) {
  const Reduced r = reduced(x);
  const SineCosine both = sine_cosine(r.rest);
  const unsigned quadrant = r.quadrant + quarters_added;
  const Wide& value = quadrant % 2 == 0 ? both.sine : both.cosine;
  return nearest(quadrant % 4 < 2 ? value : -value);
}

}  // namespace

double exp(double x) {
  if (x > 710.0) return nearest(scaled(kOne, 2000));
  if (x < -746.0) return 0.0;
  return nearest(exponential(wide(x)));
}

double log(double x) {
  return nearest(logarithm(wide(x)));
}

double log1p(double x) {
  if (x == 0.0) return x;
  // Beside 0 the sum would lose what x has to say.
  if (std::fabs(x) < 0x1p-10) {
    return nearest(series_of_logarithm(wide(x) / (wide(x) + wide(2.0))));
  }
  return nearest(logarithm(kOne + wide(x)));
}

double log10(double x) {
  return nearest(logarithm(wide(x)) / kWideLn10);
}

double sin(double x) {
  return sine(x, 0);
}

double cos(double x) {
  return sine(x, 1);
}

double tan(double x) {
  const Reduced r = reduced(x);
  const SineCosine both = sine_cosine(r.rest);
  return nearest(r.quadrant % 2 == 0 ? both.sine / both.cosine : -(both.cosine / both.sine));
}

double pow(double x, double y) {
  const Wide exponent = wide(y) * logarithm(wide(x));
  if (!exponent.zero() && exponent.exponent > 10)
    return exponent.negative ? 0.0 : sure::exp(1000.0);
  return nearest(exponential(exponent));
}

Wide angle(double y, double x, double approximation) {
  // Of the smaller angle of the triangle; its tangent is t.
  const bool steep = y > x;
  const Wide a = wide(steep ? x : y);
  const Wide b = wide(steep ? y : x);
  const Wide known = steep ? kWideHalfPi - wide(approximation) : wide(approximation);
  Wide rest;
  Wide t = a / b;
  if (t.exponent < -35) {
    // t - t^3 / 3 to all its bits, or a trifle below t.
    rest = t.exponent < -70 ? t - scaled(t, -150) : t * odd_series(-(t * t));
  } else {
    const SineCosine at = sine_cosine(known);
    t = (a * at.cosine - b * at.sine) / (b * at.cosine + a * at.sine);
    rest = known + t * odd_series(-(t * t));
  }
  return steep ? kWideHalfPi - rest : rest;
}

double hypot(double x, double y) {
  return nearest(square_root(wide(x) * wide(x) + wide(y) * wide(y)));
}

}  // namespace vqmath63::elementary::sure
