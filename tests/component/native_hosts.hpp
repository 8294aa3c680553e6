// Hosts of the worked calls in this process: through the vtables, and by name.
#pragma once

#include <array>
#include <filesystem>

#include "component/calls.hpp"
#include "component/component_host.hpp"

namespace vqmath63::calls {

/// A folder of its own for the logs, which is the current one meanwhile.
class LogFolder {
 public:
  LogFolder() {
    std::string folder = ::testing::TempDir() + "calls_XXXXXX";
    if (::mkdtemp(folder.data()) == nullptr) throw std::runtime_error("no folder");
    folder_ = folder;
    std::filesystem::current_path(folder_);
  }
  ~LogFolder() {
    std::filesystem::current_path(before_);
    std::filesystem::remove_all(folder_);
  }
  LogFolder(const LogFolder&) = delete;
  LogFolder& operator=(const LogFolder&) = delete;

 private:
  std::filesystem::path before_ = std::filesystem::current_path(), folder_;
};

/// What the hosts here share: objects by programmatic id, and the callback for error lines.
class NativeHost : public Host {
 public:
  ~NativeHost() override {
    release();
    VqSetMessageCallback(nullptr, nullptr);
  }
  void create(const std::string& class_name, bool to_log) override {
    release();
    VqSetMessageCallback(to_log ? nullptr : &take, this);
    object_ = made(class_name);
  }
  /// A new object of a class, null where that failed.
  IDispatch* made(const std::string& class_name) {
    const std::string id = "vq140Analyse." + class_name;
    CLSID clsid{};
    EXPECT_EQ(CLSIDFromProgID(std::u16string(id.begin(), id.end()).c_str(), &clsid), S_OK);
    void* object = nullptr;
    EXPECT_EQ(DllGetClassObject(clsid, IID_IClassFactory, &object), S_OK);
    auto* factory = static_cast<IClassFactory*>(object);
    about_to_enter();
    creation_ = factory->CreateInstance(nullptr, IID_IDispatch, &object);
    has_left();
    factory->Release();
    return static_cast<IDispatch*>(object);
  }
  void failed(int line, const std::string& what) override {
    ADD_FAILURE_AT(VQ_TEST_DATA "/calls.tsv", line) << what;
  }

  std::u16string told;  ///< by a call that failed

 protected:
  /// Around what the component itself does of a call, and not the host.
  virtual void about_to_enter() {}
  virtual void has_left() {}

  void release() {
    if (object_ != nullptr) object_->Release();
    object_ = nullptr;
  }

  IDispatch* object_ = nullptr;
  HRESULT creation_ = S_OK;

