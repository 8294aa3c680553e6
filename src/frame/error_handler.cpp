// Delivery of message lines to the host, the log file or standard error.
#include "frame/error_handler.hpp"

#include <cstdio>
#include <ctime>
#include <filesystem>
#include <new>

#include "frame/date.hpp"
#include "frame/log_file.hpp"
#include "frame/message_receivers.hpp"

namespace vqmath63 {
namespace {

// "YYYY-MM-DD hh:mm:ss " of this moment.
std::string time_stamp() {
  const std::tm local = local_time();
  char text[64];
  return {text, std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S ", &local)};
}

// A message of several lines, those after the first under its beginning.
std::string indented(const std::string& message, std::size_t width) {
  std::string text;
  for (std::size_t i = 0; i < message.size(); ++i) {
    const char c = message[i];
    if (c == '\r' && message.compare(i + 1, 1, "\n") == 0) continue;
    if (c == '\n' || c == '\r') {
      text.append(1, '\n').append(width, ' ');
    } else {
      text += c;
    }
  }
  return text;
}

bool print(const std::string& text) {
  return std::fwrite(text.data(), 1, text.size(), stderr) == text.size();
}

// In one piece, so that the lines of several processes stay apart.
bool print_to_standard_error(const std::string& line) {
  bool printed = false;
  try {
    printed = print(line + '\n');
  } catch (const std::bad_alloc&) {
    printed = print(line) && print("\n");
  }
  return printed && std::fflush(stderr) == 0;
}

}  // namespace

void BuiltInErrorHandler::ReportError(std::string& message, bool& flag) {
  keep_as_last_message(message);
  if (deliver_to_host(message, flag)) return;
  if (logging_ && !log_file_.empty() && append_to_log(message)) return;
  if (!print_to_standard_error(message)) deliver_to_system(message);
}

void BuiltInErrorHandler::SetLogToFile(bool& qLogToFile) {
  logging_ = qLogToFile;
}

void BuiltInErrorHandler::SetLogFile(std::string& LOGFILE) {
  if (LOGFILE != log_file_) session_begun_ = false;
  log_file_ = LOGFILE;
}

void BuiltInErrorHandler::SetVersionText(std::string& version_text) {
  if (version_text != version_text_) session_begun_ = false;
  version_text_ = version_text;
}

bool BuiltInErrorHandler::append_to_log(const std::string& message) noexcept {
  try {
    const std::string stamp = time_stamp();
    std::string text;
    if (!session_begun_ && !version_text_.empty()) text += stamp + version_text_ + '\n';
    text += stamp + indented(message, stamp.size()) + '\n';
    // Opened for each line, so that the file can be moved away or read at any time.
    const std::filesystem::path path(std::u8string(log_file_.begin(), log_file_.end()));
    if (!append_to_file(path, text)) return false;
    session_begun_ = true;
    return true;
  } catch (...) {  // no such path, or no memory: the line has another way to go
    return false;
  }
}

}  // namespace vqmath63
