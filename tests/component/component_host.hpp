// A host of the shared library: its exported functions, a dual interface as hosts declare it, calls
// by name.
#pragma once

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "automation/automation_host.hpp"
#include "component/exports.hpp"

extern "C" {
HRESULT VQ_API DllGetClassObject(REFCLSID clsid, REFIID iid, void** out);
HRESULT VQ_API DllCanUnloadNow();
HRESULT VQ_API DllRegisterServer();
HRESULT VQ_API DllUnregisterServer();
HRESULT VQ_API DllInstall(BOOL install, LPCOLESTR words);
HRESULT CLSIDFromProgID(LPCOLESTR programmatic_id, CLSID* clsid);
}

namespace vqmath63::component::test {

using automation::system::test::Value;
using automation::test::Answer;
using automation::test::call;

struct IIntegrate : IDispatch {
  static constexpr IID kIid{
      0xAEDEC313, 0x167A, 0x4ACD, {0x95, 0x1E, 0xDA, 0xA8, 0xC5, 0xCD, 0x92, 0xC0}};
  virtual HRESULT VQ_API get_IntegerationRule(LONG*) = 0;
  virtual HRESULT VQ_API put_IntegrationRule(LONG*) = 0;
  virtual HRESULT VQ_API Integral(SAFEARRAY** x, SAFEARRAY** y, float*) = 0;
};

/// An instance by programmatic id; `Interface` is the dual interface, or IDispatch.
template <class Interface>
struct Instance {
  Interface* object = nullptr;

  Instance(const OLECHAR* id, const IID& iid) {
    CLSID clsid{};
    void* factory = nullptr;
    void* made = nullptr;
    EXPECT_EQ(CLSIDFromProgID(id, &clsid), S_OK);
    EXPECT_EQ(DllGetClassObject(clsid, IID_IClassFactory, &factory), S_OK);
    auto* maker = static_cast<IClassFactory*>(factory);
    EXPECT_EQ(maker->CreateInstance(nullptr, iid, &made), S_OK);
    EXPECT_EQ(maker->Release(), 0U);
    object = static_cast<Interface*>(made);
  }
  ~Instance() { EXPECT_EQ(object->Release(), 0U); }
  Instance(const Instance&) = delete;
  Instance& operator=(const Instance&) = delete;
  Interface* operator->() const { return object; }
};

/// The lines of a description by VqDescribe.
inline std::vector<std::string> described(const OLECHAR* id) {
  Value all;
  all.v.vt = VT_BSTR;
  EXPECT_EQ(VqDescribe(id, &all.v.bstrVal), S_OK);
  return split(automation::test::ascii(automation::test::characters(all.v.bstrVal)), '\n');
}

/// Collects the lines of this thread's error sink, with the flag of the close-down line.
struct Lines {
  std::vector<std::string> text;
  std::vector<bool> close_down;

  Lines() { EXPECT_EQ(VqSetMessageCallback(&take, this), S_OK); }
  ~Lines() { EXPECT_EQ(VqSetMessageCallback(nullptr, nullptr), S_OK); }
  Lines(const Lines&) = delete;
  Lines& operator=(const Lines&) = delete;

 private:
  static void take(const OLECHAR* line, BOOL is_close_down, void* self) {
    const std::u16string wide = line;
    static_cast<Lines*>(self)->text.emplace_back(wide.begin(), wide.end());
    static_cast<Lines*>(self)->close_down.push_back(is_close_down != FALSE);
  }
};

inline Answer get(IDispatch* object, const char16_t* name, std::vector<VARIANT> sent = {}) {
  return call(object, name, std::move(sent), {}, DISPATCH_PROPERTYGET);
}

}  // namespace vqmath63::component::test
