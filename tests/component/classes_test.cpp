// The classes as hosts use them: by name and through the dual interfaces.
#include <cmath>
#include <limits>

#include "component_host.hpp"

namespace vqmath63::component::test {
namespace {

using namespace automation::system::test;
using namespace automation::test;

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
