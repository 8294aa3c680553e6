// Every allocation of a call refused in turn: an error, never a crash, a leak or a changed host.
#include <cstdlib>
#include <functional>
#include <new>
#include <string>
#include <utility>

#include "script_fakes.hpp"

#if defined(__SANITIZE_ADDRESS__)
#define VQ_HAS_OWN_MALLOC 0
#else
#define VQ_HAS_OWN_MALLOC 1
#endif

namespace {

// Refuses the allocation number `fail_at` of this thread, or all from it on.
thread_local long fail_at = 0;
thread_local bool fail_on = false;
thread_local long allocations = 0;
thread_local long live_blocks = 0;

bool refused() noexcept {
  if (fail_at == 0) return false;
  ++allocations;
  return fail_on ? allocations >= fail_at : allocations == fail_at;
}

}  // namespace

#if VQ_HAS_OWN_MALLOC

// Seen by the shared libraries too, whatever the build hides.
#pragma GCC visibility push(default)
extern "C" {
void* __libc_malloc(std::size_t);
void* __libc_calloc(std::size_t, std::size_t);
void* __libc_realloc(void*, std::size_t);
void __libc_free(void*);

void* malloc(std::size_t size) noexcept {
  void* block = refused() ? nullptr : __libc_malloc(size);
  live_blocks += block != nullptr;
  return block;
}
void* calloc(std::size_t count, std::size_t size) noexcept {
  void* block = refused() ? nullptr : __libc_calloc(count, size);
  live_blocks += block != nullptr;
  return block;
}
void* realloc(void* old, std::size_t size) noexcept {
  void* block = refused() ? nullptr : __libc_realloc(old, size);
  live_blocks += old == nullptr && block != nullptr;
  return block;
}
void free(void* block) noexcept {
  live_blocks -= block != nullptr;
  __libc_free(block);
}
}
#pragma GCC visibility pop

#else  // the sanitizer keeps malloc and counts the blocks

void* operator new(std::size_t size) {
  void* block = refused() ? nullptr : std::malloc(size);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return refused() ? nullptr : std::malloc(size);
}
void operator delete(void* block) noexcept {
  std::free(block);
}
void operator delete(void* block, std::size_t) noexcept {
  std::free(block);
}

#endif

