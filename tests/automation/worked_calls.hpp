// What the sweeps over the worked calls share: a host that makes each call many times, from the
// same variables, while something is wrong.
#pragma once

#include <algorithm>
#include <functional>

#include "component/native_hosts.hpp"
#include "counted_memory.hpp"
#include "frame/companions.hpp"
#include "frame/message_receivers.hpp"

namespace vqmath63::automation::test {

/// All that a call leaves.
struct Outcome {
  HRESULT code = S_OK;
  std::string result;
  std::vector<std::string> after;
  std::vector<std::string> lines;

  bool operator==(const Outcome&) const = default;
  /// Told as error `number`, by an error line or as the call's own failure.
  bool tells(int number) const {
    if (FAILED(code)) {
      return code == (number < 0 ? number : error_code(number)) ||
             (number == 7 && code == E_OUTOFMEMORY);
    }
    const std::string words = "(No." + std::to_string(number) + ")";
    return std::any_of(lines.begin(), lines.end(), [&](const std::string& line) {
      return line.find(words) != std::string::npos;
    });
  }
  std::string text() const {
    std::string all = std::to_string(code) + ", result " + result + ", arguments";
    for (const auto& part : after) all += ' ' + part;
    for (const auto& part : lines) all += "\n  " + part;
    return all;
  }
};

/// A copy of a host's variable; the array of an array variable may be none.
inline void copy(calls::Variable& to, const VARIANT& from) {
  const bool no_array = (from.vt & VT_ARRAY) != 0 && from.parray == nullptr;
  if (no_array) {
    to.v = from;
  } else {
    ASSERT_EQ(VariantCopy(&to.v, &from), S_OK);
  }
}

/// `Base` is calls::VtableHost or calls::NameHost. A sweep overrides trouble(), in which it makes
/// the call with attempt() as often as it likes, from the same variables each time. The call has to
/// come out as usual before and after; the last one is what the table is compared with.
template <class Base>
class WorkedCalls : public Base {
 public:
  using Base::Base;

  void create(const std::string& class_name, bool to_log) override {
    class_ = class_name;
    logs_ = to_log;
    Base::create(class_name, false);  // no log: lines of repeated calls would fill it
  }
  HRESULT call(const std::string& kind, const std::string& name, const calls::Member& member,
               std::vector<calls::Variable>& sent, VARIANT& result) override {
    kind_ = kind;
    host_ = &sent;
    make_ = [&] { return Base::call(kind, name, member, variables_, result_.v); };
    const Outcome usual = attempt();
    trouble(class_ + '.' + name, member, usual);
    EXPECT_EQ(attempt(), usual) << class_ << '.' << name << ": " << usual.text();
    for (std::size_t i = 0; i < sent.size(); ++i) std::swap(sent[i].v, variables_[i].v);
    std::swap(result, result_.v);
    let_go();
    ++rows;
    this->lines = usual.lines;
    return usual.code;
  }
  void failed(int line, const std::string& what) override {
    // Nothing is logged here.
    const bool of_log = what.find("lines:") != what.npos || what.find(" lines, ") != what.npos;
    if (!logs_ || !of_log) Base::failed(line, what);
  }

  int rows = 0;

 protected:
  virtual void trouble(const std::string& name, const calls::Member& member,
                       const Outcome& usual) = 0;
  /// With the host's variables, but for argument i `other[i]` where that is something.
  Outcome attempt(const std::vector<calls::Variable>& other = {}) {
    let_go();
    for (std::size_t i = 0; i < host_->size(); ++i) {
      const bool changed = i < other.size() && other[i].v.vt != VT_EMPTY;
      copy(variables_.emplace_back(), changed ? other[i].v : (*host_)[i].v);
    }
    Outcome outcome;
    outcome.code = make_();
    SetErrorInfo(0, nullptr);
    outcome.result = calls::shown(result_.v);
    for (const auto& variable : variables_) {
      outcome.after.push_back(calls::shown(variable.v));
      if ((variable.v.vt & VT_ARRAY) != 0 && variable.v.parray != nullptr) {
        EXPECT_EQ(variable.v.parray->cLocks, 0U);
      }
    }
    outcome.lines = this->lines;
    return outcome;
  }
  /// Lets go of what the last attempt left, the thread's companions too.
  void let_go() {
    variables_ = std::vector<calls::Variable>();
    VariantClear(&result_.v);
    this->lines = std::vector<std::string>();
    std::u16string().swap(this->told);
    common_globals() = {};
    for (const MessagesOf whose : {MessagesOf::kThread, MessagesOf::kProcess}) {
      take_last_message(whose);
    }
  }

  std::string class_, kind_;
  const std::vector<calls::Variable>* host_ = nullptr;

 private:
  bool logs_ = false;
  std::vector<calls::Variable> variables_;
  calls::Variable result_;
  std::function<HRESULT()> make_;
};

/// Calls `once(at, on)` for step 1, 2, ... to fail, alone and then with all that follow, until it
/// has no such step. Returns how many there were.
template <class Once>
long each_step(const Once& once) {
  long most = 0;
  for (const bool on : {false, true}) {
    long at = 1;
    while (once(at, on) && at < 1000) ++at;
    EXPECT_LT(at, 1000);
    most = at - 1;
  }
  return most;
}

/// Makes the worked calls of all classes by a host.
template <class Host>
void sweep(Host&& host) {
  const calls::LogFolder folder;
  const calls::Interfaces interfaces(VQ_TEST_DATA "/interface.tsv");
  calls::Run(interfaces, host).all(VQ_TEST_DATA "/calls.tsv");
  EXPECT_GE(host.rows, 200);
}

}  // namespace vqmath63::automation::test
