#include "script_object.hpp"

#include <memory>

namespace vqmath63::fuzz {

int live_script_objects = 0;

namespace {

int depth = 0;  // of objects within objects

class ScriptObject final : public IDispatch {
 public:
  explicit ScriptObject(Bytes& bytes) : kind_(static_cast<Kind>(bytes.below(8))) {
    ++live_script_objects;
    if (kind_ == kPlainArray || kind_ == kArray || kind_ == kStrangeLength) {
      elements_.resize(bytes.below(12));
    } else {
      elements_.resize(1);
    }
    HostVariables none;
    ++depth;
    for (auto& element : elements_) {
      element = std::make_unique<HostVariable>();
      if (kind_ == kPlainArray) {
        element->v.vt = VT_R8;
        element->v.dblVal = number(bytes);
        continue;
      }
      // Objects within objects: rows, or a value that is an object again.
      make(bytes, {depth < 4 ? VARTYPE{VT_DISPATCH} : VARTYPE{VT_R8}}, none, element->v);
      if (element->v.vt == VT_ERROR) element.reset();  // a hole
    }
    --depth;
    failure_ = kind_ == kFailing ? (bytes.byte() & 1) != 0 ? E_OUTOFMEMORY : E_FAIL : S_OK;
    length_ = kind_ == kStrangeLength ? number(bytes) : 0.0;
  }
  ~ScriptObject() { --live_script_objects; }
  ScriptObject(const ScriptObject&) = delete;
  ScriptObject& operator=(const ScriptObject&) = delete;

  HRESULT VQ_API QueryInterface(REFIID, void** out) override {
    host_moment();
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
    host_moment();
    if (FAILED(failure_)) return failure_;
    const std::u16string_view name = names[0];
    const bool array = kind_ == kPlainArray || kind_ == kArray || kind_ == kStrangeLength;
    *ids = array && name == u"length"          ? kLength
           : array && name == u"push"          ? kPush
           : array && name == u"slice"         ? kSlice
           : kind_ == kBox && name == u"value" ? kFirst
                                               : DISPID_UNKNOWN;
    if (array && !name.empty() && name[0] >= u'0' && name[0] <= u'9') {
      std::size_t at = 0;
      for (const char16_t c : name) at = at * 10 + (c - u'0');
      if (at < elements_.size() && elements_[at]) *ids = static_cast<DISPID>(kFirst + at);
    }
    return *ids == DISPID_UNKNOWN ? DISP_E_UNKNOWNNAME : S_OK;
  }

  HRESULT VQ_API Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* sent, VARIANT* result,
                        EXCEPINFO*, UINT*) override {
    host_moment();
    if (FAILED(failure_)) return failure_;
    if (id == DISPID_VALUE) {
      if (kind_ != kDefault && kind_ != kItself) return DISP_E_MEMBERNOTFOUND;
      if (kind_ == kDefault) return read(0, result);
      AddRef();  // its own value
      result->vt = VT_DISPATCH;
      result->pdispVal = this;
      return S_OK;
    }
    if (id == kLength) return length(flags, sent, result);
    if (id == kPush) {
      elements_.push_back(std::make_unique<HostVariable>());
      return VariantCopyInd(&elements_.back()->v, &sent->rgvarg[0]);
    }
    if (id == kSlice) {
      Bytes nothing({});
      result->vt = VT_DISPATCH;
      result->pdispVal = new ScriptObject(nothing);
      return S_OK;
    }
    const auto at = static_cast<std::size_t>(id - kFirst);
    if (at >= elements_.size() || !elements_[at]) return DISP_E_MEMBERNOTFOUND;
    if ((flags & DISPATCH_PROPERTYPUT) == 0) return read(at, result);
    clear(*elements_[at]);
    return VariantCopyInd(&elements_[at]->v, &sent->rgvarg[0]);
  }

 private:
  enum Kind { kPlainArray, kArray, kBox, kDefault, kItself, kFailing, kStrangeLength, kNothing };
  enum : DISPID { kLength = 1, kPush, kSlice, kFirst };

  HRESULT read(std::size_t at, VARIANT* result) {
    return elements_[at] ? VariantCopy(result, &elements_[at]->v) : DISP_E_MEMBERNOTFOUND;
  }

  HRESULT length(WORD flags, DISPPARAMS* sent, VARIANT* result) {
    if ((flags & DISPATCH_PROPERTYPUT) != 0) {
      const LONG wanted = sent->rgvarg[0].lVal;
      if (sent->rgvarg[0].vt != VT_I4 || wanted < 0 || wanted > 10000) return E_INVALIDARG;
      elements_.resize(static_cast<std::size_t>(wanted));
      return S_OK;
    }
    result->vt = VT_R8;
    result->dblVal = kind_ == kStrangeLength ? length_ : static_cast<double>(elements_.size());
    return S_OK;
  }

  Kind kind_;
  ULONG references_ = 1;
  HRESULT failure_ = S_OK;
  double length_ = 0.0;
  std::vector<std::unique_ptr<HostVariable>> elements_;
};

}  // namespace

IDispatch* new_script_object(Bytes& bytes) {
  return new ScriptObject(bytes);
}

}  // namespace vqmath63::fuzz
