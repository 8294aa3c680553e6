#include "host/data/text_source.hpp"

#include <cerrno>
#include <cstdint>
#include <cstring>

#include "automation/text.hpp"
#include "host/data/files.hpp"
#include "host/failure.hpp"

namespace vqmath63::host {
namespace {

// Where the first byte of a text lies that is no ASCII, or its end.
std::size_t first_high(std::string_view text) {
  constexpr std::uint64_t kHigh = 0x8080808080808080U;
  std::size_t i = 0;
  for (std::uint64_t word = 0; i + sizeof word <= text.size(); i += sizeof word) {
    std::memcpy(&word, text.data() + i, sizeof word);
    if ((word & kHigh) != 0) break;
  }
  while (i < text.size() && (static_cast<unsigned char>(text[i]) & 0x80) == 0) ++i;
  return i;
}

// Whether the bytes are UTF-8, but for a character that their end may have cut in two.
bool is_utf8(std::string_view text) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto lead = static_cast<unsigned char>(text[i]);
    if (lead < 0x80) continue;
    const int more = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : 1;
    if (lead < 0xC2 || lead > 0xF4) return false;
    for (int k = 0; k < more; ++k) {
      if (++i == text.size()) return true;
      if ((static_cast<unsigned char>(text[i]) & 0xC0) != 0x80) return false;
    }
  }
  return true;
}

// What Windows' code page 1252 has from 0x80 to 0x9F; above, a byte is its character's number.
constexpr char16_t kFrom80[] = {0x20AC, 0x81,   0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x8D,   0x017D, 0x8F,
                                0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x9D,   0x017E, 0x0178};

std::string one_byte_text(std::string_view bytes) {
  std::string text;
  text.reserve(bytes.size() + bytes.size() / 8);
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    const unsigned code = byte >= 0x80 && byte < 0xA0 ? kFrom80[byte - 0x80] : byte;
    if (code < 0x80) {
      text += c;
    } else if (code < 0x800) {
      text += static_cast<char>(0xC0 | code >> 6);
      text += static_cast<char>(0x80 | (code & 0x3F));
    } else {
      text += static_cast<char>(0xE0 | code >> 12);
      text += static_cast<char>(0x80 | (code >> 6 & 0x3F));
      text += static_cast<char>(0x80 | (code & 0x3F));
    }
  }
  return text;
}

}  // namespace

void TextSource::Close::operator()(std::FILE* file) const {
  if (file != stdin) std::fclose(file);
}

TextSource::TextSource(const std::string& path)
    : path_(path), file_(path == "-" ? stdin : open_to_read(path_of(path))) {
  if (file_ == nullptr) fail();
  std::error_code error;
  if (path == "-") return;
  const auto size = std::filesystem::file_size(path_of(path), error);
  if (!error) bytes_ = static_cast<std::size_t>(size);
}

void TextSource::fail() const {
  if (path_ != "-") throw WorkError(path_ + ": " + std::strerror(errno));
  const bool is_closed = errno == EBADF || errno == EINVAL;  // the latter on Windows
  throw WorkError(std::string("standard input: ") +
                  (is_closed ? "it is closed" : std::strerror(errno)));
}

bool TextSource::read(std::string& text, std::size_t size) {
  const std::size_t from = text.size();
  text += half_;
  const std::size_t at = text.size();
  half_.clear();
  text.resize(at + size);
  const std::size_t got = std::fread(text.data() + at, 1, size, file_.get());
  text.resize(at + got);
  done_ += got;
  if (std::ferror(file_.get()) != 0) fail();
  if (!begun_) find_mark(text, from);
  if (encoding_ == Encoding::kUtf16Little || encoding_ == Encoding::kUtf16Big) {
    from_utf16(text, from);
  } else {
    to_utf8(text, from);
  }
  return got > 0;
}

void TextSource::find_mark(std::string& text, std::size_t from) {
  begun_ = true;
  const std::string_view begin = std::string_view(text).substr(from);
  if (begin.starts_with("\xEF\xBB\xBF")) {
    text.erase(from, 3);
    encoding_ = Encoding::kUtf8;
  } else if (begin.starts_with("\xFF\xFE") || begin.starts_with("\xFE\xFF")) {
    encoding_ = begin[0] == '\xFF' ? Encoding::kUtf16Little : Encoding::kUtf16Big;
    text.erase(from, 2);
  } else if (begin.size() > 3) {
    // Two letters of ASCII, of two bytes each.
    const bool low[] = {begin[0] == '\0', begin[1] == '\0', begin[2] == '\0', begin[3] == '\0'};
    if (low[0] == low[2] && low[1] == low[3] && low[0] != low[1]) {
      encoding_ = low[1] ? Encoding::kUtf16Little : Encoding::kUtf16Big;
    }
  }
}

void TextSource::to_utf8(std::string& text, std::size_t from) {
  if (encoding_ == Encoding::kUtf8) return;
  std::string_view high = std::string_view(text).substr(from);
  high.remove_prefix(first_high(high));
  if (high.empty()) return;
  if (encoding_ == Encoding::kUnknown) {
    encoding_ = is_utf8(high) ? Encoding::kUtf8 : Encoding::kOneByte;
  }
  if (encoding_ == Encoding::kOneByte) {
    text.replace(from, std::string::npos, one_byte_text(std::string_view(text).substr(from)));
  }
}

void TextSource::from_utf16(std::string& text, std::size_t from) {
  const bool little = encoding_ == Encoding::kUtf16Little;
  std::u16string units;
  std::size_t i = from;
  for (; i + 1 < text.size(); i += 2) {
    const auto first = static_cast<unsigned char>(text[i]);
    const auto second = static_cast<unsigned char>(text[i + 1]);
    units += static_cast<char16_t>(little ? second << 8 | first : first << 8 | second);
  }
  half_ = text.substr(i);
  // The first of a pair waits for its second, which comes with the next bytes.
  if (!units.empty() && (units.back() & 0xFC00) == 0xD800 && std::feof(file_.get()) == 0) {
    half_ = text.substr(i - 2);
    units.pop_back();
  }
  const std::basic_string<OLECHAR> wide(units.begin(), units.end());
  text.replace(from, std::string::npos, automation::utf8(wide));
}

}  // namespace vqmath63::host
