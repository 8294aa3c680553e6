// Calls of a member by name with arguments from a command line.
#pragma once

#include <list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/client/description.hpp"
#include "host/client/dispatch_client.hpp"

namespace vqmath63::host {

/// The row of a member that takes so many arguments, else its largest one; of a property the row
/// that reads it before the one that sets it. WorkError when the class has no such member.
const MemberDescription& find_member(const std::vector<MemberDescription>& members,
                                     const std::string& class_name, const std::string& name,
                                     std::size_t arguments);

/// Sets a property from a text PROPERTY=VALUE.
void set_property(DispatchObject& object, const std::vector<MemberDescription>& members,
                  const std::string& class_name, const std::string& setting,
                  std::optional<double> empty_as);

/// Whether a declared type is a number: Single, Double or Long.
bool is_number(const DeclaredType& type);

/// The arguments of a member, with the variables behind those that are passed by reference.
class CallArguments {
 public:
  /// Texts as value_from_text takes them, in order or as NAME=VALUE; "-" leaves an argument out.
  /// UsageError where they do not fit the member. A number given as `open` is left to set().
  CallArguments(const MemberDescription& member, const std::vector<std::string>& given,
                std::optional<double> empty_as, std::string_view open = {});

  /// The text given for argument i; none where it was left out at the end.
  const std::optional<std::string>& text(std::size_t i) const { return texts_[i]; }
  /// The arguments given as `open`.
  const std::vector<std::size_t>& open() const { return open_; }
  void set(std::size_t i, Value value) { values_[i] = std::move(value); }
  const Value& value(std::size_t i) const { return values_[i]; }

  /// The arguments of one more call, with variables of their own.
  std::vector<Argument> make();

  /// Prints what came back in the variables of the last call; false when a flag qOK is False.
  bool show(bool all) const;

 private:
  std::size_t index_of(const std::string& name) const;
  void assign(std::size_t i, const std::string& text);
  Value value_of(std::size_t i, std::optional<double> empty_as) const;

  const MemberDescription& member_;
  std::vector<std::optional<std::string>> texts_;
  std::vector<bool> named_;
  std::vector<std::size_t> open_;
  std::vector<Value> values_;
  std::list<Value> variables_;
};

}  // namespace vqmath63::host
