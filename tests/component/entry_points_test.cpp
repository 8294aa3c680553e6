// The exported functions: class ids, factories, unloading, registration, descriptions.
#include <dlfcn.h>
#include <unistd.h>

#include <chrono>
#include <ctime>
#include <filesystem>
#include <thread>

#include "component_host.hpp"

namespace vqmath63::component::test {
namespace {

using namespace automation::system::test;
using namespace automation::test;

TEST(EntryPointsTest, what_a_foreign_host_needs_is_exported) {
  for (const char* name : {"CLSIDFromProgID",      "DllGetClassObject",
                           "DllCanUnloadNow",      "DllRegisterServer",
                           "DllUnregisterServer",  "DllInstall",
                           "SysAllocString",       "SysAllocStringLen",
                           "SysStringLen",         "SysFreeString",
                           "SafeArrayCreate",      "SafeArrayDestroy",
                           "SafeArrayRedim",       "SafeArrayGetDim",
                           "SafeArrayGetLBound",   "SafeArrayGetUBound",
                           "SafeArrayAccessData",  "SafeArrayUnaccessData",
                           "VariantInit",          "VariantClear",
                           "VariantCopy",          "VariantChangeType",
                           "GetErrorInfo",         "VqDescribe",
                           "VqSetMessageCallback", "VqCallMany",
                           "VqLastMessage",        "VqSetProcessMessageCallback"}) {
    EXPECT_NE(dlsym(RTLD_DEFAULT, name), nullptr) << name;
  }
}

// The version text that a loaded component tells.
std::string version_of(void* component) {
  const auto get_class_object =
      reinterpret_cast<decltype(&DllGetClassObject)>(dlsym(component, "DllGetClassObject"));
  const CLSID clsid{0x3CBB2301, 0x863E, 0x4D32, {0x83, 0x9F, 0x80, 0x2A, 0xE8, 0x1B, 0x1E, 0xEC}};
  void* made = nullptr;
  EXPECT_EQ(get_class_object(clsid, IID_IClassFactory, &made), S_OK);
  auto* const factory = static_cast<IClassFactory*>(made);
  EXPECT_EQ(factory->CreateInstance(nullptr, IID_IDispatch, &made), S_OK);
  factory->Release();
  auto* const info = static_cast<IDispatch*>(made);
  const Answer version =
      call(info, u"DLLVersion", {boolean(false).v}, {u"qLogToFile"}, DISPATCH_PROPERTYGET);
  EXPECT_EQ(call(info, u"CloseDown", {}).hr, S_OK);
  info->Release();
  return ascii(characters(version.result.v.bstrVal));
}

TEST(EntryPointsTest, the_version_text_bears_the_date_of_the_file_that_was_loaded) {
  namespace fs = std::filesystem;
  Dl_info own{};
  ASSERT_NE(dladdr(reinterpret_cast<void*>(&DllGetClassObject), &own), 0);
  const fs::path folder = fs::temp_directory_path() / ("vq_dated_" + std::to_string(getpid()));
  const fs::path file = folder / "libvqmath63.so";
  fs::create_directory(folder);
  fs::copy_file(own.dli_fname, file);
  std::tm moment{};
  moment.tm_year = 101;
  moment.tm_mon = 8;
  moment.tm_mday = 9;
  moment.tm_hour = 13;
  moment.tm_isdst = -1;
  const auto written = std::chrono::system_clock::from_time_t(std::mktime(&moment));
  fs::last_write_time(file, std::chrono::file_clock::from_sys(written));
  void* const component = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
  ASSERT_NE(component, nullptr) << dlerror();
  EXPECT_EQ(version_of(component), "vqmath63 v6.3.2436 Sun Sep  9 13:00:00 2001");
  fs::remove_all(folder);
  EXPECT_EQ(version_of(component), "vqmath63 v6.3.2436 (" + file.string() + ":Unknown Date)");
  dlclose(component);
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
      {u"vq140Analyse.ztIntegrate.1", S_OK},
      {u"vq140Analyse.ztIntegrate.2", CO_E_CLASSSTRING},
      {u"vq140Analyse.1", CO_E_CLASSSTRING},
      {u"vq140Analyse ztIntegrate", CO_E_CLASSSTRING},
      {u"wq140Analyse.ztIntegrate", CO_E_CLASSSTRING},
      {u"vq140Analyse.yzIntegrate", CO_E_CLASSSTRING},
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

std::string last_message(bool of_process) {
  Value line;
  line.v.vt = VT_BSTR;
  EXPECT_EQ(VqLastMessage(of_process, &line.v.bstrVal), S_OK);
  return ascii(line.v.bstrVal);
}

TEST(EntryPointsTest, a_line_goes_to_its_thread_before_the_process_and_is_kept_as_the_last) {
  const auto fail = [](std::int32_t rule) {
    const Instance<IIntegrate> integrate(u"vq140Analyse.ztIntegrate", IIntegrate::kIid);
    SAFEARRAY* none = nullptr;
    float area = 1;
    EXPECT_EQ(integrate->put_IntegrationRule(&rule), S_OK);
    EXPECT_EQ(integrate->Integral(&none, &none, &area), S_OK);
  };
  const std::string simpson =
      "Error:Subscript out of range (No.9) In [ztAnalyse - Integration (Code) (Simpson)] ";
  std::vector<bool> process;
  const VqMessageCallback count = [](const OLECHAR*, BOOL close_down, void* lines) {
    static_cast<std::vector<bool>*>(lines)->push_back(close_down != 0);
  };
  EXPECT_EQ(VqSetProcessMessageCallback(count, &process), S_OK);
  Lines here;
  std::thread([&] {
    {
      Lines there;
      fail(3);
      EXPECT_EQ(there.text.size(), 1U);
    }
    fail(2);
    EXPECT_EQ(last_message(false), simpson);
    EXPECT_EQ(last_message(false), "");
  }).join();
  EXPECT_EQ(process, std::vector<bool>{false}) << "what the thread's own did not take";
  EXPECT_EQ(here.text.size(), 0U);
  EXPECT_EQ(last_message(true), simpson);
  EXPECT_EQ(last_message(true), "");
  EXPECT_EQ(VqSetProcessMessageCallback(nullptr, nullptr), S_OK);
  fail(1);
  EXPECT_EQ(here.text.size(), 1U);
  EXPECT_EQ(process.size(), 1U);
  EXPECT_EQ(VqLastMessage(true, nullptr), E_POINTER);
}

}  // namespace
}  // namespace vqmath63::component::test
