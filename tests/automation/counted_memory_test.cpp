// The counted memory of this program, and that it refuses what it is asked to.
#include "counted_memory.hpp"

#include <gtest/gtest.h>

#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <new>

namespace vqmath63::automation::test {
namespace {

thread_local constinit CountedMemory memory_of_thread;
constinit std::atomic<std::int64_t> blocks{0};

void note(long change) noexcept {
  memory_of_thread.blocks += change;
  blocks.fetch_add(change, std::memory_order_relaxed);
}

// What `make` gives, or none where the request is refused; a block `more`, unless it is one again.
template <class Make>
void* counted(std::size_t size, bool more, Make make) noexcept {
  void* block = nullptr;
  if (memory_of_thread.refused(size)) {
    errno = ENOMEM;
  } else {
    block = make();
  }
  note(more && block != nullptr);
  return block;
}

}  // namespace

CountedMemory& counted_memory() noexcept {
  return memory_of_thread;
}

std::int64_t blocks_of_all_threads() noexcept {
  return blocks.load(std::memory_order_relaxed);
}

}  // namespace vqmath63::automation::test

using vqmath63::automation::test::counted;
using vqmath63::automation::test::note;

#if VQ_HAS_OWN_MALLOC

// Seen by the shared libraries too, whatever the build hides.
#pragma GCC visibility push(default)
extern "C" {
void* __libc_malloc(std::size_t);
void* __libc_calloc(std::size_t, std::size_t);
void* __libc_realloc(void*, std::size_t);
void __libc_free(void*);

void* malloc(std::size_t size) noexcept {
  return counted(size, true, [=] { return __libc_malloc(size); });
}
void* calloc(std::size_t count, std::size_t size) noexcept {
  return counted(count * size, true, [=] { return __libc_calloc(count, size); });
}
void* realloc(void* old, std::size_t size) noexcept {
  return counted(size, old == nullptr, [=] { return __libc_realloc(old, size); });
}
void free(void* block) noexcept {
  note(-(block != nullptr));
  __libc_free(block);
}
}
#pragma GCC visibility pop

#else

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return counted(size, true, [=] { return std::malloc(size); });
}
void* operator new(std::size_t size) {
  void* block = operator new(size, std::nothrow);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}
void operator delete(void* block) noexcept {
  note(-(block != nullptr));
  std::free(block);
}
void operator delete(void* block, std::size_t) noexcept {
  operator delete(block);
}

#endif
