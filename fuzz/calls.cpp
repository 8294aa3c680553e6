// Calls of members, by name and through the vtable.
#include <algorithm>

#include "component/class_list.hpp"
#include "component/exports.hpp"
#include "world.hpp"

namespace vqmath63::fuzz {
namespace {

using automation::ClassInfo;
using automation::MemberInfo;

/// How an argument of a call by name is sent.
enum Form : std::uint8_t {
  kByValue,
  kByRef,
  kVariant,
  kVariantOfRef,
  kVariantOfVariant,
  kMissing,
  kVariantOfMissing,
  kRefToMissing,
  kItself,
  kNullRef,
  kNullVariant,
  kForms
};
constexpr std::uint8_t kOfHost = 0x10;  // one of the host's variables, whose number follows
constexpr std::uint8_t kNamed = 0x20;
constexpr std::uint8_t kAgain = 0x40;  // the variable of the argument before

constexpr VARIANT reference(int type, void* to) {
  VARIANT made{};
  made.vt = static_cast<VARTYPE>(VT_BYREF | type);
  made.byref = to;
  return made;
}

void refer_by_type(Argument& argument) {
  argument.typed = true;
  ++argument.variable->fixed_type;
}

VARIANT sent_as(Form form, Argument& argument) {
  VARIANT& v = argument.variable->v;
  VARIANT missing{};
  missing.vt = VT_ERROR;
  missing.scode = DISP_E_PARAMNOTFOUND;
  switch (form) {
    case kByRef:
      refer_by_type(argument);
      return reference(v.vt, v.vt == VT_DECIMAL ? static_cast<void*>(&v) : &v.llVal);
    case kVariant:
      return reference(VT_VARIANT, &v);
    case kVariantOfRef:
      argument.inner = sent_as(kByRef, argument);
      return reference(VT_VARIANT, &argument.inner);
    case kVariantOfVariant:
      argument.inner = reference(VT_VARIANT, &v);
      return reference(VT_VARIANT, &argument.inner);
    case kMissing:
      return missing;
    case kVariantOfMissing:
      argument.inner = missing;
      return reference(VT_VARIANT, &argument.inner);
    case kRefToMissing:
      argument.inner = missing;
      return reference(VT_ERROR, &argument.inner.scode);
    case kItself:
      argument.inner = reference(VT_VARIANT, &argument.inner);
      return argument.inner;
    case kNullRef:
      return reference(v.vt == VT_EMPTY ? VARTYPE{VT_R8} : v.vt, nullptr);
    case kNullVariant:
      return reference(VT_VARIANT, nullptr);
    default:
      return v;
  }
}

Form form_of(const std::string& chunk) {
  return static_cast<Form>((static_cast<std::uint8_t>(chunk[0]) & 0x0F) % kForms);
}

bool has(const std::string& chunk, std::uint8_t flag) {
  return !chunk.empty() && (static_cast<std::uint8_t>(chunk[0]) & flag) != 0;
}

// This thread's error info, as the host reads it.
void take_error_info(HostVariable& source, HostVariable& words) {
  IErrorInfo* info = nullptr;
  if (GetErrorInfo(0, &info) != S_OK) return;
  source.v.vt = words.v.vt = VT_BSTR;
  info->GetSource(&source.v.bstrVal);
  info->GetDescription(&words.v.bstrVal);
  info->Release();
}

}  // namespace

void World::prepare(Bytes& bytes, const ValueType& wanted, Argument& argument) {
  const std::uint8_t form = bytes.byte();
  Frame& frame = frames_.back();
  const std::size_t before = frame.arguments.size() - 1;
  if ((form & kOfHost) != 0) {
    argument.variable = &variables[bytes.below(kVariables)];
  } else if ((form & kAgain) != 0 && before > 0) {
    argument.variable = frame.arguments[before - 1].variable;
  } else {
    make(bytes, wanted, variables, argument.own.v);
  }
}

// What goes by value stays as it is for the whole call, whatever happens to the variable.
void keep_value(Frame& frame, Argument& argument) {
  const auto refers = [&](const Argument& other) { return other.variable == &argument.own; };
  if (std::count_if(frame.arguments.begin(), frame.arguments.end(), refers) != 1 ||
      argument.variable != &argument.own) {
    VariantCopyInd(&argument.copy.v, &argument.variable->v);
    argument.variable = &argument.copy;
  }
  argument.variable->kept = true;
}

void World::decode_arguments(const Operation& operation, const MemberInfo& member, Frame& frame) {
  for (std::size_t i = 1; i < operation.size(); ++i) {
    const ValueType wanted =
        i <= member.arguments.size() ? member.arguments[i - 1].type : ValueType{VT_R8, 0, false};
    Bytes bytes(operation[i]);
    prepare(bytes, wanted, frame.arguments.emplace_back());
  }
}

// The arguments in the types of the interface; a null pointer where one is missing.
void World::place_arguments(const MemberInfo& member, Frame& frame, void** places) {
  frame.arguments.resize(member.arguments.size());
  for (std::size_t i = 0; i < member.arguments.size(); ++i) {
    const ValueType& type = member.arguments[i].type;
    Argument& argument = frame.arguments[i];
    const bool fits =
        type.rank > 0 ? argument.variable->is_array() : argument.variable->v.vt == type.vt;
    if (!fits) {
      argument.variable = &argument.own;
      clear(argument.own);
      argument.own.v.vt = static_cast<VARTYPE>(type.vt | (type.rank > 0 ? VT_ARRAY : 0));
    }
    if (type.by_ref) {
      refer_by_type(argument);
    } else {
      keep_value(frame, argument);
    }
    places[i] = &argument.variable->v.llVal;
    if (type.by_ref && argument.inner.vt == VT_NULL) places[i] = nullptr;
  }
}

HRESULT World::call_by_vtable(const MemberInfo& member, std::size_t slot, Frame& frame,
                              bool no_result) {
  void* places[automation::kMostArguments] = {};
  place_arguments(member, frame, places);
  const auto function = (*reinterpret_cast<void (***)()>(frame.self))[7 + slot];
  HostVariable result;
  const HRESULT code = as_host([&] {
    return member.late_call(frame.self, function, places, no_result ? nullptr : &result.v.llVal);
  });
  result.v.vt = member.result.vt;
  if (SUCCEEDED(code)) {
    require(!no_result || member.result.vt == VT_EMPTY, "a result without a place");
    check_result(member, result.v);
  } else {
    HostVariable source, words;
    take_error_info(source, words);
    check_failure(*component::classes()[frame.type], code, source.v.bstrVal, words.v.bstrVal);
    require(result.v.llVal == 0, "a failed call has a result");
  }
  return code;
}

/// Many calls at once, over columns of the arguments' values.
void World::call_many(const MemberInfo& member, Frame& frame, Bytes& head) {
  constexpr std::int64_t kMost = 6, kStride = 8;  // memory: one more, for results further on
  void* places[automation::kMostArguments] = {};
  place_arguments(member, frame, places);
  const std::int64_t calls = head.byte() % (kMost + 1);
  const std::uint8_t odd = head.byte();
  std::vector<std::int64_t> memory[automation::kMostArguments + 1];
  std::vector<VqColumn> columns;
  for (std::size_t i = 0; i < member.arguments.size(); ++i) {
    const ValueType& type = member.arguments[i].type;
    VqColumn& column = columns.emplace_back(VqColumn{places[i], 0});
    if (type.rank > 0 || type.vt == VT_BSTR || places[i] == nullptr || (odd >> i % 8 & 1) != 0) {
      continue;
    }
    memory[i].assign(kMost + 1, frame.arguments[i].variable->v.llVal);
    for (std::size_t k = 1; k < kMost; ++k) {
      VARIANT other{};
      make(head, type, variables, other);
      if (other.vt == type.vt) memory[i][k] = other.llVal;
      clear(other);
    }
    column = {memory[i].data(), kStride};
  }
  memory[automation::kMostArguments].assign(kMost, 0);
  // Results of their own, or where the first arguments are: in place, or one further on.
  const bool in_place = (odd & 0xC0) == 0x40 && !memory[0].empty() && member.result.vt != VT_BSTR;
  std::int64_t* const own = memory[automation::kMostArguments].data();
  const VqColumn results{in_place ? memory[0].data() + (odd >> 5 & 1) : own, kStride};
  VqFailures failures{};
  WORD flags =
      member.kind == automation::MemberKind::kPropertyLet ? DISPATCH_PROPERTYPUT : DISPATCH_METHOD;
  if (odd == 255) flags = head.byte();
  const HRESULT code = as_host([&] {
    return VqCallMany(frame.self, member.dispid, flags, calls, columns.data(),
                      static_cast<UINT>(columns.size()), odd == 254 ? nullptr : &results,
                      &failures);
  });
  require(failures.count >= 0 && failures.count <= calls && failures.first < calls,
          "more failures than calls");
  if (member.result.vt == VT_BSTR) {
    for (const std::int64_t text : memory[automation::kMostArguments]) {
      SysFreeString(reinterpret_cast<BSTR>(text));
    }
  }
  if (SUCCEEDED(code)) return;
  IErrorInfo* info = nullptr;
  if (GetErrorInfo(0, &info) == S_OK) info->Release();
}

HRESULT World::call_by_name(const ClassInfo& info, const MemberInfo& member, Frame& frame,
                            const Operation& operation, Bytes& head) {
  const std::uint8_t style = head.byte();
  std::vector<VARIANT> sent;
  std::vector<DISPID> named;
  const auto send = [&](std::size_t i) {
    Argument& argument = frame.arguments[i];
    const Form form = operation[i + 1].empty() ? kByValue : form_of(operation[i + 1]);
    if (form == kByValue) keep_value(frame, argument);
    sent.push_back(sent_as(form, argument));
  };
  constexpr WORD kUsual[] = {DISPATCH_METHOD, DISPATCH_PROPERTYGET, DISPATCH_PROPERTYPUT};
  WORD flags = kUsual[static_cast<int>(member.kind)];
  if (member.kind == automation::MemberKind::kPropertyLet && !frame.arguments.empty() &&
      (style & 1) == 0) {
    send(frame.arguments.size() - 1);
    named.push_back(DISPID_PROPERTYPUT);
  }
  const std::size_t last = frame.arguments.size() - named.size();
  for (std::size_t i = last; i-- > 0;) {  // last first, and of these the named ones
    if (!has(operation[i + 1], kNamed)) continue;
    send(i);
    named.push_back((style & 2) != 0 ? static_cast<DISPID>(head.byte()) : static_cast<DISPID>(i));
  }
  for (std::size_t i = last; i-- > 0;) {
    if (!has(operation[i + 1], kNamed)) send(i);
  }
  if ((style & 4) != 0) flags = head.raw<WORD>();
  const DISPID id = (style & 8) != 0 ? head.raw<std::int8_t>() : member.dispid;
  DISPPARAMS params{sent.data(), named.data(), static_cast<UINT>(sent.size()),
                    static_cast<UINT>(named.size())};
  if ((style & 16) != 0) params.cNamedArgs = head.byte() % 4;
  if (params.cNamedArgs > named.size()) params.rgdispidNamedArgs = nullptr;
  if ((style & 192) == 192) params.rgvarg = nullptr;
  HostVariable result;
  result.v.vt = VT_ILLEGAL;  // to be overwritten, not cleared
  EXCEPINFO exception{};
  UINT bad = 0;
  const HRESULT code = as_host([&] {
    return object(frame.type)
        ->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, (style & 224) == 224 ? nullptr : &params,
                 (style & 32) != 0 ? nullptr : &result.v, (style & 64) != 0 ? nullptr : &exception,
                 (style & 128) != 0 ? nullptr : &bad);
  });
  HostVariable source, words;
  source.v.vt = words.v.vt = VT_BSTR;
  source.v.bstrVal = exception.bstrSource;
  words.v.bstrVal = exception.bstrDescription;
  if ((style & 32) != 0) result.v = {};
  if (result.v.vt == VT_ILLEGAL) {
    result.v = {};
    require(code == E_INVALIDARG, "the result was left alone");
  }
  const bool recorded = code == DISP_E_EXCEPTION && (style & 64) == 0;
  require(recorded || exception.scode == S_OK, "an exception without need");
  if (code == DISP_E_EXCEPTION && !recorded) {  // the code is not told, the words are
    take_error_info(source, words);
    exception.scode = static_cast<HRESULT>(0x800A0005);
  }
  if (code == DISP_E_EXCEPTION) {
    check_failure(info, exception.scode, source.v.bstrVal, words.v.bstrVal);
  }
  if (FAILED(code)) {
    require(result.v.vt == VT_EMPTY, "a failed call has a result");
    constexpr HRESULT kKnown[] = {DISP_E_EXCEPTION,     DISP_E_MEMBERNOTFOUND,   E_INVALIDARG,
                                  DISP_E_PARAMNOTFOUND, DISP_E_PARAMNOTOPTIONAL, E_OUTOFMEMORY,
                                  DISP_E_BADPARAMCOUNT, DISP_E_NONAMEDARGS};
    bool known = false;
    for (const HRESULT one : kKnown) known = known || code == one;
    require(known, "an unknown result code of a call by name");
  } else if ((style & 44) == 0) {  // the very member, with a result
    check_result(member, result.v);
  }
  return code;
}

