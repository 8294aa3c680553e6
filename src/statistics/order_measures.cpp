// The measures of ztStatistics that work on sorted samples: median, mode and quartiles.
#include <algorithm>
#include <typeinfo>
#include <utility>

#include "frame/checked_functions.hpp"
#include "frame/sort_tools.hpp"
#include "frame/steps_only.hpp"
#include "frame/trap.hpp"
#include "statistics/statistics.hpp"

namespace vqmath63 {
namespace {

constexpr Location kMedian{"ztStatistics", "Median"};
constexpr Location kMode{"ztStatistics", "Mode"};
constexpr Location kModeBin{"ztStatistics", "ModeBin"};
constexpr Location kQuartile{"ztStatistics", "Quartiles"};

// Elements 1 to n without a check at each of them; fault 9 when one is missing.
class Elements {
 public:
  Elements(const Array1<const float>& array, std::int64_t n) : first_(&array(1)) { array(n); }
  float operator()(std::int64_t i) const { return first_[i - 1]; }

 private:
  const float* first_;
};

// The samples of the fullest bin so far.
struct Bin {
  std::int64_t count = 1;
  std::int64_t start = 1;
  std::int64_t end = 1;
};

// One pass over the ascending samples with a bin of this width that moves up by its width whenever
// a sample lies outside it, however far: a gap wider than the bin leaves it behind for good. The
// bin that is open at the end is not compared.
Bin fullest_bin(const Elements& sorted, std::int64_t n, Single width) {
  Bin best;
  Bin open;
  Single lo = sorted(1);
  Single hi = width + Single(sorted(1));
  for (std::int64_t i = 2; i <= n; ++i) {
    if (lo.value() <= sorted(i) && sorted(i) <= hi.value()) {
      ++open.count;
      open.end = i;
    } else {
      if (open.count > best.count) best = open;
      open = {1, i, i};
      lo = hi;
      hi = hi + width;
    }
  }
  return best;
}

}  // namespace

Array1<float> ztStatistics::sorted_copy(const Array1<const float>& x, bool& ok) {
  const std::int32_t n = x.upper();
  if (n < 1 || !x.covers(1, n)) raise_fault(ErrorNumber::kSubscript);
  Array1<float> work(1, n);
  std::copy_n(&x(1), n, work.data());
  if (!sort_tools_) sort_tools_ = create_sort_tools();
  const auto tools = sort_tools_;  // stays alive through its own call
  ok = false;
  tools->SortAscending(work, ok);
  return work;
}

float ztStatistics::Median(const Array1<const float>& xA) {
  Array1<float> sorted;
  return median(xA, sorted);
}

float ztStatistics::median(const Array1<const float>& xA, Array1<float>& sorted) {
  return trap<float>(kMedian, [&](float& result) {
    const std::int64_t n = xA.upper();
    bool ok = false;
    Array1<float> work = sorted_copy(xA, ok);
    if (!ok) {
      result = work(1);
      return;
    }
    if (n % 2 == 0) {
      result = to_single(((Double(work(n / 2)) + Double(work(n / 2 + 1))) * 0.5).value());
    } else {
      result = work(n / 2 + 1);
    }
    // A sort of the host's own is asked each time: it may count, or answer otherwise.
    const ztSortTools& tools = *sort_tools_;
    if (!kStepsOnly && typeid(tools) == typeid(BuiltInSortTools)) sorted = std::move(work);
  });
}

float ztStatistics::Mode(const Array1<const float>& xA) {
  return mode(xA, {});
}

float ztStatistics::mode(const Array1<const float>& xA, Array1<float> work) {
  return trap<float>(kMode, [&](float& result) {
    const std::int64_t n = xA.upper();
    if (!work.allocated()) {
      bool ok = false;
      work = sorted_copy(xA, ok);
      if (!ok) {
        result = work(1);
        return;
      }
    }
    const Elements sorted(work, n);
    float mode = sorted(1);
    float current = mode;
    std::int64_t best = 1;
    std::int64_t run = 1;
    // The counter goes up with samples that differ from `current`, not with its repeats, and the
    // last run is not compared: that rule is what this mode means.
    for (std::int64_t i = 2; i <= n; ++i) {
      if (sorted(i) == current) continue;
      if (run > best) {
        mode = current;
        best = run;
        current = sorted(i);
        run = 1;
      } else {
        ++run;
      }
    }
    result = best == 1 ? ModeBin(work) : mode;
  });
}

float ztStatistics::ModeBin(const Array1<const float>& dSort) {
  return trap<float>(kModeBin, [&](float& result) {
    const std::int64_t n = dSort.upper();
    // 15 digits, slightly below 1 / ln 2: a power of two gets a pass less, which would be the same
    // as the one before it.
    const auto passes =
        static_cast<std::int32_t>((Log(static_cast<double>(n)) * 1.44269504088896).value());
    const Elements sorted(dSort, n);
    const Single range = Double(sorted(n)) - Double(sorted(1));
    std::int64_t bins = n;
    for (std::int32_t pass = 1; pass <= passes; ++pass) {
      bins = std::max<std::int64_t>(bins / 2, 2);
      const Single width = Double(range) / Double(static_cast<double>(bins));
      const Bin best = fullest_bin(sorted, n, width);
      if (best.count > 1) {
        Single sum = sorted(best.start);
        for (std::int64_t i = best.start + 1; i <= best.end; ++i) sum = sum + Single(sorted(i));
        result = to_single((Double(sum) / Double(static_cast<double>(best.count))).value());
        return;
      }
    }
  });
}

float ztStatistics::Quartile(const Array1<const float>& xA, const std::int32_t& ithQuartile) {
  return trap<float>(kQuartile, [&](float& result) {
    const std::int32_t which = ithQuartile;
    if (which < 1 || which > 3) return;
    if (which == 2) {
      result = Median(xA);
      return;
    }
    const std::int32_t n = xA.upper();
    bool ok = false;
    Array1<float> work = sorted_copy(xA, ok);
    if (!ok) return;
    // Both halves hold the middle sample of an odd n; of an even n the upper half starts one early.
    const std::int32_t h = n / 2 + n % 2;
    const std::int32_t first = which == 1 ? 1 : h;
    const std::int32_t last = which == 1 ? h : n;
    work(last);  // in bounds, whatever the companion did
    const Array1<const float> half(&work(first), Bounds{1, last - first + 1});
    result = Median(half);
  });
}

}  // namespace vqmath63
