// The component's file on POSIX systems, by what the dynamic linker knows of it.
#include <dlfcn.h>
#include <sys/stat.h>

#include <ctime>
#include <filesystem>
#include <system_error>

#include "component/component_file.hpp"
#include "frame/fault.hpp"

namespace vqmath63::component {
namespace {

// Any object of this file's own module: its address tells which file was loaded.
const char kAnchor = 0;

std::string modified_text(const char* file) {
  struct stat status {};
  std::tm local{};
  if (stat(file, &status) != 0 || localtime_r(&status.st_mtime, &local) == nullptr) return {};
  char text[128];
  return {text, std::strftime(text, sizeof text, "%c", &local)};
}

}  // namespace

ComponentFile component_file() {
  namespace fs = std::filesystem;
  const std::string name = std::string("lib") + kFileBaseName + ".so";
  Dl_info info{};
  if (dladdr(&kAnchor, &info) == 0 || info.dli_fname == nullptr) return {name, ""};
  std::error_code failed;
  const fs::path loaded = fs::absolute(info.dli_fname, failed);
  if (failed == std::errc::not_enough_memory) raise_fault(ErrorNumber::kOutOfMemory);
  if (failed) return {name, ""};
  // The date is that of the file that was loaded: installed, its name may go on after ".so".
  return {(loaded.parent_path() / name).string(), modified_text(loaded.c_str())};
}

}  // namespace vqmath63::component
