// Automation objects made from a class's table: vtable, IUnknown, IDispatch, class description.
#pragma once

#include <atomic>
#include <new>

#include "automation/invoke.hpp"
#include "automation/many_calls.hpp"
#include "automation/object_support.hpp"
#include "automation/thunk.hpp"

namespace vqmath63::automation {

/// Function pointers of different types one after another, as a vtable has them.
template <class... F>
struct Slots;
template <class F>
struct Slots<F> {
  F function;
};
template <class F, class... Rest>
struct Slots<F, Rest...> {
  F function;
  Slots<Rest...> rest;
};

/// Whether an instance is made and ended without arithmetic: a class whose constructor cannot fail
/// only sets what it keeps, and has no more than memory to give back. The host's floating-point
/// state may stay then; to look at it costs more than all the rest.
template <class Class>
constexpr bool kPlainEnds = std::is_nothrow_default_constructible_v<Class>;

template <const auto& kTable>
struct Object {
  using Class = typename std::remove_cvref_t<decltype(kTable)>::Class;

  const void* vtable;
  std::atomic<std::int32_t> references{1};
  LiveObject counted;
  Class instance;

  explicit Object(const void* functions) : vtable(functions) {}

  static HRESULT VQ_API QueryInterface(void* self, REFIID iid, void** out) noexcept {
    return query_interface(class_info<kTable>(), self, iid, out);
  }
  static ULONG VQ_API AddRef(void* self) noexcept {
    return static_cast<ULONG>(++static_cast<Object*>(self)->references);
  }
  static ULONG VQ_API Release(void* self) noexcept {
    auto* object = static_cast<Object*>(self);
    // Who holds the only reference need not lock it against others.
    const bool last = object->references.load(std::memory_order_acquire) == 1;
    const std::int32_t left = last ? 0 : --object->references;
    if (left == 0) {
      // The class's own termination runs now. A text that the host has yet to read stays.
      [[maybe_unused]] const std::conditional_t<kPlainEnds<Class>, NoScope, FloatingPointScope>
          scope{};
      delete object;
    }
    return static_cast<ULONG>(left);
  }
  static HRESULT VQ_API GetTypeInfoCount(void*, UINT* count) noexcept {
    return type_info_count(count);
  }
  static HRESULT VQ_API GetTypeInfo(void*, UINT index, LCID, ITypeInfo** out) noexcept {
    return type_info(class_info<kTable>(), index, out);
  }
  static HRESULT VQ_API GetIDsOfNames(void*, REFIID, LPOLESTR* names, UINT count, LCID,
                                      DISPID* ids) noexcept {
    return ids_of_names(class_info<kTable>(), names, count, ids);
  }
  // The interface ids of both calls by name are reserved; a host may pass a null one.
  static HRESULT VQ_API Invoke(void* self, DISPID id, REFIID, LCID locale, WORD flags,
                               DISPPARAMS* params, VARIANT* result, EXCEPINFO* exception,
                               UINT* bad_argument) noexcept {
    return invoke(class_info<kTable>(), self, id, locale, flags, params, result, exception,
                  bad_argument);
  }
};

/// The interface value at a place, or the place itself for a parameter by reference.
template <class Abi>
Abi value_or_place(void* place) {
  if constexpr (std::is_pointer_v<Abi> && !std::is_same_v<Abi, BSTR>) {
    return static_cast<Abi>(place);
  } else {
    return *static_cast<Abi*>(place);
  }
}

/// Calls a vtable function with the values at `arguments`; one per signature.
template <class ResultAbi, class... Abi>
HRESULT late_call(void* self, void (*function)(), [[maybe_unused]] void* const* arguments,
                  void* result) {
  return [&]<std::size_t... k>(std::index_sequence<k...>) {
    if constexpr (std::is_void_v<ResultAbi>) {
      const auto typed = reinterpret_cast<HRESULT(VQ_API*)(void*, Abi...)>(function);
      return typed(self, value_or_place<Abi>(arguments[k])...);
    } else {
      const auto typed = reinterpret_cast<HRESULT(VQ_API*)(void*, Abi..., ResultAbi*)>(function);
      return typed(self, value_or_place<Abi>(arguments[k])..., static_cast<ResultAbi*>(result));
    }
  }
  (std::index_sequence_for<Abi...>{});
}

template <class R>
struct ResultAbiOf {
  using Type = typename Result<R>::Abi;
};
template <>
struct ResultAbiOf<void> {
  using Type = void;
};

/// Automation types of a native signature, and the calls that know it.
template <class F>
struct Describe;
template <class C, class R, class... A>
struct Describe<R (C::*)(A...)> {
  static constexpr std::array<ValueType, sizeof...(A)> kArguments{Param<A>::kType...};
  static constexpr ValueType kResult = Result<R>::kType;
  static constexpr MemberInfo::LateCall kLateCall =
      &late_call<typename ResultAbiOf<R>::Type, typename Param<A>::Abi...>;
  template <const auto& kTable, class F = R (C::*)(A...)>
  static constexpr MemberInfo::ManyCall kManyCall = &ManyCallsOf<kTable, F, R, A...>::run;
};
template <class C, class R, class... A>
struct Describe<R (C::*)(A...) const> : Describe<R (C::*)(A...)> {
  template <const auto& kTable>
  static constexpr MemberInfo::ManyCall kManyCall =
      &ManyCallsOf<kTable, R (C::*)(A...) const, R, A...>::run;
};

/// Everything made from a table at compile time.
template <const auto& kTable>
class Boundary {
  using TableType = std::remove_cvref_t<decltype(kTable)>;
  static constexpr std::size_t kRows = TableType::kRows;
  using Sequence = std::make_index_sequence<kRows>;

