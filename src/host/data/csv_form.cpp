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

// Looks through cells for the comma of a number. In one like 1,234 it can stand for thousands too.
struct Commas {
  std::size_t decimal = 0;
  std::size_t either = 0;
  std::size_t points = 0;

  void look(std::string_view cell) {
    const auto comma = cell.find(',');
    const auto point = cell.find('.');
    if (comma == std::string_view::npos) {
      points += point != std::string_view::npos && parse_number(cell) ? 1U : 0U;
      return;
    }
    if (point != std::string_view::npos) {
      const auto plain = without_separators(cell, point < comma ? "." : ",");
      if (plain) ++(point < comma ? decimal : points);
      return;
    }
    std::string number(cell);
    number[comma] = '.';
    if (!parse_number(number)) return;
    const bool thousands = without_separators(cell, ",") && cell.front() != '0';
    ++(thousands ? either : decimal);
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

bool has_decimal_comma(std::string_view rows, char delimiter) {
  Commas commas;
  bool quoted = false;
  std::size_t begin = 0;
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const char c = rows[i];
    if (c == '"') quoted = !quoted;
    if (quoted || (c != delimiter && c != '\n')) continue;
    std::string_view cell = trimmed(rows.substr(begin, i - begin));
    if (cell.size() > 1 && cell.front() == '"') cell = trimmed(cell.substr(1, cell.size() - 2));
    commas.look(cell);
    begin = i + 1;
  }
  if (commas.points > 0) return false;
  return commas.decimal > 0 || (commas.either > 0 && delimiter != ',');
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
    const auto plain = without_separators(text, ",");
    return plain ? parse_number(*plain) : std::nullopt;
  }
  std::string number(text);
  if (const auto plain = without_separators(text, ". ")) number = *plain;
  if (number.find('.') != std::string::npos) return std::nullopt;
  const auto comma = number.find(',');
  if (comma != std::string::npos) number[comma] = '.';
  return parse_number(number);
}

}  // namespace vqmath63::host
