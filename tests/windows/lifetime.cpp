// Identity, type information and lifetime of the component: what holds it loaded, apartments, its
// version resource. Argument: the path of the component.
#include <thread>

#include "check.hpp"

namespace {

bool loaded() {
  return GetModuleHandleA("vqmath63.dll") != nullptr;
}

HRESULT can_unload() {
  using CanUnload = HRESULT(STDMETHODCALLTYPE*)();
  const auto ask = reinterpret_cast<CanUnload>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA("vqmath63.dll"), "DllCanUnloadNow")));
  return ask();
}

void type_information() {
  for (const ClassRow& row : kClasses) {
    const std::string name = row.name;
    Holder<IDispatch> object;
    if (!checks.that(create(row.clsid, object) == S_OK, name + ": create")) continue;
    UINT count = 9;
    object->GetTypeInfoCount(&count);
    checks.that(count == 1, name + ": one type info");
    Holder<ITypeInfo> info;
    checks.result(object->GetTypeInfo(1, 0, info.place()), DISP_E_BADINDEX, name + ": only one");
    checks.result(object->GetTypeInfo(0, 0, info.place()), S_OK, name + ": type info");
    if (info.get() == nullptr) continue;
    TYPEATTR* attributes = nullptr;
    info->GetTypeAttr(&attributes);
    checks.that(IsEqualGUID(attributes->guid, row.iid), name + ": its interface");
    info->ReleaseTypeAttr(attributes);

    Holder<IProvideClassInfo> provider;
    Holder<ITypeInfo> class_info;
    checks.result(object->QueryInterface(IID_IProvideClassInfo, provider.untyped()), S_OK,
                  name + ": IProvideClassInfo");
    checks.result(provider->GetClassInfo(class_info.place()), S_OK, name + ": class info");
    class_info->GetTypeAttr(&attributes);
    checks.that(attributes->typekind == TKIND_COCLASS && IsEqualGUID(attributes->guid, row.clsid),
                name + ": the creatable class");
    class_info->ReleaseTypeAttr(attributes);

    Holder<IUnknown> identity;
    Holder<IUnknown> from_provider;
    object->QueryInterface(IID_IUnknown, identity.untyped());
    provider->QueryInterface(IID_IUnknown, from_provider.untyped());
    checks.that(identity.get() == from_provider.get(), name + ": one identity");
    checks.result(object->QueryInterface(IID_IMarshal, from_provider.untyped()), E_NOINTERFACE,
                  name + ": an interface it has not");
  }
  Holder<IDispatch> object;
  Holder<ITypeInfo> info;
  create(CLSID_ztIntegrate, object);
  object->GetTypeInfo(0, 0, info.place());
  Holder<ITypeLib> library;
  UINT index = 0;
  checks.result(info->GetContainingTypeLib(library.place(), &index), S_OK, "type library");
  Text name;
  Text title;
  library->GetDocumentation(-1, &name.text, &title.text, nullptr, nullptr);
  TLIBATTR* attributes = nullptr;
  library->GetLibAttr(&attributes);
  checks.that(name.ascii() == "vq140Analyse" &&
                  title.ascii() == "Quorvane Statistical Analysis 6.3" &&
                  attributes->wMajorVerNum == 6 && attributes->wMinorVerNum == 3,
              "name, title and version of the library: " + name.ascii() + ", " + title.ascii());
  library->ReleaseTLibAttr(attributes);
}

