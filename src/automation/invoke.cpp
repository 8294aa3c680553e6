#include "automation/invoke.hpp"

#include <algorithm>
#include <new>

#include "automation/call_scope.hpp"
#include "automation/failure.hpp"
#include "automation/late_array.hpp"
#include "automation/late_scalar.hpp"
#include "automation/text.hpp"

namespace vqmath63::automation {
namespace {

bool serves(MemberKind kind, WORD flags) {
  // A property may be read with the method flag: late-bound hosts do not know which it is.
  constexpr WORD kRead = DISPATCH_METHOD | DISPATCH_PROPERTYGET;
  constexpr WORD kWrite = DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF;
  return (flags & (kind == MemberKind::kPropertyLet ? kWrite : kRead)) != 0;
}

// Hosts that forward an optional argument of their own send a reference to the missing one.
bool is_missing(const VARIANT& sent) {
  const bool behind = sent.vt == (VT_BYREF | VT_VARIANT) && sent.pvarVal != nullptr;
  const VARIANT& v = behind ? *sent.pvarVal : sent;
  const bool by_ref = v.vt == (VT_BYREF | VT_ERROR) && v.pscode != nullptr;
  return (by_ref && *v.pscode == DISP_E_PARAMNOTFOUND) ||
         (v.vt == VT_ERROR && v.scode == DISP_E_PARAMNOTFOUND);
}

// What was sent for each argument. Only as many entries are set as the member has arguments: to
// clear them all takes longer than to set a property.
struct Binding {
  explicit Binding(std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
      given[i] = nullptr;
      sent_as[i] = 0;
    }
  }
  VARIANT* given[kMostArguments];
  UINT sent_as[kMostArguments];  // index into rgvarg, for the bad-argument report
};

HRESULT bind(const MemberInfo& member, DISPPARAMS& params, Binding& binding, UINT* bad_argument) {
  const auto count = static_cast<UINT>(member.arguments.size());
  UINT named = params.cNamedArgs;
  if (params.cArgs < named) return DISP_E_BADPARAMCOUNT;
  if (params.cArgs > 0 && params.rgvarg == nullptr) return E_INVALIDARG;
  if (named > 0 && params.rgdispidNamedArgs == nullptr) return E_INVALIDARG;
  const auto note_bad = [&](UINT sent) {
    if (bad_argument != nullptr) *bad_argument = sent;
  };
  const auto set = [&](UINT argument, UINT sent) {
    binding.given[argument] = &params.rgvarg[sent];
    binding.sent_as[argument] = sent;
  };
  for (UINT i = 0; i < named; ++i) {
    DISPID id = params.rgdispidNamedArgs[i];
    if (id == DISPID_PROPERTYPUT && member.kind == MemberKind::kPropertyLet) {
      id = static_cast<DISPID>(count) - 1;  // the value is the last argument
    }
    if (id < 0 || static_cast<UINT>(id) >= count) {
      note_bad(i);
      return DISP_E_PARAMNOTFOUND;
    }
    if (binding.given[id] != nullptr) {  // named twice
      note_bad(i);
      return DISP_E_BADPARAMCOUNT;
    }
    set(static_cast<UINT>(id), i);
  }
  const UINT positional = params.cArgs - named;
  if (positional > count) return DISP_E_BADPARAMCOUNT;
  for (UINT i = 0; i < positional; ++i) {
    const UINT sent = params.cArgs - 1 - i;
    if (binding.given[i] != nullptr) {  // also named: one too many
      note_bad(sent);
      return DISP_E_BADPARAMCOUNT;
    }
    set(i, sent);
  }
  for (UINT i = 0; i < count; ++i) {
    const bool sent = binding.given[i] != nullptr;
    if (sent && is_missing(*binding.given[i])) binding.given[i] = nullptr;
    if (binding.given[i] == nullptr && !member.arguments[i].optional) {
      note_bad(binding.sent_as[i]);
      return sent || named > 0 ? DISP_E_PARAMNOTOPTIONAL : DISP_E_BADPARAMCOUNT;
    }
  }
  return S_OK;
}

// The late arguments of one call, made one after the other in place.
class LateArguments {
 public:
  LateArguments() = default;
  ~LateArguments() {
    while (count_ > 0) arguments_[--count_]->~LateArgument();
  }
  LateArguments(const LateArguments&) = delete;
  LateArguments& operator=(const LateArguments&) = delete;

