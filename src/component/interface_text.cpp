#include <bit>
#include <cstdio>
#include <string_view>

#include "component/class_list.hpp"
#include "component/describe.hpp"

namespace vqmath63::component {

using automation::ArgumentInfo;
using automation::ClassInfo;
using automation::MemberInfo;
using automation::MemberKind;
using automation::ValueType;

std::string guid_text(const GUID& g) {
  char text[40];
  std::snprintf(text, sizeof text, "%08lX-%04X-%04X-%02X%02X-%02X%02X%02X%02X%02X%02X",
                static_cast<unsigned long>(g.Data1), g.Data2, g.Data3, g.Data4[0], g.Data4[1],
                g.Data4[2], g.Data4[3], g.Data4[4], g.Data4[5], g.Data4[6], g.Data4[7]);
  return text;
}

namespace {

std::string quoted(const std::string& text) {
  std::string out = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') out += '\\';
    out += c;
  }
  return out + "\"";
}

std::string scalar_type(VARTYPE vt) {
  switch (vt) {
    case VT_R4:
      return "float";
    case VT_R8:
      return "double";
    case VT_I4:
      return "long";
    case VT_BOOL:
      return "VARIANT_BOOL";
    case VT_DATE:
      return "DATE";
    default:
      return "BSTR";
  }
}

std::string interface_type(const ValueType& type) {
  const std::string scalar = scalar_type(type.vt);
  if (type.rank > 0) return "SAFEARRAY(" + scalar + ")*";
  return type.by_ref ? scalar + "*" : scalar;
}

// In the words that the compiler of the interface text stores rightly. It takes whole numbers only:
// of a real number its bits, and for an empty text a mark that packaging/windows puts right in what
// it wrote. Any other text it refuses.
std::string default_attribute(const ArgumentInfo& argument) {
  char real[16];
  switch (argument.type.vt) {
    case VT_BOOL:
      return argument.fallback.number != 0.0 ? ", defaultvalue(-1)" : ", defaultvalue(0)";
    case VT_I4:
      return ", defaultvalue(" + std::to_string(static_cast<long>(argument.fallback.number)) + ")";
    case VT_R4:
      std::snprintf(real, sizeof real, "0x%08X",
                    std::bit_cast<std::uint32_t>(static_cast<float>(argument.fallback.number)));
      return std::string(", defaultvalue(") + real + ")";
    case VT_BSTR:
      if (argument.fallback.text == std::string_view()) return ", defaultvalue(0x7A7A7A7A)";
      return ", defaultvalue(" + quoted(argument.fallback.text) + ")";
    default:
      return "";
  }
}

std::string argument_text(const ArgumentInfo& argument) {
  std::string text = argument.type.by_ref ? "[in, out" : "[in";
  if (argument.optional) text += ", optional" + default_attribute(argument);
  return text.append("] ").append(interface_type(argument.type)).append(" ").append(argument.name);
}

std::string member_text(const MemberInfo& member) {
  std::string text = "        [id(" + std::to_string(member.dispid) + ")";
  if (member.kind == MemberKind::kPropertyGet) text += ", propget";
  if (member.kind == MemberKind::kPropertyLet) text += ", propput";
  text += ", helpstring(" + quoted(member.help) + ")]\n        HRESULT " + member.name + "(";
  bool first = true;
  const auto add = [&](const std::string& parameter) {
    if (!first) text += ", ";
    first = false;
    text += parameter;
  };
  for (const ArgumentInfo& argument : member.arguments) add(argument_text(argument));
  if (member.result.vt != VT_EMPTY) {
    // The library keeps one spelling of a name, whatever its letter case: that of an argument.
    add("[out, retval] " + scalar_type(member.result.vt) + "* Result");
  }
  return text + ");\n";
}

std::string enumeration_text(const automation::NumberNames& names) {
  std::string text = "\n    typedef [public, helpstring(" + quoted(names.help) + ")]\n    enum " +
                     names.name + " {";
  const char* separator = "\n";
  for (const automation::NumberName& number : names.numbers) {
    text.append(separator).append("        ").append(number.name).append(" = ");
    text += std::to_string(number.number);
    separator = ",\n";
  }
  return text.append("\n    } ").append(names.name).append(";\n");
}

std::string class_text(const ClassInfo& info) {
  const std::string name = info.name;
  std::string text = "    [object, uuid(" + guid_text(info.iid) +
                     "), dual, hidden, nonextensible, oleautomation, helpstring(" +
                     quoted(info.help) + ")]\n    interface _" + name + " : IDispatch {\n";
  for (const MemberInfo& member : info.members) text += member_text(member);
  text += "    }\n\n    [uuid(" + guid_text(info.clsid) + "), helpstring(" + quoted(info.help) +
          ")]\n    coclass " + name + " {\n        [default] interface _" + name + ";\n    }\n";
  return text;
}

}  // namespace

std::string interface_text(ClassList classes) {
  std::string text =
      "// Made from the member tables of the classes.\n"
      "import \"oaidl.idl\";\n\n[uuid(" +
      guid_text(kLibraryId) + "), version(" + std::to_string(kLibraryMajor) + "." +
      std::to_string(kLibraryMinor) + "), helpstring(" + quoted(kLibraryTitle) + ")]\nlibrary " +
      std::string(automation::kLibraryName) + " {\n    importlib(\"stdole2.tlb\");\n";
  for (const automation::NumberNames* names : number_names(classes)) {
    text += enumeration_text(*names);
  }
  for (const ClassInfo* info : classes) text += "\n" + class_text(*info);
  return text + "}\n";
}

}  // namespace vqmath63::component
