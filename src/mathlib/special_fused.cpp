// The special functions for processors with fused multiply-add, which serves the exponentials and
// logarithms inside.
#ifdef __x86_64__

// What both ways share is compiled for every processor.
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <limits>

#include "elementary/functions.hpp"
#include "elementary/pair.hpp"
#include "elementary/sure.hpp"
#include "elementary/tables.hpp"
#include "mathlib/cody_tables.hpp"
#include "mathlib/constants.hpp"
#include "mathlib/exp_of_squares.hpp"
#include "mathlib/special_ways.hpp"
#include "mathlib/stirling.hpp"

#ifdef __clang__
#pragma clang attribute push(__attribute__((target("fma"))), apply_to = function)
#else
#pragma GCC push_options
#pragma GCC target("fma")
#endif

#define VQ_FUSED_WAY
#include "mathlib/ways/error_function.hpp"
#include "mathlib/ways/gamma.hpp"

#ifdef __clang__
#pragma clang attribute pop
#else
#pragma GCC pop_options
#endif

#endif
