// Type information and lifetime of the component: what holds it loaded, its version resource.
// Argument: the path of the component.
#include "check.hpp"

namespace {

bool loaded() {
  return GetModuleHandleA("vqmath63.dll") != nullptr;
}

HRESULT can_unload() {
  return exported<HRESULT(STDMETHODCALLTYPE*)()>("DllCanUnloadNow")();
}

GUID id_of(ITypeInfo* info) {
  TYPEATTR* attributes = nullptr;
  if (info == nullptr || FAILED(info->GetTypeAttr(&attributes))) return GUID{};
  const GUID id = attributes->guid;
  info->ReleaseTypeAttr(attributes);
  return id;
}

void type_information() {
  for (const ClassRow& row : kClasses) {
    Holder<IDispatch> object;
    Holder<IProvideClassInfo> provider;
    Holder<ITypeInfo> info, of_class;
    create(row.clsid, object);
    UINT count = 9;
    object->GetTypeInfoCount(&count);
    checks.that(count == 1 && object->GetTypeInfo(1, 0, info.place()) == DISP_E_BADINDEX,
                row.name + std::string(": one type info"));
    object->GetTypeInfo(0, 0, info.place());
    object->QueryInterface(IID_IProvideClassInfo, provider.untyped());
    provider->GetClassInfo(of_class.place());
    checks.that(id_of(info.get()) == row.iid && id_of(of_class.get()) == row.clsid,
                row.name + std::string(": of its interface, of its class"));
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
  CoUninitialize();
  return checks.close();
}