namespace vqmath63::automation::test {
namespace {

using namespace system::test;

long plan = 0;

/// The result of `call`, whose allocations are refused as planned.
template <class Call>
HRESULT refusing(Call call) {
  allocations = 0;
  fail_at = plan;
  const HRESULT hr = call();
  fail_at = 0;
  return hr;
}

class AllocationFailureTest : public BoundaryTest {
 protected:
  // Refuses the first, second, ... allocation of `work`, alone or with all that follow, until it
  // has no more of them.
  static void sweep(const std::string& name, HRESULT done, const std::function<HRESULT()>& work) {
    set_failure(nullptr, E_FAIL, "");  // a thread's first one sets up its place
    SetErrorInfo(0, nullptr);
    for (const bool on : {false, true}) {
      fail_on = on;
      plan = 0;
      do {
        ++plan;
        const long before = live_blocks;
        const HRESULT hr = work();
        SetErrorInfo(0, nullptr);
        EXPECT_EQ(live_blocks, before) << name << " leaks with allocation " << plan;
        EXPECT_EQ(ScriptObject::alive, 0) << name;
        const bool refused = allocations >= plan;
        EXPECT_TRUE(hr == done || (refused && (hr == E_OUTOFMEMORY || hr == error_code(7))))
            << name << " allocation " << plan << ": " << std::hex << hr;
      } while (allocations >= plan && plan < 1000);
      // Under the sanitizer only operator new is refused, and some calls need malloc alone.
      if (VQ_HAS_OWN_MALLOC) {
        EXPECT_GT(plan, 1) << name << " allocates nothing";
      }
    }
  }
};

constexpr auto long_text = [] { return text(std::u16string(100, u'x')); };
constexpr auto variants = [] { return array(VT_VARIANT, 0, {1, 2, 3, 4, 5, 6}); };
constexpr auto longs = [] { return array(VT_I4, 0, {1, 2, 3, 4}, 2); };
constexpr auto list = [] { return script_array({r8(1), r8(2)}); };
constexpr auto rows = [] { return script_array({list(), list()}); };
constexpr auto box = [] { return script_box(long_text()); };
constexpr auto nine = [] { return i4(9); };

TEST_F(AllocationFailureTest, calls_by_name) {
  constexpr int kNone = -1;  // no second argument
  const struct {
    const char* name;
    DISPID id;
    Value (*make)();
    int second;
    Form form;
    HRESULT done = S_OK;
  } calls[] = {
      {"text", 8, long_text, kNone, kByValue},
      {"text by reference", 14, long_text, kNone, kByRef},
      {"text from a number", 14, nine, kNone, kVariant},
      {"defaults", 15, nine, kNone, kByValue},
      {"a failing member", 23, nine, 0, kByValue, error_code(9)},
      {"a wrong argument", 17, long_text, kChange, kByValue, error_code(13)},
      {"variants changed", 17, variants, kChange, kByRef},
      {"variants replaced", 17, variants, kResize, kVariant},
      {"variable filled", 17, empty, kResize, kVariant},
      {"table replaced", 21, longs, kResize, kByRef},
      {"script's array changed", 17, list, kChange, kByValue},
      {"script's array refilled", 18, list, kResize, kVariant},
      {"script's rows changed", 21, rows, kChange, kByValue},
      {"script's rows refilled", 21, rows, kResize, kByRef},
      {"box", 14, box, kNone, kByValue},
  };
  for (const auto& row : calls) {
    sweep(row.name, row.done, [&] {
      const Sent sent(row.make(), row.form);
      VARIANT arguments[] = {i4(row.second).v, sent.variant};
      const UINT skipped = row.second == kNone ? 1 : 0;
      DISPPARAMS params{arguments + skipped, nullptr, 2 - skipped, 0};
      Value result;
      EXCEPINFO exception{};
      const HRESULT hr = refusing([&] {
        return object->Invoke(row.id, IID_NULL, 0, DISPATCH_METHOD, &params, &result.v, &exception,
                              nullptr);
      });
      SysFreeString(exception.bstrDescription);
      SysFreeString(exception.bstrSource);
      return hr == DISP_E_EXCEPTION ? exception.scode : hr;
    });
  }
}

TEST_F(AllocationFailureTest, calls_by_the_vtable) {
  void* made = nullptr;
  const auto release = [&](HRESULT hr) {
    EXPECT_EQ(SUCCEEDED(hr), made != nullptr);
    if (made != nullptr) static_cast<IUnknown*>(made)->Release();
    made = nullptr;
    return hr;
  };
  sweep("creation", S_OK, [&] {
    return release(refusing([&] { return class_info<kSample>().create(IID_IDispatch, &made); }));
  });
  sweep("tear-off", S_OK, [&] {
    return release(refusing([&] { return object->QueryInterface(IID_ISupportErrorInfo, &made); }));
  });
  BSTR out = nullptr;
  sweep("failing member", error_code(9), [&] {
    float area = 0;
    const HRESULT hr = refusing([&] { return object->Fail(9, &out, &area); });
    SysFreeString(std::exchange(out, nullptr));
    return hr;
  });
  sweep("result and reference", S_OK, [&] {
    SAFEARRAY* array = nullptr;
    const HRESULT hr = refusing([&] { return object->Singles(&array, kResize, &out); });
    EXPECT_EQ(FAILED(hr), out == nullptr);
    SafeArrayDestroy(array);
    SysFreeString(std::exchange(out, nullptr));
    return hr;
  });
}

}  // namespace
}  // namespace vqmath63::automation::test
