// The built-in error sink: to the host's callback, to a log file, or to standard error.
#pragma once

#include <string>

#include "frame/companions.hpp"
#include "frame/message_receivers.hpp"

namespace vqmath63 {

/// Error sink of threads whose host has put none of its own in place. No line vanishes: it goes to
/// this thread's message callback, without one (or when it throws) to that of the process, to the
/// log file if logging is on, to the standard error stream when none of these takes it, and to the
/// system when the process has no such stream. Nothing here raises because of a file that cannot be
/// opened or written.
///
/// The log is appended to, line by line, as "YYYY-MM-DD hh:mm:ss " in local time and the line; a
/// line with breaks goes on below its own beginning, behind as many blanks. Several processes may
/// share a log. What a disk that fills up has cut short is followed by a new line. The first line
/// after SetLogFile or SetVersionText has brought a new text begins a session of the log: the
/// version text is written before it in the same form.
class BuiltInErrorHandler final : public ztErrorHandler {
 public:
  void ReportError(std::string& message, bool& flag) override;
  void SetLogToFile(bool& qLogToFile) override;
  void SetLogFile(std::string& LOGFILE) override;
  void SetVersionText(std::string& version_text) override;

 private:
  bool append_to_log(const std::string& message) noexcept;

  bool logging_ = false;
  bool session_begun_ = false;
  std::string log_file_;
  std::string version_text_;
};

}  // namespace vqmath63
