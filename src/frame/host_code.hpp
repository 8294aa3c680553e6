// What steps aside while the library calls code of the host's own.
#pragma once

namespace vqmath63 {

/// What a boundary keeps around the library's work on a thread (a floating-point state of the
/// library's own, say) and takes away for as long as the host's own code runs.
class Surroundings {
 public:
  /// The host's code is about to run; it has run.
  virtual void step_aside() noexcept = 0;
  virtual void come_back() noexcept = 0;

 protected:
  Surroundings() = default;
  ~Surroundings() = default;
  Surroundings(const Surroundings&) = delete;
  Surroundings& operator=(const Surroundings&) = delete;
};

/// This thread's; null where nothing surrounds the work, as in a host that uses the classes
/// directly, and while code of the host runs.
Surroundings*& surroundings() noexcept;

/// Scope of a call to code of the host: a message callback, a companion in place of a built-in one,
/// an object of a script.
class HostCode {
 public:
  HostCode() noexcept : here_(surroundings()), stepped_aside_(here_) {
    if (stepped_aside_ == nullptr) return;
    here_ = nullptr;
    stepped_aside_->step_aside();
  }
  ~HostCode() {
    if (stepped_aside_ == nullptr) return;
    stepped_aside_->come_back();
    here_ = stepped_aside_;
  }
  HostCode(const HostCode&) = delete;
  HostCode& operator=(const HostCode&) = delete;

 private:
  Surroundings*& here_;
  Surroundings* stepped_aside_;
};

}  // namespace vqmath63
