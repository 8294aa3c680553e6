#include "regression/matrix.hpp"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <memory>
#include <type_traits>
#include <utility>

#include "frame/speculate.hpp"
#include "frame/trap.hpp"
#include "frame/wide_registers.hpp"

namespace vqmath63 {
namespace {

constexpr Location kMatrixEquation{"ztAnalyse - matrix", "MatrixEquation"};

// A pivot column without a larger magnitude makes the system singular.
constexpr float kLeastPivot = 2.22e-16F;

// Rows are taken in groups of so many numbers.
constexpr std::size_t kGroup = 8;

// The least order at which wide registers gain more than they cost.
constexpr std::size_t kWorthWide = 24;

// The working copy of one system: n rows of n coefficients, the right-hand side and, where rows are
// taken in groups, zeros up to a whole one, and the order in which the elimination takes the rows.
// Rows are never moved.
class WorkingSystem {
 public:
  explicit WorkingSystem(std::size_t n)
      : n_(n),
        width_(n < kFewest ? n + 1 : n / kGroup * kGroup + kGroup),
        numbers_(small_numbers_),
        rows_(small_rows_) {
    if (n <= kSmall) return;
    large_numbers_ = std::make_unique_for_overwrite<float[]>(n * width_);
    large_rows_ = std::make_unique_for_overwrite<float*[]>(n);
    numbers_ = large_numbers_.get();
    rows_ = large_rows_.get();
  }
  WorkingSystem(const WorkingSystem&) = delete;
  WorkingSystem& operator=(const WorkingSystem&) = delete;

  std::size_t size() const { return n_; }
  std::size_t width() const { return width_; }
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
      float* to = numbers_ + i * width_;
      for (std::size_t j = 0; j < n_; ++j) to[j] = from[j * stride + i];
      to[n_] = right[i];
      std::fill(to + n_ + 1, to + width_, 0.0F);
      rows_[i] = to;
    }
  }

  /// Whether no coefficient can overflow on the way: no multiplier is larger than 1, so a step at
  /// most doubles the largest magnitude, but for its roundings. False where there is a NaN, and
  /// for orders at which that is not worth a look or cannot be said.
  bool cannot_overflow() const {
    if (n_ < kFewest || n_ > kMost) return false;
    std::array<float, kGroup> sums{};  // in all no less than the largest, but for roundings
    for (std::size_t at = 0; at < n_ * width_; at += kGroup) {
      for (std::size_t j = 0; j < kGroup; ++j) sums[j] += std::fabs(numbers_[at + j]);
    }
    float sum = 0.0F;
    for (const float part : sums) sum += part;
    return sum < std::ldexp(1.0F, 119 - static_cast<int>(n_));
  }

  bool all_finite() const {
    // A finite number less itself is +0; anything else leaves bits behind.
    std::uint32_t trace = 0;
    for (std::size_t i = 0; i < n_ * width_; ++i) {
      trace |= std::bit_cast<std::uint32_t>(numbers_[i] - numbers_[i]);
    }
    return trace == 0;
  }
  bool right_sides_are_finite() const {
    bool finite = true;
    for (std::size_t i = 0; i < n_; ++i) finite &= std::isfinite(rows_[i][n_]);
    return finite;
  }

  static constexpr std::size_t kMost = 99;  // of which it can be said that nothing overflows

 private:
  static constexpr std::size_t kFewest = 9;
  static constexpr std::size_t kSmall = 16;

  std::size_t n_;
  std::size_t width_;
  float* numbers_;
  float** rows_;
  float small_numbers_[kSmall * (kSmall + kGroup)];
  float* small_rows_[kSmall];
  std::unique_ptr<float[]> large_numbers_;
  std::unique_ptr<float*[]> large_rows_;
};

// The pivot of a column: of rows that are shown in their order, the last with the largest
// magnitude.
class Pivot {
 public:
  explicit Pivot(std::size_t first) : position_(first) {}
  void look_at(float coefficient, std::size_t i) {
    const float magnitude = std::fabs(coefficient);
    const bool as_large = magnitude >= best_;
    best_ = as_large ? magnitude : best_;
    position_ = as_large ? i : position_;
  }
  bool there() const { return !(best_ < kLeastPivot); }
  std::size_t position() const { return position_; }

 private:
  float best_ = 0.0F;
  std::size_t position_;
};

