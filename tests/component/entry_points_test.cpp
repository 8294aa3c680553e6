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
  const CLSID integrate{
      0x209166AF, 0xC8C5, 0x4783, {0x92, 0x74, 0xE9, 0x74, 0x28, 0x42, 0x0B, 0xCF}};
  const CLSID accumulate{
      0x7A35D1A1, 0xEA4F, 0x45B3, {0x91, 0x11, 0x5F, 0xD0, 0xDB, 0x43, 0x55, 0x6B}};
  const CLSID info{0x3CBB2301, 0x863E, 0x4D32, {0x83, 0x9F, 0x80, 0x2A, 0xE8, 0x1B, 0x1E, 0xEC}};
  const struct {
    const OLECHAR* id;
    HRESULT hr;
    CLSID clsid;
  } rows[] = {
      {u"vq140Analyse.ztIntegrate", S_OK, integrate},
      {u"VQ140ANALYSE.ZTACCUMULATE", S_OK, accumulate},
      {u"vq140analyse.ztanalyseinfo", S_OK, info},
      {u"vq140Analyse.ztIntegrat", CO_E_CLASSSTRING, {}},
      {u"vq140Analyse.ztIntegrate.1", CO_E_CLASSSTRING, {}},
      {u"vq140Analyse ztIntegrate", CO_E_CLASSSTRING, {}},
      {u"ztIntegrate", CO_E_CLASSSTRING, {}},
      {u"vq140Analyse.", CO_E_CLASSSTRING, {}},
      {u"", CO_E_CLASSSTRING, {}},
      {nullptr, E_INVALIDARG, {}},
  };
  for (const auto& row : rows) {
    const std::string name = row.id == nullptr ? "null" : ascii(row.id);
    CLSID found{};
    EXPECT_EQ(CLSIDFromProgID(row.id, &found), row.hr) << name;
    EXPECT_EQ(found, row.clsid) << name;
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

// Kind, name and dispatch id of each member, as the fields of a description's line.
std::vector<std::string> described(const OLECHAR* id) {
  Value all;
  all.v.vt = VT_BSTR;
  EXPECT_EQ(VqDescribe(id, &all.v.bstrVal), S_OK);
  std::istringstream text(ascii(characters(all.v.bstrVal)));
  std::vector<std::string> lines;
  for (std::string line; std::getline(text, line);) {
    std::size_t end = 0;
    for (int field = 0; field < 3 && end != line.npos; ++field) end = line.find('\t', end + 1);
    lines.push_back(line.substr(0, end));
  }
  return lines;
}

TEST(EntryPointsTest, members_stand_in_interface_order_with_their_ids) {
  using Words = std::vector<std::string>;
  EXPECT_EQ(described(u"VQ140analyse.ztIntegrate"),
            (Words{"get\tIntegerationRule\t1", "let\tIntegrationRule\t2", "method\tIntegral\t3"}));
  EXPECT_EQ(described(u"vq140Analyse.ztAccumulate"),
            (Words{"let\tStartDate\t1", "let\tSilent\t2", "let\tFrequency\t3", "let\tRates\t4",
                   "let\tRateArray\t5", "let\tAccumulateIndex\t6", "let\tDataPeriod\t7",
                   "let\tPeriod\t8", "let\tStartData\t9", "let\tProductionProfile\t10",
                   "get\tStartData\t9", "get\tStartDate\t1", "get\tFrequency\t3", "get\tRates\t4",
                   "get\tPeriod\t8", "method\tAccumulate\t11"}));
  EXPECT_EQ(described(u"vq140Analyse.ztAnalyseInfo"),
            (Words{"get\tDLLVersion\t1", "method\tCloseDown\t2"}));
  const std::vector<std::string> all = described(nullptr);
  for (const char* name :
       {"ztMathLib", "ztStatistics", "ztSample", "ztRegression", "ztDifferentiate", "ztIntegrate",
        "ztAccumulate", "ztPetroleum", "ztAnalyseInfo"}) {
    const std::string begins = std::string("vq140Analyse.") + name + "\t" + name + "\t";
    EXPECT_EQ(std::count_if(all.begin(), all.end(),
                            [&](const std::string& line) { return line.starts_with(begins); }),
              1)
        << name;
  }
  EXPECT_EQ(described(u""), all);
  BSTR nothing = SysAllocString(u"x");
  SysFreeString(nothing);
  EXPECT_EQ(VqDescribe(u"ztIntegrate", &nothing), CO_E_CLASSSTRING);
  EXPECT_EQ(nothing, nullptr);
  EXPECT_EQ(VqDescribe(u"", nullptr), E_POINTER);
}

TEST(EntryPointsTest, the_reference_page_is_the_one_made_from_the_tables) {
  std::ifstream page(VQ_DOCS "/reference.md");
  if (!page) GTEST_SKIP() << "no reference page";
  std::ostringstream committed;
  committed << page.rdbuf();
  FILE* made = popen(VQGENERATE_PATH " reference", "r");
  ASSERT_NE(made, nullptr);
  std::string text;
  char part[4096];
  for (std::size_t n; (n = std::fread(part, 1, sizeof part, made)) > 0;) text.append(part, n);
  EXPECT_EQ(pclose(made), 0);
  EXPECT_EQ(committed.str(), text);
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
