#include "host/report/markup.hpp"

namespace vqmath63::host {
namespace {

// The bytes of the UTF-8 character that a text begins with; 0 where it begins with none that XML
// may hold (overlong forms, surrogates, what lies beyond U+10FFFF, U+FFFE, U+FFFF).
std::size_t character_length(std::string_view text) {
  const auto byte = [&](std::size_t i) {
    return i < text.size() ? static_cast<unsigned char>(text[i]) : 0U;
  };
  const unsigned lead = byte(0);
  if (lead < 0x80) return 1;
  const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4) return 0;
  unsigned code = lead & (0xFFU >> (length + 1));
  for (std::size_t i = 1; i < length; ++i) {
    if ((byte(i) & 0xC0U) != 0x80) return 0;
    code = code << 6U | (byte(i) & 0x3FU);
  }
  constexpr unsigned kLeast[] = {0, 0, 0x80, 0x800, 0x10000};
  const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
  const bool no_character = code == 0xFFFE || code == 0xFFFF;
  return code < kLeast[length] || surrogate || no_character || code > 0x10FFFF ? 0 : length;
}

}  // namespace

std::string escaped(std::string_view text) {
  constexpr std::string_view kReplacement = "\xEF\xBF\xBD";
  std::string out;
  out.reserve(text.size());
  while (!text.empty()) {
    const std::size_t length = character_length(text);
    const char c = text.front();
    if (length == 0 || (length == 1 && (c == 0x7F || (c < ' ' && c != '\t' && c != '\n')))) {
      out += kReplacement;
    } else if (c == '&') {
      out += "&amp;";
    } else if (c == '<') {
      out += "&lt;";
    } else if (c == '>') {
      out += "&gt;";
    } else if (c == '"') {
      out += "&quot;";
    } else {
      out += text.substr(0, length);
    }
    text.remove_prefix(length == 0 ? 1 : length);
  }
  return out;
}

std::string attribute(std::string_view name, std::string_view value) {
  return " " + std::string(name) + "=\"" + escaped(value) + "\"";
}

}  // namespace vqmath63::host
