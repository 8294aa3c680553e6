#include "automation/late_argument.hpp"

#include <algorithm>
#include <cstring>

#include "automation/elements.hpp"
#include "automation/failure.hpp"
#include "automation/text.hpp"
#include "frame/fault.hpp"

namespace vqmath63::automation {

LateArgument::LateArgument(const Sent& sent) : sent_(sent), target_(sent.given) {
  if (target_ == nullptr) return;
  constexpr VARTYPE kVariantReference = VT_BYREF | VT_VARIANT;
  for (int level = 0; target_->vt == kVariantReference; ++level) {
    constexpr int kMostLevels = 8;  // one that refers to itself has no end
    if (target_->pvarVal == nullptr || level == kMostLevels) {
      refuse(DISP_E_TYPEMISMATCH, "is no valid reference");
    }
    target_ = target_->pvarVal;
  }
  if ((target_->vt & VT_BYREF) != 0 && target_->byref == nullptr) {
    refuse(DISP_E_TYPEMISMATCH, "is a null reference");
  }
  // Held, for the call may lead its variable to let it go.
  if (target_->vt == VT_DISPATCH) script_ = Reference<IDispatch>::to(target_->pdispVal);
  if (target_->vt == (VT_DISPATCH | VT_BYREF)) {
    script_ = Reference<IDispatch>::to(*target_->ppdispVal);
  }
}

void LateArgument::refuse(HRESULT why, const std::string& detail) const {
  const std::int32_t number = number_of_result(why);
  raise_for_argument(number < 0 ? number_of(ErrorNumber::kTypeMismatch) : number, sent_.member,
                     sent_.info.name, detail);
}

LateArgument::Identity LateArgument::identity() const noexcept {
  Identity id;
  id.type = target_->vt;
  id.bits = target_->llVal;
  const auto type = static_cast<VARTYPE>(target_->vt & ~VT_BYREF);
  const bool behind = id.type != type;
  if (behind && target_->byref == nullptr) return id;
  if (behind) {
    const std::size_t size = (type & VT_ARRAY) != 0 ? sizeof(SAFEARRAY*) : value_size(type);
    const std::size_t told = std::min(size, sizeof id.behind);
    std::memcpy(&id.behind, static_cast<const std::byte*>(target_->byref) + (size - told), told);
  }
  if (type == VT_BSTR) id.text = text_hash(behind ? *target_->pbstrVal : target_->bstrVal);
  return id;
}

HRESULT LateArgument::hand_back(bool succeeded) noexcept {
  if (sent_.given == nullptr || !sent_.info.type.by_ref || sent_.info.type.read_only) return S_OK;
  try {
    return hand_back_changes(succeeded && !sent_.info.lent);
  } catch (...) {  // no memory for a name or a list of arguments
    return E_OUTOFMEMORY;
  }
}

HRESULT put_into(VARIANT& variable, Variant& value) noexcept {
  Variant old;
  static_cast<VARIANT&>(old) = variable;
  variable = value.release();
  const HRESULT gone = clear(old);
  if (SUCCEEDED(gone)) return S_OK;
  static_cast<VARIANT&>(value) = variable;
  variable = old.release();
  return gone;
}

}  // namespace vqmath63::automation
