// An early-bound host: the dual interfaces through their vtables, with arrays and errors as such
// hosts see them. Arguments: the table of expected numbers, and the component's manifest where it
// is to be used without registration.
#include <xmmintrin.h>

#include "check.hpp"

namespace {

constexpr HRESULT kTypeMismatch = static_cast<HRESULT>(0x800A000D);
constexpr HRESULT kOverflow = static_cast<HRESULT>(0x800A0006);

DATE date_of(const std::string& iso) {
  SYSTEMTIME parts{};
  parts.wYear = static_cast<WORD>(std::stoi(iso.substr(0, 4)));
  parts.wMonth = static_cast<WORD>(std::stoi(iso.substr(5, 2)));
  parts.wDay = static_cast<WORD>(std::stoi(iso.substr(8, 2)));
  DATE date = 0;
  SystemTimeToVariantTime(&parts, &date);
  return date;
}

void integral_cases(const Expected& expected) {
  Holder<_ztIntegrate> integrate;
  checks.result(create(CLSID_ztIntegrate, integrate), S_OK, "create ztIntegrate");
  for (const std::string& name : expected.words("integral.cases")) {
    const auto rules =
        expected.numbers(expected.has(name + ".rules") ? name + ".rules" : "integral.rules");
    const auto results = expected.numbers(name + ".result");
    HostArray x(expected.numbers(name + ".x"), 1);
    HostArray y(expected.numbers(name + ".y"), 1);
    const void* elements = x.array->pvData;
    for (std::size_t i = 0; i < rules.size(); ++i) {
      LONG rule = static_cast<LONG>(rules[i]);
      checks.result(integrate->put_IntegrationRule(&rule), S_OK, "put_IntegrationRule");
      float area = NAN;
      const std::string what = name + ", rule " + std::to_string(rule);
      checks.result(integrate->Integral(&x.array, &y.array, &area), S_OK, what);
      checks.number(static_cast<double>(area), results.at(i), what);
    }
    checks.that(x.array->pvData == elements && x.array->cLocks == 0,
                name + ": array left as it was");
  }
  LONG rule = 77;
  checks.result(integrate->get_IntegerationRule(&rule), S_OK, "get_IntegerationRule");
  checks.that(rule == 0, "the rule is not read back");
}

void accumulate_cases(const Expected& expected) {
  for (const std::string& name : expected.words("accumulate.cases")) {
    Holder<_ztAccumulate> accumulate;
    checks.result(create(CLSID_ztAccumulate, accumulate), S_OK, name + ": create");
    Text data_period(expected.word(name + ".data_period"));
    Text period(expected.word(name + ".period"));
    accumulate->put_DataPeriod(data_period.text);
    accumulate->put_Period(period.text);
    accumulate->put_Frequency(std::stoi(expected.word(name + ".frequency")));
    accumulate->put_StartData(date_of(expected.word(name + ".start_data")));
    accumulate->put_StartDate(date_of(expected.word(name + ".start_date")));
    DATE start = 0;
    accumulate->get_StartDate(&start);
    checks.that(start == date_of(expected.word(name + ".start_date")),
                name + ": StartDate is kept");
    if (expected.has(name + ".rate")) {
      HostArray flags(expected.numbers(name + ".rate"), 1, 0, VT_BOOL);
      checks.result(accumulate->put_RateArray(&flags.array), S_OK, name + ": RateArray");
    }
    const auto columns = static_cast<ULONG>(std::stoul(expected.word(name + ".columns")));
    HostArray data(expected.numbers(name + ".data"), 1, columns);
    const void* elements = data.array->pvData;
    HostArray result;
    VARIANT_BOOL ok = 0x5555;
    checks.result(accumulate->Accumulate(&data.array, &result.array, &ok), S_OK, name);
    checks.that(ok == VARIANT_TRUE, name + ": qOK");
    checks.that(data.array->pvData == elements, name + ": data used in place");
    const auto wanted = expected.numbers(name + ".result");
    VARTYPE type = VT_EMPTY;
    LONG bounds[4] = {};
    if (!checks.that(result.array != nullptr && SafeArrayGetDim(result.array) == 2,
                     name + ": a two-dimensional result")) {
      continue;
    }
    SafeArrayGetVartype(result.array, &type);
    SafeArrayGetLBound(result.array, 1, &bounds[0]);
    SafeArrayGetUBound(result.array, 1, &bounds[1]);
    SafeArrayGetLBound(result.array, 2, &bounds[2]);
    SafeArrayGetUBound(result.array, 2, &bounds[3]);
    checks.that(type == VT_R4 && bounds[0] == 1 && bounds[2] == 1 &&
                    bounds[1] == static_cast<LONG>(wanted.size() / columns) &&
                    bounds[3] == static_cast<LONG>(columns),
                name + ": Singles, rows and columns from 1");
    for (std::size_t i = 0; i < wanted.size(); ++i) {
      const auto row = static_cast<LONG>(1 + i / columns);
      const auto column = static_cast<LONG>(1 + i % columns);
      checks.number(result.at(row, column), wanted[i],
                    name + "(" + std::to_string(row) + ", " + std::to_string(column) + ")");
    }
  }
}

void regression_cases(const Expected& expected) {
  Holder<_ztRegression> regression;
  checks.result(create(CLSID_ztRegression, regression), S_OK, "create ztRegression");
  for (const std::string& name : expected.words("regression.cases")) {
    Text type(expected.word(name + ".type"));
    Text read;
    HostArray x(expected.numbers(name + ".x"), 1);
    HostArray y(expected.numbers(name + ".y"), 1);
    VARIANT_BOOL ok = VARIANT_FALSE;
    regression->put_RegressionType(type.text);
    regression->get_RegressionType(&read.text);
    checks.that(read.ascii() == expected.word(name + ".read"), name + ": the type");
    checks.result(regression->Regression(&x.array, &y.array, &x.array, &ok), S_OK, name);
    checks.that(ok == VARIANT_TRUE, name + ": qOK");
    float got[3] = {NAN, NAN, NAN};
    regression->get_A(&got[0]);
    regression->get_B(&got[1]);
    regression->get_R(&got[2]);
    const auto wanted = expected.numbers(name + ".result");
    for (std::size_t i = 0; i < 3; ++i) {
      checks.number(static_cast<double>(got[i]), wanted.at(i), name + " result");
    }
  }
}

void derivative_cases(const Expected& expected) {
  Holder<_ztDifferentiate> differentiate;
  checks.result(create(CLSID_ztDifferentiate, differentiate), S_OK, "create ztDifferentiate");
  for (const std::string& name : expected.words("derivative.cases")) {
    HostArray x(expected.numbers(name + ".x"), 1, 0, VT_R8);
    HostArray y(expected.numbers(name + ".y"), 1, 0, VT_R8);
    HostArray first(expected.numbers(name + ".y"), 1, 0, VT_R8);
    HostArray second;
    VARIANT_BOOL ok = VARIANT_FALSE;
    const void* elements = first.array->pvData;
    checks.result(differentiate->FirstDerivative(&x.array, &y.array, &first.array, &ok), S_OK,
                  name);
    checks.that(ok == VARIANT_TRUE && first.array->pvData == elements, name + ": in place");
    checks.result(differentiate->SecondDerivative(&x.array, &y.array, &second.array, &ok), S_OK,
                  name);
    checks.that(ok == VARIANT_TRUE, name + ": second");
    const auto firsts = expected.numbers(name + ".first");
    const auto seconds = expected.numbers(name + ".second");
    for (std::size_t i = 0; i < firsts.size(); ++i) {
      checks.number(static_cast<const double*>(first.array->pvData)[i], firsts[i], name + " first");
      checks.number(static_cast<const double*>(second.array->pvData)[i], seconds.at(i),
                    name + " second");
    }
  }
}

void petroleum_cases(const Expected& expected) {
  Holder<_ztPetroleum> petroleum;
  checks.result(create(CLSID_ztPetroleum, petroleum), S_OK, "create ztPetroleum");
  HostArray primary(expected.numbers("live.primary"), 1);
  HostArray map(expected.numbers("live.map"), 1, 0, VT_I4);
  HostArray secondary(expected.numbers("live.secondary"), 1);
  HostArray value(expected.numbers("live.value"), 1);
  LONG curves = 2;
  LONG entries = 7;
  float null = 0;
  const auto points = expected.numbers("live.points");
  const auto factors = expected.numbers("live.factors");
  for (std::size_t i = 0; i < factors.size(); ++i) {
    auto x = static_cast<float>(points.at(2 * i));
    auto y = static_cast<float>(points.at(2 * i + 1));
    float b = NAN;
    VARIANT_BOOL ok = VARIANT_FALSE;
    checks.result(
        petroleum->GetVolumeCorrectionLive(&primary.array, &map.array, &curves, &secondary.array,
                                           &value.array, &entries, &x, &y, &null, &b, &ok),
        S_OK, "live oil");
    checks.that(ok == VARIANT_TRUE, "live oil: qOK");
    checks.number(static_cast<double>(b), factors[i], "live oil " + std::to_string(i));
  }
}

void mathlib_cases(const Expected& expected) {
  Holder<_ztMathLib> functions;
  checks.result(create(CLSID_ztMathLib, functions), S_OK, "create ztMathLib");
  const auto one = [&](const char* name,
                       HRESULT (STDMETHODCALLTYPE _ztMathLib::*member)(double, double*)) {
    const auto& words = expected.words(name);
    double got = NAN;
    checks.result((functions.get()->*member)(std::stod(words.at(1)), &got), S_OK, name);
    checks.number(got, std::stod(words.at(2)), name);
  };
  one("erf.call", &_ztMathLib::Erf);
  one("half.call", &_ztMathLib::Gamma);
  one("logamma.call", &_ztMathLib::LoGamma);
  one("y1.call", &_ztMathLib::y1);
  one("k1.call", &_ztMathLib::K1);
  one("root.call", &_ztMathLib::Cube_Root);
  one("ln.call", &_ztMathLib::Ln);
  const auto& words = expected.words("jbn.call");
  double got = NAN;
  checks.result(functions->Jbn(std::stoi(words.at(1)), std::stod(words.at(2)), &got), S_OK, "Jbn");
  checks.number(got, std::stod(words.at(3)), "Jbn");
}

void cell_cases(const Expected& expected) {
  Holder<_ztMathLib> functions;
  create(CLSID_ztMathLib, functions);
  HostArray top(expected.numbers("cell.top"), 1, 4);
  HostArray bottom(expected.numbers("cell.bottom"), 1, 4);
  HostArray xs(expected.numbers("cell.x"), 1);
  HostArray ys(expected.numbers("cell.y"), 1);
  HostArray zs(expected.numbers("cell.z"), 1);
  HostArray index;
  HostArray flags;
  LONG count = -1;
  VARIANT_BOOL ok = 0x5555;
  checks.result(
      functions->Points_In_CubeIndex(&xs.array, &ys.array, &zs.array, &top.array, &bottom.array,
                                     &count, &index.array, &flags.array, &ok),
      S_OK, "cell");
  const auto wanted = expected.numbers("cell.inside");
  const auto numbers = expected.numbers("cell.index");
  VARTYPE types[2] = {};
  if (checks.that(ok == VARIANT_TRUE && index.array != nullptr && flags.array != nullptr, "cell")) {
    SafeArrayGetVartype(index.array, &types[0]);
    SafeArrayGetVartype(flags.array, &types[1]);
  }
  checks.that(types[0] == VT_I4 && types[1] == VT_BOOL, "Longs and Booleans");
  checks.that(count == static_cast<LONG>(numbers.size()), "cell: how many are inside");
  for (std::size_t i = 0; types[0] == VT_I4 && i < numbers.size(); ++i) {
    auto at = static_cast<LONG>(i + 1);
    LONG number = -1;
    SafeArrayGetElement(index.array, &at, &number);
    checks.number(number, numbers[i], "cell.index");
  }
  for (std::size_t i = 0; types[1] == VT_BOOL && i < wanted.size(); ++i) {
    auto at = static_cast<LONG>(i + 1);
    VARIANT_BOOL flag = 0x5555;
    SafeArrayGetElement(flags.array, &at, &flag);
    checks.that(flag == (wanted[i] == 1.0 ? VARIANT_TRUE : VARIANT_FALSE), "cell.inside");
  }
  for (const std::string& name : expected.words("crossing.cases")) {
    const auto s = expected.numbers(name + ".segment");
    HostArray x({s.at(0), s.at(3)}, 1);
    HostArray y({s.at(1), s.at(4)}, 1);
    HostArray z({s.at(2), s.at(5)}, 1);
    HostArray found;
    VARIANT_BOOL meets = 0x5555;
    checks.result(functions->Line_Through_Cube(&x.array, &y.array, &z.array, &top.array,
                                               &bottom.array, &meets, &found.array, &ok),
                  S_OK, name);
    const bool crosses = expected.has(name + ".crossings");
    checks.that(ok == VARIANT_TRUE && meets == (crosses ? VARIANT_TRUE : VARIANT_FALSE), name);
    checks.that((found.array != nullptr) == crosses, name + ": crossings");
    const auto points = crosses ? expected.numbers(name + ".crossings") : std::vector<double>{};
    const auto m = static_cast<LONG>(points.size() / 3);
    LONG last = 0;
    if (found.array != nullptr) SafeArrayGetUBound(found.array, 2, &last);
    checks.that(last == m, name + ": number of crossings");
    for (LONG i = 0; last == m && i < 3 * m; ++i) {
      checks.number(found.at(1 + i / m, 1 + i % m), points[static_cast<std::size_t>(i)], name);
    }
  }
}

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

template <class F>
F exported(const char* name) {
  return reinterpret_cast<F>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA("vqmath63.dll"), name)));
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

