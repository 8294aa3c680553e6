// What a program in JavaScript calls beside the component's exported functions: it has objects by
// them without tables of functions, and error lines without a callback into JavaScript.
#include <string>

#include "automation/types.hpp"
#include "component/exports.hpp"

namespace {

std::u16string& heard() {
  static std::u16string lines;
  return lines;
}

void hear(const OLECHAR* line, BOOL, void*) {
  heard().append(line).push_back(u'\n');
}

}  // namespace

extern "C" {

VQ_EXPORT HRESULT VQ_API DllGetClassObject(REFCLSID clsid, REFIID iid, void** out);

/// A new object of a class; null where there is none.
VQ_EXPORT IDispatch* vq_create(const CLSID* clsid) {
  VqSetMessageCallback(hear, nullptr);
  IClassFactory* factory = nullptr;
  void* made = nullptr;
  if (DllGetClassObject(*clsid, IID_IClassFactory, reinterpret_cast<void**>(&factory)) < 0) {
    return nullptr;
  }
  factory->CreateInstance(nullptr, IID_IDispatch, &made);
  factory->Release();
  return static_cast<IDispatch*>(made);
}

VQ_EXPORT void vq_release(IDispatch* object) {
  object->Release();
}

/// The lines since the last question, each with a line end; the text is the caller's to free.
VQ_EXPORT BSTR vq_messages() {
  BSTR text = SysAllocStringLen(heard().data(), static_cast<UINT>(heard().size()));
  heard().clear();
  return text;
}

/// The text of this thread's error info, which is taken away; null without one.
VQ_EXPORT BSTR vq_error_text() {
  IErrorInfo* info = nullptr;
  BSTR text = nullptr;
  if (GetErrorInfo(0, &info) != S_OK) return nullptr;
  info->GetDescription(&text);
  info->Release();
  return text;
}
}