  void add(const Sent& of) {
    const Sent& sent = *new (sent_ + count_ * sizeof(Sent)) Sent(of);
    void* const at = storage_ + count_ * kSize;
    if (sent.info.type.rank > 0) {
      arguments_[count_] = new (at) LateArray(sent, held_);
    } else {
      arguments_[count_] = new (at) LateScalar(sent);
    }
    places_[count_] = arguments_[count_]->place();
    ++count_;
  }
  void* const* places() const { return places_; }
  // `failed` becomes the number of the first argument whose result the host's variable cannot take.
  HRESULT hand_back(bool succeeded, std::size_t& failed) noexcept {
    held_.release();
    for (std::size_t i = 0; i < count_; ++i) arguments_[i]->settle();
    HRESULT outcome = S_OK;
    // Objects of a script last: what their code gives the other variables is their values then.
    for (const bool scripts : {false, true}) {
      for (std::size_t i = 0; i < count_; ++i) {
        if (arguments_[i]->is_script() != scripts) continue;
        const HRESULT back = arguments_[i]->hand_back(succeeded);
        if (FAILED(back) && (SUCCEEDED(outcome) || i < failed)) {
          outcome = back;
          failed = i;
        }
      }
    }
    return outcome;
  }

 private:
  static constexpr std::size_t kSize = std::max(sizeof(LateScalar), sizeof(LateArray));
  static constexpr std::size_t kAlignment = std::max(alignof(LateScalar), alignof(LateArray));
  static_assert(kSize % kAlignment == 0);

  HeldArrays held_;  // outlives the arguments
  LateArgument* arguments_[kMostArguments];
  void* places_[kMostArguments];
  std::size_t count_ = 0;
  alignas(Sent) std::byte sent_[kMostArguments * sizeof(Sent)];
  alignas(kAlignment) std::byte storage_[kMostArguments * kSize];
};

// What is told of a call that failed. Kept here, not in the thread's error info, until the
// arguments are gone: code of the host that takes a value or lets an object go may call here again.
struct Failure {
  HRESULT code = S_OK;
  Reference<IErrorInfo> error;
};

// Takes the thread's error info as that of a call with this result.
HRESULT note(HRESULT failed, Failure& failure) noexcept {
  failure = {failed, take_failure()};
  return DISP_E_EXCEPTION;
}

// Puts it into the exception record of the call.
void tell(const Failure& failure, EXCEPINFO* exception) noexcept {
  if (exception == nullptr) return give_failure(failure.error);  // the host reads it there
  *exception = EXCEPINFO{};
  exception->scode = failure.code;
  if (!failure.error) return;
  failure.error->GetSource(&exception->bstrSource);
  failure.error->GetDescription(&exception->bstrDescription);
}

// The call itself; `answer` stays empty unless it did well, `failure` unless the outcome is
// DISP_E_EXCEPTION.
HRESULT call_by_name(const ClassInfo& info, void* self, DISPID dispid, LCID locale, WORD flags,
                     DISPPARAMS& params, Variant& answer, Failure& failure,
                     UINT* bad_argument) noexcept {
  std::size_t place = 0;
  const MemberInfo* member = find_member(info, dispid, flags, &place);
  if (member == nullptr) return DISP_E_MEMBERNOTFOUND;
  Binding binding(member->arguments.size());
  const HRESULT bound = bind(*member, params, binding, bad_argument);
  if (FAILED(bound)) return bound;

  LateArguments arguments;
  try {
    for (std::size_t i = 0; i < member->arguments.size(); ++i) {
      if (bad_argument != nullptr) *bad_argument = binding.sent_as[i];
      arguments.add({member->name, member->arguments[i], binding.given[i], locale});
    }
  } catch (...) {
    return note(failure_in_flight(info), failure);
  }

  constexpr std::size_t kInherited = 7;  // IUnknown and IDispatch
  using Slots = void (*const*)();
  const Slots slots = *static_cast<const Slots*>(self);
  const HRESULT called =
      member->late_call(self, slots[kInherited + place], arguments.places(), &answer.llVal);
  if (FAILED(called)) note(called, failure);
  // A failed call has written some by-reference values too: they are the host's to see.
  std::size_t failed = 0;
  const HRESULT outcome = arguments.hand_back(SUCCEEDED(called), failed);
  if (SUCCEEDED(called)) answer.vt = member->result.vt;
  if (SUCCEEDED(called) && SUCCEEDED(outcome)) return S_OK;
  clear(answer);
  if (FAILED(called)) return DISP_E_EXCEPTION;
  return note(fail_to_hand_back(info, member->name, member->arguments[failed].name, outcome),
              failure);
}

}  // namespace

