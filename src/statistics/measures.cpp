// The measures of ztStatistics that need no sorting: extremes, sums, means and spreads.

#include "frame/checked_functions.hpp"
#include "frame/speculate.hpp"
#include "frame/trap.hpp"
#include "statistics/extremes.hpp"
#include "statistics/statistics.hpp"

namespace vqmath63 {
namespace {

constexpr Location kMaximum{"ztAnalyse - ztStatistics", "Maximum"};
constexpr Location kMinimum{"ztStatistics", "Minimum"};
constexpr Location kIndexOfMaximum{"ztStatistics", "Index_of_Maximum_Of_X"};
constexpr Location kIndexOfMinimum{"ztStatistics", "Index_Of_Minimum_Of_X"};
constexpr Location kNormalise{"ztAnalyse - ztStatistics", "Normalise"};
constexpr Location kSumOfX{"ztStatistics", "SumOfX"};
constexpr Location kSumOfX2{"ztStatistics", "SumOfX2"};
constexpr Location kSumofAbsX{"ztStatistics", "SumofAbsX"};
constexpr Location kSumOfXY{"ztStatistics", "SumOfXY"};
constexpr Location kSumListX{"ztStatistics", "SumListX"};
constexpr Location kAverage{"ztStatistics", "average"};
constexpr Location kVariance{"ztStatistics", "Variance"};
constexpr Location kSigmaN{"ztStatistics", "SigmaN"};
constexpr Location kSigmaN1{"ztStatistics", "SigmaN1"};
constexpr Location kCov{"ztAnalyse - ztStatistics", "Cov"};
constexpr Location kSumOfSquareDifferences{"ztStatistics", "SumOfSquareDifferences"};

constexpr float kListTooLong = -32768.0F;

float root_of(Double square) {
  return Single(Sqr(Abs(square))).value();
}

}  // namespace

float ztStatistics::Maximum(const Array1<const float>& xA) {
  return trap<float>(kMaximum, [&](float& result) { result = maximum_of(xA); });
}

float ztStatistics::Minimum(const Array1<const float>& xA) {
  return trap<float>(kMinimum, [&](float& result) { result = minimum_of(xA); });
}

std::int32_t ztStatistics::Index_of_Maximum_Of_X(const Array1<const float>& xA) {
  return trap<std::int32_t>(kIndexOfMaximum,
                            [&](std::int32_t& result) { result = index_of_maximum(xA); });
}

std::int32_t ztStatistics::Index_Of_Minimum_Of_X(const Array1<const float>& xA) {
  return trap<std::int32_t>(kIndexOfMinimum,
                            [&](std::int32_t& result) { result = index_of_minimum(xA); });
}

bool ztStatistics::Normalise(Array1<float>& xA) {
  return trap<bool>(kNormalise, [&](bool& result) {
    const std::int32_t n = xA.upper();
    // The largest signed value, not the largest magnitude: without a positive sample the signs
    // turn over, on purpose.
    const float largest = Maximum(xA);
    if (largest == 0.0F) {
      result = true;
      return;
    }
    const Double r = Single(Double(1.0) / Double(largest));
    for (std::int64_t i = 1; i <= n; ++i) {
      float& x = xA(i);
      x = to_single((r * Double(x)).value());
    }
    result = true;
  });
}

float ztStatistics::SumOfX(const Array1<const float>& xA) {
  return trap<float>(kSumOfX, [&](float& result) { result = sum_of(xA); });
}

float ztStatistics::SumOfX2(const Array1<const float>& xA) {
  return trap<float>(kSumOfX2, [&](float& result) { result = sum_of_squares(xA); });
}

float ztStatistics::SumofAbsX(const Array1<const float>& xA) {
  return trap<float>(kSumofAbsX, [&](float& result) { result = sum_of_magnitudes(xA); });
}

float ztStatistics::SumOfXY(const Array1<const float>& xA, const Array1<const float>& yA) {
  return trap<float>(kSumOfXY, [&](float& result) { result = sum_of_products(xA, yA); });
}

float ztStatistics::SumListX(const Array1<const std::int32_t>& iList, const std::int32_t& nList,
                             const Array1<const float>& xArray) {
  return trap<float>(kSumListX, [&](float& result) {
    result = kListTooLong;
    const std::int64_t m = xArray.upper();
    const std::int64_t entries = nList;
    if (m < entries) return;
    const bool in_bounds = m >= 1 && xArray.covers(1, m) && iList.covers(2, entries);
    const std::int32_t* list = in_bounds && entries >= 2 ? &iList(2) : nullptr;
    result = speculate(in_bounds, [&](auto mode) {
      using Mode = decltype(mode);
      const typename Mode::template Reader<float> xs(xArray);
      // Element 1 always counts and the list's first entry never does, on purpose.
      typename Mode::Single sum = xs(1);
      for (std::int64_t k = 2; k <= entries; ++k) {
        const std::int64_t i = list != nullptr ? list[k - 2] : iList(k);
        if (i >= 1 && i <= m) sum = sum + xs(i);
      }
      return sum;
    });
  });
}

float ztStatistics::average(const Array1<const float>& xA) {
  return trap<float>(kAverage, [&](float& result) {
    const Double n = xA.upper();
    result = to_single((Double(SumOfX(xA)) / n).value());
  });
}

float ztStatistics::Variance(const Array1<const float>& xA) {
  return trap<float>(kVariance, [&](float& result) {
    const Double r = Single(Double(1.0) / Double(xA.upper()));
    const Double squares = SumOfX2(xA);
    const Double sum = SumOfX(xA);
    result = to_single(((squares - sum * sum * r) * r).value());
  });
}

float ztStatistics::SigmaN(const Array1<const float>& xA) {
  return trap<float>(kSigmaN, [&](float& result) {
    const Double n = xA.upper();
    const Double squares = SumOfX2(xA);
    const Double sum = SumOfX(xA);
    result = root_of((squares - sum * sum / n) / n);
  });
}

float ztStatistics::SigmaN1(const Array1<const float>& xA) {
  return trap<float>(kSigmaN1, [&](float& result) {
    const std::int32_t count = xA.upper();
    if (count <= 1) return;
    const Double n = count;
    const Double squares = SumOfX2(xA);
    const Double sum = SumOfX(xA);
    result = root_of((squares - sum * sum / n) / (n - 1.0));
  });
}

float ztStatistics::Cov(const Array1<const float>& xA, const Array1<const float>& yA) {
  return trap<float>(kCov, [&](float& result) {
    const std::int64_t n = xA.upper();
    if (yA.upper() != n) return;
    const float mean_x = average(xA);
    const float mean_y = average(yA);
    const Double total = speculate(xA.covers(1, n) && yA.covers(1, n), [&](auto mode) {
      using Mode = decltype(mode);
      using Stored = typename Mode::Single;
      const typename Mode::template Reader<float> xs(xA), ys(yA);
      Stored sum;
      for (std::int64_t i = 1; i <= n; ++i) {
        const auto from_mean = xs(i) - Stored(mean_x);  // may fail, so before y is looked for
        sum = sum + Stored(from_mean * (ys(i) - Stored(mean_y)));
      }
      return sum;
    });
    result = to_single((total / Double(static_cast<double>(n))).value());
  });
}

float ztStatistics::SumOfSquareDifferences(const Array1<const float>& xA,
                                           const Array1<const float>& yA) {
  return trap<float>(kSumOfSquareDifferences, [&](float& result) {
    const std::int64_t n = xA.upper();
    if (yA.upper() != n) return;
    result = speculate(xA.covers(1, n) && yA.covers(1, n), [&](auto mode) {
      using Mode = decltype(mode);
      using Stored = typename Mode::Single;
      const typename Mode::template Reader<float> xs(xA), ys(yA);
      Stored sum;
      for (std::int64_t i = 1; i <= n; ++i) {
        const typename Mode::Double difference = xs(i) - ys(i);
        sum = sum + Stored(difference * difference);
      }
      return sum;
    });
  });
}

}  // namespace vqmath63
