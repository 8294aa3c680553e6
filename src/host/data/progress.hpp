// Progress of long work, for who waits at a terminal.
#pragma once

#include <cstddef>
#include <string>

namespace vqmath63::host {

/// Shows how far the reading of a file has come: on the standard error stream, only when that is a
/// terminal, and only for more than 20 MB or 500 000 rows. The line is taken away at the end.
class ReadingProgress {
 public:
  explicit ReadingProgress(std::string what);
  ~ReadingProgress();
  ReadingProgress(const ReadingProgress&) = delete;
  ReadingProgress& operator=(const ReadingProgress&) = delete;

  /// `bytes` in all are 0 where they are not known.
  void update(std::size_t rows, std::size_t bytes_done, std::size_t bytes);

 private:
  std::string what_;
  bool on_terminal_;
  bool shown_ = false;
};

}  // namespace vqmath63::host
