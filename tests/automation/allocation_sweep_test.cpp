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

// Calls `once(at, on)` for the first, second, ... request until it has no more of them.
template <class Once>
long each_request(const Once& once) {
  long most = 0;
  for (const bool on : {false, true}) {
    long at = 1;
    while (once(at, on) && at < 1000) ++at;
    EXPECT_LT(at, 1000);
    most = at - 1;
  }
  return most;
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

  // A number or a truth is the old one, the new one, or nothing; a count may be one of the way.
  static bool whole(const calls::Type& type, const VARIANT& before, const std::string& now,
                    const std::string& usual) {
    if (type.rank > 0 || type.vt == VT_I4 || type.vt == VT_BSTR) return true;
    return now == calls::shown(before) || now == usual || now == "0" || now == "False";
  }

  void trouble(const std::string& name, const calls::Member& member,
               const Outcome& usual) override {
    requests += each_request([&](long at, bool on) {
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
  EXPECT_GE(host.requests, VQ_HAS_OWN_MALLOC ? 500 : 200);
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

// An object that was made while memory ended is as good as any, or none.
TEST(AllocationSweepTest, creation) {
  struct Creation final : calls::VtableHost {
    void about_to_enter() override { counted_memory().watched = true; }
    void has_left() override { counted_memory().watched = false; }
    void create(const std::string& class_name, bool) override {
      release();
      common_globals() = {};
      VtableHost::create(class_name, false);
      lines.clear();
      release();
      common_globals() = {};
      refused += refusing(at, on, [&] { object_ = made(class_name); });
      EXPECT_TRUE(object_ != nullptr ? creation_ == S_OK
                                     : creation_ == E_OUTOFMEMORY || creation_ == error_code(7))
          << class_name << at;
      Outcome outcome;
      outcome.lines = lines;
      EXPECT_TRUE(lines.empty() || outcome.tells(7)) << class_name << at;
      lines.clear();
      if (object_ == nullptr) object_ = made(class_name);
      log = class_name == "ztAnalyseInfo";
    }
    void failed(int line, const std::string& what) override {
      if (!log) VtableHost::failed(line, what);
    }
    long at = 0;
    bool on = false, log = false;
    int refused = 0;
  };
  const calls::LogFolder folder;
  const calls::Interfaces interfaces(VQ_TEST_DATA "/interface.tsv");
  const long most = each_request([&](long at, bool on) {
    Creation host;
    host.at = at;
    host.on = on;
    calls::Run(interfaces, host).all(VQ_TEST_DATA "/calls.tsv");
    return host.refused > 0;
  });
  EXPECT_GE(most, 3);
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
    each_request([&](long at, bool on) {
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
