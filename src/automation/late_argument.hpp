// An argument of a call by name: from the host's VARIANT to the interface value and back.
#pragma once

#include <string>
#include <type_traits>

#include "automation/class_info.hpp"

namespace vqmath63::automation {

/// One argument of a late call. Makes the interface value of the parameter's type from whatever
/// the host sent, and after the call hands a by-reference value back in the host's own form.
///
/// - A value of the parameter's own type is used in place; any other is converted as the system
///   converts VARIANTs. A missing optional argument takes its default.
/// - An array of the exact type is used in place. An array of variants or of another numeric type,
///   and a script's array object (an IDispatch with `length` and elements "0", "1", ...), is
///   converted element by element; afterwards the elements that the call changed are written
///   back. A re-dimensioned array replaces the host's: in its own element type, or as an array of
///   variants where the host's variable held no array (scripts can index no other).
/// - A by-reference scalar given as a script object is read from and written to its `value`.
///
/// Errors: 13 and 6, naming member, argument and element.
class LateArgument {
 public:
  /// `given` is null for a missing argument.
  LateArgument(const char* member, const ArgumentInfo& info, VARIANT* given, LCID locale);
  ~LateArgument();
  LateArgument(const LateArgument&) = delete;
  LateArgument& operator=(const LateArgument&) = delete;

  /// The interface value, or the reference to it.
  template <class Abi>
  Abi as() {
    if constexpr (std::is_pointer_v<Abi> && !std::is_same_v<Abi, BSTR>) {
      return static_cast<Abi>(place_);
    } else {
      return *static_cast<Abi*>(place_);
    }
  }

  /// Hands by-reference values back to the host. To be called once, after a call that returned.
  HRESULT hand_back() noexcept;

 private:
  enum class Form {
    kInPlace,      // the host's own value or array
    kConverted,    // a value or array of ours, handed back by conversion
    kLent,         // an array passed by value, over the host's elements
    kScriptValue,  // the `value` of script_
    kScriptArray   // the array object script_
  };

  struct Unfilled {};
  LateArgument(Unfilled, const char* member, const ArgumentInfo& info, VARIANT* given, LCID locale);

  void take_default();
  void take_scalar();
  void take_array();
  void lend(SAFEARRAY* array);
  std::string wanted_array() const;
  [[noreturn]] void refuse(HRESULT why, const std::string& detail) const;
  HRESULT hand_back_scalar();
  HRESULT hand_back_array();
  HRESULT replace_host_array();

  const char* member_;
  const ArgumentInfo& info_;
  VARIANT* given_;   // as sent; null when missing
  VARIANT* target_;  // the variant that holds the value, behind any by-reference variants
  IDispatch* script_ = nullptr;  // the object in target_, where there is one
  LCID locale_;
  Form form_ = Form::kInPlace;
  void* place_ = nullptr;           // where the interface value is
  VARIANT value_;                   // a scalar of ours
  VARIANT before_;                  // value_ as it was before the call
  SAFEARRAY* array_ = nullptr;      // an array of ours; the call may replace it
  SAFEARRAY* converted_ = nullptr;  // array_ as it was made
  SAFEARRAY* original_ = nullptr;   // a copy of the elements before the call
  SAFEARRAY* locked_ = nullptr;     // the host's array that lent_ stands for
  struct {
    SAFEARRAY array;
    SAFEARRAYBOUND second;  // room for rgsabound[1]
  } lent_;
};

}  // namespace vqmath63::automation
