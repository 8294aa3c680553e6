#include "component/log_file_windows.hpp"

#include <windows.h>

#include <memory>

namespace vqmath63::component {
namespace {

struct CloseFile {
  void operator()(HANDLE file) const { CloseHandle(file); }
};
using File = std::unique_ptr<void, CloseFile>;

constexpr int kMostTries = 1000;  // a millisecond apart

// Opened for appending alone, which the system does in one step. Another program that reads or
// copies the log may keep it to itself for a moment.
File open_to_append(const std::filesystem::path& path) {
  constexpr DWORD kShared = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  for (int left = kMostTries;; Sleep(1)) {
    const HANDLE file = CreateFileW(path.c_str(), FILE_APPEND_DATA | FILE_READ_DATA | SYNCHRONIZE,
                                    kShared, nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file != INVALID_HANDLE_VALUE) return File(file);
    if (GetLastError() != ERROR_SHARING_VIOLATION || --left == 0) return File();
  }
}

// A byte far beyond the end, which only these writers lock: systems that emulate this one, and
// network drives, do not append in one step.
class Turn {
 public:
  explicit Turn(HANDLE file) : file_(file) {
    constexpr DWORD kAtOnce = LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY;
    for (int left = kMostTries; left > 0 && !taken_; --left) {
      taken_ = LockFileEx(file_, kAtOnce, 0, 1, 0, &place_) != FALSE;
      if (!taken_) Sleep(1);
    }
  }
  ~Turn() {
    if (taken_) UnlockFileEx(file_, 0, 1, 0, &place_);
  }
  Turn(const Turn&) = delete;
  Turn& operator=(const Turn&) = delete;

  bool taken() const { return taken_; }

 private:
  static OVERLAPPED far_beyond() {
    OVERLAPPED place{};
    place.OffsetHigh = 0x7FFFFFFF;
    return place;
  }

  HANDLE file_;
  OVERLAPPED place_ = far_beyond();
  bool taken_ = false;
};

bool ends_within_a_line(HANDLE file) {
  LARGE_INTEGER last{};
  last.QuadPart = -1;
  char end = '\n';
  DWORD got = 0;
  return SetFilePointerEx(file, last, nullptr, FILE_END) != FALSE &&
         ReadFile(file, &end, 1, &got, nullptr) != FALSE && got == 1 && end != '\n';
}

}  // namespace

bool append_to_log(const std::filesystem::path& path, const std::string& text) {
  const File file = open_to_append(path);
  if (!file) return false;
  const Turn turn(file.get());
  if (!turn.taken()) return false;
  std::string lines = ends_within_a_line(file.get()) ? "\r\n" : "";
  for (const char c : text) {
    if (c == '\n') lines += '\r';
    lines += c;
  }
  DWORD written = 0;
  const auto size = static_cast<DWORD>(lines.size());
  return WriteFile(file.get(), lines.data(), size, &written, nullptr) != FALSE && written == size;
}

}  // namespace vqmath63::component
