// Error information: the object that carries it and the place it has in each thread.
#include <atomic>
#include <new>
#include <utility>

#include "automation/system/ownership.hpp"
#include "automation/system/types.hpp"

namespace {

using vqmath63::automation::system::copy_text;

/// The system's own error object: written through one interface, read through the other.
class ErrorInfo final : public IErrorInfo, public ICreateErrorInfo {
 public:
  ErrorInfo() = default;
  ErrorInfo(const ErrorInfo&) = delete;
  ErrorInfo& operator=(const ErrorInfo&) = delete;
  ~ErrorInfo() {
    SysFreeString(source_);
    SysFreeString(description_);
    SysFreeString(help_file_);
  }

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** ppvObject) override {
    if (ppvObject == nullptr) return E_POINTER;
    if (riid == IID_IUnknown || riid == IID_IErrorInfo) {
      *ppvObject = static_cast<IErrorInfo*>(this);
    } else if (riid == IID_ICreateErrorInfo) {
      *ppvObject = static_cast<ICreateErrorInfo*>(this);
    } else {
      *ppvObject = nullptr;
      return E_NOINTERFACE;
    }
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override {
    return references_.fetch_add(1, std::memory_order_relaxed) + 1;
  }
  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = references_.fetch_sub(1, std::memory_order_acq_rel) - 1;
    if (left == 0) delete this;
    return left;
  }

  HRESULT STDMETHODCALLTYPE GetGUID(GUID* pGUID) override {
    if (pGUID == nullptr) return E_INVALIDARG;
    *pGUID = guid_;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetSource(BSTR* text) override { return read(source_, text); }
  HRESULT STDMETHODCALLTYPE GetDescription(BSTR* text) override { return read(description_, text); }
  HRESULT STDMETHODCALLTYPE GetHelpFile(BSTR* text) override { return read(help_file_, text); }
  HRESULT STDMETHODCALLTYPE GetHelpContext(DWORD* pdwHelpContext) override {
    if (pdwHelpContext == nullptr) return E_INVALIDARG;
    *pdwHelpContext = help_context_;
    return S_OK;
  }

  HRESULT STDMETHODCALLTYPE SetGUID(REFGUID rguid) override {
    guid_ = rguid;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE SetSource(LPOLESTR text) override { return write(source_, text); }
  HRESULT STDMETHODCALLTYPE SetDescription(LPOLESTR text) override {
    return write(description_, text);
  }
  HRESULT STDMETHODCALLTYPE SetHelpFile(LPOLESTR text) override { return write(help_file_, text); }
  HRESULT STDMETHODCALLTYPE SetHelpContext(DWORD dwHelpContext) override {
    help_context_ = dwHelpContext;
    return S_OK;
  }

 private:
  static HRESULT read(BSTR field, BSTR* text) {
    if (text == nullptr) return E_INVALIDARG;
    return copy_text(field, *text) ? S_OK : E_OUTOFMEMORY;
  }
  static HRESULT write(BSTR& field, LPCOLESTR text) {
    return SysReAllocString(&field, text) != FALSE ? S_OK : E_OUTOFMEMORY;
  }

  std::atomic<ULONG> references_{1};
  GUID guid_{};
  BSTR source_ = nullptr;
  BSTR description_ = nullptr;
  BSTR help_file_ = nullptr;
  DWORD help_context_ = 0;
};

/// The thread's error object; let go when the thread ends.
struct Slot {
  IErrorInfo* held = nullptr;

  constexpr Slot() = default;
  Slot(const Slot&) = delete;
  Slot& operator=(const Slot&) = delete;
  ~Slot() { put(nullptr); }

  /// Takes over a reference.
  void put(IErrorInfo* next) {
    // Out of the slot first: Release may run code that sets or asks for error information.
    IErrorInfo* old = std::exchange(held, next);
    if (old != nullptr) old->Release();
  }
};

thread_local Slot slot;

}  // namespace

HRESULT STDMETHODCALLTYPE SetErrorInfo(ULONG dwReserved, IErrorInfo* perrinfo) {
  if (dwReserved != 0) return E_INVALIDARG;
  if (perrinfo != nullptr) perrinfo->AddRef();
  slot.put(perrinfo);
  return S_OK;
}

HRESULT STDMETHODCALLTYPE GetErrorInfo(ULONG dwReserved, IErrorInfo** pperrinfo) {
  if (dwReserved != 0 || pperrinfo == nullptr) return E_INVALIDARG;
  *pperrinfo = std::exchange(slot.held, nullptr);
  return *pperrinfo != nullptr ? S_OK : S_FALSE;
}

HRESULT STDMETHODCALLTYPE CreateErrorInfo(ICreateErrorInfo** pperrinfo) {
  if (pperrinfo == nullptr) return E_INVALIDARG;
  *pperrinfo = new (std::nothrow) ErrorInfo;
  return *pperrinfo != nullptr ? S_OK : E_OUTOFMEMORY;
}
