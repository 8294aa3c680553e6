#include "automation/late_argument.hpp"

#include <cstring>

#include "automation/array_argument.hpp"
#include "automation/array_conversion.hpp"
#include "automation/elements.hpp"
#include "automation/failure.hpp"
#include "automation/script_object.hpp"
#include "automation/text.hpp"

namespace vqmath63::automation {
namespace {

constexpr VARTYPE kArrayByRef = VT_ARRAY | VT_BYREF;

bool is_array(const VARIANT& v) {
  return (v.vt & VT_ARRAY) != 0;
}
bool is_by_ref(const VARIANT& v) {
  return (v.vt & VT_BYREF) != 0;
}

VARTYPE element_of(const VARIANT& v) {
  return static_cast<VARTYPE>(v.vt & ~static_cast<VARTYPE>(kArrayByRef));
}

SAFEARRAY** array_place(VARIANT& v) {
  return is_by_ref(v) ? v.pparray : &v.parray;
}

std::basic_string_view<OLECHAR> text_view(BSTR text) {
  return {text, SysStringLen(text)};
}

const char* scalar_type_text(VARTYPE vt) {
  switch (vt) {
    case VT_R4:
      return "a Single";
    case VT_R8:
      return "a Double";
    case VT_I4:
      return "a Long";
    case VT_BOOL:
      return "a Boolean";
    case VT_DATE:
      return "a Date";
    case VT_BSTR:
      return "a String";
    default:
      return "another type";
  }
}

// Stores `value` where a by-reference variant of type BYREF|X points to.
HRESULT store_through(VARIANT& reference, VARIANT& value) {
  const auto wanted = static_cast<VARTYPE>(reference.vt & ~static_cast<VARTYPE>(VT_BYREF));
  if (!convertible_element(wanted)) return DISP_E_TYPEMISMATCH;
  VARIANT converted;
  VariantInit(&converted);
  const HRESULT result = VariantChangeType(&converted, &value, 0, wanted);
  if (FAILED(result)) return result;
  if (wanted == VT_BSTR) {
    SysFreeString(*reference.pbstrVal);
    *reference.pbstrVal = converted.bstrVal;
    return S_OK;
  }
  std::memcpy(reference.byref, &converted.llVal, value_size(wanted));
  return S_OK;
}

}  // namespace

LateArgument::LateArgument(Unfilled, const char* member, const ArgumentInfo& info, VARIANT* given,
                           LCID locale)
    : member_(member), info_(info), given_(given), target_(given), locale_(locale) {
  VariantInit(&value_);
  VariantInit(&before_);
}

// Delegates, so that the destructor also runs when what follows fails half-way.
LateArgument::LateArgument(const char* member, const ArgumentInfo& info, VARIANT* given,
                           LCID locale)
    : LateArgument(Unfilled{}, member, info, given, locale) {
  if (given_ == nullptr) {
    take_default();
    return;
  }
  constexpr VARTYPE kVariantReference = VT_BYREF | VT_VARIANT;
  for (int level = 0; target_->vt == kVariantReference; ++level) {
    constexpr int kMostLevels = 8;  // one that refers to itself has no end
    if (target_->pvarVal == nullptr || level == kMostLevels)
      refuse(DISP_E_TYPEMISMATCH, "is no valid reference");
    target_ = target_->pvarVal;
  }
  if (is_by_ref(*target_) && target_->byref == nullptr) {
    refuse(DISP_E_TYPEMISMATCH, "is a null reference");
  }
  if (target_->vt == VT_DISPATCH) script_ = target_->pdispVal;
  if (target_->vt == (VT_DISPATCH | VT_BYREF)) script_ = *target_->ppdispVal;
  if (script_ != nullptr) script_->AddRef();  // the call may lead its variable to let it go
  if (info_.type.rank > 0) {
    take_array();
  } else {
    take_scalar();
  }
}

LateArgument::~LateArgument() {
  if (script_ != nullptr) script_->Release();
  VariantClear(&value_);
  VariantClear(&before_);
  if (locked_ != nullptr) SafeArrayUnlock(locked_);
  if (array_ != nullptr && (array_->fFeatures & kForeignElements) == 0) SafeArrayDestroy(array_);
  if (original_ != nullptr) SafeArrayDestroy(original_);
}

void LateArgument::refuse(HRESULT why, const std::string& detail) const {
  constexpr std::int32_t kOverflow = 6;
  constexpr std::int32_t kOutOfMemory = 7;
  constexpr std::int32_t kTypeMismatch = 13;
  const std::int32_t number = why == DISP_E_OVERFLOW ? kOverflow
                              : why == E_OUTOFMEMORY ? kOutOfMemory
                                                     : kTypeMismatch;
  raise_for_argument(number, member_, info_.name, detail);
}

void LateArgument::take_default() {
  place_ = &value_.llVal;
  if (info_.type.rank > 0) {
    place_ = &array_;
    return;
  }
  const DefaultValue& fallback = info_.fallback;
  value_.vt = info_.type.vt;
  switch (info_.type.vt) {
    case VT_R4:
      value_.fltVal = static_cast<float>(fallback.number);
      break;
    case VT_I4:
      value_.lVal = static_cast<LONG>(fallback.number);
      break;
    case VT_BOOL:
      value_.boolVal = fallback.number != 0.0 ? VARIANT_TRUE : VARIANT_FALSE;
      break;
    case VT_BSTR:
      value_.bstrVal = new_bstr(fallback.text != nullptr ? fallback.text : "");
      break;
    default:
      value_.dblVal = fallback.number;
      break;
  }
}

void LateArgument::take_scalar() {
  const VARTYPE wanted = info_.type.vt;
  const bool held_by_host = target_ != given_;  // inside a by-reference variant
  if (target_->vt == (wanted | VT_BYREF)) {
    place_ = target_->byref;
    return;
  }
  if (target_->vt == wanted && (held_by_host || !info_.type.by_ref)) {
    place_ = &target_->llVal;
    return;
  }
  VARIANT* source = target_;
  VARIANT held;
  VariantInit(&held);
  form_ = Form::kConverted;
  if (info_.type.by_ref && script_ != nullptr) {
    const HRESULT read = read_property(script_, VQ_OLESTR("value"), &held);
    if (read == E_OUTOFMEMORY) refuse(read, "cannot be read");
    if (SUCCEEDED(read)) {
      form_ = Form::kScriptValue;
      source = &held;
    }
  }
  HRESULT result = VariantChangeTypeEx(&value_, source, locale_, 0, wanted);
  VariantClear(&held);
  if (SUCCEEDED(result) && info_.type.by_ref) result = VariantCopy(&before_, &value_);
  if (FAILED(result)) {
    refuse(result, std::string("cannot be converted to ") + scalar_type_text(wanted));
  }
  place_ = &value_.llVal;
}

std::string LateArgument::wanted_array() const {
  return "must be " + array_type_text(info_.type.vt, info_.type.rank);
}

void LateArgument::take_array() {
  place_ = &array_;
  if (is_array(*target_)) {
    SAFEARRAY** held = array_place(*target_);
    const bool exact = element_of(*target_) == info_.type.vt;
    // No array, or one whose elements were released.
    const bool unset =
        *held == nullptr || ((*held)->pvData == nullptr && element_count(*held) != 0);
    if (!unset && SafeArrayGetDim(*held) != static_cast<UINT>(info_.type.rank)) {
      refuse(DISP_E_TYPEMISMATCH, wanted_array());
    }
    if (exact && (is_by_ref(*target_) || target_ != given_)) {
      place_ = held;  // the host's own variable
      return;
    }
    form_ = exact ? Form::kLent : Form::kConverted;
    if (unset) return;
    if (exact) {
      lend(*held);
      return;
    }
    const Conversion outcome = convert_array(*held, info_.type.vt, locale_, &array_);
    if (FAILED(outcome.result)) {
      refuse(outcome.result, wanted_array() + "; it " + outcome.detail);
    }
  } else if (script_ != nullptr) {
    form_ = Form::kScriptArray;
    const Conversion outcome =
        convert_script_array(script_, info_.type.vt, info_.type.rank, locale_, &array_);
    if (FAILED(outcome.result)) {
      refuse(outcome.result, wanted_array() + "; it " + outcome.detail);
    }
  } else if (target_->vt == VT_EMPTY || target_->vt == VT_NULL) {
    form_ = Form::kConverted;  // a variable that holds no array yet
    return;
  } else {
    refuse(DISP_E_TYPEMISMATCH, wanted_array());
  }
  converted_ = array_;
  const HRESULT copied = SafeArrayCopy(array_, &original_);
  if (FAILED(copied)) refuse(copied, "is too large to convert");
}

// A by-value array stays the host's: the call works on a descriptor of ours over its elements, so
// that a re-dimensioned one cannot free it.
void LateArgument::lend(SAFEARRAY* array) {
  const HRESULT locked = SafeArrayLock(array);
  if (FAILED(locked)) refuse(locked, "cannot be locked");
  locked_ = array;
  lent_.array.cDims = array->cDims;
  lent_.array.fFeatures = kForeignElements;
  lent_.array.cbElements = array->cbElements;
  lent_.array.cLocks = 0;
  lent_.array.pvData = array->pvData;
  std::memcpy(lent_.array.rgsabound, array->rgsabound, array->cDims * sizeof(SAFEARRAYBOUND));
  array_ = &lent_.array;
}

HRESULT LateArgument::hand_back() noexcept {
  if (form_ == Form::kInPlace || form_ == Form::kLent || given_ == nullptr) return S_OK;
  if (!info_.type.by_ref) return S_OK;
  try {
    return info_.type.rank > 0 ? hand_back_array() : hand_back_scalar();
  } catch (...) {  // no memory for a name or a list of arguments
    return E_OUTOFMEMORY;
  }
}

HRESULT LateArgument::hand_back_scalar() {
  const bool unchanged = before_.vt == VT_BSTR
                             ? text_view(before_.bstrVal) == text_view(value_.bstrVal)
                             : std::memcmp(&before_.llVal, &value_.llVal, 8) == 0;
  if (form_ == Form::kScriptValue) return write_property(script_, VQ_OLESTR("value"), &value_);
  // An unchanged value keeps the host's own type and digits; an empty variable gets one.
  if (unchanged && target_->vt != VT_EMPTY) return S_OK;
  if (is_by_ref(*target_)) return store_through(*target_, value_);
  if (target_ == given_) return S_OK;  // passed by value
  return VariantCopy(target_, &value_);
}

HRESULT LateArgument::hand_back_array() {
  const bool replaced = array_ != converted_;
  if (form_ == Form::kScriptArray) {
    return replaced ? refill_script_array(array_, script_)
                    : write_back_to_script(array_, original_, script_);
  }
  if (!replaced) {
    if (array_ == nullptr) return S_OK;
    if (!is_array(*target_)) return DISP_E_TYPEMISMATCH;  // the variable holds something else now
    return write_back_changes(array_, original_, *array_place(*target_));
  }
  return target_ == given_ && !is_by_ref(*target_) ? S_OK : replace_host_array();
}

HRESULT LateArgument::replace_host_array() {
  const VARTYPE element = is_array(*target_) ? element_of(*target_) : VARTYPE{VT_VARIANT};
  SAFEARRAY* fresh = nullptr;
  if (array_ != nullptr) {
    const HRESULT made = recast_array(array_, element, &fresh);
    if (FAILED(made)) return made;
  }
  HRESULT cleared = S_OK;
  if (is_by_ref(*target_)) {
    SAFEARRAY** place = target_->pparray;
    if (*place != nullptr) cleared = SafeArrayDestroy(*place);
    if (SUCCEEDED(cleared)) *place = fresh;
  } else {
    cleared = VariantClear(target_);
    if (SUCCEEDED(cleared) && fresh != nullptr) {
      target_->vt = static_cast<VARTYPE>(VT_ARRAY | element);
      target_->parray = fresh;
    }
  }
  if (FAILED(cleared) && fresh != nullptr) SafeArrayDestroy(fresh);
  return cleared;
}

}  // namespace vqmath63::automation
