// The values of tests/data/calls.tsv as automation hosts hold them, on every platform.
#pragma once

#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "automation/types.hpp"

namespace vqmath63::calls {

/// What an argument or a result is: VT_R4, VT_R8, VT_I4, VT_BOOL, VT_DATE or VT_BSTR, or an array
/// of these. VT_EMPTY stands for no result, VT_VARIANT for whatever the value looks like.
struct Type {
  VARTYPE vt = VT_EMPTY;
  UINT rank = 0;
  bool by_ref = false;

  bool operator==(const Type&) const = default;
};

/// A variable of a host's, which clears itself.
struct Variable {
  VARIANT v{};
  Variable() = default;
  Variable(Variable&& other) noexcept : v(std::exchange(other.v, VARIANT{})) {}
  Variable(const Variable&) = delete;
  Variable& operator=(const Variable&) = delete;
  ~Variable() {
    if ((v.vt & VT_ARRAY) != 0 && v.parray == nullptr) v.vt = VT_EMPTY;
    VariantClear(&v);
  }
};

inline std::vector<std::string> parts(const std::string& text, char separator) {
  std::vector<std::string> all;
  std::istringstream in(text);
  for (std::string part; std::getline(in, part, separator);) {
    if (separator == '\t' || !part.empty()) all.push_back(part);
  }
  return all;
}

/// The rows of "[1 2; 3 4]".
inline std::vector<std::vector<std::string>> rows_of(const std::string& cell) {
  std::vector<std::vector<std::string>> rows;
  for (const std::string& row : parts(cell.substr(1, cell.size() - 2), ';')) {
    rows.push_back(parts(row, ' '));
  }
  return rows;
}

inline bool is_date(const std::string& cell) {
  return cell.size() == 10 && cell[4] == '-' && cell[7] == '-';
}

/// A number, or the days of a date since 1899-12-30.
inline double number_of(const std::string& cell) {
  if (!is_date(cell)) return std::strtod(cell.c_str(), nullptr);
  using namespace std::chrono;
  const auto days = [](int y, unsigned m, unsigned d) {
    return sys_days(year(y) / month(m) / day(d));
  };
  const auto part = [&](std::size_t at) {
    return static_cast<unsigned>(std::stoul(cell.substr(at)));
  };
  return static_cast<double>(
      (days(std::stoi(cell), part(5), part(8)) - days(1899, 12, 30)).count());
}

inline VARIANT scalar(const std::string& cell, VARTYPE vt) {
  const bool truth = cell == "True";
  if (vt == VT_VARIANT) {
    vt = cell[0] == '"' ? VT_BSTR : truth || cell == "False" ? VT_BOOL : VT_R8;
    if (is_date(cell)) vt = VT_DATE;
  }
  VARIANT v{};
  v.vt = vt;
  if (vt == VT_BSTR) {
    const std::basic_string<OLECHAR> wide(cell.begin() + 1, cell.end() - 1);
    v.bstrVal = SysAllocString(wide.c_str());
  } else if (vt == VT_BOOL) {
    v.boolVal = truth ? VARIANT_TRUE : VARIANT_FALSE;
  } else if (vt == VT_I4) {
    v.lVal = static_cast<LONG>(number_of(cell));
  } else if (vt == VT_R4) {
    v.fltVal = static_cast<float>(number_of(cell));
  } else {
    v.dblVal = number_of(cell);  // a date is one too
  }
  return v;
}

/// A variable of this type and value; for "[]" an array variable without an array, or an empty one
/// where the type is free.
inline void set(Variable& to, const std::string& cell, const Type& type) {
  if (cell[0] != '[') {
    to.v = scalar(cell, type.vt);
    return;
  }
  const auto rows = rows_of(cell);
  if (rows.empty() && type.vt == VT_VARIANT) return;
  to.v.vt = static_cast<VARTYPE>(VT_ARRAY | type.vt);
  to.v.parray = nullptr;
  if (rows.empty()) return;
  const auto columns = static_cast<ULONG>(rows[0].size());
  SAFEARRAYBOUND bounds[2] = {{static_cast<ULONG>(rows.size()), 1}, {columns, 1}};
  if (type.rank == 1) bounds[0].cElements = columns;
  to.v.parray = SafeArrayCreate(type.vt, type.rank, bounds);
  auto* place = static_cast<char*>(to.v.parray->pvData);
  for (ULONG c = 0; c < columns; ++c) {  // column after column
    for (const auto& row : rows) {
      const VARIANT element = scalar(row.at(c), type.vt);
      const void* from =
          type.vt == VT_VARIANT ? static_cast<const void*>(&element) : &element.llVal;
      std::memcpy(place, from, to.v.parray->cbElements);
      place += to.v.parray->cbElements;
    }
  }
}

/// As the table writes it.
inline std::string shown(const VARIANT& v) {
  char digits[40] = "";
  if (v.vt == VT_BSTR) {
    std::string text = "\"";
    for (UINT i = 0; i < SysStringLen(v.bstrVal); ++i) text += static_cast<char>(v.bstrVal[i]);
    return text + '"';
  }
  if (v.vt == VT_BOOL) {
    return v.boolVal == VARIANT_TRUE ? "True" : v.boolVal == VARIANT_FALSE ? "False" : "?";
  }
  if (v.vt == VT_I4) std::snprintf(digits, sizeof digits, "%ld", static_cast<long>(v.lVal));
  if (v.vt == VT_R4) std::snprintf(digits, sizeof digits, "%.17g", static_cast<double>(v.fltVal));
  if (v.vt == VT_R8 || v.vt == VT_DATE) std::snprintf(digits, sizeof digits, "%.17g", v.dblVal);
  if ((v.vt & VT_ARRAY) == 0) return digits;
  if (v.parray == nullptr) return "[]";
  const auto element_type = static_cast<VARTYPE>(v.vt & VT_TYPEMASK);
  const SAFEARRAY& held = *v.parray;
  const bool flat = held.cDims == 1;
  // The bounds of the last dimension come first.
  const ULONG columns = held.rgsabound[0].cElements;
  const ULONG rows = flat ? 1 : held.rgsabound[1].cElements;
  std::string text = "[";
  for (ULONG r = 0; r < rows; ++r) {
    for (ULONG c = 0; c < columns; ++c) {
      const char* from = static_cast<const char*>(held.pvData) + (c * rows + r) * held.cbElements;
      VARIANT element{};
      element.vt = element_type;
      std::memcpy(element_type == VT_VARIANT ? static_cast<void*>(&element) : &element.llVal, from,
                  held.cbElements);
      text += (c > 0 ? " " : r > 0 ? "; " : "") + shown(element);
    }
  }
  for (UINT d = 0; d < held.cDims; ++d) {
    if (held.rgsabound[d].lLbound != 1)
      text += " from " + std::to_string(held.rgsabound[d].lLbound);
  }
  return text + "]";
}

/// The types of a value and of the elements of an array.
inline std::string types_of(const VARIANT& v) {
  std::string text = std::to_string(v.vt);
  if (v.vt != (VT_ARRAY | VT_VARIANT) || v.parray == nullptr) return text;
  std::size_t count = 1;
  for (UINT d = 0; d < v.parray->cDims; ++d) count *= v.parray->rgsabound[d].cElements;
  const auto* elements = static_cast<const VARIANT*>(v.parray->pvData);
  for (std::size_t i = 0; i < count; ++i) text += ' ' + types_of(elements[i]);
  return text;
}

/// Whether two values as the table writes them are the same, numbers to within this part of them.
inline bool same(const std::string& got, const std::string& want, double within) {
  if (got == want) return true;
  if (got.empty() || want.empty()) return false;
  if (want[0] == '"') {
    const std::size_t star = want.size() - 2;
    return want[star] == '*' && got.compare(0, star, want, 0, star) == 0;
  }
  if (want[0] == '[') {
    const auto left = got[0] == '[' ? rows_of(got) : decltype(rows_of(got)){};
    const auto right = rows_of(want);
    if (left.size() != right.size()) return false;
    for (std::size_t r = 0; r < right.size(); ++r) {
      if (left[r].size() != right[r].size()) return false;
      for (std::size_t c = 0; c < right[r].size(); ++c) {
        if (!same(left[r][c], right[r][c], within)) return false;
      }
    }
    return true;
  }
  char* end = nullptr;
  const double number = std::strtod(got.c_str(), &end);
  if (*end != '\0' || want == "True" || want == "False") return false;
  const double wanted = number_of(want);
  return std::fabs(number - wanted) <= within * std::fabs(wanted);
}

}  // namespace vqmath63::calls
