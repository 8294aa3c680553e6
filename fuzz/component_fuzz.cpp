// Fuzz target of the component: a program of calls to any class and member by name and through the
// vtable, with values of every kind, in any state of the host, while code of the host interferes.
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <new>

#include "component/exports.hpp"
#include "world.hpp"

// The program is linked so that its requests for memory come by here (--wrap).
extern "C" {
void* __real_malloc(std::size_t size);
void* __real_calloc(std::size_t count, std::size_t size);
void* __real_realloc(void* block, std::size_t size);
void* __wrap_malloc(std::size_t size);
void* __wrap_calloc(std::size_t count, std::size_t size);
void* __wrap_realloc(void* block, std::size_t size);
}

namespace {
bool refused(std::size_t size) {
  return vqmath63::fuzz::world != nullptr && vqmath63::fuzz::world->refuses_memory(size);
}
}  // namespace

void* __wrap_malloc(std::size_t size) {
  return refused(size) ? nullptr : __real_malloc(size);
}
void* __wrap_calloc(std::size_t count, std::size_t size) {
  return refused(count * size) ? nullptr : __real_calloc(count, size);
}
void* __wrap_realloc(void* block, std::size_t size) {
  return refused(size) ? nullptr : __real_realloc(block, size);
}

// The sanitizer's own end the program where there is no memory, instead of throwing.
void* operator new(std::size_t size) {
  if (void* const block = std::malloc(size)) return block;
  throw std::bad_alloc();
}
void* operator new[](std::size_t size) {
  return operator new(size);
}

extern "C" {

HRESULT VQ_API DllCanUnloadNow();

// Memory that no machine has is an answer of the allocator, not the end of the program.
__attribute__((used, visibility("default"))) const char* __asan_default_options() {
  return "allocator_may_return_null=1:max_allocation_size_mb=256:alloc_dealloc_mismatch=0";
}

// libFuzzer's copy of a vector's growth, built without exceptions, stands in for ours in its
// program and loses the new block when an element cannot be copied; the replays, which have ours,
// look at it.
__attribute__((used, visibility("default"))) const char* __lsan_default_suppressions() {
  return "leak:std::vector<std::__cxx11::basic_string<char*_M_realloc_insert\n";
}

int LLVMFuzzerInitialize(int*, char***) {
  // Logs go to files of this folder alone: no text of an input has a slash.
  std::filesystem::path folder = std::filesystem::temp_directory_path() / "vq_fuzz_XXXXXX";
  std::string name = folder.string();
  if (mkdtemp(name.data()) == nullptr || chdir(name.c_str()) != 0) return 1;
  static struct Folder {
    std::string name;
    ~Folder() {
      std::error_code ignored;
      std::filesystem::remove_all(name, ignored);
    }
  } last{name};
  // The lines of a sink without callback and log; sanitizers write to the descriptor itself.
  if (std::FILE* nowhere = std::fopen("/dev/null", "w")) stderr = nowhere;
  return 0;
}

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace vqmath63::fuzz;
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  {
    World host;
    host.run(program_of(bytes));
  }
  require(DllCanUnloadNow() == S_OK, "an object is left");
  return 0;
}

}  // extern "C"
