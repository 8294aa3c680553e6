#include <algorithm>
#include <string>

#include "automation/owners.hpp"
#include "host/client/dispatch_client.hpp"
#include "host/client/entry_points.hpp"

namespace vqmath63::host {
namespace {

using automation::OwnedText;
using automation::Reference;

constexpr const wchar_t* kFileName = L"vqmath63.dll";
constexpr const wchar_t* kAnyClass = L"vq140Analyse.ztAnalyseInfo";

template <class Function>
void find(HMODULE library, const char* name, Function& function) {
  function = reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(library, name)));
  if (function == nullptr) {
    throw AutomationError(std::string("vqmath63.dll is another one: it has no ") + name);
  }
}

// Beside the program's file; empty where no library is there.
std::wstring path_beside() {
  constexpr DWORD kLongestPath = 32768;
  std::wstring path(kLongestPath, L'\0');
  path.resize(GetModuleFileNameW(nullptr, path.data(), kLongestPath));
  path.resize(path.find_last_of(L'\\') + 1);
  path += kFileName;
  return GetFileAttributesW(path.c_str()) == INVALID_FILE_ATTRIBUTES ? L"" : path;
}

// Of a library that need not be registered: they tell the class ids. Kept while the program runs.
ITypeLib* own_types = nullptr;

std::wstring documented_name(int index) {
  BSTR name = nullptr;
  if (FAILED(own_types->GetDocumentation(index, &name, nullptr, nullptr, nullptr))) return {};
  const OwnedText owned(name);
  return {name, SysStringLen(name)};
}

HRESULT class_id_of_own_types(LPCOLESTR programmatic_id, CLSID* clsid) {
  const std::wstring library = documented_name(-1) + L".";
  // "library.class", with a version behind it or without.
  std::wstring wanted = programmatic_id;
  const auto version = wanted.find(L'.', std::min(library.size(), wanted.size()));
  if (version != std::wstring::npos) wanted.resize(version);
  for (UINT i = 0; i < own_types->GetTypeInfoCount(); ++i) {
    TYPEKIND kind{};
    if (FAILED(own_types->GetTypeInfoType(i, &kind)) || kind != TKIND_COCLASS) continue;
    const std::wstring id = library + documented_name(static_cast<int>(i));
    if (_wcsicmp(id.c_str(), wanted.c_str()) != 0) continue;
    Reference<ITypeInfo> type;
    TYPEATTR* attributes = nullptr;
    HRESULT result = own_types->GetTypeInfo(i, type.place());
    if (SUCCEEDED(result)) result = type->GetTypeAttr(&attributes);
    if (FAILED(result)) return result;
    *clsid = attributes->guid;
    type->ReleaseTypeAttr(attributes);
    return S_OK;
  }
  return CO_E_CLASSSTRING;
}

HMODULE load_beside(const std::wstring& path, EntryPoints& points) {
  const HMODULE library = LoadLibraryExW(path.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
  if (library == nullptr) {
    throw AutomationError(utf8(path) + ": cannot be loaded, system error " +
                          std::to_string(GetLastError()));
  }
  if (FAILED(LoadTypeLibEx(path.c_str(), REGKIND_NONE, &own_types))) {
    throw AutomationError(utf8(path) + ": has no type library");
  }
  find(library, "DllGetClassObject", points.class_object);
  points.class_id = &class_id_of_own_types;
  return library;
}

HRESULT registered_class_id(LPCOLESTR programmatic_id, CLSID* clsid) {
  return CLSIDFromProgID(programmatic_id, clsid);
}

HRESULT VQ_API registered_class_object(REFCLSID clsid, REFIID iid, void** out) {
  return CoGetClassObject(clsid, CLSCTX_INPROC_SERVER, nullptr, iid, out);
}

// The library that the system creates the classes from.
HMODULE load_registered(EntryPoints& points) {
  CLSID clsid{};
  Reference<IClassFactory> factory;
  HRESULT result = CLSIDFromProgID(kAnyClass, &clsid);
  if (SUCCEEDED(result)) {
    result = registered_class_object(clsid, IID_IClassFactory, factory.untyped_place());
  }
  if (FAILED(result)) {
    throw AutomationError(
        "there is no vqmath63.dll beside this program, and none is registered for " +
        std::to_string(8 * sizeof(void*)) + "-bit programs");
  }
  // Whose function the factory's first one is; the library is kept for as long as the program runs.
  HMODULE library = nullptr;
  const void* function = **reinterpret_cast<void***>(factory.get());
  GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_PIN,
                     static_cast<const wchar_t*>(function), &library);
  points.class_id = &registered_class_id;
  points.class_object = &registered_class_object;
  return library;
}

EntryPoints found() {
  EntryPoints points{};
  const std::wstring beside = path_beside();
  const HMODULE library = beside.empty() ? load_registered(points) : load_beside(beside, points);
  find(library, "VqDescribe", points.describe);
  find(library, "VqSetMessageCallback", points.set_message_callback);
  find(library, "VqCallMany", points.call_many);
  return points;
}

}  // namespace

const EntryPoints& entry_points() {
  static const EntryPoints kFound = found();
  return kFound;
}

}  // namespace vqmath63::host
