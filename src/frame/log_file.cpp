#include "frame/log_file.hpp"

#include <atomic>
#include <fstream>

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

}  // namespace

void set_append_to_file(AppendToFile append) noexcept {
  system_append = append;
}

bool append_to_file(const fs::path& path, const std::string& text) {
  if (const AppendToFile append = system_append) return append(path, text);
  std::error_code none;
  const fs::file_status status = fs::status(path, none);
  if (fs::is_fifo(status)) return false;  // it would wait for a reader
  const bool torn = fs::is_regular_file(status) && ends_within_a_line(path);
  const std::string whole = (torn ? "\n" : "") + text;
  std::ofstream file(path, std::ios::app);
  // One call of the system: what is longer than the stream's buffer is written past it.
  file.write(whole.data(), static_cast<std::streamsize>(whole.size()));
  file.close();
  return !file.fail();
}

}  // namespace vqmath63
