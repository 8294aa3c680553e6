// The vtable function of a member, made from its row.
#pragma once

#include <tuple>
#include <utility>

#include "automation/call_scope.hpp"
#include "automation/member_table.hpp"
#include "automation/parameter.hpp"

namespace vqmath63::automation {

/// An automation object: the hand-made vtable, a reference count and the native instance.
template <const auto& kTable>
struct Object;

/// Run-time description of a table's class; specialised where the objects are made.
template <const auto& kTable>
const ClassInfo& class_info() noexcept;

/// Lets go of the host's memory, then hands back what changed: first everything is released, so
/// that one host array passed twice can be replaced. `failed` becomes the number of the first
/// argument whose result did not go into the host's variable.
template <class Adapts>
HRESULT hand_back(Adapts& adapts, [[maybe_unused]] std::size_t& failed) noexcept {
  return std::apply(
      [&](auto&... adapt) {
        (adapt.release(), ...);
        HRESULT outcome = S_OK;
        [[maybe_unused]] std::size_t number = 0;
        [[maybe_unused]] const auto note = [&](HRESULT result) {
          if (FAILED(result) && SUCCEEDED(outcome)) {
            outcome = result;
            failed = number;
          }
          ++number;
        };
        (note(adapt.hand_back()), ...);
        return outcome;
      },
      adapts);
}

/// A property of one of these is stored or given as it is kept, without arithmetic.
template <class T>
constexpr bool kIsPlain = std::is_void_v<T> || std::is_arithmetic_v<T> || std::is_same_v<T, Date>;

template <const auto& kTable, std::size_t kRow, class F>
struct Thunk;

template <const auto& kTable, std::size_t kRow, class C, class R, class... A>
struct ThunkBase {
  using Adapts = std::tuple<typename Param<A>::Adapt...>;

  static HRESULT fail(std::size_t argument, HRESULT why) noexcept {
    const auto& row = std::get<kRow>(kTable.rows);
    return fail_to_hand_back(class_info<kTable>(), row.name, row.arguments.data()[argument].name,
                             why);
  }

  template <class StoreResult, std::size_t... k>
  static HRESULT run(void* self, const StoreResult& store, std::index_sequence<k...>,
                     typename Param<A>::Abi... a) noexcept {
    constexpr const auto& kRowOf = std::get<kRow>(kTable.rows);
    constexpr bool kPlain =
        kRowOf.kind != MemberKind::kMethod && kIsPlain<R> && (kIsPlain<A> && ...);
    [[maybe_unused]] const std::conditional_t<kPlain, PlainScope, CallScope> scope;
    try {
      Adapts adapts{Given<typename Param<A>::Abi>{a, {kRowOf.name, kRowOf.arguments[k]}}...};
      HRESULT outcome = S_OK;
      try {
        C& instance = static_cast<Object<kTable>*>(self)->instance;
        store([&]() -> R { return (instance.*kRowOf.kFunction)(std::get<k>(adapts).native()...); });
      } catch (...) {
        // What was written by reference before the failure stays written.
        outcome = failure_in_flight(class_info<kTable>());
      }
      std::size_t failed = 0;
      const HRESULT back = hand_back(adapts, failed);
      if (FAILED(outcome)) return outcome;
      if (FAILED(back)) return fail(failed, back);
      return S_OK;
    } catch (...) {
      return failure_in_flight(class_info<kTable>());
    }
  }
};

template <const auto& kTable, std::size_t kRow, class C, class R, class... A>
struct Thunk<kTable, kRow, R (C::*)(A...)> : ThunkBase<kTable, kRow, C, R, A...> {
  using ResultAbi = typename Result<R>::Abi;
  using Function = HRESULT(VQ_API*)(void*, typename Param<A>::Abi..., ResultAbi*);

  static HRESULT VQ_API call(void* self, typename Param<A>::Abi... a, ResultAbi* result) noexcept {
    if (result == nullptr) {
      return refuse_null_result(class_info<kTable>(), std::get<kRow>(kTable.rows).name);
    }
    *result = ResultAbi{};
    typename Result<R>::Held held;
    const HRESULT outcome = Thunk::run(
        self, [&](const auto& native) { held = Result<R>::hold(native()); },
        std::index_sequence_for<A...>{}, a...);
    if (SUCCEEDED(outcome)) *result = held.release();  // nothing where a value was not handed back
    return outcome;
  }
};

template <const auto& kTable, std::size_t kRow, class C, class... A>
struct Thunk<kTable, kRow, void (C::*)(A...)> : ThunkBase<kTable, kRow, C, void, A...> {
  using Function = HRESULT(VQ_API*)(void*, typename Param<A>::Abi...);

  static HRESULT VQ_API call(void* self, typename Param<A>::Abi... a) noexcept {
    return Thunk::run(
        self, [](const auto& native) { native(); }, std::index_sequence_for<A...>{}, a...);
  }
};

template <const auto& kTable, std::size_t kRow, class C, class R, class... A>
struct Thunk<kTable, kRow, R (C::*)(A...) const> : Thunk<kTable, kRow, R (C::*)(A...)> {};

template <const auto& kTable, std::size_t kRow>
using ThunkOf = Thunk<kTable, kRow,
                      std::remove_cv_t<std::remove_reference_t<
                          decltype(std::tuple_element_t<
                                   kRow, std::remove_cvref_t<decltype(kTable.rows)>>::kFunction)>>>;

}  // namespace vqmath63::automation
