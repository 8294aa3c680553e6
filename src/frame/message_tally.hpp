// The error lines of many alike calls: counted while they are made, told once when they are over.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace vqmath63 {

/// From its making to tell(), counts the calls in which a trapped routine of this thread reports an
/// error and, where there is more than one call, keeps the lines from the error sink. Tallies may
/// stand within one another; the lines then go to the innermost.
class MessageTally {
 public:
  explicit MessageTally(std::int64_t calls) noexcept;
  ~MessageTally();
  MessageTally(const MessageTally&) = delete;
  MessageTally& operator=(const MessageTally&) = delete;

  /// To be set before each call: its number.
  std::int64_t call = 0;

  /// Counts a line of the present call, and keeps it unless it is one that was kept before. False
  /// when it has to go to the error sink at once. Lines that differ are kept up to a number that no
  /// member reaches by itself.
  bool take(const std::string& line);
  /// Counts the present call as failed, with or without a line.
  void note_failure() noexcept;

  /// How many calls have failed, and the number of the first; -1 for none.
  std::int64_t failed() const noexcept { return failed_; }
  std::int64_t first_failed() const noexcept { return first_failed_; }

  /// Sends each different line once to this thread's error sink, in the order in which they came.
  /// A failure of the sink goes on to the caller.
  void tell();

 private:
  void stop() noexcept;

  static constexpr std::size_t kMostLines = 64;
  MessageTally* outer_;
  bool keeps_;
  bool stopped_ = false;
  std::int64_t failed_ = 0;
  std::int64_t first_failed_ = -1;
  std::int64_t last_failed_ = -1;
  std::vector<std::string> lines_;
};

/// This thread's innermost tally, or null.
MessageTally* message_tally() noexcept;

}  // namespace vqmath63
