// What surrounds every call into the component: the host's floating-point state kept away.
#pragma once

#include "automation/failure.hpp"
#include "automation/floating_point_state.hpp"
#include "frame/host_code.hpp"

namespace vqmath63::automation {

/// Gives the component the usual floating-point state, whatever the host has set, and gives the
/// host its own back: at the end, and while code of its own runs in between. What that code leaves
/// is the host's state from then on. Costs a compare when the host runs with the usual state.
class FloatingPointScope : Surroundings {
 public:
  FloatingPointScope() noexcept
      : host_state_(FloatingPointState::current()), here_(surroundings()), outer_(here_) {
    here_ = this;
    change_state();
  }
  ~FloatingPointScope() {
    here_ = outer_;
    if (changed_) [[unlikely]]
      host_state_.restore();
  }

 private:
  void change_state() noexcept {
    changed_ = !host_state_.is_usual();
    if (changed_) [[unlikely]]
      FloatingPointState::set_usual();
  }
  // A call within a call has the library's state around it; the host's is that of the outermost.
  void step_aside() noexcept override {
    if (changed_) host_state_.restore();
    if (outer_ != nullptr) outer_->step_aside();
  }
  void come_back() noexcept override {
    if (outer_ != nullptr) outer_->come_back();
    host_state_ = FloatingPointState::current();
    change_state();
  }

  FloatingPointState host_state_;
  bool changed_ = false;
  Surroundings*& here_;
  Surroundings* const outer_;
};

/// The same for a call that may fail, and so begins without an earlier failure's text.
class CallScope : FloatingPointScope {
 public:
  CallScope() noexcept { forget_failure(); }
};

}  // namespace vqmath63::automation
