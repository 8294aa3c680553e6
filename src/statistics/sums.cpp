// The loops of the running sums: plain first, replayed on checked numbers when that failed.
#include "statistics/sums.hpp"

#include "frame/speculate.hpp"
#include "statistics/summary_lanes.hpp"

namespace vqmath63 {
namespace {

using Samples = Array1<const float>;

bool hold_samples(const Samples& x, std::int64_t n) {
  return n >= 1 && x.covers(1, n);
}

// term(1) + ... + term(n) as running Singles. make_term(mode) gives the function of the index that
// computes a term, already rounded to Single.
template <class MakeTerm>
float running_sum(bool in_bounds, std::int64_t n, const MakeTerm& make_term) {
  return speculate(in_bounds, [&](auto mode) {
    using Mode = decltype(mode);
    const auto term = make_term(mode);
    typename Mode::Single sum = term(1);
    for (std::int64_t i = 2; i <= n; ++i) sum = sum + term(i);
    return sum;
  });
}

using CheckedSingle = CheckedMode::Single;

// The running values of one array, step by step.
class Running {
 public:
  explicit Running(CheckedSingle x)
      : sum_(x),
        squares_(x * x),
        absolute_(std::fabs(x.value())),
        minimum_(x.value()),
        maximum_(x.value()) {}

  void add(CheckedSingle x) {
    sum_ = sum_ + x;
    squares_ = squares_ + CheckedSingle(x * x);
    // Replaced, not added: the value is the magnitude of the last sample.
    absolute_ = std::fabs(x.value());
    if (maximum_ < x.value()) maximum_ = x.value();
    if (minimum_ > x.value()) minimum_ = x.value();
  }

  Summary value() const { return {sum_.value(), squares_.value(), absolute_, minimum_, maximum_}; }

 private:
  CheckedSingle sum_;
  CheckedSingle squares_;
  float absolute_;
  float minimum_;
  float maximum_;
};

struct RunningPair {
  Running x;
  Running y;
  CheckedSingle products;

  PairSummary value() const { return {x.value(), y.value(), products.value()}; }
};

}  // namespace

float sum_of(const Samples& x) {
  const std::int64_t n = x.upper();
  return running_sum(hold_samples(x, n), n,
                     [&](auto mode) { return typename decltype(mode)::template Reader<float>(x); });
}

float sum_of_squares(const Samples& x) {
  const std::int64_t n = x.upper();
  return running_sum(hold_samples(x, n), n, [&](auto mode) {
    using Mode = decltype(mode);
    return [xs = typename Mode::template Reader<float>(x)](std::int64_t i) {
      return typename Mode::Single(xs(i) * xs(i));
    };
  });
}

float sum_of_magnitudes(const Samples& x) {
  const std::int64_t n = x.upper();
  return running_sum(hold_samples(x, n), n, [&](auto mode) {
    using Mode = decltype(mode);
    return [xs = typename Mode::template Reader<float>(x)](std::int64_t i) {
      return typename Mode::Single(std::fabs(xs(i).value()));
    };
  });
}

float sum_of_products(const Samples& x, const Samples& y) {
  const std::int64_t n = x.upper();
  return running_sum(hold_samples(x, n) && y.covers(1, n), n, [&](auto mode) {
    using Mode = decltype(mode);
    using Reader = typename Mode::template Reader<float>;
    return [xs = Reader(x), ys = Reader(y)](std::int64_t i) {
      return typename Mode::Single(xs(i) * ys(i));
    };
  });
}

Summary summary_of(const Samples& x) {
  const std::int64_t n = x.upper();
  return speculate(hold_samples(x, n), [&](auto mode) {
    if constexpr (std::is_same_v<decltype(mode), PlainMode>) {
      return lanes::summary(&x(1), static_cast<std::size_t>(n));
    } else {
      const CheckedMode::Reader<float> xs(x);
      Running running(xs(1));
      for (std::int64_t i = 2; i <= n; ++i) running.add(xs(i));
      return running;
    }
  });
}

PairSummary summary_of(const Samples& x, const Samples& y) {
  const std::int64_t n = x.upper();
  return speculate(hold_samples(x, n) && y.covers(1, n), [&](auto mode) {
    if constexpr (std::is_same_v<decltype(mode), PlainMode>) {
      return lanes::summary(&x(1), &y(1), static_cast<std::size_t>(n));
    } else {
      const CheckedMode::Reader<float> xs(x), ys(y);
      RunningPair running{Running(xs(1)), Running(ys(1)), xs(1) * ys(1)};
      for (std::int64_t i = 2; i <= n; ++i) {
        running.x.add(xs(i));
        running.y.add(ys(i));
        running.products = running.products + CheckedSingle(xs(i) * ys(i));
      }
      return running;
    }
  });
}

}  // namespace vqmath63
