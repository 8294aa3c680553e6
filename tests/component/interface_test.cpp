// The component held to tests/data/interface.tsv.
#include <cinttypes>

#include "component_host.hpp"
#include "interface_table.hpp"

namespace vqmath63::component::test {
namespace {

using namespace automation::test;

constexpr std::size_t kInherited = 7;  // IUnknown and IDispatch

GUID guid_of(const std::string& text) {
  GUID guid{};
  unsigned n[8] = {};
  EXPECT_EQ(text.size(), 36U);
  std::sscanf(text.c_str(), "%8" SCNx32 "-%4hx-%4hx-%2x%2x-%2x%2x%2x%2x%2x%2x", &guid.Data1,
              &guid.Data2, &guid.Data3, &n[0], &n[1], &n[2], &n[3], &n[4], &n[5], &n[6], &n[7]);
  std::copy(std::begin(n), std::end(n), guid.Data4);
  return guid;
}

std::u16string wide(const std::string& text) {
  return {text.begin(), text.end()};
}

// An instance, made by its class id and asked for the interface that the table promises.
Instance<IDispatch> make(const InterfaceClass& of) {
  const std::u16string id = u"vq140Analyse." + wide(of.name);
  CLSID clsid{};
  EXPECT_EQ(CLSIDFromProgID(id.c_str(), &clsid), S_OK);
  EXPECT_EQ(clsid, guid_of(of.clsid)) << "class id of " << of.name;
  return {id.c_str(), guid_of(of.iid)};
}

// The lines of a description with bars between their fields, without the help.
// Of how a reference is used only that it is one: the rest is no promise.
std::vector<std::string> described_without(std::size_t help, const OLECHAR* id) {
  std::vector<std::string> lines;
  for (const std::string& line : described(id)) {
    std::string kept;
    const std::vector<std::string> fields = split(line, '\t');
    for (std::size_t k = 0; k < fields.size(); ++k) {
      const bool reference = fields[k].starts_with("in,") || fields[k] == "out";
      if (k != help) kept.append(reference ? "ref" : fields[k]).append("|");
    }
    lines.push_back(kept);
  }
  return lines;
}

TEST(InterfaceTest, classes_and_members_are_described_as_the_table_has_them) {
  std::vector<std::string> classes;
  for (const InterfaceClass& of : interface_table()) {
    classes.push_back("vq140Analyse." + of.name + "|" + of.name + "|" + of.clsid + "|");
    std::vector<std::string> members;
    for (const InterfaceMember& member : of.members) {
      EXPECT_EQ(static_cast<std::size_t>(member.slot), kInherited + members.size()) << member.name;
      std::string line = member.kind + "|" + member.name + "|" + std::to_string(member.id) + "|" +
                         member.result + "|";
      for (const InterfaceArgument& argument : member.arguments) {
        line += argument.name + "|" + argument.type + (argument.by_ref ? "|ref|" : "|in|");
        line += argument.optional ? "optional=" + argument.fallback + "|" : "required|";
      }
      members.push_back(line);
    }
    EXPECT_EQ(described_without(4, (u"vq140Analyse." + wide(of.name)).c_str()), members)
        << of.name << " differs: a new member wants its row in tests/data/interface.tsv";
  }
  EXPECT_EQ(described_without(2, nullptr), classes)
      << "a new class wants its line and its rows in tests/data/interface.tsv";
}

// Who is at a slot tells by its name that it was given nothing: every argument and the place for
// the result are null. Those by value that have no result do their work with zeros.
std::string called_with_nothing(void* object, int slot) {
  using Slot = HRESULT (*)(void*, void*, void*, void*, void*, void*, void*, void*, void*, void*,
                           void*, void*, void*, double, double, double);
  const Slot function = (*static_cast<Slot**>(object))[slot];
  const HRESULT hr = function(object, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                              nullptr, nullptr, nullptr, nullptr, nullptr, 0.0, 0.0, 0.0);
  return hr == S_OK ? "" : ascii(error_words());
}

TEST(InterfaceTest, names_have_the_ids_and_slots_their_members) {
  const Lines close_down;
  std::size_t told = 0;
  for (const InterfaceClass& of : interface_table()) {
    const Instance<IDispatch> object = make(of);
    for (const InterfaceMember& member : of.members) {
      SCOPED_TRACE(of.name + "." + member.name);
      std::vector<std::u16string> names{wide(member.name)};
      std::vector<DISPID> ids{member.id};
      bool by_ref = false;
      for (const InterfaceArgument& argument : member.arguments) {
        ids.push_back(static_cast<DISPID>(names.size()) - 1);
        names.push_back(wide(argument.name));
        by_ref = by_ref || argument.by_ref;
      }
      std::vector<OLECHAR*> asked;
      for (std::u16string& name : names) asked.push_back(name.data());
      std::vector<DISPID> got(asked.size());
      object->GetIDsOfNames(IID_NULL, asked.data(), static_cast<UINT>(asked.size()), 0, got.data());
      EXPECT_EQ(got, ids);
      std::string want;
      if (!member.result.empty()) {
        want = "no place for the result of " + member.name;
      } else if (by_ref) {
        want = "' of " + member.name + " is a null reference";
      }
      if (!want.empty()) ++told;
      const std::string words = called_with_nothing(object.object, member.slot);
      EXPECT_TRUE(want.empty() ? words.empty() : words.ends_with(want)) << words;
    }
  }
  EXPECT_GE(told, 163U);  // all but the settings by value and CloseDown
}

TEST(InterfaceTest, the_readme_lists_every_class) {
  std::stringstream page;
  page << std::ifstream(VQ_DOCS "/../README.md").rdbuf();
  for (const InterfaceClass& of : interface_table()) {
    EXPECT_NE(page.str().find("| `" + of.name + "` |"), std::string::npos)
        << "the table of classes in README.md wants a line for " << of.name;
  }
}

}  // namespace
}  // namespace vqmath63::component::test
