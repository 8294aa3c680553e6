#include "automation/script_object.hpp"

#include <algorithm>
#include <cmath>
#include <limits>
#include <span>
#include <vector>

#include "automation/elements.hpp"
#include "automation/host_object.hpp"
#include "automation/text.hpp"
#include "elementary/whole.hpp"

namespace vqmath63::automation {
namespace {

Utf16 number_name(std::int64_t i) {
  return utf16(std::to_string(i));
}

// Length of an array object, or -1 when it has none.
std::int64_t length_of(IDispatch* object) {
  constexpr double kBeyondAll = 1e15;
  Variant length;
  VARIANT number{};
  if (FAILED(read_property(object, VQ_OLESTR("length"), length)) ||
      FAILED(change_type(length, VT_R8, 0, number)) || !(number.dblVal >= 0.0)) {
    return -1;
  }
  return static_cast<std::int64_t>(elementary::nearest_whole(std::min(number.dblVal, kBeyondAll)));
}

// No script language keeps more elements than these.
constexpr std::int64_t kMostElements = std::int64_t{1} << 27;

Conversion too_large(std::int64_t count) {
  return {E_OUTOFMEMORY, "; it is too large to convert: its length is " + std::to_string(count)};
}

// A script gives an array any length at no cost, and each missing element costs us a call of the
// script. So missing elements are passed over only while they are no more than the others and
// these.
class Gaps {
 public:
  void note(bool missing) { balance_ += missing ? 1 : -1; }
  bool too_many() const { return balance_ > kMost; }
  Conversion refusal(std::int64_t count) const {
    return {E_OUTOFMEMORY,
            "; its length is " + std::to_string(count) + ", and nearly all of it is missing"};
  }

