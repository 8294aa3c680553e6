// Every allocation of every worked call refused in turn: an error, never a crash, a leak, a changed
// host or a component that has not recovered.
#include "script_fakes.hpp"
#include "worked_calls.hpp"

namespace vqmath63::automation::test {
namespace {

using namespace system::test;

// Refuses request number `at` of what `work` does, alone or with all that follow; true when there
// was one.
template <class Work>
bool refusing(long at, bool on, const Work& work) {
  CountedMemory& memory = counted_memory();
  memory.requests = 0;
  memory.fail_at = at;
  memory.fail_on = on;
  work();
  memory.fail_at = 0;
  return memory.requests >= at;
}

// A thread's first failure sets up places that stay.
void set_up_failures() {
  EXPECT_THROW(throw std::bad_alloc(), std::bad_alloc);
  set_failure(nullptr, E_FAIL, "");
  SetErrorInfo(0, nullptr);
}

template <class Base>
class AllocationSweep final : public WorkedCalls<Base> {
 public:
  using WorkedCalls<Base>::WorkedCalls;
  long requests = 0;
  std::size_t to_stderr = 0;

 private:
  void about_to_enter() override { counted_memory().watched = true; }
  void has_left() override { counted_memory().watched = false; }

  // The calls are made on an object that was made while memory ended, where there is one: it is as
  // good as any.
  void create(const std::string& class_name, bool to_log) override {
    IDispatch* kept = nullptr;
    const long refusals = each_step([&](long at, bool on) {
      WorkedCalls<Base>::create(class_name, to_log);
      this->release();
      this->let_go();
      const bool refused = refusing(at, on, [&] { this->object_ = this->made(class_name); });
      Outcome outcome;
      outcome.lines = this->lines;
      EXPECT_TRUE(outcome.lines.empty() || outcome.tells(7)) << class_name << at;
      outcome.code = this->creation_;
      EXPECT_TRUE(this->object_ != nullptr ? outcome.code == S_OK : outcome.tells(7))
          << class_name << at;
      if (refused && this->object_ != nullptr) std::swap(kept, this->object_);
      return refused;
    });
    EXPECT_GE(refusals, 1) << class_name;
    WorkedCalls<Base>::create(class_name, to_log);
    if (kept == nullptr) return;
    std::swap(kept, this->object_);
    kept->Release();
  }
  // A number or a truth is the old one, the new one, or nothing; a count may be one of the way.
  static bool whole(const calls::Type& type, const VARIANT& before, const std::string& now,
                    const std::string& usual) {
    if (type.rank > 0 || type.vt == VT_I4 || type.vt == VT_BSTR) return true;
    return now == calls::shown(before) || now == usual || now == "0" || now == "False";
  }

  void trouble(const std::string& name, const calls::Member& member,
               const Outcome& usual) override {
    requests += each_step([&](long at, bool on) {
      const std::string how =
          name + " without allocation " + std::to_string(at) + (on ? " and those after" : "");
      bool refused = false;
      const auto kept = [&] {
        this->let_go();
        const long before = counted_memory().blocks;
        refused = once(at, on, member, usual, how);
        this->let_go();
        return counted_memory().blocks - before;
      };
      // What the system keeps for good is there from the first time on.
      EXPECT_TRUE(kept() == 0 || kept() == 0) << how << " leaks";
      return refused;
    });
  }

