// The classes as hosts use them: by name and through the dual interfaces.
#include <cmath>
#include <limits>

#include "component_host.hpp"

namespace vqmath63::component::test {
namespace {

using namespace automation::system::test;
using namespace automation::test;

const Cases& cases() {
  static const Cases all;
  return all;
}

HRESULT put(IDispatch* object, const char16_t* name, const Value& value) {
  return call(object, name, {value.v}, {}, DISPATCH_PROPERTYPUT).hr;
}

Answer get(IDispatch* object, const char16_t* name, std::vector<VARIANT> sent = {}) {
  return call(object, name, std::move(sent), {}, DISPATCH_PROPERTYGET);
}

// Equal to what the cases promise.
void expect_numbers(const std::vector<double>& got, const std::vector<double>& want,
                    const std::string& name) {
  ASSERT_EQ(got.size(), want.size()) << name;
  for (std::size_t i = 0; i < want.size(); ++i) {
    EXPECT_LE(std::fabs(got[i] - want[i]), 1e-6 * std::fabs(want[i])) << name << " " << i + 1;
  }
}

TEST(ClassesTest, integrals_by_name_and_by_the_vtable) {
  const Instance<IDispatch> late(u"vq140Analyse.ztIntegrate", IID_IDispatch);
  const Instance<IIntegrate> early(u"vq140Analyse.ztIntegrate", IIntegrate::kIid);
  int rows = 0;
  for (const std::string& name : cases().words("integral.cases")) {
    const std::string own = name + ".rules";
    const auto rules = cases().numbers(cases().has(own) ? own : "integral.rules");
    const auto want = cases().numbers(name + ".result");
    ASSERT_EQ(rules.size(), want.size());
    for (std::size_t i = 0; i < rules.size(); ++i, ++rows) {
      auto rule = static_cast<LONG>(rules[i]);
      EXPECT_EQ(put(late.object, u"integrationRULE", i4(rule)), S_OK);
      EXPECT_EQ(early->put_IntegrationRule(&rule), S_OK);
      Value x = array(VT_R4, 1, cases().numbers(name + ".x"));
      Value y = array(VT_R4, 1, cases().numbers(name + ".y"));
      float area = -1;
      EXPECT_EQ(early->Integral(&x.v.parray, &y.v.parray, &area), S_OK);
      EXPECT_FLOAT_EQ(area, static_cast<float>(want[i])) << name << " rule " << rule;
      for (const VARTYPE element : {VT_R4, VT_R8, VT_VARIANT}) {
        const Sent xs(array(element, 1, cases().numbers(name + ".x")), kByRef);
        const Sent ys(array(element, 1, cases().numbers(name + ".y")), kVariant);
        EXPECT_EQ(shown(call(late.object, u"Integral", {xs.variant, ys.variant}).result.v),
                  shown(r4(area).v))
            << name << " rule " << rule;
      }
      EXPECT_EQ(early->get_IntegerationRule(&rule), S_OK);
      EXPECT_EQ(rule, 0);
      EXPECT_EQ(shown(get(late.object, u"IntegerationRule").result.v), shown(i4(0).v));
    }
  }
  EXPECT_GE(rows, 21);
}

TEST(ClassesTest, accumulation_by_name_and_by_the_vtable) {
  int rows = 0;
  for (const std::string& name : cases().words("accumulate.cases")) {
    const auto columns = static_cast<std::size_t>(cases().number(name + ".columns").v.lVal);
    const Value frequency = cases().number(name + ".frequency");
    const Value data_period = cases().word(name + ".data_period");
    const Value period = cases().word(name + ".period");
    const auto numbers = cases().numbers(name + ".data");
    // Six digits tell all that the cases promise.
    const Value want = table(VT_R4, cases().numbers(name + ".result"), columns);
    const Instance<IDispatch> late(u"vq140Analyse.ztAccumulate", IID_IDispatch);
    const Instance<IAccumulate> early(u"vq140Analyse.ztAccumulate", IAccumulate::kIid);
    EXPECT_EQ(put(late.object, u"startdata", cases().date(name + ".start_data")), S_OK);
    EXPECT_EQ(put(late.object, u"STARTDATE", cases().word(name + ".start_date")), S_OK);
    EXPECT_EQ(put(late.object, u"DataPeriod", data_period), S_OK);
    EXPECT_EQ(put(late.object, u"Period", period), S_OK);
    EXPECT_EQ(put(late.object, u"Frequency", frequency), S_OK);
    EXPECT_EQ(early->put_StartData(cases().date(name + ".start_data").v.date), S_OK);
    EXPECT_EQ(early->put_StartDate(cases().date(name + ".start_date").v.date), S_OK);
    EXPECT_EQ(early->put_DataPeriod(data_period.v.bstrVal), S_OK);
    EXPECT_EQ(early->put_Period(period.v.bstrVal), S_OK);
    EXPECT_EQ(early->put_Frequency(frequency.v.lVal), S_OK);
    if (cases().has(name + ".rate")) {
      std::vector<double> flags = cases().numbers(name + ".rate");
      Value rates = array(VT_BOOL, 1, flags);
      EXPECT_EQ(put(late.object, u"RateArray", array(VT_VARIANT, 1, flags)), S_OK);
      EXPECT_EQ(early->put_RateArray(&rates.v.parray), S_OK);
    }
    Value data = table(VT_R4, numbers, columns);
    Value result = table(VT_R4, {7}, 1);
    VARIANT_BOOL ok = VARIANT_FALSE;
    EXPECT_EQ(early->Accumulate(&data.v.parray, &result.v.parray, &ok), S_OK);
    EXPECT_EQ(ok, VARIANT_TRUE) << name;
    EXPECT_EQ(listed(result.v), listed(want.v)) << name;
    const auto by_name = [&](VARTYPE element) {
      const Sent sent(table(element, numbers, columns), kByRef);
      const Sent out(empty(), kVariant);
      const Sent done(boolean(false), kByRef);
      const Answer answer =
          call(late.object, u"Accumulate", {sent.variant, out.variant, done.variant});
      EXPECT_EQ(answer.hr, S_OK) << name;
      EXPECT_EQ(done.variable.v.boolVal, VARIANT_TRUE) << name;
      return listed(out.variable.v);
    };
    for (const VARTYPE element : {VT_R4, VT_R8, VT_VARIANT}) {
      EXPECT_EQ(by_name(element), listed(want.v)) << name;
    }
    // From its second row on, the table begins later.
    EXPECT_EQ(early->put_AccumulateIndex(2), S_OK);
    EXPECT_EQ(put(late.object, u"AccumulateIndex", i4(2)), S_OK);
    EXPECT_EQ(early->Accumulate(&data.v.parray, &result.v.parray, &ok), S_OK);
    EXPECT_EQ(by_name(VT_R4), listed(result.v)) << name;
    EXPECT_NE(listed(result.v), listed(want.v)) << name;
    ++rows;
  }
  EXPECT_GE(rows, 4);
}

TEST(ClassesTest, statistics_by_name) {
  const Instance<IDispatch> object(u"vq140Analyse.ztStatistics", IID_IDispatch);
  constexpr const char16_t* kSummary[] = {u"xBar",    u"xsigman",   u"xSigmaN1", u"SigmaX",
                                          u"SIGMAX2", u"SigmaAbsX", u"xMin",     u"xMax"};
  int rows = 0;
  for (const std::string& name : cases().words("statistics.cases")) {
    const auto x = cases().numbers(name + ".x");
    const auto summary = cases().numbers(name + ".summary");
    const auto measures = cases().numbers(name + ".measures");
    ASSERT_EQ(summary.size(), std::size(kSummary));
    ASSERT_EQ(measures.size(), 5U);
    for (const VARTYPE element : {VT_R4, VT_R8, VT_VARIANT}) {
      const Sent sent(array(element, 1, x), kByRef);
      const Sent ok(boolean(false), kByRef);
      EXPECT_EQ(call(object.object, u"basicSTATISTICS", {sent.variant, ok.variant}).hr, S_OK);
      EXPECT_EQ(ok.variable.v.boolVal, VARIANT_TRUE) << name;
      for (std::size_t i = 0; i < summary.size(); ++i) {
        EXPECT_FLOAT_EQ(get(object.object, kSummary[i]).result.v.fltVal,
                        static_cast<float>(summary[i]))
            << name << " " << i;
      }
      const auto measure = [&](const char16_t* member, std::vector<VARIANT> more = {}) {
        more.insert(more.begin(), sent.variant);
        const Answer answer = call(object.object, member, more);
        EXPECT_EQ(answer.result.v.vt, VT_R4);
        return answer.result.v.fltVal;
      };
      EXPECT_EQ(measure(u"Median"), static_cast<float>(measures[0])) << name;
      EXPECT_EQ(measure(u"Mode"), static_cast<float>(measures[1])) << name;
      for (LONG q = 1; q <= 3; ++q) {
        EXPECT_EQ(measure(u"Quartile", {i4(q).v}),
                  static_cast<float>(measures[static_cast<std::size_t>(q) + 1]))
            << name << " quartile " << q;
      }
      ++rows;
    }
  }
  EXPECT_GE(rows, 12);
}

TEST(ClassesTest, null_removal_by_name) {
  const Instance<IDispatch> object(u"vq140Analyse.ztStatistics", IID_IDispatch);
  int rows = 0;
  for (const std::string& name : cases().words("removal.cases")) {
    const Sent x(array(VT_R8, 1, cases().numbers(name + ".x")), kByRef);
    const Sent kept(empty(), kVariant);
    const Sent count(i4(-1), kByRef);
    const Sent ok(boolean(false), kVariant);
    const Value null = cases().word(name + ".null");
    EXPECT_EQ(call(object.object, u"RemoveNulls",
                   {null.v, x.variant, kept.variant, count.variant, ok.variant})
                  .hr,
              S_OK);
    EXPECT_EQ(shown(ok.variable.v), shown(boolean(true).v)) << name;
    if (cases().has(name + ".result")) {
      const Value want = array(VT_R4, 1, cases().numbers(name + ".result"));
      EXPECT_EQ(listed(kept.variable.v), listed(want.v)) << name;
      EXPECT_EQ(count.variable.v.lVal, static_cast<LONG>(want.v.parray->rgsabound[0].cElements));
    } else {
      EXPECT_EQ(count.variable.v.lVal, 0) << name;
    }
    ++rows;
  }
  EXPECT_GE(rows, 3);
}

TEST(ClassesTest, histograms_by_name) {
  int rows = 0;
  for (const std::string& name : cases().words("sample.cases")) {
    const Instance<IDispatch> object(u"vq140Analyse.ztSample", IID_IDispatch);
    const Sent ok(boolean(false), kByRef);
    if (cases().has(name + ".limits")) {
      const auto limits = cases().numbers(name + ".limits");
      const Value lower = r4(static_cast<float>(limits.at(0)));
      const Value upper = r4(static_cast<float>(limits.at(1)));
      call(object.object, u"setlimits", {lower.v, upper.v, ok.variant});
      EXPECT_EQ(ok.variable.v.boolVal, VARIANT_TRUE) << name;
      call(object.object, u"setlimits", {upper.v, lower.v, ok.variant});
      EXPECT_EQ(ok.variable.v.boolVal, VARIANT_FALSE) << name;
    }
    const Value centres = array(VT_R4, 1, cases().numbers(name + ".centres"));
    const Value counts = array(VT_R4, 1, cases().numbers(name + ".counts"));
    const Sent x(array(VT_VARIANT, 1, cases().numbers(name + ".x")), kByRef);
    const Sent bins(i4(static_cast<LONG>(centres.v.parray->rgsabound[0].cElements)), kByRef);
    const Sent got_centres(array(VT_R4, 0, {7}), kByRef);
    const Sent got_counts(empty(), kVariant);
    EXPECT_EQ(call(object.object, u"BinVector",
                   {x.variant, bins.variant, got_centres.variant, got_counts.variant, ok.variant})
                  .hr,
              S_OK);
    EXPECT_EQ(ok.variable.v.boolVal, VARIANT_TRUE) << name;
    EXPECT_EQ(listed(got_centres.variable.v), listed(centres.v)) << name;
    EXPECT_EQ(listed(got_counts.variable.v), listed(counts.v)) << name;
    ++rows;
  }
  EXPECT_GE(rows, 3);
}

TEST(ClassesTest, regression_by_name) {
  const Instance<IDispatch> object(u"vq140Analyse.ztRegression", IID_IDispatch);
  int rows = 0;
  for (const std::string& name : cases().words("regression.cases")) {
    EXPECT_EQ(put(object.object, u"regressiontype", cases().word(name + ".type")), S_OK);
    EXPECT_EQ(shown(get(object.object, u"RegressionType").result.v),
              shown(cases().word(name + ".read").v));
    const auto x = cases().numbers(name + ".x");
    const Value weights = array(VT_R4, 1, std::vector<double>(x.size(), 1.0));
    const Sent xs(array(VT_R8, 1, x), kByRef);
    const Sent ys(array(VT_VARIANT, 1, cases().numbers(name + ".y")), kVariant);
    const Sent ok(boolean(false), kByRef);
    EXPECT_EQ(
        call(object.object, u"REGRESSION", {xs.variant, ys.variant, weights.v, ok.variant}).hr,
        S_OK);
    EXPECT_EQ(ok.variable.v.boolVal, VARIANT_TRUE) << name;
    const std::vector<double> got{get(object.object, u"A").result.v.fltVal,
                                  get(object.object, u"B").result.v.fltVal,
                                  get(object.object, u"R").result.v.fltVal};
    expect_numbers(got, cases().numbers(name + ".result"), name);
    ++rows;
  }
  EXPECT_GE(rows, 6);
}

TEST(ClassesTest, derivatives_by_name) {
  const Instance<IDispatch> object(u"vq140Analyse.ztDifferentiate", IID_IDispatch);
  const struct {
    const char16_t* member;
    const char* want;
  } members[] = {{u"FirstDerivative", ".first"},
                 {u"firstderivativeforwards", ".forwards"},
                 {u"FirstDerivativeBackwards", ".backwards"},
                 {u"SecondDerivative", ".second"}};
  int rows = 0;
  for (const std::string& name : cases().words("derivative.cases")) {
    const auto x = cases().numbers(name + ".x");
    for (const auto& member : members) {
      for (const VARTYPE element : {VT_R8, VT_R4, VT_VARIANT}) {
        const Sent xs(array(element, 1, x), kByRef);
        const Sent ys(array(element, 1, cases().numbers(name + ".y")), kVariant);
        const Sent out(array(VT_R8, 1, std::vector<double>(x.size(), 7.0)), kByRef);
        const Sent ok(boolean(false), kByRef);
        EXPECT_EQ(
            call(object.object, member.member, {xs.variant, ys.variant, out.variant, ok.variant})
                .hr,
            S_OK);
        EXPECT_EQ(ok.variable.v.boolVal, VARIANT_TRUE) << name << member.want;
        const auto* got = static_cast<const double*>(out.variable.v.parray->pvData);
        ASSERT_EQ(out.variable.v.parray->rgsabound[0].cElements, x.size());
        expect_numbers({got, got + x.size()}, cases().numbers(name + member.want),
                       name + member.want);
        ++rows;
      }
    }
  }
  EXPECT_GE(rows, 24);
}

TEST(ClassesTest, volume_factors_by_name) {
  const Instance<IDispatch> object(u"vq140Analyse.ztPetroleum", IID_IDispatch);
  const auto list = [](const char* name, VARTYPE element = VT_R4) {
    return array(element, 1, cases().numbers(name));
  };
  const auto factor = [&](const char16_t* member, std::vector<VARIANT> sent) {
    const Sent out(empty(), kVariant);
    const Sent ok(boolean(false), kByRef);
    sent.push_back(out.variant);
    sent.push_back(ok.variant);
    EXPECT_EQ(call(object.object, member, std::move(sent)).hr, S_OK);
    EXPECT_EQ(ok.variable.v.boolVal, VARIANT_TRUE);
    EXPECT_EQ(out.variable.v.vt, VT_R4);
    return static_cast<double>(out.variable.v.fltVal);
  };
  const Value primary = list("live.primary"), map = list("live.map", VT_VARIANT);
  const Value secondary = list("live.secondary", VT_R8), value = list("live.value");
  const auto live = cases().numbers("live.points");
  std::vector<double> got;
  for (std::size_t i = 0; i < live.size(); i += 2) {
    const Value x = r4(static_cast<float>(live[i])), y = r4(static_cast<float>(live[i + 1]));
    got.push_back(factor(u"GetVolumeCorrectionLive", {primary.v, map.v, i4(2).v, secondary.v,
                                                      value.v, i4(7).v, x.v, y.v, i4(0).v}));
  }
  expect_numbers(got, cases().numbers("live.factors"), "live");
  got.clear();
  const Value pressure = list("dead.pressure"), dead = list("dead.value", VT_R8);
  for (const double x : cases().numbers("dead.points")) {
    got.push_back(factor(u"getvolumecorrectiondead",
                         {pressure.v, dead.v, i4(3).v, r4(static_cast<float>(x)).v}));
  }
  expect_numbers(got, cases().numbers("dead.factors"), "dead");
  got.clear();
  const auto reference = cases().numbers("water.reference");
  const Value at = array(VT_R4, 1, {reference.at(0)}), b = array(VT_R4, 1, {reference.at(1)});
  const Value compressibility = array(VT_R4, 1, {reference.at(2)});
  for (const double x : cases().numbers("water.points")) {
    got.push_back(factor(u"GetWaterVolumeCorrection",
                         {at.v, b.v, compressibility.v, i4(1).v, r4(static_cast<float>(x)).v}));
  }
  expect_numbers(got, cases().numbers("water.factors"), "water");
}

TEST(ClassesTest, functions_by_name) {
  const Instance<IDispatch> object(u"vq140Analyse.ztMathLib", IID_IDispatch);
  int rows = 0;
  for (const std::string& name : cases().words("mathlib.cases")) {
    const auto words = cases().words(name + ".call");
    std::vector<Value> arguments;
    for (std::size_t i = 1; i + 1 < words.size(); ++i) {
      arguments.push_back(text(std::u16string(words[i].begin(), words[i].end())));
    }
    std::vector<VARIANT> sent;
    for (const Value& argument : arguments) sent.push_back(argument.v);
    const std::u16string member(words[0].begin(), words[0].end());
    const Answer answer = call(object.object, member.c_str(), sent);
    EXPECT_EQ(answer.hr, S_OK) << name;
    ASSERT_EQ(answer.result.v.vt, VT_R8) << name;
    expect_numbers({answer.result.v.dblVal}, {std::stod(words.back())}, name);
    ++rows;
  }
  EXPECT_GE(rows, 19);
}

TEST(ClassesTest, plane_geometry_by_name) {
  const Instance<IDispatch> object(u"vq140Analyse.ztMathLib", IID_IDispatch);
  const auto numbers = [](const std::string& name) { return cases().numbers(name); };
  int rows = 0;
  for (const std::string& name : cases().words("polygon.cases")) {
    const Value x = array(VT_R4, 1, numbers(name + ".x")),
                y = array(VT_R8, 1, numbers(name + ".y"));
    const auto points = numbers(name + ".points");
    const auto inside = numbers(name + ".inside");
    for (std::size_t i = 0; i < inside.size(); ++i, ++rows) {
      const Value x0 = r4(static_cast<float>(points.at(2 * i)));
      const Value y0 = r4(static_cast<float>(points.at(2 * i + 1)));
      const Answer answer = call(object.object, u"point_in_POLYGON", {x0.v, y0.v, x.v, y.v});
      EXPECT_EQ(shown(answer.result.v), shown(boolean(inside[i] == 1.0).v)) << name << i;
    }
  }
  for (const char* kind : {"segments.cases", "levels.cases"}) {
    const bool crossing = kind[0] == 's';
    for (const std::string& name : cases().words(kind)) {
      std::vector<Value> given;
      for (const double n : numbers(name + (crossing ? ".ends" : ".line"))) {
        given.push_back(r4(static_cast<float>(n)));
      }
      std::vector<double> want{0, -7, -7};
      if (cases().has(name + ".result")) want = numbers(name + ".result");
      if (want.size() == 2) want.insert(want.begin(), 1.0);
      const Sent x(r4(-7), kVariant), y(r4(-7), kByRef), ok(empty(), kVariant);
      std::vector<VARIANT> sent;
      for (const Value& value : given) sent.push_back(value.v);
      sent.insert(sent.end(), {x.variant, y.variant, ok.variant});
      EXPECT_EQ(call(object.object, crossing ? u"LineIntersect" : u"GetPointOnLine", sent).hr,
                S_OK);
      EXPECT_EQ(shown(ok.variable.v), shown(boolean(want.at(0) == 1.0).v)) << name;
      expect_numbers({x.variable.v.fltVal, y.variable.v.fltVal}, {want.at(1), want.at(2)}, name);
      ++rows;
    }
  }
  EXPECT_GE(rows, 22);
}

TEST(ClassesTest, cells_by_name) {
  const Instance<IDispatch> object(u"vq140Analyse.ztMathLib", IID_IDispatch);
  const auto numbers = [](const std::string& name) { return cases().numbers(name); };
  const Value want_flags = array(VT_BOOL, 1, numbers("cell.inside"));
  const Value want_index = array(VT_I4, 1, numbers("cell.index"));
  const auto inside = numbers("cell.inside");
  int rows = 0;
  for (const VARTYPE element : {VT_R4, VT_R8, VT_VARIANT}) {
    const Sent top(table(element, numbers("cell.top"), 4), kByRef);
    const Sent bottom(table(element, numbers("cell.bottom"), 4), kVariant);
    const Sent x(array(element, 1, numbers("cell.x")), kByRef);
    const Sent y(array(element, 1, numbers("cell.y")), kByValue);
    const Sent z(array(element, 1, numbers("cell.z")), kVariant);
    const Sent count(empty(), kVariant), index(empty(), kVariant), flags(empty(), kVariant);
    const Sent ok(boolean(false), kByRef);
    EXPECT_EQ(call(object.object, u"Points_In_CubeIndex",
                   {x.variant, y.variant, z.variant, top.variant, bottom.variant, count.variant,
                    index.variant, flags.variant, ok.variant})
                  .hr,
              S_OK);
    EXPECT_EQ(ok.variable.v.boolVal, VARIANT_TRUE);
    EXPECT_EQ(shown(count.variable.v), shown(i4(2).v));
    EXPECT_EQ(listed(index.variable.v), listed(want_index.v));
    EXPECT_EQ(listed(flags.variable.v), listed(want_flags.v));
    for (std::size_t i = 0; i < inside.size(); ++i) {
      const Value at[] = {r4(static_cast<float>(numbers("cell.x").at(i))),
                          r4(static_cast<float>(numbers("cell.y").at(i))),
                          r4(static_cast<float>(numbers("cell.z").at(i)))};
      const Answer answer = call(object.object, u"Point_In_Cube",
                                 {at[0].v, at[1].v, at[2].v, top.variant, bottom.variant});
      EXPECT_EQ(shown(answer.result.v), shown(boolean(inside[i] == 1.0).v)) << i;
    }
    for (const std::string& name : cases().words("crossing.cases")) {
      const auto s = numbers(name + ".segment");
      const bool meets = cases().has(name + ".crossings");
      const Value ends[] = {array(element, 1, {s.at(0), s.at(3)}),
                            array(element, 1, {s.at(1), s.at(4)}),
                            array(element, 1, {s.at(2), s.at(5)})};
      const Sent met(boolean(!meets), kByRef), points(empty(), kVariant);
      EXPECT_EQ(call(object.object, u"LINE_through_cube",
                     {ends[0].v, ends[1].v, ends[2].v, top.variant, bottom.variant, met.variant,
                      points.variant, ok.variant})
                    .hr,
                S_OK);
      EXPECT_EQ(ok.variable.v.boolVal, VARIANT_TRUE) << name;
      EXPECT_EQ(shown(met.variable.v), shown(boolean(meets).v)) << name;
      const auto want = meets ? numbers(name + ".crossings") : std::vector<double>{};
      EXPECT_EQ(listed(points.variable.v),
                meets ? listed(table(VT_R4, want, want.size() / 3).v) : "none")
          << name;
      ++rows;
    }
  }
  EXPECT_GE(rows, 9);
}

TEST(ClassesTest, bad_samples_by_name) {
  const Instance<IDispatch> object(u"vq140Analyse.ztStatistics", IID_IDispatch);
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double infinity = std::numeric_limits<double>::infinity();
  const Value good = array(VT_R4, 1, {1, 3});
  const struct {
    const char* name;
    Value x;
    bool ok;
  } rows[] = {{"a good summary first", good, true},
              {"nothing but element 0", array(VT_R4, 0, {7}), false},
              {"empty", array(VT_R4, 1, {}), false},
              {"a sum beyond Single", array(VT_R8, 1, {3e38, 3e38}), false},
              {"indices from 2", array(VT_R4, 2, {1, 3}), false}};
  for (const auto& row : rows) {
    const Sent x(row.x, kByRef);
    const Sent ok(boolean(!row.ok), kVariant);
    EXPECT_EQ(call(object.object, u"Statistics", {x.variant, ok.variant}).hr, S_OK) << row.name;
    EXPECT_EQ(shown(ok.variable.v), shown(boolean(row.ok).v)) << row.name;
    EXPECT_EQ(shown(get(object.object, u"xBar").result.v), shown(r4(2).v)) << row.name;
    EXPECT_EQ(shown(get(object.object, u"xMedian").result.v), shown(r4(2).v)) << row.name;
  }
  const auto of = [&](const char16_t* member, const Value& x) {
    return call(object.object, member, {x.v}).result.v.fltVal;
  };
  EXPECT_EQ(of(u"Median", array(VT_R8, 0, {0, 3, nan, 1})), 3.0F);
  EXPECT_EQ(of(u"Maximum", array(VT_R8, 1, {3, infinity, 1})), static_cast<float>(infinity));
  const Value shorter = array(VT_R4, 1, {1});
  EXPECT_EQ(shown(call(object.object, u"SumOfXY", {good.v, shorter.v}).result.v), shown(r4(0).v));
  const Sent x(good, kByRef);
  const Sent y(good, kByRef);
  const Sent left(i4(-1), kByRef);
  const Sent ok(boolean(true), kByRef);
  const Value mask = array(VT_BOOL, 1, {1});
  EXPECT_EQ(
      call(object.object, u"MaskValuesXY", {mask.v, x.variant, y.variant, left.variant, ok.variant})
          .hr,
      S_OK);
  EXPECT_EQ(ok.variable.v.boolVal, VARIANT_FALSE);
  EXPECT_EQ(listed(y.variable.v), listed(good.v));
}

TEST(ClassesTest, settings_read_back_through_both_roads) {
  const Instance<IAccumulate> early(u"vq140Analyse.ztAccumulate", IAccumulate::kIid);
  const Value quarter = text(u"Quarter");
  EXPECT_EQ(early->put_StartDate(40000.25), S_OK);
  EXPECT_EQ(early->put_Silent(VARIANT_TRUE), S_OK);
  EXPECT_EQ(early->put_Frequency(7), S_OK);
  EXPECT_EQ(early->put_Rates(VARIANT_FALSE), S_OK);
  EXPECT_EQ(early->put_Period(quarter.v.bstrVal), S_OK);
  EXPECT_EQ(early->put_StartData(-1.75), S_OK);
  EXPECT_EQ(early->put_ProductionProfile(VARIANT_TRUE), S_OK);
  Value read[5];
  EXPECT_EQ(early->get_StartData(&read[0].v.date), S_OK);
  EXPECT_EQ(early->get_StartDate(&read[1].v.date), S_OK);
  EXPECT_EQ(early->get_Frequency(&read[2].v.lVal), S_OK);
  EXPECT_EQ(early->get_Rates(&read[3].v.boolVal), S_OK);
  EXPECT_EQ(early->get_Period(&read[4].v.bstrVal), S_OK);
  const struct {
    const char16_t* name;
    Value want;
  } rows[] = {{u"STARTDATA", date(-1.75)},
              {u"startdate", date(40000.25)},
              {u"Frequency", i4(7)},
              {u"Rates", boolean(false)},
              {u"Period", quarter}};
  for (int i = 0; i < 5; ++i) {
    read[i].v.vt = rows[i].want.v.vt;
    EXPECT_EQ(shown(read[i].v), shown(rows[i].want.v));
    EXPECT_EQ(shown(get(early.object, rows[i].name).result.v), shown(rows[i].want.v));
  }
  for (const char16_t* name : {u"Silent", u"RateArray", u"DataPeriod", u"ProductionProfile"}) {
    EXPECT_EQ(get(early.object, name).hr, DISP_E_MEMBERNOTFOUND);
  }
}

TEST(ClassesTest, a_trapped_error_is_a_line_and_no_failure) {
  Lines lines;
  const Instance<IIntegrate> integrate(u"vq140Analyse.ztIntegrate", IIntegrate::kIid);
  Value x = array(VT_R4, 1, {0, 1, 2});
  Value y = array(VT_R4, 1, {0, 1});
  float area = -1;
  EXPECT_EQ(integrate->Integral(&x.v.parray, &y.v.parray, &area), S_OK);
  EXPECT_EQ(error_words(), u"");
  EXPECT_EQ(shown(call(integrate.object, u"Integral", {x.v, y.v}).result.v), shown(r4(area).v));
  const Instance<IDispatch> accumulate(u"vq140Analyse.ztAccumulate", IID_IDispatch);
  const Sent result(table(VT_R4, {1, 2}, 1), kByRef);
  const Sent ok(boolean(true), kVariant);
  EXPECT_EQ(call(accumulate.object, u"Accumulate", {VARIANT{}, result.variant, ok.variant}).hr,
            S_OK);
  EXPECT_EQ(shown(ok.variable.v), shown(boolean(false).v));
  EXPECT_EQ(listed(result.variable.v), "1..2,1..1: 1 2");
  const std::string subscript = "Error:Subscript out of range (No.9) In [ztAnalyse - ";
  EXPECT_EQ(lines.text,
            (std::vector<std::string>{subscript + "Integration (Code) (Trapezoidal)] ",
                                      subscript + "Integration (Code) (Trapezoidal)] ",
                                      subscript + "ztAccumulate (Code) (Accumulate)] "}));
  EXPECT_EQ(lines.close_down, std::vector<bool>(3, false));
}

TEST(ClassesTest, the_version_text_and_the_close_down) {
  Lines lines;
  const Instance<IAnalyseInfo> info(u"vq140Analyse.ztAnalyseInfo", IAnalyseInfo::kIid);
  const Sent file(empty(), kVariant);
  const Answer version = get(info.object, u"dllversion", {file.variant});
  EXPECT_EQ(shown(file.variable.v), shown(text(u"vqmath63.txt").v));
  const std::string words = ascii(characters(version.result.v.bstrVal));
  EXPECT_EQ(words.find("vqmath63 v6.3.2436 "), 0U) << words;
  EXPECT_EQ(lines.text.size(), 0U);
  Value message = text(u"Client");
  Value log, early;
  EXPECT_EQ(info->get_DLLVersion(&log.v.bstrVal, &message.v.bstrVal, nullptr, &early.v.bstrVal),
            S_OK);
  log.v.vt = early.v.vt = VT_BSTR;
  EXPECT_EQ(shown(log.v), shown(file.variable.v));
  EXPECT_EQ(shown(early.v), shown(version.result.v));
  EXPECT_EQ(info->CloseDown(), S_OK);
  EXPECT_EQ(call(info.object, u"CloseDown", {}).hr, S_OK);
  const std::string close = "vqmath63 v6.3.2436 Close Down";
  EXPECT_EQ(lines.text, (std::vector<std::string>{words + " Client: OK", close, close}));
  EXPECT_EQ(lines.close_down, (std::vector<bool>{false, true, true}));
}

}  // namespace
}  // namespace vqmath63::component::test
