// What a call of the Windows component costs beside a virtual call that does nothing, under Wine or
// on Windows: windows_boundary.exe PATH-OF-COMPONENT. The least of many rounds of each.
#include <initguid.h>
#include <windows.h>
//
#include <oleauto.h>
#include <vq140Analyse.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <limits>

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

template <class Call>
void measure(const char* what, const Call& call) {
  constexpr int kRounds = 40;
  constexpr int kCalls = 500'000;
  LARGE_INTEGER begin;
  LARGE_INTEGER end;
  LARGE_INTEGER a_second;
  QueryPerformanceFrequency(&a_second);
  double best = std::numeric_limits<double>::infinity();
  for (int round = 0; round < kRounds; ++round) {
    QueryPerformanceCounter(&begin);
    for (int i = 0; i < kCalls; ++i) call();
    QueryPerformanceCounter(&end);
    best = std::min(best, static_cast<double>(end.QuadPart - begin.QuadPart));
  }
  std::printf("%-28s %6.1f ns\n", what,
              best * 1e9 / static_cast<double>(a_second.QuadPart) / kCalls);
}

template <class I>
I* make(HMODULE component, REFCLSID clsid, REFIID iid) {
  const auto get = reinterpret_cast<HRESULT(STDMETHODCALLTYPE*)(REFCLSID, REFIID, void**)>(
      reinterpret_cast<void*>(GetProcAddress(component, "DllGetClassObject")));
  IClassFactory* factory = nullptr;
  void* object = nullptr;
  if (FAILED(get(clsid, IID_IClassFactory, reinterpret_cast<void**>(&factory))) ||
      FAILED(factory->CreateInstance(nullptr, iid, &object))) {
    std::exit(2);
  }
  factory->Release();
  return static_cast<I*>(object);
}

}  // namespace

int main(int count, char** words) {
  const HMODULE component = count == 2 ? LoadLibraryA(words[1]) : nullptr;
  if (component == nullptr) return 2;
  empty_call::Nothing nothing;
  empty_call::Interface* volatile hidden = &nothing;
  empty_call::Interface* const empty = hidden;
  measure("empty virtual call", [&] { empty->put(3); });

  auto* accumulate = make<_ztAccumulate>(component, CLSID_ztAccumulate, IID__ztAccumulate);
  measure("property let by vtable", [&] { accumulate->put_Frequency(3); });
  auto* maths = make<_ztMathLib>(component, CLSID_ztMathLib, IID__ztMathLib);
  double real = 0.5;
  double result = 0;
  measure("Erf by vtable", [&] { maths->Erf(real, &result); });
  VARIANT value{};
  value.vt = VT_I4;
  value.lVal = 3;
  DISPID put = DISPID_PROPERTYPUT;
  DISPPARAMS params{&value, &put, 1, 1};
  measure("property let by name", [&] {
    accumulate->Invoke(3, GUID{}, 0, DISPATCH_PROPERTYPUT, &params, nullptr, nullptr, nullptr);
  });
  ITypeInfo* info = nullptr;
  if (FAILED(accumulate->GetTypeInfo(0, 0, &info))) return 2;
  measure("the same by the system's", [&] {
    info->Invoke(accumulate, 3, DISPATCH_PROPERTYPUT, &params, nullptr, nullptr, nullptr);
  });
  info->Release();

  void* volatile room = nullptr;
  measure("an allocation", [&] {
    room = std::malloc(64);
    std::free(room);
  });
  const auto get = reinterpret_cast<HRESULT(STDMETHODCALLTYPE*)(REFCLSID, REFIID, void**)>(
      reinterpret_cast<void*>(GetProcAddress(component, "DllGetClassObject")));
  IClassFactory* factory = nullptr;
  get(CLSID_ztPetroleum, IID_IClassFactory, reinterpret_cast<void**>(&factory));
  measure("create and release", [&] {
    IUnknown* made = nullptr;
    factory->CreateInstance(nullptr, IID_IUnknown, reinterpret_cast<void**>(&made));
    made->Release();
  });
  factory->Release();
  maths->Release();
  accumulate->Release();
  return 0;
}
