// What the component tells of its classes and their members.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "automation/types.hpp"

namespace vqmath63::host {

/// A declared type: VT_EMPTY for none, rank 0 for a scalar.
struct DeclaredType {
  VARTYPE vt = VT_EMPTY;
  int rank = 0;
};

struct ArgumentDescription {
  std::string name;
  DeclaredType type;
  bool by_ref = false;
  std::optional<std::string> fallback;  ///< default of an optional argument, as Basic writes it
};

enum class MemberKind { kMethod, kGet, kLet };

struct MemberDescription {
  MemberKind kind = MemberKind::kMethod;
  std::string name;
  DeclaredType result;
  std::string help;
  std::vector<ArgumentDescription> arguments;
};

struct ClassDescription {
  std::string programmatic_id;
  std::string name;
  std::string help;
};

/// All classes.
std::vector<ClassDescription> describe_classes();

/// The members of a class in interface order; WorkError with the names of the classes there are
/// when it is none.
std::vector<MemberDescription> describe_members(const std::string& class_name);

/// The words that arguments of a member must be among, in the component's order; none when they
/// take any text.
std::vector<std::string> describe_words(const std::string& class_name, const std::string& member);

/// "Single", "Boolean", ...
std::string type_name(VARTYPE vt);

/// A member as Basic declares it.
std::string basic_declaration(const MemberDescription& member);

}  // namespace vqmath63::host
