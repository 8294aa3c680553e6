// Lets the lines of the component's error sink reach the user.
#pragma once

namespace vqmath63::host {

/// While it lives, each line of this thread's error sink goes to the standard error stream behind
/// "vqhost: ", and the error lines are counted.
class MessageSink {
 public:
  MessageSink();
  ~MessageSink();
  MessageSink(const MessageSink&) = delete;
  MessageSink& operator=(const MessageSink&) = delete;

  int errors() const { return errors_; }

 private:
  int errors_ = 0;
};

}  // namespace vqmath63::host
