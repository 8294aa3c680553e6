#include "component/describe.hpp"

#include <algorithm>
#include <charconv>

#include "component/class_list.hpp"

namespace vqmath63::component {

using automation::ArgumentInfo;
using automation::ClassInfo;
using automation::MemberInfo;
using automation::MemberKind;
using automation::ValueType;

std::string host_type(const ValueType& type) {
  std::string name;
  switch (type.vt) {
    case VT_R4:
      name = "Single";
      break;
    case VT_R8:
      name = "Double";
      break;
    case VT_I4:
      name = "Long";
      break;
    case VT_BOOL:
      name = "Boolean";
      break;
    case VT_DATE:
      name = "Date";
      break;
    case VT_BSTR:
      name = "String";
      break;
    default:
      break;
  }
  if (type.rank > 0) name += type.rank == 2 ? "(,)" : "()";
  return name;
}

namespace {

const char* direction(const ArgumentInfo& argument) {
  if (!argument.type.by_ref) return "in";
  if (argument.type.read_only) return "in,ref";
  if (argument.lent && !argument.reduced) return "in,lent";
  return argument.only_written || argument.answer ? "out" : "in,out";
}

}  // namespace

std::string host_default(const ArgumentInfo& argument) {
  const automation::DefaultValue& value = argument.fallback;
  if (value.text != nullptr) return "\"" + std::string(value.text) + "\"";
  if (argument.type.vt == VT_BOOL) return value.number != 0.0 ? "True" : "False";
  char digits[32];
  const auto end = std::to_chars(digits, digits + sizeof digits, value.number).ptr;
  return {digits, end};
}

std::string describe_classes(ClassList classes) {
  std::string text;
  for (const ClassInfo* info : classes) {
    text.append(programmatic_id(*info)).append("\t").append(info->name).append("\t");
    text.append(info->help).append("\t").append(guid_text(info->clsid)).append("\n");
  }
  return text;
}

std::string describe_members(const ClassInfo& info) {
  std::string text;
  for (const MemberInfo& member : info.members) {
    text += member.kind == MemberKind::kMethod        ? "method"
            : member.kind == MemberKind::kPropertyGet ? "get"
                                                      : "let";
    text.append("\t").append(member.name).append("\t").append(std::to_string(member.dispid));
    text.append("\t").append(host_type(member.result)).append("\t").append(member.help);
    for (const ArgumentInfo& argument : member.arguments) {
      text.append("\t").append(argument.name).append("\t").append(host_type(argument.type));
      text.append("\t").append(direction(argument)).append("\t");
      text += argument.optional ? "optional=" + host_default(argument) : "required";
    }
    text += "\n";
  }
  return text;
}

std::optional<std::string> describe_words(const ClassInfo& info, const std::string& member) {
  std::optional<std::string> text;
  for (const MemberInfo& row : info.members) {
    if (row.hash != automation::name_hash(member.c_str())) continue;
    if (!text) text.emplace();
    for (const ArgumentInfo& argument : row.arguments) {
      if (argument.words != nullptr) {
        const std::string words = argument.words();
        for (std::size_t at = 0; at < words.size();) {
          const std::size_t end = std::min(words.find('\n', at), words.size());
          text->append(argument.name).append("\t").append(words, at, end - at).append("\n");
          at = end + 1;
        }
      }
      if (argument.numbers != nullptr) {
        for (const automation::NumberName& number : argument.numbers->numbers) {
          text->append(argument.name).append("\t").append(number.name).append("\t");
          text->append(std::to_string(number.number)).append("\t");
          text->append(argument.numbers->name).append("\t").append(argument.numbers->help);
          text->append("\n");
        }
      }
    }
  }
  return text;
}

std::vector<const automation::NumberNames*> number_names(ClassList classes) {
  std::vector<const automation::NumberNames*> all;
  for (const ClassInfo* info : classes) {
    for (const MemberInfo& member : info->members) {
      for (const ArgumentInfo& argument : member.arguments) {
        const bool is_new = std::find(all.begin(), all.end(), argument.numbers) == all.end();
        if (argument.numbers != nullptr && is_new) all.push_back(argument.numbers);
      }
    }
  }
  return all;
}

}  // namespace vqmath63::component
