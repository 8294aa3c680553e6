// What a call of the Windows component costs beside a virtual call that does nothing, beside the
// system's own way by name and beside an allocation, under Wine or on Windows:
// windows_boundary.exe PATH-OF-COMPONENT. The least of many rounds of each.
#include <initguid.h>
#include <windows.h>
//
#include <oleauto.h>
#include <vq140Analyse.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <limits>
#include <vector>

#include "mathlib/math_lib.hpp"

// With names that other files could see: of types of its own alone, the compiler knows what is
// called.
namespace empty_call {

struct Interface {
  virtual HRESULT STDMETHODCALLTYPE put(LONG value) = 0;

 protected:
  ~Interface() = default;
};
struct Nothing : Interface {
  [[gnu::noipa]] HRESULT STDMETHODCALLTYPE put(LONG) override { return S_OK; }
};

}  // namespace empty_call

namespace {

// What is measured, in rounds that go through all of it in turn: what else the machine does meets
// each alike.
class Calls {
 public:
  template <class Call>
  void add(const char* what, Call call) {
    rows_.push_back({what, [call] {
                       for (int i = 0; i < kCalls; ++i) call();
                     }});
  }
  void measure() {
    for (int round = 0; round < 40; ++round) {
      for (Row& row : rows_) {
        const double begin = now();
        row.calls();
        row.best = std::min(row.best, (now() - begin) / kCalls);
      }
    }
    for (const Row& row : rows_) std::printf("%-28s %6.1f ns\n", row.what, row.best);
  }

  static double now() {  // nanoseconds
    LARGE_INTEGER ticks;
    LARGE_INTEGER a_second;
    QueryPerformanceCounter(&ticks);
    QueryPerformanceFrequency(&a_second);
    return static_cast<double>(ticks.QuadPart) * 1e9 / static_cast<double>(a_second.QuadPart);
  }

 private:
  static constexpr int kCalls = 200'000;
  struct Row {
    const char* what;
    std::function<void()> calls;
    double best = std::numeric_limits<double>::infinity();
  };
  std::vector<Row> rows_;
};

IClassFactory* factory_of(HMODULE component, REFCLSID clsid) {
  const auto get = reinterpret_cast<HRESULT(STDMETHODCALLTYPE*)(REFCLSID, REFIID, void**)>(
      reinterpret_cast<void*>(GetProcAddress(component, "DllGetClassObject")));
  void* factory = nullptr;
  if (FAILED(get(clsid, IID_IClassFactory, &factory))) std::exit(2);
  return static_cast<IClassFactory*>(factory);
}

template <class I>
I* make(HMODULE component, REFCLSID clsid, REFIID iid) {
  IClassFactory* const factory = factory_of(component, clsid);
  void* object = nullptr;
  if (FAILED(factory->CreateInstance(nullptr, iid, &object))) std::exit(2);
  factory->Release();
  return static_cast<I*>(object);
}

}  // namespace

int main(int count, char** words) {
  // Loaded and let go of once unseen, so that the file is at hand.
  const auto load = [&] { return count == 2 ? LoadLibraryA(words[1]) : nullptr; };
  if (const HMODULE once = load()) FreeLibrary(once);
  const double begun = Calls::now();
  const HMODULE component = load();
  if (component == nullptr) return 2;
  std::printf("%-28s %6.1f ns\n", "to load the component", Calls::now() - begun);
  Calls calls;
  empty_call::Nothing nothing;
  empty_call::Interface* volatile hidden = &nothing;
  empty_call::Interface* const empty = hidden;
  calls.add("empty virtual call", [&] { empty->put(3); });

  auto* accumulate = make<_ztAccumulate>(component, CLSID_ztAccumulate, IID__ztAccumulate);
  calls.add("property let by vtable", [&] { accumulate->put_Frequency(3); });
  const vqmath63::ztMathLib native;
  auto* maths = make<_ztMathLib>(component, CLSID_ztMathLib, IID__ztMathLib);
  double real = 0.25;
  double result = 0;
  calls.add("Erf, native", [&] { result = native.Erf(real); });
  calls.add("Erf by vtable", [&] { maths->Erf(real, &result); });

  VARIANT value{};
  value.vt = VT_I4;
  value.lVal = 3;
  DISPID put = DISPID_PROPERTYPUT;
  DISPPARAMS params{&value, &put, 1, 1};
  calls.add("property let by name", [&] {
    accumulate->Invoke(3, GUID{}, 0, DISPATCH_PROPERTYPUT, &params, nullptr, nullptr, nullptr);
  });
  ITypeInfo* info = nullptr;
  if (FAILED(accumulate->GetTypeInfo(0, 0, &info))) return 2;
  calls.add("the same by the system's", [&] {
    info->Invoke(accumulate, 3, DISPATCH_PROPERTYPUT, &params, nullptr, nullptr, nullptr);
  });

  void* volatile room = nullptr;
  calls.add("an allocation", [&] {
    room = std::malloc(64);
    std::free(room);
  });
  IClassFactory* const factory = factory_of(component, CLSID_ztPetroleum);
  calls.add("create and release", [&] {
    IUnknown* made = nullptr;
    factory->CreateInstance(nullptr, IID_IUnknown, reinterpret_cast<void**>(&made));
    made->Release();
  });

  calls.measure();
  factory->Release();
  info->Release();
  maths->Release();
  accumulate->Release();
  return 0;
}