 private:
  static constexpr std::int64_t kMost = std::int64_t{1} << 21;
  std::int64_t balance_ = 0;
};

bool is_missing(const VARIANT& value) {
  return value.vt == VT_EMPTY || value.vt == VT_NULL;
}

// What a script's array is read into.
struct Target {
  VARTYPE type;
  LCID locale;
  HostNumbers* numbers;
};

// A hole in a script's array has no name to be found by; it reads as Empty.
HRESULT read_element(IDispatch* source, const OLECHAR* name, Variant& out) {
  const HRESULT read = read_property(source, name, out);
  return read == DISP_E_UNKNOWNNAME || read == DISP_E_MEMBERNOTFOUND ? S_OK : read;
}

// Converts an element into its place, and into the host's own numbers behind those before it.
HRESULT convert(const Variant& element, const Target& target, void* place) {
  double own = 0.0;
  if (!is_missing(element)) {
    const HRESULT result = convert_element(VT_VARIANT, &element, target.type, place, target.locale);
    if (FAILED(result)) return result;
    VARIANT number{};
    const bool known =
        target.numbers != nullptr && SUCCEEDED(change_type(element, VT_R8, target.locale, number));
    own = known ? number.dblVal : std::numeric_limits<double>::quiet_NaN();
  }
  if (target.numbers != nullptr) target.numbers->push_back(own);
  return S_OK;
}

IDispatch* object_in(const VARIANT& value) {
  return value.vt == VT_DISPATCH ? value.pdispVal : nullptr;
}

// An array of a script that is to be read: the only one, or a row of a table.
struct Row {
  IDispatch* source = nullptr;  // null for a missing row
  std::int64_t length = 0;
};

// Reads the rows column by column, as an array keeps them: what has been taken in grows with what
// the script has given.
Conversion read_columns(std::span<const Row> rows, std::int64_t columns, const Target& target,
                        bool table, SAFEARRAY* made) {
  const std::size_t size = SafeArrayGetElemsize(made);
  auto* out = static_cast<std::byte*>(made->pvData);
  Gaps gaps;
  for (std::int64_t c = 0; c < columns; ++c) {
    const Utf16 name = number_name(c);
    for (std::size_t r = 0; r < rows.size(); ++r, out += size) {
      Variant element;
      const auto told = [&](const char* problem) {
        return "; its element (" + (table ? std::to_string(r) + ", " : "") + std::to_string(c) +
               ") cannot be " + problem;
      };
      HRESULT result = S_OK;
      if (c < rows[r].length) result = read_element(rows[r].source, name.c_str(), element);
      if (FAILED(result)) return {result, told("read")};
      result = convert(element, target, out);
      if (FAILED(result)) return {result, told("converted")};
      gaps.note(is_missing(element));
      if (gaps.too_many()) return gaps.refusal(columns);
    }
  }
  return {};
}

// The rows of a table, which `holders` keep alive.
Conversion measure_rows(IDispatch* source, std::int64_t count, std::vector<Variant>& holders,
                        std::vector<Row>& rows) {
  Gaps gaps;
  for (std::int64_t r = 0; r < count; ++r) {
    const auto told = [&] { return "; its row (" + std::to_string(r) + ")"; };
    Variant& value = holders.emplace_back();
    const HRESULT read = read_element(source, number_name(r).c_str(), value);
    if (FAILED(read)) return {read, told() + " cannot be read"};
    Row& row = rows.emplace_back();
    gaps.note(is_missing(value));
    if (gaps.too_many()) return gaps.refusal(count);
    if (is_missing(value)) continue;
    row.source = object_in(value);
    row.length = row.source == nullptr ? -1 : length_of(row.source);
    if (row.length < 0) return {DISP_E_TYPEMISMATCH, told() + " is no array"};
  }
  return {};
}

// The element at (row, column) of a script's array of rows, or element `row` of a plain one.
HRESULT write_element(IDispatch* target, std::int64_t row, std::int64_t column, bool rows,
                      VARIANT& value) {
  if (!rows) return write_property(target, number_name(row).c_str(), value);
  Variant held;
  const HRESULT found = read_property(target, number_name(row).c_str(), held);
  if (FAILED(found)) return found;
  if (object_in(held) == nullptr) return DISP_E_TYPEMISMATCH;
  return write_property(object_in(held), number_name(column).c_str(), value);
}

HRESULT push(IDispatch* target, VARIANT& value) {
  return call_method(target, VQ_OLESTR("push"), {&value, 1}, nullptr);
}

HRESULT set_length(IDispatch* target, std::int32_t length) {
  VARIANT value;
  load_variant(VT_I4, &length, &value);
  return write_property(target, VQ_OLESTR("length"), value);
}

// A new empty array of the same script: what slicing nothing out of one gives.
HRESULT empty_array_like(IDispatch* model, Variant& out) {
  const std::int32_t zero = 0;
  VARIANT arguments[2];
  for (VARIANT& argument : arguments) load_variant(VT_I4, &zero, &argument);
  const HRESULT made = call_method(model, VQ_OLESTR("slice"), arguments, &out);
  if (FAILED(made)) return made;
  return object_in(out) != nullptr ? S_OK : DISP_E_TYPEMISMATCH;
}

// Appends one run of elements, with empty places for the indices below the lower bound.
HRESULT append(IDispatch* target, const std::byte* first, std::size_t stride, VARTYPE type,
               std::int64_t lower, std::int64_t upper) {
  VARIANT empty;
  VariantInit(&empty);
  HRESULT outcome = S_OK;
  for (std::int64_t i = 0; i <= upper && SUCCEEDED(outcome); ++i) {
    VARIANT value = empty;
    if (i >= lower) {
      load_variant(type, first + static_cast<std::size_t>(i - lower) * stride, &value);
    }
    outcome = push(target, value);
  }
  return outcome;
}

}  // namespace

Conversion convert_script_array(IDispatch* source, VARTYPE element, int rank, LCID locale,
                                OwnedArray& out, HostNumbers* numbers) {
  const std::int64_t length = source == nullptr ? -1 : length_of(source);
  if (length < 0) {
    return {DISP_E_MEMBERNOTFOUND, "; it is an object without a length, not an array"};
  }
  if (length > kMostElements) return too_large(length);
  const bool table = rank == 2;
  std::vector<Variant> holders;
  std::vector<Row> rows;
  std::int64_t columns = length;
  if (table) {
    const Conversion measured = measure_rows(source, length, holders, rows);
    if (FAILED(measured.result)) return measured;
    columns = 0;
    for (const Row& row : rows) columns = std::max(columns, row.length);
    if (columns > kMostElements / std::max<std::int64_t>(length, 1)) return too_large(columns);
  } else {
    rows.push_back({source, length});
  }
  SAFEARRAYBOUND bounds[2] = {{static_cast<ULONG>(length), 0}, {static_cast<ULONG>(columns), 0}};
  OwnedArray made = create_array(element, value_size(element), table ? 2 : 1, bounds);
  if (!made) return {E_OUTOFMEMORY, "; it is too large to convert"};
  const Target target{element, locale, numbers};
  Conversion outcome = read_columns(rows, columns, target, table, made.get());
  if (SUCCEEDED(outcome.result)) out = std::move(made);
  return outcome;
}

HRESULT write_back_to_script(const Results& results, int rank, std::size_t rows,
                             IDispatch* target) {
  VARIANT value;
  for (std::size_t i = 0; i < results.count(); ++i) {
    if (!results.is_due(i, value)) continue;
    const auto row = static_cast<std::int64_t>(i % rows);
    const auto column = static_cast<std::int64_t>(i / rows);
    const HRESULT outcome = write_element(target, row, column, rank == 2, value);
    if (FAILED(outcome)) return outcome;
  }
  return S_OK;
}

HRESULT refill_script_array(SAFEARRAY* array, IDispatch* target) {
  HRESULT outcome = set_length(target, 0);
  if (FAILED(outcome) || array == nullptr) return outcome;
  VARTYPE type = VT_EMPTY;
  SafeArrayGetVartype(array, &type);
  const std::size_t size = SafeArrayGetElemsize(array);
  const auto* first = static_cast<const std::byte*>(array->pvData);
  const SAFEARRAYBOUND& rows = array->rgsabound[array->cDims - 1];
  const std::int64_t last_row = std::int64_t{rows.lLbound} + rows.cElements - 1;
  if (array->cDims == 1) return append(target, first, size, type, rows.lLbound, last_row);
  const SAFEARRAYBOUND& columns = array->rgsabound[0];
  const std::int64_t last_column = std::int64_t{columns.lLbound} + columns.cElements - 1;
  for (std::int64_t r = 0; r <= last_row && SUCCEEDED(outcome); ++r) {
    Variant row;
    outcome = empty_array_like(target, row);
    if (SUCCEEDED(outcome) && r >= rows.lLbound) {
      const auto offset = static_cast<std::size_t>(r - rows.lLbound) * size;
      outcome = append(row.pdispVal, first + offset, rows.cElements * size, type, columns.lLbound,
                       last_column);
    }
    if (SUCCEEDED(outcome)) outcome = push(target, row);
  }
  return outcome;
}

}  // namespace vqmath63::automation
