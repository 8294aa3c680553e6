// What becomes of a failing routine, and when companions are created.
#include "frame/trap.hpp"

#include <stdexcept>
#include <thread>

#include "companion_fixture.hpp"
#include "frame/checked.hpp"
#include "frame/message_tally.hpp"

namespace vqmath63 {
namespace {

constexpr Location kOuter{"ztAnalyse - ztStatistics", "Outer"};
constexpr char kInnerLine[] = "Error:Division by zero (No.11) In [sMathLib (Code) (Inner)] ";

class TrapTest : public CompanionTest {};

double fail_halfway() {
  return trap<double>({"sMathLib", "Inner"}, [](double& result) {
    result = 0.5;
    result = (Double(1.0) / 0.0).value();
  });
}

TEST_F(TrapTest, a_failure_is_one_line_and_leaves_what_was_built) {
  EXPECT_EQ(trap<int>(kOuter, [](int& result) { result = 7; }), 7);
  EXPECT_EQ(sinks_made, 0) << "no failure, no sink";
  EXPECT_EQ(fail_halfway(), 0.5);
  // A failing inner routine is named, and the outer one goes on.
  EXPECT_EQ(trap<double>(kOuter, [](double& result) { result = fail_halfway() + 2.0; }), 2.5);
  EXPECT_EQ(lines, std::vector<std::string>(2, kInnerLine));
  EXPECT_EQ(trap<std::string>(kOuter, [](auto&) { raise_fault(ErrorNumber::kSubscript); }), "");
  EXPECT_EQ(lines.size(), 3U);
}

TEST_F(TrapTest, failures_share_one_sink_until_the_reference_is_released) {
  fail_halfway();
  fail_halfway();
  EXPECT_EQ(sinks_made, 1);
  common_globals().ErrorHandler.reset();
  fail_halfway();
  EXPECT_EQ(sinks_made, 2);
  EXPECT_EQ(lines.size(), 3U);
}

TEST_F(TrapTest, a_failing_sink_is_the_callers_business) {
  sink_failure = [] { throw std::runtime_error("disk"); };
  EXPECT_THROW(fail_halfway(), std::runtime_error);
  trap_at_end(kOuter, [] { raise_fault(ErrorNumber::kOverflow); });  // nobody left to tell
  EXPECT_TRUE(lines.empty());
}

TEST_F(TrapTest, a_tally_counts_calls_and_keeps_each_line_of_several_once) {
  for (const std::int64_t calls : {1, 5}) {
    lines.clear();
    MessageTally tally(calls);
    for (; tally.call < calls; ++tally.call) {
      fail_halfway();
      fail_halfway();
    }
    EXPECT_EQ(tally.failed(), calls);
    EXPECT_EQ(tally.first_failed(), 0);
    EXPECT_EQ(lines.size(), calls == 1 ? 2U : 0U);
    lines.clear();
    tally.tell();
    EXPECT_EQ(lines, std::vector<std::string>(calls == 1 ? 0 : 1, kInnerLine));
  }
}

TEST_F(TrapTest, threads_share_no_companion_and_no_maker) {
  const std::shared_ptr<ztCommonMaths> mine = common_maths();
  EXPECT_EQ(common_maths(), mine);
  std::thread([&] {
    EXPECT_NE(common_maths(), mine);
    EXPECT_EQ(dynamic_cast<Sink*>(error_handler().get()), nullptr);
  }).join();
  EXPECT_NE(create_sort_tools(), create_sort_tools());
}

}  // namespace
}  // namespace vqmath63
