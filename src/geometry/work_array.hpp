// Scratch arrays that need no allocation while they are short.
#pragma once

#include <array>
#include <cstdint>

#include "frame/array.hpp"

namespace vqmath63 {

/// An array 1 to n for the time of a call; the polygons of a cell fit without an allocation.
template <class T>
class WorkArray {
 public:
  /// Fault 9 for n below 1.
  explicit WorkArray(std::int64_t n)
      : array_(inline_.data(), Bounds{1, static_cast<std::int32_t>(n)}) {
    if (n < 1 || n > kInline) array_.redim(1, static_cast<std::int32_t>(n));
  }
  WorkArray(const WorkArray&) = delete;
  WorkArray& operator=(const WorkArray&) = delete;

  T& operator()(std::int64_t i) { return array_(i); }
  const Array1<T>& array() const { return array_; }

 private:
  static constexpr std::int64_t kInline = 8;
  std::array<T, kInline> inline_{};
  Array1<T> array_;
};

}  // namespace vqmath63
