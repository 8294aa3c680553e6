#include "host/client/dispatch_client.hpp"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>

#include "host/client/entry_points.hpp"

namespace vqmath63::host {
namespace {

std::string result_text(HRESULT result) {
  switch (result) {
    case DISP_E_UNKNOWNNAME:
      return "there is no member or argument of that name";
    case DISP_E_MEMBERNOTFOUND:
      return "the member cannot be used in this way";
    case DISP_E_BADPARAMCOUNT:
      return "the number of arguments is wrong";
    case DISP_E_PARAMNOTOPTIONAL:
      return "an argument that must be given is missing";
    case DISP_E_PARAMNOTFOUND:
      return "there is no argument of that name";
    case DISP_E_TYPEMISMATCH:
      return "an argument is of a wrong type";
    case DISP_E_OVERFLOW:
      return "an argument does not fit its type";
    case E_OUTOFMEMORY:
      return "out of memory";
    default:
      break;
  }
  char text[48];
  std::snprintf(text, sizeof text, "the call failed with result 0x%08X",
                static_cast<unsigned>(result));
  return text;
}

}  // namespace

std::string taken_text(BSTR text) {
  const automation::OwnedText taken(text);
  return automation::text_of(text);
}

double automation_date(double days) {
  const double whole = std::floor(days);
  const double fraction = days - whole;
  return days < 0.0 ? whole - fraction : days;
}

double day_count(double automation_date) {
  const double whole = std::trunc(automation_date);
  return whole + std::fabs(automation_date - whole);
}

Value Value::number(double value) {
  Value v;
  v.variant_.vt = VT_R8;
  v.variant_.dblVal = value;
  return v;
}

Value Value::whole_number(std::int32_t value) {
  Value v;
  v.variant_.vt = VT_I4;
  v.variant_.lVal = value;
  return v;
}

Value Value::boolean(bool value) {
  Value v;
  v.variant_.vt = VT_BOOL;
  v.variant_.boolVal = value ? VARIANT_TRUE : VARIANT_FALSE;
  return v;
}

Value Value::date(double days) {
  Value v;
  v.variant_.vt = VT_DATE;
  v.variant_.date = automation_date(days);
  return v;
}

Value Value::text(std::string_view utf8) {
  const auto wide = utf16(utf8);
  Value v;
  v.variant_.bstrVal = SysAllocStringLen(wide.data(), static_cast<UINT>(wide.size()));
  if (v.variant_.bstrVal == nullptr) throw AutomationError("out of memory for a text");
  v.variant_.vt = VT_BSTR;
  return v;
}

Value Value::array(VARTYPE element, SAFEARRAY* array) {
  Value v;
  v.variant_.vt = static_cast<VARTYPE>(VT_ARRAY | element);
  v.variant_.parray = array;
  return v;
}

Value Value::copy(const Value& from) {
  Value v;
  auto& source = const_cast<automation::Variant&>(from.variant_);  // some systems' headers want it
  if (FAILED(VariantCopy(&v.variant_, &source))) throw AutomationError("out of memory");
  return v;
}

Value Value::missing() {
  Value v;
  v.variant_.vt = VT_ERROR;
  v.variant_.scode = DISP_E_PARAMNOTFOUND;
  return v;
}

Value Value::reference(Value& target) {
  Value v;
  v.variant_.vt = VT_BYREF | VT_VARIANT;
  v.variant_.pvarVal = target.put();
  return v;
}

Value Value::array_reference(VARTYPE element, SAFEARRAY** place) {
  Value v;
  v.variant_.vt = static_cast<VARTYPE>(VT_BYREF | VT_ARRAY | element);
  v.variant_.pparray = place;
  return v;
}

Value Value::boolean_reference(VARIANT_BOOL* place) {
  Value v;
  v.variant_.vt = VT_BYREF | VT_BOOL;
  v.variant_.pboolVal = place;
  return v;
}

SAFEARRAY* new_array(VARTYPE element, std::size_t rows, std::size_t columns) {
  constexpr std::size_t kMost = std::numeric_limits<std::int32_t>::max();
  SAFEARRAYBOUND bounds[2] = {{static_cast<ULONG>(rows), 1}, {static_cast<ULONG>(columns), 1}};
  constexpr std::size_t kLargestElement = 8;
  SAFEARRAY* array =
      rows > kMost || columns > kMost
          ? nullptr
          : automation::create_array(element, kLargestElement, columns == 0 ? 1 : 2, bounds)
                .release();
  if (array == nullptr) {
    throw WorkError("no memory for an array of " + std::to_string(rows) +
                    (columns == 0 ? "" : " x " + std::to_string(columns)) + " elements");
  }
  return array;
}

std::string programmatic_id(const std::string& class_name) {
  return class_name.find('.') == std::string::npos ? "vq140Analyse." + class_name : class_name;
}

DispatchObject DispatchObject::create(const std::string& class_name) {
  CLSID clsid{};
  const EntryPoints& component = entry_points();
  HRESULT result = component.class_id(utf16(programmatic_id(class_name)).c_str(), &clsid);
  if (FAILED(result)) throw AutomationError("there is no class '" + class_name + "'");
  automation::Reference<IClassFactory> factory;
  automation::Reference<IDispatch> object;
  result = component.class_object(clsid, IID_IClassFactory, factory.untyped_place());
  if (SUCCEEDED(result)) {
    result = factory->CreateInstance(nullptr, IID_IDispatch, object.untyped_place());
  }
  if (FAILED(result)) {
    throw AutomationError("cannot create '" + class_name + "': " + result_text(result));
  }
  return DispatchObject(std::move(object));
}

Value DispatchObject::call(const std::string& member, std::vector<Argument> arguments) {
  return invoke(member, DISPATCH_METHOD, arguments);
}

bool DispatchObject::succeeds(const std::string& member, std::vector<Argument> arguments) {
  VARIANT_BOOL ok = VARIANT_FALSE;
  arguments.push_back({Value::boolean_reference(&ok)});
  call(member, std::move(arguments));
  return ok != VARIANT_FALSE;
}

Value DispatchObject::get(const std::string& property, std::vector<Argument> arguments) {
  return invoke(property, DISPATCH_PROPERTYGET, arguments);
}

void DispatchObject::put(const std::string& property, Value value) {
  std::vector<Argument> arguments;
  arguments.push_back({std::move(value)});
  invoke(property, DISPATCH_PROPERTYPUT, arguments);
}

std::int64_t DispatchObject::call_many(const std::string& method, std::size_t calls,
                                       const std::vector<VqColumn>& arguments, VqColumn results) {
  VqFailures failures{};
  const HRESULT result = entry_points().call_many(
      object_.get(), ids_of(method, {}).front(), DISPATCH_METHOD, static_cast<std::int64_t>(calls),
      arguments.data(), static_cast<UINT>(arguments.size()), &results, &failures);
  if (FAILED(result)) throw AutomationError(method + ": " + result_text(result));
  return failures.count;
}

std::vector<DISPID> DispatchObject::ids_of(const std::string& member,
                                           const std::vector<Argument>& arguments) {
  std::vector<std::basic_string<OLECHAR>> texts{utf16(member)};
  for (const Argument& a : arguments) {
    if (!a.name.empty()) texts.push_back(utf16(a.name));
  }
  std::vector<LPOLESTR> names;
  for (auto& text : texts) names.push_back(text.data());
  std::vector<DISPID> ids(names.size());
  const HRESULT result = object_->GetIDsOfNames(
      IID_NULL, names.data(), static_cast<UINT>(names.size()), LOCALE_USER_DEFAULT, ids.data());
  if (FAILED(result)) throw AutomationError(member + ": " + result_text(result));
  return ids;
}

Value DispatchObject::invoke(const std::string& member, WORD flags,
                             std::vector<Argument>& arguments) {
  // Arguments stand last first, with the named ones in front of the others.
  std::stable_partition(arguments.begin(), arguments.end(),
                        [](const Argument& a) { return a.name.empty(); });
  const std::vector<DISPID> ids = ids_of(member, arguments);
  std::vector<VARIANT> variants;
  for (auto a = arguments.rbegin(); a != arguments.rend(); ++a) variants.push_back(a->value.get());
  std::vector<DISPID> named;
  for (std::size_t i = ids.size(); i > 1; --i) named.push_back(ids[i - 1]);
  if (flags == DISPATCH_PROPERTYPUT) named.assign(1, DISPID_PROPERTYPUT);
  DISPPARAMS parameters{variants.data(), named.data(), static_cast<UINT>(variants.size()),
                        static_cast<UINT>(named.size())};
  Value answer;
  EXCEPINFO exception{};
  UINT bad_argument = 0;
  const HRESULT result = object_->Invoke(ids[0], IID_NULL, LOCALE_USER_DEFAULT, flags, &parameters,
                                         answer.put(), &exception, &bad_argument);
  if (SUCCEEDED(result)) return answer;
  if (exception.pfnDeferredFillIn != nullptr) exception.pfnDeferredFillIn(&exception);
  const automation::OwnedText source(exception.bstrSource), help(exception.bstrHelpFile);
  const std::string told = taken_text(exception.bstrDescription);
  if (!told.empty()) throw AutomationError(told);
  throw AutomationError(
      member + ": " +
      result_text(result == DISP_E_EXCEPTION && exception.scode != 0 ? exception.scode : result));
}

}  // namespace vqmath63::host
