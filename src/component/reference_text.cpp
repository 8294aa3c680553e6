#include "component/class_list.hpp"
#include "component/describe.hpp"

namespace vqmath63::component {
namespace {

using automation::ArgumentInfo;
using automation::ClassInfo;
using automation::MemberInfo;
using automation::MemberKind;

std::string argument_text(const ArgumentInfo& argument) {
  std::string type = host_type(argument.type);
  std::string name = argument.name;
  if (argument.type.rank > 0) {
    const std::size_t brackets = type.find('(');
    name += type.substr(brackets);
    type.resize(brackets);
  }
  std::string text = argument.type.by_ref ? "ByRef " : "ByVal ";
  text.append(name).append(" As ").append(type);
  if (!argument.optional) return text;
  return "[" + text + " = " + host_default(argument) + "]";
}

std::string declaration(const MemberInfo& member) {
  const bool has_result = member.result.vt != VT_EMPTY;
  std::string text = member.kind == MemberKind::kPropertyGet   ? "Property Get "
                     : member.kind == MemberKind::kPropertyLet ? "Property Let "
                     : has_result                              ? "Function "
                                                               : "Sub ";
  text.append(member.name).append("(");
  for (std::size_t i = 0; i < member.arguments.size(); ++i) {
    if (i > 0) text += ", ";
    text += argument_text(member.arguments[i]);
  }
  text += ")";
  return has_result ? text + " As " + host_type(member.result) : text;
}

}  // namespace

std::string reference_text(ClassList classes) {
  std::string text =
      "# Reference of the members\n\n"
      "Made from the member tables of the classes; `vqhost members CLASS` prints the same. "
      "Members\n"
      "stand in interface order, so that line n of a class is entry n of its dual interface after\n"
      "the seven of IUnknown and IDispatch.\n";
  for (const ClassInfo* info : classes) {
    text.append("\n## ").append(info->name).append("\n\n").append(info->help);
    text.append(" Programmatic id `").append(programmatic_id(*info)).append("`.\n\n");
    text += "| Id | Member | What it does |\n| --- | --- | --- |\n";
    for (const MemberInfo& member : info->members) {
      text.append("| ").append(std::to_string(member.dispid)).append(" | `");
      text.append(declaration(member)).append("` | ").append(member.help).append(" |\n");
    }
    for (const automation::NumberNames* names : number_names({&info, 1})) {
      text.append("\n`").append(names->name).append("`: ").append(names->help);
      const char* separator = " ";
      for (const automation::NumberName& number : names->numbers) {
        text.append(separator).append("`").append(number.name).append("` ");
        text += std::to_string(number.number);
        separator = ", ";
      }
      text += ".\n";
    }
  }
  return text;
}

}  // namespace vqmath63::component
