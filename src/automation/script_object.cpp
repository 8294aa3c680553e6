#include "automation/script_object.hpp"

#include <algorithm>
#include <limits>
#include <vector>

#include "automation/elements.hpp"
#include "automation/host_object.hpp"
#include "automation/text.hpp"

namespace vqmath63::automation {
namespace {

Utf16 number_name(std::int64_t i) {
  return utf16(std::to_string(i));
}

// Length of an array object, or -1 when it has none.
std::int64_t length_of(IDispatch* object) {
  Variant length;
  VARIANT whole{};
  if (FAILED(read_property(object, VQ_OLESTR("length"), length)) ||
      FAILED(change_type(length, VT_I4, 0, whole))) {
    return -1;
  }
  return whole.lVal;
}

// What a script's array is read into.
struct Target {
  VARTYPE type;
  LCID locale;
  HostNumbers* numbers;
};

// A hole in a script's array has no name to be found by; it reads as Empty.
HRESULT read_element(IDispatch* source, std::int64_t i, Variant& out) {
  const HRESULT read = read_property(source, number_name(i).c_str(), out);
  return read == DISP_E_UNKNOWNNAME || read == DISP_E_MEMBERNOTFOUND ? S_OK : read;
}

// Reads elements 0..count-1 of an array object into every `step`th element of `made`, from `first`.
Conversion read_elements(IDispatch* source, std::int64_t count, const Target& target,
                         SAFEARRAY* made, std::size_t first, std::size_t step,
                         const std::string& row) {
  const std::size_t size = SafeArrayGetElemsize(made);
  auto* const out = static_cast<std::byte*>(made->pvData);
  std::size_t at = first;
  for (std::int64_t i = 0; i < count; ++i, at += step) {
    Variant element;
    HRESULT result = read_element(source, i, element);
    if (FAILED(result)) {
      return {result, "; its element (" + row + std::to_string(i) + ") cannot be read"};
    }
    if (element.vt == VT_EMPTY || element.vt == VT_NULL) continue;
    result = convert_element(VT_VARIANT, &element, target.type, out + at * size, target.locale);
    if (FAILED(result)) {
      return {result, "; its element (" + row + std::to_string(i) + ") cannot be converted"};
    }
    if (target.numbers != nullptr) {
      Variant own;
      const bool known = SUCCEEDED(change_type(element, VT_R8, target.locale, own));
      (*target.numbers)[at] = known ? own.dblVal : std::numeric_limits<double>::quiet_NaN();
    }
  }
  return {};
}

IDispatch* object_in(const VARIANT& value) {
  return value.vt == VT_DISPATCH ? value.pdispVal : nullptr;
}

Conversion read_rows(IDispatch* source, std::int64_t rows, const Target& target, OwnedArray& out) {
  std::vector<Variant> row_values(static_cast<std::size_t>(rows));
  std::int64_t columns = 0;
  for (std::int64_t r = 0; r < rows; ++r) {
    Variant& row = row_values[static_cast<std::size_t>(r)];
    const HRESULT read = read_element(source, r, row);
    if (FAILED(read)) return {read, "; its row (" + std::to_string(r) + ") cannot be read"};
    if (row.vt == VT_EMPTY || row.vt == VT_NULL) continue;
    const std::int64_t length = object_in(row) == nullptr ? -1 : length_of(object_in(row));
    if (length < 0) {
      return {DISP_E_TYPEMISMATCH, "; its row (" + std::to_string(r) + ") is no array"};
    }
    columns = std::max(columns, length);
  }
  SAFEARRAYBOUND bounds[2] = {{static_cast<ULONG>(rows), 0}, {static_cast<ULONG>(columns), 0}};
  OwnedArray made = create_array(target.type, value_size(target.type), 2, bounds);
  if (!made) return {E_OUTOFMEMORY, "; it is too large to convert"};
  if (target.numbers != nullptr) target.numbers->resize(element_count(made.get()));
  for (std::int64_t r = 0; r < rows; ++r) {
    IDispatch* row = object_in(row_values[static_cast<std::size_t>(r)]);
    if (row == nullptr) continue;
    // Not beyond what there is room for: the script may have grown the row since it was measured.
    const std::int64_t length = std::clamp<std::int64_t>(length_of(row), 0, columns);
    Conversion outcome = read_elements(row, length, target, made.get(), static_cast<std::size_t>(r),
                                       static_cast<std::size_t>(rows), std::to_string(r) + ", ");
    if (FAILED(outcome.result)) return outcome;
  }
  out = std::move(made);
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
    return {DISP_E_TYPEMISMATCH, "; it is an object without a length, not an array"};
  }
  const Target target{element, locale, numbers};
  if (rank == 2) return read_rows(source, length, target, out);
  SAFEARRAYBOUND bound{static_cast<ULONG>(length), 0};
  OwnedArray made = create_array(element, value_size(element), 1, &bound);
  if (!made) return {E_OUTOFMEMORY, "; it is too large to convert"};
  if (numbers != nullptr) numbers->resize(static_cast<std::size_t>(length));
  Conversion outcome = read_elements(source, length, target, made.get(), 0, 1, "");
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
