// What a host may have set before it calls: another rounding, tiny numbers that count as zero, a
// locale. Nothing of it may be seen in a result.
#pragma once

#include <cfenv>
#include <clocale>
#include <cstdint>
#include <stdexcept>
#include <string>

#if !defined(__aarch64__) && !defined(__EMSCRIPTEN__)  // WebAssembly has no such state
#include <xmmintrin.h>
#endif

namespace vqmath63::component::test {

class Surroundings {
 public:
  /// "up", "down", "zero", "flush", or a locale's name; empty for the usual ones.
  explicit Surroundings(std::string name) : name_(std::move(name)) {
    if (name_.empty() || name_ == "flush") return;
    if (name_ == "up") rounding_ = FE_UPWARD;
    if (name_ == "down") rounding_ = FE_DOWNWARD;
    if (name_ == "zero") rounding_ = FE_TOWARDZERO;
    if (rounding_ != FE_TONEAREST) return;
    locale_ = true;
    enter();
    const bool comma = std::localeconv()->decimal_point[0] == ',';
    leave();
    if (!comma) throw std::runtime_error("no locale of decimal commas: " + name_);
  }
  void enter() const {
    if (locale_) std::setlocale(LC_ALL, name_.c_str());
    if (rounding_ != FE_TONEAREST) std::fesetround(rounding_);
    if (name_ == "flush") flush(true);
  }
  void leave() const {
    if (locale_) std::setlocale(LC_ALL, "C");
    if (rounding_ != FE_TONEAREST) std::fesetround(FE_TONEAREST);
    if (name_ == "flush") flush(false);
  }

 private:
  static void flush([[maybe_unused]] bool on) {
#if defined(__aarch64__)
    std::uint64_t state = 0;
    __asm__ volatile("mrs %0, fpcr" : "=r"(state));
    constexpr std::uint64_t kFlush = 1U << 24U;
    __asm__ volatile("msr fpcr, %0" : : "r"(on ? state | kFlush : state & ~kFlush) : "memory");
#elif !defined(__EMSCRIPTEN__)
    constexpr unsigned kFlush = 0x8040;
    _mm_setcsr(on ? _mm_getcsr() | kFlush : _mm_getcsr() & ~kFlush);
#endif
  }

  std::string name_;
  int rounding_ = FE_TONEAREST;
  bool locale_ = false;
};

}  // namespace vqmath63::component::test
