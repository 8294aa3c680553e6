// A component's objects by name: owners of VARIANTs and IDispatch references, and calls with them.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "automation/owners.hpp"
#include "automation/text.hpp"
#include "component/exports.hpp"
#include "host/failure.hpp"

namespace vqmath63::host {

/// A call by name failed; the text is the component's own where it gave one.
struct AutomationError : WorkError {
  using WorkError::WorkError;
};

using ArrayOwner = automation::OwnedArray;
using automation::utf16;
using automation::utf8;

/// The text of a BSTR, which is freed.
std::string taken_text(BSTR text);

/// Between counts of days since 1899-12-30, with the time of day as their fraction, and automation
/// dates: the same from that day on, while before it an automation date's fraction is unsigned.
double automation_date(double days);
double day_count(double automation_date);

/// Owns a VARIANT and what it holds. A new one is empty.
class Value {
 public:
  static Value number(double value);
  static Value whole_number(std::int32_t value);
  static Value boolean(bool value);
  /// A count of days.
  static Value date(double days);
  static Value text(std::string_view utf8);
  /// Takes over the array, whose elements are of type `element`.
  static Value array(VARTYPE element, SAFEARRAY* array);
  /// A copy of another value.
  static Value copy(const Value& from);
  /// What stands for an argument that was left out.
  static Value missing();
  /// Refers to `target` (VT_BYREF | VT_VARIANT), which must outlive the result.
  static Value reference(Value& target);
  /// Refers to the caller's own array variable, which must outlive the result.
  static Value array_reference(VARTYPE element, SAFEARRAY** place);
  static Value boolean_reference(VARIANT_BOOL* place);

  const VARIANT& get() const { return variant_; }
  VARIANT* put() { return &variant_; }
  bool is_empty() const { return variant_.vt == VT_EMPTY; }

 private:
  automation::Variant variant_;
};

/// A new array with lower bounds 1: of `rows` elements, or of rows x columns where `columns` is not
/// 0. WorkError when there is no memory for it.
SAFEARRAY* new_array(VARTYPE element, std::size_t rows, std::size_t columns = 0);

/// An argument of a call; with a name it is passed by that name.
struct Argument {
  Value value;
  std::string name{};
};

/// An object of the component, used by name.
class DispatchObject {
 public:
  /// Creates an object of a class: "ztAccumulate", or its whole programmatic id.
  static DispatchObject create(const std::string& class_name);

  /// Calls a method.
  Value call(const std::string& member, std::vector<Argument> arguments);
  /// Calls a method whose last argument is the flag qOK, which is added here; what it says.
  bool succeeds(const std::string& member, std::vector<Argument> arguments);
  /// Makes many calls of a method at once, with a column of memory for each argument and one for
  /// the results, as VqCallMany takes them. Returns the number of calls that failed.
  std::int64_t call_many(const std::string& method, std::size_t calls,
                         const std::vector<VqColumn>& arguments, VqColumn results = {});
  /// Reads a property.
  Value get(const std::string& property, std::vector<Argument> arguments = {});
  /// Sets a property.
  void put(const std::string& property, Value value);

 private:
  explicit DispatchObject(automation::Reference<IDispatch> object) : object_(std::move(object)) {}
  // The ids of a member and of its arguments of these names.
  std::vector<DISPID> ids_of(const std::string& member, const std::vector<Argument>& arguments);
  Value invoke(const std::string& member, WORD flags, std::vector<Argument>& arguments);

  automation::Reference<IDispatch> object_;
};

/// "vq140Analyse." and the class name, unless that is there already.
std::string programmatic_id(const std::string& class_name);

}  // namespace vqmath63::host
