// The built-in sort companion, and the sort of Singles behind it.
#pragma once

#include <span>

#include "frame/companions.hpp"

namespace vqmath63 {

/// Sorts into ascending order, NaN last; -0 and 0 are equal. O(n) in the count; asks for scratch
/// memory of the size of the data when there are many, and does without (O(n log n)) when there is
/// none to be had. Never fails.
void sort_singles(std::span<float> values) noexcept;

/// Sorts Singles by their bits. An unallocated array, and one that does not reach down to element
/// 1, give qOK False; an array without an element 1 to n has nothing to do.
class BuiltInSortTools final : public ztSortTools {
 public:
  void SortAscending(Array1<float>& values, bool& qOK) override;
};

}  // namespace vqmath63
