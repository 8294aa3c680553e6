#include "host/commands/call_arguments.hpp"

#include <algorithm>
#include <cctype>
#include <iostream>

#include "host/data/values.hpp"
#include "host/failure.hpp"
#include "host/text.hpp"

namespace vqmath63::host {

const MemberDescription& find_member(const std::vector<MemberDescription>& members,
                                     const std::string& class_name, const std::string& name,
                                     std::size_t arguments) {
  const MemberDescription* found = nullptr;
  for (const MemberDescription& member : members) {
    if (!same_letters(member.name, name)) continue;
    if (found == nullptr || found->arguments.size() < arguments) found = &member;
    if (member.kind != MemberKind::kLet && member.arguments.size() >= arguments) return member;
  }
  if (found != nullptr) return *found;
  std::vector<std::string> names;
  for (const MemberDescription& member : members) names.push_back(member.name);
  throw WorkError(class_name + " has no member '" + name + "'" + nearest_of(name, names) +
                  " ('vqhost members " + class_name + "' lists them)");
}

void set_property(DispatchObject& object, const std::vector<MemberDescription>& members,
                  const std::string& class_name, const std::string& setting,
                  std::optional<double> empty_as) {
  const auto equals = setting.find('=');
  if (equals == std::string::npos) {
    throw UsageError("--set " + setting + ": PROPERTY=VALUE is wanted");
  }
  const std::string name = setting.substr(0, equals);
  for (const MemberDescription& member : members) {
    if (member.kind != MemberKind::kLet || !same_letters(member.name, name)) continue;
    object.put(member.name, value_from_text(member.arguments.back().type,
                                            setting.substr(equals + 1), "--set " + name, empty_as));
    return;
  }
  std::vector<std::string> names;
  for (const MemberDescription& member : members) {
    if (member.kind == MemberKind::kLet) names.push_back(member.name);
  }
  throw WorkError(class_name + " has no property '" + name + "' that can be set" +
                  nearest_of(name, names));
}

namespace {

bool is_name(const std::string& text) {
  return !text.empty() && std::isalpha(static_cast<unsigned char>(text[0])) != 0 &&
         std::all_of(text.begin(), text.end(),
                     [](unsigned char c) { return c == '_' || std::isalnum(c) != 0; });
}

}  // namespace

bool is_number(const DeclaredType& type) {
  return type.rank == 0 && (type.vt == VT_R4 || type.vt == VT_R8 || type.vt == VT_I4);
}

CallArguments::CallArguments(const MemberDescription& member, const std::vector<std::string>& given,
                             std::optional<double> empty_as, std::string_view open)
    : member_(member), texts_(member.arguments.size()), named_(texts_.size(), false) {
  std::size_t next = 0;
  for (const std::string& text : given) {
    const auto equals = text.find('=');
    const std::size_t named =
        equals == std::string::npos ? texts_.size() : index_of(text.substr(0, equals));
    if (named == texts_.size() && is_name(text.substr(0, equals)) && equals != text.npos &&
        !(next < texts_.size() && member.arguments[next].type.vt == VT_BSTR)) {
      std::vector<std::string> names;
      for (const ArgumentDescription& about : member.arguments) names.push_back(about.name);
      throw UsageError(member.name + " has no argument '" + text.substr(0, equals) + "' (" +
                       (names.empty() ? "it takes none" : listed(names)) + ")");
    }
    if (named < texts_.size()) {
      assign(named, text.substr(equals + 1));
      named_[named] = true;
    } else if (next < texts_.size()) {
      assign(next++, text);
    } else {
      throw UsageError(member.name + " takes " + counted(texts_.size(), "argument"));
    }
  }
  for (std::size_t i = 0; i < texts_.size(); ++i) {
    if (!open.empty() && is_number(member.arguments[i].type) && texts_[i] &&
        same_letters(*texts_[i], open)) {
      open_.push_back(i);
      values_.emplace_back();
    } else {
      values_.push_back(value_of(i, empty_as));
    }
  }
}

std::vector<Argument> CallArguments::make() {
  std::vector<Argument> arguments;
  variables_.clear();
  bool by_name = false;
  for (std::size_t i = 0; i < values_.size(); ++i) {
    const ArgumentDescription& about = member_.arguments[i];
    by_name = by_name || named_[i];  // and so are all that follow a named one
    const std::string name = by_name ? about.name : std::string();
    Value value = Value::copy(values_[i]);
    if (!about.by_ref) {
      arguments.push_back({std::move(value), name});
      continue;
    }
    variables_.push_back(std::move(value));
    arguments.push_back({Value::reference(variables_.back()), name});
  }
  return arguments;
}

bool CallArguments::show(bool all) const {
  bool ok = true;
  auto variable = variables_.begin();
  for (const ArgumentDescription& about : member_.arguments) {
    if (!about.by_ref) continue;
    const VARIANT& value = (variable++)->get();
    std::cout << about.name << " = " << value_text(value, all) << '\n';
    if (same_letters(about.name, "qOK") && value.vt == VT_BOOL && value.boolVal == 0) ok = false;
  }
  return ok;
}

std::size_t CallArguments::index_of(const std::string& name) const {
  std::size_t i = 0;
  while (i < texts_.size() && !same_letters(member_.arguments[i].name, name)) ++i;
  return i;
}

void CallArguments::assign(std::size_t i, const std::string& text) {
  if (texts_[i]) throw UsageError(member_.arguments[i].name + ": given twice");
  texts_[i] = text;
}

Value CallArguments::value_of(std::size_t i, std::optional<double> empty_as) const {
  const ArgumentDescription& about = member_.arguments[i];
  if (texts_[i] && *texts_[i] != "-") {
    return value_from_text(about.type, *texts_[i], about.name, empty_as);
  }
  if (about.fallback && about.by_ref) {
    // The default in a variable, so that the output arrives; texts stand in quotes.
    const std::string& text = *about.fallback;
    const bool has_quotes = text.size() >= 2 && text.front() == '"';
    return value_from_text(about.type, has_quotes ? text.substr(1, text.size() - 2) : text,
                           about.name, std::nullopt);
  }
  return about.by_ref ? Value() : Value::missing();
}

}  // namespace vqmath63::host
