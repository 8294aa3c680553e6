#include "host/data/values.hpp"

#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <numeric>

#include "host/data/csv.hpp"
#include "host/data/moment.hpp"
#include "host/data/table.hpp"
#include "host/text.hpp"

namespace vqmath63::host {
namespace {

using Rows = std::vector<std::vector<std::string>>;

[[noreturn]] void refuse(const std::string& what, const std::string& problem) {
  throw UsageError(what + ": " + problem);
}

std::optional<bool> parse_boolean(std::string_view text) {
  if (same_letters(text, "true")) return true;
  if (same_letters(text, "false")) return false;
  if (const auto number = parse_number(text)) return *number != 0.0;
  return std::nullopt;
}

// A scalar of type `vt` as a number; of a date its day count, of a Boolean -1 or 0.
double scalar_from_text(VARTYPE vt, const std::string& text, const std::string& what) {
  if (vt == VT_BOOL) {
    const auto flag = parse_boolean(text);
    if (!flag) refuse(what, in_quotes(text) + " is neither true nor false");
    return *flag ? -1.0 : 0.0;
  }
  if (const auto number = parse_number(text)) return *number;
  if (const auto moment = parse_moment(text)) return *moment;
  if (vt == VT_DATE || looks_like_moment(text)) refuse(what, why_no_moment(text));
  refuse(what, in_quotes(text) + " is not a number");
}

Value scalar_value(VARTYPE vt, const std::string& text, const std::string& what) {
  if (vt == VT_BSTR) return Value::text(text);
  const double number = scalar_from_text(vt, text, what);
  switch (vt) {
    case VT_BOOL:
      return Value::boolean(number != 0.0);
    case VT_DATE:
      return Value::date(number);
    case VT_I4:
      if (std::trunc(number) == number && std::fabs(number) <= 2147483647.0) {
        return Value::whole_number(static_cast<std::int32_t>(number));
      }
      return Value::number(number);  // the component rounds it, or says that it does not fit
    default:
      return Value::number(number);
  }
}

// Stores a number as element `at` of an array of type `vt`.
void store(void* data, std::size_t at, VARTYPE vt, double number, const std::string& what) {
  switch (vt) {
    case VT_R4:
      if (std::isfinite(number) && std::fabs(number) > std::numeric_limits<float>::max()) {
        refuse(what, number_text(number) + " is too large for a Single");
      }
      static_cast<float*>(data)[at] = static_cast<float>(number);
      break;
    case VT_I4:
      if (std::trunc(number) != number || std::fabs(number) > 2147483647.0) {
        refuse(what, number_text(number) + " is not a Long");
      }
      static_cast<std::int32_t*>(data)[at] = static_cast<std::int32_t>(number);
      break;
    case VT_BOOL:
      static_cast<VARIANT_BOOL*>(data)[at] = number != 0.0 ? VARIANT_TRUE : VARIANT_FALSE;
      break;
    case VT_DATE:
      static_cast<double*>(data)[at] = automation_date(number);
      break;
    default:
      static_cast<double*>(data)[at] = number;
      break;
  }
}

// Takes a list apart at its own commas: "[a, [b, c]]" into "a" and "[b, c]".
std::vector<std::string> list_elements(const std::string& text, const std::string& what) {
  const std::string_view body = trimmed(text);
  if (body.size() < 2 || body.front() != '[' || body.back() != ']') {
    refuse(what, in_quotes(text) + " is not a list such as [1, 2, 3] nor a column @file.csv:name");
  }
  std::vector<std::string> elements;
  std::string_view inside = trimmed(body.substr(1, body.size() - 2));
  if (inside.empty()) return elements;
  int depth = 0;
  std::size_t from = 0;
  for (std::size_t i = 0; i <= inside.size(); ++i) {
    if (i < inside.size() && inside[i] == '[') ++depth;
    if (i < inside.size() && inside[i] == ']') --depth;
    if (depth < 0) break;
    if (i < inside.size() && (inside[i] != ',' || depth > 0)) continue;
    elements.emplace_back(trimmed(inside.substr(from, i - from)));
    if (elements.back().empty()) refuse(what, "an element of " + in_quotes(text) + " is missing");
    from = i + 1;
  }
  if (depth != 0) refuse(what, "the brackets of " + in_quotes(text) + " do not match");
  return elements;
}

Value array_from_list(const DeclaredType& type, const std::string& text, const std::string& what) {
  Rows rows;
  for (std::string& element : list_elements(text, what)) {
    if (type.rank == 2) {
      rows.push_back(list_elements(element, what));
      if (rows.back().size() != rows.front().size()) {
        refuse(what, "its rows differ in length");
      }
    } else {
      rows.push_back({std::move(element)});
    }
  }
  const std::size_t columns = rows.empty() ? 1 : rows.front().size();
  if (columns == 0) refuse(what, "its rows are empty");
  ArrayOwner array(new_array(type.vt, rows.size(), type.rank == 2 ? columns : 0));
  for (std::size_t i = 0; i < rows.size(); ++i) {
    for (std::size_t j = 0; j < columns; ++j) {
      const std::size_t at = i + j * rows.size();
      if (type.vt == VT_BSTR) {
        const auto wide = utf16(rows[i][j]);
        static_cast<BSTR*>(array.get()->pvData)[at] =
            SysAllocStringLen(wide.data(), static_cast<UINT>(wide.size()));
      } else {
        store(array.get()->pvData, at, type.vt, scalar_from_text(type.vt, rows[i][j], what), what);
      }
    }
  }
  return Value::array(type.vt, array.release());
}

Value array_from_file(const DeclaredType& type, const std::string& text, const std::string& what,
                      std::optional<double> empty_as) {
  if (type.vt == VT_BSTR) refuse(what, "a file's column cannot stand for an array of String");
  const auto colon = text.rfind(':');
  const CsvFile file(text.substr(1, colon == std::string::npos ? colon : colon - 1));
  std::vector<std::size_t> chosen;
  if (colon != std::string::npos) {
    for (const std::string& name : split(std::string_view(text).substr(colon + 1), ',')) {
      chosen.push_back(file.column(name));
    }
  } else {
    chosen.resize(file.headers().size());
    std::iota(chosen.begin(), chosen.end(), std::size_t{0});
  }
  if (type.rank == 1 && chosen.size() != 1) {
    refuse(what, "one column is wanted, as in @" + file.path() + ":" + file.headers().back() +
                     "; " + std::to_string(chosen.size()) + " are given");
  }
  CsvReading reading;
  reading.empty_as = empty_as;
  reading.wants.assign(file.headers().size(), Want::kNothing);
  for (const std::size_t c : chosen) reading.wants[c] = Want::kNumbersOrDates;
  const CsvTable table = file.read(reading);
  const std::size_t rows = table.lines.size();
  ArrayOwner array(new_array(type.vt, rows, type.rank == 2 ? chosen.size() : 0));
  for (std::size_t c = 0; c < chosen.size(); ++c) {
    const std::vector<double>& values = table.columns[chosen[c]].values;
    for (std::size_t i = 0; i < rows; ++i) {
      store(array.get()->pvData, i + c * rows, type.vt, values[i], what);
    }
  }
  return Value::array(type.vt, array.release());
}

template <class T>
std::string digits(T value) {
  if (std::isnan(value)) return "NaN";
  char text[40];
  return {text, std::to_chars(text, text + sizeof text, value).ptr};
}

template <class T>
std::string plain_digits(T value) {
  constexpr T kLeast{1e-4F};
  constexpr T kMost{1e9F};
  const T size = std::fabs(value);
  if (!(size >= kLeast && size < kMost)) return digits(value);
  char text[64];
  return {text, std::to_chars(text, text + sizeof text, value, std::chars_format::fixed).ptr};
}

std::string date_text(double automation_date) {
  const double days = day_count(automation_date);
  constexpr double kFirst = -657434.0;  // 0100-01-01
  constexpr double kEnd = 2958466.0;    // 10000-01-01
  return days >= kFirst && days < kEnd ? exact_moment_text(days) : digits(automation_date);
}

std::string element_text(VARTYPE vt, const void* place, bool all) {
  switch (vt) {
    case VT_EMPTY:
      return "(empty)";
    case VT_NULL:
      return "(null)";
    case VT_R4:
      return digits(*static_cast<const float*>(place));
    case VT_R8:
      return digits(*static_cast<const double*>(place));
    case VT_I2:
      return digits(*static_cast<const std::int16_t*>(place));
    case VT_I4:
      return digits(*static_cast<const std::int32_t*>(place));
    case VT_BOOL:
      return *static_cast<const VARIANT_BOOL*>(place) != 0 ? "True" : "False";
    case VT_DATE:
      return date_text(*static_cast<const double*>(place));
    case VT_BSTR: {
      const BSTR text = *static_cast<const BSTR*>(place);
      return text == nullptr ? std::string() : utf8({text, SysStringLen(text)});
    }
    case VT_VARIANT:
      return value_text(*static_cast<const VARIANT*>(place), all);
    default:
      return "(a value of type " + std::to_string(vt) + ")";
  }
}

// The indices from 0 that are shown of `count`: all, or the first and the last ones.
std::vector<std::size_t> shown_of(std::size_t count, std::size_t most, bool all) {
  std::vector<std::size_t> shown;
  for (std::size_t i = 0; i < count; ++i) {
    if (!all && count > most && i == most / 2) i = count - most / 2;
    shown.push_back(i);
  }
  return shown;
}

std::string bounds_text(SAFEARRAY* array, UINT dimension) {
  LONG lower = 0;
  LONG upper = 0;
  SafeArrayGetLBound(array, dimension, &lower);
  SafeArrayGetUBound(array, dimension, &upper);
  return std::to_string(lower) + " to " + std::to_string(upper);
}

template <class ElementText>
std::string vector_text(SAFEARRAY* array, const ElementText& text_at, bool all) {
  constexpr std::size_t kMost = 20;
  const std::size_t count = array->rgsabound[0].cElements;
  std::string text = array->rgsabound[0].lLbound == 1 ? "[" : bounds_text(array, 1) + ": [";
  std::size_t next = 0;
  for (const std::size_t i : shown_of(count, kMost, all)) {
    if (i > 0) text += i == next ? ", " : ", ..., ";
    text += text_at(i);
    next = i + 1;
  }
  text += "]";
  if (!all && count > kMost) text += " (" + std::to_string(count) + " elements)";
  return text;
}

template <class ElementText>
std::string matrix_text(SAFEARRAY* array, const ElementText& text_at, bool all) {
  constexpr std::size_t kMost = 40;
  const std::size_t rows = array->rgsabound[1].cElements;
  const std::size_t columns = array->rgsabound[0].cElements;
  const auto shown = shown_of(rows, kMost, all);
  AlignedLines lines(std::vector<Align>(columns, Align::kRight));
  const auto row_texts = [&](std::size_t i) {
    Texts texts;
    for (std::size_t j = 0; j < columns; ++j) texts.push_back(text_at(i + j * rows));
    return texts;
  };
  for (const std::size_t i : shown) lines.widen(row_texts(i));
  std::string text = "rows " + bounds_text(array, 1) + ", columns " + bounds_text(array, 2);
  std::size_t next = 0;
  for (const std::size_t i : shown) {
    if (i != next) text += "\n  ... " + counted(i - next, "row") + " more ...";
    text += "\n  " + lines.line(row_texts(i));
    next = i + 1;
  }
  return text;
}

std::string array_text(VARTYPE vt, SAFEARRAY* array, bool all) {
  if (array == nullptr) return "(no array)";
  const std::size_t size = SafeArrayGetElemsize(array);
  const auto text_at = [&](std::size_t i) {
    return element_text(vt, static_cast<const BYTE*>(array->pvData) + i * size, all);
  };
  switch (SafeArrayGetDim(array)) {
    case 1:
      return vector_text(array, text_at, all);
    case 2:
      return matrix_text(array, text_at, all);
    default:
      return "(an array of " + std::to_string(array->cDims) + " dimensions)";
  }
}

}  // namespace

Value value_from_text(const DeclaredType& type, const std::string& text, const std::string& what,
                      std::optional<double> empty_as) {
  if (type.rank == 0) return scalar_value(type.vt, text, what);
  if (text.starts_with("@")) return array_from_file(type, text, what, empty_as);
  return array_from_list(type, text, what);
}

std::string value_text(const VARIANT& value, bool all) {
  constexpr VARTYPE kFlags = VT_ARRAY | VT_BYREF;
  const auto vt = static_cast<VARTYPE>(value.vt & ~unsigned{kFlags});
  const bool by_ref = (value.vt & VT_BYREF) != 0;
  if ((value.vt & VT_ARRAY) != 0) {
    return array_text(vt, by_ref ? *value.pparray : value.parray, all);
  }
  return element_text(vt, by_ref ? value.byref : &value.llVal, all);
}

std::string number_text(double value) {
  return digits(value);
}
std::string number_text(float value) {
  return digits(value);
}
std::string plain_text(double value) {
  return plain_digits(value);
}
std::string plain_text(float value) {
  return plain_digits(value);
}

}  // namespace vqmath63::host