void what_holds_it_loaded() {
  checks.that(!loaded(), "not loaded before its first use");
  Holder<IClassFactory> factory;
  checks.result(CoGetClassObject(CLSID_ztAccumulate, CLSCTX_INPROC_SERVER, nullptr,
                                 IID_IClassFactory, factory.untyped()),
                S_OK, "class factory");
  if (!checks.that(loaded(), "loaded")) return;
  checks.result(can_unload(), S_FALSE, "a factory holds it");
  factory->LockServer(TRUE);
  Holder<IDispatch> object;
  factory->CreateInstance(nullptr, IID_IDispatch, object.untyped());
  factory.reset();
  checks.result(can_unload(), S_FALSE, "a lock and an object hold it");
  object.reset();
  checks.result(can_unload(), S_FALSE, "a lock holds it");
  create(CLSID_ztIntegrate, object);
  CoGetClassObject(CLSID_ztAccumulate, CLSCTX_INPROC_SERVER, nullptr, IID_IClassFactory,
                   factory.untyped());
  factory->LockServer(FALSE);
  factory.reset();
  checks.result(can_unload(), S_FALSE, "an object holds it");
  Holder<ISupportErrorInfo> support;
  object->QueryInterface(IID_ISupportErrorInfo, support.untyped());
  object.reset();
  checks.result(can_unload(), S_FALSE, "an interface beside the object holds it");
  checks.that(support.reset() == 0, "the last reference");
  checks.result(can_unload(), S_OK, "nothing holds it");
  CoFreeUnusedLibrariesEx(0, 0);
  checks.that(!loaded(), "really unloaded");
}

float area_of_thread(DWORD apartment) {
  float area = NAN;
  std::thread host([&] {
    CoInitializeEx(nullptr, apartment);
    {
      Holder<_ztIntegrate> integrate;
      HostArray x({0, 1, 2}, 1);
      HostArray y({0, 1, 4}, 1);
      if (SUCCEEDED(create(CLSID_ztIntegrate, integrate))) {
        integrate->Integral(&x.array, &y.array, &area);
      }
    }
    CoUninitialize();
  });
  host.join();
  return area;
}

// A thread has the component keep things for it, unloads it, and only then ends.
void thread_outlives_component() {
  bool unloaded = false;
  std::thread host([&] {
    CoInitialize(nullptr);
    {
      Holder<_ztAnalyseInfo> info;
      create(CLSID_ztAnalyseInfo, info);
      Text version;
      VARIANT_BOOL to_log = VARIANT_FALSE;
      info->get_DLLVersion(nullptr, nullptr, &to_log, &version.text);
    }
    CoFreeUnusedLibrariesEx(0, 0);
    unloaded = !loaded();
    CoUninitialize();
  });
  host.join();
  checks.that(unloaded, "unloaded while a thread that used it lives on");
}

std::string version_value(const std::vector<char>& block, const char* name) {
  void* text = nullptr;
  UINT length = 0;
  const std::string path = std::string("\\StringFileInfo\\040904B0\\") + name;
  if (!VerQueryValueA(block.data(), path.c_str(), &text, &length)) return "missing";
  return static_cast<const char*>(text);
}

void version_resource(const char* path) {
  DWORD unused = 0;
  std::vector<char> block(GetFileVersionInfoSizeA(path, &unused));
  if (!checks.that(!block.empty(), "a version resource")) return;
  GetFileVersionInfoA(path, 0, static_cast<DWORD>(block.size()), block.data());
  void* place = nullptr;
  UINT length = 0;
  VerQueryValueA(block.data(), "\\", &place, &length);
  const auto* fixed = static_cast<const VS_FIXEDFILEINFO*>(place);
  checks.that(
      fixed->dwFileVersionMS == ((6U << 16) | 3U) && fixed->dwFileVersionLS == (2436U << 16),
      "file version 6.3.2436.0");
  const char* const rows[][2] = {{"FileVersion", "6.03.2436"},
                                 {"ProductName", "vqmath63"},
                                 {"FileDescription", "Quorvane Statistical Analysis 6.3"},
                                 {"OriginalFilename", "vqmath63.dll"}};
  for (const auto& row : rows) {
    const std::string value = version_value(block, row[0]);
    checks.that(value == row[1], std::string(row[0]) + ": " + value);
  }
}

}  // namespace

int main(int count, char** words) {
  if (count != 2) return 2;
  version_resource(words[1]);
  CoInitialize(nullptr);
  what_holds_it_loaded();
  type_information();
  checks.that(area_of_thread(COINIT_APARTMENTTHREADED) == 3.0F, "a thread with its own apartment");
  CoFreeUnusedLibrariesEx(0, 0);
  checks.that(!loaded(), "unloaded after type information and another apartment");
  thread_outlives_component();
  checks.that(area_of_thread(COINIT_MULTITHREADED) == 3.0F, "a thread without one: marshalled");
  CoUninitialize();
  return checks.close();
}
