#include <fcntl.h>
#include <io.h>
#include <process.h>
#include <sys/stat.h>

#include "automation/types.hpp"
#include "host/data/files.hpp"

#include <cstdio>

namespace vqmath63::host {
namespace {

std::filesystem::path& removed_when_stopped() {
  static std::filesystem::path path;
  return path;
}

// Runs on a thread of the system's, after which the program ends: a file must be closed first.
BOOL WINAPI close_and_remove(DWORD) {
  _fcloseall();
  _wremove(removed_when_stopped().c_str());
  return FALSE;
}

}  // namespace

std::FILE* open_to_read(const std::filesystem::path& path) {
  return _wfopen(path.c_str(), L"rb");
}

bool create_new(const std::filesystem::path& path) {
  const int file = _wopen(path.c_str(), _O_WRONLY | _O_CREAT | _O_EXCL, _S_IREAD | _S_IWRITE);
  if (file < 0) return false;
  _close(file);
  return true;
}

bool may_write(const std::filesystem::path& path) {
  constexpr int kToWrite = 2;
  return _waccess(path.c_str(), kToWrite) == 0;
}

void remove_when_stopped(const std::filesystem::path& file) {
  SetConsoleCtrlHandler(&close_and_remove, FALSE);
  removed_when_stopped() = file;
  if (!file.empty()) SetConsoleCtrlHandler(&close_and_remove, TRUE);
}

int process_id() {
  return _getpid();
}

bool errors_reach_a_terminal() {
  const HANDLE console = GetStdHandle(STD_ERROR_HANDLE);
  DWORD mode = 0;
  return GetConsoleMode(console, &mode) != 0 &&
         SetConsoleMode(console, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
}

}  // namespace vqmath63::host
