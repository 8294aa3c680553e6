// Conversion of variants from one type to another.
#include <charconv>
#include <cmath>
#include <limits>
#include <memory>
#include <new>
#include <utility>

#include "automation/system/conversion.hpp"
#include "automation/system/ownership.hpp"
#include "automation/system/types.hpp"
#include "frame/text_case.hpp"

namespace vqmath63::automation::system {

namespace {

/// An object whose default value is an object, and so on, is given up after that many.
constexpr int kMaxObjects = 8;

struct Request {
  LCID lcid;
  USHORT flags;
  VARTYPE vt;
};

/// A variant that is cleared at the end of its scope.
struct Owned {
  VARIANT value{};
  Owned() = default;
  Owned(const Owned&) = delete;
  Owned& operator=(const Owned&) = delete;
  ~Owned() { VariantClear(&value); }
};

/// The characters of a text as bytes, without the blanks around them.
class Ascii {
 public:
  /// False when memory is short. A character that no number has becomes a NUL.
  bool read(BSTR text) {
    std::u16string_view all(text == nullptr ? u"" : text, SysStringLen(text));
    constexpr std::u16string_view kBlanks = u" \t\r\n\u00A0";
    const std::size_t first = all.find_first_not_of(kBlanks);
    if (first == all.npos) return true;
    all = all.substr(first, all.find_last_not_of(kBlanks) - first + 1);
    bytes_.reset(new (std::nothrow) char[all.size()]);
    if (bytes_ == nullptr) return false;
    for (std::size_t i = 0; i < all.size(); ++i) {
      bytes_[i] = all[i] < 128 ? static_cast<char>(all[i]) : '\0';
    }
    size_ = all.size();
    return true;
  }
  std::string_view view() const { return {bytes_.get(), size_}; }

