// The exported functions: class ids, factories, unloading, registration, descriptions.
#include <dlfcn.h>

#include <algorithm>
#include <cstdio>
#include <thread>

#include "component_host.hpp"

namespace vqmath63::component::test {
namespace {

using namespace automation::system::test;
using namespace automation::test;

TEST(EntryPointsTest, what_a_foreign_host_needs_is_exported) {
  for (const char* name : {"CLSIDFromProgID",     "DllGetClassObject",   "DllCanUnloadNow",
                           "DllRegisterServer",   "DllUnregisterServer", "DllInstall",
                           "SysAllocString",      "SysAllocStringLen",   "SysStringLen",
                           "SysFreeString",       "SafeArrayCreate",     "SafeArrayDestroy",
                           "SafeArrayRedim",      "SafeArrayGetDim",     "SafeArrayGetLBound",
                           "SafeArrayGetUBound",  "SafeArrayAccessData", "SafeArrayUnaccessData",
                           "VariantInit",         "VariantClear",        "VariantCopy",
                           "VariantChangeType",   "GetErrorInfo",        "VqDescribe",
                           "VqSetMessageCallback"}) {
    EXPECT_NE(dlsym(RTLD_DEFAULT, name), nullptr) << name;
  }
}

TEST(EntryPointsTest, programmatic_ids_are_found_in_any_letter_case) {
  const struct {
    const OLECHAR* id;
    HRESULT hr;
  } rows[] = {
      {u"vq140Analyse.ztIntegrate", S_OK},
      {u"VQ140ANALYSE.ZTACCUMULATE", S_OK},
      {u"vq140analyse.ztanalyseinfo", S_OK},
      {u"vq140Analyse.ztIntegrat", CO_E_CLASSSTRING},
      {u"vq140Analyse.ztIntegrate.1", CO_E_CLASSSTRING},
      {u"vq140Analyse ztIntegrate", CO_E_CLASSSTRING},
      {u"ztIntegrate", CO_E_CLASSSTRING},
      {u"vq140Analyse.", CO_E_CLASSSTRING},
      {u"", CO_E_CLASSSTRING},
      {nullptr, E_INVALIDARG},
  };
  for (const auto& row : rows) {
    const std::string name = row.id == nullptr ? "null" : ascii(row.id);
    CLSID found{};
    EXPECT_EQ(CLSIDFromProgID(row.id, &found), row.hr) << name;
    void* factory = &found;
    const HRESULT hr = DllGetClassObject(found, IID_IUnknown, &factory);
    EXPECT_EQ(hr, row.hr == S_OK ? S_OK : CLASS_E_CLASSNOTAVAILABLE);
    EXPECT_EQ(factory != nullptr, row.hr == S_OK);
    if (factory != nullptr) static_cast<IUnknown*>(factory)->Release();
    EXPECT_EQ(DllGetClassObject(found, IID_IUnknown, nullptr), E_POINTER);
  }
  EXPECT_EQ(CLSIDFromProgID(u"vq140Analyse.ztIntegrate", nullptr), E_INVALIDARG);
}

TEST(EntryPointsTest, factories_and_unloading) {
  CLSID clsid{};
  ASSERT_EQ(CLSIDFromProgID(u"vq140Analyse.ztAccumulate", &clsid), S_OK);
  EXPECT_EQ(DllCanUnloadNow(), S_OK);
  void* found = &clsid;
  EXPECT_EQ(DllGetClassObject(clsid, IID_IDispatch, &found), E_NOINTERFACE);
  EXPECT_EQ(found, nullptr);
  EXPECT_EQ(DllCanUnloadNow(), S_OK);
  ASSERT_EQ(DllGetClassObject(clsid, IID_IClassFactory, &found), S_OK);
  auto* factory = static_cast<IClassFactory*>(found);
  EXPECT_EQ(DllCanUnloadNow(), S_FALSE) << "a factory lives";
  EXPECT_EQ(factory->AddRef(), 2U);
  EXPECT_EQ(factory->Release(), 1U);
  EXPECT_EQ(factory->QueryInterface(IID_IDispatch, &found), E_NOINTERFACE);
  EXPECT_EQ(factory->QueryInterface(IID_IUnknown, nullptr), E_POINTER);

  EXPECT_EQ(factory->CreateInstance(factory, IID_IUnknown, &found), CLASS_E_NOAGGREGATION);
  EXPECT_EQ(found, nullptr);
  EXPECT_EQ(factory->CreateInstance(nullptr, IID_IUnknown, nullptr), E_POINTER);
  found = &clsid;
  EXPECT_EQ(factory->CreateInstance(nullptr, IID_IClassFactory, &found), E_NOINTERFACE);
  EXPECT_EQ(found, nullptr);
  ASSERT_EQ(factory->CreateInstance(nullptr, IID_IDispatch, &found), S_OK);
  auto* object = static_cast<IDispatch*>(found);

  EXPECT_EQ(factory->LockServer(TRUE), S_OK);
  EXPECT_EQ(factory->Release(), 0U);
  EXPECT_EQ(DllCanUnloadNow(), S_FALSE) << "an object and a lock are left";
  EXPECT_EQ(object->Release(), 0U);
  EXPECT_EQ(DllCanUnloadNow(), S_FALSE) << "a lock is left";
  ASSERT_EQ(DllGetClassObject(clsid, IID_IClassFactory, &found), S_OK);
  factory = static_cast<IClassFactory*>(found);
  EXPECT_EQ(factory->LockServer(FALSE), S_OK);
  ASSERT_EQ(factory->CreateInstance(nullptr, IID_IDispatch, &found), S_OK);
  EXPECT_EQ(factory->Release(), 0U);
  EXPECT_EQ(DllCanUnloadNow(), S_FALSE) << "an object lives";
  EXPECT_EQ(static_cast<IDispatch*>(found)->Release(), 0U);
  EXPECT_EQ(DllCanUnloadNow(), S_OK);
}

TEST(EntryPointsTest, there_is_no_registry_here) {
  for (const HRESULT hr : {DllRegisterServer(), DllUnregisterServer(), DllInstall(TRUE, nullptr),
                           DllInstall(FALSE, u""), DllInstall(TRUE, u"User")}) {
    EXPECT_EQ(hr, E_NOTIMPL);
  }
  EXPECT_EQ(error_words().find(u"This system has no registry"), 0U);
  EXPECT_EQ(DllInstall(TRUE, u"bogus"), E_INVALIDARG);
}

TEST(EntryPointsTest, descriptions_of_what_is_not_there) {
  BSTR nothing = SysAllocString(u"x");
  SysFreeString(nothing);
  EXPECT_EQ(VqDescribe(u"ztIntegrate", &nothing), CO_E_CLASSSTRING);
  EXPECT_EQ(nothing, nullptr);
  EXPECT_EQ(VqDescribe(u"", nullptr), E_POINTER);
}

TEST(EntryPointsTest, the_words_of_an_argument_can_be_asked_for) {
  const std::vector<std::string> periods = described(u"VQ140analyse.ztAccumulate.PERIOD");
  EXPECT_EQ(periods.size(), 17U);
  EXPECT_EQ(periods.front(), "value\tminute");
  EXPECT_EQ(periods.back(), "value\tyears");
  EXPECT_EQ(described(u"vq140Analyse.ztAccumulate.DataPeriod"), periods);
  EXPECT_TRUE(described(u"vq140Analyse.ztAccumulate.Frequency").empty());
  BSTR none = nullptr;
  for (const OLECHAR* id : {u"vq140Analyse.ztAccumulate.Nope", u"vq140Analyse.ztNope.Period",
                            u"ztAccumulate.Period", u"vq140Analyse.ztAccumulate."}) {
    EXPECT_EQ(VqDescribe(id, &none), CO_E_CLASSSTRING);
  }
}

TEST(EntryPointsTest, the_reference_page_is_the_one_made_from_the_tables) {
  std::ifstream page(VQ_DOCS "/reference.md");
  std::ostringstream committed;
  committed << page.rdbuf();
  FILE* made = popen(VQGENERATE_PATH " reference", "r");
  ASSERT_NE(made, nullptr);
  std::string text;
  char part[4096];
  for (std::size_t n; (n = std::fread(part, 1, sizeof part, made)) > 0;) text.append(part, n);
  EXPECT_EQ(pclose(made), 0);
  EXPECT_EQ(committed.str(), text) << "write it anew by: vqgenerate reference > docs/reference.md";
}

TEST(EntryPointsTest, message_callbacks_belong_to_their_thread) {
  const auto fail = [] {
    const Instance<IIntegrate> integrate(u"vq140Analyse.ztIntegrate", IIntegrate::kIid);
    SAFEARRAY* none = nullptr;
    float area = 1;
    EXPECT_EQ(integrate->Integral(&none, &none, &area), S_OK);
  };
  Lines here;
  std::size_t there = 0;
  std::thread([&] {
    Lines lines;
    fail();
    there = lines.text.size();
  }).join();
  EXPECT_EQ(there, 1U);
  EXPECT_EQ(here.text.size(), 0U);
  fail();
  EXPECT_EQ(here.text.size(), 1U);
}

}  // namespace
}  // namespace vqmath63::component::test
