#include "accumulate/accumulate_data.hpp"

#include <algorithm>
#include <memory>

#include "accumulate/accumulate_array.hpp"
#include "accumulate/period_words.hpp"
#include "calculus/integrate.hpp"
#include "frame/checked.hpp"
#include "frame/trap.hpp"

namespace vqmath63 {
namespace {

constexpr Location kAccumulateData{"ztAnalyse - Accumulate", "AccumulateData"};

// The working integrator of the thread; after a run-time error the next call replaces it.
std::shared_ptr<ztIntegrate>& integrator() {
  thread_local std::shared_ptr<ztIntegrate> working;
  return working;
}

// A column's rows first..last as samples 1 to n, read in place.
Array1<const float> rows_of(const Array2<const float>& table, std::int32_t first, std::int32_t last,
                            std::int32_t column) {
  return {&table(first, column), {1, last - first + 1}};
}

}  // namespace

void AccumulateData(const Array2<const float>& dArr, const Array1<const Boolean>& RateArray,
                    std::int32_t AccumulateIndex, std::string DataPeriod, std::int32_t Frequency,
                    std::string Period, Date StartDate, Date StartData, Array2<float>& dAccumulate,
                    bool& qOK, std::int32_t& rule, std::int32_t& /*spare*/) {
  trap(kAccumulateData, [&] {
    qOK = false;
    Array1<std::int32_t> start_row(1, 1);
    Array1<std::int32_t> end_row(1, 1);
    Array2<float> work({1, 1}, {1, 1});
    Array1<float> inverse_length(1, 1);
    if (!CheckPeriod(Period)) {
      integrator().reset();  // a run-time error in an earlier call may have left one
      return;
    }

    // A copy of its own: an error line may lead the host to accumulate once more meanwhile.
    const auto integrate = std::make_shared<ztIntegrate>();
    integrator() = integrate;
    bool built = false;
    bool flag = false;
    SetAccumulateArray(dArr, RateArray, AccumulateIndex, DataPeriod, static_cast<float>(Frequency),
                       Period, StartDate, StartData, start_row, end_row, work, built, rule, flag);
    if (!built) {
      integrator().reset();
      return;
    }
    integrate->put_IntegrationRule(rule);

    const std::int32_t periods = start_row.upper();
    const std::int32_t columns = work.columns().upper;
    dAccumulate.redim({1, periods}, {1, columns});
    inverse_length.redim(1, periods);
    for (std::int32_t i = 1; i <= periods; ++i) {
      const Single end(work(end_row(i), 1));
      dAccumulate(i, 1) = Single(end - Single(work(1, 1))).value();
      inverse_length(i) = Single(Double(1.0) / (end - Single(work(start_row(i), 1)))).value();
    }
    for (std::int32_t j = 2; j <= columns; ++j) {
      for (std::int32_t i = 1; i <= periods; ++i) {
        const Array1<const float> x = rows_of(work, start_row(i), end_row(i), 1);
        const Array1<const float> y = rows_of(work, start_row(i), end_row(i), j);
        if (RateArray(j)) {
          const Single area(integrate->Integral(x, y));
          dAccumulate(i, j) = Single(area * Single(inverse_length(i))).value();
        } else {
          dAccumulate(i, j) = y(y.upper());
        }
      }
    }
    qOK = true;
    integrator().reset();
  });
}

}  // namespace vqmath63
