#include "automation/script_object.hpp"

#include <algorithm>
#include <cstring>
#include <vector>

#include "automation/elements.hpp"
#include "automation/text.hpp"

namespace vqmath63::automation {
namespace {

// A VARIANT that clears itself.
struct Value : VARIANT {
  Value() { VariantInit(this); }
  ~Value() { VariantClear(this); }
  Value(const Value&) = delete;
  Value& operator=(const Value&) = delete;
};

HRESULT id_of(IDispatch* object, const OLECHAR* name, DISPID* id) {
  auto* text = const_cast<OLECHAR*>(name);
  return object->GetIDsOfNames(IID_NULL, &text, 1, 0, id);
}

HRESULT call_method(IDispatch* object, const OLECHAR* name, std::vector<VARIANT>& arguments,
                    VARIANT* result) {
  DISPID id = 0;
  const HRESULT known = id_of(object, name, &id);
  if (FAILED(known)) return known;
  DISPPARAMS params{arguments.data(), nullptr, static_cast<UINT>(arguments.size()), 0};
  return object->Invoke(id, IID_NULL, 0, DISPATCH_METHOD, &params, result, nullptr, nullptr);
}

Utf16 number_name(std::int64_t i) {
  return utf16(std::to_string(i));
}

// Length of an array object, or -1 when it has none.
std::int64_t length_of(IDispatch* object) {
  Value length;
  if (FAILED(read_property(object, VQ_OLESTR("length"), &length)) ||
      FAILED(VariantChangeType(&length, &length, 0, VT_I4))) {
    return -1;
  }
  return length.lVal;
}

struct Target {
  VARTYPE type;
  LCID locale;
};

// A hole in a script's array has no name to be found by; it reads as Empty.
HRESULT read_element(IDispatch* source, std::int64_t i, VARIANT* out) {
  const HRESULT read = read_property(source, number_name(i).c_str(), out);
  return read == DISP_E_UNKNOWNNAME || read == DISP_E_MEMBERNOTFOUND ? S_OK : read;
}

// Reads elements 0..count-1 of an array object into places that lie `step` bytes apart.
Conversion read_elements(IDispatch* source, std::int64_t count, const Target& target,
                         std::byte* out, std::size_t step, const std::string& row) {
  for (std::int64_t i = 0; i < count; ++i) {
    Value element;
    HRESULT result = read_element(source, i, &element);
    if (FAILED(result)) {
      return {result, "element (" + row + std::to_string(i) + ") cannot be read"};
    }
    if (element.vt == VT_EMPTY || element.vt == VT_NULL) continue;
    result = convert_element(VT_VARIANT, &element, target.type,
                             out + static_cast<std::size_t>(i) * step, target.locale);
    if (FAILED(result)) {
      return {result, "element (" + row + std::to_string(i) + ") cannot be converted"};
    }
  }
  return {};
}

IDispatch* object_in(const VARIANT& value) {
  return value.vt == VT_DISPATCH ? value.pdispVal : nullptr;
}

Conversion read_rows(IDispatch* source, std::int64_t rows, const Target& target, SAFEARRAY** out) {
  std::vector<Value> row_values(static_cast<std::size_t>(rows));
  std::int64_t columns = 0;
  for (std::int64_t r = 0; r < rows; ++r) {
    VARIANT& row = row_values[static_cast<std::size_t>(r)];
    const HRESULT read = read_element(source, r, &row);
    if (FAILED(read)) return {read, "row (" + std::to_string(r) + ") cannot be read"};
    if (row.vt == VT_EMPTY || row.vt == VT_NULL) continue;
    const std::int64_t length = object_in(row) == nullptr ? -1 : length_of(object_in(row));
    if (length < 0) {
      return {DISP_E_TYPEMISMATCH, "row (" + std::to_string(r) + ") is no array"};
    }
    columns = std::max(columns, length);
  }
  SAFEARRAYBOUND bounds[2] = {{static_cast<ULONG>(rows), 0}, {static_cast<ULONG>(columns), 0}};
  OwnedArray made(SafeArrayCreate(target.type, 2, bounds));
  if (made == nullptr) return {E_OUTOFMEMORY, "is too large to convert"};
  const std::size_t size = SafeArrayGetElemsize(made.get());
  auto* first = static_cast<std::byte*>(made->pvData);
  for (std::int64_t r = 0; r < rows; ++r) {
    IDispatch* row = object_in(row_values[static_cast<std::size_t>(r)]);
    if (row == nullptr) continue;
    // Not beyond what there is room for: the script may have grown the row since it was measured.
    const std::int64_t length = std::clamp<std::int64_t>(length_of(row), 0, columns);
    Conversion outcome =
        read_elements(row, length, target, first + static_cast<std::size_t>(r) * size,
                      static_cast<std::size_t>(rows) * size, std::to_string(r) + ", ");
    if (FAILED(outcome.result)) return outcome;
  }
  *out = made.release();
  return {};
}

// The element at (row, column) of a script's array of rows, or element `row` of a plain one.
HRESULT write_element(IDispatch* target, std::int64_t row, std::int64_t column, bool rows,
                      VARIANT* value) {
  if (!rows) return write_property(target, number_name(row).c_str(), value);
  Value held;
  const HRESULT found = read_property(target, number_name(row).c_str(), &held);
  if (FAILED(found)) return found;
  if (object_in(held) == nullptr) return DISP_E_TYPEMISMATCH;
  return write_property(object_in(held), number_name(column).c_str(), value);
}

HRESULT push(IDispatch* target, const VARIANT& value) {
  std::vector<VARIANT> arguments{value};
  return call_method(target, VQ_OLESTR("push"), arguments, nullptr);
}

HRESULT set_length(IDispatch* target, std::int32_t length) {
  VARIANT value;
  load_variant(VT_I4, &length, &value);
  return write_property(target, VQ_OLESTR("length"), &value);
}

// A new empty array of the same script: what slicing nothing out of one gives.
HRESULT empty_array_like(IDispatch* model, Value& out) {
  const std::int32_t zero = 0;
  std::vector<VARIANT> arguments(2);
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

HRESULT read_property(IDispatch* object, const OLECHAR* name, VARIANT* out) {
  DISPID id = 0;
  const HRESULT known = id_of(object, name, &id);
  if (FAILED(known)) return known;
  DISPPARAMS none{};
  return object->Invoke(id, IID_NULL, 0, DISPATCH_PROPERTYGET, &none, out, nullptr, nullptr);
}

HRESULT write_property(IDispatch* object, const OLECHAR* name, VARIANT* value) {
  DISPID id = 0;
  const HRESULT known = id_of(object, name, &id);
  if (FAILED(known)) return known;
  DISPID put = DISPID_PROPERTYPUT;
  DISPPARAMS params{value, &put, 1, 1};
  return object->Invoke(id, IID_NULL, 0, DISPATCH_PROPERTYPUT, &params, nullptr, nullptr, nullptr);
}

Conversion convert_script_array(IDispatch* source, VARTYPE element, int rank, LCID locale,
                                SAFEARRAY** out) {
  const std::int64_t length = source == nullptr ? -1 : length_of(source);
  if (length < 0) return {DISP_E_TYPEMISMATCH, "is an object without a length, not an array"};
  const Target target{element, locale};
  if (rank == 2) return read_rows(source, length, target, out);
  SAFEARRAYBOUND bound{static_cast<ULONG>(length), 0};
  OwnedArray made(SafeArrayCreate(element, 1, &bound));
  if (made == nullptr) return {E_OUTOFMEMORY, "is too large to convert"};
  Conversion outcome = read_elements(source, length, target, static_cast<std::byte*>(made->pvData),
                                     SafeArrayGetElemsize(made.get()), "");
  if (SUCCEEDED(outcome.result)) *out = made.release();
  return outcome;
}

HRESULT write_back_to_script(SAFEARRAY* changed, SAFEARRAY* original, IDispatch* target) {
  VARTYPE type = VT_EMPTY;
  SafeArrayGetVartype(changed, &type);
  const std::size_t size = SafeArrayGetElemsize(changed);
  const bool rows = changed->cDims == 2;
  const std::int64_t row_count = changed->rgsabound[changed->cDims - 1].cElements;
  const auto* now = static_cast<const std::byte*>(changed->pvData);
  const auto* before = static_cast<const std::byte*>(original->pvData);
  const std::size_t count = element_count(changed);
  for (std::size_t i = 0; i < count; ++i) {
    if (std::memcmp(now + i * size, before + i * size, size) == 0) continue;
    VARIANT value;
    load_variant(type, now + i * size, &value);
    const auto at = static_cast<std::int64_t>(i);
    const HRESULT outcome = write_element(target, at % row_count, at / row_count, rows, &value);
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
    Value row;
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
