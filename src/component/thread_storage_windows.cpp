// Per-thread objects of the component on Windows: where `thread_local` keeps them and when they
// end.
//
// The compiler emulates `thread_local` here by calls into its run-time library. That one is made
// for programs: it takes one of the process's 1088 places for per-thread data at each load and
// never gives it back, which ends a host that loads and unloads the component a thousand times; it
// keeps what other threads hold at the unloading; and a read costs four times what it needs to.
// These functions take its place within the component. Each thread has one record here, found
// through the module's own thread storage, which the system makes and frees with module and thread.
#include <malloc.h>
#include <windows.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <iterator>

extern "C" {

// What the compiler lays down for each `thread_local` variable; its run-time library fixes the
// shape.
struct __emutls_object {  // NOLINT(bugprone-reserved-identifier)
  std::size_t size;
  std::size_t alignment;
  std::size_t index;    // 0 until the variable is first used, then its number from 1
  const void* initial;  // null: all zero
};

// The place in each thread's storage for what the thread keeps here; only its address counts.
__attribute__((section(".tls$M"), used)) void* vq_thread_record = nullptr;

}  // extern "C"

namespace __gnu_cxx {
void __freeres();  // of the C++ library: frees what it keeps for exceptions when memory is short
}

namespace {

// A destructor. On 32 bits it finds its object in a register, as the only argument of a "fastcall".
#ifdef _WIN64
using Destroy = void (*)(void*);
#else
using Destroy = void(__attribute__((fastcall)) *)(void*);
#endif

struct Ending {
  Destroy destroy;
  void* object;
  Ending* earlier;
};

// What a thread keeps here.
struct ThreadRecord {
  void** values;  // by variable
  std::size_t capacity;
  Ending* endings;  // the last made object first
  ThreadRecord* next;
  ThreadRecord* previous;
};

SRWLOCK lock = SRWLOCK_INIT;  // over the three below
ThreadRecord* records = nullptr;
std::size_t variables = 0;
DWORD system_places[64];
std::size_t system_place_count = 0;

bool process_ends = false;

class Locked {
 public:
  Locked() { AcquireSRWLockExclusive(&lock); }
  ~Locked() { ReleaseSRWLockExclusive(&lock); }
  Locked(const Locked&) = delete;
  Locked& operator=(const Locked&) = delete;
};

// The thread's list of module storages has a fixed place in its environment block; the start-up
// code has this module's number in the list. In assembly, for the assembler alone knows the
// distance of our place from the beginning of a storage.
inline ThreadRecord*& this_record() {
  char* storage;
#ifdef _WIN64
  std::uint64_t index;
  __asm__(
      "movq %%gs:0x58, %0\n\t"
      "movl _tls_index(%%rip), %k1\n\t"
      "movq (%0,%1,8), %0\n\t"
      "leaq vq_thread_record@SECREL32(%0), %0"
      : "=&r"(storage), "=&r"(index));
#else
  std::uint32_t index;
  __asm__(
      "movl %%fs:0x2C, %0\n\t"
      "movl __tls_index, %1\n\t"
      "movl (%0,%1,4), %0\n\t"
      "leal _vq_thread_record@SECREL32(%0), %0"
      : "=&r"(storage), "=&r"(index));
#endif
  return *reinterpret_cast<ThreadRecord**>(storage);
}

void* must(void* memory) {
  if (memory == nullptr) std::abort();  // a read of a variable has no way to fail
  return memory;
}

ThreadRecord* record_of_this_thread() {
  ThreadRecord*& record = this_record();
  if (record == nullptr) {
    record = static_cast<ThreadRecord*>(must(std::calloc(1, sizeof(ThreadRecord))));
    const Locked locked;
    record->next = records;
    if (records != nullptr) records->previous = record;
    records = record;
  }
  return record;
}

std::size_t index_of(__emutls_object* variable) {
  const Locked locked;
  if (variable->index == 0) __atomic_store_n(&variable->index, ++variables, __ATOMIC_RELEASE);
  return variable->index;
}

__attribute__((noinline)) void* first_use(__emutls_object* variable) {
  ThreadRecord* record = record_of_this_thread();
  const std::size_t index = index_of(variable);
  if (index >= record->capacity) {
    const std::size_t capacity = index + 16;
    record->values =
        static_cast<void**>(must(std::realloc(record->values, capacity * sizeof(void*))));
    std::memset(record->values + record->capacity, 0,
                (capacity - record->capacity) * sizeof(void*));
    record->capacity = capacity;
  }
  void* value = must(_aligned_malloc(variable->size, variable->alignment));
  if (variable->initial != nullptr) {
    std::memcpy(value, variable->initial, variable->size);
  } else {
    std::memset(value, 0, variable->size);
  }
  record->values[index] = value;
  return value;
}

// Ends a thread's objects, also those that are made meanwhile. They find their own thread's
// variables, whichever thread this runs on.
void destroy_objects(ThreadRecord* record) {
  ThreadRecord* const own = this_record();
  this_record() = record;
  while (Ending* ending = record->endings) {
    record->endings = ending->earlier;
    ending->destroy(ending->object);
    std::free(ending);
  }
  this_record() = own;
}

void free_record(ThreadRecord* record) {
  for (std::size_t i = 0; i < record->capacity; ++i) _aligned_free(record->values[i]);
  std::free(record->values);
  std::free(record);
}

void end_of_thread() {
  ThreadRecord* const record = this_record();
  if (record == nullptr) return;
  destroy_objects(record);
  this_record() = nullptr;
  {
    const Locked locked;
    if (record->next != nullptr) record->next->previous = record->previous;
    (record->previous != nullptr ? record->previous->next : records) = record->next;
  }
  free_record(record);
}

// Takes a place for per-thread data as the system's own function does, and remembers it.
DWORD WINAPI take_system_place() {
  const auto take = reinterpret_cast<DWORD(WINAPI*)()>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "TlsAlloc")));
  const DWORD place = take();
  const Locked locked;
  if (place != TLS_OUT_OF_INDEXES && system_place_count < std::size(system_places)) {
    system_places[system_place_count++] = place;
  }
  return place;
}