void version_by_vtable() {
  Holder<_ztAnalyseInfo> info;
  create(CLSID_ztAnalyseInfo, info);
  Text version;
  checks.result(info->get_DLLVersion(nullptr, nullptr, nullptr, &version.text), S_OK,
                "all arguments missing");
  Text log;
  VARIANT_BOOL to_log = VARIANT_FALSE;
  Text again;
  checks.result(info->get_DLLVersion(&log.text, nullptr, &to_log, &again.text), S_OK,
                "some missing");
  checks.that(log.ascii() == "vqmath63.txt", "the log name is written back");
  checks.that(again.ascii() == version.ascii(), "the same version text");
  checks.that(version.ascii().rfind("vqmath63 v6.3.2436 ", 0) == 0, version.ascii());
  checks.that(version.ascii().find("Unknown Date") == std::string::npos, "a true date");
  checks.result(info->CloseDown(), S_OK, "CloseDown");
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
  if (count != 2 && count != 3) return 2;
  if (count == 3) use_manifest(words[2]);
  CoInitialize(nullptr);
  const Expected expected(words[1]);
  integral_cases(expected);
  accumulate_cases(expected);
  regression_cases(expected);
  derivative_cases(expected);
  petroleum_cases(expected);
  mathlib_cases(expected);
  cell_cases(expected);
  arrays_and_errors();
  exported_functions();
  floating_point_state();
  version_by_vtable();
  CoUninitialize();
  return checks.close();
}
