// Hosts by the system's own means, with the faces of those of tests/component/native_hosts.hpp.
#pragma once

#include "member_call.hpp"

namespace vqmath63::calls {

class VtableHost : public Host {
 public:
  ~VtableHost() override { set_callback(nullptr); }
  void create(const std::string& class_name, bool) override {
    const ClassRow& row = class_row(class_name);
    checks.result(
        CoCreateInstance(row.clsid, nullptr, CLSCTX_INPROC_SERVER, row.iid, object_.untyped()),
        S_OK, class_name);
    set_callback(&take);
  }
  HRESULT call(const std::string& kind, const std::string& name, const Member& member,
               std::vector<Variable>& sent, VARIANT& result) override {
    MemberCall made(member, sent, false);
    SetErrorInfo(0, nullptr);
    about_to_enter();
    const HRESULT code = enter(made, kind, name, result);
    has_left();
    if (SUCCEEDED(code)) told.clear();
    return code;
  }
  void failed(int, const std::string& what) override { checks.that(false, what); }

  std::string told;  ///< by a call that failed

 protected:
  virtual void about_to_enter() {}
  virtual void has_left() {}

  virtual HRESULT enter(MemberCall& made, const std::string&, const std::string&, VARIANT& result) {
    const HRESULT code = made.by_vtable(object_.get(), &result);
    Holder<IErrorInfo> info;
    Text text;
    if (GetErrorInfo(0, info.place()) == S_OK) info->GetDescription(&text.text);
    told = text.ascii();
    return code;
  }

  Holder<IDispatch> object_;

 private:
  using Callback = void(STDMETHODCALLTYPE*)(const OLECHAR*, BOOL, void*);

  void set_callback(Callback callback) {
    exported<HRESULT(STDMETHODCALLTYPE*)(Callback, void*)>("VqSetMessageCallback")(callback, this);
  }
  static void STDMETHODCALLTYPE take(const OLECHAR* line, BOOL, void* self) {
    auto* const host = static_cast<VtableHost*>(self);
    host->has_left();
    const std::wstring wide = line;
    host->lines.emplace_back(wide.begin(), wide.end());
    host->about_to_enter();
  }
};

/// Sends references to variables of the exact types.
class NameHost : public VtableHost {
 public:
  explicit NameHost(bool) {}

 private:
  HRESULT enter(MemberCall& made, const std::string& kind, const std::string& name,
                VARIANT& result) override {
    const HRESULT code =
        made.by_name(kind, &result, own_invoke(object_.get(), id_of(object_.get(), name)));
    told = made.exception_words;
    return code;
  }
};

}  // namespace vqmath63::calls
