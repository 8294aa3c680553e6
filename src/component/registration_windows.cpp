// Registration in the Windows registry: classes, programmatic ids and the type library.
#include <string>

#include "automation/text.hpp"
#include "component/class_list.hpp"
#include "component/module_path_windows.hpp"
#include "component/registration.hpp"

namespace vqmath63::component {
namespace {

using automation::ClassInfo;
using automation::utf16;

std::wstring guid_text(const GUID& guid) {
  wchar_t text[40];
  StringFromGUID2(guid, text, 40);
  return text;
}

// A root of class entries: HKEY_CLASSES_ROOT, or Software\Classes of the user.
class ClassesRoot {
 public:
  explicit ClassesRoot(Scope scope) {
    if (scope == Scope::kMachine) {
      key_ = HKEY_CLASSES_ROOT;
      return;
    }
    result_ = RegCreateKeyExW(HKEY_CURRENT_USER, L"Software\\Classes", 0, nullptr, 0,
                              KEY_READ | KEY_WRITE, nullptr, &key_, nullptr);
    opened_ = result_ == ERROR_SUCCESS;
  }
  ~ClassesRoot() {
    if (opened_) RegCloseKey(key_);
  }
  ClassesRoot(const ClassesRoot&) = delete;
  ClassesRoot& operator=(const ClassesRoot&) = delete;

  /// True when a key stands in the part of the registry that programs of the other word size see;
  /// programmatic ids are shared by both.
  bool other_word_size_has(const std::wstring& path) const {
#ifdef _WIN64
    constexpr REGSAM kOther = KEY_WOW64_32KEY;
#else
    constexpr REGSAM kOther = KEY_WOW64_64KEY;
#endif
    HKEY key = nullptr;
    if (RegOpenKeyExW(key_, path.c_str(), 0, KEY_READ | kOther, &key) != ERROR_SUCCESS) {
      return false;
    }
    RegCloseKey(key);
    return true;
  }

