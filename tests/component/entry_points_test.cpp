// The exported functions: class ids, factories, unloading, registration, descriptions.
#include <dlfcn.h>
#include <fcntl.h>
#include <fenv.h>
#include <sys/stat.h>
#include <unistd.h>

#include <ctime>
#include <filesystem>
#include <thread>

#include "component_host.hpp"

namespace vqmath63::component::test {
namespace {

using namespace automation::system::test;
using namespace automation::test;

TEST(EntryPointsTest, what_a_foreign_host_needs_is_exported) {
  for (const std::string& name :
       split("CLSIDFromProgID DllGetClassObject DllCanUnloadNow DllRegisterServer "
             "DllUnregisterServer DllInstall SysAllocString SysAllocStringLen SysStringLen "
             "SysFreeString SafeArrayCreate SafeArrayDestroy SafeArrayRedim SafeArrayGetDim "
             "SafeArrayGetLBound SafeArrayGetUBound SafeArrayAccessData SafeArrayUnaccessData "
             "VariantInit VariantClear VariantCopy VariantChangeType GetErrorInfo VqDescribe "
             "VqSetMessageCallback VqCallMany VqLastMessage VqSetProcessMessageCallback",
             ' ')) {
    EXPECT_NE(dlsym(RTLD_DEFAULT, name.c_str()), nullptr) << name;
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
  std::tm moment{0, 0, 13, 9, 8, 101, 0, 0, -1, 0, nullptr};  // 2001-09-09 13:00
  const timespec times[2] = {{std::mktime(&moment), 0}, {std::mktime(&moment), 0}};
  ASSERT_EQ(utimensat(AT_FDCWD, file.c_str(), times, 0), 0);
  void* const component = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
  ASSERT_NE(component, nullptr) << dlerror();
  EXPECT_EQ(version_of(component), "vqmath63 v6.3.2436 Sun Sep  9 13:00:00 2001");
  fs::remove_all(folder);
  EXPECT_EQ(version_of(component), "vqmath63 v6.3.2436 (" + file.string() + ":Unknown Date)");
  dlclose(component);
}

TEST(EntryPointsTest, programmatic_ids_are_found_in_any_letter_case) {
  const std::string good =
      "vq140Analyse.ztIntegrate|VQ140ANALYSE.ZTACCUMULATE|vq140analyse.ztanalyseinfo|"
      "vq140Analyse.ztIntegrate.1";
  const std::string bad =
      "|vq140Analyse.ztIntegrat|vq140Analyse.ztIntegrate.2|vq140Analyse.1|vq140Analyse ztIntegrate|"
      "wq140Analyse.ztIntegrate|vq140Analyse.xtIntegrate|ztIntegrate|vq140Analyse.|";
  std::size_t left = split(good, '|').size();
  for (const std::string& name : split(good + "|" + bad, '|')) {
    const bool is_good = left > 0;
    if (is_good) --left;
    const std::u16string id(name.begin(), name.end());
    CLSID found{};
    EXPECT_EQ(CLSIDFromProgID(id.c_str(), &found), is_good ? S_OK : CO_E_CLASSSTRING) << name;
    void* factory = &found;
    const HRESULT hr = DllGetClassObject(found, IID_IUnknown, &factory);
    EXPECT_EQ(hr, is_good ? S_OK : CLASS_E_CLASSNOTAVAILABLE);
    EXPECT_EQ(factory != nullptr, is_good);
    if (factory != nullptr) static_cast<IUnknown*>(factory)->Release();
    EXPECT_EQ(DllGetClassObject(found, IID_IUnknown, nullptr), E_POINTER);
  }
  CLSID none;
  EXPECT_EQ(CLSIDFromProgID(nullptr, &none), E_INVALIDARG);
  EXPECT_EQ(CLSIDFromProgID(u"vq140Analyse.ztIntegrate", nullptr), E_INVALIDARG);
}

// No arithmetic of theirs is met by a host that traps all of it.
TEST(EntryPointsTest, objects_begin_and_end_in_any_floating_point_state) {
  fenv_t usual;
  fegetenv(&usual);
  for (const std::string& name : split("Accumulate AnalyseInfo Differentiate Integrate MathLib "
                                       "Petroleum Regression Sample Statistics",
                                       ' ')) {
    const std::string id = "vq140Analyse.zt" + name;
    CLSID clsid{};
    void *factory = nullptr, *object = nullptr;
    if (FAILED(CLSIDFromProgID(std::u16string(id.begin(), id.end()).c_str(), &clsid)))
      ADD_FAILURE() << id;
    ASSERT_EQ(DllGetClassObject(clsid, IID_IClassFactory, &factory), S_OK) << name;
    feclearexcept(FE_ALL_EXCEPT);
    feenableexcept(FE_DIVBYZERO | FE_INVALID | FE_OVERFLOW | FE_UNDERFLOW | FE_INEXACT);
    fesetround(FE_UPWARD);
    const HRESULT made =
        static_cast<IClassFactory*>(factory)->CreateInstance(nullptr, IID_IDispatch, &object);
    const ULONG left = static_cast<IUnknown*>(object)->Release();
    const int rounding = fegetround();
    fesetenv(&usual);
    EXPECT_TRUE(made == S_OK && left == 0 && rounding == FE_UPWARD) << name;
    static_cast<IUnknown*>(factory)->Release();
  }
}

TEST(EntryPointsTest, factories_and_unloading) {
  CLSID clsid{};
  ASSERT_EQ(CLSIDFromProgID(u"vq140Analyse.ztAccumulate", &clsid), S_OK);
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

TEST(EntryPointsTest, the_words_of_an_argument_can_be_asked_for) {
  const std::vector<std::string> periods = described(u"VQ140analyse.ztAccumulate.PERIOD");
  EXPECT_EQ(periods.size(), 17U);
  EXPECT_EQ(periods.front(), "value\tminute");
  EXPECT_EQ(periods.back(), "value\tyears");
  EXPECT_EQ(described(u"vq140Analyse.ztAccumulate.DataPeriod"), periods);
  EXPECT_TRUE(described(u"vq140Analyse.ztAccumulate.Frequency").empty());
  for (const OLECHAR* id :
       {u"vq140Analyse.ztAccumulate.Nope", u"vq140Analyse.ztNope.Period", u"ztAccumulate.Period",
        u"vq140Analyse.ztAccumulate.", u"ztIntegrate"}) {
    OLECHAR stale = u'x';
    BSTR none = &stale;
    EXPECT_EQ(VqDescribe(id, &none), CO_E_CLASSSTRING);
    EXPECT_EQ(none, nullptr);
  }
  EXPECT_EQ(VqDescribe(u"", nullptr), E_POINTER);
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
    integrate->put_IntegrationRule(&rule);
    integrate->Integral(&none, &none, &area);
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
