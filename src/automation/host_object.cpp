#include "automation/host_object.hpp"

#include "frame/date.hpp"

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

HRESULT set_default_value(IDispatch* object, VARIANT& value) {
  const HostCode code;
  DISPID put = DISPID_PROPERTYPUT;
  DISPPARAMS params{&value, &put, 1, 1};
  return object->Invoke(DISPID_VALUE, IID_NULL, 0, DISPATCH_PROPERTYPUT, &params, nullptr, nullptr,
                        nullptr);
}

HRESULT moment_of(IDispatch* object, Variant& out) {
  const HRESULT told = call_method(object, VQ_OLESTR("getVarDate"), {}, &out);
  if (SUCCEEDED(told) && out.vt == VT_DATE) return S_OK;
  // Of other engines: milliseconds since 1970, and how many minutes local time is behind them.
  const auto ask = [&](const OLECHAR* name, double& number) {
    Variant answer, real;
    HRESULT asked = call_method(object, name, {}, &answer);
    if (SUCCEEDED(asked)) asked = VariantChangeType(&real, &answer, 0, VT_R8);
    if (SUCCEEDED(asked)) number = real.dblVal;
    return asked;
  };
  double milliseconds = 0.0, behind = 0.0;
  HRESULT asked = ask(VQ_OLESTR("getTime"), milliseconds);
  if (SUCCEEDED(asked)) asked = ask(VQ_OLESTR("getTimezoneOffset"), behind);
  if (FAILED(asked)) return asked;
  constexpr double kMinutes = 60000.0, kDays = 86400000.0;
  constexpr double kDayOf1970 = 25569.0;
  Variant made;
  made.vt = VT_R8;
  made.dblVal = date_of((milliseconds - behind * kMinutes) / kDays + kDayOf1970).value;
  out = std::move(made);
  return S_OK;
}

}  // namespace vqmath63::automation
