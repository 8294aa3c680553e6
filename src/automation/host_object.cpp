#include "automation/host_object.hpp"

namespace vqmath63::automation {
namespace {

HRESULT invoke_named(IDispatch* object, const OLECHAR* name, WORD flags, DISPPARAMS& params,
                     VARIANT* result) {
  const HostCode code;
  auto* text = const_cast<OLECHAR*>(name);
  DISPID id = 0;
  const HRESULT known = object->GetIDsOfNames(IID_NULL, &text, 1, 0, &id);
  if (FAILED(known)) return known;
  return object->Invoke(id, IID_NULL, 0, flags, &params, result, nullptr, nullptr);
}

}  // namespace

HRESULT read_property(IDispatch* object, const OLECHAR* name, Variant& out) {
  DISPPARAMS none{};
  return invoke_named(object, name, DISPATCH_PROPERTYGET, none, &out);
}

HRESULT write_property(IDispatch* object, const OLECHAR* name, VARIANT& value) {
  DISPID put = DISPID_PROPERTYPUT;
  DISPPARAMS params{&value, &put, 1, 1};
  return invoke_named(object, name, DISPATCH_PROPERTYPUT, params, nullptr);
}

HRESULT call_method(IDispatch* object, const OLECHAR* name, std::span<VARIANT> arguments,
                    VARIANT* result) {
  DISPPARAMS params{arguments.data(), nullptr, static_cast<UINT>(arguments.size()), 0};
  return invoke_named(object, name, DISPATCH_METHOD, params, result);
}

HRESULT default_value(IDispatch* object, LCID locale, Variant& out) {
  const HostCode code;
  DISPPARAMS none{};
  return object->Invoke(DISPID_VALUE, IID_NULL, locale, DISPATCH_PROPERTYGET, &none, &out, nullptr,
                        nullptr);
}

}  // namespace vqmath63::automation
