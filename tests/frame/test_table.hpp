// Tables of cases in tests/data: one row a line, fields between tabs, read by their headings.
#pragma once

#if __has_include(<gtest/gtest.h>)
#include <gtest/gtest.h>
#endif

#include <algorithm>
#include <charconv>
#include <fstream>
#include <functional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace vqmath63 {

/// A number in decimal or, after 0x, hexadecimal digits; also inf and nan.
template <class T = double>
T number(std::string_view text) {
  T value{};
  std::from_chars_result read{};
  const char* const end = text.data() + text.size();
  const std::size_t sign = text.starts_with('-') ? 1 : 0;
  if constexpr (std::is_integral_v<T>) {
    read = std::from_chars(text.data(), end, value);
  } else if (text.substr(sign).starts_with("0x")) {
    read = std::from_chars(text.data() + sign + 2, end, value, std::chars_format::hex);
    if (sign != 0) value = -value;
  } else {
    read = std::from_chars(text.data(), end, value);
  }
  if (read.ec != std::errc() || read.ptr != end) {
    throw std::invalid_argument("no number: " + std::string(text));
  }
  return value;
}

/// The parts between the separators; none of an empty text.
inline std::vector<std::string> split(const std::string& text, char separator) {
  std::vector<std::string> parts;
  std::istringstream in(text);
  for (std::string part; std::getline(in, part, separator);) parts.push_back(part);
  return parts;
}

template <class T>
inline constexpr bool kIsList = false;
template <class T>
inline constexpr bool kIsList<std::vector<T>> = true;

/// A field is read as what is made of it: a text, a character, a number, yes or no, or a list of
/// these between blanks, where 1*36 is 36 times 1; between lists in a list there are semicolons.
struct Field {
  std::string text;

  template <class T>
  requires(std::is_same_v<T, std::string> || std::is_convertible_v<bool, T> || kIsList<T>)
  operator T() const {
    if constexpr (std::is_same_v<T, std::string>) {
      return text;
    } else if constexpr (std::is_same_v<T, char>) {
      return text.at(0);
    } else if constexpr (std::is_arithmetic_v<T> && !std::is_same_v<T, bool>) {
      return number<T>(text);
    } else if constexpr (kIsList<T>) {
      constexpr bool kOfLists = kIsList<typename T::value_type>;
      T list;
      for (const std::string& part : split(text, kOfLists ? ';' : ' ')) {
        if (part.empty()) continue;
        const std::size_t star = kOfLists ? std::string::npos : part.find('*');
        const std::size_t count =
            star == std::string::npos ? 1 : number<std::size_t>(part.substr(star + 1));
        const typename T::value_type element = Field{part.substr(0, star)};
        list.insert(list.end(), count, element);
      }
      return list;
    } else {
      if (text != "yes" && text != "no") throw std::invalid_argument("neither yes nor no: " + text);
      return text == "yes";
    }
  }
};

/// A row of a table.
struct TableRow {
  std::string file;
  int line;  ///< of the file
  std::vector<std::string> headings, fields;

  Field operator[](std::string_view heading) const {
    const auto found = std::find(headings.begin(), headings.end(), heading);
    if (found == headings.end()) throw std::invalid_argument("no column " + std::string(heading));
    return {fields[static_cast<std::size_t>(found - headings.begin())]};
  }
};

/// The rows of the table behind the line "[table]" of a file, or of all of a file without such a
/// line. Headings come first; lines with a # are comments, and blank lines mean nothing.
inline std::vector<TableRow> table_rows(const std::string& file, const std::string& table = "") {
  std::vector<TableRow> rows;
  std::vector<std::string> headings;
  std::ifstream in(VQ_TEST_DATA "/" + file);
  std::string current;
  int at = 0;
  for (std::string line; std::getline(in, line);) {
    ++at;
    if (line.empty() || line[0] == '#') continue;
    if (line[0] == '[') current = line.substr(1, line.size() - 2);
    if (line[0] == '[' || current != table) continue;
    std::vector<std::string> fields = split(line, '\t');
    if (line.ends_with('\t')) fields.emplace_back();
    if (headings.empty()) {
      headings = fields;
    } else if (fields.size() == headings.size()) {
      rows.push_back({file, at, headings, fields});
    } else {
      throw std::invalid_argument("not a row: " + line);
    }
  }
  return rows;
}

#ifdef GTEST_TEST
/// Checks every row of a table, of which there have to be `count`; a failure tells its file, line
/// and first field.
inline void each_row(const std::string& file, const std::string& table, std::size_t count,
                     const std::function<void(const TableRow&)>& check) {
  const std::vector<TableRow> rows = table_rows(file, table);
  EXPECT_EQ(rows.size(), count) << file << " [" << table << "]";
  for (const TableRow& row : rows) {
    const ::testing::ScopedTrace trace(row.file.c_str(), row.line, row.fields[0]);
    try {
      check(row);
    } catch (const std::exception& failure) {
      ADD_FAILURE() << failure.what();
    }
  }
}
#endif

}  // namespace vqmath63
