// The exported functions of the component.
#include <algorithm>

#include "automation/call_scope.hpp"
#include "automation/failure.hpp"
#include "automation/invoke.hpp"
#include "automation/many_calls.hpp"
#include "automation/object_support.hpp"
#include "automation/text.hpp"
#include "component/class_factory.hpp"
#include "component/class_list.hpp"
#include "component/describe.hpp"
#include "component/exports.hpp"
#include "component/registration.hpp"
#include "frame/message_receivers.hpp"

namespace {

using namespace vqmath63;
using automation::ClassInfo;

MessageCallback receiver(VqMessageCallback callback, void* context) {
  if (callback == nullptr) return {};
  return [callback, context](const std::string& line, bool flag) {
    auto text = automation::utf16(line);
    // The host would take the first for the end of the line.
    std::replace(text.begin(), text.end(), OLECHAR{0}, OLECHAR{' '});
    callback(text.c_str(), flag ? 0 : 1, context);
  };
}

}  // namespace

extern "C" {

VQ_EXPORT HRESULT VQ_API DllGetClassObject(REFCLSID clsid, REFIID iid, void** out) {
  if (out == nullptr) return E_POINTER;
  *out = nullptr;
  const ClassInfo* info = component::find_class(clsid);
  return info == nullptr ? CLASS_E_CLASSNOTAVAILABLE : component::create_factory(*info, iid, out);
}

VQ_EXPORT HRESULT VQ_API DllCanUnloadNow() {
  if (!automation::may_unload()) return S_FALSE;
  automation::release_type_library();
  return S_OK;
}

VQ_EXPORT HRESULT VQ_API DllRegisterServer() {
  return component::register_component(component::Scope::kMachine);
}

VQ_EXPORT HRESULT VQ_API DllUnregisterServer() {
  return component::unregister_component(component::Scope::kMachine);
}

VQ_EXPORT HRESULT VQ_API DllInstall(BOOL install, LPCOLESTR words) {
  return component::install_component(install != 0, words);
}

VQ_EXPORT HRESULT VQ_API VqSetMessageCallback(VqMessageCallback callback, void* context) {
  try {
    set_message_callback(receiver(callback, context));
    return S_OK;
  } catch (...) {
    return E_OUTOFMEMORY;
  }
}

VQ_EXPORT HRESULT VQ_API VqSetProcessMessageCallback(VqMessageCallback callback, void* context) {
  try {
    set_process_message_callback(receiver(callback, context));
    return S_OK;
  } catch (...) {
    return E_OUTOFMEMORY;
  }
}

VQ_EXPORT HRESULT VQ_API VqLastMessage(BOOL of_process, BSTR* line) {
  if (line == nullptr) return E_POINTER;
  *line = nullptr;
  try {
    const MessagesOf whose = of_process != 0 ? MessagesOf::kProcess : MessagesOf::kThread;
    *line = automation::new_bstr(take_last_message(whose));
    return S_OK;
  } catch (...) {
    return E_OUTOFMEMORY;
  }
}

VQ_EXPORT HRESULT VQ_API VqCallMany(void* object, DISPID member, WORD flags, int64_t calls,
                                    const VqColumn* arguments, UINT argument_count,
                                    const VqColumn* results, VqFailures* failures) {
  if (failures != nullptr) *failures = {0, -1};
  if (object == nullptr || (arguments == nullptr && argument_count > 0)) return E_POINTER;
  const ClassInfo* const info = component::class_of(object);
  if (info == nullptr) return E_NOINTERFACE;
  if (calls < 0) return E_INVALIDARG;
  std::size_t place = 0;
  const automation::MemberInfo* const row = automation::find_member(*info, member, flags, &place);
  if (row == nullptr) return DISP_E_MEMBERNOTFOUND;
  if (argument_count != row->arguments.size()) return DISP_E_BADPARAMCOUNT;
  automation::Column columns[automation::kMostArguments];
  for (UINT k = 0; k < argument_count; ++k) columns[k] = {arguments[k].first, arguments[k].stride};
  automation::ManyCalls many{*info, *row, {columns, argument_count}, {nullptr, 0}, calls};
  if (results != nullptr) many.result = {results->first, results->stride};
  const HRESULT outcome = row->many_call(object, row->native, many);
  if (failures != nullptr) *failures = {many.failed, many.first_failed};
  return outcome;
}

VQ_EXPORT HRESULT VQ_API VqDescribe(const OLECHAR* programmatic_id, BSTR* text) {
  if (text == nullptr) return E_POINTER;
  *text = nullptr;
  try {
    const std::string id = programmatic_id == nullptr ? "" : automation::utf8(programmatic_id);
    std::optional<std::string> told;
    if (id.empty()) {
      told = component::describe_classes(component::classes());
    } else if (const ClassInfo* info = component::find_class(id)) {
      told = component::describe_members(*info);
    } else if (const auto dot = id.rfind('.'); dot != std::string::npos) {
      info = component::find_class(id.substr(0, dot));
      if (info != nullptr) told = component::describe_words(*info, id.substr(dot + 1));
    }
    if (!told) return CO_E_CLASSSTRING;
    *text = automation::new_bstr(*told);
    return S_OK;
  } catch (...) {
    return E_OUTOFMEMORY;
  }
}

#ifndef _WIN32

VQ_EXPORT HRESULT CLSIDFromProgID(LPCOLESTR programmatic_id, CLSID* clsid) {
  if (programmatic_id == nullptr || clsid == nullptr) return E_INVALIDARG;
  *clsid = CLSID{};
  try {
    const ClassInfo* info = component::find_class(automation::utf8(programmatic_id));
    if (info == nullptr) return CO_E_CLASSSTRING;
    *clsid = info->clsid;
    return S_OK;
  } catch (...) {
    return E_OUTOFMEMORY;
  }
}

#endif

}  // extern "C"
