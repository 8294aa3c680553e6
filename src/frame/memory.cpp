#include "frame/memory.hpp"

#include <cstdio>
#include <cstring>
#include <limits>

#ifdef __linux__
#include <sys/mman.h>
#endif

#include "frame/fault.hpp"

namespace vqmath63 {
namespace {

constexpr std::uint64_t kMostBytes = std::uint64_t{1} << 32;
constexpr std::uint64_t kLarge = std::uint64_t{1} << 28;
constexpr std::uint64_t kUnknown = std::numeric_limits<std::uint64_t>::max();

struct CloseFile {
  void operator()(std::FILE* file) const noexcept { std::fclose(file); }
};

// Bytes that can still be written to without ending the process, where the system tells (Linux
// does, and hands out more than it has); elsewhere the allocation itself is refused.
std::uint64_t available() {
  const std::unique_ptr<std::FILE, CloseFile> file(std::fopen("/proc/meminfo", "r"));
  if (!file) return kUnknown;
  std::uint64_t kilobytes = 0;
  bool known = false;
  char line[128];
  while (std::fgets(line, sizeof line, file.get()) != nullptr) {
    for (const char* name : {"MemAvailable:", "SwapFree:"}) {
      if (std::strncmp(line, name, std::strlen(name)) != 0) continue;
      kilobytes += std::strtoull(line + std::strlen(name), nullptr, 10);
      known = true;
    }
  }
  return known ? kilobytes * 1024 : kUnknown;
}

}  // namespace

void expect_memory(std::uint64_t bytes) {
  if (bytes >= kLarge && bytes > available() / 2) raise_fault(ErrorNumber::kOutOfMemory);
}

void prefer_large_pages([[maybe_unused]] void* block, [[maybe_unused]] std::size_t bytes) noexcept {
#ifdef MADV_HUGEPAGE
  constexpr std::uintptr_t kPage = 4096;
  constexpr std::size_t kWorthIt = std::size_t{1} << 22;
  if (block == nullptr || bytes < kWorthIt) return;
  // Whole pages only; what comes of the advice does not matter.
  const std::uintptr_t first =
      (reinterpret_cast<std::uintptr_t>(block) + kPage - 1) / kPage * kPage;
  const std::uintptr_t end = (reinterpret_cast<std::uintptr_t>(block) + bytes) / kPage * kPage;
  static_cast<void>(madvise(reinterpret_cast<void*>(first), end - first, MADV_HUGEPAGE));
#endif
}

void detail::expect_elements(std::size_t count, std::size_t size) {
  const std::uint64_t bytes = std::uint64_t{count} * size;
  if (bytes >= kMostBytes) raise_fault(ErrorNumber::kOutOfMemory);
  expect_memory(bytes);
}

void* detail::take_memory(std::size_t count, std::size_t size, bool zero) {
  expect_elements(count, size);
  count = std::max<std::size_t>(count, 1);  // no elements have an address too
  void* const block = zero ? std::calloc(count, size) : std::malloc(count * size);
  if (block == nullptr) raise_fault(ErrorNumber::kOutOfMemory);
  prefer_large_pages(block, count * size);
  return block;
}

}  // namespace vqmath63
