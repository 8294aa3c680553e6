#include "automation/parameter.hpp"

namespace vqmath63::automation {

HRESULT TextConvert::out(const std::string& value, BSTR& target) noexcept {
  try {
    if (text_of(target) == value) return S_OK;  // the host's own string stays in place
    replace_text(target, OwnedText(new_bstr(value)));
    return S_OK;
  } catch (...) {
    return E_OUTOFMEMORY;
  }
}

}  // namespace vqmath63::automation
