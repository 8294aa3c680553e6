// A number, date, Boolean or text of a call by name.
#pragma once

#include "automation/late_argument.hpp"

namespace vqmath63::automation {

/// - A variable of the parameter's own type, passed as a reference to it, is used in place; any
///   other value becomes one of ours, converted as the system converts VARIANTs. A missing optional
///   argument takes its default.
/// - What the member only writes is not converted: a variable of another type that holds no number
///   starts as zero or an empty text.
/// - After a call that succeeded the variable holds the result: converted to the variable's type
///   where that is fixed, of the result's own type in a VARIANT.
/// - A by-reference scalar given as a script object is read from and written to its `value`.
class LateScalar final : public LateArgument {
 public:
  explicit LateScalar(const Sent& sent);

 private:
  void take_default();
  void take(const VARIANT& from);
  void take_number(const VARIANT& from);
  HRESULT hand_back_changes(bool succeeded) override;

  bool in_place_ = false;
  bool same_type_ = false;   // the host's VARIANT holds the parameter's own type
  Variant value_;            // the value, where it is not used in place
  std::int64_t before_ = 0;  // bits of value_ before the call; a text that changes is another one
};

}  // namespace vqmath63::automation
