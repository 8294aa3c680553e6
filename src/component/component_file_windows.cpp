// The component's file on Windows, by what the loader knows of it.
#include "component/component_file.hpp"

#include "automation/owners.hpp"
#include "automation/text.hpp"
#include "component/module_path_windows.hpp"

namespace vqmath63::component {
namespace {

namespace fs = std::filesystem;

// Any object of this file's own module: its address tells which file was loaded.
const char kAnchor = 0;

std::string utf8(const fs::path& path) {
  const auto text = path.u8string();
  return {text.begin(), text.end()};
}

std::string modified_text(const fs::path& file) {
  WIN32_FILE_ATTRIBUTE_DATA data;
  if (!GetFileAttributesExW(file.c_str(), GetFileExInfoStandard, &data)) return {};
  FILETIME local;
  SYSTEMTIME parts;
  DATE date = 0;
  automation::Variant text;
  if (!FileTimeToLocalFileTime(&data.ftLastWriteTime, &local) ||
      !FileTimeToSystemTime(&local, &parts) || !SystemTimeToVariantTime(&parts, &date) ||
      FAILED(VarBstrFromDate(date, LOCALE_USER_DEFAULT, 0, &text.bstrVal))) {
    return {};
  }
  text.vt = VT_BSTR;
  return automation::text_of(text.bstrVal);
}

}  // namespace

fs::path module_path() {
  HMODULE module = nullptr;
  GetModuleHandleExW(
      GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
      reinterpret_cast<LPCWSTR>(&kAnchor), &module);
  std::wstring name(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length = GetModuleFileNameW(module, name.data(), static_cast<DWORD>(name.size()));
    if (length < name.size()) {
      name.resize(length);
      return name;
    }
    name.resize(name.size() * 2);
  }
}

ComponentFile component_file() {
  const fs::path file = module_path().parent_path() / (std::string(kFileBaseName) + ".dll");
  return {utf8(file), modified_text(file)};
}

}  // namespace vqmath63::component
