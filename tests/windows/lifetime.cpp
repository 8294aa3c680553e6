// Type information and lifetime of the component: what holds it loaded, threads, its version
// resource. Argument: the path of the component.
#include "apartment.hpp"

namespace {

bool loaded() {
  return GetModuleHandleA("vqmath63.dll") != nullptr;
}

HRESULT can_unload() {
  return exported<HRESULT(STDMETHODCALLTYPE*)()>("DllCanUnloadNow")();
}

void type_information() {
  for (const ClassRow& row : kClasses) {
    const std::string name = row.name;
    Holder<IDispatch> object;
    if (!checks.that(create(row.clsid, object) == S_OK, name + ": create")) continue;
    UINT count = 9;
    object->GetTypeInfoCount(&count);
    checks.that(count == 1, name + ": one type info");
    Holder<ITypeInfo> info, class_info;
    checks.result(object->GetTypeInfo(1, 0, info.place()), DISP_E_BADINDEX, name + ": only one");
    checks.result(object->GetTypeInfo(0, 0, info.place()), S_OK, name + ": type info");
    Holder<IProvideClassInfo> provider;
    object->QueryInterface(IID_IProvideClassInfo, provider.untyped());
    if (!checks.that(info.get() != nullptr && provider.get() != nullptr, name + ": infos"))
      continue;
    checks.result(provider->GetClassInfo(class_info.place()), S_OK, name + ": class info");
    TYPEATTR* attributes = nullptr;
    info->GetTypeAttr(&attributes);
    checks.that(IsEqualGUID(attributes->guid, row.iid), name + ": its interface");
    info->ReleaseTypeAttr(attributes);
    class_info->GetTypeAttr(&attributes);
    checks.that(attributes->typekind == TKIND_COCLASS && IsEqualGUID(attributes->guid, row.clsid),
                name + ": the creatable class");
    class_info->ReleaseTypeAttr(attributes);
    if (&row != &kClasses[0]) continue;
    Holder<ITypeLib> library;
    UINT index = 0;
    checks.result(info->GetContainingTypeLib(library.place(), &index), S_OK, "type library");
    Text own_name, title;
    library->GetDocumentation(-1, &own_name.text, &title.text, nullptr, nullptr);
    TLIBATTR* of = nullptr;
    library->GetLibAttr(&of);
    checks.that(
        own_name.ascii() == "vq140Analyse" && of->wMajorVerNum == 6 &&
            title.ascii() == "Quorvane Statistical Analysis 6.3" && of->wMinorVerNum == 3,
        "version, name and title of the library: " + own_name.ascii() + ", " + title.ascii());
    library->ReleaseTLibAttr(of);
  }
}

void what_holds_it_loaded() {
  checks.that(!loaded(), "not loaded before its first use");
  Holder<IClassFactory> factory;
  checks.result(CoGetClassObject(CLSID_ztAccumulate, CLSCTX_INPROC_SERVER, nullptr,
                                 IID_IClassFactory, factory.untyped()),
                S_OK, "class factory");
  if (!checks.that(loaded(), "loaded")) return;
  checks.result(can_unload(), S_FALSE, "a factory holds it");
  Holder<IDispatch> object;
  factory->CreateInstance(nullptr, IID_IDispatch, object.untyped());
  factory.reset();
  Holder<ISupportErrorInfo> support;
  object->QueryInterface(IID_ISupportErrorInfo, support.untyped());
  object.reset();
  CoFreeUnusedLibrariesEx(0, 0);
  checks.that(loaded(), "an interface beside the object holds it");
  checks.that(support.reset() == 0, "the last reference");
  checks.result(can_unload(), S_OK, "nothing holds it");
  CoFreeUnusedLibrariesEx(0, 0);
  checks.that(!loaded(), "really unloaded");
}

// A thread has the component keep things for it, unloads it, and only then ends.
void thread_outlives_component() {
  const Apartment host;
  host.run([] {
    {
      Holder<_ztAnalyseInfo> info;
      create(CLSID_ztAnalyseInfo, info);
      Text version;
      VARIANT_BOOL to_log = VARIANT_FALSE;
      info->get_DLLVersion(nullptr, nullptr, &to_log, &version.text);
    }
    CoFreeUnusedLibrariesEx(0, 0);
    checks.that(!loaded(), "unloaded while a thread that used it lives on");
  });
}

void version_resource(const char* path) {
  DWORD unused = 0;
  std::vector<char> block(GetFileVersionInfoSizeA(path, &unused));
  if (!checks.that(!block.empty(), "a version resource")) return;
  GetFileVersionInfoA(path, 0, static_cast<DWORD>(block.size()), block.data());
  const auto value = [&block](const std::string& name) -> const void* {
    void* place = nullptr;
    UINT length = 0;
    return VerQueryValueA(block.data(), name.c_str(), &place, &length) ? place : "missing";
  };
  const auto* fixed = static_cast<const VS_FIXEDFILEINFO*>(value("\\"));
  checks.that(
      fixed->dwFileVersionMS == ((6U << 16) | 3U) && fixed->dwFileVersionLS == (2436U << 16),
      "file version 6.3.2436.0");
  const char* const rows[][2] = {{"FileVersion", "6.03.2436"},
                                 {"ProductName", "vqmath63"},
                                 {"FileDescription", "Quorvane Statistical Analysis 6.3"},
                                 {"OriginalFilename", "vqmath63.dll"}};
  for (const auto& [name, wanted] : rows) {
    const std::string path_of = std::string("\\StringFileInfo\\040904B0\\") + name;
    const std::string got = static_cast<const char*>(value(path_of));
    checks.that(got == wanted, name + (": " + got));
  }
}

}  // namespace

int main(int count, char** words) {
  if (count != 2) return 2;
  version_resource(words[1]);
  CoInitialize(nullptr);
  what_holds_it_loaded();
  type_information();
  CoFreeUnusedLibrariesEx(0, 0);
  checks.that(!loaded(), "unloaded after type information");
  thread_outlives_component();
  CoUninitialize();
  return checks.close();
}
