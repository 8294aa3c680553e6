#include "host/data/files.hpp"

#include <fcntl.h>
#include <unistd.h>

namespace vqmath63::host {

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

int process_id() {
  return ::getpid();
}

bool errors_reach_a_terminal() {
  return ::isatty(STDERR_FILENO) != 0;
}

}  // namespace vqmath63::host
