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

TEST(SystemChangeType, ValuesConvertToTheTypeAskedFor) {
  struct Row {
    const char* name;
    Value from;
    Value want;
  };
  const Row rows[] = {
      // Half to even, both signs.
      {"0.5", r8(0.5), i4(0)},
      {"1.5", r8(1.5), i4(2)},
      {"2.5", r8(2.5), i4(2)},
      {"-0.5", r8(-0.5), i4(0)},
      {"-1.5", r8(-1.5), i4(-2)},
      {"-2.5", r8(-2.5), i4(-2)},
      {"just above half", r8(std::nextafter(0.5, 1)), i4(1)},
      {"just below half", r8(std::nextafter(0.5, 0)), i4(0)},
      {"half of a single", r4(3.5F), i2(4)},
      {"currency half", currency(25000), i4(2)},
      {"currency minus half", currency(-15000), i4(-2)},
      {"currency above half", currency(25001), i4(3)},
      {"currency minus, below half", currency(-24999), i4(-2)},
      {"text half", text(u"2.5"), i4(2)},
      // The last values that fit.
      {"I1 low", r8(-128.5), i1(-128)},
      {"I1 high", r8(127.25), i1(127)},
      {"I2 high", r8(32767.499), i2(32767)},
      {"I2 low", r8(-32768.5), i2(-32768)},
      {"I4 high", r8(2147483647.25), i4(2147483647)},
      {"I4 low", r8(-2147483648.5), i4(-2147483647 - 1)},
      {"INT", i8(-7), whole(-7)},
      {"I8 low", r8(-0x1p63), i8(std::numeric_limits<LONGLONG>::min())},
      {"I8 high", r8(0x1.fffffffffffffp62), i8(9223372036854774784)},
      {"UI1 high", i4(255), ui1(255)},
      {"UI1 low", r8(-0.5), ui1(0)},
      {"UI2 high", r8(65535.25), ui2(65535)},
      {"UI4 high", i8(4294967295), ui4(4294967295u)},
      {"UINT", i8(4294967295), count(4294967295u)},
      {"UI8 high", r8(0x1.fffffffffffffp63), ui8(18446744073709549568u)},
      {"I4 from UI8", ui8(2147483647), i4(2147483647)},
      // Real numbers.
      {"R4 rounds", r8(0.1), r4(0.1F)},
      {"R4 nearest to the largest", r8(3.4028235677973362e38),
       r4(std::numeric_limits<float>::max())},
      {"R8 from R4", r4(0.1F), r8(0.10000000149011612)},
      {"R8 from I8", i8(9007199254740993), r8(9007199254740992)},
      {"R8 from UI8", ui8(18446744073709551615u), r8(0x1p64)},
      {"R8 from currency", currency(-12345), r8(-1.2345)},
      {"R8 from date", date(-1.25), r8(-1.25)},
      {"NaN stays a real number", r8(kNaN), r4(std::numeric_limits<float>::quiet_NaN())},
      // Currency.
      {"currency rounds half to even", r8(0.00025), currency(2)},
      {"currency from long", i4(-3), currency(-30000)},
      {"currency high", i8(922337203685477), currency(9223372036854770000)},
      {"currency text to the last digit", text(u"922337203685477.5807"),
       currency(9223372036854775807)},
      {"currency text low", text(u"-922337203685477.5808"),
       currency(std::numeric_limits<LONGLONG>::min())},
      {"currency text, many decimals", text(u"1.00006"), currency(10001)},
      {"currency text, exponent", text(u"12e2"), currency(12000000)},
      {"currency text, bare point", text(u"+.5"), currency(5000)},
      // Truth.
      {"True is -1", boolean(true), i4(-1)},
      {"True as byte", boolean(true), ui1(255)},
      {"True as UI8", boolean(true), ui8(18446744073709551615u)},
      {"True as real", boolean(true), r8(-1)},
      {"-1 is True", i4(-1), boolean(true)},
      {"anything is True", r8(0.25), boolean(true)},
      {"0 is False", r8(-0.0), boolean(false)},
      {"currency is True", currency(1), boolean(true)},
      {"True text", text(u"True"), boolean(true)},
      {"false text", text(u" FALSE "), boolean(false)},
      {"number text", text(u"0.0"), boolean(false)},
      {"odd truth", i2(2), boolean(true)},
      {"True as text", boolean(true), text(u"True")},
      {"False as text", boolean(false), text(u"False")},
      // Nothing.
      {"Empty as number", empty(), r8(0)},
      {"Empty as text", empty(), text(u"")},
      {"Empty as truth", empty(), boolean(false)},
      {"Empty as date", empty(), date(0)},
      // Numbers as text.
      {"long", i4(-2147483647 - 1), text(u"-2147483648")},
      {"UI8", ui8(18446744073709551615u), text(u"18446744073709551615")},
      {"byte", ui1(7), text(u"7")},
      {"R8 shortest", r8(0.1), text(u"0.1")},
      {"R8 sum", r8(0.1 + 0.2), text(u"0.30000000000000004")},
      {"R4 shortest", r4(0.1F), text(u"0.1")},
      {"R8 round", r8(100000), text(u"100000")},
      {"R8 fixed up to here", r8(999999999999999), text(u"999999999999999")},
      {"R8 exponent from here", r8(1e15), text(u"1E+15")},
      {"R8 small fixed", r8(0.0001), text(u"0.0001")},
      {"R8 small exponent", r8(0.00005), text(u"5E-05")},
      {"R4 fixed", r4(1234567.0F), text(u"1234567")},
      {"R4 exponent", r4(1.1e10F), text(u"1.1E+10")},
      {"R8 largest", r8(std::numeric_limits<double>::max()), text(u"1.7976931348623157E+308")},
      {"R8 smallest", r8(5e-324), text(u"5E-324")},
      {"minus zero", r8(-0.0), text(u"-0")},
      {"currency text", currency(-1205000), text(u"-120.5")},
      {"currency text, small", currency(7), text(u"0.0007")},
      {"currency text, low", currency(std::numeric_limits<LONGLONG>::min()),
       text(u"-922337203685477.5808")},
      {"NaN text", r8(-kNaN), text(u"NaN")},
      {"infinite text", r8(-kInfinity), text(u"-inf")},
      // Text as numbers.
      {"blanks", text(u" \t12 \r\n"), i4(12)},
      {"no-break blanks", text(u"\u00A012\u00A0"), i4(12)},
      {"plus", text(u"+12"), ui1(12)},
      {"I8 text to the last digit", text(u"-9223372036854775808"),
       i8(std::numeric_limits<LONGLONG>::min())},
      {"UI8 text to the last digit", text(u"+18446744073709551615"), ui8(18446744073709551615u)},
      {"whole with exponent", text(u"1.5E3"), i2(1500)},
      {"point first", text(u".5"), r8(0.5)},
      {"point last", text(u"-5."), r8(-5)},
      {"single read once", text(u"1.00000017881393432617187499"), r4(0x1.000002p0F)},
      {"too small is zero", text(u"1e-400"), r8(0)},
      {"too small, minus", text(u"-1e-99999999999999999999"), r8(-0.0)},
      {"too small for a single", text(u"1e-60"), r4(0)},
      {"many zeros", text(u"0" + std::u16string(500, u'0') + u"1"), r8(1)},
      {"long fraction", text(u"0." + std::u16string(400, u'0') + u"1e401"), r8(1)},
      {"zero with any exponent", text(u"0e99999"), r8(0)},
      // Dates.
      {"day zero", date(0), text(u"1899-12-30")},
      {"day one", date(1), text(u"1899-12-31")},
      {"leap day", date(36585), text(u"2000-02-29")},
      {"time", date(36526.75), text(u"2000-01-01 18:00:00")},
      {"seconds", date(2.0 + 3661.0 / 86400), text(u"1900-01-01 01:01:01")},
      {"before day zero the time runs forward", date(-1.25), text(u"1899-12-29 06:00:00")},
      {"the minus of a time alone is lost", date(-0.25), text(u"1899-12-30 06:00:00")},
      {"rounded up to midnight", date(36525.9999999), text(u"2000-01-01")},
      {"rounded up before day zero", date(-1.9999999), text(u"1899-12-30")},
      {"first day", date(-657434), text(u"0100-01-01")},
      {"last second", date(2958465.9999999), text(u"9999-12-31 23:59:59")},
      {"date text", text(u"2000-02-29"), date(36585)},
      {"date and time", text(u" 2000-01-01 18:00:00 "), date(36526.75)},
      {"date, T, minutes", text(u"2000-01-01T06:00"), date(36526.25)},
      {"date before day zero", text(u"1899-12-29 06:00:00"), date(-1.25)},
      {"first day text", text(u"0100-01-01"), date(-657434)},
      {"days as text", text(u"36526.5"), date(36526.5)},
      {"date from long", i4(36526), date(36526)},
      {"long from date", date(36526.5), i4(36526)},
      {"date from currency", currency(-12500), date(-1.25)},
  };
  for (const Row& row : rows) {
    Value made = text(u"old");
    EXPECT_EQ(VariantChangeType(&made.v, &row.from.v, 0, row.want.v.vt), S_OK) << row.name;
    EXPECT_EQ(shown(made.v), shown(row.want.v)) << row.name;
    Value in_place(row.from);
    EXPECT_EQ(VariantChangeType(&in_place.v, &in_place.v, 0, row.want.v.vt), S_OK) << row.name;
    EXPECT_EQ(shown(in_place.v), shown(row.want.v)) << row.name << ", in place";
  }
}

