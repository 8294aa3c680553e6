#include "regression/least_squares.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "frame/checked_functions.hpp"
#include "frame/trap.hpp"
#include "regression/matrix.hpp"

namespace vqmath63 {
namespace {

constexpr Location kLeastSquares{"ztAnalyse - Regression", "LeastSquares"};

constexpr std::size_t kMost = kMostCoefficients;

// The first solution and its corrections: each one brings the error down by the accuracy of Single.
constexpr int kSolutions = 4;

// A value or a coefficient for each basis polynomial, or for each power.
using Row = std::array<double, kMost>;

// Samples of positive weight, each quantity scaled to a largest magnitude of 1, and how it was.
struct Samples {
  std::vector<double> t;  // (x - centre) / half_width
  std::vector<double> y;  // y / height
  std::vector<double> w;  // weight / largest weight
  double centre = 0.0;
  double half_width = 1.0;
  double height = 1.0;

  std::size_t size() const { return t.size(); }
};

// Divides by the largest magnitude, which is returned; nothing but zeros stays, and counts as 1.
double scale_down(std::vector<double>& values) {
  double most = 0.0;
  for (const double v : values) most = std::max(most, std::fabs(v));
  if (most == 0.0) return 1.0;
  for (double& v : values) v = (Double(v) / Double(most)).value();
  return most;
}

// No samples when one of them is a NaN: nothing fits it.
Samples take_samples(const Array1<const float>& x, const Array1<const float>& y,
                     const Array1<const float>& weights) {
  Samples s;
  const std::int32_t n = x.upper();
  for (std::int32_t i = 1; i <= n; ++i) {
    const double w = static_cast<double>(weights(i));
    const double xi = static_cast<double>(x(i));
    const double yi = static_cast<double>(y(i));
    if (w < 0.0) raise_fault(ErrorNumber::kInvalidCall);
    if (w == 0.0) continue;
    if (std::isnan(w) || std::isnan(xi) || std::isnan(yi)) return {};
    s.t.push_back(xi);
    s.y.push_back(yi);
    s.w.push_back(w);
  }
  if (s.size() == 0) return s;
  const auto [low, high] = std::minmax_element(s.t.begin(), s.t.end());
  s.centre = ((Double(*low) + Double(*high)) * 0.5).value();
  for (double& t : s.t) t = (Double(t) - s.centre).value();
  s.half_width = scale_down(s.t);
  s.height = scale_down(s.y);
  scale_down(s.w);
  return s;
}

// True when at least `count` different values are there.
bool has_different(const std::vector<double>& values, std::size_t count) {
  std::vector<double> seen;
  for (const double v : values) {
    if (std::find(seen.begin(), seen.end(), v) == seen.end()) seen.push_back(v);
    if (seen.size() == count) return true;
  }
  return false;
}

// Polynomials p(0), p(1), ... orthogonal over the samples, each of weighted norm 1:
//     norm(k) p(k) = (t - shift(k)) p(k-1) - norm(k-1) p(k-2).
class Basis {
 public:
  Basis(const Samples& s, std::size_t count) : count_(count) {
    std::vector<double> older(s.size(), 0.0);
    std::vector<double> newer(s.size(), 1.0);
    norm_[0] = normalise(s, newer);
    for (std::size_t k = 1; k < count; ++k) {
      for (std::size_t i = 0; i < s.size(); ++i) {
        shift_[k] += s.w[i] * s.t[i] * newer[i] * newer[i];
      }
      const double back = k > 1 ? norm_[k - 1] : 0.0;
      for (std::size_t i = 0; i < s.size(); ++i) {
        older[i] = (s.t[i] - shift_[k]) * newer[i] - back * older[i];
      }
      older.swap(newer);
      norm_[k] = normalise(s, newer);
    }
  }

  std::size_t count() const { return count_; }

  /// Values of all polynomials at t.
  Row at(double t) const {
    Row p{};
    p[0] = 1.0 / norm_[0];
    for (std::size_t k = 1; k < count_; ++k) {
      const double back = k > 1 ? norm_[k - 1] * p[k - 2] : 0.0;
      p[k] = ((t - shift_[k]) * p[k - 1] - back) / norm_[k];
    }
    return p;
  }

  /// The sum of c(k) p(k), as coefficients of the powers of t.
  Row powers(const Row& c) const {
    Row sum{}, older{}, newer{};
    newer[0] = 1.0 / norm_[0];
    sum[0] = c[0] * newer[0];
    for (std::size_t k = 1; k < count_; ++k) {
      const double back = k > 1 ? norm_[k - 1] : 0.0;
      Row next{};
      for (std::size_t j = 0; j <= k; ++j) {
        const double raised = j > 0 ? newer[j - 1] : 0.0;
        next[j] = (raised - shift_[k] * newer[j] - back * older[j]) / norm_[k];
        sum[j] += c[k] * next[j];
      }
      older = newer;
      newer = next;
    }
    return sum;
  }

