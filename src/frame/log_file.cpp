#include "frame/log_file.hpp"

#include <atomic>
#include <fstream>

#if defined(__unix__)
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <thread>
#endif

namespace vqmath63 {
namespace {

constinit std::atomic<AppendToFile> system_append{nullptr};

namespace fs = std::filesystem;

bool ends_within_a_line(const fs::path& path) {
  std::ifstream file(path, std::ios::binary | std::ios::ate);
  if (!file || file.tellg() <= 0) return false;
  file.seekg(-1, std::ios::end);
  return file.get() != '\n' && file.good();
}

#if defined(__unix__)
// A reader can see half of what another process is appending, and would take it for a line that
// was cut short: so those who append do it in turn. One that does not move on for a second, or a
// file system without such locks, is not waited for.
class Turn {
 public:
  explicit Turn(const fs::path& path)
      : file_(::open(path.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0666)) {
    if (file_ < 0) return;
    for (int left = 1000; left > 0; --left) {
      if (::flock(file_, LOCK_EX | LOCK_NB) == 0 || (errno != EWOULDBLOCK && errno != EINTR))
        return;
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
  }
  ~Turn() {
    if (file_ >= 0) ::close(file_);
  }
  Turn(const Turn&) = delete;
  Turn& operator=(const Turn&) = delete;

 private:
  int file_;
};
#else
struct Turn {
  explicit Turn(const fs::path&) {}
  ~Turn() {}
};
#endif

}  // namespace

void set_append_to_file(AppendToFile append) noexcept {
  system_append = append;
}

bool append_to_file(const fs::path& path, const std::string& text) {
  if (const AppendToFile append = system_append) return append(path, text);
  std::error_code none;
  const fs::file_status status = fs::status(path, none);
  if (fs::is_fifo(status)) return false;  // it would wait for a reader
  const Turn turn(path);
  const bool torn = fs::is_regular_file(status) && ends_within_a_line(path);
  const std::string whole = (torn ? "\n" : "") + text;
  std::ofstream file(path, std::ios::app);
  // One call of the system: what is longer than the stream's buffer is written past it.
  file.write(whole.data(), static_cast<std::streamsize>(whole.size()));
  file.close();
  return !file.fail();
}

}  // namespace vqmath63