 private:
  std::unique_ptr<char[]> bytes_;
  std::size_t size_ = 0;
};

Number whole(LONGLONG value) {
  return {.whole = value};
}
Number count(ULONGLONG value) {
  return {.kind = Number::Kind::kUnsigned, .count = value};
}
Number real(double value) {
  return {.kind = Number::Kind::kReal, .real = value};
}

/// The number that a variant of a type other than text holds.
HRESULT number_in(const VARIANT& source, Number& number) {
  switch (source.vt) {
    case VT_EMPTY:
      number = whole(0);
      return S_OK;
    case VT_BOOL:
      number = whole(source.boolVal != VARIANT_FALSE ? -1 : 0);
      return S_OK;
    case VT_I1:
      number = whole(static_cast<signed char>(source.cVal));
      return S_OK;
    case VT_I2:
      number = whole(source.iVal);
      return S_OK;
    case VT_I4:
    case VT_INT:
      number = whole(source.lVal);
      return S_OK;
    case VT_I8:
      number = whole(source.llVal);
      return S_OK;
    case VT_UI1:
      number = count(source.bVal);
      return S_OK;
    case VT_UI2:
      number = count(source.uiVal);
      return S_OK;
    case VT_UI4:
    case VT_UINT:
      number = count(source.ulVal);
      return S_OK;
    case VT_UI8:
      number = count(source.ullVal);
      return S_OK;
    case VT_R4:
      number = real(source.fltVal);
      return S_OK;
    case VT_R8:
    case VT_DATE:
      number = real(source.dblVal);
      return S_OK;
    case VT_CY:
      number = {.kind = Number::Kind::kCurrency, .whole = source.cyVal.int64};
      return S_OK;
    default:
      return DISP_E_TYPEMISMATCH;
  }
}

double real_of(const Number& number) {
  switch (number.kind) {
    case Number::Kind::kWhole:
      return static_cast<double>(number.whole);
    case Number::Kind::kUnsigned:
      return static_cast<double>(number.count);
    case Number::Kind::kCurrency:
      return static_cast<double>(number.whole) / 10000.0;
    case Number::Kind::kReal:
      break;
  }
  return number.real;
}

bool is_zero(const Number& number) {
  return number.whole == 0 && number.count == 0 && number.real == 0;
}

LONGLONG whole_of_currency(LONGLONG value) {
  LONGLONG below = value / 10000;
  LONGLONG rest = value % 10000;
  if (rest < 0) {
    rest += 10000;
    --below;
  }
  return rest > 5000 || (rest == 5000 && below % 2 != 0) ? below + 1 : below;
}

template <class T>
HRESULT store_whole(const Number& number, T& value) {
  if (number.kind == Number::Kind::kReal) {
    const double rounded = round_half_even(number.real);
    // One past the largest is a power of two, and so exact; the comparison is false for a NaN.
    const double past = 2.0 * static_cast<double>(std::numeric_limits<T>::max() / 2 + 1);
    const double least = static_cast<double>(std::numeric_limits<T>::min());
    if (!(rounded >= least && rounded < past)) return DISP_E_OVERFLOW;
    value = static_cast<T>(rounded);
    return S_OK;
  }
  if (number.kind == Number::Kind::kUnsigned) {
    if (!std::in_range<T>(number.count)) return DISP_E_OVERFLOW;
    value = static_cast<T>(number.count);
    return S_OK;
  }
  const LONGLONG whole =
      number.kind == Number::Kind::kCurrency ? whole_of_currency(number.whole) : number.whole;
  if (!std::in_range<T>(whole)) return DISP_E_OVERFLOW;
  value = static_cast<T>(whole);
  return S_OK;
}

HRESULT store_single(const Number& number, float& value) {
  const double real = real_of(number);
  // From here on the nearest Single would be infinity.
  if (std::fabs(real) >= 0x1.ffffffp127) return DISP_E_OVERFLOW;
  value = static_cast<float>(real);
  return S_OK;
}

HRESULT store_currency(const Number& number, LONGLONG& value) {
  switch (number.kind) {
    case Number::Kind::kCurrency:
      value = number.whole;
      return S_OK;
    case Number::Kind::kWhole:
      return __builtin_mul_overflow(number.whole, 10000, &value) ? DISP_E_OVERFLOW : S_OK;
    case Number::Kind::kUnsigned:
      return __builtin_mul_overflow(number.count, 10000, &value) ? DISP_E_OVERFLOW : S_OK;
    case Number::Kind::kReal:
      break;
  }
  return currency_from(number.real, value);
}

HRESULT store_number(const Number& number, VARTYPE vt, VARIANT& made) {
  switch (vt) {
    case VT_I1: {
      signed char value = 0;
      const HRESULT hr = store_whole(number, value);
      made.cVal = static_cast<char>(value);
      return hr;
    }
    case VT_I2:
      return store_whole(number, made.iVal);
    case VT_I4:
    case VT_INT:
      return store_whole(number, made.lVal);
    case VT_I8:
      return store_whole(number, made.llVal);
    case VT_UI1:
      return store_whole(number, made.bVal);
    case VT_UI2:
      return store_whole(number, made.uiVal);
    case VT_UI4:
    case VT_UINT:
      return store_whole(number, made.ulVal);
    case VT_UI8:
      return store_whole(number, made.ullVal);
    case VT_R4:
      return store_single(number, made.fltVal);
    case VT_R8:
      made.dblVal = real_of(number);
      return S_OK;
    case VT_DATE:
      made.date = real_of(number);
      return is_date(made.date) ? S_OK : DISP_E_OVERFLOW;
    case VT_CY:
      return store_currency(number, made.cyVal.int64);
    case VT_BOOL:
      made.boolVal = is_zero(number) ? VARIANT_FALSE : VARIANT_TRUE;
      return S_OK;
    default:
      return DISP_E_TYPEMISMATCH;
  }
}

/// A number from a text, read at the precision of the target.
HRESULT convert_text(BSTR source, VARTYPE vt, VARIANT& made) {
  Ascii ascii;
  if (!ascii.read(source)) return E_OUTOFMEMORY;
  const std::string_view text = ascii.view();
  switch (vt) {
    case VT_R4:
      return parse_real(text, made.fltVal);
    case VT_R8:
      return parse_real(text, made.dblVal);
    case VT_CY:
      return parse_currency(text, made.cyVal.int64);
    case VT_DATE:
      return parse_date(text, made.date);
    case VT_BOOL:
      if (same_letters(text, "true") || same_letters(text, "false")) {
        made.boolVal = text.size() == 4 ? VARIANT_TRUE : VARIANT_FALSE;
        return S_OK;
      }
      break;
    default:
      break;
  }
  Number number;
  const HRESULT hr = parse_number(text, number);
  return FAILED(hr) ? hr : store_number(number, vt, made);
}

/// Writes a number, a date or a truth value as text.
HRESULT write_text(const VARIANT& source, BSTR& made) {
  char room[kFormatRoom];
  std::string_view text;
  Number number;
  HRESULT hr = number_in(source, number);
  if (FAILED(hr)) return hr;
  if (source.vt == VT_EMPTY) {
    text = "";
  } else if (source.vt == VT_BOOL) {
    text = is_zero(number) ? "False" : "True";
  } else if (source.vt == VT_R4) {
    text = format_real(source.fltVal, room);
  } else if (source.vt == VT_DATE) {
    hr = format_date(source.date, room, text);
    if (FAILED(hr)) return hr;
  } else if (number.kind == Number::Kind::kReal) {
    text = format_real(number.real, room);
  } else if (number.kind == Number::Kind::kCurrency) {
    text = format_currency(number.whole, room);
  } else {
    const auto written = number.kind == Number::Kind::kWhole
                             ? std::to_chars(room, room + kFormatRoom, number.whole)
                             : std::to_chars(room, room + kFormatRoom, number.count);
    text = {room, static_cast<std::size_t>(written.ptr - room)};
  }
  made = SysAllocStringLen(nullptr, static_cast<UINT>(text.size()));
  if (made == nullptr) return E_OUTOFMEMORY;
  for (std::size_t i = 0; i < text.size(); ++i) made[i] = static_cast<OLECHAR>(text[i]);
  return S_OK;
}

HRESULT convert(const VARIANT& source, const Request& request, int objects, VARIANT& made);

/// An object as another kind of object, or its default value.
HRESULT convert_object(const VARIANT& variable, const Request& request, int objects,
                       VARIANT& made) {
  Owned held;  // the object's own code may give the variable another value
  VariantCopy(&held.value, &variable);
  const VARIANT& source = held.value;
  if (request.vt == VT_DISPATCH || request.vt == VT_UNKNOWN) {
    if (source.punkVal == nullptr) return S_OK;
    const IID& iid = request.vt == VT_DISPATCH ? IID_IDispatch : IID_IUnknown;
    void* object = nullptr;
    if (FAILED(source.punkVal->QueryInterface(iid, &object))) return DISP_E_TYPEMISMATCH;
    if (request.vt == VT_DISPATCH) {
      made.pdispVal = static_cast<IDispatch*>(object);
    } else {
      made.punkVal = static_cast<IUnknown*>(object);
    }
    return S_OK;
  }
  if (source.vt != VT_DISPATCH || source.pdispVal == nullptr || objects >= kMaxObjects ||
      (request.flags & VARIANT_NOVALUEPROP) != 0) {
    return DISP_E_TYPEMISMATCH;
  }
  Owned value;
  DISPPARAMS none{};
  const HRESULT hr =
      source.pdispVal->Invoke(DISPID_VALUE, IID_NULL, request.lcid, DISPATCH_PROPERTYGET, &none,
                              &value.value, nullptr, nullptr);
  return FAILED(hr) ? hr : convert(value.value, request, objects + 1, made);
}

/// Converts into `made`, which holds nothing before nor, on failure, after it.
HRESULT convert(const VARIANT& source, const Request& request, int objects, VARIANT& made) {
  if ((source.vt & VT_BYREF) != 0) {
    Owned value;
    const HRESULT hr = VariantCopyInd(&value.value, &source);
    return FAILED(hr) ? hr : convert(value.value, request, objects, made);
  }
  if (source.vt == request.vt) return VariantCopy(&made, &source);
  if (((source.vt | request.vt) & VT_ARRAY) != 0) return DISP_E_TYPEMISMATCH;

  VARIANT result{};
  HRESULT hr = S_OK;
  if (source.vt == VT_DISPATCH || source.vt == VT_UNKNOWN) {
    // A default value comes with its type, an interface without.
    if (request.vt != VT_DISPATCH && request.vt != VT_UNKNOWN) {
      return convert_object(source, request, objects, made);
    }
    hr = convert_object(source, request, objects, result);
  } else if (source.vt == VT_BSTR) {
    hr = convert_text(source.bstrVal, request.vt, result);
  } else if (request.vt == VT_BSTR) {
    hr = write_text(source, result.bstrVal);
  } else {
    Number number;
    hr = number_in(source, number);
    if (SUCCEEDED(hr) && source.vt == VT_BOOL && number.whole != 0) {
      // True has all bits set, in unsigned types too.
      switch (request.vt) {
        case VT_UI1:
        case VT_UI2:
        case VT_UI4:
        case VT_UINT:
        case VT_UI8:
          number = count(~ULONGLONG{0} >> (64 - 8 * size_of_type(request.vt)));
          break;
        default:
          break;
      }
    }
    if (SUCCEEDED(hr)) hr = store_number(number, request.vt, result);
  }
  if (FAILED(hr)) return hr;
  result.vt = request.vt;
  made = result;
  return S_OK;
}

}  // namespace

}  // namespace vqmath63::automation::system

HRESULT STDMETHODCALLTYPE VariantChangeTypeEx(VARIANTARG* pvargDest, const VARIANTARG* pvarSrc,
                                              LCID lcid, USHORT wFlags, VARTYPE vt) {
  using namespace vqmath63::automation::system;
  if (pvargDest == nullptr || pvarSrc == nullptr) return E_INVALIDARG;
  if (!is_variant_type(pvarSrc->vt) || !is_variant_type(vt)) return DISP_E_BADVARTYPE;
  if ((vt & VT_BYREF) != 0) return DISP_E_TYPEMISMATCH;
  if (pvarSrc->vt == vt) return VariantCopy(pvargDest, pvarSrc);
  VARIANT made{};
  const HRESULT hr = convert(*pvarSrc, {lcid, wFlags, vt}, 0, made);
  return FAILED(hr) ? hr : replace_variant(*pvargDest, made);
}

HRESULT STDMETHODCALLTYPE VariantChangeType(VARIANTARG* pvargDest, const VARIANTARG* pvarSrc,
                                            USHORT wFlags, VARTYPE vt) {
  return VariantChangeTypeEx(pvargDest, pvarSrc, LOCALE_USER_DEFAULT, wFlags, vt);
}
