// The member table of a class: one row per public member, from which everything else is made.
#pragma once

#include <array>
#include <tuple>
#include <type_traits>

#include "automation/class_info.hpp"

namespace vqmath63::automation {

/// An argument by name; `optional` ones with the value a missing argument stands for.
constexpr ArgumentInfo arg(const char* name) {
  return {name, {}, false, {}};
}
constexpr ArgumentInfo optional_arg(const char* name, const char* fallback) {
  return {name, {}, true, {fallback, 0.0}};
}
constexpr ArgumentInfo optional_arg(const char* name, bool fallback) {
  return {name, {}, true, {nullptr, fallback ? -1.0 : 0.0}};
}
constexpr ArgumentInfo optional_arg(const char* name, double fallback) {
  return {name, {}, true, {nullptr, fallback}};
}

/// Class, result and parameters of a member function.
template <class F>
struct Signature;
template <class C, class R, class... A>
struct Signature<R (C::*)(A...)> {
  using Class = C;
  using Return = R;
  static constexpr std::size_t kArguments = sizeof...(A);
};
template <class C, class R, class... A>
struct Signature<R (C::*)(A...) const> : Signature<R (C::*)(A...)> {};

/// A row: the native member and what a host sees of it.
template <auto kMember>
struct Row {
  static constexpr auto kFunction = kMember;
  using Native = Signature<decltype(kMember)>;

  const char* name;
  DISPID dispid;
  MemberKind kind;
  const char* help;
  std::array<ArgumentInfo, Native::kArguments> arguments;
};

template <auto kMember, class... Arguments>
constexpr Row<kMember> make_row(MemberKind kind, DISPID dispid, const char* name, const char* help,
                                Arguments... arguments) {
  static_assert(sizeof...(Arguments) == Row<kMember>::Native::kArguments,
                "a member's row names each of its arguments");
  static_assert(sizeof...(Arguments) <= kMostArguments, "more arguments than a call by name binds");
  return {name, dispid, kind, help, {arguments...}};
}

/// Rows of the three kinds: method, property get, property let.
template <auto kMember, class... Arguments>
constexpr auto method(DISPID dispid, const char* name, const char* help, Arguments... arguments) {
  return make_row<kMember>(MemberKind::kMethod, dispid, name, help, arguments...);
}
template <auto kMember, class... Arguments>
constexpr auto get(DISPID dispid, const char* name, const char* help, Arguments... arguments) {
  return make_row<kMember>(MemberKind::kPropertyGet, dispid, name, help, arguments...);
}
template <auto kMember, class... Arguments>
constexpr auto let(DISPID dispid, const char* name, const char* help, Arguments... arguments) {
  static_assert(std::is_void_v<typename Row<kMember>::Native::Return>);
  return make_row<kMember>(MemberKind::kPropertyLet, dispid, name, help, arguments...);
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

template <class C, class... Rows>
constexpr Table<C, Rows...> table(const char* name, const char* help, CLSID clsid, IID iid,
                                  Rows... rows) {
  return {name, help, clsid, iid, {rows...}};
}

}  // namespace vqmath63::automation
