#include "early_bound_cases.hpp"

namespace {

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

}  // namespace

void run_early_bound_cases(const Expected& expected) {
  integral_cases(expected);
  accumulate_cases(expected);
  regression_cases(expected);
  derivative_cases(expected);
  petroleum_cases(expected);
  mathlib_cases(expected);
  cell_cases(expected);
}
