// The life of a ztStatistics and its summary calls.
#include "statistics/statistics.hpp"

#include <utility>

#include "frame/checked_functions.hpp"
#include "frame/trap.hpp"

namespace vqmath63 {
namespace {

constexpr Location kClassInitialize{"ztStatistics", "Class_Initialize"};
constexpr Location kInitStatistics{"ztAnalyse - ztStatistics", "InitStatistics"};
constexpr Location kBasicStatistics{"ztStatistics", "BasicStatistics"};
constexpr Location kStatistics{"ztStatistics", "Statistics"};
constexpr Location kBasicStatisticsPairs{"ztStatistics", "BasicStatisticsPairs"};
constexpr Location kStatisticsPairs{"ztStatistics", "StatisticsPairs"};

// Sum of squared distances from the mean, from the sums; may be slightly negative.
Double spread(const Summary& sums, Double reciprocal) {
  const Double sum = sums.sum;
  return Double(sums.squares) - sum * sum * reciprocal;
}

// The same, 0 where it is nothing but the rounding of equal samples.
Double cleared_spread(const Summary& sums, Double reciprocal) {
  const Double s = spread(sums, reciprocal);
  const float size = Single(Abs(s)).value();
  const float rounding = to_single((Double(sums.squares) * 1e-15).value());
  return rounding > size ? Double(0.0) : s;
}

float root_of(Double square) {
  return Single(Sqr(Abs(square))).value();
}

float root_n1(Double s, std::int32_t n) {
  return n < 2 ? 0.0F : root_of(s / (Double(n) - 1.0));
}

}  // namespace

ztStatistics::ztStatistics() {
  trap(kClassInitialize, [&] { InitStatistics(); });
}

bool ztStatistics::InitStatistics() {
  return trap<bool>(kInitStatistics, [&](bool& done) {
    x_ = Kept();
    y_ = Kept();
    sigma_xy_ = 0.0F;
    array_tools_ = create_array_tools();
    sort_tools_ = create_sort_tools();
    done = true;
  });
}

void ztStatistics::BasicStatistics(const Array1<const float>& xA, bool& qOK) {
  trap(kBasicStatistics, [&] {
    qOK = false;
    const std::int32_t n = xA.upper();
    const Summary sums = summary_of(xA);
    const float mean = to_single((Double(sums.sum) / Double(n)).value());
    x_.bar = mean;
    x_.sums = sums;
    const Double reciprocal = Double(1.0) / Double(n);
    const Double s = cleared_spread(sums, reciprocal);
    x_.sigma_n = root_of(s * reciprocal);
    x_.sigma_n1 = root_n1(s, n);
    qOK = true;
  });
}

void ztStatistics::Statistics(const Array1<const float>& xA, bool& qOK) {
  trap(kStatistics, [&] {
    qOK = false;
    bool ok = false;
    BasicStatistics(xA, ok);
    if (!ok) return;
    Array1<float> sorted;
    x_.median = median(xA, sorted);
    x_.mode = mode(xA, std::move(sorted));
    qOK = true;
  });
}

void ztStatistics::BasicStatisticsPairs(const Array1<const float>& xA,
                                        const Array1<const float>& yA, bool& qOK) {
  trap(kBasicStatisticsPairs, [&] {
    qOK = false;
    const std::int32_t n = xA.upper();
    const Double r = Single(Double(1.0) / Double(n));
    const PairSummary sums = summary_of(xA, yA);

    x_.bar = to_single((Double(sums.x.sum) * r).value());
    x_.sums = sums.x;
    // x is never cleared, and its deviation by n goes where the n-1 form then replaces it, so that
    // xSigmaN keeps what the last single summary left in it.
    const Double x_spread = spread(sums.x, r);
    x_.sigma_n1 = root_of(x_spread * r);
    x_.sigma_n1 = root_n1(x_spread, n);

    y_.bar = to_single((r * Double(sums.y.sum)).value());
    y_.sums = sums.y;
    const Double y_spread = cleared_spread(sums.y, r);
    y_.sigma_n = root_of(r * y_spread);
    y_.sigma_n1 = root_n1(y_spread, n);

    sigma_xy_ = sums.products;
    qOK = true;
  });
}

void ztStatistics::StatisticsPairs(const Array1<const float>& xA, const Array1<const float>& yA,
                                   bool& qOK) {
  trap(kStatisticsPairs, [&] {
    qOK = false;
    bool ok = false;
    BasicStatisticsPairs(xA, yA, ok);
    // Whether that did well is not asked: qOK tells of the four measures below.
    Array1<float> sorted_x, sorted_y;
    x_.median = median(xA, sorted_x);
    x_.mode = mode(xA, std::move(sorted_x));
    y_.median = median(yA, sorted_y);
    y_.mode = mode(yA, std::move(sorted_y));
    qOK = true;
  });
}

}  // namespace vqmath63
