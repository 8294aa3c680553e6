// The block ways of the special functions, for processors with AVX2 and fused multiply-add.
#pragma once

#include "mathlib/blocks.hpp"

// Not on Windows, where g++ does not align the stack for registers of 32 bytes.
#if defined(__x86_64__) && !defined(_WIN32)
#define VQ_FOUR_AT_ONCE 1

namespace vqmath63::special {

/// Whether the processor can; false until it has been asked, at start.
extern const bool kFourAtOnce;

void erf_block(const double* const* arguments, double* results, bool* done,
               std::size_t count) noexcept;
void gamma_block(const double* const* arguments, double* results, bool* done,
                 std::size_t count) noexcept;
void log_gamma_block(const double* const* arguments, double* results, bool* done,
                     std::size_t count) noexcept;
void beta_block(const double* const* arguments, double* results, bool* done,
                std::size_t count) noexcept;
void incomplete_gamma_block(const double* const* arguments, double* results, bool* done,
                            std::size_t count) noexcept;
void incomplete_beta_block(const double* const* arguments, double* results, bool* done,
                           std::size_t count) noexcept;

}  // namespace vqmath63::special

#endif
