// Every worked call with huge numbers and with arrays of one element far from 1: what such bounds
// and counts promise is not there, and no memory is taken for it.
#include <array>

#include "worked_calls.hpp"

namespace vqmath63::automation::test {
namespace {

using calls::Variable;
using system::test::i4;

constexpr LONG kHuge[] = {2147483647, 1073741824, 536870913, 536870911, 65536, -2147483647 - 1};
constexpr std::size_t kLittle = 1 << 20;

class GiantArguments final : public WorkedCalls<calls::NameHost> {
 public:
  explicit GiantArguments(calls::Interfaces interfaces) : WorkedCalls(false) {
    for (const auto& [key, member] : interfaces.members()) {
      const auto words = calls::parts(key, ' ');
      if (words[1] == "let" && member.arguments.at(0).vt == VT_I4) {
        settings_.push_back({words[0], words[2]});
      }
    }
  }
  int attempts = 0;

 private:
  void about_to_enter() override { counted_memory().watched = true; }
  void has_left() override { counted_memory().watched = false; }

  // Of the type of `model`, one element with bounds n .. n in each dimension that `which` has.
  static void set_far(Variable& to, const VARIANT& model, LONG n, int which) {
    SAFEARRAYBOUND bounds[2] = {{1, 1}, {1, 1}};
    const UINT dims = model.parray == nullptr ? 1 : model.parray->cDims;
    if (dims == 2) bounds[0].cElements = 3;
    for (UINT d = 0; d < dims; ++d) {
      if ((which >> d & 1) != 0) bounds[d] = {1, n};
    }
    to.v.vt = model.vt;
    to.v.parray = SafeArrayCreate(static_cast<VARTYPE>(model.vt & VT_TYPEMASK), dims, bounds);
  }

  // On an object of its own with the settings of the table's, the last of them `last`.
  void look(const std::string& name, const std::vector<Variable>& sent, const std::string& how,
            const std::string& last = "", LONG value = 0) {
    IDispatch* const of_table = object_;
    object_ = made(class_);
    for (const auto& [setting, variable] : made_) put(setting, variable.v);
    if (!last.empty()) put(last, i4(value).v);
    CountedMemory& memory = counted_memory();
    memory.largest = 0;
    memory.most = 64 * kLittle;
    const Outcome outcome = attempt(sent);
    memory.most = SIZE_MAX;
    // The bins are all there is to the result; 4 GiB are not even asked for.
    const bool asked_for =
        name == "ztSample.BinVector" && outcome.tells(7) && memory.largest < std::size_t{1} << 32;
    EXPECT_TRUE(memory.largest < kLittle || asked_for)
        << name << " with " << how << " asks for " << memory.largest << ": " << outcome.text();
    ++attempts;
    object_->Release();
    object_ = of_table;
  }
  void put(const std::string& name, const VARIANT& value) {
    std::vector<Variable> sent(1);
    copy(sent[0], value);
    Variable none;
    calls::Member setting;
    setting.arguments.resize(1);
    EXPECT_EQ(NameHost::call("let", name, setting, sent, none.v), S_OK);
  }

  void create(const std::string& class_name, bool to_log) override {
    made_.clear();
    WorkedCalls::create(class_name, to_log);
  }
  void trouble(const std::string& name, const calls::Member&, const Outcome&) override {
    const std::size_t count = host_->size();
    if (kind_ == "let") {
      made_.emplace_back(name.substr(name.find('.') + 1), Variable());
      copy(made_.back().second, host_->front().v);
    }
    if (kind_ != "call") return;
    for (const LONG n : kHuge) {
      const std::string at = " " + std::to_string(n);
      for (std::size_t i = 0; i <= count; ++i) {
        const std::string how = i < count ? "argument " + std::to_string(i + 1) : "all arrays";
        std::vector<Variable> sent(count);
        if (i < count && (*host_)[i].v.vt == VT_I4) {
          sent[i].v = i4(n).v;
          look(name, sent, how + at);
        }
        for (const int which : {1, 2, 3}) {
          bool far = i == count;
          std::vector<Variable> arrays(count);
          for (std::size_t k = 0; k < count; ++k) {
            const VARIANT& own = (*host_)[k].v;
            if ((own.vt & VT_ARRAY) == 0 || (i < count && i != k)) continue;
            set_far(arrays[k], own, n, which);
            far = true;
          }
          if (far) look(name, arrays, how + at);
        }
      }
      for (const auto& [of, setting] : settings_) {
        if (of == class_) look(name, {}, setting + at, setting, n);
      }
    }
  }

  std::vector<std::pair<std::string, Variable>> made_;
  std::vector<std::array<std::string, 2>> settings_;
};

TEST(GiantArgumentsTest, take_no_memory) {
  if (!VQ_HAS_OWN_MALLOC) GTEST_SKIP() << "what is asked of the sanitizer's malloc is not seen";
  GiantArguments host(calls::Interfaces(VQ_TEST_DATA "/interface.tsv"));
  sweep(host);
  EXPECT_GE(host.attempts, 3000);
}

}  // namespace
}  // namespace vqmath63::automation::test
