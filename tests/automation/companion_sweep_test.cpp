// Every operation of a companion failing in turn, in every worked call: the failure is told, by the
// error line of the routine or as the call's own, and the call after it does well.
#include <memory>
#include <stdexcept>

#include "worked_calls.hpp"

namespace vqmath63::automation::test {
namespace {

using Long = std::int32_t;
using Booleans = Array1<Boolean>;
using Longs = Array1<Long>;
using Singles = Array1<float>;
using Table = Array2<float>;

// Counts makers and operations, and fails at the one that is planned, or at all from there on.
struct Plan {
  long steps = 0;
  long fail_at = 0;
  bool fail_on = false;
  std::function<void()> fail;

  void step() {
    ++steps;
    if (fail_at > 0 && (fail_on ? steps >= fail_at : steps == fail_at)) fail();
  }
} plan;

template <class Companion>
using Maker = std::function<std::shared_ptr<Companion>()>;

#define VQ_STEP(call)  \
  override {           \
    plan.step();       \
    return real->call; \
  }
// A built-in companion behind a step of the plan at each operation.
template <class Companion>
struct Behind : Companion {
  explicit Behind(const Maker<Companion>& make) : real(make()) {}
  std::shared_ptr<Companion> real;
};
// clang-format off
struct Sink final : Behind<ztErrorHandler> {
  using Behind::Behind;
  void ReportError(std::string& m, bool& f) VQ_STEP(ReportError(m, f))
  void SetLogToFile(bool& q) VQ_STEP(SetLogToFile(q))
  void SetLogFile(std::string& f) VQ_STEP(SetLogFile(f))
  void SetVersionText(std::string& v) VQ_STEP(SetVersionText(v))
};
struct Maths final : Behind<ztCommonMaths> {
  using Behind::Behind;
  double VectorAngle(double x, double y) VQ_STEP(VectorAngle(x, y))
  void PolarToRectangular(double r, double t, double& x, double& y) VQ_STEP(PolarToRectangular(r, t, x, y))
  void RectangularToPolar(double x, double y, double& r, double& t) VQ_STEP(RectangularToPolar(x, y, r, t))
  double ArcTan(double x) VQ_STEP(ArcTan(x))
  Long CeilToLong(double x) VQ_STEP(CeilToLong(x))
  double CeilToDouble(double x) VQ_STEP(CeilToDouble(x))
  Long FloorToLong(double x) VQ_STEP(FloorToLong(x))
  double FloorToDouble(double x) VQ_STEP(FloorToDouble(x))
  void BracketIndex(float& v, Singles& l, Long& a, Long& b, Long& s) VQ_STEP(BracketIndex(v, l, a, b, s))
  void InterpolateTable(Singles& a, Long& x, Long& y, Table& t, bool& ok, Long& m) VQ_STEP(InterpolateTable(a, x, y, t, ok, m))
  void SegmentCrossPoint(float& a, float& b, float& c, float& d, float& e, float& f, float& g, float& h, float& x, float& y, bool& q) VQ_STEP(SegmentCrossPoint(a, b, c, d, e, f, g, h, x, y, q))
};
struct Arrays final : Behind<ztArrayTools> {
  using Behind::Behind;
  void ApplyMask(Booleans& m, Singles& v, Long& n, bool& ok, bool& k) VQ_STEP(ApplyMask(m, v, n, ok, k))
  void RemoveNullEntries(float& x, Singles& v, Long& n, Longs& l, Long& r, bool& ok) VQ_STEP(RemoveNullEntries(x, v, n, l, r, ok))
  void RemoveListedEntries(Longs& l, Long& r, Singles& v, Long& n, bool& ok) VQ_STEP(RemoveListedEntries(l, r, v, n, ok))
  void InitialiseFlagArray(Long& n, bool& a, bool& b, Booleans& f, bool& ok) VQ_STEP(InitialiseFlagArray(n, a, b, f, ok))
};
struct Sort final : Behind<ztSortTools> {
  using Behind::Behind;
  void SortAscending(Singles& v, bool& ok) VQ_STEP(SortAscending(v, ok))
};
struct Dates final : Behind<ztDateTools> {
  using Behind::Behind;
  double DaysOfDate(Date d) VQ_STEP(DaysOfDate(d))
  Date DateOfDays(double d) VQ_STEP(DateOfDays(d))
  double AddMonths(double d, std::int64_t m) VQ_STEP(AddMonths(d, m))
  std::int64_t MonthsBetween(double a, double b) VQ_STEP(MonthsBetween(a, b))
};
// clang-format on
#undef VQ_STEP

template <class Mine, class Companion>
void replace(Maker<Companion>& maker) {
  maker = [real = maker] {
    plan.step();
    return std::make_shared<Mine>(real);
  };
}

// Replaces the companions of this thread for its time.
struct Replaced {
  Replaced() {
    CompanionMakers& makers = companion_makers() = built_in_makers();
    replace<Sink>(makers.ErrorHandler);
    replace<Maths>(makers.CommonMaths);
    replace<Arrays>(makers.ArrayTools);
    replace<Sort>(makers.SortTools);
    replace<Dates>(makers.DateTools);
  }
  ~Replaced() {
    common_globals() = {};
    companion_makers() = built_in_makers();
  }
};

// What a companion may end with. A maker that fails is error 429, unless for want of memory.
const struct {
  std::function<void()> fail;
  int number;
} kFailures[] = {
    {[] { throw Fault(51); }, 51},
    {[] { throw std::bad_alloc(); }, 7},
    {[] { throw std::runtime_error("private words"); }, E_FAIL},
    {[] { raise_companion_failure(E_ACCESSDENIED); }, E_ACCESSDENIED},
    {[] { raise_companion_failure(error_code(11)); }, 11},
};

template <class Base>
class CompanionSweep final : public WorkedCalls<Base> {
 public:
  using WorkedCalls<Base>::WorkedCalls;
  long failed_steps = 0;

 private:
  void trouble(const std::string& name, const calls::Member&, const Outcome& usual) override {
    for (const auto& [fail, number] : kFailures) {
      plan.fail = fail;
      each_step([&](long at, bool on) {
        plan.steps = 0;
        plan.fail_on = on;
        plan.fail_at = at;
        const Outcome outcome = this->attempt();
        plan.fail_at = 0;
        if (plan.steps < at) return false;
        ++failed_steps;
        const std::string how = name + ", step " + std::to_string(at) + " failing with " +
                                std::to_string(number) + ": " + outcome.text();
        const int number_told = outcome.tells(number) || number == 7 ? number : 429;
        EXPECT_TRUE(outcome.tells(number_told)) << how;
        if (FAILED(outcome.code)) {
          EXPECT_EQ(ascii(this->told), error_text(number_told)) << how;
        }
        EXPECT_EQ(this->attempt(), usual) << how << "\nthe call after it";
        return true;
      });
    }
  }
};

template <class Host>
void sweep_companions(Host&& host) {
  const Replaced replaced;
  sweep(host);
  std::cout << host.failed_steps << " steps of companions failed\n";
  EXPECT_GE(host.failed_steps, 1000);
}

TEST(CompanionSweepTest, through_the_vtables) {
  sweep_companions(CompanionSweep<calls::VtableHost>());
}

TEST(CompanionSweepTest, by_name) {
  sweep_companions(CompanionSweep<calls::NameHost>(false));
}

}  // namespace
}  // namespace vqmath63::automation::test
