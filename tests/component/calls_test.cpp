// The worked calls of tests/data/calls.tsv, through the vtables and by name.
#include "component/calls.hpp"

#include <array>
#include <filesystem>
#include <iostream>

#include "component_host.hpp"

namespace vqmath63::component::test {
namespace {

using namespace calls;

// What the hosts here share: objects by programmatic id, the callback for error lines, and a folder
// of their own for the logs.
class NativeHost : public Host {
 public:
  NativeHost() {
    std::string folder = ::testing::TempDir() + "calls_XXXXXX";
    if (::mkdtemp(folder.data()) == nullptr) throw std::runtime_error("no folder");
    folder_ = folder;
    std::filesystem::current_path(folder_);
  }
  ~NativeHost() override {
    release();
    VqSetMessageCallback(nullptr, nullptr);
    std::filesystem::current_path(before_);
    std::filesystem::remove_all(folder_);
  }
  void create(const std::string& class_name, bool to_log) override {
    release();
    VqSetMessageCallback(to_log ? nullptr : &take, this);
    const std::string id = "vq140Analyse." + class_name;
    CLSID clsid{};
    ASSERT_EQ(CLSIDFromProgID(std::u16string(id.begin(), id.end()).c_str(), &clsid), S_OK);
    void* made = nullptr;
    ASSERT_EQ(DllGetClassObject(clsid, IID_IClassFactory, &made), S_OK);
    auto* factory = static_cast<IClassFactory*>(made);
    EXPECT_EQ(factory->CreateInstance(nullptr, IID_IDispatch, &made), S_OK);
    factory->Release();
    object_ = static_cast<IDispatch*>(made);
  }
  void failed(int line, const std::string& what) override {
    ADD_FAILURE_AT(VQ_TEST_DATA "/calls.tsv", line) << what;
  }

 protected:
  IDispatch* object_ = nullptr;

 private:
  static void take(const OLECHAR* line, BOOL, void* self) {
    const std::u16string wide = line;
    static_cast<Host*>(self)->lines.emplace_back(wide.begin(), wide.end());
  }
  void release() {
    if (object_ != nullptr) object_->Release();
    object_ = nullptr;
  }

  std::filesystem::path before_ = std::filesystem::current_path(), folder_;
};

// Calls entry `slot` of the vtable. Integers and pointers are passed in one row of registers and
// then on the stack, in their order, and floating-point numbers in another row of registers: so one
// type of function serves for every member, and what a member does not read does no harm.
HRESULT call_entry(void* object, UINT slot, const std::vector<std::intptr_t>& words,
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

// Optional arguments are left out as null references.
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
    return call_entry(object_, member.slot, words, numbers);
  }
};

// Sends references to variables: of the exact types, or untyped ones with arrays of variants.
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
    const Answer answer = automation::test::call(object_, std::u16string(name.begin(), name.end()),
                                                 references, {}, flags);
    VariantCopy(&result, &answer.result.v);
    return answer.hr;
  }

 private:
  bool untyped_;
};

// Makes each call of a method three times at once, with a column for every argument that may be
// one.
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
    const HRESULT code = VqCallMany(object_, id, flags, static_cast<int64_t>(calls), columns.data(),
                                    static_cast<UINT>(columns.size()), &column, nullptr);
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

void run(Host& host, const char* how) {
  const Interfaces interfaces(VQ_TEST_DATA "/interface.tsv");
  const int calls = Run(interfaces, host).all(VQ_TEST_DATA "/calls.tsv");
  std::cout << calls << " calls " << how << "\n";
  EXPECT_GE(calls, 200);
}

TEST(CallsTest, through_the_vtables) {
  VtableHost host;
  run(host, "through the vtables");
}

TEST(CallsTest, by_name_with_variables_of_the_exact_types) {
  NameHost host(false);
  run(host, "by name");
}

TEST(CallsTest, by_name_with_untyped_variables) {
  NameHost host(true);
  run(host, "by name, untyped");
}

TEST(CallsTest, many_at_once) {
  ManyHost host;
  run(host, "many at once");
}

// Of two members that look alike to the compiler, each swapped entry of the vtable is seen. Silent
// and ProductionProfile of ztAccumulate are only stored.
TEST(CallsTest, tell_members_of_one_signature_apart) {
  struct Seen {};
  struct Listener final : VtableHost {
    void failed(int, const std::string& what) override {
      if (!what.starts_with("lines:")) throw Seen{};  // scripts do not see the lines
    }
  } host;
  Interfaces interfaces(VQ_TEST_DATA "/interface.tsv");
  auto& members = interfaces.members();
  const auto class_of = [](const auto& entry) {
    return entry.first.substr(0, entry.first.find(' '));
  };
  std::string unseen;
  int pairs = 0;
  for (auto a = members.begin(); a != members.end(); ++a) {
    for (auto b = std::next(a); b != members.end(); ++b) {
      if (class_of(*a) != class_of(*b) || !a->second.same_signature(b->second)) continue;
      std::swap(a->second.slot, b->second.slot);
      try {
        calls::Run(interfaces, host, class_of(*a)).all(VQ_TEST_DATA "/calls.tsv");
        unseen += a->first + " and " + b->first + "\n";
      } catch (const Seen&) {
      }
      host.lines.clear();
      std::swap(a->second.slot, b->second.slot);
      ++pairs;
    }
  }
  EXPECT_EQ(unseen, "ztAccumulate let ProductionProfile and ztAccumulate let Silent\n");
  EXPECT_GE(pairs, 1000);
}

}  // namespace
}  // namespace vqmath63::component::test
