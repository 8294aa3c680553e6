// Takes the text of a CSV file apart into fields.
#pragma once

#include <charconv>
#include <cmath>
#include <cstddef>
#include <string>
#include <string_view>

#include "host/data/csv.hpp"
#include "host/failure.hpp"
#include "host/text.hpp"

namespace vqmath63::host {

/// Walks through a text field by field, counting lines.
class FieldScanner {
 public:
  FieldScanner(const CsvFile& file, std::string_view text, std::size_t at, std::size_t line,
               char delimiter)
      : file_(file),
        begin_(text.data()),
        at_(text.data() + at),
        end_(text.data() + text.size()),
        line_(line),
        delimiter_(delimiter) {}

  bool at_end() const { return at_ == end_; }
  bool at_field_end() const { return at_end() || *at_ == delimiter_ || *at_ == '\n'; }
  std::size_t line() const { return line_; }
  std::size_t offset() const { return static_cast<std::size_t>(at_ - begin_); }

  /// Passes over a line of nothing but blanks.
  bool skip_empty_line() {
    const char* p = at_;
    while (p < end_ && (*p == ' ' || *p == '\r' || (*p == '\t' && delimiter_ != '\t'))) ++p;
    if (p < end_ && *p != '\n') return false;
    at_ = p;
    end_row();
    return true;
  }

  /// A plain number that fills its field: the common case, without looking at the field twice.
  bool take_plain_number(double& number) {
    const auto [stop, error] = std::from_chars(at_, end_, number);
    if (error != std::errc{} || !std::isfinite(number)) return false;
    const char* p = stop;
    if (p < end_ && *p == '\r') ++p;
    if (p < end_ && *p != '\n' && (p != stop || *p != delimiter_)) return false;
    at_ = p;
    return true;
  }

  /// The next field without its blanks and quotes; `column` is for messages. The text lives until
  /// the next call.
  std::string_view take(std::size_t column) {
    const char* p = at_;
    while (p < end_ && *p == ' ') ++p;
    if (p < end_ && *p == '"') return take_quoted(p + 1, column);
    const char* start = at_;
    while (!at_field_end()) ++at_;
    return trimmed({start, static_cast<std::size_t>(at_ - start)});
  }

  /// Steps over the delimiter; false at the end of the row, which it steps over too.
  bool next_field() {
    if (!at_end() && *at_ == delimiter_) {
      ++at_;
      return true;
    }
    end_row();
    return false;
  }

 private:
  void end_row() {
    if (at_end()) return;
    ++at_;
    ++line_;
  }

  std::string_view take_quoted(const char* p, std::size_t column) {
    const std::size_t opened = line_;
    scratch_.clear();
    for (;; ++p) {
      if (p == end_) {
        throw WorkError(file_.place(opened, column) + "a quote is opened and never closed");
      }
      if (*p == '"') {
        if (p + 1 == end_ || p[1] != '"') break;
        ++p;
      }
      if (*p == '\n') ++line_;
      scratch_ += *p;
    }
    at_ = p + 1;
    const char* rest = at_;
    while (!at_field_end()) ++at_;
    if (!trimmed({rest, static_cast<std::size_t>(at_ - rest)}).empty()) {
      throw WorkError(file_.place(opened, column) + "text follows the closing quote");
    }
    return trimmed(scratch_);
  }

  const CsvFile& file_;
  const char* begin_;
  const char* at_;
  const char* end_;
  std::size_t line_;
  char delimiter_;
  std::string scratch_;
};

}  // namespace vqmath63::host
