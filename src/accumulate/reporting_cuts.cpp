#include "accumulate/reporting_cuts.hpp"

#include "frame/fault.hpp"

namespace vqmath63 {
namespace {

// Walks forward through the samples, turning ascending boundaries into cuts.
class Cutter {
 public:
  explicit Cutter(std::span<const double> times) : times_(times) {}

  ReportingCut at(double boundary) {
    while (next_ < times_.size() && times_[next_] < boundary) ++next_;
    if (next_ > 0 && next_ < times_.size()) {
      const double before = boundary - times_[next_ - 1];
      const double after = times_[next_] - boundary;
      if (before < after && before <= kSameMoment) return on_sample(next_ - 1);
      if (after <= kSameMoment) return on_sample(last_at_same_time(next_));
      return {boundary, static_cast<std::int32_t>(next_), true};
    }
    return on_sample(next_ == 0 ? last_at_same_time(0) : times_.size() - 1);
  }

  ReportingCut on_sample(std::size_t i) const {
    return {times_[i], static_cast<std::int32_t>(i), false};
  }

 private:
  std::size_t last_at_same_time(std::size_t i) const {
    while (i + 1 < times_.size() && times_[i + 1] == times_[i]) ++i;
    return i;
  }

  std::span<const double> times_;
  std::size_t next_ = 0;  // first sample not before the latest boundary
};

}  // namespace

std::vector<ReportingCut> reporting_cuts(std::span<const double> times,
                                         const UnitCalendar& boundaries, double step,
                                         std::int64_t columns) {
  constexpr std::int64_t kMostElements = std::int64_t{1} << 31;
  const std::int64_t most_cuts = kMostElements / columns - static_cast<std::int64_t>(times.size());

  const double first = times.front();
  const double last = times.back();
  Cutter cutter(times);
  std::vector<ReportingCut> cuts;

  std::int64_t k = 0;
  if (boundaries.origin() > first + kSameMoment) {
    if (boundaries.origin() >= last - kSameMoment) raise_fault(ErrorNumber::kInvalidCall);
    cuts.push_back(cutter.at(boundaries.origin()));
  } else {
    k = boundaries.last_multiple_until(first + kSameMoment, step);
    cuts.push_back(cutter.at(first));
  }
  if (!(cuts.front().time < last)) raise_fault(ErrorNumber::kInvalidCall);

  const std::int64_t last_k = boundaries.last_multiple_until(last, step);
  // Two more cuts stand at the ends.
  if (last_k - k > most_cuts - 2) raise_fault(ErrorNumber::kOutOfMemory);
  // So many equal steps are not told apart by the Singles that the table holds: the accumulation
  // would end at a period of no length. It ends before the memory is taken.
  constexpr std::int64_t kMostSteps = std::int64_t{1} << 25;
  if (last_k - k > kMostSteps) raise_fault(ErrorNumber::kDivisionByZero);
  cuts.reserve(static_cast<std::size_t>(last_k - k + 2));
  while (++k <= last_k) {
    const double boundary = boundaries.moment_or_never(static_cast<double>(k) * step);
    if (boundary >= last - kSameMoment) break;
    const ReportingCut cut = cutter.at(boundary);
    if (cut.time > cuts.back().time) cuts.push_back(cut);  // else no length of data before it
  }
  cuts.push_back(cutter.on_sample(times.size() - 1));
  return cuts;
}

}  // namespace vqmath63
