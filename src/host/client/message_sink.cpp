#include "host/client/message_sink.hpp"

#include <iostream>

#include "host/client/dispatch_client.hpp"
#include "host/client/entry_points.hpp"

namespace vqmath63::host {

MessageSink::MessageSink() {
  entry_points().set_message_callback(&take, this);
}

MessageSink::~MessageSink() {
  entry_points().set_message_callback(nullptr, nullptr);
}

void VQ_API MessageSink::take(const OLECHAR* line, BOOL /*is_close_down*/, void* self) {
  auto* const sink = static_cast<MessageSink*>(self);
  if (sink->deaf_) return;
  std::string text = utf8(line);
  if (text.starts_with("Error:")) ++sink->errors_;
  text.erase(text.find_last_not_of(' ') + 1);
  std::cerr << "vqhost: " << text << '\n';
}

}  // namespace vqmath63::host
