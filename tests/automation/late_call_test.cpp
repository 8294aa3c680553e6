// Calls by name: names, the binding of arguments, scalars of every kind in every form.
#include "script_fakes.hpp"

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
    std::vector<OLECHAR*> names;
    for (const std::u16string& name : row.names) names.push_back(const_cast<OLECHAR*>(name.data()));
    const auto count = static_cast<UINT>(names.size());
    std::vector<DISPID> ids(count, 0x0CCCCCCC);
    const HRESULT hr = object->GetIDsOfNames(IID_NULL, names.data(), count, 0, ids.data());
    EXPECT_EQ(ids, row.ids) << ascii(row.names[0]);
    const bool all = std::find(ids.begin(), ids.end(), DISPID_UNKNOWN) == ids.end();
    EXPECT_EQ(hr, all ? S_OK : DISP_E_UNKNOWNNAME) << ascii(row.names[0]);
  }
  DISPID id = 0;
  EXPECT_EQ(object->GetIDsOfNames(IID_NULL, nullptr, 1, 0, &id), E_INVALIDARG);
}

TEST_F(LateCallTest, arguments_are_bound) {
  each_row("automation.tsv", "arguments", 16, [&](const TableRow& row) {
    const HRESULT want = code_of(row["error"]);
    const Answer answer = invoke(15, row, DISPATCH_METHOD);
    EXPECT_EQ(answer.hr, want);
    EXPECT_TRUE(SUCCEEDED(want) || answer.bad == UINT(row["bad"]));
    EXPECT_EQ(shown(answer.result.v),
              shown(FAILED(want) ? VARIANT{} : text(wide(row["joined"])).v));
  });
  for (const Form form : kForms) {
    const Sent missing(kMissing, form);
    const std::vector<VARIANT> all(6, missing.variant);
    EXPECT_EQ(shown(invoke_id(object, 16, all, DISPATCH_METHOD).result.v),
              shown(text(u"1.5 2.5 7 1 36526 psi").v))
        << form;
    EXPECT_EQ(shown(missing.variable.v), shown(kMissing.v)) << form;
  }
  VARIANT one = r8(1).v;
  DISPPARAMS no_values{nullptr, nullptr, 1, 0}, no_names{&one, nullptr, 1, 1};
  for (DISPPARAMS* const params : {&no_values, &no_names, static_cast<DISPPARAMS*>(nullptr)}) {
    EXPECT_EQ(object->Invoke(15, IID_NULL, 0, DISPATCH_METHOD, params, nullptr, nullptr, nullptr),
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
  each_row("automation.tsv", "conversions", 29, [&](const TableRow& row) {
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
  each_row("automation.tsv", "write-backs", 19, [&](const TableRow& row) {
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
}

TEST_F(LateCallTest, a_result_is_in_the_variable_whatever_it_held) {
  // What a VARIANT variable and one of fixed type hold after Keep, which reads and leaves its
  // arguments, and after Answer, which writes 4, True, "done" and two zeros without reading.
  const struct {
    Value sent, kept_long, kept_flag, typed_long, typed_flag;
  } rows[] = {
      {r8(3.7), i4(4), boolean(true), r8(4), r8(-1)},
      {i2(5), i4(5), boolean(true), i2(5), i2(-1)},
      {r8(-0.0), i4(0), boolean(false), r8(0), r8(0)},
      {text(u"4"), i4(4), boolean(true), text(u"4"), text(u"True")},
  };
  const Sent ones(array(VT_I4, 1, {1}), kByRef);
  for (const auto& row : rows) {
    for (const Form form : {kVariant, kVariantOfRef, kByRef}) {
      const Sent n(row.sent, form), b(row.sent, form);
      EXPECT_EQ(call(object, u"Keep", {n.variant, b.variant, ones.variant}).hr, S_OK);
      const bool own = form == kVariant;
      EXPECT_EQ(shown(n.variable.v), shown(own ? row.kept_long.v : row.typed_long.v)) << form;
      EXPECT_EQ(shown(b.variable.v), shown(own ? row.kept_flag.v : row.typed_flag.v)) << form;
    }
  }
  for (const Value& held :
       {empty(), null(), text(u"oil"), r8(1e30), array(VT_R8, 0, {1, 2, 3, 4}, 2),
        script_box(text(u"oil")), error(-5), boolean(true), i4(4)}) {
    const Sent n(held, kVariant), b(held, kVariant), s(held, kVariant), x(held, kVariant);
    EXPECT_EQ(call(object, u"Answer", {n.variant, b.variant, s.variant, x.variant}).hr, S_OK);
    if (held.v.vt == VT_DISPATCH) continue;  // the box holds the last one's result
    EXPECT_EQ(shown(n.variable.v) + shown(b.variable.v) + shown(s.variable.v),
              shown(i4(4).v) + shown(boolean(true).v) + shown(text(u"done").v));
    EXPECT_EQ(listed(x.variable.v), "1..2: 0 0") << held.v.vt;
  }
  // A variable of fixed type that cannot take the result is named.
  const Sent n(r8(1), kByRef);
  const Answer answer = call(object, u"Answer", {n.variant, n.variant, n.variant, n.variant});
  EXPECT_EQ(answer.scode, error_code(13));
  EXPECT_EQ(ascii(answer.words), "Type mismatch: argument 's' of Answer cannot take its result");
}

TEST_F(LateCallTest, a_variable_that_the_host_changes_meanwhile_keeps_that_value) {
  const auto run = [&](Form form, VARTYPE element, bool exact, bool moves) {
    Sent b(exact ? boolean(false) : i2(0), form), s(exact ? text(u"LOG") : i4(12), form);
    Sent x(array(element, 1, {1, 2, 3}), form), f(exact ? r4(1) : r8(1), form);
    const Value fresh = array(element, 1, {9}), number = r8(0.5);
    const Value words = text(u"a long text of the host's own");
    Value moved;
    std::vector<std::string> given, after;
    Sample::meanwhile = [&] {
      // What is locked cannot be let go; a host that moves it away keeps it whole.
      EXPECT_EQ(VariantClear(&x.variable.v), DISP_E_ARRAYISLOCKED);
      if (moves) std::swap(moved.v, x.variable.v);
      if (moves) VariantCopy(&x.variable.v, &fresh.v);
      for (Sent* const changed : {&b, &s, &f}) {
        VARIANT& variable = changed->variable.v;
        const bool is_text = variable.vt == VT_BSTR;
        if (is_text && moves) {
          variable.bstrVal[0] = u'M';  // other characters in the same place
        } else if (form == kVariant || is_text) {
          VariantCopy(&variable, is_text ? &words.v : &number.v);
        } else {
          variable.llVal ^= 0x70;  // memory of one type, in which only the value changes
        }
        given.push_back(shown(variable));
      }
    };
    const Answer answer = call(object, u"Meanwhile", {b.variant, s.variant, x.variant, f.variant});
    Sample::meanwhile = nullptr;
    EXPECT_EQ(answer.hr, S_OK) << ascii(answer.words);
    for (const Sent* const sent : {&b, &s, &f}) after.push_back(shown(sent->variable.v));
    EXPECT_EQ(after, given) << form << exact;
    EXPECT_EQ(listed(x.variable.v), moves ? "1..1: 9" : "1..2: 0 0") << form << element;
    EXPECT_EQ(listed(moved.v), moves ? "1..3: 1 2 3" : "none") << form << element;
    EXPECT_TRUE(!moves || moved.v.parray->cLocks == 0);
  };
  for (const Form form : {kByRef, kVariant, kVariantOfRef}) {
    for (const VARTYPE element : {VT_R4, VT_R8, VT_VARIANT}) {
      for (const int which : {0, 1, 2, 3}) run(form, element, (which & 1) != 0, (which & 2) != 0);
    }
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
