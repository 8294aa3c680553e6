// How each native parameter and result type looks at the automation interface.
#pragma once

#include <cstdint>
#include <cstring>
#include <functional>
#include <limits>
#include <string>
#include <type_traits>

#include "automation/array_argument.hpp"
#include "automation/class_info.hpp"
#include "automation/failure.hpp"
#include "automation/owners.hpp"
#include "automation/text.hpp"
#include "frame/array.hpp"
#include "frame/date.hpp"

namespace vqmath63::automation {

/// The argument being adapted, for error texts and for the default of a missing one.
struct ArgumentPlace {
  const char* member;
  const ArgumentInfo& info;
};

/// What a foreign host hands over, on its way to a parameter.
template <class Abi>
struct Given {
  Abi value;
  ArgumentPlace place;
};

// Param<T> has: Abi, the type at the interface; kType, its automation type; Adapt, which is made
// from a Given<Abi>, gives the native argument by native(), lets go of the host's memory by
// release() and puts back what changed by hand_back().

/// Scalars whose native and interface types differ in name only.
template <class T, class AbiT, VARTYPE kVt>
struct ScalarParam {
  using Abi = AbiT;
  static constexpr ValueType kType{kVt, 0, false};
  struct Adapt {
    T value;
    explicit Adapt(const Given<Abi>& given) : value(static_cast<T>(given.value)) {}
    T native() { return value; }
    void release() noexcept {}
    HRESULT hand_back() noexcept { return S_OK; }
  };
};

template <class T>
struct Param;
template <>
struct Param<double> : ScalarParam<double, double, VT_R8> {};
template <>
struct Param<float> : ScalarParam<float, float, VT_R4> {};
template <>
struct Param<std::int32_t> : ScalarParam<std::int32_t, std::int32_t, VT_I4> {};

template <>
struct Param<bool> {
  using Abi = VARIANT_BOOL;
  static constexpr ValueType kType{VT_BOOL, 0, false};
  struct Adapt {
    bool value;
    explicit Adapt(const Given<Abi>& given) : value(given.value != VARIANT_FALSE) {}
    bool native() { return value; }
    void release() noexcept {}
    HRESULT hand_back() noexcept { return S_OK; }
  };
};

template <>
struct Param<Date> {
  using Abi = DATE;
  static constexpr ValueType kType{VT_DATE, 0, false};
  struct Adapt {
    Date value;
    explicit Adapt(const Given<Abi>& given) : value{given.value} {}
    Date native() { return value; }
    void release() noexcept {}
    HRESULT hand_back() noexcept { return S_OK; }
  };
};

template <>
struct Param<std::string> {
  using Abi = BSTR;
  static constexpr ValueType kType{VT_BSTR, 0, false};
  struct Adapt {
    std::string value;
    explicit Adapt(const Given<Abi>& given) : value(text_of(given.value)) {}
    std::string native() { return value; }
    void release() noexcept {}
    HRESULT hand_back() noexcept { return S_OK; }
  };
};

/// The value behind a reference to a scalar. A null reference is error E_POINTER, or a missing
/// argument where the member's row says optional.
template <class Convert, class AbiT>
auto referred_value(const Given<AbiT*>& given) {
  if (given.value != nullptr) return Convert::in(*given.value);
  if (!given.place.info.optional) {
    throw BoundaryError(E_POINTER, std::string("Invalid pointer: argument '") +
                                       given.place.info.name + "' of " + given.place.member +
                                       " is a null reference");
  }
  return Convert::fallback(given.place.info.fallback);
}

/// A scalar by reference that is only read.
template <class T, class AbiT, VARTYPE kVt, class Convert>
struct ReadOnlyParam {
  using Abi = AbiT*;
  static constexpr ValueType kType{kVt, 0, true, true};
  struct Adapt {
    T value;
    explicit Adapt(const Given<Abi>& given) : value(referred_value<Convert>(given)) {}
    const T& native() { return value; }
    void release() noexcept {}
    HRESULT hand_back() noexcept { return S_OK; }
  };
};

/// What tells one value from another: the bits of a number, so that the two zeros differ; address
/// and characters of a text.
template <class T>
std::uint64_t identity(const T& value) noexcept {
  if constexpr (std::is_same_v<T, BSTR>) {
    return reinterpret_cast<std::uintptr_t>(value) ^ text_hash(value);
  } else {
    std::uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof value);
    return bits;
  }
}

