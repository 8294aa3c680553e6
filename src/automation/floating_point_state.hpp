// The processor's floating-point control state, as far as hosts and the library can differ in it.
#pragma once

#include <cstdint>

#if defined(__SSE2__)
#include <xmmintrin.h>
#elif !defined(__aarch64__)
#include <cfenv>
#endif

namespace vqmath63::automation {

/// Rounding, traps and the treatment of tiny numbers. Usual is: to nearest, nothing trapped, tiny
/// numbers kept.
class FloatingPointState {
 public:
  /// This thread's state now.
  static FloatingPointState current() noexcept {
    FloatingPointState state;
    state.read();
    return state;
  }
#if defined(__SSE2__)
  bool is_usual() const noexcept {
    bool usual = (mxcsr_ & kControlBits) == kUsual;
#if defined(__i386__)
    usual = usual && (x87_ & 0x0F3F) == kX87Usual;
#endif
    return usual;
  }
  static void set_usual() noexcept {
    _mm_setcsr(kUsual);
#if defined(__i386__)
    set_x87(kX87Usual);
#endif
  }
  void restore() const noexcept {
    _mm_setcsr(mxcsr_);
#if defined(__i386__)
    set_x87(x87_);
#endif
  }

 private:
  static constexpr std::uint32_t kControlBits = 0xFFC0;  // all but the sticky status flags
  static constexpr std::uint32_t kUsual = 0x1F80;
  std::uint32_t mxcsr_ = kUsual;
  void read() noexcept {
    mxcsr_ = _mm_getcsr();
#if defined(__i386__)
    __asm__ volatile("fnstcw %0" : "=m"(x87_));
#endif
  }
#if defined(__i386__)
  // 32-bit code also meets the x87 unit.
  static constexpr std::uint16_t kX87Usual = 0x033F;  // 64-bit precision, nearest, all masked
  std::uint16_t x87_ = kX87Usual;
  // A flag that is up strikes at the next instruction once its trap is open, so it goes first.
  static void set_x87(std::uint16_t word) noexcept {
    std::uint16_t status = 0;
    __asm__ volatile("fnstsw %0" : "=m"(status));
    constexpr int kPending = 0x80;
    if ((status & ~word & 0x3F) != 0 || (status & kPending) != 0) __asm__ volatile("fnclex");
    __asm__ volatile("fldcw %0" : : "m"(word));
  }
#endif
#elif defined(__aarch64__)
  bool is_usual() const noexcept {
    return (fpcr_ & kControlBits) == 0;
  }
  static void set_usual() noexcept {
    write(0);
  }
  void restore() const noexcept {
    write(fpcr_);
  }

 private:
  // Rounding, traps and tiny numbers; the lowest three are of processors that treat the tiny
  // operands and results of one instruction apart.
  static constexpr std::uint64_t kControlBits = 0x07C89F07;
  std::uint64_t fpcr_ = 0;
  void read() noexcept {
    __asm__ volatile("mrs %0, fpcr" : "=r"(fpcr_));
  }
  static void write(std::uint64_t fpcr) noexcept {
    __asm__ volatile("msr fpcr, %0" : : "r"(fpcr) : "memory");
  }
#else
  // What <cfenv> cannot compare is put aside each time.
  bool is_usual() const noexcept {
    return false;
  }
  static void set_usual() noexcept {
    std::fesetenv(FE_DFL_ENV);
  }
  void restore() const noexcept {
    std::fesetenv(&environment_);
  }

 private:
  std::fenv_t environment_;
  void read() noexcept {
    std::fegetenv(&environment_);
  }
#endif
};

}  // namespace vqmath63::automation
