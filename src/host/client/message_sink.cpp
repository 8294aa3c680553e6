#include "host/client/message_sink.hpp"

#include <iostream>

#include "component/exports.hpp"
#include "host/client/dispatch_client.hpp"

namespace vqmath63::host {
namespace {

void show_line(const OLECHAR* line, BOOL /*is_close_down*/, void* errors) {
  std::string text = utf8(line);
  if (text.starts_with("Error:")) ++*static_cast<int*>(errors);
  text.erase(text.find_last_not_of(' ') + 1);
  std::cerr << "vqhost: " << text << '\n';
}

}  // namespace

MessageSink::MessageSink() {
  VqSetMessageCallback(&show_line, &errors_);
}

MessageSink::~MessageSink() {
  VqSetMessageCallback(nullptr, nullptr);
}

}  // namespace vqmath63::host
