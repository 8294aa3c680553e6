// What the Windows test programs share: counted checks, holders of automation things, the classes.
#pragma once

#include <initguid.h>
#include <windows.h>
//
#include <cguid.h>
#include <ocidl.h>
#include <oleauto.h>
#include <vq140Analyse.h>

#include <cmath>
#include <cstdio>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

struct Checks {
  int count = 0;
  int failures = 0;

  bool that(bool passed, const std::string& what) {
    ++count;
    if (!passed) {
      ++failures;
      std::printf("FAILED: %s\n", what.c_str());
    }
    return passed;
  }
  void result(HRESULT got, HRESULT wanted, const std::string& what) {
    char text[64];
    std::snprintf(text, sizeof text, ": 0x%08lX, wanted 0x%08lX", static_cast<unsigned long>(got),
                  static_cast<unsigned long>(wanted));
    that(got == wanted, what + text);
  }
  void number(double got, double wanted, const std::string& what) {
    that(std::abs(got - wanted) <= 1e-6 * std::abs(wanted),
         what + ": " + std::to_string(got) + ", wanted " + std::to_string(wanted));
  }
  int close() const {
    std::printf("checks %d\nfailures %d\n", count, failures);
    return failures == 0 && count > 0 ? 0 : 1;
  }
};

inline Checks checks;

/// Owns one reference to an interface.
template <class I>
class Holder {
 public:
  Holder() = default;
  ~Holder() { reset(); }
  Holder(const Holder&) = delete;
  Holder& operator=(const Holder&) = delete;
  I* operator->() const { return held_; }
  I* get() const { return held_; }
  I** place() {
    reset();
    return &held_;
  }
  void** untyped() { return reinterpret_cast<void**>(place()); }
  ULONG reset() {
    I* leaving = held_;
    held_ = nullptr;
    return leaving != nullptr ? leaving->Release() : 0;
  }

 private:
  I* held_ = nullptr;
};

/// A text of the host's.
struct Text {
  BSTR text = nullptr;
  Text() = default;
  explicit Text(const std::string& ascii)
      : text(SysAllocString(std::wstring(ascii.begin(), ascii.end()).c_str())) {}
  ~Text() { SysFreeString(text); }
  Text(const Text&) = delete;
  Text& operator=(const Text&) = delete;
  std::string ascii() const {
    std::string out;
    for (UINT i = 0; i < SysStringLen(text); ++i) out += static_cast<char>(text[i]);
    return out;
  }
};

/// A safe array of Single (or of Double, Long or Boolean) with bounds from `lower`; rows by columns
/// when columns > 0.
struct HostArray {
  SAFEARRAY* array = nullptr;
  HostArray() = default;
  HostArray(const std::vector<double>& values, LONG lower, ULONG columns = 0,
            VARTYPE type = VT_R4) {
    const auto count = static_cast<ULONG>(values.size());
    SAFEARRAYBOUND bounds[2] = {{columns > 0 ? count / columns : count, lower}, {columns, lower}};
    array = SafeArrayCreate(type, columns > 0 ? 2 : 1, bounds);
    for (ULONG i = 0; i < count; ++i) {
      LONG at[2] = {lower + static_cast<LONG>(columns > 0 ? i / columns : i),
                    lower + static_cast<LONG>(columns > 0 ? i % columns : 0)};
      VARIANT element{};
      element.vt = VT_R8;
      element.dblVal = values[i];
      VariantChangeType(&element, &element, 0, type);
      SafeArrayPutElement(array, at, &element.llVal);
    }
  }
  ~HostArray() {
    if (array != nullptr) SafeArrayDestroy(array);
  }
  HostArray(const HostArray&) = delete;
  HostArray& operator=(const HostArray&) = delete;
  double at(LONG row, LONG column) const {
    LONG place[2] = {row, column};
    float value = NAN;
    SafeArrayGetElement(array, place, &value);
    return static_cast<double>(value);
  }
};

/// The creatable classes.
struct ClassRow {
  const char* name;
  CLSID clsid;
  IID iid;
};

inline const ClassRow kClasses[] = {
    {"ztMathLib", CLSID_ztMathLib, IID__ztMathLib},
    {"ztRegression", CLSID_ztRegression, IID__ztRegression},
    {"ztDifferentiate", CLSID_ztDifferentiate, IID__ztDifferentiate},
    {"ztPetroleum", CLSID_ztPetroleum, IID__ztPetroleum},
    {"ztStatistics", CLSID_ztStatistics, IID__ztStatistics},
    {"ztSample", CLSID_ztSample, IID__ztSample},
    {"ztIntegrate", CLSID_ztIntegrate, IID__ztIntegrate},
    {"ztAccumulate", CLSID_ztAccumulate, IID__ztAccumulate},
    {"ztAnalyseInfo", CLSID_ztAnalyseInfo, IID__ztAnalyseInfo}};

/// A new instance as the interface I.
template <class I>
HRESULT create(REFCLSID clsid, Holder<I>& out, IUnknown* outer = nullptr) {
  return CoCreateInstance(clsid, outer, CLSCTX_INPROC_SERVER, __uuidof(I), out.untyped());
}

/// A function that the component exports.
template <class F>
F exported(const char* name) {
  return reinterpret_cast<F>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA("vqmath63.dll"), name)));
}
