// Memory of a safe array: its descriptor with the hidden words before it, and the elements' block.
#pragma once

#include <cstdlib>
#include <cstring>
#include <limits>
#include <optional>

#include "automation/system/types.hpp"
#include "frame/memory.hpp"

namespace vqmath63::automation::system {

/// Room before the descriptor for an interface id, in whose last four bytes the element type
/// stands.
inline constexpr std::size_t kHidden = sizeof(GUID);
inline constexpr UINT kMaxDims = 64;

/// The memory belongs to somebody else.
inline constexpr int kBorrowed = FADF_AUTO | FADF_STATIC | FADF_EMBEDDED;

/// Whether both bounds can be written as a LONG; an empty dimension ends one before its start.
inline bool is_valid(const SAFEARRAYBOUND& bound) {
  const std::int64_t upper = std::int64_t{bound.lLbound} + bound.cElements - 1;
  return upper >= std::numeric_limits<LONG>::min() && upper <= std::numeric_limits<LONG>::max();
}

/// The number of bytes of all elements; empty where no memory block can have that size.
inline std::optional<std::size_t> bytes_of(const SAFEARRAYBOUND* bounds, UINT dims, ULONG element) {
  for (UINT i = 0; i < dims; ++i) {
    if (bounds[i].cElements == 0) return 0;
  }
  std::size_t bytes = element;
  for (UINT i = 0; i < dims; ++i) {
    if (__builtin_mul_overflow(bytes, std::size_t{bounds[i].cElements}, &bytes))
      return std::nullopt;
  }
  if (bytes > std::size_t{std::numeric_limits<std::ptrdiff_t>::max()}) return std::nullopt;
  return bytes;
}

inline std::size_t bytes_of(const SAFEARRAY& array) {
  return bytes_of(array.rgsabound, array.cDims, array.cbElements).value_or(0);
}

inline std::size_t elements_of(const SAFEARRAY& array) {
  return array.cbElements == 0 ? 0 : bytes_of(array) / array.cbElements;
}

/// A block is never of size zero, so that an array without elements has an address too.
inline void* allocate(std::size_t bytes) {
  void* const block = std::calloc(bytes == 0 ? 1 : bytes, 1);
  prefer_large_pages(block, bytes);
  return block;
}

inline SAFEARRAY* allocate_descriptor(UINT dims) {
  const std::size_t size = kHidden + sizeof(SAFEARRAY) + (dims - 1) * sizeof(SAFEARRAYBOUND);
  char* block = static_cast<char*>(std::calloc(1, size));
  if (block == nullptr) return nullptr;
  auto* array = reinterpret_cast<SAFEARRAY*>(block + kHidden);
  array->cDims = static_cast<USHORT>(dims);
  return array;
}

inline void free_descriptor(SAFEARRAY* array) {
  std::free(reinterpret_cast<char*>(array) - kHidden);
}

inline void write_hidden(SAFEARRAY* array, const void* what, std::size_t size) {
  std::memcpy(reinterpret_cast<char*>(array) - size, what, size);
}

}  // namespace vqmath63::automation::system
