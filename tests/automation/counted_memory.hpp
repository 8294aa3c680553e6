// This program's memory: blocks counted, requests refused at will. Set up by
// counted_memory_test.cpp.
#pragma once

#include <cstddef>
#include <cstdint>

#if defined(__SANITIZE_ADDRESS__)
#define VQ_HAS_OWN_MALLOC 0  // the sanitizer keeps malloc, and looks for leaks itself
#else
#define VQ_HAS_OWN_MALLOC 1
#endif

namespace vqmath63::automation::test {

/// Of this thread. Requests are counted, and refused, only while `watched`.
struct CountedMemory {
  bool watched = false;
  long requests = 0;
  long fail_at = 0;             ///< the request to refuse; 0 for none
  bool fail_on = false;         ///< refuses all that follow too
  std::size_t most = SIZE_MAX;  ///< refuses single requests beyond
  std::size_t largest = 0;      ///< single request
  long blocks = 0;              ///< that live, watched or not

  bool refused(std::size_t size) noexcept {
    if (!watched) return false;
    ++requests;
    if (size > largest) largest = size;
    const bool planned = fail_on ? requests >= fail_at : requests == fail_at;
    return size > most || (fail_at > 0 && planned);
  }
};
CountedMemory& counted_memory() noexcept;

/// Blocks that live in all threads.
std::int64_t blocks_of_all_threads() noexcept;

}  // namespace vqmath63::automation::test
