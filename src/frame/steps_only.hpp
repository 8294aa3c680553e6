// The one switch that turns every quick way off.
#pragma once

namespace vqmath63 {

/// True in a build with VQ_STEPS_ONLY, in which each routine takes all of its steps one by one, on
/// checked numbers. A test holds the library to what such a build of it answers.
#ifdef VQ_STEPS_ONLY
constexpr bool kStepsOnly = true;
#else
constexpr bool kStepsOnly = false;
#endif

}  // namespace vqmath63