Pivot find_pivot(WorkingSystem& system, std::size_t k) {
  Pivot pivot(k);
  for (std::size_t i = k; i < system.size(); ++i) pivot.look_at(system.row(i)[k], i);
  return pivot;
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

// Takes column by column out of the rows below; false for a singular system.
template <class Mode>
bool eliminate(WorkingSystem& system) {
  using Single = typename Mode::Single;
  const std::size_t n = system.size();
  for (std::size_t k = 0; k < n; ++k) {
    const Pivot pivot = find_pivot(system, k);
    if (!pivot.there()) return false;
    system.exchange(k, pivot.position());
    const float* pivot_row = system.row(k);
    for (std::size_t i = k + 1; i < n; ++i) {
      float* row = system.row(i);
      const Single m = Single(row[k]) / Single(pivot_row[k]);
      subtract_multiple<Mode>(m, pivot_row, row, n + 1);
    }
  }
  return true;
}

// row -= m * pivot_row, on the Doubles that Singles are widened to.
void subtract_groups(double m, const double* __restrict pivot_row, float* __restrict row,
                     std::size_t groups) {
  for (std::size_t j = 0; j < groups * kGroup; ++j) {
    row[j] = static_cast<float>(static_cast<double>(row[j]) - m * pivot_row[j]);
  }
}

// The same on plain numbers where nothing overflows: then what is left in columns that are
// eliminated already is of no use, and only groups with other columns in them are looked at.
bool eliminate_in_groups(WorkingSystem& system) {
  const std::size_t n = system.size();
  const std::size_t width = system.width();
  double pivot_row[WorkingSystem::kMost + kGroup];
  Pivot next = find_pivot(system, 0);
  for (std::size_t k = 0; k < n; ++k) {
    if (!next.there()) return false;
    system.exchange(k, next.position());
    next = Pivot(k + 1);
    const std::size_t first = (k + 1) / kGroup * kGroup;
    const std::size_t groups = (width - first) / kGroup;
    const float* singles = system.row(k);
    for (std::size_t j = 0; j < groups * kGroup; ++j) {
      pivot_row[j] = static_cast<double>(singles[first + j]);
    }
    const float divisor = singles[k];
    for (std::size_t i = k + 1; i < n; ++i) {
      float* row = system.row(i);
      const auto m = static_cast<double>(row[k] / divisor);
      subtract_groups(m, pivot_row, row + first, groups);
      next.look_at(row[k + 1], i);
    }
  }
  return true;
}

// A system worked through, and whether it could be solved. A number once lost to overflow stays
// where it was stored, so one look at the end is enough.
struct Elimination {
  WorkingSystem& system;
  bool bounded;  // no coefficient can be lost
  bool solved;

  const Elimination& value() const { return *this; }
  bool all_finite() const {
    return bounded ? system.right_sides_are_finite() : system.all_finite();
  }
};

template <class Mode>
bool eliminate_by(WorkingSystem& system, bool bounded) {
  const auto work = [&] { return bounded ? eliminate_in_groups(system) : eliminate<Mode>(system); };
  if constexpr (std::is_same_v<Mode, PlainMode>) {
    if (system.size() >= kWorthWide) return in_wide_registers(work);
  }
  return work();
}

// Right-hand side i less what the solutions behind it take of it.
template <class Mode>
float left_of_row(WorkingSystem& system, std::size_t i) {
  using Single = typename Mode::Single;
  const float* row = system.row(i);
  Single value = system.right_side(i);
  for (std::size_t j = i + 1; j < system.size(); ++j) {
    value = value - Single(row[j]) * Single(system.right_side(j));
  }
  return value.value();
}

#ifdef VQ_FUSED_STEPS
// The same on plain numbers in half of the time, as each step waits for the one before: a fused
// step rounds the Single that a step by way of Double does, but where the Double happens to lie
// midway between two. Whether they are the same is looked at beside the way.
[[gnu::target("fma")]] float left_of_row_fused(WorkingSystem& system, std::size_t i) {
  const float* row = system.row(i);
  float value = system.right_side(i);
  std::uint32_t unlike = 0;
  for (std::size_t j = i + 1; j < system.size(); ++j) {
    const float factor = system.right_side(j);
    const float fused = __builtin_fmaf(-row[j], factor, value);
    const auto step = static_cast<float>(static_cast<double>(value) -
                                         static_cast<double>(row[j]) * static_cast<double>(factor));
    unlike |= std::bit_cast<std::uint32_t>(fused) ^ std::bit_cast<std::uint32_t>(step);
    value = fused;
  }
  return unlike == 0 ? value : left_of_row<PlainMode>(system, i);
}
#endif

// Leaves the solution in the right-hand sides.
template <class Mode>
Elimination solve(WorkingSystem& system) {
  using Single = typename Mode::Single;
  const bool bounded = std::is_same_v<Mode, PlainMode> && system.cannot_overflow();
  if (!eliminate_by<Mode>(system, bounded)) return {system, bounded, false};
  auto left = &left_of_row<Mode>;
#ifdef VQ_FUSED_STEPS
  if (std::is_same_v<Mode, PlainMode> && kFusedSteps) left = &left_of_row_fused;
#endif
  for (std::size_t i = system.size(); i-- > 0;) {
    const Single value = left(system, i);
    system.right_side(i) = Single(value / Single(system.row(i)[i])).value();
  }
  return {system, bounded, true};
}

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
      return solve<decltype(mode)>(system);
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
