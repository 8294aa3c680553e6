// An argument of a call by name: from the host's VARIANT to the interface value and back.
#pragma once

#include <cstdint>
#include <string>

#include "automation/class_info.hpp"
#include "automation/owners.hpp"

namespace vqmath63::automation {

/// What a late call needs to know of one argument.
struct Sent {
  const char* member;
  const ArgumentInfo& info;
  VARIANT* given;  ///< as sent; null when missing
  LCID locale;
};

/// One argument of a late call, a scalar (LateScalar) or an array (LateArray). Makes the interface
/// value of the parameter's type from whatever the host sent, and after the call hands what the
/// member wrote by reference back in the host's own form.
///
/// The host may run its own code in between, from a callback or a getter, and give a variable
/// another value. Such a variable keeps that one: what is not plain memory of the parameter's own
/// type is worked on in a value of ours, or locked, and written only where it still holds what was
/// taken from it.
///
/// Errors: 13 and 6, naming member, argument and element.
class LateArgument {
 public:
  virtual ~LateArgument() = default;
  LateArgument(const LateArgument&) = delete;
  LateArgument& operator=(const LateArgument&) = delete;

  /// Where the interface value is: the reference to it, for a parameter by reference.
  void* place() const { return place_; }

  /// To be called on all arguments after the call and before hand_back() on the first: notes
  /// whether the host has given the variable another value, which one argument's result would hide
  /// from another one's of the same variable.
  void settle() noexcept { kept_by_host_ = noted_ && !holds_what_was_taken(); }

  /// The value is an object of a script, whose own code takes the result.
  bool is_script() const { return static_cast<bool>(script_); }

  /// Hands what the member wrote back to the host; after a failed call only what it changed.
  HRESULT hand_back(bool succeeded) noexcept;

 protected:
  /// Follows the references to the variant that holds the value. `sent` outlives this.
  explicit LateArgument(const Sent& sent);

  [[noreturn]] void refuse(HRESULT why, const std::string& detail) const;
  /// The value was taken from the variable as it is now.
  void note_taken() noexcept {
    taken_ = identity();
    noted_ = true;
  }
  bool holds_what_was_taken() const noexcept { return taken_ == identity(); }
  bool kept_by_host() const { return kept_by_host_; }
  /// The value was sent itself and not by a reference, so that nothing can be put in its place.
  bool by_value() const { return target_ == sent_.given && (target_->vt & VT_BYREF) == 0; }

  virtual HRESULT hand_back_changes(bool succeeded) = 0;

  const Sent& sent_;
  VARIANT* target_;              // the variant that holds the value, behind any references to it
  Reference<IDispatch> script_;  // the object in target_, where there is one
  void* place_ = nullptr;

 private:
  // What tells one value of a variable from another: its type, its bits, those behind a reference,
  // and the characters of a text.
  struct Identity {
    VARTYPE type = VT_EMPTY;
    std::int64_t bits = 0;
    std::uint64_t behind = 0;
    std::uint64_t text = 0;
    friend bool operator==(const Identity&, const Identity&) = default;
  };
  Identity identity() const noexcept;

  Identity taken_;
  bool noted_ = false;
  bool kept_by_host_ = false;
};

/// Puts `value` into a host's variant, and lets go of what that held; the variant keeps what cannot
/// be let go, which is then the result.
HRESULT put_into(VARIANT& variable, Variant& value) noexcept;

}  // namespace vqmath63::automation
