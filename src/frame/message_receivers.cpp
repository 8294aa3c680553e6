// Receivers of message lines: those of each thread, and those of the process, without a lock.
#include "frame/message_receivers.hpp"

#include <atomic>
#include <memory>
#include <utility>

#include "frame/host_code.hpp"

namespace vqmath63 {
namespace {

MessageCallback& callback_of_thread() {
  thread_local MessageCallback callback;
  return callback;
}

std::string& last_of_thread() {
  thread_local std::string line;
  return line;
}

// The receiver of the process, kept until no thread can be about to take a copy of it.
using SharedCallback = std::shared_ptr<const MessageCallback>;
struct Receiver {
  SharedCallback callback;
  Receiver* next = nullptr;  // of those that have been replaced
};

// What the process has one of: exchanged, never waited for. Plain pointers, that stay good for a
// thread which reports when the process's own objects have ended.
constinit std::atomic<Receiver*> receiver_of_process{nullptr};
constinit std::atomic<Receiver*> replaced_receivers{nullptr};
constinit std::atomic<int> copying{0};  // threads that read receiver_of_process
constinit std::atomic<std::string*> last_of_process{nullptr};
constinit std::atomic<SystemOutput> system_output{nullptr};

SharedCallback callback_of_process() noexcept {
  ++copying;
  const Receiver* const receiver = receiver_of_process;
  SharedCallback callback = receiver == nullptr ? nullptr : receiver->callback;
  --copying;
  return callback;
}

void replace_receiver(Receiver* fresh) noexcept {
  Receiver* const old = receiver_of_process.exchange(fresh);
  Receiver* all = replaced_receivers.exchange(nullptr);
  if (old != nullptr) {
    old->next = all;
    all = old;
  }
  // Who begins to copy from here on finds the fresh one.
  if (copying == 0) {
    while (all != nullptr) delete std::exchange(all, all->next);
  } else if (all != nullptr) {  // the next replacement frees them
    Receiver* last = all;
    while (last->next != nullptr) last = last->next;
    last->next = replaced_receivers;
    while (!replaced_receivers.compare_exchange_weak(last->next, all)) {
    }
  }
}

std::unique_ptr<std::string> exchange_last_of_process(std::unique_ptr<std::string> line) noexcept {
  return std::unique_ptr<std::string>(last_of_process.exchange(line.release()));
}

// Frees them at the end of the process, or when the library is unloaded.
struct AtEnd {
  ~AtEnd() {
    replace_receiver(nullptr);
    exchange_last_of_process({});
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
  std::unique_ptr<Receiver> fresh;
  if (callback) {
    fresh = std::make_unique<Receiver>();
    fresh->callback = std::make_shared<const MessageCallback>(std::move(callback));
  }
  replace_receiver(fresh.release());
}

std::string take_last_message(MessagesOf whose) {
  if (whose == MessagesOf::kThread) return std::exchange(last_of_thread(), {});
  const auto last = exchange_last_of_process({});
  return last ? std::move(*last) : std::string();
}

void set_system_output(SystemOutput output) noexcept {
  system_output = output;
}

void keep_as_last_message(const std::string& line) noexcept {
  try {
    exchange_last_of_process(std::make_unique<std::string>(line));
    last_of_thread() = line;
  } catch (...) {  // no memory: the line goes its other ways
  }
}

bool deliver_to_host(const std::string& line, bool flag) {
  // Copies: the call may replace the original.
  if (take(MessageCallback(callback_of_thread()), line, flag)) return true;
  const SharedCallback callback = callback_of_process();
  return callback && take(*callback, line, flag);
}

void deliver_to_system(const std::string& line) noexcept {
  if (const SystemOutput output = system_output) output(line);
}

}  // namespace vqmath63
