#include "host/data/table_text.hpp"

#include <algorithm>
#include <cstdio>

#include "automation/text.hpp"

namespace vqmath63::host {
namespace {

bool is_digit(char c) {
  return c >= '0' && c <= '9';
}

// Takes the digits off the front; false when there is none.
bool take_digits(std::string_view& text) {
  const auto end = std::find_if_not(text.begin(), text.end(), is_digit);
  const auto count = static_cast<std::size_t>(end - text.begin());
  text.remove_prefix(count);
  return count > 0;
}

}  // namespace

bool is_json_number(std::string_view text) {
  if (text.starts_with('-')) text.remove_prefix(1);
  const bool zero_first = text.size() > 1 && text[0] == '0' && is_digit(text[1]);
  if (zero_first || !take_digits(text)) return false;
  if (text.starts_with('.')) {
    text.remove_prefix(1);
    if (!take_digits(text)) return false;
  }
  if (text.starts_with('e') || text.starts_with('E')) {
    text.remove_prefix(1);
    if (text.starts_with('+') || text.starts_with('-')) text.remove_prefix(1);
    if (!take_digits(text)) return false;
  }
  return text.empty();
}

std::string json_quoted(std::string_view text) {
  std::string quoted = "\"";
  for (const char c : automation::utf8(automation::utf16(text))) {
    if (c == '"' || c == '\\') {
      quoted += '\\';
      quoted += c;
    } else if (static_cast<unsigned char>(c) < ' ') {
      char escaped[8];
      std::snprintf(escaped, sizeof escaped, "\\u%04x", static_cast<unsigned>(c));
      quoted += escaped;
    } else {
      quoted += c;
    }
  }
  return quoted += '"';
}

std::string markdown_cell(std::string_view text) {
  std::string cell;
  for (const char c : text) {
    if (c == '|' || c == '\\') cell += '\\';
    if (c == '\n') {
      cell += "<br>";
    } else if (c != '\r') {
      cell += c;
    }
  }
  return cell;
}

}  // namespace vqmath63::host