const MemberInfo* find_member(const ClassInfo& info, DISPID dispid, WORD flags,
                              std::size_t* place) noexcept {
  const std::size_t count = info.members.size();
  // Most tables count their ids from 1, row by row: there the first look finds the member.
  const auto guess = static_cast<std::size_t>(static_cast<std::uint32_t>(dispid) - 1U);
  std::size_t i = guess < count ? guess : 0;
  for (std::size_t looked = 0; looked < count; ++looked) {
    const MemberInfo& member = info.members[i];
    if (member.dispid == dispid && serves(member.kind, flags)) {
      *place = i;
      return &member;
    }
    if (++i == count) i = 0;
  }
  return nullptr;
}

HRESULT ids_of_names(const ClassInfo& info, LPOLESTR* names, UINT count, DISPID* ids) noexcept {
  if (names == nullptr || ids == nullptr || count == 0) return E_INVALIDARG;
  std::fill_n(ids, count, DISPID{DISPID_UNKNOWN});
  HRESULT outcome = DISP_E_UNKNOWNNAME;
  if (names[0] == nullptr) return outcome;
  const std::uint32_t hash = name_hash(names[0]);
  // A property has a row to read and one to set; argument names may stand in either.
  for (const MemberInfo& member : info.members) {
    if (member.hash != hash || !same_name(names[0], member.name)) continue;
    ids[0] = member.dispid;
    outcome = S_OK;
    for (UINT i = 1; i < count; ++i) {
      for (std::size_t a = 0; a < member.arguments.size() && names[i] != nullptr; ++a) {
        if (same_name(names[i], member.arguments[a].name)) ids[i] = static_cast<DISPID>(a);
      }
    }
  }
  for (UINT i = 1; i < count; ++i) {
    if (ids[i] == DISPID_UNKNOWN) outcome = DISP_E_UNKNOWNNAME;
  }
  return outcome;
}

HRESULT invoke(const ClassInfo& info, void* self, DISPID dispid, LCID locale, WORD flags,
               DISPPARAMS* params, VARIANT* result, EXCEPINFO* exception,
               UINT* bad_argument) noexcept {
  const CallScope scope;  // conversions are arithmetic too
  if (params == nullptr) return E_INVALIDARG;
  Variant answer;
  Failure failure;
  const HRESULT outcome =
      call_by_name(info, self, dispid, locale, flags, *params, answer, failure, bad_argument);
  if (outcome == DISP_E_EXCEPTION) tell(failure, exception);
  // Only now: the host may take the result into the variable that an argument stands for.
  if (result != nullptr) *result = answer.release();
  return outcome;
}

}  // namespace vqmath63::automation
