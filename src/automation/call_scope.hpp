// What surrounds every call into the component: the host's floating-point state kept away.
#pragma once

#include <xmmintrin.h>

#include <cstdint>

#include "automation/failure.hpp"

namespace vqmath63::automation {

/// Gives the component round-to-nearest with every floating-point trap masked, whatever the host
/// has set, and gives the host its control state back at the end. Costs a compare when the host
/// runs with the usual state.
class FloatingPointScope {
 public:
  FloatingPointScope() noexcept : host_state_(_mm_getcsr()) {
    if ((host_state_ & kControlBits) != kUsual) [[unlikely]] {
      _mm_setcsr(kUsual);
      changed_ = true;
    }
#if defined(__i386__)
    // 32-bit code also meets the x87 unit, whose pending faults would strike on the way out.
    __asm__ volatile("fnstcw %0" : "=m"(x87_word_));
    if ((x87_word_ & 0x0F3F) != kX87Usual) {
      const std::uint16_t usual = kX87Usual;
      __asm__ volatile("fnclex\n\tfldcw %0" : : "m"(usual));
      x87_changed_ = true;
    }
#endif
  }
  ~FloatingPointScope() {
    if (changed_) [[unlikely]]
      _mm_setcsr(host_state_);
#if defined(__i386__)
    if (x87_changed_) __asm__ volatile("fnclex\n\tfldcw %0" : : "m"(x87_word_));
#endif
  }
  FloatingPointScope(const FloatingPointScope&) = delete;
  FloatingPointScope& operator=(const FloatingPointScope&) = delete;

 private:
  static constexpr std::uint32_t kControlBits = 0xFFC0;  // all but the sticky status flags
  static constexpr std::uint32_t kUsual = 0x1F80;
  static constexpr std::uint16_t kX87Usual = 0x033F;  // 64-bit precision, nearest, all masked

  std::uint32_t host_state_;
  bool changed_ = false;
#if defined(__i386__)
  std::uint16_t x87_word_ = 0;
  bool x87_changed_ = false;
#endif
};

/// The same for a call that may fail, and so begins without an earlier failure's text.
class CallScope : FloatingPointScope {
 public:
  CallScope() noexcept { forget_failure(); }
};

}  // namespace vqmath63::automation
