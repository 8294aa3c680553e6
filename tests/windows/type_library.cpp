// The type library inside the component, as hosts that compile against it read it, held to
// tests/data/interface.tsv. Argument: the path of the component.
#include <charconv>
#include <iterator>

#include "check.hpp"
#include "component/interface_table.hpp"

namespace {

using namespace vqmath63::component::test;

GUID guid_of(const std::string& text) {
  GUID guid{};
  const std::string braced = "{" + text + "}";
  CLSIDFromString(std::wstring(braced.begin(), braced.end()).c_str(), &guid);
  return guid;
}

std::string type_name(VARTYPE vt) {
  switch (vt) {
    case VT_R4:
      return "Single";
    case VT_R8:
      return "Double";
    case VT_I4:
      return "Long";
    case VT_BOOL:
      return "Boolean";
    case VT_DATE:
      return "Date";
    case VT_BSTR:
      return "String";
    default:
      return "type " + std::to_string(vt);
  }
}

// As the table writes it, but for the number of dimensions, which the library does not tell.
std::string type_text(const TYPEDESC& type) {
  if (type.vt == VT_PTR) return "ref " + type_text(*type.lptdesc);
  if (type.vt == VT_SAFEARRAY) return type_name(type.lptdesc->vt) + "()";
  return type_name(type.vt);
}

std::string default_text(const PARAMDESC& parameter) {
  if ((parameter.wParamFlags & PARAMFLAG_FHASDEFAULT) == 0) return " without default";
  const VARIANT& value = parameter.pparamdescex->varDefaultValue;
  std::string text = " " + type_name(value.vt) + "=";
  char digits[32];  // the fewest that tell this Single from any other
  char* const end = std::to_chars(digits, std::end(digits), value.fltVal).ptr;
  if (value.vt == VT_R4) return text.append(&digits[0], end);
  if (value.vt == VT_BOOL && value.boolVal == VARIANT_TRUE) return text + "True";
  const std::wstring words = value.vt == VT_BSTR && value.bstrVal != nullptr ? value.bstrVal : L"";
  return text + '"' + std::string(words.begin(), words.end()) + '"';
}

// Type, use and default of a parameter.
std::string parameter_text(const ELEMDESC& parameter) {
  constexpr struct {
    USHORT flag;
    const char* word;
  } kUses[] = {{PARAMFLAG_FIN, " in"},
               {PARAMFLAG_FOUT, " out"},
               {PARAMFLAG_FRETVAL, " result"},
               {PARAMFLAG_FOPT, " optional"}};
  std::string text = type_text(parameter.tdesc);
  for (const auto& use : kUses) {
    if ((parameter.paramdesc.wParamFlags & use.flag) != 0) text += use.word;
  }
  const bool optional = (parameter.paramdesc.wParamFlags & PARAMFLAG_FOPT) != 0;
  return optional ? text + default_text(parameter.paramdesc) : text;
}

std::string wanted_text(const InterfaceArgument& argument) {
  std::string type = argument.type.substr(0, argument.type.find('('));
  std::string text = (argument.by_ref ? "ref " : "") + type;
  if (type != argument.type) text += "()";
  text += argument.by_ref ? " in out" : " in";
  return argument.optional ? text + " optional " + type + "=" + argument.fallback : text;
}

void same(const std::string& got, const std::string& wanted, const std::string& what) {
  checks.that(got == wanted, what + ": '" + got + "', wanted '" + wanted + "'");
}

void check_member(ITypeInfo* info, UINT index, const InterfaceMember& member,
                  const std::string& of) {
  FUNCDESC* function = nullptr;
  const std::string what = of + "." + member.name;
  checks.result(info->GetFuncDesc(index, &function), S_OK, what);
  if (function == nullptr) return;
  const INVOKEKIND kind = member.kind == "get"   ? INVOKE_PROPERTYGET
                          : member.kind == "let" ? INVOKE_PROPERTYPUT
                                                 : INVOKE_FUNC;
  checks.that(function->memid == member.id, what + ": id");
  checks.that(function->invkind == kind, what + ": " + member.kind);
  checks.that(static_cast<std::size_t>(function->oVft) ==
                  static_cast<std::size_t>(member.slot) * sizeof(void*),
              what + ": slot");
  Text name, help;
  info->GetDocumentation(function->memid, &name.text, &help.text, nullptr, nullptr);
  same(name.ascii(), member.name, what);
  checks.that(SysStringLen(help.text) > 0, what + ": help text");

  std::vector<std::string> wanted;
  for (const InterfaceArgument& argument : member.arguments) {
    wanted.push_back(wanted_text(argument));
  }
  if (!member.result.empty()) wanted.push_back("ref " + member.result + " out result");
  checks.that(static_cast<std::size_t>(function->cParams) == wanted.size(), what + ": arguments");
  for (std::size_t k = 0; k < wanted.size() && static_cast<SHORT>(k) < function->cParams; ++k) {
    same(parameter_text(function->lprgelemdescParam[k]), wanted[k],
         what + ", argument " + std::to_string(k + 1));
  }
  BSTR names[17] = {};
  UINT count = 0;
  info->GetNames(function->memid, names, 17, &count);
  for (UINT k = 0; k < count; ++k) {
    Text taken;
    taken.text = names[k];
    // The value of a property let has no name in there.
    if (k == 0 || k > member.arguments.size() || kind == INVOKE_PROPERTYPUT) continue;
    same(taken.ascii(), member.arguments[k - 1].name, what);
  }
  checks.that(kind == INVOKE_PROPERTYPUT || count > member.arguments.size(), what + ": names");
  info->ReleaseFuncDesc(function);
}

void check_class(ITypeLib* library, const InterfaceClass& of) {
  Holder<ITypeInfo> creatable, dispatch, vtable;
  HREFTYPE reference = 0;
  TYPEATTR* attributes = nullptr;
  checks.result(library->GetTypeInfoOfGuid(guid_of(of.clsid), creatable.place()), S_OK,
                of.name + ": class id");
  if (creatable.get() == nullptr) return;
  Text name;
  creatable->GetDocumentation(MEMBERID_NIL, &name.text, nullptr, nullptr, nullptr);
  same(name.ascii(), of.name, "class");
  creatable->GetTypeAttr(&attributes);
  checks.that(attributes->typekind == TKIND_COCLASS, of.name + ": creatable");
  creatable->ReleaseTypeAttr(attributes);
  creatable->GetRefTypeOfImplType(0, &reference);
  creatable->GetRefTypeInfo(reference, dispatch.place());
  // Of a dual interface the library gives the dispatch view first; its vtable view is type -1.
  dispatch->GetRefTypeOfImplType(static_cast<UINT>(-1), &reference);
  dispatch->GetRefTypeInfo(reference, vtable.place());
  if (!checks.that(vtable.get() != nullptr, of.name + ": dual interface")) return;
  vtable->GetTypeAttr(&attributes);
  checks.that(IsEqualGUID(attributes->guid, guid_of(of.iid)), of.name + ": interface id");
  const UINT members = attributes->cFuncs;
  vtable->ReleaseTypeAttr(attributes);
  checks.that(members == of.members.size(), of.name + ": members " + std::to_string(members));
  for (UINT k = 0; k < members && k < of.members.size(); ++k) {
    check_member(vtable.get(), k, of.members[k], of.name);
  }
}

// Each constant of the enumerations, and nothing else; returns how many enumerations there are.
UINT check_enumerations(ITypeLib* library) {
  std::map<std::string, std::map<std::string, std::string>> wanted, got;
  for (const vqmath63::TableRow& row : vqmath63::table_rows("interface.tsv", "enumerations")) {
    wanted[row["enumeration"]][row["constant"]] = row["number"].text;
  }
  for (UINT i = 0; i < library->GetTypeInfoCount(); ++i) {
    TYPEKIND kind = TKIND_MAX;
    library->GetTypeInfoType(i, &kind);
    if (kind != TKIND_ENUM) continue;
    Holder<ITypeInfo> info;
    library->GetTypeInfo(i, info.place());
    Text name, help;
    library->GetDocumentation(static_cast<INT>(i), &name.text, &help.text, nullptr, nullptr);
    checks.that(SysStringLen(help.text) > 0, name.ascii() + ": help text");
    VARDESC* constant = nullptr;
    for (UINT k = 0; SUCCEEDED(info->GetVarDesc(k, &constant)); ++k) {
      Text constant_name;
      info->GetDocumentation(constant->memid, &constant_name.text, nullptr, nullptr, nullptr);
      got[name.ascii()][constant_name.ascii()] = std::to_string(constant->lpvarValue->lVal);
      info->ReleaseVarDesc(constant);
    }
  }
  checks.that(got == wanted && !wanted.empty(), "the enumerations are those of the table");
  return static_cast<UINT>(wanted.size());
}

}  // namespace

