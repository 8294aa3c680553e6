// Who takes the lines of the built-in error sink beside its log: callbacks of the host, the system,
// and whoever asks for the last one.
#pragma once

#include <functional>
#include <string>

namespace vqmath63 {

/// A host's receiver of message lines, with the flag of ReportError.
using MessageCallback = std::function<void(const std::string& line, bool flag)>;

/// Installs this thread's receiver; an empty one takes it away. It belongs to the thread, not to a
/// sink, and so outlives every close-down.
void set_message_callback(MessageCallback callback);

/// Installs the receiver of all threads that have none of their own, to be called in the thread
/// that the line is of; an empty one takes it away. A call that another thread has begun may still
/// be under way then.
void set_process_message_callback(MessageCallback callback);

/// Whose last line is asked for.
enum class MessagesOf { kThread, kProcess };

/// The last line of this thread's built-in sinks, or of those of all threads, whoever took it. It
/// is forgotten then: no text when none has come since it was asked for.
std::string take_last_message(MessagesOf whose);

/// Takes a line that neither the host, a log nor the standard error stream has taken.
using SystemOutput = void (*)(const std::string& line) noexcept;

/// Installs that receiver, for the process; null takes it away.
void set_system_output(SystemOutput output) noexcept;

/// Steps of the built-in sink: keeps a line as the last one; hands it to the callback of the thread
/// or that of the process, false when there is none that takes it; hands it to the system.
void keep_as_last_message(const std::string& line) noexcept;
bool deliver_to_host(const std::string& line, bool flag);
void deliver_to_system(const std::string& line) noexcept;

}  // namespace vqmath63