TEST(SystemChangeType, WhatDoesNotConvertLeavesTheDestinationAlone) {
  struct Row {
    const char* name;
    Value from;
    VARTYPE to;
    HRESULT want;
  };
  const HRESULT overflow = DISP_E_OVERFLOW;
  const HRESULT mismatch = DISP_E_TYPEMISMATCH;
  const Row rows[] = {
      {"I1", r8(127.5), VT_I1, overflow},
      {"I1 low", i4(-129), VT_I1, overflow},
      {"I2", r8(32767.5), VT_I2, overflow},
      {"I2 low", i4(-32769), VT_I2, overflow},
      {"I4", r8(2147483647.5), VT_I4, overflow},
      {"I4 from UI4", ui4(2147483648u), VT_I4, overflow},
      {"INT", i8(2147483648), VT_INT, overflow},
      {"I8", r8(0x1p63), VT_I8, overflow},
      {"I8 from UI8", ui8(9223372036854775808u), VT_I8, overflow},
      {"I8 text", text(u"9223372036854775808"), VT_I8, overflow},
      {"UI1", i4(256), VT_UI1, overflow},
      {"UI1 low", r8(-0.75), VT_UI1, overflow},
      {"UI2", i4(-1), VT_UI2, overflow},
      {"UI4", i4(-1), VT_UI4, overflow},
      {"UINT", i8(4294967296), VT_UINT, overflow},
      {"UI8", r8(0x1p64), VT_UI8, overflow},
      {"UI8 low", i1(-1), VT_UI8, overflow},
      {"NaN to I2", r8(kNaN), VT_I2, overflow},
      {"NaN to UI8", r8(kNaN), VT_UI8, overflow},
      {"infinity to I8", r8(-kInfinity), VT_I8, overflow},
      {"NaN to currency", r8(kNaN), VT_CY, overflow},
      {"NaN to date", r8(kNaN), VT_DATE, overflow},
      {"R4", r8(3.4028235677973366e38), VT_R4, overflow},
      {"R4 infinity", r8(kInfinity), VT_R4, overflow},
      {"R4 text", text(u"-4e38"), VT_R4, overflow},
      {"R8 text", text(u"1e309"), VT_R8, overflow},
      {"R8 text, vast exponent", text(u"0.001e99999999999999999999"), VT_R8, overflow},
      {"R8 text, long", text(std::u16string(400, u'9')), VT_R8, overflow},
      {"currency", i8(922337203685478), VT_CY, overflow},
      {"currency low", i8(-922337203685478), VT_CY, overflow},
      {"currency from UI8", ui8(18446744073709551615u), VT_CY, overflow},
      {"currency text", text(u"922337203685477.5808"), VT_CY, overflow},
      {"currency real", r8(1e15), VT_CY, overflow},
      {"date", i4(2958466), VT_DATE, overflow},
      {"date low", r8(-657435), VT_DATE, overflow},
      {"date text number", text(u"3e6"), VT_DATE, overflow},
      {"date NaN as text", date(kNaN), VT_BSTR, overflow},
      {"date beyond, as text", date(2958466), VT_BSTR, overflow},
      {"word", text(u"Sw"), VT_R8, mismatch},
      {"no text", text(u""), VT_R8, mismatch},
      {"blanks only", text(u"  "), VT_I4, mismatch},
      {"sign only", text(u"-"), VT_R8, mismatch},
      {"point only", text(u"."), VT_R4, mismatch},
      {"point only, currency", text(u"."), VT_CY, mismatch},
      {"two signs", text(u"+-5"), VT_I4, mismatch},
      {"two points", text(u"1.2.3"), VT_CY, mismatch},
      {"blank within", text(u"1 2"), VT_I4, mismatch},
      {"zero character", text(std::u16string_view(u"1\0", 2)), VT_I4, mismatch},
      {"unfinished exponent", text(u"1e"), VT_R8, mismatch},
      {"decimal comma", text(u"1,5"), VT_R8, mismatch},
      {"word for infinity", text(u"inf"), VT_R8, mismatch},
      {"word for NaN", text(u"-nan"), VT_R4, mismatch},
      {"hexadecimal", text(u"0x10"), VT_I4, mismatch},
      {"wide digits", text(u"\uFF11\uFF12"), VT_I4, mismatch},
      {"low byte of a digit", text(u"\u0131"), VT_I4, mismatch},
      {"truth with more", text(u"Truer"), VT_BOOL, mismatch},
      {"no leap day", text(u"1900-02-29"), VT_DATE, mismatch},
      {"month 13", text(u"2000-13-01"), VT_DATE, mismatch},
      {"day 0", text(u"2000-01-00"), VT_DATE, mismatch},
      {"year 99", text(u"0099-12-31"), VT_DATE, mismatch},
      {"hour 24", text(u"2000-01-01 24:00"), VT_DATE, mismatch},
      {"second 60", text(u"2000-01-01 00:00:60"), VT_DATE, mismatch},
      {"short month", text(u"2000-1-01"), VT_DATE, mismatch},
      {"half a time", text(u"2000-01-01 10"), VT_DATE, mismatch},
      {"time with more", text(u"2000-01-01 10:00:00x"), VT_DATE, mismatch},
      {"date as number", text(u"2000-01-01"), VT_R8, mismatch},
      {"Null as number", null(), VT_I4, mismatch},
      {"Null as text", null(), VT_BSTR, mismatch},
      {"number as Empty", i4(0), VT_EMPTY, mismatch},
      {"number as Null", i4(0), VT_NULL, mismatch},
      {"error as number", error(5), VT_I4, mismatch},
      {"error as text", error(5), VT_BSTR, mismatch},
      {"number as error", i4(5), VT_ERROR, mismatch},
      {"number as object", i4(5), VT_DISPATCH, mismatch},
      {"text as object", text(u"5"), VT_UNKNOWN, mismatch},
      {"number as array", i4(5), VT_ARRAY | VT_I4, mismatch},
      {"to a reference", i4(5), VT_BYREF | VT_I4, mismatch},
      {"to no type", i4(5), 15, DISP_E_BADVARTYPE},
      {"to a variant", i4(5), VT_VARIANT, DISP_E_BADVARTYPE},
  };
  for (const Row& row : rows) {
    Value made = text(u"old");
    EXPECT_EQ(VariantChangeType(&made.v, &row.from.v, 0, row.to), row.want) << row.name;
    EXPECT_EQ(shown(made.v), shown(text(u"old").v)) << row.name;
    Value in_place(row.from);
    EXPECT_EQ(VariantChangeType(&in_place.v, &in_place.v, 0, row.to), row.want) << row.name;
    EXPECT_EQ(shown(in_place.v), shown(row.from.v)) << row.name << ", in place";
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
  VARIANT to_text{};
  to_text.vt = VT_BYREF | VT_BSTR;
  to_text.pbstrVal = &words.v.bstrVal;
  VARIANT to_variant{};
  to_variant.vt = VT_BYREF | VT_VARIANT;
  to_variant.pvarVal = &words.v;
  VARIANT to_reference{};
  to_reference.vt = VT_BYREF | VT_VARIANT;
  to_reference.pvarVal = &to_text;
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
  Value from;
  from.v.vt = VT_ARRAY | VT_R4;
  from.v.parray = SafeArrayCreateVector(VT_R4, 0, 1);
  Value made;
  EXPECT_EQ(VariantChangeType(&made.v, &from.v, 0, VT_ARRAY | VT_R4), S_OK);
  EXPECT_NE(made.v.parray, from.v.parray);
  EXPECT_EQ(VariantChangeType(&made.v, &from.v, 0, VT_ARRAY | VT_R8), DISP_E_TYPEMISMATCH);
  EXPECT_EQ(VariantChangeType(&made.v, &from.v, 0, VT_R4), DISP_E_TYPEMISMATCH);
}

TEST(SystemChangeType, AnObjectConvertsThroughItsDefaultValue) {
  CountingObject inner, outer, endless;
  const Value words = text(u"12");
  VariantCopy(&inner.default_value, &words.v);
  {
    const Value held = object(inner);
    VariantCopy(&outer.default_value, &held.v);
    Value made;
    EXPECT_EQ(VariantChangeType(&made.v, &held.v, 0, VT_I4), S_OK);
    EXPECT_EQ(shown(made.v), shown(i4(12).v));
    const Value holder = object(outer);
    EXPECT_EQ(VariantChangeType(&made.v, &holder.v, 0, VT_R4), S_OK);
    EXPECT_EQ(shown(made.v), shown(r4(12).v));
    Value in_place(holder);
    EXPECT_EQ(VariantChangeType(&in_place.v, &in_place.v, 0, VT_BSTR), S_OK);
    EXPECT_EQ(shown(in_place.v), shown(words.v));

    EXPECT_EQ(VariantChangeType(&made.v, &holder.v, VARIANT_NOVALUEPROP, VT_R4),
              DISP_E_TYPEMISMATCH);
    outer.default_result = E_ACCESSDENIED;
    EXPECT_EQ(VariantChangeType(&made.v, &holder.v, 0, VT_R4), E_ACCESSDENIED);
    EXPECT_EQ(VariantChangeType(&made.v, &holder.v, 0, VT_UNKNOWN), S_OK);
    EXPECT_EQ(made.v.vt, VT_UNKNOWN);
    EXPECT_EQ(outer.references, 2);
    EXPECT_EQ(VariantChangeType(&made.v, &made.v, 0, VT_DISPATCH), S_OK);
    EXPECT_EQ(made.v.pdispVal, &outer);
    EXPECT_EQ(outer.references, 2);
    EXPECT_EQ(VariantChangeType(&made.v, &made.v, 0, VT_UNKNOWN), S_OK);
    EXPECT_EQ(VariantChangeType(&made.v, &made.v, 0, VT_R8), DISP_E_TYPEMISMATCH);
  }
  // An object whose default value is itself.
  endless.default_value.vt = VT_DISPATCH;
  endless.default_value.pdispVal = &endless;
  {
    const Value held = object(endless);
    Value made;
    EXPECT_EQ(VariantChangeType(&made.v, &held.v, 0, VT_R8), DISP_E_TYPEMISMATCH);
  }
  EXPECT_EQ(endless.references, 0);
  Value nothing;
  nothing.v.vt = VT_DISPATCH;
  EXPECT_EQ(VariantChangeType(&nothing.v, &nothing.v, 0, VT_R8), DISP_E_TYPEMISMATCH);
  VariantClear(&outer.default_value);
  VariantClear(&inner.default_value);
  EXPECT_EQ(inner.references, 0);
  EXPECT_EQ(outer.references, 0);
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
