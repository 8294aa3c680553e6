// Calls by name: names, the binding of arguments, scalars of every kind in every form.
#include "boundary_fixture.hpp"

namespace vqmath63::automation::test {
namespace {

using namespace system::test;

std::u16string wide(const std::string& text) {
  return {text.begin(), text.end()};
}

class LateCallTest : public BoundaryTest {
 protected:
  // With the arguments of a row.
  Answer invoke(DISPID id, const TableRow& row, WORD flags) {
    const std::vector<Value> values = values_of(row["sent"]);
    std::vector<VARIANT> sent;
    for (const Value& value : values) sent.push_back(value.v);
    return invoke_id(object, id, sent, flags, row["named"]);
  }
};

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
  each_row("automation.tsv", "arguments", 15, [&](const TableRow& row) {
    const HRESULT want = code_of(row["error"]);
    const UINT bad = row["bad"];
    const std::u16string joined = wide(row["joined"]);
    const Answer answer = invoke(15, row, DISPATCH_METHOD);
    EXPECT_EQ(answer.hr, want);
    EXPECT_TRUE(SUCCEEDED(want) || answer.bad == bad);
    EXPECT_EQ(shown(answer.result.v), shown(FAILED(want) ? VARIANT{} : text(joined).v));
  });
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
  const Value one = r8(1);
  for (DISPPARAMS params :
       {DISPPARAMS{nullptr, nullptr, 1, 0}, {const_cast<VARIANT*>(&one.v), nullptr, 1, 1}}) {
    EXPECT_EQ(object->Invoke(15, IID_NULL, 0, DISPATCH_METHOD, &params, nullptr, nullptr, nullptr),
              E_INVALIDARG);
  }
}

TEST_F(LateCallTest, properties_are_read_and_set_by_their_flags) {
  each_row("automation.tsv", "properties", 15, [&](const TableRow& row) {
    const Answer answer = invoke(row["id"], row, row["flags"]);
    EXPECT_EQ(answer.hr, code_of(row["error"]));
    EXPECT_EQ(shown(answer.result.v), shown(value_of(row["result"]).v));
  });
}

TEST_F(LateCallTest, values_are_converted_as_the_system_does) {
  each_row("automation.tsv", "conversions", 23, [&](const TableRow& row) {
    const std::string member = row["member"];
    const Value from = value_of(row["sent"]), result = value_of(row["result"]);
    const HRESULT scode = code_of(row["error"]);
    for (const Form form : kForms) {
      const bool reference = form == kByRef || form == kVariantOfRef;
      if (reference && (from.v.vt == VT_EMPTY || from.v.vt == VT_NULL)) continue;
      const Sent sent(from, form);
      const Answer answer = call(object, wide(member), {sent.variant});
      EXPECT_EQ(shown(answer.result.v), shown(result.v)) << "form " << form;
      EXPECT_EQ(answer.scode, scode) << "form " << form;
      EXPECT_EQ(shown(sent.variable.v), shown(from.v)) << "form " << form;
      if (scode == S_OK) continue;
      const std::string words = ascii(answer.words), type = member.substr(4);
      const std::string place = "'x' of " + member + " cannot be converted to a ";
      EXPECT_NE(words.find(place + (type == "Text" ? "String" : type)), std::string::npos) << words;
      EXPECT_EQ(answer.bad, 0U);
    }
  });
}

TEST_F(LateCallTest, references_are_written_back_in_the_hosts_own_form) {
  each_row("automation.tsv", "write-backs", 15, [&](const TableRow& row) {
    const Value from = value_of(row["sent"]);
    for (const Form form : kForms) {
      const bool typed = form == kByRef || form == kVariantOfRef;
      if (typed && from.v.vt == VT_EMPTY) continue;
      const Sent sent(from, form);
      const Answer answer = call(object, wide(row["member"]), {sent.variant});
      const Value after = typed              ? value_of(row["typed"])
                          : form == kVariant ? value_of(row["own"])
                                             : from;
      EXPECT_EQ(shown(sent.variable.v), shown(after.v)) << "form " << form;
      EXPECT_EQ(answer.scode, typed ? code_of(row["error of typed"]) : S_OK) << "form " << form;
    }
  });
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
