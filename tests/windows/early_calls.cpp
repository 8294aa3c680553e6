// Makes the worked calls of tests/data/calls.tsv through the vtables, as a host bound early does.
// Arguments: the table of calls and the table of the interfaces.
#include "check.hpp"
#include "component/calls.hpp"

using namespace vqmath63::calls;

namespace {

class EarlyHost : public Host {
 public:
  void create(const std::string& class_name, bool to_log) override {
    for (const ClassRow& row : kClasses) {
      if (class_name != row.name) continue;
      checks.result(
          CoCreateInstance(row.clsid, nullptr, CLSCTX_INPROC_SERVER, row.iid, object_.untyped()),
          S_OK, class_name);
    }
    const auto set_callback =
        exported<HRESULT(STDMETHODCALLTYPE*)(Callback, void*)>("VqSetMessageCallback");
    set_callback(to_log ? nullptr : &take, this);
  }
  HRESULT call(const std::string&, const std::string&, const Member& member,
               std::vector<Variable>& sent, VARIANT& result) override {
    std::vector<VARIANT> words;
    const auto refer = [&](void* to) {
      words.emplace_back();
      words.back().vt = VT_BYREF | VT_UI1;
      words.back().byref = to;
    };
    for (std::size_t i = 0; i < member.arguments.size(); ++i) {
      if (i < sent.size() && !member.arguments[i].by_ref) {
        words.push_back(sent[i].v);
      } else {
        refer(i < sent.size() ? &sent[i].v.llVal : nullptr);
      }
    }
    if (member.result.vt != VT_EMPTY) {
      result.vt = member.result.vt;
      refer(&result.llVal);
    }
    std::vector<VARTYPE> types;
    std::vector<VARIANT*> places;
    for (VARIANT& word : words) {
      types.push_back(word.vt);
      places.push_back(&word);
    }
    VARIANT code{};
    checks.result(DispCallFunc(object_.get(), member.slot * sizeof(void*), CC_STDCALL, VT_I4,
                               static_cast<UINT>(words.size()), types.data(), places.data(), &code),
                  S_OK, "DispCallFunc");
    return code.lVal;
  }
  void failed(int line, const std::string& what) override {
    checks.that(false, "calls.tsv, line " + std::to_string(line) + ": " + what);
  }

 private:
  using Callback = void(STDMETHODCALLTYPE*)(const OLECHAR*, BOOL, void*);

  static void STDMETHODCALLTYPE take(const OLECHAR* line, BOOL, void* self) {
    const std::wstring wide = line;
    static_cast<Host*>(self)->lines.emplace_back(wide.begin(), wide.end());
  }

  Holder<IUnknown> object_;
};

}  // namespace

int main(int count, char** words) {
  if (count != 3) return 2;
  CoInitialize(nullptr);
  {
    const Interfaces interfaces(words[2]);
    EarlyHost host;
    std::printf("calls %d\n", Run(interfaces, host).all(words[1]));
  }
  CoUninitialize();
  return checks.close();
}
