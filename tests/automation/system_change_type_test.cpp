// Conversions between variant types: values, roundings, refusals, references, default values.
#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>
#include <random>

#include "system_fakes.hpp"

namespace vqmath63::automation::system::test {
namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr HRESULT kMismatch = DISP_E_TYPEMISMATCH;

Value changed(const Value& from, VARTYPE to) {
  Value made;
  EXPECT_EQ(VariantChangeType(&made.v, &from.v, 0, to), S_OK) << shown(from.v) << " to " << to;
  return made;
}

// Into another variable and in place, with what these hold afterwards.
void expect(const Value& from, VARTYPE to, HRESULT hr, const Value& other, const Value& own) {
  const std::string name = shown(from.v) + " to " + std::to_string(to);
  Value made = text(u"old"), in_place(from);
  EXPECT_EQ(VariantChangeType(&made.v, &from.v, 0, to), hr) << name;
  EXPECT_EQ(shown(made.v), shown(other.v)) << name;
  EXPECT_EQ(VariantChangeType(&in_place.v, &in_place.v, 0, to), hr) << name;
  EXPECT_EQ(shown(in_place.v), shown(own.v)) << name << ", in place";
}
void expect_change(const Value& from, const Value& want) {
  expect(from, want.v.vt, S_OK, want, want);
}
void expect_refusal(const Value& from, VARTYPE to, HRESULT want) {
  expect(from, to, want, text(u"old"), from);
}

TEST(SystemChangeType, EveryIntegerTypeHasItsRange) {
  each_row("automation.tsv", "ranges", 10, [](const TableRow& row) {
    const VARTYPE vt = type_named(row["type"]);
    const Value least_text = value_of(row["least"]), most_text = value_of(row["most"]);
    const Value least = changed(least_text, vt), most = changed(most_text, vt);
    expect_change(least, least_text);
    expect_change(most, most_text);
    expect_refusal(value_of(row["below"]), vt, DISP_E_OVERFLOW);
    expect_refusal(value_of(row["above"]), vt, DISP_E_OVERFLOW);
    // Half a step outside is the first real number that rounds away, where it is one at all.
    const double low = changed(least, VT_R8).v.dblVal - 0.5;
    const double high = changed(most, VT_R8).v.dblVal + 0.5;
    expect_change(r8(low), least);
    changed(r8(std::nextafter(high, 0)), vt);
    for (const double out : {std::nextafter(low, -kInfinity), high, -kInfinity, kNaN}) {
      expect_refusal(r8(out), vt, DISP_E_OVERFLOW);
    }
  });
}

TEST(SystemChangeType, ValuesConvertToTheTypeAskedFor) {
  each_row("automation.tsv", "changes", 90,
           [](const TableRow& row) { expect_change(value_of(row["from"]), value_of(row["to"])); });
}

TEST(SystemChangeType, DatesAreWrittenAndRead) {
  each_row("automation.tsv", "dates", 10, [](const TableRow& row) {
    expect_change(value_of(row["date"]), value_of(row["text"]));
    expect_change(value_of(row["text"]), value_of(row["back"]));
  });
}

TEST(SystemChangeType, WhatDoesNotConvertLeavesTheDestinationAlone) {
  each_row("automation.tsv", "refusals", 58, [](const TableRow& row) {
    for (const std::string& to : std::vector<std::string>(row["to"])) {
      expect_refusal(value_of(row["from"]), type_named(to), code_of(row["error"]));
    }
  });
  VARIANT v{};
  EXPECT_EQ(VariantChangeType(nullptr, &v, 0, VT_I4), E_INVALIDARG);
  EXPECT_EQ(VariantChangeType(&v, nullptr, 0, VT_I4), E_INVALIDARG);
  v.vt = 0x0F0F;
  VARIANT to{};
  EXPECT_EQ(VariantChangeType(&to, &v, 0, VT_I4), DISP_E_BADVARTYPE);
}

// By way of its text.
void read_back(Value& made) {
  const VARTYPE vt = made.v.vt;
  ASSERT_EQ(VariantChangeType(&made.v, &made.v, 0, VT_BSTR), S_OK);
  ASSERT_EQ(VariantChangeType(&made.v, &made.v, 0, vt), S_OK);
}

TEST(SystemChangeType, NumbersAndDatesReadBackFromTheirText) {
  std::mt19937_64 random(63);
  int tried = 0, days = 0;
  for (int i = 0; i < 20000; ++i) {
    Value wide = r8(std::bit_cast<double>(std::uint64_t{random()})), narrow = r4(0);
    narrow.v.lVal = wide.v.lVal;
    if (!std::isfinite(wide.v.dblVal) || !std::isfinite(narrow.v.fltVal)) continue;
    for (const Value& from : {wide, narrow}) {
      Value through(from);
      read_back(through);
      ASSERT_EQ(shown(through.v), shown(from.v));
      ++tried;
    }
  }
  EXPECT_GT(tried, 35000);
  for (int day = -657434; day <= 2958465; day += 97, ++days) {
    const double time = (days % 86400) / 86400.0, moment = day < 0 ? day - time : day + time;
    Value through = date(moment);
    read_back(through);
    ASSERT_EQ(std::trunc(through.v.date), day);
    ASSERT_NEAR(through.v.date, moment, 1e-9) << day;
  }
}

TEST(SystemChangeType, ReferencesAreFollowed) {
  Value words = text(u"2.5"), made;
  VARIANT to_text = reference(VT_BSTR, &words.v.bstrVal), outer = reference(VT_VARIANT, &to_text);
  for (const VARIANT* from : {&to_text, &outer}) {
    for (const Value& want : {r8(2.5), words}) {
      EXPECT_EQ(VariantChangeType(&made.v, from, 0, want.v.vt), S_OK);
      EXPECT_EQ(shown(made.v), shown(want.v));
      EXPECT_NE(made.v.bstrVal, words.v.bstrVal);
    }
  }
  EXPECT_EQ(VariantChangeType(&outer, &outer, 0, VT_I4), S_OK) << "in place";
  EXPECT_EQ(shown(outer), shown(i4(2).v));
  to_text.pbstrVal = nullptr;
  EXPECT_EQ(VariantChangeType(&made.v, &to_text, 0, VT_R8), E_INVALIDARG);
  EXPECT_EQ(shown(made.v), shown(words.v));
}

TEST(SystemChangeType, AnArrayConvertsOnlyToItsOwnType) {
  Value from = bare(VT_ARRAY | VT_R4), made;
  from.v.parray = SafeArrayCreateVector(VT_R4, 0, 1);
  EXPECT_EQ(VariantChangeType(&made.v, &from.v, 0, VT_ARRAY | VT_R4), S_OK);
  EXPECT_NE(made.v.parray, from.v.parray);
  for (const int to : {VT_ARRAY | VT_R8, +VT_R4}) {
    EXPECT_EQ(VariantChangeType(&made.v, &from.v, 0, static_cast<VARTYPE>(to)), kMismatch);
  }
}

TEST(SystemChangeType, AnObjectConvertsThroughItsDefaultValue) {
  CountingObject inner, outer, endless;
  const Value words = text(u"12");
  {
    const Value held = object(inner), holder = object(outer), itself = object(endless);
    inner.default_value = words.v;  // as these are, without a share of their own
    outer.default_value = held.v;
    endless.default_value = itself.v;
    expect_change(held, i4(12));
    expect_change(holder, r4(12));
    expect_change(holder, words);
    Value made;
    EXPECT_EQ(VariantChangeType(&made.v, &holder.v, VARIANT_NOVALUEPROP, VT_R4), kMismatch);
    outer.default_result = E_ACCESSDENIED;
    expect_refusal(holder, VT_R4, E_ACCESSDENIED);
    for (const VARTYPE kind : {VT_UNKNOWN, VT_DISPATCH, VT_UNKNOWN}) {
      const VARIANT* from = made.v.vt == VT_EMPTY ? &holder.v : &made.v;
      EXPECT_EQ(VariantChangeType(&made.v, from, 0, kind), S_OK);
      EXPECT_TRUE(made.v.vt == kind && made.v.punkVal == &outer);
      EXPECT_EQ(outer.references, 2);
    }
    for (const Value& none : {itself, made, bare(VT_DISPATCH)}) {
      expect_refusal(none, VT_R8, kMismatch);
    }
  }
  for (const VARTYPE kind : {VT_I4, VT_UNKNOWN}) {
    Value variable = object(inner), made;
    inner.let_go = &variable.v;  // whose value lives until it has answered
    EXPECT_EQ(VariantChangeType(&made.v, &variable.v, 0, kind), S_OK);
    EXPECT_EQ(inner.held, 1) << kind;
  }
  for (const CountingObject* one : {&inner, &outer, &endless}) EXPECT_EQ(one->references, 0);
}

}  // namespace
}  // namespace vqmath63::automation::system::test
