#include "host/data/csv_form.hpp"

#include <algorithm>

#include "host/data/csv.hpp"
#include "host/text.hpp"

namespace vqmath63::host {
namespace {

bool is_digit(char c) {
  return c >= '0' && c <= '9';
}

// Takes separators out of digits in groups of three: "12,345" at the front of a text. Nothing where
// the text has none, or other groups.
std::optional<std::string> without_separators(std::string_view text, std::string_view separators) {
  std::string digits;
  std::size_t at = text.starts_with('-') || text.starts_with('+') ? 1 : 0;
  digits += text.substr(0, at);
  std::size_t group = 0;
  std::size_t groups = 0;
  for (; at < text.size(); ++at) {
    if (is_digit(text[at])) {
      digits += text[at];
      ++group;
    } else if (separators.find(text[at]) != std::string_view::npos) {
      if (group == 0 || group > 3 || (groups > 0 && group != 3)) return std::nullopt;
      ++groups;
      group = 0;
    } else {
      break;
    }
  }
  if (groups == 0 || group != 3) return std::nullopt;
  return digits.append(text.substr(at));
}

// With an ordinary blank for each that breaks no line.
std::string with_plain_blanks(std::string_view text) {
  std::string plain(text);
  for (const std::string_view blank : {"\xC2\xA0", "\xE2\x80\xAF"}) {
    for (auto at = plain.find(blank); at != std::string::npos; at = plain.find(blank, at)) {
      plain.replace(at, blank.size(), " ");
    }
  }
  return plain;
}

// Looks through cells for what the comma or the point of a number is. In one like 1,234 it can part
// thousands too.
struct Commas {
  std::size_t decimal = 0;
  std::size_t either = 0;
  std::size_t points = 0;
  std::size_t either_point = 0;

  void look(std::string_view cell) {
    const auto comma = cell.find(',');
    const auto point = cell.find('.');
    if (comma == std::string_view::npos) {
      if (point == std::string_view::npos) return;
      const bool thousands = without_separators(cell, ".") && cell.front() != '0';
      if (parse_number(cell)) {
        ++(thousands ? either_point : points);
      } else if (thousands) {
        ++decimal;  // 1.234.567
      }
      return;
    }
    if (point != std::string_view::npos) {
      const auto plain = without_separators(cell, point < comma ? "." : ",");
      if (plain) ++(point < comma ? decimal : points);
      return;
    }
    const auto thousands = without_separators(cell, ",");
    std::string number = with_plain_blanks(cell);
    if (const auto plain = without_separators(number, " ")) number = *plain;
    number[number.find(',')] = '.';
    if (parse_number(number)) {
      ++(thousands && cell.front() != '0' ? either : decimal);
    } else if (thousands && parse_number(*thousands)) {
      ++points;  // 1,234,567
    }
  }
};

}  // namespace

char delimiter_of(std::string_view header) {
  constexpr std::string_view kDelimiters = ",;\t|";
  std::size_t counts[kDelimiters.size()] = {};
  bool inside = false;
  for (const char c : header) {
    if (c == '"') inside = !inside;
    if (c == '\n' && !inside) break;
    const auto which = kDelimiters.find(c);
    if (!inside && which != std::string_view::npos) ++counts[which];
  }
  return kDelimiters[static_cast<std::size_t>(std::max_element(counts, counts + 4) - counts)];
}

void find_decimal_mark(std::string_view rows, CsvForm& form) {
  constexpr std::size_t kTelling = std::size_t{1} << 16;
  Commas commas;
  bool quoted = false;
  std::size_t begin = 0;
  for (std::size_t i = 0; i <= rows.size(); ++i) {
    const char c = i < rows.size() ? rows[i] : '\n';
    if (c == '"') quoted = !quoted;
    if (quoted || (c != form.delimiter && c != '\n')) continue;
    std::string_view cell = trimmed(rows.substr(begin, i - begin));
    if (cell.size() > 1 && cell.front() == '"') cell = trimmed(cell.substr(1, cell.size() - 2));
    commas.look(cell);
    begin = i + 1;
    if (i > kTelling && (form.delimiter == ',' || commas.points + commas.decimal > 0)) break;
  }
  const bool sure = commas.points + commas.decimal > 0 || form.delimiter == ',';
  const bool by_delimiter = commas.either > 0 && commas.either_point == 0 && form.delimiter != ',';
  form.decimal_comma = commas.points == 0 && (commas.decimal > 0 || by_delimiter);
  const std::size_t doubtful = commas.either + (form.delimiter == ';' ? commas.either_point : 0);
  form.mark_is_from = sure           ? MarkIsFrom::kCells
                      : doubtful > 0 ? MarkIsFrom::kDelimiter
                                     : MarkIsFrom::kNothing;
}

std::string doubtful_mark(const CsvForm& form) {
  if (form.mark_is_from != MarkIsFrom::kDelimiter) return {};
  return form.decimal_comma ? "the commas in numbers are taken for decimal ones: cells like 1,234 "
                              "alone do not tell"
                            : "the points in numbers are taken for decimal ones: cells like 1.234 "
                              "alone do not tell";
}

bool is_missing(std::string_view text, const CsvForm& form) {
  if (text.empty()) return true;
  constexpr std::size_t kLongest = 4;
  if (text.size() <= kLongest) {
    for (const char* word : {"nan", "n/a", "na", "null", "none", "#n/a", "-", "--"}) {
      if (same_letters(text, word)) return true;
    }
  }
  return std::any_of(form.missing.begin(), form.missing.end(),
                     [&](const std::string& word) { return same_letters(text, word); });
}

std::optional<double> cell_number(std::string_view text, const CsvForm& form) {
  if (!form.decimal_comma) {
    if (const auto number = parse_number(text)) return number;
  }
  std::string number = with_plain_blanks(text);
  if (number.size() > 2 && number.front() == '(' && number.back() == ')') {
    number = "-" + number.substr(1, number.size() - 2);
  } else if (number.size() > 1 && number.back() == '-' && number.front() != '-') {
    number = "-" + number.substr(0, number.size() - 1);
  }
  const bool open = form.mark_is_from == MarkIsFrom::kNothing;
  const char* const separators = form.decimal_comma ? ". " : open ? " " : ", ";
  if (const auto plain = without_separators(number, separators)) number = *plain;
  if (form.decimal_comma) {
    if (number.find('.') != std::string::npos) return std::nullopt;
    const auto comma = number.find(',');
    if (comma != std::string::npos) number[comma] = '.';
  }
  return parse_number(number);
}

std::string decimal_remedy(std::string_view text, const CsvForm& form) {
  const auto reads = [&](bool comma) {
    return cell_number(text, {.delimiter = form.delimiter, .decimal_comma = comma}).has_value();
  };
  if (reads(true) && reads(false)) return " (--decimal point or comma says what its comma is)";
  if (reads(true)) return " (--decimal comma reads it)";
  return reads(false) ? " (--decimal point reads it)" : "";
}

}  // namespace vqmath63::host