 private:
  static double normalise(const Samples& s, std::vector<double>& values) {
    double sum = 0.0;
    for (std::size_t i = 0; i < s.size(); ++i) sum += s.w[i] * values[i] * values[i];
    const double norm = unchecked::sqrt(sum);
    for (double& v : values) v /= norm;
    return norm;
  }

  std::size_t count_;
  Row shift_{};
  Row norm_{};
};

// The normal equations of the basis over the samples.
class NormalEquations {
 public:
  NormalEquations(const Samples& s, const Basis& basis) : samples_(s), basis_(basis) {
    const std::size_t count = basis.count();
    std::vector<Row> sums(count, Row{});
    for (std::size_t i = 0; i < s.size(); ++i) {
      const Row p = basis.at(s.t[i]);
      for (std::size_t j = 0; j < count; ++j) {
        for (std::size_t k = 0; k <= j; ++k) sums[j][k] += s.w[i] * p[j] * p[k];
      }
    }
    const auto n = static_cast<std::int32_t>(count);
    matrix_.redim({1, n}, {1, n});
    right_.redim(1, n);
    solution_.redim(1, n);
    for (std::size_t j = 0; j < count; ++j) {
      for (std::size_t k = 0; k <= j; ++k) {
        const float sum = to_single(sums[j][k]);
        matrix_(index(j), index(k)) = sum;
        matrix_(index(k), index(j)) = sum;
      }
    }
  }

  /// Adds to `c` what brings the fit closer to the samples; false when there is no solution.
  bool improve(Row& c) {
    Row sums{};
    for (std::size_t i = 0; i < samples_.size(); ++i) {
      const Row p = basis_.at(samples_.t[i]);
      double left = samples_.y[i];
      for (std::size_t k = 0; k < basis_.count(); ++k) left -= c[k] * p[k];
      for (std::size_t k = 0; k < basis_.count(); ++k) sums[k] += samples_.w[i] * left * p[k];
    }
    for (std::size_t k = 0; k < basis_.count(); ++k) right_(index(k)) = to_single(sums[k]);
    bool singular = false;
    bool ok = false;
    MatrixEquation(matrix_, right_, solution_, singular, ok);
    if (!ok) return false;
    for (std::size_t k = 0; k < basis_.count(); ++k) {
      c[k] += static_cast<double>(solution_(index(k)));
    }
    return true;
  }

 private:
  static std::int64_t index(std::size_t k) { return static_cast<std::int64_t>(k) + 1; }

  const Samples& samples_;
  const Basis& basis_;
  Array2<float> matrix_;
  Array1<float> right_;
  Array1<float> solution_;
};

// From powers of t = (x - centre) / half_width to powers of x, by Horner's rule on polynomials.
Row shift_back(const Row& in_t, std::size_t count, const Samples& s) {
  Row in_x{};
  for (std::size_t k = count; k-- > 0;) {
    Row next{};
    for (std::size_t j = 0; j < count; ++j) {
      const Double raised = j > 0 ? in_x[j - 1] : 0.0;
      next[j] = ((raised - Double(s.centre) * in_x[j]) / s.half_width).value();
    }
    next[0] = (Double(next[0]) + in_t[k]).value();
    in_x = next;
  }
  return in_x;
}

}  // namespace

void LeastSquares(const Array1<const float>& x, const Array1<const float>& y,
                  const Array1<const float>& weights, std::int32_t order,
                  Array1<float>& coefficients, bool& ok) {
  trap(kLeastSquares, [&] {
    ok = false;
    if (order < 1) raise_fault(ErrorNumber::kSubscript);
    if (order > kMostCoefficients) return;
    if (!coefficients.covers(1, order)) raise_fault(ErrorNumber::kSubscript);
    const auto count = static_cast<std::size_t>(order);
    const Samples samples = take_samples(x, y, weights);
    if (!has_different(samples.t, count)) return;
    const Basis basis(samples, count);
    NormalEquations equations(samples, basis);
    Row c{};
    for (int i = 0; i < kSolutions; ++i) {
      if (!equations.improve(c)) return;
    }
    const Row in_x = shift_back(basis.powers(c), count, samples);
    Array1<float> found(1, order);
    for (std::size_t k = 0; k < count; ++k) {
      found(static_cast<std::int64_t>(k) + 1) =
          to_single((Double(in_x[k]) * samples.height).value());
    }
    for (std::int32_t k = 1; k <= order; ++k) coefficients(k) = found(k);
    ok = true;
  });
}

}  // namespace vqmath63
