// Many calls of one member at once: over columns of its arguments, straight to its native function.
#pragma once

#include <algorithm>
#include <cstring>
#include <new>
#include <span>
#include <tuple>
#include <type_traits>
#include <utility>

#include "automation/call_scope.hpp"
#include "automation/parameter.hpp"
#include "automation/thunk.hpp"
#include "frame/message_tally.hpp"

namespace vqmath63::automation {

/// What one argument, or the result, is in each of the calls: call k's interface value lies k times
/// `stride` bytes behind `first`, aligned or not. Stride 0 is one value for all calls.
struct Column {
  void* first;
  std::int64_t stride;
};

struct ManyCalls {
  const ClassInfo& info;
  const MemberInfo& member;
  std::span<const Column> arguments;
  Column result;  ///< not looked at for a member without a result
  std::int64_t count = 0;
  std::int64_t failed = 0;         ///< becomes the number of calls that failed
  std::int64_t first_failed = -1;  ///< becomes the number of the first of them, from 0
};

/// One step along a column.
inline void* next(void* at, std::int64_t stride) noexcept {
  return static_cast<std::byte*>(at) + stride;
}

/// E_POINTER for a column without memory whose argument is not optional.
void require_memory(const Column& column, const ArgumentPlace& place);
/// E_INVALIDARG for a text or an array that is not one for all calls.
void require_one_value(const Column& column, const ArgumentPlace& place);

/// A number, a Boolean or a date on its way from a column to a parameter of type P and, when that
/// is a reference that the member may write, back.
template <class P>
class NumberColumn {
  using T = std::remove_cvref_t<P>;
  using Abi = typename Referred<T>::Abi;
  using Convert = typename Referred<T>::Convert;
  static constexpr bool kWritten =
      std::is_lvalue_reference_v<P> && !std::is_const_v<std::remove_reference_t<P>>;

 public:
  explicit NumberColumn(const Given<Column>& given)
      : at_(given.value.first), stride_(given.value.stride) {
    require_memory(given.value, given.place);
    if (at_ != nullptr) return;
    Convert::out(Convert::fallback(given.place.info.fallback), missing_);
    at_ = &missing_;
    stride_ = 0;
  }
  NumberColumn(const NumberColumn&) = delete;
  NumberColumn& operator=(const NumberColumn&) = delete;

  void take() noexcept {
    Abi value;
    std::memcpy(&value, at_, sizeof value);
    value_ = Convert::in(value);
  }
  std::conditional_t<std::is_reference_v<P>, P, T> native() noexcept { return value_; }
  void put() noexcept {
    if constexpr (kWritten) {
      Abi value;
      Convert::out(value_, value);
      std::memcpy(at_, &value, sizeof value);
    }
    at_ = next(at_, stride_);
  }
  void release() noexcept {}
  HRESULT hand_back() noexcept { return S_OK; }

 private:
  void* at_;
  std::int64_t stride_;
  T value_{};
  Abi missing_{};
};

/// A text or an array: one for all calls, as it would be in a loop of the host.
template <class P>
class OneValue {
  using Abi = typename Param<P>::Abi;
  static constexpr bool kArray = std::is_same_v<Abi, SAFEARRAY**>;

 public:
  explicit OneValue(const Given<Column>& given) : adapt_({abi(given), given.place}) {
    if constexpr (kArray) static_cast<void>(adapt_.native());  // locks it, once
  }

  void take() noexcept {}
  decltype(auto) native() {
    if constexpr (kArray) {
      return (adapt_.array);
    } else {
      return adapt_.native();
    }
  }
  void put() noexcept {}
  void release() noexcept { adapt_.release(); }
  HRESULT hand_back() noexcept { return adapt_.hand_back(); }

 private:
  static Abi abi(const Given<Column>& given) {
    require_memory(given.value, given.place);
    require_one_value(given.value, given.place);
    if constexpr (std::is_same_v<Abi, BSTR>) {
      return *static_cast<BSTR*>(given.value.first);
    } else {
      return static_cast<Abi>(given.value.first);
    }
  }

  typename Param<P>::Adapt adapt_;
};

template <class P>
using ColumnOf = std::conditional_t<std::is_arithmetic_v<std::remove_cvref_t<P>> ||
                                        std::is_same_v<std::remove_cvref_t<P>, Date>,
                                    NumberColumn<P>, OneValue<P>>;

/// Where the results go.
template <class R>
class ResultColumn {
  using Abi = typename Result<R>::Abi;