template <class T>
bool is_same(const T& a, const T& b) noexcept {
  if constexpr (std::is_same_v<T, std::string>) {
    return a == b;
  } else {
    return identity(a) == identity(b);
  }
}

/// A scalar by reference: a native variable for the call, stored back when it is over.
template <class T, class AbiT, VARTYPE kVt, class Convert>
struct ReferenceParam {
  using Abi = AbiT*;
  static constexpr ValueType kType{kVt, 0, true};
  struct Adapt {
    Abi target;
    std::uint64_t sent;
    bool kept_by_host = false;
    T value;
    T before;
    explicit Adapt(const Given<Abi>& given)
        : target(given.value),
          sent(target != nullptr ? identity(*target) : 0),
          value(referred_value<Convert>(given)),
          before(value) {}
    T& native() { return value; }
    /// Notes whether the host has given its variable another value during the call.
    void release() noexcept { kept_by_host = target != nullptr && identity(*target) != sent; }
    HRESULT hand_back() noexcept {
      if (target == nullptr || kept_by_host) return S_OK;
      // Unchanged, it is left alone: another argument may stand for the same variable.
      if (is_same(value, before) && Convert::stored_as(value, *target)) return S_OK;
      return Convert::out(value, *target);
    }
  };
};

template <class T, class AbiT>
struct NumberConvert {
  static T in(AbiT value) { return static_cast<T>(value); }
  static HRESULT out(T value, AbiT& target) noexcept {
    target = static_cast<AbiT>(value);
    return S_OK;
  }
  static bool stored_as(T, AbiT) { return true; }
  static T fallback(const DefaultValue& value) { return static_cast<T>(value.number); }
};

struct BoolConvert {
  static bool in(VARIANT_BOOL value) { return value != VARIANT_FALSE; }
  static HRESULT out(bool value, VARIANT_BOOL& target) noexcept {
    target = value ? VARIANT_TRUE : VARIANT_FALSE;
    return S_OK;
  }
  /// Hosts may keep True in forms of their own; what they get back is the usual one.
  static bool stored_as(bool value, VARIANT_BOOL target) {
    return target == VARIANT_FALSE || target == VARIANT_TRUE || !value;
  }
  static bool fallback(const DefaultValue& value) { return value.number != 0.0; }
};

struct DateConvert {
  static Date in(DATE value) { return {value}; }
  static HRESULT out(Date value, DATE& target) noexcept {
    target = value.value;
    return S_OK;
  }
  static bool stored_as(Date, DATE) { return true; }
  static Date fallback(const DefaultValue& value) { return {value.number}; }
};

struct TextConvert {
  static std::string in(BSTR value) { return text_of(value); }
  static HRESULT out(const std::string& value, BSTR& target) noexcept;
  static bool stored_as(const std::string&, BSTR) { return true; }
  static std::string fallback(const DefaultValue& value) {
    return value.text != nullptr ? value.text : "";
  }
};

/// How each scalar that goes by reference stands at the interface.
template <class T>
struct Referred;
template <>
struct Referred<double> {
  using Abi = double;
  using Convert = NumberConvert<double, double>;
  static constexpr VARTYPE kVt = VT_R8;
};
template <>
struct Referred<float> {
  using Abi = float;
  using Convert = NumberConvert<float, float>;
  static constexpr VARTYPE kVt = VT_R4;
};
template <>
struct Referred<std::int32_t> {
  using Abi = std::int32_t;
  using Convert = NumberConvert<std::int32_t, std::int32_t>;
  static constexpr VARTYPE kVt = VT_I4;
};
template <>
struct Referred<bool> {
  using Abi = VARIANT_BOOL;
  using Convert = BoolConvert;
  static constexpr VARTYPE kVt = VT_BOOL;
};
template <>
struct Referred<Date> {
  using Abi = DATE;
  using Convert = DateConvert;
  static constexpr VARTYPE kVt = VT_DATE;
};
template <>
struct Referred<std::string> {
  using Abi = BSTR;
  using Convert = TextConvert;
  static constexpr VARTYPE kVt = VT_BSTR;
};

