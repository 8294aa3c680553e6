#include "automation/late_scalar.hpp"

#include <cstring>

#include "automation/elements.hpp"
#include "automation/host_object.hpp"
#include "automation/text.hpp"

namespace vqmath63::automation {
namespace {

const char* type_text(VARTYPE vt) {
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

bool same_bits(const VARIANT& a, const VARIANT& b) {
  return a.vt == b.vt && std::memcmp(&a.llVal, &b.llVal, value_size(a.vt)) == 0;
}

// Stores `value` where a by-reference variant of type BYREF|X points to.
HRESULT store_through(const VARIANT& reference, const VARIANT& value) {
  const auto wanted = static_cast<VARTYPE>(reference.vt & ~static_cast<VARTYPE>(VT_BYREF));
  if (!convertible_element(wanted) || reference.byref == nullptr) return DISP_E_TYPEMISMATCH;
  Variant converted;
  const HRESULT changed = change_type(value, wanted, LOCALE_USER_DEFAULT, converted);
  if (FAILED(changed)) return changed;
  if (wanted == VT_BSTR) {
    replace_text(*reference.pbstrVal, OwnedText(converted.release().bstrVal));
    return S_OK;
  }
  store_value(converted, reference.byref);
  return S_OK;
}

}  // namespace

LateScalar::LateScalar(const Sent& sent) : LateArgument(sent) {
  const VARTYPE wanted = sent.info.type.vt;
  const bool by_ref = sent.info.type.by_ref;
  place_ = &value_.llVal;
  if (target_ == nullptr) {
    take_default();
    return;
  }
  if (target_->vt == (wanted | VT_BYREF)) {  // memory of that type, whatever the host puts there
    place_ = target_->byref;
    in_place_ = true;
    return;
  }
  if (!by_ref && target_->vt == wanted && target_ == sent.given) {
    place_ = &target_->llVal;
    return;
  }
  same_type_ = target_->vt == wanted;
  if (by_ref && !sent.info.type.read_only) note_taken();
  if (same_type_) {
    take(*target_);
  } else if (sent.info.only_written) {
    take_number(*target_);
  } else {
    Variant held;
    HRESULT read = DISP_E_UNKNOWNNAME;
    if (by_ref && script_) read = read_property(script_.get(), VQ_OLESTR("value"), held);
    if (read == E_OUTOFMEMORY) refuse(read, "cannot be read");
    take(SUCCEEDED(read) ? held : *target_);
    if (FAILED(read)) script_ = {};  // no box: it stood for its own value
  }
  before_ = value_.llVal;
}

void LateScalar::take_default() {
  const DefaultValue& fallback = sent_.info.fallback;
  if (sent_.info.type.vt == VT_BSTR) {
    value_.bstrVal = new_bstr(fallback.text != nullptr ? fallback.text : "");
  } else {
    VARIANT number;
    load_variant(VT_R8, &fallback.number, &number);
    change_type(number, sent_.info.type.vt, LOCALE_USER_DEFAULT, value_);
  }
  value_.vt = sent_.info.type.vt;
}

void LateScalar::take(const VARIANT& from) {
  const VARTYPE wanted = sent_.info.type.vt;
  HRESULT taken = S_OK;
  if (from.vt != wanted) {
    taken = change_type(from, wanted, sent_.locale, value_);
  } else if (wanted == VT_BSTR) {
    taken = VariantCopy(&value_, const_cast<VARIANT*>(&from));
  } else {
    load_variant(wanted, &from.llVal, &value_);
  }
  if (FAILED(taken)) refuse(taken, std::string("cannot be converted to ") + type_text(wanted));
}

void LateScalar::take_number(const VARIANT& from) {
  const VARTYPE wanted = sent_.info.type.vt;
  double number = 0.0;
  const bool converted = read_number(from.vt, &from.llVal, number) &&
                         SUCCEEDED(change_type(from, wanted, sent_.locale, value_));
  if (!converted) value_.llVal = 0;
  value_.vt = wanted;
}

HRESULT LateScalar::hand_back_changes(bool succeeded) {
  if (in_place_) return S_OK;
  const bool unchanged = value_.llVal == before_;
  if (unchanged && (!succeeded || same_type_)) return S_OK;
  if (script_) {
    const HRESULT put = write_property(script_.get(), VQ_OLESTR("value"), value_);
    // An object that is no box is what the variable held until now.
    if (by_value() || (put != DISP_E_UNKNOWNNAME && put != DISP_E_MEMBERNOTFOUND)) return put;
    settle();
  }
  if (by_value() || kept_by_host()) return S_OK;
  // Another argument may stand for the same variable.
  if (unchanged && !holds_what_was_taken()) return S_OK;
  if ((target_->vt & VT_BYREF) != 0) return store_through(*target_, value_);
  return same_bits(*target_, value_) ? S_OK : put_into(*target_, value_);
}

}  // namespace vqmath63::automation
