#include "calculus/integration.hpp"

#include "frame/speculate.hpp"
#include "frame/trap.hpp"

namespace vqmath63 {
namespace {

constexpr Location kSimpson{"ztAnalyse - Integration", "Simpson"};
constexpr Location kTrapezoidal{"ztAnalyse - Integration", "Trapezoidal"};
constexpr Location kForward{"ztAnalyse - Integration", "Forward"};
constexpr Location kBackward{"ztAnalyse - Integration", "Backward"};

using Samples = Array1<const float>;

// True when both arrays hold all samples that a rule over n points reads.
bool hold_samples(const Samples& x, const Samples& y, std::int64_t n) {
  return x.covers(1, n) && y.covers(1, n);
}

// Rectangles whose ordinate is that of sample i + kSide.
template <int kSide>
float rectangles(const Samples& x, const Samples& y) {
  const std::int64_t n = x.upper();
  return speculate(hold_samples(x, y, n), [&](auto mode) {
    using Mode = decltype(mode);
    const typename Mode::template Reader<float> xs(x), ys(y);
    typename Mode::Single sum;
    for (std::int64_t i = 1; i < n; ++i) {
      const auto step = xs(i + 1) - xs(i);  // may fail, so before the ordinate is looked for
      sum = sum + step * ys(i + kSide);
    }
    return sum;
  });
}

}  // namespace

float Trapezoidal(const Samples& x, const Samples& y) {
  return trap<float>(kTrapezoidal, [&](float& result) {
    const std::int64_t n = x.upper();
    result = speculate(hold_samples(x, y, n), [&](auto mode) {
      using Mode = decltype(mode);
      using Wide = typename Mode::Double;
      const typename Mode::template Reader<float> xs(x), ys(y);
      Wide sum;
      for (std::int64_t i = 1; i < n; ++i) {
        const Wide ordinates = ys(i) + ys(i + 1);  // may fail, so before the abscissae
        sum += ordinates * (xs(i + 1) - xs(i));
      }
      return typename Mode::Single(sum * Wide(0.5));
    });
  });
}

float Forward(const Samples& x, const Samples& y) {
  return trap<float>(kForward, [&](float& result) { result = rectangles<0>(x, y); });
}

float Backward(const Samples& x, const Samples& y) {
  return trap<float>(kBackward, [&](float& result) { result = rectangles<1>(x, y); });
}

float Simpson(const Samples& x, const Samples& y) {
  return trap<float>(kSimpson, [&](float& result) {
    const std::int64_t n = x.upper();
    if (n % 2 != 1) {  // also every n below 1: the remainder keeps the sign of n
      result = Trapezoidal(x, y);
      return;
    }
    result = speculate(x.covers(1, 2) && y.covers(1, n), [&](auto mode) {
      using Mode = decltype(mode);
      using Wide = typename Mode::Double;
      using Stored = typename Mode::Single;
      const typename Mode::template Reader<float> xs(x), ys(y);
      const Stored h = xs(2) - xs(1);
      Stored sum = ys(1) + ys(n);
      for (std::int64_t i = 2; i < n; i += 2) sum = sum + Wide(4.0) * ys(i);
      for (std::int64_t i = 3; i < n - 1; i += 2) sum = sum + Wide(2.0) * ys(i);
      // 15 digits, slightly below one third: the rule's own constant.
      return Stored(h * Wide(0.333333333333333) * sum);
    });
  });
}

}  // namespace vqmath63
