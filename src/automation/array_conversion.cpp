#include "automation/array_conversion.hpp"

#include <algorithm>
#include <bit>
#include <limits>

#include "automation/elements.hpp"

namespace vqmath63::automation {
namespace {

// Index of the element at `offset`, as hosts write it: "(3)", "(2, 5)".
std::string index_text(SAFEARRAY* array, std::size_t offset) {
  std::string text = "(";
  const UINT dims = SafeArrayGetDim(array);
  for (UINT d = 0; d < dims; ++d) {
    const SAFEARRAYBOUND& b = array->rgsabound[dims - 1 - d];
    if (d > 0) text += ", ";
    text += std::to_string(static_cast<std::int64_t>(offset % b.cElements) + b.lLbound);
    offset /= b.cElements;
  }
  return text + ")";
}

OwnedArray create_alike(SAFEARRAY* model, VARTYPE element) {
  constexpr UINT kMostDims = 2;
  const UINT dims = SafeArrayGetDim(model);
  if (dims == 0 || dims > kMostDims) return OwnedArray();
  SAFEARRAYBOUND bounds[kMostDims];
  for (UINT d = 0; d < dims; ++d) bounds[d] = model->rgsabound[dims - 1 - d];
  return create_array(element, value_size(element), dims, bounds);
}

// The host's own number of an element that was not read at once; no number where it has none.
double host_number(VARTYPE type, const void* from, LCID locale) {
  double number = 0.0;
  if (type == VT_VARIANT && value_at<VARIANT>(from).vt == VT_DISPATCH) {
    return std::numeric_limits<double>::quiet_NaN();  // asked once, for the element itself
  }
  const HRESULT read = convert_element(type, from, VT_R8, &number, locale);
  return SUCCEEDED(read) ? number : std::numeric_limits<double>::quiet_NaN();
}

// The elements of a host's array on their way to an array of ours.
struct Elements {
  VARTYPE type;
  const std::byte* first;
  std::size_t size;
  std::size_t count;
  LCID locale;
  double* numbers;  // room for the host's own, or null
};

/// Converts the elements; returns how many were before the first bad one, whose result code is in
/// `outcome`.
template <bool kVariants, class T>
std::size_t convert_elements(const Elements& from, VARTYPE to_type, T* to, HRESULT& outcome) {
  const std::byte* in = from.first;
  for (std::size_t i = 0; i < from.count; ++i, in += kVariants ? sizeof(VARIANT) : from.size) {
    double number = 0.0;
    bool read = false;
    if constexpr (kVariants) {
      const auto* held = reinterpret_cast<const VARIANT*>(in);
      read = held->vt == VT_R8;  // what scripts have most
      if (read) [[likely]] {
        number = held->dblVal;
      } else {
        read = read_number(held->vt, &held->llVal, number);
      }
    } else {
      read = read_number(from.type, in, number);
    }
    if (read) [[likely]] {
      outcome = store_number(number, to[i]);
    } else {
      outcome = convert_element(from.type, in, to_type, &to[i], from.locale);
      if (from.numbers != nullptr) number = host_number(from.type, in, from.locale);
    }
    if (FAILED(outcome)) [[unlikely]]
      return i;
    if (from.numbers != nullptr) from.numbers[i] = number;
  }
  return from.count;
}

}  // namespace

Conversion convert_array(SAFEARRAY* source, VARTYPE element, LCID locale, OwnedArray& out,
                         HostNumbers* numbers) {
  VARTYPE from = VT_EMPTY;
  if (FAILED(SafeArrayGetVartype(source, &from)) || !convertible_element(from)) {
    return {DISP_E_TYPEMISMATCH, "; it has elements that are no numbers"};
  }
  OwnedArray made = create_alike(source, element);
  if (!made) return {E_OUTOFMEMORY, "; it is too large to convert"};
  const std::size_t count = element_count(source);
  const ArrayLock lock(source);
  if (FAILED(lock.result())) return {lock.result(), "; it cannot be locked"};
  if (numbers != nullptr) numbers->resize(count);
  const Elements elements{
      from,   static_cast<const std::byte*>(source->pvData), SafeArrayGetElemsize(source), count,
      locale, numbers != nullptr ? numbers->data() : nullptr};
  HRESULT outcome = S_OK;
  const auto convert = [&](auto* to) {
    return from == VT_VARIANT ? convert_elements<true>(elements, element, to, outcome)
                              : convert_elements<false>(elements, element, to, outcome);
  };
  void* const to = made->pvData;
  const std::size_t good = element == VT_R4   ? convert(static_cast<float*>(to))
                           : element == VT_R8 ? convert(static_cast<double*>(to))
                           : element == VT_I4 ? convert(static_cast<std::int32_t*>(to))
                                              : convert(static_cast<VARIANT_BOOL*>(to));
  if (good < count) {
    return {outcome, "; its element " + index_text(source, good) + " cannot be converted"};
  }
  out = std::move(made);
  return {};
}

HRESULT recast_array(SAFEARRAY* source, VARTYPE element, OwnedArray& out) {
  VARTYPE from = VT_EMPTY;
  const HRESULT known = SafeArrayGetVartype(source, &from);
  if (FAILED(known)) return known;
  OwnedArray made = create_alike(source, element);
  if (!made) return E_OUTOFMEMORY;
  const std::size_t count = element_count(source);
  const std::size_t from_size = SafeArrayGetElemsize(source);
  const std::size_t to_size = SafeArrayGetElemsize(made.get());
  const auto* in = static_cast<const std::byte*>(source->pvData);
  auto* to = static_cast<std::byte*>(made->pvData);
  for (std::size_t i = 0; i < count; ++i) {
    const HRESULT stored = store_element(from, in + i * from_size, element, to + i * to_size);
    if (FAILED(stored)) return stored;
  }
  out = std::move(made);
  return S_OK;
}

HRESULT fill_array(SAFEARRAY* source, SAFEARRAY* target) {
  struct Shape {
    std::size_t rows = 0, columns = 0;
  };
  const auto shape_of = [](const SAFEARRAY* array) -> Shape {
    if (array == nullptr) return {};
    if (array->cDims == 1) return {array->rgsabound[0].cElements, 1};
    return {array->rgsabound[1].cElements, array->rgsabound[0].cElements};
  };
  const Shape room = shape_of(target);
  Shape held = shape_of(source);
  if (room.rows == 1 && held.columns == 1) std::swap(held.rows, held.columns);
  if (held.rows > room.rows || held.columns > room.columns) return DISP_E_ARRAYISLOCKED;
  VARTYPE from = VT_EMPTY, to = VT_EMPTY;
  if (source != nullptr) SafeArrayGetVartype(source, &from);
  SafeArrayGetVartype(target, &to);
  const auto* in = source == nullptr ? nullptr : static_cast<const std::byte*>(source->pvData);
  auto* out = static_cast<std::byte*>(target->pvData);
  const std::int64_t nothing = 0;
  for (std::size_t column = 0; column < room.columns; ++column) {
    for (std::size_t row = 0; row < room.rows; ++row, out += target->cbElements) {
      const bool has = row < held.rows && column < held.columns;
      const void* element = &nothing;
      if (has) element = in + (column * held.rows + row) * source->cbElements;
      const HRESULT stored = store_element(has ? from : VARTYPE{VT_EMPTY}, element, to, out);
      if (FAILED(stored)) return stored;
    }
  }
  return S_OK;
}

Results::Results(SAFEARRAY* array, const HostNumbers& host, bool succeeded)
    : array_(*array),
      host_(host),
      first_(static_cast<const std::byte*>(array->pvData)),
      size_(SafeArrayGetElemsize(array)),
      succeeded_(succeeded) {
  SafeArrayGetVartype(array, &type_);
}

bool Results::fit(const SAFEARRAY& target) const {
  return std::equal(array_.rgsabound, array_.rgsabound + array_.cDims, target.rgsabound,
                    target.rgsabound + target.cDims,
                    [](const SAFEARRAYBOUND& a, const SAFEARRAYBOUND& b) {
                      return a.cElements == b.cElements && a.lLbound == b.lLbound;
                    });
}

bool Results::any_due() const {
  VARIANT value;
  for (std::size_t i = 0; i < count(); ++i) {
    if (is_due(i, value)) return true;
  }
  return false;
}

bool Results::is_due(std::size_t offset, VARIANT& value) const {
  const std::byte* at = first_ + offset * size_;
  const auto same = [](double a, double b) {
    return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b);
  };
  double now = 0.0;
  read_number(type_, at, now);
  const double host = host_[offset];
  if (same(now, host)) return false;
  load_variant(type_, at, &value);
  if (succeeded_) return true;
  VARIANT converted{};
  double before = 0.0;
  VARIANT own{};
  load_variant(VT_R8, &host, &own);
  const bool known = SUCCEEDED(change_type(own, type_, 0, converted));
  return !known || !read_number(type_, &converted.llVal, before) || !same(now, before);
}

HRESULT write_back(const Results& results, SAFEARRAY* target) {
  VARTYPE type = VT_EMPTY;
  SafeArrayGetVartype(target, &type);
  const ArrayLock lock(target);
  if (FAILED(lock.result())) return lock.result();
  // Code of the host that ran while another result was handed back may have resized it.
  if (!results.fit(*target)) return S_OK;
  const std::size_t size = SafeArrayGetElemsize(target);
  auto* out = static_cast<std::byte*>(target->pvData);
  HRESULT outcome = S_OK;
  VARIANT value;
  for (std::size_t i = 0; i < results.count() && SUCCEEDED(outcome); ++i) {
    if (results.is_due(i, value)) {
      outcome = store_element(value.vt, &value.llVal, type, out + i * size);
    }
  }
  return outcome;
}

}  // namespace vqmath63::automation
