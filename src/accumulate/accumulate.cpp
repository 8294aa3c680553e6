#include "accumulate/accumulate.hpp"

#include "accumulate/accumulate_data.hpp"
#include "frame/companions.hpp"
#include "frame/trap.hpp"

namespace vqmath63 {
namespace {

constexpr Location kClassInitialize{"ztAnalyse - ztAccumulate", "Class_Initialize"};
constexpr Location kInitAccumulate{"ztAnalyse - ztAccumulate", "InitAccumulate"};
constexpr Location kAccumulate{"ztAnalyse - ztAccumulate", "Accumulate"};
constexpr Location kClassTerminate{"ztAnalyse - ztAccumulate", "Class_Terminate"};

}  // namespace

ztAccumulate::ztAccumulate() {
  trap(kClassInitialize, [&] {
    bool ok = false;
    InitAccumulate(ok);
  });
}

ztAccumulate::~ztAccumulate() {
  trap_at_end(kClassTerminate, [&] {
    bool ok = false;
    InitAccumulate(ok);
  });
}

void ztAccumulate::InitAccumulate(bool& qOK) {
  trap(kInitAccumulate, [&] {
    qOK = false;
    start_date_ = now();
    start_data_ = now();
    period_ = "Month";
    frequency_ = 1;
    reserved_ = 2;
    silent_ = false;
    rates_ = true;
    rate_array_supplied_ = false;
    data_period_ = "day";
    accumulate_index_ = 1;
    rate_array_.redim(1, 1);  // last: what needs memory leaves no setting out
    qOK = true;
  });
}

void ztAccumulate::put_RateArray(const Array1<const Boolean>& value) {
  rate_array_ = Array1<Boolean>(value);
  rate_array_supplied_ = true;
}

void ztAccumulate::Accumulate(const Array2<const float>& dArr, Array2<float>& dAccumulate,
                              bool& qOK) {
  trap(kAccumulate, [&] {
    qOK = false;
    std::int32_t columns = dArr.columns().upper;
    bool ok = false;
    // Without a first column the table fails below, and no flag is looked at.
    if (!rate_array_supplied_ && can_size_results(dArr.columns())) {
      bool flag_a = true;
      bool flag_b = true;
      array_tools()->InitialiseFlagArray(columns, flag_a, flag_b, rate_array_, ok);
    }
    constexpr std::int32_t kBackward = 4;
    std::int32_t rule = kBackward;
    std::int32_t spare = 0;
    ok = false;
    // A copy of its own: an error line may lead the host to set another one meanwhile.
    const Array1<Boolean> rates = rate_array_;
    AccumulateData(dArr, rates, accumulate_index_, data_period_, frequency_, period_, start_date_,
                   start_data_, dAccumulate, ok, rule, spare);
    qOK = ok;
  });
}

}  // namespace vqmath63