  template <std::size_t k>
  using RowOf = std::remove_cvref_t<std::tuple_element_t<k, decltype(TableType::rows)>>;
  template <std::size_t k>
  using DescribeRow = Describe<std::remove_const_t<decltype(RowOf<k>::kFunction)>>;

  // A row's arguments with the types of its member's parameters filled in.
  template <std::size_t k>
  static constexpr auto typed_arguments() {
    auto arguments = std::get<k>(kTable.rows).arguments;
    for (std::size_t a = 0; a < arguments.size(); ++a) {
      arguments[a].type = DescribeRow<k>::kArguments[a];
    }
    return arguments;
  }
  template <std::size_t k>
  static constexpr auto kArguments = typed_arguments<k>();

  template <std::size_t... k>
  static constexpr std::array<MemberInfo, kRows> describe(std::index_sequence<k...>) {
    return {MemberInfo{std::get<k>(kTable.rows).name, name_hash(std::get<k>(kTable.rows).name),
                       std::get<k>(kTable.rows).dispid, std::get<k>(kTable.rows).kind,
                       std::get<k>(kTable.rows).help, kArguments<k>, DescribeRow<k>::kResult,
                       DescribeRow<k>::kLateCall, DescribeRow<k>::template kManyCall<kTable>,
                       &RowOf<k>::kFunction}...};
  }

  template <std::size_t... k>
  static constexpr auto make_vtable(std::index_sequence<k...>) {
    using O = Object<kTable>;
    return Slots<decltype(&O::QueryInterface), decltype(&O::AddRef), decltype(&O::Release),
                 decltype(&O::GetTypeInfoCount), decltype(&O::GetTypeInfo),
                 decltype(&O::GetIDsOfNames), decltype(&O::Invoke),
                 typename ThunkOf<kTable, k>::Function...>{
        &O::QueryInterface, &O::AddRef,        &O::Release, &O::GetTypeInfoCount,
        &O::GetTypeInfo,    &O::GetIDsOfNames, &O::Invoke,  &ThunkOf<kTable, k>::call...};
  }

  static HRESULT create(REFIID iid, void** out) noexcept;

 public:
  static constexpr std::array<MemberInfo, kRows> kMembers = describe(Sequence{});
  static constexpr auto kVtable = make_vtable(Sequence{});
  static constexpr ClassInfo kInfo{kTable.name, kTable.help,       kTable.clsid, kTable.iid,
                                   kMembers,    &Boundary::create, &kVtable};
};

template <const auto& kTable>
const ClassInfo& class_info() noexcept {
  return Boundary<kTable>::kInfo;
}

template <const auto& kTable>
HRESULT Boundary<kTable>::create(REFIID iid, void** out) noexcept {
  static_assert(sizeof(kVtable) == (7 + kRows) * sizeof(void*));
  using Class = typename TableType::Class;
  [[maybe_unused]] const std::conditional_t<kPlainEnds<Class>, PlainScope, CallScope> scope;
  try {
    auto* object = new Object<kTable>(&kVtable);
    if (out != nullptr && is_own_interface(kInfo, iid)) [[likely]] {
      *out = object;  // with the reference that it begins with
      return S_OK;
    }
    const HRESULT found = Object<kTable>::QueryInterface(object, iid, out);
    if (FAILED(found)) {
      delete object;
    } else {
      --object->references;
    }
    return found;
  } catch (...) {
    return failure_in_flight(kInfo);
  }
}

}  // namespace vqmath63::automation
