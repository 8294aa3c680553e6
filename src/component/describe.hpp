// Texts made from the member tables: the plain description, the interface text, the reference.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "automation/class_info.hpp"

namespace vqmath63::component {

using ClassList = std::span<const automation::ClassInfo* const>;

/// The lines of VqDescribe: of all classes, or of the members of one.
std::string describe_classes(ClassList classes);
std::string describe_members(const automation::ClassInfo& info);
/// Those of the words and named numbers that a member's arguments are among; nothing when the class
/// has no such member.
std::optional<std::string> describe_words(const automation::ClassInfo& info,
                                          const std::string& member);

/// The sets of named numbers that arguments are among, each once.
std::vector<const automation::NumberNames*> number_names(ClassList classes);

/// The type library in interface definition language, as widl compiles it.
std::string interface_text(ClassList classes);

/// The manifest of a side-by-side assembly, with which hosts use the component without
/// registration.
std::string manifest_text(ClassList classes);

/// What tools/make_reference.py makes the reference's pages of. A line each, fields between tabs:
/// "class", its name, programmatic id and help; "numbers", name and help of a set of named numbers
/// and each with its value; the members of the class as in describe_members.
std::string reference_text(ClassList classes);

/// "AA40CFD8-6128-4423-B611-27D640E1B235".
std::string guid_text(const GUID& guid);

/// Type as hosts of the Basic family write it: "Single", "Boolean", "Single()", "Single(,)".
std::string host_type(const automation::ValueType& type);

/// A default as such hosts write it: True, "text", 0.5.
std::string host_default(const automation::ArgumentInfo& argument);

}  // namespace vqmath63::component
