// The built-in array companion.
#pragma once

#include "frame/companions.hpp"

namespace vqmath63 {

/// Masking and removal in linear time, allocating the result and nothing else. An array from which
/// nothing is removed stays as it is, bounds and all. A shortened one keeps its lower bound and the
/// elements below 1, unless nothing is left. Arrays that do not reach down to element 1 are fault
/// 9. RemoveListedEntries raises fault 9 for a position outside the data or a list shorter than
/// its count, and 5 for a negative count or positions that do not ascend. The data stay as they
/// were on a fault.
class BuiltInArrayTools final : public ztArrayTools {
 public:
  void ApplyMask(Array1<Boolean>& mask, Array1<float>& values, std::int32_t& count, bool& ok,
                 bool& keepFlag) override;
  void RemoveNullEntries(float& nullValue, Array1<float>& values, std::int32_t& count,
                         Array1<std::int32_t>& removedList, std::int32_t& removedCount,
                         bool& ok) override;
  void RemoveListedEntries(Array1<std::int32_t>& removedList, std::int32_t& removedCount,
                           Array1<float>& values, std::int32_t& newCount, bool& ok) override;
  void InitialiseFlagArray(std::int32_t& count, bool& flagA, bool& flagB, Array1<Boolean>& arr,
                           bool& ok) override;
};

}  // namespace vqmath63
