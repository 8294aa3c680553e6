// Hosts that know the component by its descriptions alone, making the worked calls.
//
// usage: generic_hosts.exe HOST CALLS.TSV INTERFACE.TSV RECORD
//   HOST    by_name             the object's own IDispatch; writes what came back to RECORD, to
//   which
//                               the others are held bit for bit
//           vtable              the dual interface
//           type_info           the system's own ITypeInfo::Invoke
//           apartment_vtable, apartment_by_name
//                               from another apartment, through the system's marshaler
#include "apartment.hpp"
#include "member_call.hpp"

using namespace vqmath63::calls;

namespace {

bool has_table(const Member& member) {
  for (const Type& argument : member.arguments) {
    if (argument.rank == 2) return true;
  }
  return false;
}

class GenericHost : public Host {
 public:
  explicit GenericHost(const std::string& way)
      : vtable_(way.ends_with("vtable")), type_info_(way == "type_info") {
    if (way.starts_with("apartment")) apartment_ = std::make_unique<Apartment>();
  }
  ~GenericHost() override { let_go(); }

  void create(const std::string& class_name, bool to_log) override {
    let_go();
    const ClassRow& row = class_row(class_name);
    IStream* stream = nullptr;
    const auto make = [&] {
      checks.result(CoCreateInstance(row.clsid, nullptr, CLSCTX_INPROC_SERVER, row.iid,
                                     reinterpret_cast<void**>(&home_)),
                    S_OK, class_name);
      if (!apartment_) return;
      checks.result(CoMarshalInterThreadInterfaceInStream(row.iid, home_, &stream), S_OK,
                    "marshal");
    };
    if (apartment_) {
      apartment_->run(make);
      checks.result(CoGetInterfaceAndReleaseStream(stream, row.iid, object_.untyped()), S_OK,
                    class_name + ": proxy");
      checks.that(object_.get() != home_, class_name + ": a proxy");
    } else {
      make();
      home_->QueryInterface(row.iid, object_.untyped());
    }
    // The lines of an object in another apartment are those of its thread.
    exported<HRESULT(STDMETHODCALLTYPE*)(Callback, void*)>("VqSetProcessMessageCallback")(
        to_log ? nullptr : &take, this);
  }

  HRESULT call(const std::string& kind, const std::string& name, const Member& member,
               std::vector<Variable>& sent, VARIANT& result) override {
    HRESULT code = S_OK;
    // The system's marshaler under Wine turns the bounds of tables round, whosever they are.
    if (apartment_ && has_table(member)) {
      ++at_home;
      apartment_->run([&] { code = make(home_, false, kind, name, member, sent, result); });
    } else {
      code = make(object_.get(), vtable_, kind, name, member, sent, result);
    }
    std::string line = name + " " + std::to_string(code) + " " + types_of(result) + shown(result);
    for (const Variable& v : sent) line += "\t" + types_of(v.v) + shown(v.v);
    record.push_back(line);
    return code;
  }
  void failed(int line, const std::string& what) override {
    checks.that(false, "calls.tsv, line " + std::to_string(line) + ": " + what);
  }

  std::vector<std::string> record;
  int at_home = 0;

 private:
  using Callback = void(STDMETHODCALLTYPE*)(const OLECHAR*, BOOL, void*);

  static void STDMETHODCALLTYPE take(const OLECHAR* line, BOOL, void* self) {
    const std::wstring wide = line;
    static_cast<Host*>(self)->lines.emplace_back(wide.begin(), wide.end());
  }

  HRESULT make(IDispatch* object, bool vtable, const std::string& kind, const std::string& name,
               const Member& member, std::vector<Variable>& sent, VARIANT& result) const {
    MemberCall call(member, sent, type_info_ || apartment_);
    if (vtable) return call.by_vtable(object, &result);
    const DISPID id = id_of(object, name);
    if (!type_info_) return call.by_name(kind, &result, own_invoke(object, id));
    Holder<ITypeInfo> info;
    checks.result(object->GetTypeInfo(0, 0, info.place()), S_OK, "type info");
    return call.by_name(kind, &result, [&](auto flags, auto params, auto out, auto exception) {
      UINT bad = 0;
      return info->Invoke(object, id, flags, params, out, exception, &bad);
    });
  }
  void let_go() {
    object_.reset();
    if (home_ == nullptr) return;
    const auto release = [this] { home_->Release(); };
    apartment_ ? apartment_->run(release) : release();
    home_ = nullptr;
  }

  const bool vtable_, type_info_;
  std::unique_ptr<Apartment> apartment_;
  IDispatch* home_ = nullptr;  // as its own apartment sees it
  Holder<IDispatch> object_;
};

}  // namespace

int main(int count, char** words) {
  if (count != 5) return 2;
  const std::string way = words[1];
  CoInitializeEx(nullptr,
                 way.starts_with("apartment") ? COINIT_MULTITHREADED : COINIT_APARTMENTTHREADED);
  {
    const Interfaces interfaces(words[3]);
    GenericHost host(way);
    std::printf("calls %d\n", Run(interfaces, host).all(words[2]) - host.at_home);
    if (host.at_home > 0) std::printf("left out %d\n", host.at_home);
    if (way == "by_name") {
      std::ofstream out(words[4]);
      for (const std::string& line : host.record) out << line << '\n';
    }
    std::ifstream in(words[4]);
    std::size_t k = 0;
    for (std::string line; std::getline(in, line); ++k) {
      const std::string got = k < host.record.size() ? host.record[k] : "nothing";
      checks.that(got == line, "call " + std::to_string(k + 1) + ": " + got + ", by name " + line);
    }
    checks.that(k == host.record.size() && k > 0, "as many calls as by name");
  }
  CoUninitialize();
  return checks.close();
}
