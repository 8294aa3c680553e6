// Lets the lines of the component's error sink reach the user.
#pragma once

#include "automation/types.hpp"

namespace vqmath63::host {

/// While it lives, each line of this thread's error sink goes to the standard error stream behind
/// "vqhost: ", and the error lines are counted; unless it is deaf, when it takes no notice.
class MessageSink {
 public:
  MessageSink();
  ~MessageSink();
  MessageSink(const MessageSink&) = delete;
  MessageSink& operator=(const MessageSink&) = delete;

  int errors() const { return errors_; }
  void set_deaf(bool deaf) { deaf_ = deaf; }

 private:
  static void VQ_API take(const OLECHAR* line, BOOL is_close_down, void* self);

  int errors_ = 0;
  bool deaf_ = false;
};

}  // namespace vqmath63::host