 private:
  static void take(const OLECHAR* line, BOOL, void* self) {
    auto* const host = static_cast<NativeHost*>(self);
    host->has_left();
    const std::u16string wide = line;
    host->lines.emplace_back(wide.begin(), wide.end());
    host->about_to_enter();
  }
};

#if defined(__EMSCRIPTEN__)
/// Calls entry `slot` of the vtable, by its very type, which WebAssembly looks at: numbers stand
/// before integers and pointers, save where an order stands before its one number.
inline HRESULT call_entry(void* object, UINT slot, const std::vector<std::intptr_t>& words,
                          const std::vector<double>& numbers) {
  const auto call = [&](auto... given) {
    using Entry = HRESULT (*)(void*, decltype(given)...);
    return (*static_cast<const Entry* const*>(object))[slot](object, given...);
  };
  const auto with_words = [&](auto... first) {
    const auto& w = words;
    switch (w.size()) {
      case 0:
        return call(first...);
      case 1:
        return call(first..., w[0]);
      case 2:
        return call(first..., w[0], w[1]);
      case 3:
        return call(first..., w[0], w[1], w[2]);
      case 4:
        return call(first..., w[0], w[1], w[2], w[3]);
      case 5:
        return call(first..., w[0], w[1], w[2], w[3], w[4]);
      case 6:
        return call(first..., w[0], w[1], w[2], w[3], w[4], w[5]);
      case 7:
        return call(first..., w[0], w[1], w[2], w[3], w[4], w[5], w[6]);
      case 8:
        return call(first..., w[0], w[1], w[2], w[3], w[4], w[5], w[6], w[7]);
      case 9:
        return call(first..., w[0], w[1], w[2], w[3], w[4], w[5], w[6], w[7], w[8]);
      case 11:
        return call(first..., w[0], w[1], w[2], w[3], w[4], w[5], w[6], w[7], w[8], w[9], w[10]);
      default:
        throw std::length_error("arguments");
    }
  };
  const auto& d = numbers;
  switch (d.size()) {
    case 0:
      return with_words();
    case 1:
      return words.size() == 2 ? call(words[0], d[0], words[1]) : with_words(d[0]);
    case 2:
      return with_words(d[0], d[1]);
    case 3:
      return with_words(d[0], d[1], d[2]);
    default:
      throw std::length_error("arguments");
  }
}
#else
/// Calls entry `slot` of the vtable. Integers and pointers are passed in one row of registers and
/// then on the stack, in their order, and floating-point numbers in another row of registers: so
/// one type of function serves for every member, and what a member does not read does no harm.
inline HRESULT call_entry(void* object, UINT slot, const std::vector<std::intptr_t>& words,
                          const std::vector<double>& numbers) {
  using Word = std::intptr_t;
  using Entry = HRESULT (*)(void*, Word, Word, Word, Word, Word, Word, Word, Word, Word, Word, Word,
                            Word, double, double, double, double);
  std::array<Word, 12> w{};
  std::array<double, 4> d{};
  if (words.size() > w.size() || numbers.size() > d.size()) throw std::length_error("arguments");
  std::copy(words.begin(), words.end(), w.begin());
  std::copy(numbers.begin(), numbers.end(), d.begin());
  const Entry entry = (*static_cast<const Entry* const*>(object))[slot];
  return entry(object, w[0], w[1], w[2], w[3], w[4], w[5], w[6], w[7], w[8], w[9], w[10], w[11],
               d[0], d[1], d[2], d[3]);
}
#endif

/// Optional arguments are left out as null references.
class VtableHost : public NativeHost {
 public:
  HRESULT call(const std::string&, const std::string&, const Member& member,
               std::vector<Variable>& sent, VARIANT& result) override {
    std::vector<std::intptr_t> words;
    std::vector<double> numbers;
    const auto refer = [&](void* to) { words.push_back(reinterpret_cast<std::intptr_t>(to)); };
    for (std::size_t i = 0; i < member.arguments.size(); ++i) {
      VARIANT* v = i < sent.size() ? &sent[i].v : nullptr;
      if (v == nullptr || member.arguments[i].by_ref) {
        refer(v == nullptr ? nullptr : &v->llVal);
      } else if (v->vt == VT_R8 || v->vt == VT_DATE) {
        numbers.push_back(v->dblVal);
      } else if (v->vt == VT_BSTR) {
        refer(v->bstrVal);
      } else {
        words.push_back(v->vt == VT_I4 ? v->lVal : v->boolVal);
      }
    }
    if (member.result.vt != VT_EMPTY) {
      result.vt = member.result.vt;
      result.llVal = 0x5555555555555555;
      if (result.vt == VT_BSTR) result.bstrVal = nullptr;
      refer(&result.llVal);
    }
    about_to_enter();
    const HRESULT done = call_entry(object_, member.slot, words, numbers);
    has_left();
    told = FAILED(done) ? automation::test::error_words() : u"";
    return done;
  }
};

/// Sends references to variables: of the exact types, or untyped ones with arrays of variants.
class NameHost : public NativeHost {
 public:
  explicit NameHost(bool untyped) : untyped_(untyped) {}
  Type sent_as(const Type& argument) const override {
    return untyped_ ? Type{VT_VARIANT, argument.rank, argument.by_ref} : argument;
  }
  HRESULT call(const std::string& kind, const std::string& name, const Member& member,
               std::vector<Variable>& sent, VARIANT& result) override {
    std::vector<VARIANT> references;
    for (std::size_t i = 0; i < sent.size(); ++i) {
      VARIANT& v = sent[i].v;
      VARIANT reference = v;
      if (member.arguments[i].by_ref) {
        const VARTYPE held = untyped_ ? VARTYPE{VT_VARIANT} : v.vt;
        reference.vt = static_cast<VARTYPE>(VT_BYREF | held);
        reference.byref = untyped_ ? static_cast<void*>(&v) : &v.llVal;
      }
      references.push_back(reference);
    }
    WORD flags = DISPATCH_METHOD;
    if (kind != "call") flags = kind == "get" ? DISPATCH_PROPERTYGET : DISPATCH_PROPERTYPUT;
    std::u16string wide(name.begin(), name.end());
    OLECHAR* names = wide.data();
    DISPID id = DISPID_UNKNOWN, put = DISPID_PROPERTYPUT;
    EXPECT_EQ(object_->GetIDsOfNames(IID_NULL, &names, 1, 0, &id), S_OK);
    std::reverse(references.begin(), references.end());
    const UINT named = flags == DISPATCH_PROPERTYPUT ? 1 : 0;
    DISPPARAMS params{references.data(), &put, static_cast<UINT>(references.size()), named};
    EXCEPINFO exception{};
    about_to_enter();
    const HRESULT done =
        object_->Invoke(id, IID_NULL, 0, flags, &params, &result, &exception, nullptr);
    has_left();
    told = automation::test::characters(exception.bstrDescription);
    SysFreeString(exception.bstrDescription);
    SysFreeString(exception.bstrSource);
    return done == DISP_E_EXCEPTION ? exception.scode : done;
  }

