// The classes that fit, differentiate and work out factors, functions and geometry, by name.
#include "component_host.hpp"

namespace vqmath63::component::test {
namespace {

using namespace automation::system::test;
using namespace automation::test;

TEST(AnalysisClassesTest, regression_by_name) {
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

TEST(AnalysisClassesTest, derivatives_by_name) {
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

TEST(AnalysisClassesTest, volume_factors_by_name) {
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

TEST(AnalysisClassesTest, functions_by_name) {
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

TEST(AnalysisClassesTest, plane_geometry_by_name) {
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

TEST(AnalysisClassesTest, cells_by_name) {
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

}  // namespace
}  // namespace vqmath63::component::test
