#include "regression/line_fit.hpp"

#include <memory>

#include "frame/checked_functions.hpp"
#include "frame/companions.hpp"
#include "frame/trap.hpp"
#include "statistics/statistics.hpp"

namespace vqmath63 {
namespace {

constexpr Location kFitaLine{"ztAnalyse - Regression", "FitaLine"};
constexpr Location kFitLine{"ztAnalyse - Regression", "FitLine"};

constexpr std::int32_t kLinear = 1;
constexpr std::int32_t kLogarithmic = 2;
constexpr std::int32_t kExponential = 3;

// The thread's shared statistics object, created now if there is none.
std::shared_ptr<ztStatistics> shared_statistics() {
  std::shared_ptr<ztStatistics>& shared = common_globals().Statistics;
  if (!shared) shared = std::make_shared<ztStatistics>();
  return shared;
}

// Natural logarithm as a stored Single; fault 5 outside the domain.
float logarithm(float value) {
  return Single(Log(Single(value))).value();
}

}  // namespace

void FitaLine(const Array1<const float>& x, const Array1<const float>& y, std::int32_t type,
              Line& line, bool& ok) {
  trap(kFitaLine, [&] {
    ok = false;
    const std::int32_t n = x.upper();
    if (n != y.upper() || n < 1) return;
    const bool log_x = type != kLinear && type != kExponential;
    const bool log_y = type != kLinear && type != kLogarithmic;
    const bool stop_quietly = type == kLogarithmic || type == kExponential;
    if (!x.covers(1, n)) raise_fault(ErrorNumber::kSubscript);  // before room for n of them
    Array1<float> xs(1, n);
    Array1<float> ys(1, n);
    for (std::int32_t i = 1; i <= n; ++i) {
      const float xi = x(i);
      const float yi = y(i);
      // Negated: a NaN is not above 0 either.
      if (stop_quietly && !((log_x ? xi : yi) > 0.0F)) return;
      xs(i) = log_x ? logarithm(xi) : xi;
      ys(i) = log_y ? logarithm(yi) : yi;
    }
    FitLine(xs, ys, line, ok);
  });
}

void FitLine(const Array1<const float>& x, const Array1<const float>& y, Line& line, bool& ok) {
  trap(kFitLine, [&] {
    ok = false;
    const Double n = static_cast<double>(x.upper());
    const std::shared_ptr<ztStatistics> sums = shared_statistics();
    const Single sx = sums->SumOfX(x);
    const Single sy = sums->SumOfX(y);
    const Single sxy = sums->SumOfXY(x, y);
    const Single sxx = sums->SumOfX2(x);
    const Single syy = sums->SumOfX2(y);
    const Single num = sxy * n - sx * sy;
    const Single dx = sxx * n - sx * sx;
    const Single dy = syy * n - sy * sy;
    if (dx.value() != 0.0F) line.slope = Single(num / dx).value();
    line.intercept = Single((sy - sx * Single(line.slope)) / n).value();
    Single product = dy * dx;
    if (product.value() == 0.0F) product = 2.22e-16F;
    const Double root = Sqr(Abs(product));
    line.correlation = Single(num / root).value();
    ok = true;
  });
}

}  // namespace vqmath63
