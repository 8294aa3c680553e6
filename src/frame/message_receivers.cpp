// Receivers of message lines: those of each thread, and those of the process under a short lock.
#include "frame/message_receivers.hpp"

#include <atomic>
#include <memory>
#include <utility>

#include "frame/host_code.hpp"

namespace vqmath63 {
namespace {

using SharedCallback = std::shared_ptr<const MessageCallback>;

MessageCallback& callback_of_thread() {
  thread_local MessageCallback callback;
  return callback;
}

std::string& last_of_thread() {
  thread_local std::string line;
  return line;
}

// What the process has one of. Plain pointers, that stay good for a thread which reports when the
// process's own objects have ended.
constinit const SharedCallback* callback_of_process = nullptr;
constinit std::string* last_of_process = nullptr;
constinit std::atomic<SystemOutput> system_output{nullptr};

// Held for the time of a copy or an exchange of those.
class ProcessLock {
 public:
  ProcessLock() noexcept {
    while (taken.test_and_set(std::memory_order_acquire)) {
    }
  }
  ~ProcessLock() { taken.clear(std::memory_order_release); }
  ProcessLock(const ProcessLock&) = delete;
  ProcessLock& operator=(const ProcessLock&) = delete;

 private:
  static constinit inline std::atomic_flag taken;
};

template <class T>
std::unique_ptr<T> exchange_for_process(T*& held, std::unique_ptr<T> fresh) noexcept {
  const ProcessLock lock;
  return std::unique_ptr<T>(std::exchange(held, fresh.release()));
}

// Frees them at the end of the process, or when the library is unloaded.
struct AtEnd {
  ~AtEnd() {
    exchange_for_process(callback_of_process, {});
    exchange_for_process(last_of_process, {});
  }
};
const AtEnd at_end;

bool take(const MessageCallback& callback, const std::string& line, bool flag) {
  if (!callback) return false;
  try {
    const HostCode code;
    callback(line, flag);
    return true;
  } catch (...) {  // the host did not take it
    return false;
  }
}

}  // namespace

void set_message_callback(MessageCallback callback) {
  callback_of_thread() = std::move(callback);
}

void set_process_message_callback(MessageCallback callback) {
  std::unique_ptr<const SharedCallback> fresh;
  if (callback) {
    fresh = std::make_unique<const SharedCallback>(
        std::make_shared<const MessageCallback>(std::move(callback)));
  }
  exchange_for_process(callback_of_process, std::move(fresh));
}

std::string take_last_message(MessagesOf whose) {
  if (whose == MessagesOf::kThread) return std::exchange(last_of_thread(), {});
  const auto last = exchange_for_process(last_of_process, {});
  return last ? std::move(*last) : std::string();
}

void set_system_output(SystemOutput output) noexcept {
  system_output = output;
}

void keep_as_last_message(const std::string& line) noexcept {
  try {
    exchange_for_process(last_of_process, std::make_unique<std::string>(line));
    last_of_thread() = line;
  } catch (...) {  // no memory: the line goes its other ways
  }
}

bool deliver_to_host(const std::string& line, bool flag) {
  // Copies: the call may replace the original.
  if (take(MessageCallback(callback_of_thread()), line, flag)) return true;
  SharedCallback callback;
  {
    const ProcessLock lock;
    if (callback_of_process != nullptr) callback = *callback_of_process;
  }
  return callback && take(*callback, line, flag);
}

void deliver_to_system(const std::string& line) noexcept {
  if (const SystemOutput output = system_output) output(line);
}

}  // namespace vqmath63