template <class T>
struct Param<T&> : ReferenceParam<T, typename Referred<T>::Abi, Referred<T>::kVt,
                                  typename Referred<T>::Convert> {};
template <class T>
struct Param<const T&>
    : ReadOnlyParam<T, typename Referred<T>::Abi, Referred<T>::kVt, typename Referred<T>::Convert> {
};

/// An array by reference: borrowed. One that is only read stays as it is; of any other the elements
/// are written in place, and one that the member has re-dimensioned takes the place of the host's.
template <template <class> class ArrayOf, class Element, int kRank>
struct ArrayParam {
  using T = std::remove_const_t<Element>;
  using Array = ArrayOf<Element>;
  using Abi = SAFEARRAY**;
  static constexpr bool kReadOnly = std::is_const_v<Element>;
  static constexpr ValueType kType{kElementType<T>, kRank, true, kReadOnly};
  static_assert(kElementType<T> != VT_EMPTY, "no automation element type for this array");
  struct Adapt {
    BorrowedSafeArray borrowed;
    Array array;
    explicit Adapt(const Given<Abi>& given)
        : borrowed(given.value, kElementType<T>, kRank, given.place.member, given.place.info.name),
          array(view(borrowed)) {}
    Array& native() {
      borrowed.lock();
      return array;
    }
    void release() noexcept { borrowed.unlock(); }
    HRESULT hand_back() noexcept {
      if constexpr (kReadOnly) {
        return S_OK;
      } else {
        if (!array.was_resized()) return S_OK;
        if (!array.allocated()) return borrowed.replace(nullptr, 0, nullptr);
        Bounds bounds[2];
        if constexpr (kRank == 1) {
          bounds[0] = array.bounds();
        } else {
          bounds[0] = array.rows();
          bounds[1] = array.columns();
        }
        return borrowed.replace(array.data(), array.size() * sizeof(T), bounds);
      }
    }
    static Array view(const BorrowedSafeArray& b) {
      if (!b.allocated()) return {};
      T* first = static_cast<T*>(b.data());
      if constexpr (kReadOnly && kRank == 1) {
        return {first, b.bounds(1)};
      } else if constexpr (kReadOnly) {
        return {first, b.bounds(1), b.bounds(2)};
      } else if constexpr (kRank == 1) {
        return {first, b.bounds(1), b.resizing()};
      } else {
        return {first, b.bounds(1), b.bounds(2), b.resizing()};
      }
    }
  };
};

template <class T>
struct Param<Array1<T>&> : ArrayParam<Array1, T, 1> {};
template <class T>
struct Param<Array2<T>&> : ArrayParam<Array2, T, 2> {};
template <class T>
struct Param<const Array1<const T>&> : ArrayParam<Array1, const T, 1> {};
template <class T>
struct Param<const Array2<const T>&> : ArrayParam<Array2, const T, 2> {};

/// A number on its way to the host, as OwnedText is a text.
template <class Abi>
struct HeldNumber {
  Abi value{};
  Abi release() noexcept { return value; }
};

/// How a result is stored at the interface, and what holds it until the host gets it.
template <class R>
struct Result {
  using Abi = typename Param<R>::Abi;
  using Held = HeldNumber<Abi>;
  static constexpr ValueType kType = Param<R>::kType;
  static Held hold(R value) { return {static_cast<Abi>(value)}; }
};
template <>
struct Result<bool> {
  using Abi = VARIANT_BOOL;
  static constexpr ValueType kType{VT_BOOL, 0, false};
  using Held = HeldNumber<Abi>;
  static Held hold(bool value) { return {value ? VARIANT_TRUE : VARIANT_FALSE}; }
};
template <>
struct Result<Date> {
  using Abi = DATE;
  static constexpr ValueType kType{VT_DATE, 0, false};
  using Held = HeldNumber<Abi>;
  static Held hold(Date value) { return {value.value}; }
};
template <>
struct Result<std::string> {
  using Abi = BSTR;
  static constexpr ValueType kType{VT_BSTR, 0, false};
  using Held = OwnedText;
  static Held hold(const std::string& value) { return OwnedText(new_bstr(value)); }
};
template <>
struct Result<void> {
  static constexpr ValueType kType{};
};

}  // namespace vqmath63::automation
