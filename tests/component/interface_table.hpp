// tests/data/interface.tsv: the interface that every build of the component is held to.
#pragma once

#include <string>
#include <vector>

#include "frame/test_table.hpp"

namespace vqmath63::component::test {

/// An argument as "ref Epslon Single=1e-06" tells it.
struct InterfaceArgument {
  bool by_ref = false;
  std::string name, type;
  bool optional = false;
  std::string fallback;  ///< True, a number, or a text in quotes
};

struct InterfaceMember {
  int slot = 0;
  std::string kind, name;  ///< kind is method, get or let
  int id = 0;
  std::string result;  ///< empty for none
  std::vector<InterfaceArgument> arguments;
};

/// A class; identifiers as "AA40CFD8-6128-4423-B611-27D640E1B235".
struct InterfaceClass {
  std::string name, clsid, iid;
  std::vector<InterfaceMember> members;
};

inline InterfaceArgument interface_argument(std::string text) {
  InterfaceArgument argument;
  argument.by_ref = text.starts_with("ref ");
  if (argument.by_ref) text.erase(0, 4);
  const std::size_t blank = text.find(' ');
  const std::size_t equals = text.find('=');
  argument.name = text.substr(0, blank);
  argument.type = text.substr(blank + 1, equals - blank - 1);
  argument.optional = equals != text.npos;
  if (argument.optional) argument.fallback = text.substr(equals + 1);
  return argument;
}

/// All classes in the order of the table.
inline std::vector<InterfaceClass> interface_table() {
  const auto given = [](const std::string& field) { return field == "-" ? "" : field; };
  std::vector<InterfaceClass> classes;
  for (const TableRow& row : table_rows("interface.tsv", "classes")) {
    classes.push_back({row["class"], row["clsid"], row["iid"], {}});
  }
  for (const TableRow& row : table_rows("interface.tsv", "members")) {
    InterfaceMember member{row["slot"], row["kind"],          row["name"],
                           row["id"],   given(row["result"]), {}};
    for (const std::string& argument : split(given(row["arguments"]), ';')) {
      member.arguments.push_back(interface_argument(argument.substr(argument[0] == ' ')));
    }
    const auto of = std::find_if(classes.begin(), classes.end(), [&](const InterfaceClass& c) {
      return c.name == row["class"].text;
    });
    if (of == classes.end()) throw std::invalid_argument("no class " + row["class"].text);
    of->members.push_back(member);
  }
  return classes;
}

}  // namespace vqmath63::component::test
