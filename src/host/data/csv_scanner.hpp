// Takes the text of a CSV file apart into fields.
#pragma once

#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>

#include "host/data/csv_form.hpp"
#include "host/data/quick_cells.hpp"
#include "host/text.hpp"

namespace vqmath63::host {

/// A cell that cannot be taken: the line on which its row or quote begins, its column from 0, and
/// what is wrong.
struct CellFault {
  std::size_t line;
  std::size_t column;
  std::string problem;
};

/// Walks through a text field by field, counting lines. Behind the text kCellPadding bytes, or the
/// end that std::string has, can be read.
class FieldScanner {
 public:
  FieldScanner(std::string_view text, std::size_t line, char delimiter)
      : begin_(text.data()),
        at_(text.data()),
        end_(text.data() + text.size()),
        line_(line),
        delimiter_(delimiter) {}

  bool at_end() const { return at_ == end_; }
  bool at_field_end() const { return at_end() || *at_ == delimiter_ || *at_ == '\n'; }
  std::size_t line() const { return line_; }
  std::size_t offset() const { return static_cast<std::size_t>(at_ - begin_); }

  /// Passes over a comment, or a line of nothing but blanks.
  bool skip_no_row() {
    if (*at_ == '#' || *at_ == '-') {
      if (!is_comment({at_, static_cast<std::size_t>(end_ - at_)}, delimiter_)) return false;
      skip_line();
      return true;
    }
    if (*at_ > ' ' || *at_ == delimiter_) return false;
    const char* p = at_;
    while (p < end_ && (*p == ' ' || *p == '\r' || (*p == '\t' && delimiter_ != '\t'))) ++p;
    if (p < end_ && *p != '\n') return false;
    at_ = p;
    end_row();
    return true;
  }

  void skip_line() {
    while (!at_end() && *at_ != '\n') ++at_;
    end_row();
  }

  /// A plain number that fills its field: the common case, without looking at the field twice. The
  /// decimal mark must be no delimiter.
  bool take_plain_number(double& number, char mark = '.') {
    constexpr std::ptrdiff_t kShort = 8;
    const char* stop = end_ - at_ > kShort ? take_short_decimal(at_, number, mark) : nullptr;
    if (stop == nullptr) stop = take_decimal(at_, number, mark);
    if (stop == nullptr || *stop == 'e' || *stop == 'E') {
      if (mark != '.') return false;
      const auto [behind, error] = std::from_chars(at_, end_, number);
      if (error != std::errc{} || !std::isfinite(number)) return false;
      stop = behind;
    }
    return end_field(stop);
  }

  /// The same of a day as ISO writes it, a day count.
  bool take_plain_day(double& days) {
    if (end_ - at_ < kIsoDay) return false;
    // Rows by date have the same one again and again.
    if (day_ != nullptr && std::memcmp(at_, day_, kIsoDay) == 0) {
      days = days_;
      return end_field(at_ + kIsoDay);
    }
    const char* const stop = take_iso_day(at_, days);
    if (stop == nullptr) return false;
    day_ = at_;
    days_ = days;
    return end_field(stop);
  }

  /// The next field without its blanks and quotes; `column` is for faults. The text lives until
  /// the next call.
  std::string_view take(std::size_t column) {
    const char* p = at_;
    while (p < end_ && *p == ' ') ++p;
    if (p < end_ && *p == '"') return take_quoted(p + 1, column);
    const char* start = at_;
    while (!at_field_end()) ++at_;
    return trimmed({start, static_cast<std::size_t>(at_ - start)});
  }

  /// Whether the text that take() gave is a part of the scanned one, and not put together.
  bool is_part(std::string_view text) const { return text.data() >= begin_ && text.data() < end_; }

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
  static constexpr std::ptrdiff_t kIsoDay = 10;

  // Goes on behind a cell when nothing of its field is left there.
  bool end_field(const char* stop) {
    const char* p = stop;
    if (p < end_ && *p == '\r') ++p;
    if (p > end_ || (p < end_ && *p != '\n' && (p != stop || *p != delimiter_))) return false;
    at_ = p;
    return true;
  }

  void end_row() {
    if (at_end()) return;
    ++at_;
    ++line_;
  }

  std::string_view take_quoted(const char* p, std::size_t column) {
    const std::size_t opened = line_;
    scratch_.clear();
    for (;; ++p) {
      if (p == end_) throw CellFault{opened, column, "a quote is opened and never closed"};
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
      throw CellFault{opened, column, "text follows the closing quote"};
    }
    return trimmed(scratch_);
  }

  const char* begin_;
  const char* at_;
  const char* end_;
  std::size_t line_;
  char delimiter_;
  const char* day_ = nullptr;  // the last one that was read so, and what it was
  double days_ = 0.0;
  std::string scratch_;
};

}  // namespace vqmath63::host
