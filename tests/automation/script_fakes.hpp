// Objects as a script language makes them: arrays with `length`, `push` and `slice`, and boxes with
// a `value`.
#pragma once

#include <charconv>
#include <iterator>
#include <map>
#include <memory>

#include "boundary_fixture.hpp"

namespace vqmath63::automation::test {

class ScriptObject final : public IDispatch {
 public:
  static inline int alive = 0;

  bool is_array = true;
  std::vector<std::unique_ptr<Value>> elements;  ///< null where the array has a hole
  double boast = 0.0;                            ///< a length beyond the elements
  Value value;
  Value whole;  ///< what the object itself stands for, such as the cells of a sheet's range
  std::map<std::u16string, Value> answers;  ///< of methods without arguments
  std::function<void()> work;               ///< runs in every call
  std::function<void()> asked;              ///< runs when a name is looked up

  ScriptObject() { ++alive; }
  ~ScriptObject() { --alive; }
  ScriptObject(const ScriptObject&) = delete;
  ScriptObject& operator=(const ScriptObject&) = delete;

  void add(const VARIANT& v) {
    elements.push_back(std::make_unique<Value>());
    VariantCopy(&elements.back()->v, &v);
  }

  HRESULT VQ_API QueryInterface(REFIID, void** out) override {
    *out = nullptr;
    return E_NOINTERFACE;
  }
  ULONG VQ_API AddRef() override { return ++references_; }
  ULONG VQ_API Release() override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }
  HRESULT VQ_API GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT VQ_API GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT VQ_API GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* ids) override {
    if (asked) asked();
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
    try {
      if (flags == DISPATCH_METHOD && id == kPush && sent->cArgs == 1) {
        add(sent->rgvarg[0]);
        return S_OK;
      }
      if (flags == DISPATCH_METHOD && id == kSlice && sent->cArgs == 2) {
        result->vt = VT_DISPATCH;
        result->pdispVal = new ScriptObject;
        return S_OK;
      }
      if (flags == DISPATCH_METHOD && id >= kAnswers) {
        return VariantCopy(result, &std::next(answers.begin(), id - kAnswers)->second.v);
      }
      if (id == DISPID_VALUE && whole.v.vt != VT_EMPTY) {
        return flags == DISPATCH_PROPERTYPUT ? VariantCopy(&whole.v, sent->rgvarg)
                                             : VariantCopy(result, &whole.v);
      }
      if (flags == DISPATCH_PROPERTYPUT && sent->cNamedArgs == 1 &&
          sent->rgdispidNamedArgs[0] == DISPID_PROPERTYPUT) {
        if (id != kLength) return VariantCopy(place(id), sent->rgvarg);
        elements.resize(static_cast<std::size_t>(sent->rgvarg->lVal));
        return S_OK;
      }
      if (flags != DISPATCH_PROPERTYGET || sent->cArgs != 0 || id == DISPID_VALUE)
        return DISP_E_MEMBERNOTFOUND;
      if (id != kLength) return VariantCopy(result, place(id));
      *result = system::test::i4(static_cast<LONG>(elements.size())).v;
      if (boast != 0.0) *result = system::test::r8(boast).v;
      return S_OK;
    } catch (const std::bad_alloc&) {
      return E_OUTOFMEMORY;
    }
  }

  /// "[9 -1 hole [1]]"
  std::string text() const {
    std::string all = "[";
    for (const auto& element : elements) {
      if (all.size() > 1) all += ' ';
      if (!element) {
        all += "hole";
      } else if (element->v.vt == VT_DISPATCH) {
        all += static_cast<const ScriptObject*>(element->v.pdispVal)->text();
      } else if (element->v.vt == VT_EMPTY) {
        all += '-';
      } else {
        Value number;
        VariantChangeType(&number.v, &element->v, 0, VT_BSTR);
        all += ascii(characters(number.v.bstrVal));
      }
    }
    return all + ']';
  }

 private:
  enum : DISPID { kLength = 1, kPush, kSlice, kValue, kFirst, kAnswers = 10000 };
  VARIANT* place(DISPID id) {
    return id == kValue ? &value.v : &elements[static_cast<std::size_t>(id - kFirst)]->v;
  }
  ULONG references_ = 1;
};

inline Value as_value(ScriptObject* object) {
  Value made;
  made.v.vt = VT_DISPATCH;
  made.v.pdispVal = object;
  return made;
}

inline ScriptObject& object_of(const Value& value) {
  return *static_cast<ScriptObject*>(value.v.pdispVal);
}

/// A script's array of numbers and values; "hole" leaves one out.
inline Value script_array(const std::vector<Value>& values) {
  auto* made = new ScriptObject;
  for (const Value& v : values) {
    if (v.v.vt == VT_ERROR) {
      made->elements.emplace_back();
    } else {
      made->add(v.v);
    }
  }
  return as_value(made);
}

/// An array that has few elements for its length.
inline Value boasting_array(double length, const std::vector<Value>& values = {}) {
  Value made = script_array(values);
  object_of(made).boast = length;
  return made;
}

inline Value script_box(const Value& value) {
  auto* made = new ScriptObject;
  made->is_array = false;
  VariantCopy(&made->value.v, &value.v);
  return as_value(made);
}

/// A range of a sheet, or another object that is no array and stands for a value.
inline Value script_object(const Value& whole, std::map<std::u16string, Value> answers = {}) {
  auto* made = new ScriptObject;
  made->is_array = false;
  VariantCopy(&made->whole.v, &whole.v);
  made->answers = std::move(answers);
  return as_value(made);
}

}  // namespace vqmath63::automation::test
