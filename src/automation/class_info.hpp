// What the boundary knows of a class at run time: its identity and its members in interface order.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>

#include "automation/types.hpp"
#include "frame/text_case.hpp"

namespace vqmath63::automation {

/// Automation type of an argument or a result.
struct ValueType {
  VARTYPE vt = VT_EMPTY;   ///< VT_EMPTY for the result of a member that has none
  int rank = 0;            ///< 0 for a scalar, else the number of dimensions of an array
  bool by_ref = false;     ///< handed over by reference, so that the callee may change it
  bool read_only = false;  ///< by reference, but the callee never does: nothing has to go back
};

/// Default of an optional argument: a text, or a number (also True as -1, False as 0).
struct DefaultValue {
  const char* text = nullptr;
  double number = 0.0;
};

/// Numbers with names of their own, as programs that read the type library know them: an
/// enumeration "vq..." and its constants.
struct NumberName {
  const char* name = "";
  std::int32_t number = 0;
};
struct NumberNames {
  const char* name = "";
  const char* help = "";
  std::span<const NumberName> numbers;
};

struct ArgumentInfo {
  const char* name = "";
  ValueType type{};
  bool optional = false;
  DefaultValue fallback{};
  bool only_written = false;  ///< the member never reads what the host's variable holds
  bool answer = false;        ///< a result: the host's variable only keeps what it held where
                              ///< the member has none
  bool lent = false;          ///< unless it is another value afterwards, it is the host's own
  bool reduced = false;       ///< of a lent array: the member itself may take elements out
  std::string (*words)() = nullptr;  ///< the words that a text is one of, a line each; null for any
  const NumberNames* numbers = nullptr;  ///< the names of the numbers that mean something, if any
};

/// Hash of a name without regard to the case of a to z (Fowler-Noll-Vo 1a, 32 bits).
template <class Character>
constexpr std::uint32_t name_hash(const Character* name) noexcept {
  std::uint32_t hash = 2166136261U;
  for (; *name != 0; ++name) {
    const auto c = static_cast<std::make_unsigned_t<Character>>(*name);
    hash = (hash ^ std::uint32_t{lower_case(c)}) * 16777619U;
  }
  return hash;
}

/// No member may have more arguments.
inline constexpr std::size_t kMostArguments = 16;

enum class MemberKind { kMethod, kPropertyGet, kPropertyLet };

struct ManyCalls;

/// One member: a row of a class's table.
struct MemberInfo {
  /// Calls the member's vtable function `function` on `self` with the interface values that stand
  /// at `arguments`; `result` points to room for the result's automation value.
  using LateCall = HRESULT (*)(void* self, void (*function)(), void* const* arguments,
                               void* result);
  /// Calls the native function that `native` points to on `self` many times over.
  using ManyCall = HRESULT (*)(void* self, const void* native, ManyCalls& calls) noexcept;

  const char* name = "";
  std::uint32_t hash = 0;  ///< name_hash(name)
  DISPID dispid = 0;
  MemberKind kind = MemberKind::kMethod;
  const char* help = "";
  std::span<const ArgumentInfo> arguments;
  ValueType result;
  LateCall late_call = nullptr;
  ManyCall many_call = nullptr;
  const void* native = nullptr;  ///< the pointer to the member function
};

/// A creatable class.
struct ClassInfo {
  const char* name = "";
  const char* help = "";
  CLSID clsid{};
  IID iid{};  ///< of the dual interface
  std::span<const MemberInfo> members;
  /// Creates an instance and returns its interface `iid`; an exception of the class's own
  /// initialisation has become the returned result code.
  HRESULT (*create)(REFIID iid, void** out) noexcept = nullptr;
  const void* vtable = nullptr;  ///< what an object of the class begins with a pointer to
};

/// Name of the type library, first word of every programmatic id.
inline constexpr std::string_view kLibraryName = "vq140Analyse";

}  // namespace vqmath63::automation
