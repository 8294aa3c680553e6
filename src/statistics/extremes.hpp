// Largest and smallest sample and where they stand.
#pragma once

#include <cstdint>

#include "frame/array.hpp"

namespace vqmath63 {

// Over samples 1 to n, n the upper bound: the first sample is kept until a strictly larger
// (smaller) one replaces it. So a NaN at element 1 stays, a later one is passed over, and of -0 and
// 0 the first counts. Fault 9 for an unallocated array, an upper bound below 1 or a missing
// element 1.

float maximum_of(const Array1<const float>& x);
float minimum_of(const Array1<const float>& x);
/// Index of the kept element, from 1.
std::int32_t index_of_maximum(const Array1<const float>& x);
std::int32_t index_of_minimum(const Array1<const float>& x);

}  // namespace vqmath63
