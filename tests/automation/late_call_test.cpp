// Calls by name: names, the binding of arguments, scalars of every kind in every form.
#include "boundary_fixture.hpp"

namespace vqmath63::automation::test {
namespace {

using namespace system::test;

class LateCallTest : public BoundaryTest {};

const Value kMissing = error(DISP_E_PARAMNOTFOUND);

TEST_F(LateCallTest, names_are_found_in_any_letter_case_and_every_id_is_filled) {
  const struct {
    std::vector<std::u16string> names;
    std::vector<DISPID> ids;
  } rows[] = {
      {{u"ECHODOUBLE", u"X"}, {3, 0}},
      {{u"ITEM", u"Value", u"index"}, {2, 1, 0}},
      {{u"Join", u"s", u"D", u"oil", u"T"}, {15, 5, 0, DISPID_UNKNOWN, 4}},
      {{u"EchoDoubl"}, {DISPID_UNKNOWN}},
      {{u"EchoDoubleX", u"x"}, {DISPID_UNKNOWN, DISPID_UNKNOWN}},
      {{u""}, {DISPID_UNKNOWN}},
      {{u"Jo\u0131n"}, {DISPID_UNKNOWN}},
  };
  for (const auto& row : rows) {
    std::vector<std::u16string> texts = row.names;
    std::vector<OLECHAR*> names;
    for (std::u16string& text : texts) names.push_back(text.data());
    std::vector<DISPID> ids(names.size(), 0x0CCCCCCC);
    const HRESULT hr = object->GetIDsOfNames(IID_NULL, names.data(),
                                             static_cast<UINT>(names.size()), 0, ids.data());
    EXPECT_EQ(ids, row.ids) << ascii(row.names[0]);
    const bool all = std::find(ids.begin(), ids.end(), DISPID_UNKNOWN) == ids.end();
    EXPECT_EQ(hr, all ? S_OK : DISP_E_UNKNOWNNAME) << ascii(row.names[0]);
  }
  DISPID id = 0;
  EXPECT_EQ(object->GetIDsOfNames(IID_NULL, nullptr, 1, 0, &id), E_INVALIDARG);
}

TEST_F(LateCallTest, arguments_are_bound) {
  const Value one = r8(1);
  const Value three = i4(3);
  const Value bar = text(u"bar");
  const Value off = boolean(false);
  const struct {
    const char* name;
    std::vector<VARIANT> sent;
    std::vector<DISPID> named;
    HRESULT hr;
    UINT bad;
    std::u16string joined;
  } rows[] = {
      {"defaults", {one.v}, {}, S_OK, 0, u"1 2.5 7 1 36526 psi"},
      {"all", {one.v, one.v, three.v, off.v, one.v, bar.v}, {}, S_OK, 0, u"1 1 3 0 1 bar"},
      {"named only", {bar.v, three.v, one.v}, {5, 2, 0}, S_OK, 0, u"1 2.5 3 1 36526 bar"},
      {"mixed", {one.v, three.v, off.v}, {2, 3}, S_OK, 0, u"1 2.5 3 0 36526 psi"},
      {"skipped", {one.v, kMissing.v, three.v}, {}, S_OK, 0, u"1 2.5 3 1 36526 psi"},
      {"named missing", {one.v, kMissing.v}, {4}, S_OK, 0, u"1 2.5 7 1 36526 psi"},
      {"none", {}, {}, DISP_E_BADPARAMCOUNT, 0, u""},
      {"required one missing", {kMissing.v, one.v}, {}, DISP_E_PARAMNOTOPTIONAL, 1, u""},
      {"required one not named", {bar.v}, {5}, DISP_E_PARAMNOTOPTIONAL, 0, u""},
      {"seven", std::vector<VARIANT>(7, one.v), {}, DISP_E_BADPARAMCOUNT, 0xCCCC, u""},
      {"unknown id", {one.v, bar.v}, {6}, DISP_E_PARAMNOTFOUND, 0, u""},
      {"negative id", {one.v, bar.v}, {-7}, DISP_E_PARAMNOTFOUND, 0, u""},
      {"a property's value", {one.v, bar.v}, {DISPID_PROPERTYPUT}, DISP_E_PARAMNOTFOUND, 0, u""},
      {"positional and named", {one.v, one.v}, {0}, DISP_E_BADPARAMCOUNT, 1, u""},
      {"named twice", {one.v, bar.v, bar.v}, {5, 5}, DISP_E_BADPARAMCOUNT, 1, u""},
  };
  for (const auto& row : rows) {
    const Answer answer = invoke_id(object, 15, row.sent, DISPATCH_METHOD, row.named);
    EXPECT_EQ(answer.hr, row.hr) << row.name;
    EXPECT_TRUE(SUCCEEDED(row.hr) || answer.bad == row.bad) << row.name;
    EXPECT_EQ(shown(answer.result.v), shown(FAILED(row.hr) ? VARIANT{} : text(row.joined).v))
        << row.name;
  }
  for (const Form form : kForms) {
    const Sent missing(kMissing, form);
    const std::vector<VARIANT> all(6, missing.variant);
    EXPECT_EQ(shown(invoke_id(object, 16, all, DISPATCH_METHOD).result.v),
              shown(text(u"1.5 2.5 7 1 36526 psi").v))
        << form;
    EXPECT_EQ(shown(missing.variable.v), shown(kMissing.v)) << form;
  }
  EXPECT_EQ(object->Invoke(15, IID_NULL, 0, DISPATCH_METHOD, nullptr, nullptr, nullptr, nullptr),
            E_INVALIDARG);
  for (DISPPARAMS params :
       {DISPPARAMS{nullptr, nullptr, 1, 0}, {const_cast<VARIANT*>(&one.v), nullptr, 1, 1}}) {
    EXPECT_EQ(object->Invoke(15, IID_NULL, 0, DISPATCH_METHOD, &params, nullptr, nullptr, nullptr),
              E_INVALIDARG);
  }
}

TEST_F(LateCallTest, properties_are_read_and_set_by_their_flags) {
  constexpr WORD kGet = DISPATCH_PROPERTYGET;
  constexpr WORD kPut = DISPATCH_PROPERTYPUT;
  const Value two = i2(2);
  const Value nine = text(u"9");
  const struct {
    const char* name;
    DISPID id;
    WORD flags;
    std::vector<VARIANT> sent;
    std::vector<DISPID> named;
    HRESULT hr;
    Value result;
  } rows[] = {
      {"put", 1, kPut, {two.v}, {DISPID_PROPERTYPUT}, S_OK, {}},
      {"get", 1, kGet, {}, {}, S_OK, r8(2)},
      {"get or method", 1, DISPATCH_METHOD | kGet, {}, {}, S_OK, r8(2)},
      {"put by reference", 1, DISPATCH_PROPERTYPUTREF, {nine.v}, {DISPID_PROPERTYPUT}, S_OK, {}},
      {"put back", 1, kGet, {}, {}, S_OK, r8(9)},
      {"put without the id", 1, kPut, {two.v}, {}, S_OK, {}},
      {"put by its name", 1, kPut | DISPATCH_PROPERTYPUTREF, {nine.v}, {0}, S_OK, {}},
      {"put nothing", 1, kPut, {}, {}, DISP_E_BADPARAMCOUNT, {}},
      {"indexed put", 2, kPut, {two.v, nine.v}, {DISPID_PROPERTYPUT}, S_OK, {}},
      {"indexed get", 2, kGet, {two.v}, {}, S_OK, i4(9)},
      {"indexed get by name", 2, kGet, {two.v}, {0}, S_OK, i4(9)},
      {"method as property", 3, kGet, {two.v}, {}, S_OK, r8(2)},
      {"method put", 3, kPut, {two.v}, {DISPID_PROPERTYPUT}, DISP_E_MEMBERNOTFOUND, {}},
      {"no such member", 99, DISPATCH_METHOD, {}, {}, DISP_E_MEMBERNOTFOUND, {}},
      {"no default member", DISPID_VALUE, kGet, {}, {}, DISP_E_MEMBERNOTFOUND, {}},
  };
  for (const auto& row : rows) {
    const Answer answer = invoke_id(object, row.id, row.sent, row.flags, row.named);
    EXPECT_EQ(answer.hr, row.hr) << row.name;
    EXPECT_EQ(shown(answer.result.v), shown(row.result.v)) << row.name;
  }
}

TEST_F(LateCallTest, values_are_converted_as_the_system_does) {
  const struct {
    const char16_t* member;
    Value sent;
    Value result;
    HRESULT scode = S_OK;
  } rows[] = {
      {u"EchoDouble", r8(0.1), r8(0.1)},
      {u"EchoDouble", text(u" 2.5 "), r8(2.5)},
      {u"EchoDouble", currency(12345), r8(1.2345)},
      {u"EchoDouble", boolean(true), r8(-1)},
      {u"EchoDouble", ui8(1ULL << 63), r8(0x1p63)},
      {u"EchoDouble", text(u"oil"), {}, error_code(13)},
      {u"EchoDouble", null(), {}, error_code(13)},
      {u"EchoDouble", empty(), r8(0)},
      {u"EchoSingle", r8(0.1), r4(0.1F)},
      {u"EchoSingle", i4(16777217), r4(16777216.0F)},
      {u"EchoSingle", r8(-1e39), {}, error_code(6)},
      {u"EchoLong", r8(2.5), i4(2)},
      {u"EchoLong", ui1(200), i4(200)},
      {u"EchoLong", i2(-7), i4(-7)},
      {u"EchoLong", i8(1LL << 31), {}, error_code(6)},
      {u"EchoBoolean", i2(2), boolean(true)},
      {u"EchoBoolean", text(u"FALSE"), boolean(false)},
      {u"EchoDate", text(u"2023-01-31"), date(44957)},
      {u"EchoDate", r8(3e6), {}, error_code(6)},
      {u"EchoText", r8(1.5), text(u"1.5")},
      {u"EchoText", text(u"\u00e4\U0001F6E2"), text(u"\u00e4\U0001F6E2")},
      {u"EchoText", empty(), text(u"")},
      {u"EchoText", error(DISP_E_TYPEMISMATCH), {}, error_code(13)},
  };
  for (const auto& row : rows) {
    for (const Form form : kForms) {
      const bool reference = form == kByRef || form == kVariantOfRef;
      if (reference && (row.sent.v.vt == VT_EMPTY || row.sent.v.vt == VT_NULL)) continue;
      const Sent sent(row.sent, form);
      const Answer answer = call(object, row.member, {sent.variant});
      const std::string name = ascii(row.member) + " " + shown(row.sent.v);
      EXPECT_EQ(shown(answer.result.v), shown(row.result.v)) << name << " form " << form;
      EXPECT_EQ(answer.scode, row.scode) << name << " form " << form;
      EXPECT_EQ(shown(sent.variable.v), shown(row.sent.v)) << name << " form " << form;
      if (row.scode == S_OK) continue;
      const std::string words = ascii(answer.words);
      const std::string type = ascii(row.member).substr(4);
      const std::string place = "'x' of " + ascii(row.member) + " cannot be converted to a ";
      EXPECT_NE(words.find(place + (type == "Text" ? "String" : type)), std::string::npos) << words;
      EXPECT_EQ(answer.bad, 0U) << name;
    }
  }
}

TEST_F(LateCallTest, references_are_written_back_in_the_hosts_own_form) {
  // `own`: what a VARIANT variable holds afterwards; `typed`: what a variable of fixed type does.
  const struct {
    const char16_t* member;
    Value sent;
    Value own;
    Value typed;
    HRESULT typed_scode = S_OK;
  } rows[] = {
      {u"ChangeDouble", r8(1.5), r8(2.5), r8(2.5)},
      {u"ChangeDouble", currency(25000), r8(3.5), currency(35000)},
      {u"ChangeDouble", i8(1), r8(2), i8(2)},
      {u"ChangeSingle", r8(1.5), r4(2.5F), r8(2.5)},
      {u"ChangeSingle", r8(1e20), r8(1e20), r8(1e20)},  // unchanged as a Single: own digits stay
      {u"ChangeSingle", ui1(255), r4(256.0F), ui1(255), DISP_E_OVERFLOW},
      {u"ChangeLong", i4(7), i4(8), i4(8)},
      {u"ChangeLong", text(u"7"), i4(8), text(u"8")},
      {u"ChangeBoolean", boolean(true), boolean(false), boolean(false)},
      {u"ChangeBoolean", i4(0), boolean(true), i4(-1)},
      {u"ChangeDate", text(u"2023-01-31"), date(44958), text(u"2023-02-01")},
      {u"ChangeText", text(u""), text(u"!"), text(u"!")},
      {u"ChangeText", i4(12), text(u"12!"), i4(12), DISP_E_TYPEMISMATCH},
      {u"ChangeDouble", empty(), r8(1), {}},
      {u"ChangeText", empty(), text(u"!"), {}},
  };
  for (const auto& row : rows) {
    for (const Form form : kForms) {
      const bool typed = form == kByRef || form == kVariantOfRef;
      if (typed && row.sent.v.vt == VT_EMPTY) continue;
      const Sent sent(row.sent, form);
      const Answer answer = call(object, row.member, {sent.variant});
      const Value& after = typed ? row.typed : form == kVariant ? row.own : row.sent;
      const std::string name = ascii(row.member) + " " + shown(row.sent.v);
      EXPECT_EQ(shown(sent.variable.v), shown(after.v)) << name << " form " << form;
      EXPECT_EQ(answer.scode, typed ? row.typed_scode : S_OK) << name << " form " << form;
    }
  }
  const Value no_text = bare(VT_BSTR);  // what an empty String variable is
  for (const Form form : kForms) {
    const Sent sent(no_text, form);
    EXPECT_EQ(call(object, u"ChangeText", {sent.variant}).hr, S_OK) << form;
    const Sent blank(no_text, form);
    EXPECT_EQ(ascii(characters(call(object, u"JoinRef", {blank.variant}, {u"s"}).result.v.bstrVal)),
              "1.5 2.5 7 1 36526 ");
  }
}

TEST_F(LateCallTest, null_references_are_refused) {
  for (const int type : {+VT_VARIANT, +VT_R8, +VT_BSTR, VT_ARRAY | VT_R4, VT_ARRAY | VT_VARIANT}) {
    for (const char16_t* member : {u"EchoDouble", u"ChangeText", u"Singles"}) {
      std::vector<VARIANT> arguments{reference(type, nullptr)};
      if (member == std::u16string(u"Singles")) arguments.push_back(VARIANT{});
      EXPECT_EQ(call(object, member, arguments).scode, error_code(13)) << ascii(member) << type;
    }
  }
}

}  // namespace
}  // namespace vqmath63::automation::test
