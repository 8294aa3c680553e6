#include "frame/message_tally.hpp"

#include <algorithm>
#include <utility>

#include "frame/companions.hpp"

namespace vqmath63 {
namespace {

thread_local constinit MessageTally* innermost = nullptr;

}  // namespace

MessageTally* message_tally() noexcept {
  return innermost;
}

MessageTally::MessageTally(std::int64_t calls) noexcept
    : outer_(std::exchange(innermost, this)), keeps_(calls != 1) {}

MessageTally::~MessageTally() {
  stop();
}

void MessageTally::stop() noexcept {
  if (!std::exchange(stopped_, true)) innermost = outer_;
}

bool MessageTally::take(const std::string& line) {
  note_failure();
  const bool is_new = std::find(lines_.begin(), lines_.end(), line) == lines_.end();
  if (keeps_ && is_new && lines_.size() < kMostLines) lines_.push_back(line);
  return keeps_;
}

void MessageTally::note_failure() noexcept {
  if (last_failed_ == call) return;
  last_failed_ = call;
  if (failed_++ == 0) first_failed_ = call;
}

void MessageTally::tell() {
  stop();
  for (std::string& line : lines_) {
    bool flag = true;
    error_handler()->ReportError(line, flag);
  }
}

}  // namespace vqmath63