// The first object to be made and the last to end: after it nothing of the module runs.
struct LastOfAll {
  LastOfAll() = default;
  ~LastOfAll() {
    if (process_ends) return;
    while (ThreadRecord* record = records) {
      records = record->next;
      free_record(record);
    }
    while (system_place_count > 0) TlsFree(system_places[--system_place_count]);
    __gnu_cxx::__freeres();  // 73 KB
  }
  LastOfAll(const LastOfAll&) = delete;
  LastOfAll& operator=(const LastOfAll&) = delete;
};
__attribute__((init_priority(101))) LastOfAll last_of_all;

}  // namespace

extern "C" {

// The import cell of TlsAlloc, which the linker would otherwise fill from kernel32: the compiler's
// thread library takes a place at its first use, and never gives it back.
extern DWORD(WINAPI* const imported_tls_alloc)();
#ifdef _WIN64
DWORD(WINAPI* const imported_tls_alloc)() __asm__("__imp_TlsAlloc") = take_system_place;
#else
DWORD(WINAPI* const imported_tls_alloc)() __asm__("__imp__TlsAlloc@0") = take_system_place;
#endif

/// Where the variable of this thread is; the compiler calls it for each use.
void* __emutls_get_address(__emutls_object* variable) {
  const std::size_t index = __atomic_load_n(&variable->index, __ATOMIC_ACQUIRE);
  const ThreadRecord* record = this_record();
  if (index != 0 && record != nullptr && index < record->capacity) [[likely]] {
    if (void* value = record->values[index]; value != nullptr) [[likely]]
      return value;
  }
  return first_use(variable);
}

/// Has an object of this thread destroyed with the thread. (The run-time library's own function
/// would hold the module loaded until then.)
int __cxa_thread_atexit(Destroy destroy, void* object, void*) {
  const auto ending = static_cast<Ending*>(std::malloc(sizeof(Ending)));
  if (ending == nullptr) return -1;
  ThreadRecord* record = record_of_this_thread();
  *ending = {destroy, object, record->endings};
  record->endings = ending;
  return 0;
}

BOOL WINAPI DllMain(HINSTANCE, DWORD reason, LPVOID process_is_ending) {
  if (reason == DLL_THREAD_DETACH) end_of_thread();
  if (reason == DLL_PROCESS_DETACH) {
    // With the process the other threads are gone already, whatever they held.
    process_ends = process_is_ending != nullptr;
    if (!process_ends) {
      for (ThreadRecord* record = records; record != nullptr; record = record->next) {
        destroy_objects(record);
      }
    }
  }
  return TRUE;
}

}  // extern "C"
