// Small helpers for texts.
#pragma once

#include <algorithm>
#include <numeric>
#include <string>
#include <string_view>
#include <vector>

#include "frame/text_case.hpp"

namespace vqmath63::host {

/// Without blanks around it.
inline std::string_view trimmed(std::string_view text) {
  constexpr std::string_view kBlanks = " \t\r";
  const auto from = text.find_first_not_of(kBlanks);
  if (from == std::string_view::npos) return {};
  return text.substr(from, text.find_last_not_of(kBlanks) - from + 1);
}

/// The pieces between separators, without blanks around them.
inline std::vector<std::string> split(std::string_view text, char separator) {
  std::vector<std::string> pieces;
  for (;;) {
    const auto at = text.find(separator);
    pieces.emplace_back(trimmed(text.substr(0, at)));
    if (at == std::string_view::npos) return pieces;
    text.remove_prefix(at + 1);
  }
}

/// The first 40 bytes in quotes.
inline std::string in_quotes(std::string_view text) {
  constexpr std::size_t kMost = 40;
  return "'" + std::string(text.substr(0, kMost)) + (text.size() > kMost ? "...'" : "'");
}

/// "a, b, c".
inline std::string listed(const std::vector<std::string>& words) {
  std::string list;
  for (const std::string& word : words) list += (list.empty() ? "" : ", ") + word;
  return list;
}

/// "1 row", "2 rows".
inline std::string counted(std::size_t count, const std::string& noun) {
  return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

/// The fewest letters to put in, take out or change that turn one word into another (Levenshtein).
inline std::size_t edits_between(std::string_view a, std::string_view b) {
  std::vector<std::size_t> row(b.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 0; i < a.size(); ++i) {
    std::size_t diagonal = row[0]++;
    for (std::size_t j = 0; j < b.size(); ++j) {
      const std::size_t changed = diagonal + (a[i] == b[j] ? 0 : 1);
      diagonal = row[j + 1];
      row[j + 1] = std::min({changed, diagonal + 1, row[j] + 1});
    }
  }
  return row.back();
}

/// The word that a misspelt one is likely meant to be, "; the nearest is WORD", or nothing.
inline std::string nearest_of(std::string_view misspelt, const std::vector<std::string>& words) {
  constexpr std::size_t kSlips = 3;  // and no more than a third of the letters
  std::string lower(misspelt);
  for (char& c : lower) c = lower_case(c);
  std::string nearest;
  std::size_t least = std::min(kSlips, misspelt.size() / 3) + 1;
  for (const std::string& word : words) {
    std::string known = word;
    for (char& c : known) c = lower_case(c);
    const std::size_t distance = edits_between(lower, known);
    if (distance >= least) continue;
    least = distance;
    nearest = word;
  }
  return nearest.empty() ? "" : "; the nearest is " + nearest;
}

/// Places that a UTF-8 text takes on a terminal, one a character.
inline std::size_t width_of(std::string_view text) {
  std::size_t width = 0;
  for (const char c : text) width += (static_cast<unsigned char>(c) & 0xC0) != 0x80 ? 1 : 0;
  return width;
}

/// Padded with blanks to `width`, the text at the right or the left.
inline std::string right_aligned(const std::string& text, std::size_t width) {
  const std::size_t had = width_of(text);
  return had < width ? std::string(width - had, ' ') + text : text;
}
inline std::string left_aligned(const std::string& text, std::size_t width) {
  const std::size_t had = width_of(text);
  return had < width ? text + std::string(width - had, ' ') : text;
}

}  // namespace vqmath63::host
