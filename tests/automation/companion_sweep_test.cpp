// Every operation of a companion failing in turn, in every worked call: the failure is told, by the
// error line of the routine or as the call's own, and the call after it does well.
#include <memory>
#include <stdexcept>

#include "frame/passed_on.hpp"
#include "worked_calls.hpp"

namespace vqmath63::automation::test {
namespace {

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

// A step of the plan around each operation of a built-in companion, but not around its end.
struct Step {
  Step() = default;
  template <class First, class... Arguments>
  explicit Step(const First&, const Arguments&...) {
    plan.step();
  }
};

template <template <class> class PassedOn, class Companion>
void replace(Maker<Companion>& maker) {
  maker = [real = maker] {
    plan.step();
    return std::make_shared<PassedOn<Step>>(real());
  };
}

// Replaces the companions of this thread for its time.
struct Replaced {
  Replaced() {
    CompanionMakers& makers = companion_makers() = built_in_makers();
    replace<passed_on::ErrorHandler>(makers.ErrorHandler);
    replace<passed_on::CommonMaths>(makers.CommonMaths);
    replace<passed_on::ArrayTools>(makers.ArrayTools);
    replace<passed_on::SortTools>(makers.SortTools);
    replace<passed_on::DateTools>(makers.DateTools);
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
    for (const auto& failure : kFailures) {
      const int number = failure.number;
      plan.fail = failure.fail;
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
