#include "regression/matrix.hpp"

#include <bit>
#include <cmath>
#include <cstdint>
#include <memory>
#include <type_traits>
#include <utility>

#include "frame/speculate.hpp"
#include "frame/trap.hpp"

namespace vqmath63 {
namespace {

constexpr Location kMatrixEquation{"ztAnalyse - matrix", "MatrixEquation"};

// A pivot column without a larger magnitude makes the system singular.
constexpr float kLeastPivot = 2.22e-16F;

// The working copy of one system: n rows of n coefficients and the right-hand side, and the order
// in which the elimination takes the rows. Rows are never moved.
class WorkingSystem {
 public:
  explicit WorkingSystem(std::size_t n) : n_(n), numbers_(small_numbers_), rows_(small_rows_) {
    if (n <= kSmall) return;
    large_numbers_ = std::make_unique_for_overwrite<float[]>(n * (n + 1));
    large_rows_ = std::make_unique_for_overwrite<float*[]>(n);
    numbers_ = large_numbers_.get();
    rows_ = large_rows_.get();
  }
  WorkingSystem(const WorkingSystem&) = delete;
  WorkingSystem& operator=(const WorkingSystem&) = delete;

  std::size_t size() const { return n_; }
  /// Row i of the order: coefficients 0 to n-1, then the right-hand side.
  float* row(std::size_t i) { return rows_[i]; }
  float& right_side(std::size_t i) { return rows_[i][n_]; }
  void exchange(std::size_t i, std::size_t j) { std::swap(rows_[i], rows_[j]); }

  /// A and b have elements 1 to n.
  void load(const Array2<const float>& A, const Array1<const float>& b) {
    const float* from = &A(1, 1);
    const float* right = &b(1);
    const auto stride = static_cast<std::size_t>(A.rows().count());
    for (std::size_t i = 0; i < n_; ++i) {
      float* to = numbers_ + i * (n_ + 1);
      for (std::size_t j = 0; j < n_; ++j) to[j] = from[j * stride + i];
      to[n_] = right[i];
      rows_[i] = to;
    }
  }

  /// Whether no coefficient can overflow on the way: no multiplier is larger than 1, so a step at
  /// most doubles the largest magnitude, but for its roundings. False where there is a NaN, and
  /// for orders at which that is not worth a look or cannot be said.
  bool cannot_overflow() const {
    if (n_ <= kSmall || n_ >= 100) return false;
    double sum = 0.0;  // no less than the largest
    for (std::size_t i = 0; i < n_; ++i) {
      const float* row = numbers_ + i * (n_ + 1);
      double even = 0.0, odd = 0.0;  // two that do not wait for each other
      for (std::size_t j = 0; j < n_; j += 2) {
        even += std::fabs(static_cast<double>(row[j]));
        odd += std::fabs(static_cast<double>(row[j + 1]));  // the right-hand side at the end
      }
      sum += even + odd;
    }
    return sum < std::ldexp(1.0, 120 - static_cast<int>(n_));
  }

  bool all_finite() const {
    // A finite number less itself is +0; anything else leaves bits behind.
    std::uint32_t trace = 0;
    for (std::size_t i = 0; i < n_ * (n_ + 1); ++i) {
      trace |= std::bit_cast<std::uint32_t>(numbers_[i] - numbers_[i]);
    }
    return trace == 0;
  }

 private:
  static constexpr std::size_t kSmall = 16;

  std::size_t n_;
  float* numbers_;
  float** rows_;
  float small_numbers_[kSmall * (kSmall + 1)];
  float* small_rows_[kSmall];
  std::unique_ptr<float[]> large_numbers_;
  std::unique_ptr<float*[]> large_rows_;
};

// Position of the pivot of column k; n when the column has none.
std::size_t find_pivot(WorkingSystem& system, std::size_t k) {
  float best = 0.0F;
  std::size_t position = k;
  for (std::size_t i = k; i < system.size(); ++i) {
    const float magnitude = std::fabs(system.row(i)[k]);
    const bool as_large = magnitude >= best;  // the last of equals is the pivot
    best = as_large ? magnitude : best;
    position = as_large ? i : position;
  }
  return best < kLeastPivot ? system.size() : position;
}

// row -= m * pivot_row, the right-hand side included.
template <class Mode>
void subtract_multiple(typename Mode::Single m, const float* __restrict pivot_row,
                       float* __restrict row, std::size_t count) {
  using Single = typename Mode::Single;
  for (std::size_t j = 0; j < count; ++j) {
    row[j] = Single(Single(row[j]) - m * Single(pivot_row[j])).value();
  }
}

// Leaves the solution in the right-hand sides; false for a singular system.
template <class Mode>
bool solve(WorkingSystem& system) {
  using Single = typename Mode::Single;
  const std::size_t n = system.size();
  // What is left in columns already eliminated is of no use to the solution, but can overflow too.
  const bool all_columns = !std::is_same_v<Mode, PlainMode> || !system.cannot_overflow();
  for (std::size_t k = 0; k < n; ++k) {
    const std::size_t pivot = find_pivot(system, k);
    if (pivot == n) return false;
    system.exchange(k, pivot);
    const std::size_t first = all_columns ? 0 : k + 1;
    const float* pivot_row = system.row(k);
    for (std::size_t i = k + 1; i < n; ++i) {
      float* row = system.row(i);
      const Single m = Single(row[k]) / Single(pivot_row[k]);
      subtract_multiple<Mode>(m, pivot_row + first, row + first, n + 1 - first);
    }
  }
  for (std::size_t i = n; i-- > 0;) {
    const float* row = system.row(i);
    Single value = system.right_side(i);
    for (std::size_t j = i + 1; j < n; ++j) {
      value = value - Single(row[j]) * Single(system.right_side(j));
    }
    system.right_side(i) = Single(value / Single(row[i])).value();
  }
  return true;
}

// A system worked through, and whether it could be solved. A number once lost to overflow stays
// where it was stored, so one look at the end is enough.
struct Elimination {
  WorkingSystem& system;
  bool solved;

  const Elimination& value() const { return *this; }
  bool all_finite() const { return system.all_finite(); }
};

}  // namespace

void MatrixEquation(const Array2<const float>& A, const Array1<const float>& b, Array1<float>& x,
                    bool& singular, bool& ok) {
  trap(kMatrixEquation, [&] {
    singular = false;
    ok = false;
    const std::int32_t n = A.rows().upper;
    const Bounds columns = A.columns();
    if (n < 1 || !A.rows().contains(1) || !columns.contains(1) || !columns.contains(n) ||
        !b.covers(1, n)) {
      raise_fault(ErrorNumber::kSubscript);
    }
    WorkingSystem system(static_cast<std::size_t>(n));
    const Elimination done = speculate(true, [&](auto mode) {
      system.load(A, b);
      return Elimination{system, solve<decltype(mode)>(system)};
    });
    if (!done.solved) {
      singular = true;
      return;
    }
    for (std::int32_t i = 1; i <= n; ++i) x(i) = system.right_side(static_cast<std::size_t>(i) - 1);
    ok = true;
  });
}

}  // namespace vqmath63
