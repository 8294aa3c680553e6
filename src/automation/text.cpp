#include "automation/text.hpp"

#include <functional>
#include <new>

#include "frame/text_case.hpp"

namespace vqmath63::automation {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

// Reads one character of UTF-8 at `at` and steps over it.
char32_t next_character(std::string_view text, std::size_t& at) {
  const auto byte = [&](std::size_t i) { return static_cast<std::uint8_t>(text[i]); };
  const std::uint8_t lead = byte(at++);
  if (lead < 0x80) return lead;
  const int more = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : 1;
  if (lead < 0xC2 || lead > 0xF4) return kReplacement;
  auto code = static_cast<char32_t>(lead & (0x3F >> more));
  for (int i = 0; i < more; ++i) {
    if (at >= text.size() || (byte(at) & 0xC0) != 0x80) return kReplacement;
    code = (code << 6) | (byte(at++) & 0x3F);
  }
  constexpr char32_t kLeast[] = {0, 0x80, 0x800, 0x10000};
  const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
  return code < kLeast[more] || code > 0x10FFFF || surrogate ? kReplacement : code;
}

void append_utf8(std::string& out, char32_t code) {
  const auto put = [&](char32_t byte) { out.push_back(static_cast<char>(byte)); };
  if (code < 0x80) {
    put(code);
  } else if (code < 0x800) {
    put(0xC0 | (code >> 6));
    put(0x80 | (code & 0x3F));
  } else if (code < 0x10000) {
    put(0xE0 | (code >> 12));
    put(0x80 | ((code >> 6) & 0x3F));
    put(0x80 | (code & 0x3F));
  } else {
    put(0xF0 | (code >> 18));
    put(0x80 | ((code >> 12) & 0x3F));
    put(0x80 | ((code >> 6) & 0x3F));
    put(0x80 | (code & 0x3F));
  }
}

}  // namespace

Utf16 utf16(std::string_view utf8) {
  Utf16 out;
  out.reserve(utf8.size());
  for (std::size_t at = 0; at < utf8.size();) {
    const char32_t code = next_character(utf8, at);
    if (code < 0x10000) {
      out.push_back(static_cast<OLECHAR>(code));
    } else {
      out.push_back(static_cast<OLECHAR>(0xD7C0 + (code >> 10)));
      out.push_back(static_cast<OLECHAR>(0xDC00 + (code & 0x3FF)));
    }
  }
  return out;
}

std::string utf8(std::basic_string_view<OLECHAR> utf16) {
  std::string out;
  out.reserve(utf16.size());
  for (std::size_t i = 0; i < utf16.size(); ++i) {
    const auto unit = static_cast<char32_t>(static_cast<std::uint16_t>(utf16[i]));
    const bool high = unit >= 0xD800 && unit < 0xDC00;
    const bool low = unit >= 0xDC00 && unit < 0xE000;
    char32_t code = high || low ? kReplacement : unit;
    if (high && i + 1 < utf16.size()) {
      const auto second = static_cast<char32_t>(static_cast<std::uint16_t>(utf16[i + 1]));
      if (second >= 0xDC00 && second < 0xE000) {
        code = 0x10000 + ((unit - 0xD800) << 10) + (second - 0xDC00);
        ++i;
      }
    }
    append_utf8(out, code);
  }
  return out;
}

std::string text_of(BSTR text) {
  return text == nullptr ? std::string() : utf8({text, SysStringLen(text)});
}

std::uint64_t text_hash(BSTR text) noexcept {
  const auto* bytes = reinterpret_cast<const char*>(text);
  return std::hash<std::string_view>{}({bytes, SysStringByteLen(text)});
}

BSTR new_bstr(std::string_view text) {
  const Utf16 wide = utf16(text);
  BSTR made = SysAllocStringLen(wide.data(), static_cast<UINT>(wide.size()));
  if (made == nullptr) throw std::bad_alloc();
  return made;
}

bool same_name(const OLECHAR* given, const char* name) noexcept {
  for (;; ++given, ++name) {
    const auto a = static_cast<char32_t>(static_cast<std::uint16_t>(*given));
    const auto b = static_cast<char32_t>(static_cast<unsigned char>(*name));
    if (lower_case(a) != lower_case(b)) return false;
    if (a == 0) return true;
  }
}

}  // namespace vqmath63::automation
