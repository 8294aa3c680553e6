// The quick ways for processors with fused multiply-add: what is exact is so in fewer steps.
#ifdef __x86_64__

// What both ways share is compiled for every processor.
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <utility>

#include "elementary/functions.hpp"
#include "elementary/middle.hpp"
#include "elementary/pair.hpp"
#include "elementary/sines.hpp"
#include "elementary/sure.hpp"
#include "elementary/two_by_pi.hpp"
#include "elementary/wide_constants.hpp"

#ifdef __clang__
#pragma clang attribute push(__attribute__((target("fma"))), apply_to = function)
#else
#pragma GCC push_options
#pragma GCC target("fma")
#endif

#define VQ_FUSED_WAY
#include "elementary/ways/arc_tangent.hpp"
#include "elementary/ways/circular.hpp"
#include "elementary/ways/exponential.hpp"
#include "elementary/ways/hypotenuse.hpp"
#include "elementary/ways/logarithm.hpp"
#include "elementary/ways/power.hpp"

#ifdef __clang__
#pragma clang attribute pop
#else
#pragma GCC pop_options
#endif

namespace vqmath63::elementary {

const bool kFused = __builtin_cpu_supports("fma");

}  // namespace vqmath63::elementary

#endif
