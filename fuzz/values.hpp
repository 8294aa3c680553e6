// Values of every kind that a host can hand over, decoded from bytes.
#pragma once

#include "automation/class_info.hpp"
#include "bytes.hpp"

namespace vqmath63::fuzz {

using automation::ValueType;

/// Ends the program with the words, so that the fuzzer keeps the input.
[[noreturn]] void fail(const char* what, const std::string& detail = "");

inline void require(bool holds, const char* what) {
  if (!holds) [[unlikely]]
    fail(what);
}

/// A variable of the host. While `fixed_type` is not 0 something refers to its value by type; one
/// that is kept was sent by value, and has to stay for the whole call.
struct HostVariable {
  VARIANT v{};
  int fixed_type = 0;
  bool kept = false;

  HostVariable() = default;
  HostVariable(const HostVariable&) = delete;
  HostVariable& operator=(const HostVariable&) = delete;
  ~HostVariable();
  bool is_array() const { return (v.vt & VT_ARRAY) != 0 && (v.vt & VT_BYREF) == 0; }
};

/// Takes a variable's value away, unless it is an array that a call holds.
bool clear(HostVariable& variable);
/// Takes the value of a variant away that nobody refers to.
void clear(VARIANT& value);

/// The variables that live as long as a program.
inline constexpr std::size_t kVariables = 6;
using HostVariables = HostVariable[kVariables];

/// A number: an interesting one, or one of bytes.
double number(Bytes& bytes);

/// A text: a word of some member, or one of bytes.
BSTR text(Bytes& bytes);

/// An automation type, also one that no host should send.
VARTYPE type(Bytes& bytes);

/// Makes a value in an empty variant. It is of the `wanted` type when the bytes begin with 0;
/// elements of arrays of variants may refer to `variables`.
void make(Bytes& bytes, const ValueType& wanted, HostVariables& variables, VARIANT& out);

/// Ends what arrays a program's values have left, and looks whether their locks were kept.
void end_arrays();

/// Locks that the host itself holds on an array.
ULONG own_locks(SAFEARRAY* array);

}  // namespace vqmath63::fuzz
