#include "info/identity.hpp"

#include <filesystem>
#include <system_error>

#ifdef _WIN32
#include <windows.h>
//
#include <oleauto.h>
#else
#include <dlfcn.h>
#include <sys/stat.h>

#include <ctime>
#endif

namespace vqmath63 {
namespace {

namespace fs = std::filesystem;

// Any object of this file's own module: its address tells which file was loaded.
const char kAnchor = 0;

#ifdef _WIN32

std::string utf8(const std::wstring& text) {
  const auto u8 = fs::path(text).u8string();
  return {u8.begin(), u8.end()};
}

std::string component_folder() {
  HMODULE module = nullptr;
  GetModuleHandleExW(
      GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
      reinterpret_cast<LPCWSTR>(&kAnchor), &module);
  std::wstring name(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length = GetModuleFileNameW(module, name.data(), static_cast<DWORD>(name.size()));
    if (length == 0) return {};
    if (length < name.size()) {
      name.resize(length);
      break;
    }
    name.resize(name.size() * 2);
  }
  return utf8(fs::path(name).parent_path().native());
}

std::string modified_text(const fs::path& file) {
  WIN32_FILE_ATTRIBUTE_DATA data;
  if (!GetFileAttributesExW(file.c_str(), GetFileExInfoStandard, &data)) return {};
  FILETIME local;
  SYSTEMTIME parts;
  DATE date = 0;
  BSTR text = nullptr;
  if (!FileTimeToLocalFileTime(&data.ftLastWriteTime, &local) ||
      !FileTimeToSystemTime(&local, &parts) || !SystemTimeToVariantTime(&parts, &date) ||
      FAILED(VarBstrFromDate(date, LOCALE_USER_DEFAULT, 0, &text))) {
    return {};
  }
  std::string result = utf8(std::wstring(text, SysStringLen(text)));
  SysFreeString(text);
  return result;
}

#else

std::string component_folder() {
  Dl_info info{};
  if (dladdr(&kAnchor, &info) == 0 || info.dli_fname == nullptr) return {};
  std::error_code failed;
  const fs::path file = fs::absolute(info.dli_fname, failed);
  return failed ? std::string() : file.parent_path().string();
}

std::string modified_text(const fs::path& file) {
  struct stat status {};
  std::tm local{};
  if (stat(file.c_str(), &status) != 0 || localtime_r(&status.st_mtime, &local) == nullptr) {
    return {};
  }
  char text[128];
  const std::size_t length = std::strftime(text, sizeof text, "%c", &local);
  return {text, length};
}

#endif

}  // namespace

std::string product_and_version() {
  return std::string(kProductName) + " v" + std::to_string(kMajorVersion) + "." +
         std::to_string(kMinorVersion) + "." + std::to_string(kRevision);
}

std::string component_file() {
#ifdef _WIN32
  return component_folder() + "\\" + kFileBaseName + ".dll";
#else
  return component_folder() + "/lib" + kFileBaseName + ".so";
#endif
}

std::string file_date_text(const std::string& file) {
  const std::string text = modified_text(fs::path(std::u8string(file.begin(), file.end())));
  return text.empty() ? "(" + file + ":Unknown Date)" : text;
}

}  // namespace vqmath63
