// A call of any member in the forms in which hosts make it: by the dual interface, and by name.
#pragma once

#include "check.hpp"
#include "component/calls.hpp"

namespace vqmath63::calls {

inline const ClassRow& class_row(const std::string& name) {
  for (const ClassRow& row : kClasses) {
    if (name == row.name) return row;
  }
  throw std::invalid_argument("no class " + name);
}

inline DISPID id_of(IDispatch* object, const std::string& name) {
  Text wide(name);
  DISPID id = DISPID_UNKNOWN;
  checks.result(object->GetIDsOfNames(IID_NULL, &wide.text, 1, 0, &id), S_OK, name);
  return id;
}

/// The arguments of a call, references to variables where the member takes them.
class MemberCall {
 public:
  /// With `all`, what is left out is sent as its default, for ways of calling that cannot leave an
  /// argument out by reference.
  MemberCall(const Member& member, std::vector<Variable>& sent, bool all) : member_(member) {
    defaults_.reserve(member.arguments.size());
    for (std::size_t i = 0; i < member.arguments.size(); ++i) {
      const bool given = i < sent.size();
      if (!given && all) set(defaults_.emplace_back(), member.fallbacks.at(i), member.arguments[i]);
      VARIANT* const v = given ? &sent[i].v : all ? &defaults_.back().v : nullptr;
      words.push_back(v == nullptr ? VARIANT{} : *v);
      if (v != nullptr && !member.arguments[i].by_ref) continue;
      words.back().vt = static_cast<VARTYPE>(words.back().vt | VT_BYREF);
      words.back().byref = v == nullptr ? nullptr : &v->llVal;
    }
  }

  /// By the dual interface; `result` may be null.
  HRESULT by_vtable(IUnknown* object, VARIANT* result) {
    std::vector<VARIANT> sent = words;
    for (VARIANT& word : sent) {
      if ((word.vt & VT_BYREF) != 0) word.vt = VT_BYREF | VT_UI1;
    }
    if (member_.result.vt != VT_EMPTY) {
      sent.emplace_back();
      sent.back().vt = VT_BYREF | VT_UI1;
      sent.back().byref = result == nullptr ? nullptr : &result->llVal;
    }
    std::vector<VARTYPE> types;
    std::vector<VARIANT*> places;
    for (VARIANT& word : sent) {
      types.push_back(word.vt);
      places.push_back(&word);
    }
    VARIANT code{};
    checks.result(DispCallFunc(object, member_.slot * sizeof(void*), CC_STDCALL, VT_I4,
                               static_cast<UINT>(sent.size()), types.data(), places.data(), &code),
                  S_OK, "DispCallFunc");
    if (SUCCEEDED(code.lVal) && result != nullptr) result->vt = member_.result.vt;
    return code.lVal;
  }

  /// By name: `invoke` takes flags, parameters and the places for result and exception. Of an
  /// exception the code that it tells is returned.
  template <class Invoke>
  HRESULT by_name(const std::string& kind, VARIANT* result, const Invoke& invoke) {
    const bool let = kind == "let";
    std::vector<VARIANT> reversed(words.rbegin(), words.rend());
    while (!reversed.empty() && reversed.front().vt == VT_BYREF) reversed.erase(reversed.begin());
    DISPID put = DISPID_PROPERTYPUT;
    DISPPARAMS params{reversed.data(), let ? &put : nullptr, static_cast<UINT>(reversed.size()),
                      let ? 1U : 0U};
    EXCEPINFO exception{};
    const HRESULT code = invoke(static_cast<WORD>(let             ? DISPATCH_PROPERTYPUT
                                                  : kind == "get" ? DISPATCH_PROPERTYGET
                                                                  : DISPATCH_METHOD),
                                &params, let ? nullptr : result, &exception);
    Text source, text;
    source.text = exception.bstrSource;
    text.text = exception.bstrDescription;
    exception_words = text.ascii();
    return code == DISP_E_EXCEPTION && exception.scode != 0 ? exception.scode : code;
  }

  std::vector<VARIANT> words;
  std::string exception_words;

 private:
  const Member& member_;
  std::vector<Variable> defaults_;
};

/// `by_name` of the object's own IDispatch.
inline auto own_invoke(IDispatch* object, DISPID id) {
  return [object, id](WORD flags, DISPPARAMS* params, VARIANT* result, EXCEPINFO* exception) {
    UINT bad = 0;
    return object->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, params, result, exception,
                          &bad);
  };
}

}  // namespace vqmath63::calls
