#include "host/data/progress.hpp"

#include <iostream>

#include "host/data/files.hpp"

namespace vqmath63::host {

ReadingProgress::ReadingProgress(std::string what)
    : what_(std::move(what)), on_terminal_(errors_reach_a_terminal()) {}

ReadingProgress::~ReadingProgress() {
  constexpr const char* kEraseLine = "\r\033[K";
  if (shown_) std::cerr << kEraseLine << std::flush;
}

void ReadingProgress::update(std::size_t rows, std::size_t bytes_done, std::size_t bytes) {
  constexpr std::size_t kManyBytes = 20'000'000;
  constexpr std::size_t kManyRows = 500'000;
  if (!on_terminal_ || (bytes < kManyBytes && rows < kManyRows)) return;
  shown_ = true;
  std::cerr << "\rreading " << what_ << ": ";
  if (bytes > 0) std::cerr << bytes_done * 100 / bytes << " %, ";
  std::cerr << rows << " rows" << std::flush;
}

}  // namespace vqmath63::host
