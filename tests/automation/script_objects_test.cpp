// Arrays and boxes of script languages as arguments.
#include "script_fakes.hpp"

namespace vqmath63::automation::test {
namespace {

using namespace system::test;

class ScriptObjectsTest : public BoundaryTest {
 protected:
  ~ScriptObjectsTest() override { EXPECT_EQ(ScriptObject::alive, 0); }
};

const Value kHole = error(0);

TEST_F(ScriptObjectsTest, arrays_are_read_changed_and_refilled) {
  const struct {
    const char16_t* member;
    std::vector<Value> elements;
    std::int32_t what;
    const char* seen;
    const char* after;
  } rows[] = {
      {u"Singles", {r8(0.1), i2(1), text(u"2.5")}, kRead, "0..2: 0.1 1 2.5", "[0.1 1 2.5]"},
      {u"Singles", {r8(0.1), i2(1), text(u"2.5")}, kChange, "0..2: 0.1 1 2.5", "[0.1 -1 2.5]"},
      {u"Singles", {kHole, null(), empty(), r8(1)}, kRead, "0..3: 0 0 0 1", "[hole  - 1]"},
      {u"Singles", {r8(7)}, kResize, "0..0: 7", "[- 1000 2000 3000]"},
      {u"Longs", {r8(7), r8(8)}, kErase, "0..1: 7 8", "[]"},
      {u"Doubles", {}, kResize, "0..-1:", "[- 1000 2000 3000]"},
      {u"Booleans", {boolean(true), r8(2)}, kChange, "0..1: 1 1", "[True False]"},
      {u"Table",
       {script_array({r8(9), r8(2), r8(5)}), script_array({r8(1), r8(4)})},
       kChange,
       "0..1,0..2: 9 1 2 4 5 0",
       "[[9 2 5] [-1 4]]"},
      {u"Table", {kHole, script_array({r8(1)})}, kRead, "0..1,0..0: 0 1", "[hole [1]]"},
      {u"Table", {}, kResize, "0..-1,0..-1:", "[[] [- 10 30] [- 20 40]]"},
      {u"Table", {script_array({r8(1)})}, kErase, "0..0,0..0: 1", "[]"},
  };
  for (const auto& row : rows) {
    for (const Form form : kForms) {
      const Value mine = script_array(row.elements);
      // Inner arrays are the row's own; each call gets fresh ones.
      for (auto& element : object_of(mine).elements) {
        if (!element || element->v.vt != VT_DISPATCH) continue;
        std::vector<Value> inner;
        for (auto& x : static_cast<ScriptObject*>(element->v.pdispVal)->elements) {
          inner.push_back(*x);
        }
        const Value fresh = script_array(inner);
        VariantCopy(&element->v, &fresh.v);
      }
      const Sent sent(mine, form);
      const Answer answer = call(object, row.member, {sent.variant, i4(row.what).v});
      EXPECT_EQ(answer.hr, S_OK) << row.seen << ascii(answer.words);
      EXPECT_EQ(ascii(characters(answer.result.v.bstrVal)), row.seen) << form;
      EXPECT_EQ(text_of(object_of(mine)), row.after) << row.seen << " form " << form;
    }
  }
}

// Cells of a sheet: a column, a row, a block, where results leave cells free or find too few.
TEST_F(ScriptObjectsTest, ranges_of_a_sheet_keep_their_shape) {
  const Value column = array(VT_VARIANT, 1, {9, 1, 2, 4}, 1), row = array(VT_R8, 1, {1, 2, 3}, 3),
              block = array(VT_VARIANT, 1, {1, 2, 3, 4, 5, 6}, 3),
              narrow = array(VT_VARIANT, 1, {7, 8}, 1), line = array(VT_R4, 0, {9, 1, 2, 4});
  const struct {
    const char16_t* member;
    Value cells;
    Act what;
    const char* after;
    int number;
  } rows[] = {
      {u"Singles", column, kRead, "1..4,1..1: 9 1 2 4", 0},
      {u"Singles", column, kChange, "1..4,1..1: -9 1 2 4", 0},
      {u"Longs", column, kResize, "1..4,1..1: 1000 2000 3000 0", 0},
      {u"Doubles", column, kErase, "1..4,1..1: 0 0 0 0", 0},
      {u"Singles", row, kChange, "1..1,1..3: -1 2 3", 0},
      {u"Singles", row, kResize, "1..1,1..3: 1000 2000 3000", 0},
      {u"Singles", line, kChange, "0..3: 9 -1 2 4", 0},
      {u"Singles", narrow, kResize, "1..2,1..1: 7 8", 10},
      {u"Singles", block, kRead, "1..2,1..3: 1 2 3 4 5 6", 13},
      {u"Table", block, kRead, "1..2,1..3: 1 2 3 4 5 6", 0},
      {u"Table", block, kResize, "1..2,1..3: 10 20 30 40 0 0", 0},
      {u"Table", narrow, kResize, "1..2,1..1: 7 8", 10},
      {u"Table", line, kRead, "0..3: 9 1 2 4", 13},
  };
  for (const auto& r : rows) {
    for (const Form form : kForms) {
      const Value range = script_object(r.cells);
      const Sent sent(range, form);
      const Answer answer = call(object, r.member, {sent.variant, i4(r.what).v});
      EXPECT_EQ(answer.scode, r.number == 0 ? S_OK : error_code(r.number)) << ascii(answer.words);
      EXPECT_EQ(listed(object_of(range).whole.v), r.after) << form;
      EXPECT_EQ(object_of(range).whole.v.vt, r.cells.v.vt);
      EXPECT_EQ(sent.variable.v.vt, VT_DISPATCH);
    }
  }
  const Sent n(i4(0), kVariant), b(empty(), kVariant), s(empty(), kVariant);
  for (const Form form : kForms) {  // only written, and so not read before
    const Value range = script_object(column);
    const Sent sent(range, form);
    EXPECT_EQ(call(object, u"Answer", {n.variant, b.variant, s.variant, sent.variant}).hr, S_OK);
    EXPECT_EQ(listed(object_of(range).whole.v), "1..4,1..1: 0 0 0 0") << form;
  }
}

TEST_F(ScriptObjectsTest, date_objects_are_dates) {
  const Value words = text(u"Tue Jan 31 06:00:00 UTC 2023");
  const struct {
    std::map<std::u16string, Value> answers;
    double date;
  } rows[] = {
      {{{u"getVarDate", date(44957.25)}, {u"getTime", r8(0)}}, 44957.25},
      // Two hours east of Greenwich, and before day zero, where the time runs forward.
      {{{u"getTime", r8(1675137600000.0)}, {u"getTimezoneOffset", i4(-120)}}, 44957.25},
      {{{u"getTime", r8(-2209204800000.0)}, {u"getTimezoneOffset", i4(0)}}, -1.5},
  };
  for (const auto& row : rows) {
    const Value moment = script_object(words, row.answers);
    const struct {
      const char16_t* member;
      Value result;
    } reads[] = {
        {u"EchoDate", date(row.date)}, {u"EchoDouble", r8(row.date)}, {u"EchoText", words}};
    for (const auto& read : reads) {
      const Answer answer = call(object, read.member, {moment.v});
      EXPECT_EQ(shown(answer.result.v), shown(read.result.v)) << ascii(answer.words);
    }
    const Value column = script_array({r8(0), moment});
    const Answer answer = call(object, u"Doubles", {column.v, i4(kRead).v});
    EXPECT_EQ(answer.hr, S_OK) << ascii(answer.words);
  }
  EXPECT_EQ(call(object, u"EchoDate", {script_object(words).v}).scode, error_code(13));
}

TEST_F(ScriptObjectsTest, objects_that_are_no_fitting_arrays_are_refused) {
  const struct {
    const char16_t* member;
    Value sent;
    int number;
    const char* words;
  } rows[] = {
      {u"Singles", script_box(r8(1)), 13, "; it is an object without a length, not an array"},
      {u"Singles", script_array({r8(1), text(u"x")}), 13, "; its element (1) cannot be converted"},
      {u"Singles", script_array({r8(1), script_array({})}), 13, "element (1) cannot be converted"},
      {u"Singles", script_array({r8(1e39)}), 6, "; its element (0) cannot be converted"},
      {u"Table", script_array({r8(1)}), 13, "; its row (0) is no array"},
      {u"Table", script_array({script_array({}), script_box(r8(1))}), 13, "row (1) is no array"},
      {u"Table", script_array({script_array({r8(1), text(u"x")})}), 13, "element (0, 1) cannot"},
      {u"Singles", boasting_array(2147483648.0, {r8(1)}), 7, ": its length is 2147483648"},
      {u"Singles", boasting_array(1e8, {r8(1)}), 7, "; its length is 100000000, and nearly all"},
      {u"Table", boasting_array(2e7, {script_array({})}), 7,
       "; its length is 20000000, and nearly"},
      {u"Table", script_array({boasting_array(1e8), kHole}), 7, ": its length is 100000000"},
      {u"Table", boasting_array(-1.0), 13, "; it is an object without a length"},
  };
  for (const auto& row : rows) {
    int calls = 0;
    object_of(row.sent).asked = [&] { ASSERT_LT(++calls, 3'000'000); };
    const Answer answer = call(object, row.member, {row.sent.v, i4(kRead).v});
    EXPECT_EQ(answer.scode, error_code(row.number)) << row.words;
    EXPECT_NE(ascii(answer.words).find(row.words), std::string::npos) << ascii(answer.words);
  }
  VARIANT nothing{};
  nothing.vt = VT_DISPATCH;
  for (const char16_t* member : {u"Singles", u"Table"}) {
    EXPECT_EQ(call(object, member, {nothing, i4(kRead).v}).scode, error_code(13));
  }
}

TEST_F(ScriptObjectsTest, variables_that_a_script_reassigns_keep_that_value) {
  // The script's code runs when its object is read (0) and when it gets its result (1). All that
  // was taken before, or is handed back, is the host's; the object is the last argument, or first.
  for (const bool handing_back : {false, true}) {
    for (const Value& other : {empty(), r8(0.5), text(u"a text of the host's own")}) {
      const Value box = script_box(r8(1));
      const bool first = handing_back;
      Sent b(first ? box : boolean(false), kVariant), s(text(u"LOG"), kVariant);
      Sent x(array(VT_VARIANT, 1, {1, 2, 3}), kVariant), f(first ? r8(1) : box, kVariant);
      Value moved;
      int calls = 0;
      object_of(box).work = [&] {
        if (calls++ != (handing_back ? 1 : 0)) return;
        std::swap(moved.v, x.variable.v);
        for (Sent* const sent : {&b, &s, &x, &f}) VariantCopy(&sent->variable.v, &other.v);
      };
      const Answer answer =
          call(object, u"Meanwhile", {b.variant, s.variant, x.variant, f.variant});
      EXPECT_EQ(answer.hr, S_OK) << ascii(answer.words);
      EXPECT_EQ(calls, 2);
      for (const Sent* const sent : {&b, &s, &x, &f}) {
        EXPECT_EQ(shown(sent->variable.v), shown(other.v)) << handing_back;
      }
    }
  }
  // An object that takes no result at all is what the variable held: its code may run even so.
  const Value no_box = script_array({}), no_array = script_box(r8(1)), half = r8(0.5);
  Sent n(no_box, kVariant), b(r8(0), kVariant), s(r8(0), kVariant), x(no_array, kVariant);
  object_of(no_box).asked = [&] { VariantCopy(&n.variable.v, &half.v); };
  object_of(no_array).asked = [&] { VariantCopy(&x.variable.v, &half.v); };
  EXPECT_EQ(call(object, u"Answer", {n.variant, b.variant, s.variant, x.variant}).hr, S_OK);
  EXPECT_EQ(shown(n.variable.v), shown(half.v));
  EXPECT_EQ(shown(x.variable.v), shown(half.v));
}

// To let go of what an element held runs other code too, which may change the next array.
TEST_F(ScriptObjectsTest, an_array_that_an_object_changes_at_its_end_is_not_written_beyond) {
  void (*const changes[])(CountingObject&) = {
      [](CountingObject& gone) {
        SAFEARRAYBOUND one{1, 1};
        if (gone.references == 0) SafeArrayRedim(static_cast<SAFEARRAY*>(gone.context), &one);
      },
      [](CountingObject& gone) {
        if (gone.references > 0) return;
        static_cast<SAFEARRAY*>(gone.context)->rgsabound[0].lLbound = 0;
      },
      [](CountingObject& gone) {
        auto* first = static_cast<VARIANT*>(static_cast<SAFEARRAY*>(gone.context)->pvData);
        if (gone.references == 0) *first = reference(VT_VARIANT, nullptr);
      },
      [](CountingObject& gone) {  // locked as often as can be
        if (gone.references == 0) static_cast<SAFEARRAY*>(gone.context)->cLocks = 0xFFFF;
      }};
  const HRESULT outcomes[] = {S_OK, S_OK, error_code(13), error_code(10)};
  const char* const left[] = {"1..1: 1", "0..2: 1 2 3", "1..3: -999 2 3", "1..3: 1 2 3"};
  for (const int i : {0, 1, 2, 3}) {
    CountingObject held;
    held.default_value = r8(1).v;
    Sent x(array(VT_VARIANT, 1, {1, 2, 3}), kByRef), y(array(VT_VARIANT, 1, {1, 2, 3}), kByRef);
    VARIANT& element = *static_cast<VARIANT*>(x.variable.v.parray->pvData);
    element.vt = VT_DISPATCH;
    element.pdispVal = &held;
    held.AddRef();
    held.context = y.variable.v.parray;
    held.on_release = changes[i];
    EXPECT_EQ(call(object, u"Turn", {x.variant, y.variant}).scode, outcomes[i]);
    y.variable.v.parray->cLocks = 0;
    EXPECT_EQ(listed(x.variable.v), "1..3: -1 -2 -3");
    EXPECT_EQ(listed(y.variable.v), left[i]);
  }
}

// Code of the host that calls the component again: a box when it takes the text that the failed
// call wrote, an object when it is let go.
TEST_F(ScriptObjectsTest, a_failed_call_is_told_whatever_is_called_before_it_ends) {
  void (*const calls[])(ISample*) = {
      [](ISample*) {},
      [](ISample* sample) {
        double half = 0.0;
        EXPECT_EQ(sample->Quotient(1, 2, &half), S_OK);
      },
      [](ISample* sample) {
        float none = 0.0F;
        BSTR where = nullptr;
        EXPECT_EQ(sample->Fail(9, &where, &none), error_code(9));
        SysFreeString(where);
      },
      [](ISample* sample) {
        EXPECT_EQ(call(sample, u"Fail", {i4(9).v, r8(0).v}).scode, error_code(9));
      }};
  for (void (*const again)(ISample*) : calls) {
    const Value box = script_box(text(u""));
    object_of(box).work = [&] { again(object); };
    const Answer answer = call(object, u"Fail", {i4(6).v, box.v});
    EXPECT_EQ(answer.scode, error_code(6));
    EXPECT_EQ(ascii(answer.words), "Overflow");
    EXPECT_EQ(ascii(answer.source), "vq140Analyse.ztSample");
    EXPECT_EQ(shown(object_of(box).value.v), shown(text(u"reached").v));

    // A host that asks for no exception record reads the error info.
    object_of(box).released = [&] { again(object); };
    VARIANT sent[] = {box.v, i4(6).v};
    DISPPARAMS params{sent, nullptr, 2, 0};
    EXPECT_EQ(object->Invoke(23, IID_NULL, 0, DISPATCH_METHOD, &params, nullptr, nullptr, nullptr),
              DISP_E_EXCEPTION);
    EXPECT_EQ(ascii(error_words()), "Overflow");
  }
}

TEST_F(ScriptObjectsTest, boxes_carry_scalars_by_reference) {
  const struct {
    const char16_t* member;
    Value held;
    Value after;
  } rows[] = {
      {u"ChangeDouble", r8(1), r8(2)},          {u"ChangeSingle", text(u"1.5"), r4(2.5F)},
      {u"ChangeLong", empty(), i4(1)},          {u"ChangeBoolean", boolean(true), boolean(false)},
      {u"ChangeText", text(u"a"), text(u"a!")},
  };
  for (const auto& row : rows) {
    for (const Form form : kForms) {
      const Value box = script_box(row.held);
      const Sent sent(box, form);
      EXPECT_EQ(call(object, row.member, {sent.variant}).hr, S_OK) << ascii(row.member) << form;
      EXPECT_EQ(shown(object_of(box).value.v), shown(row.after.v)) << ascii(row.member) << form;
      EXPECT_EQ(sent.variable.v.vt, VT_DISPATCH);
    }
  }
  const Value oil = script_box(text(u"oil"));
  EXPECT_EQ(call(object, u"ChangeLong", {oil.v}).scode, error_code(13));
  EXPECT_EQ(call(object, u"ChangeLong", {script_array({}).v}).scode, error_code(13));
}

}  // namespace
}  // namespace vqmath63::automation::test
