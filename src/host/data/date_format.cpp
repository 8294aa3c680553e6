#include "host/data/date_format.hpp"

#include <algorithm>
#include <chrono>
#include <cmath>

#include "host/data/csv.hpp"
#include "host/data/moment.hpp"
#include "host/failure.hpp"
#include "host/text.hpp"

namespace vqmath63::host {
namespace {

constexpr const char* kMonths[] = {"jan", "feb", "mar", "apr", "may", "jun",
                                   "jul", "aug", "sep", "oct", "nov", "dec"};

// Takes at least one and at most `most` digits off the front.
bool take_digits(std::string_view& text, std::size_t most, int& number) {
  std::size_t count = 0;
  number = 0;
  for (; count < most && count < text.size() && text[count] >= '0' && text[count] <= '9'; ++count) {
    number = number * 10 + (text[count] - '0');
  }
  text.remove_prefix(count);
  return count > 0;
}

bool take_month_name(std::string_view& text, int& month) {
  constexpr std::size_t kLetters = 3;
  for (int i = 0; i < 12; ++i) {
    if (!same_letters(text.substr(0, kLetters), kMonths[i])) continue;
    month = i + 1;
    text.remove_prefix(kLetters);
    return true;
  }
  return false;
}

// How often a pattern repeats its first letter.
std::size_t run_of(std::string_view pattern) {
  return std::min(pattern.find_first_not_of(pattern.front()), pattern.size());
}

// The parts of a date as a pattern finds them.
struct Parts {
  int year = -1;
  int month = 1;
  int day = 1;

  // Takes what `count` letters of a pattern ask for off the text.
  bool take(char letter, std::size_t count, std::string_view& text) {
    switch (letter) {
      case 'Y':
        if (!take_digits(text, count, year)) return false;
        if (count == 2) year += year < 70 ? 2000 : 1900;
        return true;
      case 'M':
        return count == 3 ? take_month_name(text, month) : take_digits(text, 2, month);
      default:
        return take_digits(text, 2, day);
    }
  }
};

}  // namespace

DateFormat::DateFormat(std::string pattern)
    : pattern_(std::move(pattern)), serial_(same_letters(pattern_, "serial")) {
  if (serial_) return;
  const std::size_t time = pattern_.find_first_of("hms");
  date_ = pattern_.substr(0, time);
  if (time != std::string::npos && !date_.empty()) date_.pop_back();  // what stands between them
  const auto has = [&](const char* letters) { return date_.find(letters) != std::string::npos; };
  if (!has("YY") || !has("M")) {
    throw UsageError("--date-format " + in_quotes(pattern_) +
                     ": a pattern such as DD/MM/YYYY, D-MMM-YY or YYYYMMDD is wanted, or serial");
  }
}

std::optional<double> DateFormat::read(std::string_view text) const {
  if (serial_) {
    const auto number = parse_number(text);
    constexpr double kFirst = -657434.0;  // 0100-01-01
    constexpr double kEnd = 2958466.0;    // 10000-01-01
    return number && *number >= kFirst && *number < kEnd ? number : std::nullopt;
  }
  Parts parts;
  for (std::string_view pattern = date_; !pattern.empty();) {
    const char letter = pattern.front();
    if (letter == 'Y' || letter == 'M' || letter == 'D') {
      const std::size_t count = run_of(pattern);
      if (!parts.take(letter, count, text)) return std::nullopt;
      pattern.remove_prefix(count);
    } else {
      if (!text.starts_with(letter)) return std::nullopt;
      text.remove_prefix(1);
      pattern.remove_prefix(1);
    }
  }
  // The day and the time of day as ISO has them are read where those are.
  if (parts.year < 0 || parts.year > 9999 || parts.month > 12 || parts.day > 31) {
    return std::nullopt;
  }
  const auto digits = [](int number, std::size_t width) {
    const std::string plain = std::to_string(number);
    return std::string(width - std::min(width, plain.size()), '0') + plain;
  };
  std::string iso =
      digits(parts.year, 4) + "-" + digits(parts.month, 2) + "-" + digits(parts.day, 2);
  if (!text.empty()) {
    if (text.front() != ' ' && text.front() != 'T') return std::nullopt;
    text = trimmed(text.substr(1));
    iso += text.find(':') == 1 ? " 0" : " ";  // an hour of one digit
    iso += text;
  }
  return parse_moment(iso);
}

std::string date_formats_of(std::string_view text) {
  std::string found;
  for (const char* pattern :
       {"DD/MM/YYYY", "MM/DD/YYYY", "DD.MM.YYYY", "DD-MM-YYYY", "MM-DD-YYYY", "YYYY/MM/DD",
        "YYYY.MM.DD", "YYYYMMDD", "DD-MMM-YYYY", "DD-MMM-YY", "DD MMM YYYY", "YYYY-MM", "MMM-YYYY",
        "MMM-YY", "MM/YYYY", "DD/MM/YY", "MM/DD/YY", "DD.MM.YY"}) {
    if (!DateFormat(pattern).read(text)) continue;
    found += (found.empty() ? "" : " or ") + std::string(pattern);
  }
  return found;
}

}  // namespace vqmath63::host
