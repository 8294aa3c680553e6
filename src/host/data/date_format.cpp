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

constexpr const char* kMonths[] = {"january",   "february", "march",    "april",
                                   "may",       "june",     "july",     "august",
                                   "september", "october",  "november", "december"};

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

// Takes a month's name, or its first letters, off the front.
bool take_month_name(std::string_view& text, std::size_t letters, int& month) {
  for (int i = 0; i < 12; ++i) {
    const std::string_view name = std::string_view(kMonths[i]).substr(0, letters);
    if (!same_letters(text.substr(0, name.size()), name)) continue;
    month = i + 1;
    text.remove_prefix(name.size());
    return true;
  }
  return false;
}

// A time of day as ISO has it, of one that may have one digit for its hour, and AM or PM behind it;
// what it is not stays as it is.
std::string iso_time(std::string_view text) {
  std::string time(text);
  if (text.find(':') == 1) time.insert(0, "0");
  const std::size_t end = time.find_last_not_of(" aApPmM");
  if (end == std::string::npos || end < 1) return time;
  const std::string_view half = trimmed(std::string_view(time).substr(end + 1));
  const bool after_noon = same_letters(half, "pm");
  int hour = 0;
  std::string_view digits = std::string_view(time).substr(0, 2);
  if ((!after_noon && !same_letters(half, "am")) || !take_digits(digits, 2, hour)) return time;
  if (hour < 1 || hour > 12) return time;
  hour = hour % 12 + (after_noon ? 12 : 0);
  return (hour < 10 ? "0" : "") + std::to_string(hour) + time.substr(2, end - 1);
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
        if (count < 3) return take_digits(text, 2, month);
        return take_month_name(text, count == 3 ? count : std::string_view::npos, month);
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
  const auto is_part = [](char c) { return c == 'Y' || c == 'M' || c == 'D'; };
  bool beside = false;  // another part, with nothing between them
  for (std::string_view pattern = date_; !pattern.empty();) {
    const char letter = pattern.front();
    if (is_part(letter)) {
      const std::size_t count = run_of(pattern);
      const std::size_t had = text.size();
      if (!parts.take(letter, count, text)) return std::nullopt;
      pattern.remove_prefix(count);
      const bool next = !pattern.empty() && is_part(pattern.front());
      // 2020111 may be the first of November, or the eleventh of January.
      if ((beside || next) && count != 4 && had - text.size() < count) return std::nullopt;
      beside = next;
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
    iso += " " + iso_time(trimmed(text.substr(1)));
  }
  return parse_moment(iso);
}

std::optional<DateFormat> date_format_option(const std::optional<std::string>& pattern) {
  return pattern ? std::optional<DateFormat>(*pattern) : std::nullopt;
}

std::optional<double> moment_option(const std::optional<std::string>& text, const char* option,
                                    const std::optional<DateFormat>& format) {
  if (!text) return std::nullopt;
  if (const auto moment = parse_moment(*text)) return moment;
  if (!format) throw UsageError(std::string(option) + ": " + why_no_moment(*text));
  if (const auto moment = format->read(*text)) return moment;
  throw UsageError(std::string(option) + ": " + in_quotes(*text) +
                   " is not a date as --date-format " + format->pattern() + " or ISO has it");
}

std::string date_formats_of(std::string_view text) {
  std::string found;
  for (const char* pattern :
       {"DD/MM/YYYY",   "MM/DD/YYYY", "DD.MM.YYYY", "DD-MM-YYYY",  "MM-DD-YYYY", "YYYY/MM/DD",
        "YYYY.MM.DD",   "YYYYMMDD",   "YYYYMM",     "DD-MMM-YYYY", "DD-MMM-YY",  "DD MMM YYYY",
        "DD MMMM YYYY", "YYYY-MM",    "MMM-YYYY",   "MMM-YY",      "MMM YYYY",   "MMMM YYYY",
        "MMM YY",       "MM/YYYY",    "MM-YYYY",    "DD/MM/YY",    "MM/DD/YY",   "DD.MM.YY"}) {
    if (!DateFormat(pattern).read(text)) continue;
    found += (found.empty() ? "" : " or ") + std::string(pattern);
  }
  return found;
}

}  // namespace vqmath63::host
