// Objects as a script language makes them: arrays with `length`, `push` and `slice`, boxes with a
// `value`, and what stands for a value or a sheet's cells.
#pragma once

#include <functional>
#include <iterator>
#include <map>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <vector>

#include "automation/types.hpp"

namespace vqmath63::automation::test {

/// `Variable` holds a VARIANT `v` and clears it.
template <class Variable>
class ScriptObjectOf : public IDispatch {
 public:
  static inline int alive = 0;

  bool is_array = true;
  std::vector<std::unique_ptr<Variable>> elements;  ///< null where the array has a hole
  double boast = 0.0;                               ///< a length beyond the elements
  Variable value;
  Variable whole;  ///< what the object itself stands for, such as the cells of a sheet's range
  std::map<std::u16string, Variable> answers;  ///< of methods without arguments
  bool itself = false;                         ///< is what it stands for
  HRESULT failure = S_OK;                      ///< of whatever it is asked
  std::function<void()> work;                  ///< runs in every call
  std::function<void()> asked;                 ///< runs when a name is looked up
  std::function<void()> released;              ///< runs when a reference is given back

  ScriptObjectOf() { ++alive; }
  virtual ~ScriptObjectOf() { --alive; }
  ScriptObjectOf(const ScriptObjectOf&) = delete;
  ScriptObjectOf& operator=(const ScriptObjectOf&) = delete;

  void add(const VARIANT& v) {
    elements.push_back(std::make_unique<Variable>());
    VariantCopy(&elements.back()->v, &v);
  }

  HRESULT VQ_API QueryInterface(REFIID, void** out) override {
    if (asked) asked();
    *out = nullptr;
    return E_NOINTERFACE;
  }
  ULONG VQ_API AddRef() override { return ++references_; }
  ULONG VQ_API Release() override {
    if (released) released();
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }
  HRESULT VQ_API GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT VQ_API GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT VQ_API GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* ids) override {
    if (asked) asked();
    if (FAILED(failure)) return failure;
    const std::u16string_view name = names[0];
    *ids = DISPID_UNKNOWN;
    if (is_array && name == u"length") *ids = kLength;
    if (is_array && name == u"push") *ids = kPush;
    if (is_array && name == u"slice") *ids = kSlice;
    if (!is_array && name == u"value" && whole.v.vt == VT_EMPTY) *ids = kValue;
    if (const auto method = answers.find(names[0]); method != answers.end()) {
      *ids = kAnswers + static_cast<DISPID>(std::distance(answers.begin(), method));
    }
    std::size_t at = 0;
    for (const char16_t c : name) at = c >= '0' && c <= '9' ? at * 10 + (c - u'0') : 1000;
    if (is_array && at < elements.size() && elements[at]) *ids = static_cast<DISPID>(kFirst + at);
    return *ids == DISPID_UNKNOWN ? DISP_E_UNKNOWNNAME : S_OK;
  }
  HRESULT VQ_API Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* sent, VARIANT* result,
                        EXCEPINFO*, UINT*) override {
    if (work) work();
    if (FAILED(failure)) return failure;
    try {
      if (flags == DISPATCH_METHOD && id == kPush && sent->cArgs == 1) {
        add(sent->rgvarg[0]);
        return S_OK;
      }
      if (flags == DISPATCH_METHOD && id == kSlice && sent->cArgs == 2) {
        result->vt = VT_DISPATCH;
        result->pdispVal = new ScriptObjectOf;
        return S_OK;
      }
      if (id == DISPID_VALUE && itself && result != nullptr) {
        AddRef();
        result->vt = VT_DISPATCH;
        result->pdispVal = this;
        return S_OK;
      }
      if (flags == DISPATCH_METHOD && id >= kAnswers) {
        return VariantCopy(result, &std::next(answers.begin(), id - kAnswers)->second.v);
      }
      if (id == DISPID_VALUE && whole.v.vt != VT_EMPTY) {
        return flags == DISPATCH_PROPERTYPUT ? VariantCopy(&whole.v, sent->rgvarg)
                                             : VariantCopy(result, &whole.v);
      }
      if (id >= kValue && place(id) == nullptr) return DISP_E_MEMBERNOTFOUND;
      if (flags == DISPATCH_PROPERTYPUT && sent->cNamedArgs == 1 &&
          sent->rgdispidNamedArgs[0] == DISPID_PROPERTYPUT) {
        if (id != kLength) return VariantCopy(place(id), sent->rgvarg);
        if (sent->rgvarg->vt != VT_I4 || sent->rgvarg->lVal < 0) return E_INVALIDARG;
        elements.resize(static_cast<std::size_t>(sent->rgvarg->lVal));
        return S_OK;
      }
      if (flags != DISPATCH_PROPERTYGET || sent->cArgs != 0 || id == DISPID_VALUE)
        return DISP_E_MEMBERNOTFOUND;
      if (id != kLength) return VariantCopy(result, place(id));
      result->vt = VT_R8;
      result->dblVal = boast != 0.0 ? boast : static_cast<double>(elements.size());
      return S_OK;
    } catch (const std::bad_alloc&) {
      return E_OUTOFMEMORY;
    }
  }

 private:
  enum : DISPID { kLength = 1, kPush, kSlice, kValue, kFirst, kAnswers = 10000 };
  VARIANT* place(DISPID id) {
    if (id == kValue) return &value.v;
    const auto at = static_cast<std::size_t>(id - kFirst);
    return at < elements.size() && elements[at] ? &elements[at]->v : nullptr;
  }
  ULONG references_ = 1;
};

}  // namespace vqmath63::automation::test
