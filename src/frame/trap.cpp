#include "frame/trap.hpp"

#include "frame/companions.hpp"
#include "frame/fault.hpp"
#include "frame/message_tally.hpp"

namespace vqmath63 {

std::string Location::text() const {
  std::string text = "In [";
  text.append(module)
      .append(" (Code)")
      .append(gap)
      .append("(")
      .append(routine)
      .append(close)
      .append("] ");
  return text;
}

std::string error_message(std::int32_t number, const Location& where) {
  std::string message = "Error:";
  message.append(error_text(number)).append(" (No.").append(std::to_string(number)).append(") ");
  return message.append(where.text());
}

void report_failure(const Location& where) {
  std::string message = error_message(fault_in_flight().number(), where);
  MessageTally* const tally = message_tally();
  if (tally != nullptr && tally->take(message)) return;
  bool flag = true;
  error_handler()->ReportError(message, flag);
}

}  // namespace vqmath63
