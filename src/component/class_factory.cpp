#include "component/class_factory.hpp"

#include <atomic>
#include <new>

#include "automation/object_support.hpp"
#include "automation/owners.hpp"
#include "component/component_file.hpp"
#ifdef _WIN32
#include "component/debug_output_windows.hpp"
#include "component/log_file_windows.hpp"
#include "frame/log_file.hpp"
#include "frame/message_receivers.hpp"
#endif

namespace vqmath63::component {
namespace {

class ClassFactory final : public IClassFactory {
 public:
  explicit ClassFactory(const automation::ClassInfo& info) : info_(info) {}
  virtual ~ClassFactory() = default;

  HRESULT VQ_API QueryInterface(REFIID iid, void** out) override {
    if (out == nullptr) return E_POINTER;
    *out = nullptr;
    if (!IsEqualGUID(iid, IID_IUnknown) && !IsEqualGUID(iid, IID_IClassFactory)) {
      return E_NOINTERFACE;
    }
    AddRef();
    *out = static_cast<IClassFactory*>(this);
    return S_OK;
  }
  ULONG VQ_API AddRef() override { return static_cast<ULONG>(++references_); }
  ULONG VQ_API Release() override {
    const std::int32_t left = --references_;
    if (left == 0) delete this;
    return static_cast<ULONG>(left);
  }
  HRESULT VQ_API CreateInstance(IUnknown* outer, REFIID iid, void** out) override {
    if (out == nullptr) return E_POINTER;
    *out = nullptr;
    if (outer != nullptr) return CLASS_E_NOAGGREGATION;
    return info_.create(iid, out);
  }
  HRESULT VQ_API LockServer(BOOL lock) override {
    automation::lock_component(lock != 0);
    return S_OK;
  }

 private:
  const automation::ClassInfo& info_;
  std::atomic<std::int32_t> references_{1};
  automation::LiveObject counted_;
};

}  // namespace

HRESULT create_factory(const automation::ClassInfo& info, REFIID iid, void** out) noexcept {
  if (out == nullptr) return E_POINTER;
  *out = nullptr;
  set_component_file(component_file);  // for the version text of the objects to come
#ifdef _WIN32
  set_system_output(debug_output);
  set_append_to_file(append_to_log);
#endif
  const automation::Reference<ClassFactory> factory(new (std::nothrow) ClassFactory(info));
  return factory ? factory->QueryInterface(iid, out) : E_OUTOFMEMORY;
}

}  // namespace vqmath63::component
