#include "host/data/files.hpp"

#include <fcntl.h>
#include <unistd.h>

#include <climits>
#include <csignal>
#include <cstring>

namespace vqmath63::host {
namespace {

// What a signal's handler may use: no string.
char g_removed_when_stopped[PATH_MAX];

extern "C" void remove_and_end(int signal) {
  if (g_removed_when_stopped[0] != '\0') ::unlink(g_removed_when_stopped);
  std::signal(signal, SIG_DFL);
  std::raise(signal);
}

}  // namespace

std::FILE* open_to_read(const std::filesystem::path& path) {
  return std::fopen(path.c_str(), "rb");
}

bool create_new(const std::filesystem::path& path) {
  const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
  if (file < 0) return false;
  ::close(file);
  return true;
}

bool may_write(const std::filesystem::path& path) {
  return ::access(path.c_str(), W_OK) == 0;
}

void remove_when_stopped(const std::filesystem::path& file) {
  constexpr int kSignals[] = {SIGINT, SIGTERM, SIGHUP};
  const bool fits = !file.empty() && file.native().size() < sizeof g_removed_when_stopped;
  for (const int signal : kSignals) {
    const auto before = std::signal(signal, SIG_DFL);
    // Who has the program ignore a signal goes on doing so.
    if (before == SIG_IGN) {
      std::signal(signal, SIG_IGN);
    } else if (fits) {
      std::strcpy(g_removed_when_stopped, file.c_str());
      std::signal(signal, &remove_and_end);
    }
  }
}

int process_id() {
  return ::getpid();
}

bool errors_reach_a_terminal() {
  return ::isatty(STDERR_FILENO) != 0;
}

}  // namespace vqmath63::host
