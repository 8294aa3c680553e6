// Runs pieces of work on several threads of the program.
#pragma once

#include <algorithm>
#include <cstddef>
#include <exception>
#include <thread>
#include <vector>

namespace vqmath63::host {

/// Threads that work is spread over: as many as the machine runs at once, at most eight.
inline std::size_t worker_count() {
  constexpr std::size_t kMost = 8;
  return std::clamp<std::size_t>(std::thread::hardware_concurrency(), 1, kMost);
}

/// Calls work(0) to work(count - 1) at the same time and waits for all; of what they throw the
/// first by number goes on.
template <class Work>
void in_parallel(std::size_t count, const Work& work) {
  std::vector<std::exception_ptr> failures(count);
  const auto guarded = [&](std::size_t i) {
    try {
      work(i);
    } catch (...) {
      failures[i] = std::current_exception();
    }
  };
  {
    std::vector<std::jthread> threads;
    for (std::size_t i = 1; i < count; ++i) threads.emplace_back(guarded, i);
    if (count > 0) guarded(0);
  }
  for (const std::exception_ptr& failure : failures) {
    if (failure) std::rethrow_exception(failure);
  }
}

}  // namespace vqmath63::host