  bool once(long at, bool on, const calls::Member& member, const Outcome& usual,
            const std::string& how) {
    Outcome outcome;
    const bool refused = refusing(at, on, [&] { outcome = this->attempt(); });
    if (outcome.lines.empty() && !usual.lines.empty() && outcome.code == S_OK) {
      outcome.lines = usual.lines;  // the callback could not be given them
      to_stderr += outcome.lines.size();
    }
    EXPECT_TRUE(outcome == usual || (refused && outcome.tells(7))) << how << outcome.text();
    for (std::size_t i = 0; i < outcome.after.size(); ++i) {
      EXPECT_TRUE(whole(member.arguments[i], (*this->host_)[i].v, outcome.after[i], usual.after[i]))
          << how;
    }
    EXPECT_EQ(this->attempt(), usual) << how << ", the call after it";
    return refused;
  }
};

template <class Host>
void sweep_allocations(Host&& host) {
  set_up_failures();
  ::testing::internal::CaptureStderr();
  sweep(host);
  const auto lines = calls::parts(::testing::internal::GetCapturedStderr(), '\n');
  EXPECT_GE(lines.size(), host.to_stderr) << "no line vanishes";
  std::cout << host.requests << " requests refused, " << lines.size() << " lines to stderr\n";
  // Under the sanitizer only operator new is refused.
  EXPECT_GE(host.requests, VQ_HAS_OWN_MALLOC ? 500 : 60);
}

TEST(AllocationSweepTest, through_the_vtables) {
  sweep_allocations(AllocationSweep<calls::VtableHost>());
}

TEST(AllocationSweepTest, by_name_with_variables_of_the_exact_types) {
  sweep_allocations(AllocationSweep<calls::NameHost>(false));
}

TEST(AllocationSweepTest, by_name_with_untyped_variables) {
  sweep_allocations(AllocationSweep<calls::NameHost>(true));
}

// What the worked calls do not have: a script's own arrays and boxes, texts, a member that fails.
class ScriptAllocationTest : public BoundaryTest {};

constexpr auto long_text = [] { return text(std::u16string(100, u'x')); };
constexpr auto variants = [] { return array(VT_VARIANT, 0, {1, 2, 3, 4, 5, 6}); };
constexpr auto list = [] { return script_array({r8(1), r8(2)}); };
constexpr auto rows = [] { return script_array({list(), list()}); };
constexpr auto box = [] { return script_box(long_text()); };
constexpr auto nine = [] { return i4(9); };

TEST_F(ScriptAllocationTest, calls_by_name) {
  constexpr int kNone = -1;  // no second argument
  const struct {
    const char* name;
    DISPID id;
    Value (*make)();
    int second;
    Form form;
    HRESULT done = S_OK;
  } calls[] = {
      {"text from a number", 14, nine, kNone, kVariant},
      {"defaults", 15, nine, kNone, kByValue},
      {"a failing member", 23, nine, 0, kByValue, error_code(9)},
      {"a wrong argument", 17, long_text, kChange, kByValue, error_code(13)},
      {"variants replaced", 17, variants, kResize, kVariant},
      {"script's array changed", 17, list, kChange, kByValue},
      {"script's array refilled", 18, list, kResize, kVariant},
      {"script's rows changed", 21, rows, kChange, kByValue},
      {"script's rows refilled", 21, rows, kResize, kByRef},
      {"box", 14, box, kNone, kByValue},
  };
  set_up_failures();
  for (const auto& row : calls) {
    each_step([&](long at, bool on) {
      const long before = counted_memory().blocks;
      HRESULT hr = S_OK;
      bool refused = false;
      {
        const Sent sent(row.make(), row.form);
        VARIANT arguments[] = {i4(row.second).v, sent.variant};
        const UINT skipped = row.second == kNone ? 1 : 0;
        DISPPARAMS params{arguments + skipped, nullptr, 2 - skipped, 0};
        Value result;
        EXCEPINFO exception{};
        refused = refusing(at, on, [&] {
          counted_memory().watched = true;
          hr = object->Invoke(row.id, IID_NULL, 0, DISPATCH_METHOD, &params, &result.v, &exception,
                              nullptr);
          counted_memory().watched = false;
        });
        SysFreeString(exception.bstrDescription);
        SysFreeString(exception.bstrSource);
        if (hr == DISP_E_EXCEPTION) hr = exception.scode;
      }
      SetErrorInfo(0, nullptr);
      EXPECT_EQ(counted_memory().blocks, before) << row.name << " leaks with allocation " << at;
      EXPECT_EQ(ScriptObject::alive, 0) << row.name;
      EXPECT_TRUE(hr == row.done || (refused && (hr == E_OUTOFMEMORY || hr == error_code(7))))
          << row.name << " allocation " << at << ": " << std::hex << hr;
      return refused;
    });
  }
}

}  // namespace
}  // namespace vqmath63::automation::test
