// An early-bound host: the dual interfaces through their vtables, with arrays and errors as such
// hosts see them. Argument: the component's manifest where it is to be used without registration.
#include <xmmintrin.h>

#include "check.hpp"

namespace {

constexpr HRESULT kTypeMismatch = static_cast<HRESULT>(0x800A000D);
constexpr HRESULT kOverflow = static_cast<HRESULT>(0x800A0006);

// The words of the failed call, as error info has them; the info is taken away by reading it.
void error_words(const char* words, const char* source, REFIID iid, const std::string& what) {
  Holder<IErrorInfo> info;
  if (!checks.that(GetErrorInfo(0, info.place()) == S_OK, what + ": error info")) return;
  Text text;
  Text from;
  GUID interface_id{};
  info->GetDescription(&text.text);
  info->GetSource(&from.text);
  info->GetGUID(&interface_id);
  checks.that(text.ascii().find(words) != std::string::npos, what + ": '" + text.ascii() + "'");
  checks.that(from.ascii() == source, what + ": source '" + from.ascii() + "'");
  checks.that(IsEqualGUID(interface_id, iid), what + ": interface of the error");
}

void arrays_and_errors() {
  Holder<_ztIntegrate> integrate;
  create(CLSID_ztIntegrate, integrate);
  Holder<ISupportErrorInfo> support;
  checks.result(integrate->QueryInterface(IID_ISupportErrorInfo, support.untyped()), S_OK,
                "ISupportErrorInfo");
  checks.result(support->InterfaceSupportsErrorInfo(IID__ztIntegrate), S_OK, "for the interface");
  checks.result(support->InterfaceSupportsErrorInfo(IID__ztAccumulate), S_FALSE, "for another");

  float area = NAN;
  HostArray from_zero({1e30, 0, 1, 2}, 0);
  HostArray ordinates({1e30, 0, 1, 4}, 0);
  checks.result(integrate->Integral(&from_zero.array, &ordinates.array, &area), S_OK, "from 0");
  checks.that(area == 3.0F, "element 0 is not read");
  HostArray from_two({0, 1, 2}, 2);
  checks.result(integrate->Integral(&from_two.array, &ordinates.array, &area), S_OK, "from 2");
  checks.result(integrate->Integral(&from_zero.array, &from_zero.array, &area), S_OK, "x twice");
  checks.that(area == 2.0F, "area under y = x");

  HostArray table({0, 1, 2, 3}, 1, 2);
  checks.result(integrate->Integral(&table.array, &ordinates.array, &area), kTypeMismatch,
                "wrong rank");
  checks.that(area == 0.0F, "a failed call's result is 0");
  error_words("argument 'xVals' of Integral", "vq140Analyse.ztIntegrate", IID__ztIntegrate,
              "wrong rank");
  HostArray flags({1, 1, 1}, 1, 0, VT_BOOL);
  checks.result(integrate->Integral(&from_zero.array, &flags.array, &area), kTypeMismatch,
                "wrong elements");
  checks.result(integrate->Integral(&from_zero.array, &ordinates.array, &area), S_OK, "good again");
  Holder<IErrorInfo> stale;
  checks.result(GetErrorInfo(0, stale.place()), S_FALSE, "no stale error info");
  checks.result(integrate->Integral(nullptr, &ordinates.array, &area), E_POINTER, "null reference");
  checks.result(integrate->Integral(&from_zero.array, &ordinates.array, nullptr), E_POINTER,
                "no place for the result");
  checks.that(from_zero.array->cLocks == 0 && ordinates.array->cLocks == 0, "no lock is left");

  Holder<_ztAccumulate> accumulate;
  create(CLSID_ztAccumulate, accumulate);
  HostArray fixed({7, 7}, 1, 2);
  fixed.array->fFeatures |= FADF_FIXEDSIZE;
  VARIANT_BOOL ok = VARIANT_TRUE;
  HostArray data({0, 1, 400, 2}, 1, 2);
  checks.result(accumulate->Accumulate(&data.array, &fixed.array, &ok), S_OK, "a fixed result");
  checks.that(ok == VARIANT_FALSE && fixed.at(1, 2) == 7.0, "cannot be re-dimensioned");
  fixed.array->fFeatures = static_cast<USHORT>(fixed.array->fFeatures & ~FADF_FIXEDSIZE);

  Holder<IUnknown> outer;
  create(CLSID_ztAccumulate, outer);
  Holder<IUnknown> inner;
  checks.result(create(CLSID_ztIntegrate, inner, outer.get()), CLASS_E_NOAGGREGATION,
                "aggregation");
}

std::vector<std::string> lines;

void STDMETHODCALLTYPE take_line(const OLECHAR* line, BOOL, void* context) {
  std::string text;
  for (; *line != 0; ++line) text += static_cast<char>(*line);
  static_cast<std::vector<std::string>*>(context)->push_back(text);
}

void exported_functions() {
  using Callback = void(STDMETHODCALLTYPE*)(const OLECHAR*, BOOL, void*);
  using SetCallback = HRESULT(STDMETHODCALLTYPE*)(Callback, void*);
  using Describe = HRESULT(STDMETHODCALLTYPE*)(const OLECHAR*, BSTR*);
  Holder<_ztIntegrate> integrate;
  create(CLSID_ztIntegrate, integrate);
  const auto set_callback = exported<SetCallback>("VqSetMessageCallback");
  const auto describe = exported<Describe>("VqDescribe");
  if (!checks.that(set_callback != nullptr && describe != nullptr, "exported by plain name"))
    return;
  checks.result(set_callback(take_line, &lines), S_OK, "VqSetMessageCallback");
  HostArray one({5}, 1);
  float area = NAN;
  LONG simpson = 2;
  integrate->put_IntegrationRule(&simpson);
  checks.result(integrate->Integral(&one.array, &one.array, &area), S_OK, "trapped inside");
  checks.that(
      lines == std::vector<std::string>{"Error:Subscript out of range (No.9) In [ztAnalyse - "
                                        "Integration (Code) (Simpson)] "},
      "the line of the trapped error");
  set_callback(nullptr, nullptr);
  Text members;
  checks.result(describe(L"vq140analyse.ZTintegrate", &members.text), S_OK, "VqDescribe");
  checks.that(members.ascii().find("method\tIntegral\t3\tSingle\t") != std::string::npos,
              "describes Integral");
}

// A host that has traps unmasked and another rounding mode.
void floating_point_state() {
  Holder<_ztIntegrate> integrate;
  create(CLSID_ztIntegrate, integrate);
  VARIANT huge[2] = {};
  SAFEARRAY* doubles = SafeArrayCreateVector(VT_R8, 1, 2);
  static_cast<double*>(doubles->pvData)[1] = 1e300;
  huge[0].vt = huge[1].vt = VT_ARRAY | VT_R8;
  huge[0].parray = huge[1].parray = doubles;
  DISPPARAMS arguments{huge, nullptr, 2, 0};
  HostArray x({0, 3e38}, 1);
  float area = NAN;
  EXCEPINFO exception{};
  const unsigned usual = _mm_getcsr();
  constexpr unsigned kInvalidZeroDivideOverflow = 0x0680;
  constexpr unsigned kTowardZero = 0x6000;
  constexpr unsigned kStatus = 0x003F;
  const unsigned host = ((usual & ~kStatus) & ~kInvalidZeroDivideOverflow) | kTowardZero;
  _mm_setcsr(host);
  const HRESULT called = integrate->Integral(&x.array, &x.array, &area);
  const unsigned after_call = _mm_getcsr();
  const HRESULT invoked =
      integrate->Invoke(3, IID_NULL, 0, DISPATCH_METHOD, &arguments, nullptr, &exception, nullptr);
  const unsigned after_invoke = _mm_getcsr();
  _mm_setcsr(usual);
  checks.result(called, S_OK, "an overflow that is trapped inside");
  checks.result(invoked, DISP_E_EXCEPTION, "an overflow while converting");
  checks.result(exception.scode, kOverflow, "its number");
  checks.that((after_call & ~kStatus) == host, "control state after a call");
  checks.that((after_invoke & ~kStatus) == host, "control state after a call by name");
  SysFreeString(exception.bstrDescription);
  SysFreeString(exception.bstrSource);
  SafeArrayDestroy(doubles);
}

void use_manifest(const char* path) {
  CLSID clsid{};
  checks.result(CLSIDFromProgID(L"vq140Analyse.ztIntegrate", &clsid), CO_E_CLASSSTRING,
                "not registered");
  ACTCTXA manifest{};
  manifest.cbSize = sizeof manifest;
  manifest.lpSource = path;
  const HANDLE context = CreateActCtxA(&manifest);
  ULONG_PTR cookie = 0;
  checks.that(context != INVALID_HANDLE_VALUE && ActivateActCtx(context, &cookie), "the manifest");
  checks.result(CLSIDFromProgID(L"vq140Analyse.ztIntegrate", &clsid), S_OK, "its programmatic id");
}

}  // namespace

int main(int count, char** words) {
  if (count == 2) use_manifest(words[1]);
  CoInitialize(nullptr);
  arrays_and_errors();
  exported_functions();
  floating_point_state();
  CoUninitialize();
  return checks.close();
}
