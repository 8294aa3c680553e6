// What surrounds every call into the component: the host's floating-point state kept away.
#pragma once

#include "automation/failure.hpp"
#include "automation/floating_point_state.hpp"
#include "frame/host_code.hpp"

namespace vqmath63::automation {

/// Gives the component the usual floating-point state, whatever the host has set, and gives the
/// host its own back: at the end, and while code of its own runs in between. What that code leaves
/// is the host's state from then on. Costs a compare when the host runs with the usual state, and
/// less within another such scope, which has set the state already.
class FloatingPointScope : Surroundings {
 public:
  FloatingPointScope() noexcept : here_(surroundings()) {
    if (here_ != nullptr) return;
    here_ = this;
    come_back();
  }
  ~FloatingPointScope() {
    if (here_ != this) return;
    here_ = nullptr;
    step_aside();
  }

 private:
  void step_aside() noexcept final {
    if (changed_) [[unlikely]]
      host_state_.restore();
  }
  void come_back() noexcept final {
    host_state_ = FloatingPointState::current();
    changed_ = !host_state_.is_usual();
    if (changed_) [[unlikely]]
      FloatingPointState::set_usual();
  }

  FloatingPointState host_state_;
  bool changed_ = false;
  Surroundings*& here_;
};

/// The same for a call that may fail, and so begins without an earlier failure's text.
class CallScope : FloatingPointScope {
 public:
  CallScope() noexcept { forget_failure(); }
};

/// Surrounds a call without arithmetic, which the host's floating-point state cannot disturb: to
/// look at that state takes longer than the rest of such a call.
struct PlainScope {
  PlainScope() noexcept { forget_failure(); }
};

/// The same where an earlier failure's text stays.
struct NoScope {};

}  // namespace vqmath63::automation