 private:
  bool untyped_;
};

/// Makes each call of a method three times at once, with a column for every argument that may be
/// one.
class ManyHost : public NativeHost {
 public:
  HRESULT call(const std::string& kind, const std::string& name, const Member& member,
               std::vector<Variable>& sent, VARIANT& result) override {
    // What the first call of these makes shorter or divides, the second finds so.
    const bool once = kind != "call" || name == "CloseDown" || name == "Normalise" ||
                      name.starts_with("MaskValues");
    const std::size_t calls = once ? 1 : 3;
    std::u16string wide(name.begin(), name.end());
    OLECHAR* names = wide.data();
    DISPID id = 0;
    EXPECT_EQ(object_->GetIDsOfNames(IID_NULL, &names, 1, 0, &id), S_OK);
    std::vector<VqColumn> columns(member.arguments.size(), {nullptr, 0});
    std::vector<std::vector<VARIANT>> values;
    for (std::size_t i = 0; i < sent.size(); ++i) {
      VARIANT& v = sent[i].v;
      const bool one = v.vt == VT_BSTR || (v.vt & VT_ARRAY) != 0;
      values.emplace_back(one ? 0 : calls, v);
      columns[i] = {one ? &v.llVal : &values[i].data()->llVal, one ? 0 : int64_t{sizeof v}};
    }
    std::vector<VARIANT> results(calls, VARIANT{});
    const VqColumn column{&results[0].llVal, sizeof(VARIANT)};
    const WORD flags = kind == "let" ? DISPATCH_PROPERTYPUT : DISPATCH_METHOD;
    about_to_enter();
    const HRESULT code = VqCallMany(object_, id, flags, static_cast<int64_t>(calls), columns.data(),
                                    static_cast<UINT>(columns.size()), &column, nullptr);
    has_left();
    told = FAILED(code) ? automation::test::error_words() : u"";
    result = results[0];
    if (SUCCEEDED(code)) result.vt = member.result.vt;
    for (std::size_t k = 1; k < calls; ++k) {
      EXPECT_EQ(results[k].llVal, result.llVal) << name;
      for (const auto& column_values : values) {
        if (column_values.empty()) continue;
        EXPECT_EQ(column_values[k].llVal, column_values[0].llVal) << name;
      }
    }
    for (std::size_t i = 0; i < sent.size(); ++i) {
      if (!values[i].empty()) sent[i].v = values[i][0];
    }
    return code;
  }
};

}  // namespace vqmath63::calls