  void set(const std::wstring& path, const wchar_t* name, const std::wstring& value) {
    if (result_ != ERROR_SUCCESS) return;
    HKEY key = nullptr;
    result_ = RegCreateKeyExW(key_, path.c_str(), 0, nullptr, 0, KEY_WRITE, nullptr, &key, nullptr);
    if (result_ != ERROR_SUCCESS) return;
    const auto bytes = static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t));
    result_ =
        RegSetValueExW(key, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(value.c_str()), bytes);
    RegCloseKey(key);
  }
  void remove(const std::wstring& path) {
    const LSTATUS removed = RegDeleteTreeW(key_, path.c_str());
    if (removed != ERROR_SUCCESS && removed != ERROR_FILE_NOT_FOUND) result_ = removed;
  }
  /// Removes a key without keys below it, and unless `with_values` without values; false when it
  /// has some or is not there.
  bool remove_empty(const std::wstring& path, bool with_values) {
    HKEY key = nullptr;
    if (RegOpenKeyExW(key_, path.c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS) return false;
    DWORD values = 0;
    const LSTATUS known = RegQueryInfoKeyW(key, nullptr, nullptr, nullptr, nullptr, nullptr,
                                           nullptr, &values, nullptr, nullptr, nullptr, nullptr);
    RegCloseKey(key);
    return known == ERROR_SUCCESS && (with_values || values == 0) &&
           RegDeleteKeyW(key_, path.c_str()) == ERROR_SUCCESS;
  }
  HRESULT result() const {
    return HRESULT_FROM_WIN32(static_cast<DWORD>(result_));
  }

 private:
  HKEY key_ = nullptr;
  bool opened_ = false;
  LSTATUS result_ = ERROR_SUCCESS;
};

#ifdef _WIN64
constexpr const wchar_t* kSystem = L"win64";
#else
constexpr const wchar_t* kSystem = L"win32";
#endif
// The system's marshaler for interfaces that a type library describes.
constexpr const wchar_t* kLibraryMarshaler = L"{00020424-0000-0000-C000-000000000046}";

std::wstring library_version() {
  return std::to_wstring(kLibraryMajor) + L"." + std::to_wstring(kLibraryMinor);
}

std::wstring library_path() {
  return L"TypeLib\\" + guid_text(kLibraryId);
}

void set_class(ClassesRoot& root, const ClassInfo& info, const std::wstring& file) {
  const std::wstring id = utf16(programmatic_id(info));
  const std::wstring versioned = utf16(versioned_programmatic_id(info));
  const std::wstring clsid = guid_text(info.clsid);
  const std::wstring path = L"CLSID\\" + clsid;
  const std::wstring help = utf16(info.help);
  root.set(path, nullptr, help);
  root.set(path + L"\\InprocServer32", nullptr, file);
  root.set(path + L"\\InprocServer32", L"ThreadingModel", L"Apartment");
  root.set(path + L"\\ProgID", nullptr, versioned);
  root.set(path + L"\\VersionIndependentProgID", nullptr, id);
  root.set(path + L"\\Programmable", nullptr, L"");
  root.set(path + L"\\TypeLib", nullptr, guid_text(kLibraryId));
  root.set(path + L"\\Version", nullptr, library_version());
  for (const std::wstring& name : {id, versioned}) {
    root.set(name, nullptr, help);
    root.set(name + L"\\CLSID", nullptr, clsid);
  }
  root.set(id + L"\\CurVer", nullptr, versioned);
}

// Written here rather than by RegisterTypeLib, so that both scopes are served alike on every
// version of the system.
void set_type_library(ClassesRoot& root, const std::filesystem::path& file) {
  const std::wstring key = library_path() + L"\\" + library_version();
  root.set(key, nullptr, utf16(kLibraryTitle));
  root.set(key + L"\\0\\" + kSystem, nullptr, file.native());
  root.set(key + L"\\FLAGS", nullptr, L"0");
  root.set(key + L"\\HELPDIR", nullptr, file.parent_path().native());
}

void set_interface(ClassesRoot& root, const ClassInfo& info) {
  const std::wstring key = L"Interface\\" + guid_text(info.iid);
  root.set(key, nullptr, L"_" + utf16(info.name));
  root.set(key + L"\\ProxyStubClsid32", nullptr, kLibraryMarshaler);
  root.set(key + L"\\TypeLib", nullptr, guid_text(kLibraryId));
  root.set(key + L"\\TypeLib", L"Version", library_version());
}

// Leaves what a component of the other word size, or of another version, has written.
void remove_type_library(ClassesRoot& root) {
  const std::wstring key = library_path() + L"\\" + library_version();
  root.remove(key + L"\\0\\" + kSystem);
  if (root.remove_empty(key + L"\\0", true)) root.remove(key);
  root.remove_empty(library_path(), true);
}

// What stands above the entries may have been made with them: a user need not have had any.
void remove_folders(ClassesRoot& root) {
  for (const wchar_t* folder : {L"CLSID", L"Interface", L"TypeLib", L"Wow6432Node"}) {
    root.remove_empty(folder, false);
  }
}

}  // namespace

HRESULT register_component(Scope scope) noexcept {
  try {
    const std::filesystem::path file = module_path();
    if (file.empty()) return E_UNEXPECTED;
    ClassesRoot root(scope);
    set_type_library(root, file);
    for (const ClassInfo* info : classes()) {
      set_interface(root, *info);
      set_class(root, *info, file.native());
    }
    if (FAILED(root.result())) unregister_component(scope);  // nothing is left half done
    return root.result();
  } catch (...) {
    return E_OUTOFMEMORY;
  }
}

HRESULT unregister_component(Scope scope) noexcept {
  try {
    ClassesRoot root(scope);
    for (const ClassInfo* info : classes()) {
      root.remove(L"CLSID\\" + guid_text(info->clsid));
      if (!root.other_word_size_has(L"CLSID\\" + guid_text(info->clsid))) {
        root.remove(utf16(programmatic_id(*info)));
        root.remove(utf16(versioned_programmatic_id(*info)));
      }
      root.remove(L"Interface\\" + guid_text(info->iid));
    }
    remove_type_library(root);
    if (scope == Scope::kUser) remove_folders(root);
    return root.result();
  } catch (...) {
    return E_OUTOFMEMORY;
  }
}

}  // namespace vqmath63::component