void World::call(Bytes head, const Operation& operation) {
  const auto classes = component::classes();
  const std::size_t type = head.below(classes.size());
  IDispatch* const self = object(type);
  if (self == nullptr) return;
  Frame& frame = frames_.emplace_back();
  frame.self = self;
  frame.type = type;
  const ClassInfo& info = *classes[frame.type];
  const std::size_t slot = head.below(info.members.size());
  const MemberInfo& member = info.members[slot];
  const std::uint8_t way = head.byte();
  decode_arguments(operation, member, frame);
  if ((way & 3) != 0) {
    for (std::size_t i = 0; i < frame.arguments.size(); ++i) {
      const std::string& chunk = operation[i + 1];
      if (!chunk.empty() && form_of(chunk) >= kMissing) frame.arguments[i].inner.vt = VT_NULL;
    }
    if ((way & 1) != 0) {
      call_by_vtable(member, slot, frame, (way & 2) != 0);
    } else {
      call_many(member, frame, head);
    }
  } else {
    call_by_name(info, member, frame, operation, head);
  }
  for (Argument& argument : frame.arguments) {
    if (argument.typed) --argument.variable->fixed_type;
    check_value(argument.variable->v, frames_.size() == 1);
  }
  if (frames_.size() == 1) look_at_variables();
  frames_.pop_back();
}

void World::look_at_variables() {
  for (const HostVariable& variable : variables) check_value(variable.v, true);
}

}  // namespace vqmath63::fuzz
