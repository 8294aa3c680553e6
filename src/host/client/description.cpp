#include "host/client/description.hpp"

#include <sstream>

#include "host/client/dispatch_client.hpp"
#include "host/client/entry_points.hpp"
#include "host/text.hpp"

namespace vqmath63::host {
namespace {

struct TypeName {
  VARTYPE vt;
  const char* name;
};
constexpr TypeName kTypeNames[] = {{VT_R4, "Single"},    {VT_R8, "Double"}, {VT_I4, "Long"},
                                   {VT_BOOL, "Boolean"}, {VT_DATE, "Date"}, {VT_BSTR, "String"}};

DeclaredType declared_type(std::string text) {
  DeclaredType type;
  const auto bracket = text.find('(');
  if (bracket != std::string::npos) {
    type.rank = text.compare(bracket, std::string::npos, "(,)") == 0 ? 2 : 1;
    text.resize(bracket);
  }
  for (const TypeName& known : kTypeNames) {
    if (text == known.name) type.vt = known.vt;
  }
  return type;
}

// The lines of a description, each as its fields.
std::vector<std::vector<std::string>> described(const OLECHAR* programmatic_id, HRESULT* result) {
  BSTR text = nullptr;
  *result = entry_points().describe(programmatic_id, &text);
  std::istringstream lines(taken_text(text));
  std::vector<std::vector<std::string>> table;
  for (std::string line; std::getline(lines, line);) {
    auto& fields = table.emplace_back();
    for (std::size_t from = 0; from <= line.size();) {
      const auto to = std::min(line.find('\t', from), line.size());
      fields.push_back(line.substr(from, to - from));
      from = to + 1;
    }
  }
  return table;
}

}  // namespace

std::string type_name(VARTYPE vt) {
  for (const TypeName& known : kTypeNames) {
    if (known.vt == vt) return known.name;
  }
  return "Variant";
}

std::vector<ClassDescription> describe_classes() {
  HRESULT result = S_OK;
  std::vector<ClassDescription> classes;
  for (const auto& fields : described(nullptr, &result)) {
    if (fields.size() >= 3) classes.push_back({fields[0], fields[1], fields[2]});
  }
  if (FAILED(result)) throw AutomationError("the component does not describe itself");
  return classes;
}

std::vector<MemberDescription> describe_members(const std::string& class_name) {
  constexpr std::size_t kArgumentsAt = 5;
  constexpr std::size_t kArgumentFields = 4;
  constexpr std::string_view kOptional = "optional=";
  HRESULT result = S_OK;
  std::vector<MemberDescription> members;
  for (const auto& fields : described(utf16(programmatic_id(class_name)).c_str(), &result)) {
    if (fields.size() < kArgumentsAt) continue;
    MemberDescription& member = members.emplace_back();
    member.kind = fields[0] == "method" ? MemberKind::kMethod
                  : fields[0] == "get"  ? MemberKind::kGet
                                        : MemberKind::kLet;
    member.name = fields[1];
    member.result = declared_type(fields[3]);
    member.help = fields[4];
    for (std::size_t at = kArgumentsAt; at + kArgumentFields <= fields.size();
         at += kArgumentFields) {
      ArgumentDescription& argument = member.arguments.emplace_back();
      argument.name = fields[at];
      argument.type = declared_type(fields[at + 1]);
      argument.by_ref = fields[at + 2] != "in";
      if (fields[at + 3].starts_with(kOptional)) {
        argument.fallback = fields[at + 3].substr(kOptional.size());
      }
    }
  }
  if (SUCCEEDED(result)) return members;
  std::vector<std::string> names;
  for (const ClassDescription& each : describe_classes()) names.push_back(each.name);
  throw WorkError("there is no class '" + class_name + "'" + nearest_of(class_name, names) +
                  " (classes: " + listed(names) + ")");
}

std::vector<std::string> describe_words(const std::string& class_name, const std::string& member) {
  HRESULT result = S_OK;
  std::vector<std::string> words;
  for (const auto& fields :
       described(utf16(programmatic_id(class_name) + "." + member).c_str(), &result)) {
    if (fields.size() == 2) words.push_back(fields[1]);
  }
  if (FAILED(result))
    throw AutomationError("the component does not tell of " + class_name + "." + member);
  return words;
}

std::string basic_declaration(const MemberDescription& member) {
  const bool has_result = member.result.vt != VT_EMPTY;
  std::string text = member.kind == MemberKind::kGet   ? "Property Get "
                     : member.kind == MemberKind::kLet ? "Property Let "
                     : has_result                      ? "Function "
                                                       : "Sub ";
  text += member.name + "(";
  bool first = true;
  for (const ArgumentDescription& argument : member.arguments) {
    if (!first) text += ", ";
    first = false;
    if (argument.fallback) text += "Optional ";
    text += argument.by_ref ? "ByRef " : "ByVal ";
    text += argument.name;
    if (argument.type.rank > 0) text += argument.type.rank == 2 ? "(,)" : "()";
    text += " As " + type_name(argument.type.vt);
    if (argument.fallback) text += " = " + *argument.fallback;
  }
  text += ")";
  if (!has_result) return text;
  text += " As " + type_name(member.result.vt);
  if (member.result.rank > 0) text += member.result.rank == 2 ? "(,)" : "()";
  return text;
}

}  // namespace vqmath63::host
