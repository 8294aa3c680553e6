#include "mathlib/blocks.hpp"

#include "frame/steps_only.hpp"
#include "mathlib/four_at_once.hpp"

namespace vqmath63 {

#ifdef VQ_FOUR_AT_ONCE

BlockWay block_way(double (ztMathLib::*member)(double) const) noexcept {
  if (kStepsOnly || !special::kFourAtOnce) return nullptr;
  if (member == &ztMathLib::Erf) return special::erf_block;
  if (member == &ztMathLib::Gamma) return special::gamma_block;
  if (member == &ztMathLib::LoGamma) return special::log_gamma_block;
  return nullptr;
}

BlockWay block_way(double (ztMathLib::*member)(double, double) const) noexcept {
  if (kStepsOnly || !special::kFourAtOnce) return nullptr;
  if (member == &ztMathLib::beta) return special::beta_block;
  if (member == &ztMathLib::Gamma_P) return special::incomplete_gamma_block;
  return nullptr;
}

BlockWay block_way(double (ztMathLib::*member)(double, double, double) const) noexcept {
  if (kStepsOnly || !special::kFourAtOnce) return nullptr;
  return member == &ztMathLib::BetaI ? special::incomplete_beta_block : nullptr;
}

#else

BlockWay block_way(double (ztMathLib::*)(double) const) noexcept {
  return nullptr;
}
BlockWay block_way(double (ztMathLib::*)(double, double) const) noexcept {
  return nullptr;
}
BlockWay block_way(double (ztMathLib::*)(double, double, double) const) noexcept {
  return nullptr;
}

#endif

}  // namespace vqmath63
