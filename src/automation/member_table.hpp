// The member table of a class: one row per public member, from which everything else is made.
#pragma once

#include <array>
#include <string_view>
#include <tuple>
#include <type_traits>

#include "automation/class_info.hpp"

namespace vqmath63::automation {

/// An argument by name: one that is read; one that the member only writes, whatever the host's
/// variable holds before; one that is a result too, but stays what it was where the member comes to
/// none; one that is read and lent to a companion, so that the host's variable keeps its own value
/// and type unless the companion writes another; an array whose elements stay the host's own unless
/// some are taken out; an optional one with the value that a missing argument stands for.
consteval ArgumentInfo arg(const char* name) {
  return {.name = name};
}
consteval ArgumentInfo out(const char* name) {
  return {.name = name, .only_written = true};
}
consteval ArgumentInfo answer(const char* name) {
  return {.name = name, .answer = true};
}
consteval ArgumentInfo lent(const char* name) {
  return {.name = name, .lent = true};
}
consteval ArgumentInfo reduced(const char* name) {
  return {.name = name, .lent = true, .reduced = true};
}
/// An argument that is one of some words.
consteval ArgumentInfo word_arg(const char* name, std::string (*words)()) {
  return {.name = name, .words = words};
}
/// An argument that is a number with a name.
consteval ArgumentInfo number_arg(const char* name, const NumberNames& numbers) {
  return {.name = name, .numbers = &numbers};
}
consteval ArgumentInfo optional_arg(const char* name, const char* fallback) {
  return {.name = name, .optional = true, .fallback = {fallback, 0.0}};
}
consteval ArgumentInfo optional_arg(const char* name, bool fallback) {
  return {.name = name, .optional = true, .fallback = {nullptr, fallback ? -1.0 : 0.0}};
}
consteval ArgumentInfo optional_arg(const char* name, double fallback) {
  return {.name = name, .optional = true, .fallback = {nullptr, fallback}};
}

/// Class, result and parameters of a member function.
template <class F>
struct Signature;
template <class C, class R, class... A>
struct Signature<R (C::*)(A...)> {
  using Class = C;
  using Return = R;
  static constexpr std::size_t kArguments = sizeof...(A);
  /// Which parameters the member can write.
  static constexpr std::array<bool, kArguments> kWritable{
      (std::is_lvalue_reference_v<A> && !std::is_const_v<std::remove_reference_t<A>>)...};
};
template <class C, class R, class... A>
struct Signature<R (C::*)(A...) const> : Signature<R (C::*)(A...)> {};

/// A row: the native member and what a host sees of it.
template <auto kMember>
struct Row {
  static constexpr auto kFunction = kMember;
  using Native = Signature<decltype(kMember)>;
  using Arguments = std::array<ArgumentInfo, Native::kArguments>;

  const char* name;
  DISPID dispid;
  MemberKind kind;
  const char* help;
  Arguments arguments;
};

// What is wrong with a table is said by the name of the function that its evaluation, at compile
// time, would have to call: none of these is defined.
void the_name_of_a_row_is_not_that_of_its_member();
void a_row_leaves_an_argument_of_its_member_out();
void an_argument_that_is_written_is_no_reference();
void two_rows_have_the_same_name_and_kind();
void two_names_have_the_same_id();
void one_name_has_two_ids();

/// How the compiler writes the member within the name of this function.
template <auto kMember>
consteval std::string_view spelt() {
  return __PRETTY_FUNCTION__;
}

/// Name of a member function as it is declared: g++ and clang both write "kMember = &Class::name".
template <auto kMember>
consteval std::string_view member_name() {
  constexpr std::string_view kMark = "kMember = ";
  constexpr std::string_view kText = spelt<kMember>();
  constexpr std::size_t kStart = kText.find(kMark) + kMark.size();
  constexpr std::string_view kValue =
      kText.substr(kStart, kText.find_first_of(";]", kStart) - kStart);
  return kValue.substr(kValue.rfind(':') + 1);
}

/// A name without the prefix that C++ needs to tell the two functions of a property apart.
consteval std::string_view without(std::string_view prefix, std::string_view name) {
  return name.starts_with(prefix) ? name.substr(prefix.size()) : name;
}

template <auto kMember>
consteval Row<kMember> make_row(MemberKind kind, std::string_view declared, DISPID dispid,
                                const char* name, typename Row<kMember>::Arguments arguments,
                                const char* help) {
  using Native = typename Row<kMember>::Native;
  static_assert(Native::kArguments <= kMostArguments, "more than a call by name binds");
  if (declared != name) the_name_of_a_row_is_not_that_of_its_member();
  for (std::size_t k = 0; k < Native::kArguments; ++k) {
    if (*arguments[k].name == 0) a_row_leaves_an_argument_of_its_member_out();
    if ((arguments[k].only_written || arguments[k].answer) && !Native::kWritable[k]) {
      an_argument_that_is_written_is_no_reference();
    }
  }
  return {name, dispid, kind, help, arguments};
}

/// Rows of the three kinds: method, property get, property let. The name is that of the member
/// function, without the get_ or put_ of a property; the arguments stand in braces.
template <auto kMember>
consteval auto method(DISPID dispid, const char* name, typename Row<kMember>::Arguments arguments,
                      const char* help) {
  return make_row<kMember>(MemberKind::kMethod, member_name<kMember>(), dispid, name, arguments,
                           help);
}
template <auto kMember>
consteval auto get(DISPID dispid, const char* name, typename Row<kMember>::Arguments arguments,
                   const char* help) {
  static_assert(!std::is_void_v<typename Row<kMember>::Native::Return>);
  return make_row<kMember>(MemberKind::kPropertyGet, without("get_", member_name<kMember>()),
                           dispid, name, arguments, help);
}
template <auto kMember>
consteval auto let(DISPID dispid, const char* name, typename Row<kMember>::Arguments arguments,
                   const char* help) {
  static_assert(std::is_void_v<typename Row<kMember>::Native::Return>);
  return make_row<kMember>(MemberKind::kPropertyLet, without("put_", member_name<kMember>()),
                           dispid, name, arguments, help);
}

/// A class's table: its identity and its rows in interface order.
template <class C, class... Rows>
struct Table {
  using Class = C;
  static constexpr std::size_t kRows = sizeof...(Rows);

  const char* name;
  const char* help;
  CLSID clsid;
  IID iid;
  std::tuple<Rows...> rows;
};

/// Makes a table. Names are the same in any letter case, as hosts look them up; the rows of one
/// property share its name and id, and nothing else is shared.
template <class C, class... Rows>
consteval Table<C, Rows...> table(const char* name, const char* help, CLSID clsid, IID iid,
                                  Rows... rows) {
  static_assert((std::is_same_v<typename Rows::Native::Class, C> && ...),
                "every row is of a member of the table's class");
  struct Identity {
    std::uint32_t name;
    DISPID dispid;
    MemberKind kind;
  };
  const Identity all[] = {{name_hash(rows.name), rows.dispid, rows.kind}...};
  for (const Identity& a : all) {
    for (const Identity* b = all; b != &a; ++b) {
      if (a.name == b->name && a.kind == b->kind) two_rows_have_the_same_name_and_kind();
      if (a.name == b->name && a.dispid != b->dispid) one_name_has_two_ids();
      if (a.name != b->name && a.dispid == b->dispid) two_names_have_the_same_id();
    }
  }
  return {name, help, clsid, iid, {rows...}};
}

}  // namespace vqmath63::automation
