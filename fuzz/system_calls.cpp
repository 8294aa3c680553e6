// What a host does beside its calls: functions of the system, questions, objects that come and go.
#include <algorithm>
#include <tuple>
#include <type_traits>
#include <utility>

#include "component/class_list.hpp"
#include "component/exports.hpp"
#include "world.hpp"

extern "C" {
HRESULT VQ_API DllRegisterServer();
HRESULT VQ_API DllUnregisterServer();
HRESULT VQ_API DllInstall(BOOL install, LPCOLESTR words);
HRESULT VQ_API DllCanUnloadNow();
}

namespace vqmath63::fuzz {
namespace {

VARIANT variant_of(HostVariable& variable, std::uint8_t form) {
  VARIANT made{};
  made.vt = VT_BYREF | VT_VARIANT;
  made.pvarVal = &variable.v;
  if (form == 1 && variable.v.vt != VT_DECIMAL && (variable.v.vt & VT_BYREF) == 0) {
    made.vt = static_cast<VARTYPE>(VT_BYREF | variable.v.vt);
    made.byref = &variable.v.llVal;
  }
  return form == 2 ? variable.v : made;
}

/// One of the functions on the array in a variable.
void use_array(Bytes& head, HostVariable& variable, HostVariable& other) {
  SAFEARRAY* const array = variable.is_array() ? variable.v.parray : nullptr;
  const UINT dims = SafeArrayGetDim(array);
  LONG index[4] = {};
  for (LONG& i : index) i = head.raw<std::int8_t>();
  LONG bound = 0;
  VARTYPE element = VT_EMPTY;
  SafeArrayGetVartype(array, &element);
  switch (head.below(10)) {
    case 0: {
      SAFEARRAYBOUND wanted{head.byte(), index[0]};
      if (head.byte() == 255) wanted.cElements = head.raw<ULONG>();
      if (variable.fixed_type == 0) SafeArrayRedim(array, &wanted);
      break;
    }
    case 1: {
      SAFEARRAY* copy = nullptr;
      const HRESULT copied = SafeArrayCopy(array, &copy);
      require(copy == nullptr || SUCCEEDED(copied), "a failed copy");
      if (copy != nullptr) require(SafeArrayDestroy(copy) == S_OK, "a copy is locked");
      break;
    }
    case 2:
    case 3: {
      VARIANT value{};
      void* const place = element == VT_VARIANT || element == VT_DECIMAL
                              ? static_cast<void*>(&value)
                              : &value.llVal;
      if (dims > 4 || FAILED(SafeArrayGetElement(array, index, place))) break;
      if (element != VT_VARIANT) value.vt = element;
      SafeArrayPutElement(array, index,
                          element == VT_BSTR || element == VT_DISPATCH || element == VT_UNKNOWN
                              ? static_cast<void*>(value.bstrVal)
                              : place);
      VariantClear(&value);
      break;
    }
    case 4:
      if (element == VT_VARIANT && dims <= 4 && !other.is_array()) {
        SafeArrayPutElement(array, index, &other.v);
      }
      break;
    case 5:
      SafeArrayGetLBound(array, head.byte(), &bound);
      SafeArrayGetUBound(array, head.byte(), &bound);
      SafeArrayGetElemsize(array);
      break;
    case 6: {
      void* data = nullptr;
      if (SUCCEEDED(SafeArrayAccessData(array, &data))) {
        require(SafeArrayDestroyData(array) == DISP_E_ARRAYISLOCKED, "a lock does not hold");
        SafeArrayUnaccessData(array);
      }
      break;
    }
    case 7:
      if (array != nullptr && array->cLocks == 0) SafeArrayDestroyData(array);
      break;
    case 8: {
      SAFEARRAYBOUND bounds[5];
      for (std::size_t i = 0; i < 5; ++i) bounds[i] = {head.byte(), index[i % 4]};
      if (head.byte() == 255) bounds[0].cElements = head.raw<ULONG>();
      HostVariable made;
      element = type(head);
      const std::size_t rank = head.below(6);
      made.v.parray = rank == 1
                          ? SafeArrayCreateVector(element, bounds[0].lLbound, bounds[0].cElements)
                          : SafeArrayCreate(element, static_cast<UINT>(rank), bounds);
      made.v.vt = static_cast<VARTYPE>(VT_ARRAY | element);
      break;
    }
    default:
      // The host may have put a count of locks there to which none can be added.
      if (SafeArrayUnlock(array) == S_OK && SafeArrayLock(array) != S_OK) ++array->cLocks;
  }
}

void use_text(Bytes& head, HostVariable& variable) {
  if (variable.v.vt != VT_BSTR) return;
  BSTR& held = variable.v.bstrVal;
  const UINT length = SysStringLen(held);
  const UINT wanted = head.byte();
  switch (head.below(4)) {
    case 0:
      SysReAllocString(&held, held == nullptr ? u"x" : held + wanted % (length + 1));
      break;
    case 1:
      SysReAllocStringLen(&held, nullptr, wanted);
      break;
    case 2:
      SysReAllocStringLen(&held, held, std::min(wanted, length));
      break;
    default:
      SysFreeString(SysAllocStringByteLen(reinterpret_cast<const char*>(held),
                                          std::min(wanted, SysStringByteLen(held))));
  }
}

void use_error_info(Bytes& head, HostVariable& variable) {
  ICreateErrorInfo* made = nullptr;
  if (FAILED(CreateErrorInfo(&made))) return;
  const BSTR words = variable.v.vt == VT_BSTR ? variable.v.bstrVal : nullptr;
  made->SetDescription(words);
  made->SetSource(words);
  made->SetHelpFile(words);
  made->SetHelpContext(head.byte());
  made->SetGUID(IID_IDispatch);
  void* info = nullptr;
  if (made->QueryInterface(IID_IErrorInfo, &info) == S_OK) {
    auto* const error = static_cast<IErrorInfo*>(info);
    SetErrorInfo(0, error);
    HostVariable copy;
    copy.v.vt = VT_BSTR;
    error->GetHelpFile(&copy.v.bstrVal);
    DWORD context = 0;
    error->GetHelpContext(&context);
    GUID guid{};
    error->GetGUID(&guid);
    error->Release();
  }
  made->Release();
}

/// A function with each of its pointers null in turn.
template <class... Parameters>
void call_with_nulls(HRESULT (*function)(Parameters...), Parameters... arguments) {
  for (std::size_t which = 0; which < sizeof...(Parameters); ++which) {
    std::size_t place = 0;
    const auto or_null = [&](auto argument) {
      if constexpr (std::is_pointer_v<decltype(argument)>) {
        if (place++ == which) argument = nullptr;
      } else {
        ++place;
      }
      return argument;
    };
    const std::tuple<Parameters...> sent{or_null(arguments)...};
    const bool all = sent == std::tuple<Parameters...>{arguments...};
    require(all || FAILED(std::apply(function, sent)), "a null pointer is taken");
  }
}

/// Nothing where a function wants a place or a value.
void use_nothing() {
  HostVariable variable;
  VARIANT& v = variable.v;
  LONG index = 1;
  SAFEARRAYBOUND bound{1, 1};
  VARTYPE type = VT_R4;
  BSTR words = nullptr;
  CLSID clsid = component::classes()[0]->clsid;
  SAFEARRAY* const array = SafeArrayCreate(VT_R4, 1, &bound);
  call_with_nulls<SAFEARRAY*, SAFEARRAYBOUND*>(SafeArrayRedim, array, &bound);
  call_with_nulls<SAFEARRAY*, UINT, LONG*>(SafeArrayGetLBound, array, 1, &index);
  call_with_nulls<SAFEARRAY*, UINT, LONG*>(SafeArrayGetUBound, array, 1, &index);
  call_with_nulls<SAFEARRAY*, VARTYPE*>(SafeArrayGetVartype, array, &type);
  call_with_nulls<SAFEARRAY*, void**>(SafeArrayAccessData, array, &v.byref);
  call_with_nulls<SAFEARRAY*, LONG*, void*>(SafeArrayGetElement, array, &index, &v.llVal);
  call_with_nulls<SAFEARRAY*, LONG*, void*>(SafeArrayPutElement, array, &index, &v.llVal);
  call_with_nulls<SAFEARRAY*, LONG*, void**>(SafeArrayPtrOfIndex, array, &index, &v.byref);
  SafeArrayPutElement(array, &index, nullptr);
  SafeArrayCopy(array, nullptr);
  SafeArrayCopy(nullptr, &v.parray);
  SafeArrayDestroy(array);
  SafeArrayDestroy(nullptr);
  SafeArrayDestroyData(nullptr);
  SafeArrayLock(nullptr);
  SafeArrayUnlock(nullptr);
  SafeArrayUnaccessData(nullptr);
  SafeArrayCreate(VT_R4, 0, &bound);
  SafeArrayCreate(VT_R4, 100, &bound);
  SafeArrayCreate(VT_R4, 1, nullptr);
  SysReAllocString(nullptr, u"x");
  SysReAllocStringLen(nullptr, u"x", 1);
  SysReAllocString(&words, nullptr);
  SysAllocString(nullptr);
  VariantInit(nullptr);
  VariantClear(nullptr);
  VARIANT reference{};
  reference.vt = VT_BYREF | VT_R8;
  call_with_nulls<VARIANT*, const VARIANT*>(VariantCopy, &v, &reference);
  call_with_nulls<VARIANT*, const VARIANT*>(VariantCopyInd, &v, &reference);
  VariantCopyInd(&v, &reference);
  call_with_nulls<VARIANT*, const VARIANT*, USHORT, VARTYPE>(VariantChangeType, &v, &reference, 0,
                                                             VT_I4);
  call_with_nulls<ULONG, IErrorInfo**>(GetErrorInfo, 0, nullptr);
  GetErrorInfo(1, nullptr);
  SetErrorInfo(1, nullptr);
  CreateErrorInfo(nullptr);
  call_with_nulls<LPCOLESTR, CLSID*>(CLSIDFromProgID, u"vq140Analyse.ztSample", &clsid);
  VqDescribe(nullptr, nullptr);
  VqLastMessage(0, nullptr);
  DllGetClassObject(clsid, IID_IUnknown, nullptr);
  DllGetClassObject(CLSID{}, IID_IUnknown, &v.byref);
  VqCallMany(nullptr, 0, 0, 0, nullptr, 0, nullptr, nullptr);
  v = {};
}

/// The same of the objects themselves.
void use_nothing_of(IDispatch* object, const automation::ClassInfo& info) {
  void* found = nullptr;
  DISPID id = 0;
  UINT count = 0;
  ITypeInfo* none = nullptr;
  OLECHAR words[] = u"x";
  const VqColumn column{};
  object->QueryInterface(IID_IUnknown, nullptr);
  object->GetTypeInfoCount(nullptr);
  object->GetTypeInfoCount(&count);
  for (const UINT index : {0U, 1U}) {
    object->GetTypeInfo(index, 0, nullptr);
    object->GetTypeInfo(index, 0, &none);
  }
  object->GetIDsOfNames(IID_NULL, nullptr, 1, 0, &id);
  OLECHAR* name = words;
  object->GetIDsOfNames(IID_NULL, &name, 0, 0, &id);
  object->GetIDsOfNames(IID_NULL, &name, 1, 0, nullptr);
  for (const UINT given : {0U, 1U})
    VqCallMany(object, 1, DISPATCH_METHOD, -1, &column, given, nullptr, nullptr);
  VqCallMany(object, 1, DISPATCH_METHOD, 1, nullptr, 1, nullptr, nullptr);
  for (const IID& iid : {IID_IProvideClassInfo, IID_ISupportErrorInfo}) {
    if (object->QueryInterface(iid, &found) != S_OK) continue;
    auto* const held = static_cast<IUnknown*>(found);
    if (iid == IID_IProvideClassInfo) static_cast<IProvideClassInfo*>(found)->GetClassInfo(nullptr);
    if (iid == IID_ISupportErrorInfo) {
      static_cast<ISupportErrorInfo*>(found)->InterfaceSupportsErrorInfo(IID_IDispatch);
    }
    held->Release();
  }
  if (DllGetClassObject(info.clsid, IID_IClassFactory, &found) != S_OK) return;
  auto* const factory = static_cast<IClassFactory*>(found);
  factory->QueryInterface(IID_IUnknown, nullptr);
  factory->CreateInstance(nullptr, IID_IDispatch, nullptr);
  factory->CreateInstance(object, IID_IDispatch, &found);
  factory->LockServer(FALSE);
  factory->Release();
  require(DllCanUnloadNow() == S_FALSE, "an object is not counted");
}

}  // namespace

void World::system_call(Bytes head, const Operation&) {
  const bool before = std::exchange(in_system_, true);
  with_refusals([&] { call_system(head); });
  in_system_ = before;
}

void World::call_system(Bytes& head) {
  HostVariable& from = variables[head.below(kVariables)];
  HostVariable& to = variables[head.below(kVariables)];
  VARIANT source = variant_of(from, head.byte() % 3);
  const std::uint8_t what = head.byte() % 9;
  const bool free_to_change = to.fixed_type == 0 && !to.is_array();
  if (what == 0 && free_to_change) {
    const LCID locale = head.byte();
    const USHORT flags = head.byte() & 0x13;
    VariantChangeTypeEx(&to.v, &source, locale, flags, type(head));
  } else if (what == 1 && free_to_change) {
    VariantCopyInd(&to.v, &source);
  } else if (what == 2 && free_to_change && &from != &to && (source.vt & VT_BYREF) == 0) {
    VariantCopy(&to.v, &source);
  } else if (what == 3 || what == 4) {
    use_array(head, to, from);
  } else if (what == 5) {
    use_text(head, to);
  } else if (what == 6) {
    use_error_info(head, from);
  } else if (what == 8) {
    use_nothing();
  } else if (free_to_change) {
    VariantChangeType(&to.v, &to.v, 0, type(head));
  }
}

void World::use_object(Bytes head) {
  const std::size_t type = head.below(component::classes().size());
  const automation::ClassInfo& info = *component::classes()[type];
  IDispatch* const self = object(type);
  if (self == nullptr) return;
  const IID known[] = {IID_IUnknown,          IID_IDispatch,     info.iid,  IID_ISupportErrorInfo,
                       IID_IProvideClassInfo, IID_IClassFactory, info.clsid};
  void* found = nullptr;
  switch (head.below(6)) {
    case 0: {
      const bool used = std::any_of(frames_.begin(), frames_.end(),
                                    [&](const Frame& frame) { return frame.type == type; });
      if (used) break;
      objects_.erase(type);
      require(self->Release() == 0, "an object has references left");
      break;
    }
    case 1: {
      const IID& iid = known[head.below(std::size(known))];
      if (self->QueryInterface(iid, &found) != S_OK) break;
      void* again = nullptr;
      void* identity = nullptr;
      require(static_cast<IUnknown*>(found)->QueryInterface(IID_IUnknown, &again) == S_OK &&
                  self->QueryInterface(IID_IUnknown, &identity) == S_OK && again == identity,
              "an object has two identities");
      self->Release();
      self->Release();
      if (iid == IID_ISupportErrorInfo) {
        static_cast<ISupportErrorInfo*>(found)->InterfaceSupportsErrorInfo(
            known[head.below(std::size(known))]);
      }
      if (iid == IID_IProvideClassInfo) {
        ITypeInfo* none = nullptr;
        static_cast<IProvideClassInfo*>(found)->GetClassInfo(&none);
      }
      static_cast<IUnknown*>(found)->Release();
      break;
    }
    case 2:
      use_nothing_of(self, info);
      break;
    case 3: {
      if (DllGetClassObject(info.clsid, known[head.below(std::size(known))], &found) != S_OK) break;
      auto* const factory = static_cast<IClassFactory*>(found);
      void* made = nullptr;
      if (factory->CreateInstance(nullptr, known[head.below(std::size(known))], &made) == S_OK) {
        static_cast<IUnknown*>(made)->Release();
      }
      factory->LockServer(TRUE);
      factory->LockServer(FALSE);
      factory->Release();
      break;
    }
    default: {
      // A member's name and those of arguments, with letters in the other case.
      const automation::MemberInfo& member = info.members[head.below(info.members.size())];
      std::vector<std::u16string> names(1 + head.below(4));
      for (std::size_t i = 0; i < names.size(); ++i) {
        const std::string_view name =
            i == 0 || member.arguments.empty()
                ? member.name
                : member.arguments[(i - 1) % member.arguments.size()].name;
        for (const char c : name) names[i] += static_cast<char16_t>(c);
        const std::uint8_t change = head.byte();
        if (change != 0 && !name.empty()) names[i][change % name.size()] ^= change < 192 ? 0x20 : 1;
      }
      std::vector<OLECHAR*> places;
      for (std::u16string& name : names) places.push_back(name.data());
      if (head.byte() == 255) places.back() = nullptr;
      std::vector<DISPID> ids(names.size());
      self->GetIDsOfNames(IID_NULL, places.data(), static_cast<UINT>(names.size()), 0, ids.data());
    }
  }
}

void World::ask(Bytes head, const Operation& operation) {
  Bytes bytes(chunk(operation, 1));
  HostVariable id, told;
  id.v.vt = told.v.vt = VT_BSTR;
  id.v.bstrVal = text(bytes);
  HRESULT asked = S_OK;
  with_refusals([&] { asked = VqDescribe(id.v.bstrVal, &told.v.bstrVal); });
  require(SUCCEEDED(asked) == (told.v.bstrVal != nullptr), "a description is lost");
  CLSID clsid{};
  CLSIDFromProgID(id.v.bstrVal, &clsid);
  DllInstall(head.byte() & 1, id.v.bstrVal);
  DllRegisterServer();
  DllUnregisterServer();
}

}  // namespace vqmath63::fuzz
