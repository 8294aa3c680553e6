// An array of a call by name.
#pragma once

#include "automation/array_conversion.hpp"
#include "automation/class_info.hpp"
#include "automation/late_argument.hpp"

namespace vqmath63::automation {

/// The host's arrays that a call by name works on. Each is locked once, however many arguments it
/// stands for, so that code of the host that runs meanwhile can neither free nor resize it.
class HeldArrays {
 public:
  HeldArrays() = default;
  ~HeldArrays() { release(); }
  HeldArrays(const HeldArrays&) = delete;
  HeldArrays& operator=(const HeldArrays&) = delete;

  /// Locks the array unless it is locked here already. `fixed` tells whether its owner had made it
  /// fixed, or locked it, before.
  HRESULT hold(SAFEARRAY* array, bool& fixed) noexcept;
  void release() noexcept;

 private:
  struct Held {
    SAFEARRAY* array;
    bool fixed;
  };
  Held held_[kMostArguments];
  std::size_t count_ = 0;
};

/// - An array of the exact type is used where it lies: the call works on a descriptor of ours over
///   its elements. An array of variants or of another numeric type, and a script's array object (an
///   IDispatch with `length` and elements "0", "1", ...), is converted element by element;
///   afterwards the elements get the results, but for those whose number they have already. A
///   re-dimensioned array replaces the host's: in its own element type, or as an array of variants
///   where the host's variable held no array (scripts can index no other).
/// - A range of a sheet, an object whose value is an array, is converted like that array; results
///   are put into it as a whole. Its shape is fixed: what they leave of it becomes empty.
/// - What is only read is not handed back. What the member only writes is not converted: such a
///   variable may hold anything.
class LateArray final : public LateArgument {
 public:
  LateArray(const Sent& sent, HeldArrays& held);

 private:
  void take_array(HeldArrays& held);
  void take_converted(SAFEARRAY* array);
  void take_script_array();
  bool is_range();
  void lend(SAFEARRAY* array, bool fixed);
  void lend_nothing(SAFEARRAY* array);
  std::string wanted_array() const;
  HRESULT hand_back_changes(bool succeeded) override;
  HRESULT hand_back_to_range(bool replaced, bool succeeded);
  HRESULT replace_host_array();

  Variant range_;        // what a range of a sheet holds; empty for all else
  HostNumbers numbers_;  // of an array that was converted and may be written
  // An array of our own and room for its second dimension: the host's elements under another
  // descriptor, so that whoever re-dimensions the array cannot free them; or no elements, in the
  // shape that the host's array has, so that one which comes back erased is told from one left
  // alone.
  struct {
    SAFEARRAY array;
    SAFEARRAYBOUND second;
  } lent_;
  OwnedArray array_;           // the member's array; the call may put another one here
  SAFEARRAY* made_ = nullptr;  // array_ before the call
};

}  // namespace vqmath63::automation
