// The bytes of a file or of the standard input, as UTF-8 whatever they are written in.
#pragma once

#include <cstddef>
#include <cstdio>
#include <memory>
#include <string>

namespace vqmath63::host {

/// Reads a text from its beginning to its end. A byte order mark is passed over; with one for it,
/// or where every other byte at the beginning is 0, the text is UTF-16. Else it is UTF-8, or where
/// it begins with other bytes than those, one byte a character, as Windows writes them in western
/// countries. Errors are WorkErrors that name the file.
class TextSource {
 public:
  /// `path` "-" is the standard input.
  explicit TextSource(const std::string& path);

  /// Adds what some `size` bytes of the source say to the text; false at the end.
  bool read(std::string& text, std::size_t size);

  std::size_t bytes_done() const { return done_; }
  /// Of the source; 0 where that is not known beforehand.
  std::size_t bytes() const { return bytes_; }

 private:
  enum class Encoding { kUnknown, kUtf8, kOneByte, kUtf16Little, kUtf16Big };
  struct Close {
    void operator()(std::FILE* file) const;
  };

  [[noreturn]] void fail() const;
  void find_mark(std::string& text, std::size_t from);
  void to_utf8(std::string& text, std::size_t from);
  void from_utf16(std::string& text, std::size_t from);

  std::string path_;
  std::unique_ptr<std::FILE, Close> file_;
  std::size_t bytes_ = 0;
  std::size_t done_ = 0;
  bool begun_ = false;
  Encoding encoding_ = Encoding::kUnknown;
  std::string half_;  // of a character, the rest of which is still to be read
};

}  // namespace vqmath63::host
