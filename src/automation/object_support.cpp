#include "automation/object_support.hpp"

#include <new>
#include <utility>

#include "automation/owners.hpp"

namespace vqmath63::automation {
namespace {

// An interface beside the object's own: lives by itself, answers for the object it belongs to.
template <class Interface>
class TearOff : public Interface {
 public:
  TearOff(const ClassInfo& info, void* owner)
      : info_(info), owner_(Reference<IUnknown>::to(static_cast<IUnknown*>(owner))) {}
  HRESULT VQ_API QueryInterface(REFIID iid, void** out) override {
    return owner_->QueryInterface(iid, out);
  }
  ULONG VQ_API AddRef() override { return static_cast<ULONG>(++references_); }
  ULONG VQ_API Release() override {
    const std::int32_t left = --references_;
    if (left == 0) delete this;
    return static_cast<ULONG>(left);
  }

 protected:
  virtual ~TearOff() = default;
  const ClassInfo& info_;

 private:
  Reference<IUnknown> owner_;
  std::atomic<std::int32_t> references_{1};
};

class SupportErrorInfo final : public TearOff<ISupportErrorInfo> {
 public:
  using TearOff::TearOff;
  HRESULT VQ_API InterfaceSupportsErrorInfo(REFIID iid) override {
    return IsEqualGUID(iid, info_.iid) || IsEqualGUID(iid, IID_IDispatch) ? S_OK : S_FALSE;
  }
};

class ProvideClassInfo final : public TearOff<IProvideClassInfo> {
 public:
  using TearOff::TearOff;
  HRESULT VQ_API GetClassInfo(ITypeInfo** out) override { return load_type_info(info_.clsid, out); }
};

template <class T>
HRESULT tear_off(const ClassInfo& info, void* self, void** out) noexcept {
  *out = new (std::nothrow) T(info, self);
  return *out != nullptr ? S_OK : E_OUTOFMEMORY;
}

}  // namespace

std::atomic<std::int32_t>& live_count() noexcept {
  static std::atomic<std::int32_t> count{0};
  return count;
}

namespace {

std::atomic<std::int32_t> server_locks{0};

}  // namespace

void lock_component(bool lock) noexcept {
  if (lock) {
    ++server_locks;
    return;
  }
  std::int32_t held = server_locks.load();
  while (held > 0 && !server_locks.compare_exchange_weak(held, held - 1)) {
  }
}

bool may_unload() noexcept {
  return live_count() == 0 && server_locks == 0;
}

bool is_own_interface(const ClassInfo& info, REFIID iid) noexcept {
  return IsEqualGUID(iid, IID_IUnknown) || IsEqualGUID(iid, IID_IDispatch) ||
         IsEqualGUID(iid, info.iid);
}

HRESULT query_interface(const ClassInfo& info, void* self, REFIID iid, void** out) noexcept {
  if (out == nullptr) return E_POINTER;
  *out = nullptr;
  if (is_own_interface(info, iid)) {
    static_cast<IUnknown*>(self)->AddRef();
    *out = self;
    return S_OK;
  }
  if (IsEqualGUID(iid, IID_ISupportErrorInfo)) return tear_off<SupportErrorInfo>(info, self, out);
  if (IsEqualGUID(iid, IID_IProvideClassInfo)) return tear_off<ProvideClassInfo>(info, self, out);
  return E_NOINTERFACE;
}

HRESULT type_info(const ClassInfo& info, UINT index, ITypeInfo** out) noexcept {
  if (out == nullptr) return E_POINTER;
  *out = nullptr;
  if (index != 0) return DISP_E_BADINDEX;
  return load_type_info(info.iid, out);
}

#ifdef _WIN32

namespace {

// Any address inside this module finds the file that holds the type library.
const char kAnchor = 0;

HRESULT load_library(ITypeLib** out) {
  HMODULE module = nullptr;
  GetModuleHandleExW(
      GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
      reinterpret_cast<LPCWSTR>(&kAnchor), &module);
  constexpr DWORD kLongestPath = 32768;
  try {
    std::wstring path(kLongestPath, L'\0');
    if (GetModuleFileNameW(module, path.data(), kLongestPath) == 0) return E_FAIL;
    return LoadTypeLibEx(path.c_str(), REGKIND_NONE, out);
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  }
}

// Loaded at the first question, shared by all threads.
SRWLOCK library_lock = SRWLOCK_INIT;
ITypeLib* library = nullptr;

}  // namespace

HRESULT type_info_count(UINT* count) noexcept {
  if (count == nullptr) return E_POINTER;
  *count = 1;
  return S_OK;
}

HRESULT load_type_info(REFIID id, ITypeInfo** out) noexcept {
  if (out == nullptr) return E_POINTER;
  *out = nullptr;
  HRESULT result = S_OK;
  AcquireSRWLockExclusive(&library_lock);
  if (library == nullptr) result = load_library(&library);
  const auto held = Reference<ITypeLib>::to(library);
  ReleaseSRWLockExclusive(&library_lock);
  return held ? held->GetTypeInfoOfGuid(id, out) : result;
}

void release_type_library() noexcept {
  AcquireSRWLockExclusive(&library_lock);
  const Reference<ITypeLib> held(std::exchange(library, nullptr));
  ReleaseSRWLockExclusive(&library_lock);
}

#else

HRESULT type_info_count(UINT* count) noexcept {
  if (count == nullptr) return E_POINTER;
  *count = 0;
  return S_OK;
}

HRESULT load_type_info(REFIID, ITypeInfo** out) noexcept {
  if (out == nullptr) return E_POINTER;
  *out = nullptr;
  return E_NOTIMPL;
}

void release_type_library() noexcept {}

#endif

}  // namespace vqmath63::automation
