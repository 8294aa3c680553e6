#include "host/client/message_sink.hpp"

#include <iostream>

#include "host/client/dispatch_client.hpp"
#include "host/client/entry_points.hpp"

namespace vqmath63::host {
namespace {

void VQ_API show_line(const OLECHAR* line, BOOL /*is_close_down*/, void* errors) {
  std::string text = utf8(line);
  if (text.starts_with("Error:")) ++*static_cast<int*>(errors);
  text.erase(text.find_last_not_of(' ') + 1);
  std::cerr << "vqhost: " << text << '\n';
}

}  // namespace

MessageSink::MessageSink() {
  entry_points().set_message_callback(&show_line, &errors_);
}

MessageSink::~MessageSink() {
  entry_points().set_message_callback(nullptr, nullptr);
}

}  // namespace vqmath63::host
