#include "automation/late_array.hpp"

#include <limits>
#include <new>

#include "automation/array_argument.hpp"
#include "automation/elements.hpp"
#include "automation/host_object.hpp"
#include "automation/script_object.hpp"

namespace vqmath63::automation {
namespace {

constexpr VARTYPE kArrayByRef = VT_ARRAY | VT_BYREF;

bool is_array(const VARIANT& v) {
  return (v.vt & VT_ARRAY) != 0;
}

VARTYPE element_of(const VARIANT& v) {
  return static_cast<VARTYPE>(v.vt & ~static_cast<VARTYPE>(kArrayByRef));
}

SAFEARRAY* array_in(const VARIANT& v) {
  return (v.vt & VT_BYREF) != 0 ? *v.pparray : v.parray;
}

}  // namespace

HRESULT HeldArrays::hold(SAFEARRAY* array, bool& fixed) noexcept {
  for (std::size_t i = 0; i < count_; ++i) {
    if (held_[i].array == array) {
      fixed = held_[i].fixed;
      return S_OK;
    }
  }
  fixed = is_fixed(array);
  // In place: a call of the system for each costs more than a short call's own work.
  if (array->cLocks == std::numeric_limits<ULONG>::max()) return DISP_E_ARRAYISLOCKED;
  ++array->cLocks;
  held_[count_++] = {array, fixed};
  return S_OK;
}

void HeldArrays::release() noexcept {
  while (count_ > 0) --held_[--count_].array->cLocks;
}

LateArray::LateArray(const Sent& sent, HeldArrays& held) : LateArgument(sent) {
  place_ = array_.place();
  if (target_ == nullptr) return;
  if (!sent.info.type.read_only) note_taken();
  if (is_array(*target_)) {
    take_array(held);
  } else if (sent.info.only_written) {  // whatever the variable holds
    lend_nothing(nullptr);
  } else if (script_) {
    take_script_array();
  } else if (target_->vt != VT_EMPTY && target_->vt != VT_NULL) {  // no variable without a value
    refuse(DISP_E_TYPEMISMATCH, wanted_array());
  }
  made_ = array_.get();
}

std::string LateArray::wanted_array() const {
  return "must be " + array_type_text(sent_.info.type.vt, sent_.info.type.rank);
}

void LateArray::take_array(HeldArrays& held) {
  SAFEARRAY* const array = array_in(*target_);
  const VARTYPE wanted = sent_.info.type.vt;
  if (is_unset(array)) {
    lend_nothing(array);
    return;
  }
  const bool fits = has_rank(array, sent_.info.type.rank);
  const bool exact = fits && element_of(*target_) == wanted && holds(array, wanted);
  if (!exact && sent_.info.only_written) {
    lend_nothing(array);
    return;
  }
  if (!fits) refuse(DISP_E_TYPEMISMATCH, wanted_array());
  bool fixed = false;
  const HRESULT locked = held.hold(array, fixed);
  if (FAILED(locked)) refuse(locked, wanted_array() + "; it cannot be locked");
  if (exact) {
    lend(array, fixed);
  } else {
    take_converted(array);
  }
}

void LateArray::take_converted(SAFEARRAY* array) {
  const Conversion outcome = convert_array(array, sent_.info.type.vt, sent_.locale, array_,
                                           sent_.info.type.read_only ? nullptr : &numbers_);
  if (FAILED(outcome.result)) refuse(outcome.result, wanted_array() + outcome.detail);
}

void LateArray::take_script_array() {
  const Conversion outcome =
      convert_script_array(script_.get(), sent_.info.type.vt, sent_.info.type.rank, sent_.locale,
                           array_, sent_.info.type.read_only ? nullptr : &numbers_);
  if (outcome.result == DISP_E_MEMBERNOTFOUND && is_range()) {
    if (!has_rank(array_in(range_), sent_.info.type.rank)) {
      refuse(DISP_E_TYPEMISMATCH, wanted_array());
    }
    take_converted(array_in(range_));
  } else if (FAILED(outcome.result)) {
    refuse(outcome.result, wanted_array() + outcome.detail);
  }
}

bool LateArray::is_range() {
  Variant value;
  const HRESULT read = default_value(script_.get(), sent_.locale, value);
  if (read == E_OUTOFMEMORY) throw std::bad_alloc();
  if (FAILED(read) || !is_array(value)) return false;
  if ((value.vt & VT_BYREF) != 0 && FAILED(VariantCopyInd(&range_, &value))) return false;
  if ((value.vt & VT_BYREF) == 0) range_ = std::move(value);
  return !is_unset(range_.parray);
}

void LateArray::lend_nothing(SAFEARRAY* array) {
  const bool line = array != nullptr && sent_.info.type.rank == 1 && is_line(array);
  lent_.array = SAFEARRAY{};
  lent_.array.cDims = static_cast<USHORT>(line ? 2 : sent_.info.type.rank);
  lent_.array.fFeatures = kForeignElements;
  lent_.array.rgsabound[0] = line ? array->rgsabound[0] : SAFEARRAYBOUND{1, 1};
  lent_.second = line ? array->rgsabound[1] : SAFEARRAYBOUND{1, 1};
  array_ = OwnedArray(&lent_.array);
}

void LateArray::lend(SAFEARRAY* array, bool fixed) {
  lent_.array.cDims = array->cDims;
  lent_.array.fFeatures = kForeignElements;
  if (fixed) lent_.array.fFeatures |= FADF_FIXEDSIZE;
  lent_.array.cbElements = array->cbElements;
  lent_.array.cLocks = 0;
  lent_.array.pvData = array->pvData;
  lent_.array.rgsabound[0] = array->rgsabound[0];
  if (array->cDims > 1) lent_.second = array->rgsabound[1];
  array_ = OwnedArray(&lent_.array);
}

HRESULT LateArray::hand_back_changes(bool succeeded) {
  const bool replaced = array_.get() != made_;
  if (!replaced && numbers_.empty()) return S_OK;  // where it lies, or without elements
  if (is_array(range_)) return hand_back_to_range(replaced, succeeded);
  if (script_) {
    if (replaced) {
      const HRESULT refilled = refill_script_array(array_.get(), script_.get());
      const bool no_array = refilled == DISP_E_UNKNOWNNAME || refilled == DISP_E_MEMBERNOTFOUND;
      if (no_array && is_range()) return hand_back_to_range(replaced, succeeded);
      // An object that is no array is what the variable held until now.
      settle();
      if (!no_array || by_value()) return refilled;
      return kept_by_host() ? S_OK : replace_host_array();
    }
    const Results results(array_.get(), numbers_, succeeded);
    return write_back_to_script(results, array_->cDims,
                                array_->rgsabound[array_->cDims - 1].cElements, script_.get());
  }
  if (kept_by_host()) return S_OK;
  if (replaced) return by_value() ? S_OK : replace_host_array();
  if (!holds_what_was_taken()) return S_OK;  // another argument has replaced it
  return write_back(Results(array_.get(), numbers_, succeeded), array_in(*target_));
}

HRESULT LateArray::hand_back_to_range(bool replaced, bool succeeded) {
  HRESULT filled = S_OK;
  if (replaced) {
    filled = fill_array(array_.get(), range_.parray);
  } else {
    const Results results(array_.get(), numbers_, succeeded);
    if (!results.any_due()) return S_OK;
    filled = write_back(results, range_.parray);
  }
  return FAILED(filled) ? filled : set_default_value(script_.get(), range_);
}

HRESULT LateArray::replace_host_array() {
  if (is_array(*target_) && array_in(*target_) != nullptr && is_fixed(array_in(*target_))) {
    return DISP_E_ARRAYISLOCKED;
  }
  const VARTYPE element = is_array(*target_) ? element_of(*target_) : VARTYPE{VT_VARIANT};
  OwnedArray fresh;
  if (array_ && element == sent_.info.type.vt) {
    fresh = std::move(array_);
  } else if (array_) {
    const HRESULT made = recast_array(array_.get(), element, fresh);
    if (FAILED(made)) return made;
  }
  if ((target_->vt & VT_BYREF) == 0) {
    Variant value;
    value.vt = fresh ? static_cast<VARTYPE>(VT_ARRAY | element) : VARTYPE{VT_EMPTY};
    value.parray = fresh.release();
    return put_into(*target_, value);
  }
  if (!is_array(*target_)) return DISP_E_TYPEMISMATCH;  // a typed variable of another kind
  SAFEARRAY*& variable = *target_->pparray;
  SAFEARRAY* const old = std::exchange(variable, fresh.release());
  const HRESULT gone = destroy(old);
  if (FAILED(gone)) fresh = OwnedArray(std::exchange(variable, old));
  return gone;
}

}  // namespace vqmath63::automation
