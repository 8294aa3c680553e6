// Conversions between variant types: values, roundings, refusals, references, default values.
#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <random>

#include "system_fakes.hpp"

namespace vqmath63::automation::system::test {
namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr HRESULT kOverflow = DISP_E_OVERFLOW;
constexpr HRESULT kMismatch = DISP_E_TYPEMISMATCH;

Value changed(const Value& from, VARTYPE to) {
  Value made;
  EXPECT_EQ(VariantChangeType(&made.v, &from.v, 0, to), S_OK) << shown(from.v) << " to " << to;
  return made;
}

// Into another variable and in place.
void expect_change(const Value& from, const Value& want) {
  const std::string name = shown(from.v) + " to " + shown(want.v);
  Value made = text(u"old"), in_place(from);
  EXPECT_EQ(VariantChangeType(&made.v, &from.v, 0, want.v.vt), S_OK) << name;
  EXPECT_EQ(shown(made.v), shown(want.v)) << name;
  EXPECT_EQ(VariantChangeType(&in_place.v, &in_place.v, 0, want.v.vt), S_OK) << name;
  EXPECT_EQ(shown(in_place.v), shown(want.v)) << name << ", in place";
}

// The destination stays as it was, another one and in place.
void expect_refusal(const Value& from, VARTYPE to, HRESULT want) {
  const std::string name = shown(from.v) + " to " + std::to_string(to);
  Value made = text(u"old"), in_place(from);
  EXPECT_EQ(VariantChangeType(&made.v, &from.v, 0, to), want) << name;
  EXPECT_EQ(shown(made.v), shown(text(u"old").v)) << name;
  EXPECT_EQ(VariantChangeType(&in_place.v, &in_place.v, 0, to), want) << name;
  EXPECT_EQ(shown(in_place.v), shown(from.v)) << name << ", in place";
}

TEST(SystemChangeType, EveryIntegerTypeHasItsRange) {
  const struct {
    VARTYPE vt;
    const char16_t *below, *least, *most, *above;
  } rows[] = {
      {VT_I1, u"-129", u"-128", u"127", u"128"},
      {VT_I2, u"-32769", u"-32768", u"32767", u"32768"},
      {VT_I4, u"-2147483649", u"-2147483648", u"2147483647", u"2147483648"},
      {VT_INT, u"-2147483649", u"-2147483648", u"2147483647", u"2147483648"},
      {VT_I8, u"-9223372036854780000", u"-9223372036854775808", u"9223372036854775807",
       u"9223372036854775808"},
      {VT_UI1, u"-1", u"0", u"255", u"256"},
      {VT_UI2, u"-1", u"0", u"65535", u"65536"},
      {VT_UI4, u"-1", u"0", u"4294967295", u"4294967296"},
      {VT_UINT, u"-1", u"0", u"4294967295", u"4294967296"},
      {VT_UI8, u"-1", u"0", u"18446744073709551615", u"18446744073709551616"},
  };
  for (const auto& row : rows) {
    const Value least = changed(text(row.least), row.vt), most = changed(text(row.most), row.vt);
    expect_change(least, text(row.least));
    expect_change(most, text(row.most));
    expect_refusal(text(row.below), row.vt, kOverflow);
    expect_refusal(text(row.above), row.vt, kOverflow);
    // Half a step outside is the first real number that rounds away, where it is one at all.
    const double low = changed(least, VT_R8).v.dblVal - 0.5;
    const double high = changed(most, VT_R8).v.dblVal + 0.5;
    expect_change(r8(low), least);
    changed(r8(std::nextafter(high, 0)), row.vt);
    for (const double out : {std::nextafter(low, -kInfinity), high, -kInfinity, kNaN}) {
      expect_refusal(r8(out), row.vt, kOverflow);
    }
  }
  expect_change(r8(0x1.fffffffffffffp62), i8(9223372036854774784));
  expect_change(r8(0x1.fffffffffffffp63), ui8(18446744073709549568u));
  expect_change(r8(127.25), i1(127));
}

TEST(SystemChangeType, ValuesConvertToTheTypeAskedFor) {
  const Value yes = boolean(true), no = boolean(false), all = ui8(~0ULL);
  constexpr LONGLONG kMost = std::numeric_limits<LONGLONG>::max();
  const struct {
    Value want;
    std::vector<Value> from;
  } rows[] = {
      // Half to even, both signs.
      {i4(0), {r8(0.5), r8(-0.5), r8(std::nextafter(0.5, 0)), empty()}},
      {i4(1), {r8(std::nextafter(0.5, 1)), text(u"1")}},
      {i4(2), {r8(1.5), r8(2.5), currency(25000), text(u"2.5")}},
      {i4(-2), {r8(-1.5), r8(-2.5), currency(-15000), currency(-24999)}},
      {i4(3), {currency(25001), text(u" \t3 \r\n"), text(u"\u00A03\u00A0")}},
      {i4(4), {r4(3.5F), date(4.5)}},
      {i2(1500), {text(u"1.5E3")}},
      // True has all its bits set, whatever the type.
      {i4(-1), {yes}},
      {ui1(255), {yes, text(u"+255")}},
      {all, {yes, text(u"+18446744073709551615")}},
      {yes, {i4(-1), r8(0.25), all, text(u"True")}},
      {no, {r8(-0.0), text(u" FALSE "), text(u"0.0"), empty()}},
      {r4(0.1F), {r8(0.1), text(u"0.1")}},
      {r4(0x1.fffffep127F), {r8(0x1.fffffefffffffp127)}},
      {r4(NAN), {r8(kNaN)}},
      {r4(0), {text(u"1e-60")}},
      {r4(0x1.000002p0F), {text(u"1.00000017881393432617187499")}},  // of one rounding
      {r8(0x1.99999ap-4), {r4(0.1F)}},
      {r8(0x1p53), {i8((1LL << 53) + 1)}},
      {r8(0x1p64), {all}},
      {r8(-1.25), {currency(-12500), date(-1.25), text(u"-125e-2")}},
      {r8(0.5), {text(u".5")}},
      {r8(-5), {text(u"-5.")}},
      {r8(0), {text(u"1e-400"), text(u"0e99999")}},
      {r8(-0.0), {text(u"-1e-99999999999999999999")}},
      {r8(1),
       {text(u"0" + std::u16string(500, u'0') + u"1"),
        text(u"0." + std::u16string(400, u'0') + u"1e401")}},
      {currency(2), {r8(0.00025)}},
      {currency(10001), {text(u"1.00006")}},
      {currency(12000000), {i4(1200), text(u"12e2"), text(u"+1200.")}},
      {currency(9223372036854770000), {i8(922337203685477)}},
      {currency(kMost), {text(u"922337203685477.5807")}},
      {currency(-kMost - 1), {text(u"-922337203685477.5808")}},
      {date(-1.25), {currency(-12500), text(u"-1.25"), text(u"1899-12-29 06:00")}},
      {date(36526.25), {text(u" 2000-01-01T06:00 "), r8(36526.25)}},
      // Numbers as text: shortest, and fixed from 0.0001 up to 15 digits, of a Single 7.
      {text(u"0.1"), {r8(0.1), r4(0.1F), currency(1000)}},
      {text(u"0.30000000000000004"), {r8(0.1 + 0.2)}},
      {text(u"100000"), {r8(100000)}},
      {text(u"999999999999999"), {r8(999999999999999)}},
      {text(u"1E+15"), {r8(1e15)}},
      {text(u"0.0001"), {r8(0.0001), currency(1)}},
      {text(u"5E-05"), {r8(0.00005)}},
      {text(u"1234567"), {r4(1234567)}},
      {text(u"1E+07"), {r4(1e7F)}},
      {text(u"1.7976931348623157E+308"), {r8(std::numeric_limits<double>::max())}},
      {text(u"5E-324"), {r8(5e-324)}},
      {text(u"-0"), {r8(-0.0)}},
      {text(u"NaN"), {r8(-kNaN)}},
      {text(u"-inf"), {r8(-kInfinity)}},
      {text(u"-120.5"), {currency(-1205000)}},
      {text(u"-922337203685477.5808"), {currency(-kMost - 1)}},
      {text(u"True"), {yes}},
      {text(u"False"), {no}},
      {text(u""), {empty()}},
  };
  for (const auto& row : rows) {
    for (const Value& from : row.from) expect_change(from, row.want);
  }
}

TEST(SystemChangeType, DatesAreWrittenAndRead) {
  const struct {
    double date;
    const char16_t* text;
    double back;
  } rows[] = {
      {0, u"1899-12-30", 0},
      {36585, u"2000-02-29", 36585},
      {36526.75, u"2000-01-01 18:00:00", 36526.75},
      {2.0 + 3661.0 / 86400, u"1900-01-01 01:01:01", 2.0 + 3661.0 / 86400},
      // Before day zero the time runs forward; the minus of a time alone is lost.
      {-1.25, u"1899-12-29 06:00:00", -1.25},
      {-0.25, u"1899-12-30 06:00:00", 0.25},
      // To the second, which may be midnight.
      {36525.9999999, u"2000-01-01", 36526},
      {-1.9999999, u"1899-12-30", 0},
      {-657434, u"0100-01-01", -657434},
      {2958465.9999999, u"9999-12-31 23:59:59", 2958465 + 86399 / 86400.0},
  };
  for (const auto& row : rows) {
    expect_change(date(row.date), text(row.text));
    expect_change(text(row.text), date(row.back));
  }
}

TEST(SystemChangeType, WhatDoesNotConvertLeavesTheDestinationAlone) {
  const std::u16string_view no_numbers[] = {
      u"Sw", u"",    u"  ",  u"-",    u".",    u"+-5",   u"1.2.3",        u"1 2",   {u"1\0", 2},
      u"1e", u"1,5", u"inf", u"-nan", u"0x10", u"Truer", u"\uFF11\uFF12", u"\u0131"};
  for (const std::u16string_view word : no_numbers) {
    for (const VARTYPE to : {VT_R4, VT_R8, VT_I4, VT_CY, VT_BOOL, VT_DATE}) {
      expect_refusal(text(word), to, kMismatch);
    }
  }
  const struct {
    VARTYPE to;
    HRESULT want;
    std::vector<Value> from;
  } rows[] = {
      {VT_R4, kOverflow, {r8(0x1.ffffffp127), r8(kInfinity), text(u"-4e38")}},
      {VT_R8,
       kOverflow,
       {text(u"1e309"), text(u"0.001e99999999999999999999"), text(std::u16string(400, u'9'))}},
      {VT_CY,
       kOverflow,
       {r8(kNaN), r8(1e15), ui8(~0ULL), i8(922337203685478), i8(-922337203685478),
        text(u"922337203685477.5808")}},
      {VT_DATE, kOverflow, {r8(kNaN), i4(2958466), r8(-657435), text(u"3e6")}},
      {VT_BSTR, kOverflow, {date(kNaN), date(2958466)}},
      {VT_DATE,
       kMismatch,
       {text(u"1900-02-29"), text(u"2000-13-01"), text(u"2000-01-00"), text(u"0099-12-31"),
        text(u"2000-1-01"), text(u"2000-01-01 24:00"), text(u"2000-01-01 00:00:60"),
        text(u"2000-01-01 10"), text(u"2000-01-01 10:00:00x")}},
      {VT_I4, kMismatch, {null(), error(5)}},
      {VT_R8, kMismatch, {text(u"2000-01-01")}},
      {VT_BSTR, kMismatch, {null(), error(5)}},
      {VT_EMPTY, kMismatch, {i4(0)}},
      {VT_NULL, kMismatch, {i4(0)}},
      {VT_ERROR, kMismatch, {i4(5)}},
      {VT_DISPATCH, kMismatch, {i4(5), text(u"5")}},
      {VT_ARRAY | VT_I4, kMismatch, {i4(5)}},
      {VT_BYREF | VT_I4, kMismatch, {i4(5)}},
      {15, DISP_E_BADVARTYPE, {i4(5)}},
      {VT_VARIANT, DISP_E_BADVARTYPE, {i4(5)}},
  };
  for (const auto& row : rows) {
    for (const Value& from : row.from) expect_refusal(from, row.to, row.want);
  }
  VARIANT v{};
  EXPECT_EQ(VariantChangeType(nullptr, &v, 0, VT_I4), E_INVALIDARG);
  EXPECT_EQ(VariantChangeType(&v, nullptr, 0, VT_I4), E_INVALIDARG);
  v.vt = 0x0F0F;
  VARIANT to{};
  EXPECT_EQ(VariantChangeType(&to, &v, 0, VT_I4), DISP_E_BADVARTYPE);
}

TEST(SystemChangeType, TextOfARealNumberReadsBackAsTheSameNumber) {
  std::mt19937_64 random(63);
  int tried = 0;
  for (int i = 0; i < 20000; ++i) {
    const std::uint64_t bits = random();
    Value wide = r8(0), narrow = r4(0);
    std::memcpy(&wide.v.dblVal, &bits, 8);
    std::memcpy(&narrow.v.fltVal, &bits, 4);
    if (!std::isfinite(wide.v.dblVal) || !std::isfinite(narrow.v.fltVal)) continue;
    for (const Value& from : {wide, narrow}) {
      Value through(from);
      ASSERT_EQ(VariantChangeType(&through.v, &through.v, 0, VT_BSTR), S_OK);
      ASSERT_EQ(VariantChangeType(&through.v, &through.v, 0, from.v.vt), S_OK);
      ASSERT_EQ(shown(through.v), shown(from.v));
      ++tried;
    }
  }
  EXPECT_GT(tried, 35000);
}

TEST(SystemChangeType, EveryDateReadsBackFromItsText) {
  int days = 0;
  for (int day = -657434; day <= 2958465; day += 97, ++days) {
    const double time = (days % 86400) / 86400.0;
    const Value from = date(day < 0 ? day - time : day + time);
    Value through(from);
    ASSERT_EQ(VariantChangeType(&through.v, &through.v, 0, VT_BSTR), S_OK) << day;
    ASSERT_EQ(VariantChangeType(&through.v, &through.v, 0, VT_DATE), S_OK) << day;
    ASSERT_EQ(std::trunc(through.v.date), day);
    ASSERT_NEAR(through.v.date, from.v.date, 1e-9) << day;
  }
  EXPECT_EQ(days, 37278);
}

TEST(SystemChangeType, ReferencesAreFollowed) {
  Value words = text(u"2.5");
  VARIANT to_text = reference(VT_BSTR, &words.v.bstrVal);
  VARIANT to_variant = reference(VT_VARIANT, &words.v);
  VARIANT to_reference = reference(VT_VARIANT, &to_text);
  for (const VARIANT* from : {&to_text, &to_variant, &to_reference}) {
    Value made;
    EXPECT_EQ(VariantChangeType(&made.v, from, 0, VT_R8), S_OK);
    EXPECT_EQ(shown(made.v), shown(r8(2.5).v));
    EXPECT_EQ(VariantChangeType(&made.v, from, 0, VT_BSTR), S_OK);
    EXPECT_EQ(shown(made.v), shown(words.v));
    EXPECT_NE(made.v.bstrVal, words.v.bstrVal);
  }
  EXPECT_EQ(VariantChangeType(&to_variant, &to_variant, 0, VT_I4), S_OK) << "in place";
  EXPECT_EQ(shown(to_variant), shown(i4(2).v));
  to_text.pbstrVal = nullptr;
  Value made = i4(1);
  EXPECT_EQ(VariantChangeType(&made.v, &to_text, 0, VT_R8), E_INVALIDARG);
  EXPECT_EQ(shown(made.v), shown(i4(1).v));
}

TEST(SystemChangeType, AnArrayConvertsOnlyToItsOwnType) {
  Value from = bare(VT_ARRAY | VT_R4);
  from.v.parray = SafeArrayCreateVector(VT_R4, 0, 1);
  Value made;
  EXPECT_EQ(VariantChangeType(&made.v, &from.v, 0, VT_ARRAY | VT_R4), S_OK);
  EXPECT_NE(made.v.parray, from.v.parray);
  EXPECT_EQ(VariantChangeType(&made.v, &from.v, 0, VT_ARRAY | VT_R8), kMismatch);
  EXPECT_EQ(VariantChangeType(&made.v, &from.v, 0, VT_R4), kMismatch);
}

TEST(SystemChangeType, AnObjectConvertsThroughItsDefaultValue) {
  CountingObject inner, outer, endless;
  const Value words = text(u"12");
  VariantCopy(&inner.default_value, &words.v);
  endless.default_value = object(endless).v;  // itself, without a reference of its own
  {
    const Value held = object(inner), itself = object(endless);
    VariantCopy(&outer.default_value, &held.v);
    const Value holder = object(outer);
    expect_change(held, i4(12));
    expect_change(holder, r4(12));
    expect_change(holder, words);
    expect_refusal(itself, VT_R8, kMismatch);
    Value made;
    EXPECT_EQ(VariantChangeType(&made.v, &holder.v, VARIANT_NOVALUEPROP, VT_R4), kMismatch);
    outer.default_result = E_ACCESSDENIED;
    expect_refusal(holder, VT_R4, E_ACCESSDENIED);
    for (const VARTYPE kind : {VT_UNKNOWN, VT_DISPATCH, VT_UNKNOWN}) {
      const VARIANT* from = made.v.vt == VT_EMPTY ? &holder.v : &made.v;
      EXPECT_EQ(VariantChangeType(&made.v, from, 0, kind), S_OK);
      EXPECT_EQ(made.v.vt, kind);
      EXPECT_EQ(made.v.punkVal, &outer);
      EXPECT_EQ(outer.references, 2);
    }
    expect_refusal(made, VT_R8, kMismatch);
  }
  expect_refusal(bare(VT_DISPATCH), VT_R8, kMismatch);
  VariantClear(&outer.default_value);
  VariantClear(&inner.default_value);
  for (const CountingObject* one : {&inner, &outer, &endless}) EXPECT_EQ(one->references, 0);
}

TEST(SystemChangeType, TheLocaleOfTheProcessDoesNotMatter) {
  const std::string before = std::setlocale(LC_ALL, nullptr);
  // Where no locale with a decimal comma is installed, this holds the plain one.
  for (const char* name : {"de_DE.UTF-8", "fr_FR.UTF-8", "C"}) {
    std::setlocale(LC_ALL, name);
    Value made;
    const Value number = r8(1234.5);
    EXPECT_EQ(VariantChangeType(&made.v, &number.v, 0, VT_BSTR), S_OK) << name;
    EXPECT_EQ(shown(made.v), shown(text(u"1234.5").v)) << name;
    EXPECT_EQ(VariantChangeTypeEx(&made.v, &made.v, 0x0407, 0, VT_R8), S_OK) << name;
    EXPECT_EQ(shown(made.v), shown(number.v)) << name;
  }
  std::setlocale(LC_ALL, before.c_str());
}

}  // namespace
}  // namespace vqmath63::automation::system::test
