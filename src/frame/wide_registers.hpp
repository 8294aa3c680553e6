// Loops compiled twice: for every processor, and for those that work on four Doubles at once.
#pragma once

#include "frame/steps_only.hpp"

namespace vqmath63 {

// Not on Windows, where g++ does not align the stack for registers of 32 bytes.
#if defined(__x86_64__) && defined(__GNUC__) && !defined(_WIN32)
#define VQ_WIDE_REGISTERS 1

namespace detail {
inline const bool kWideRegisters = !kStepsOnly && __builtin_cpu_supports("avx2");

template <class Loop>
[[gnu::target("avx2"), gnu::flatten, gnu::noinline]] auto run_wide(const Loop& loop) {
  return loop();
}
}  // namespace detail
#endif

// Fused multiply-add, of single numbers, where a processor has it: functions are marked with
// [[gnu::target("fma")]], and called where kFusedSteps is true.
#if defined(__x86_64__) && defined(__GNUC__)
#define VQ_FUSED_STEPS 1
inline const bool kFusedSteps = !kStepsOnly && __builtin_cpu_supports("fma");
#endif

/// Runs `loop()`, all of whose calls have to be inline, in the widest registers that the processor
/// has. Each number is worked out as everywhere: a compiler that does not contract multiplications
/// and additions puts the same steps side by side, no more.
template <class Loop>
auto in_wide_registers(const Loop& loop) {
#ifdef VQ_WIDE_REGISTERS
  if (detail::kWideRegisters) return detail::run_wide(loop);
#endif
  return loop();
}

}  // namespace vqmath63