 public:
  explicit ResultColumn(const ManyCalls& calls)
      : at_(calls.result.first), stride_(calls.result.stride) {}
  bool missing() const noexcept { return at_ == nullptr; }
  template <class Call>
  void put(const Call& call) {
    store(Result<R>::hold(call()).release());
  }
  void put_zero() noexcept { store(Abi{}); }
  void advance() noexcept { at_ = next(at_, stride_); }

 private:
  void store(Abi value) noexcept { std::memcpy(at_, &value, sizeof value); }

  void* at_;
  std::int64_t stride_;
};
template <>
class ResultColumn<void> {
 public:
  explicit ResultColumn(const ManyCalls&) {}
  bool missing() const noexcept { return false; }
  template <class Call>
  void put(const Call& call) {
    call();
  }
  void put_zero() noexcept {}
  void advance() noexcept {}
};

/// Whether a member of this native signature may have a way of its own through blocks of calls: a
/// function block_way(F) beside its class that hands out one, as that of mathlib/blocks.hpp.
template <class F, class R, class... A>
concept HasBlocks = std::is_same_v<R, double> &&(std::is_same_v<A, double>&&...) &&
                    requires(F function) {
  block_way(function);
};

/// So many calls a block has at most.
inline constexpr std::int64_t kCallsInBlock = 256;

/// Whether results may be written before all arguments of their block are read.
bool apart(const ManyCalls& calls) noexcept;

/// The loop over the calls of one native signature F of a table's class.
template <const auto& kTable, class F, class R, class... A>
struct ManyCallsOf {
  static HRESULT run(void* self, const void* native, ManyCalls& calls) noexcept {
    return run(self, *static_cast<const F*>(native), calls, std::index_sequence_for<A...>{});
  }

 private:
  template <std::size_t... k>
  static HRESULT run(void* self, F function, ManyCalls& calls, std::index_sequence<k...>) noexcept {
    const CallScope scope;
    try {
      ResultColumn<R> results(calls);
      if (results.missing()) return refuse_null_result(calls.info, calls.member.name);
      [[maybe_unused]] const MemberInfo& member = calls.member;
      std::tuple<ColumnOf<A>...> columns{
          Given<Column>{calls.arguments[k], {member.name, member.arguments[k]}}...};
      auto& instance = static_cast<Object<kTable>*>(self)->instance;
      HRESULT outcome = S_OK;
      MessageTally tally(calls.count);
      // The result of one call, or of its failure.
      const auto put = [&](const auto& call) {
        try {
          results.put(call);
        } catch (...) {
          // What was written by reference before the failure stays written, as in one call.
          results.put_zero();
          tally.note_failure();
          if (SUCCEEDED(outcome)) outcome = failure_in_flight(calls.info);
        }
        results.advance();
      };
      if constexpr (HasBlocks<F, R, A...>) {
        const auto way = block_way(function);
        if (way != nullptr && calls.count > 1 && apart(calls)) {
          double given[sizeof...(k)][kCallsInBlock];
          const double* const arguments[] = {given[k]...};
          double values[kCallsInBlock];
          bool done[kCallsInBlock];
          while (tally.call < calls.count) {
            const std::int64_t count = std::min(kCallsInBlock, calls.count - tally.call);
            for (std::int64_t i = 0; i < count; ++i) {
              (std::get<k>(columns).take(), ...);
              ((given[k][i] = std::get<k>(columns).native()), ...);
              (std::get<k>(columns).put(), ...);
            }
            way(arguments, values, done, static_cast<std::size_t>(count));
            for (std::int64_t i = 0; i < count; ++i, ++tally.call) {
              put([&] { return done[i] ? values[i] : (instance.*function)(given[k][i]...); });
            }
          }
        }
      }
      for (; tally.call < calls.count; ++tally.call) {
        (std::get<k>(columns).take(), ...);
        put([&]() -> R { return (instance.*function)(std::get<k>(columns).native()...); });
        (std::get<k>(columns).put(), ...);
      }
      calls.failed = tally.failed();
      calls.first_failed = tally.first_failed();
      std::size_t unstored = 0;
      const HRESULT back = hand_back(columns, unstored);
      tally.tell();
      if (FAILED(outcome) || SUCCEEDED(back)) return outcome;
      return fail_to_hand_back(calls.info, member.name, member.arguments[unstored].name, back);
    } catch (...) {
      return failure_in_flight(calls.info);
    }
  }
};

}  // namespace vqmath63::automation