int main(int count, char** words) {
  if (count != 2) return 2;
  CoInitialize(nullptr);
  {
    Holder<ITypeLib> library;
    const std::string path = words[1];
    checks.result(LoadTypeLibEx(std::wstring(path.begin(), path.end()).c_str(), REGKIND_NONE,
                                library.place()),
                  S_OK, "type library");
    const std::vector<InterfaceClass> classes = interface_table();
    checks.that(classes.size() == 9, "nine classes");
    if (library.get() != nullptr) {
      Text name, title;
      library->GetDocumentation(-1, &name.text, &title.text, nullptr, nullptr);
      TLIBATTR* version = nullptr;
      library->GetLibAttr(&version);
      same(name.ascii() + " " + std::to_string(version->wMajorVerNum) + "." +
               std::to_string(version->wMinorVerNum) + ", " + title.ascii(),
           "vq140Analyse 6.3, Quorvane Statistical Analysis 6.3", "the library");
      library->ReleaseTLibAttr(version);
      for (const InterfaceClass& of : classes) check_class(library.get(), of);
      const UINT enumerations = check_enumerations(library.get());
      checks.that(library->GetTypeInfoCount() == 2 * classes.size() + enumerations,
                  "nothing but these");
    }
  }
  CoUninitialize();
  return checks.close();
}
