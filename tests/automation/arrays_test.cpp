// Arrays across the boundary: borrowed, converted, written back, replaced, refused.
#include <cmath>

#include "boundary_fixture.hpp"

namespace vqmath63::automation::test {
namespace {

using namespace system::test;

class ArraysTest : public BoundaryTest {
 protected:
  std::string act(const char16_t* member, const Sent& sent, std::int32_t what) {
    const Answer answer = call(object, member, {sent.variant, i4(what).v});
    EXPECT_EQ(answer.scode, S_OK) << ascii(answer.words);
    return answer.hr == S_OK ? ascii(characters(answer.result.v.bstrVal)) : "failed";
  }
};

TEST_F(ArraysTest, every_array_in_every_form) {
  // As read and as changed, with lower bound 0 and 1: a line, and a table of two columns.
  const char* const read[2][2] = {{"0..3: 9 1 2 4", "1..4: 9 1 2 4"},
                                  {"0..1,0..1: 9 1 2 4", "1..2,1..2: 9 1 2 4"}};
  const char* const changed[2][2] = {{"0..3: 9 -1 2 4", "1..4: -9 1 2 4"},
                                     {"0..1,0..1: 9 -1 2 4", nullptr}};
  const char* const resized[2] = {"1..3: 1000 2000 3000", "1..2,1..2: 10 20 30 40"};
  const struct {
    const char16_t* member;
    VARTYPE own;
    ULONG columns = 0;
  } kinds[] = {{u"Singles", VT_R4},   {u"Doubles", VT_R8},  {u"Longs", VT_I4},
               {u"Table", VT_R4, 2},  {u"Longs", VT_I4, 1}, {u"Singles", VT_R4, 4},
               {u"Doubles", VT_R8, 1}};
  // A column and a row, which stand for a line.
  const auto placed = [](std::string line, ULONG columns, int lower) {
    const std::string one = std::to_string(lower) + ".." + std::to_string(lower);
    const std::size_t end = line.find(':');
    if (columns == 1 && end != line.npos) line.insert(end, "," + one);
    return columns == 4 && end != line.npos ? one + "," + line : line;
  };
  int calls = 0;
  const auto check = [&](const auto& kind, VARTYPE element, Form form, int lower, Act what) {
    const int shape = kind.columns == 2 ? 1 : 0;
    if (what == kChange && changed[shape][lower] == nullptr) return;
    const std::string name = ascii(kind.member) + " of " + std::to_string(element) + " form " +
                             std::to_string(form) + " act " + std::to_string(what);
    const Sent sent(array(element, lower, {9, 1, 2, 4}, kind.columns), form);
    const void* const first = sent.variable.v.parray->pvData;
    EXPECT_EQ(act(kind.member, sent, what), read[shape][lower]) << name;
    EXPECT_EQ(Sample::seen == first, element == kind.own) << name;
    const bool kept = what == kRead || (what != kChange && form == kByValue);
    const std::string want = kept              ? read[shape][lower]
                             : what == kChange ? changed[shape][lower]
                             : what == kErase  ? "none"
                                               : resized[shape];
    EXPECT_EQ(listed(sent.variable.v), placed(want, kind.columns, lower)) << name;
    ++calls;
    if (want == "none") return;
    EXPECT_EQ(sent.variable.v.vt, VT_ARRAY | element) << name;
    EXPECT_EQ(sent.variable.v.parray->cLocks, 0U) << name;
  };
  for (const auto& kind : kinds) {
    for (const VARTYPE element :
         {VT_R4, VT_R8, VT_I4, VT_I2, VT_I8, VT_CY, VT_DATE, VT_BSTR, VT_VARIANT}) {
      for (const Form form : kForms) {
        for (const int lower : {0, 1}) {
          for (const Act what : {kRead, kChange, kResize, kErase}) {
            check(kind, element, form, lower, what);
          }
        }
      }
    }
  }
  EXPECT_EQ(calls, (7 * 8 - 1) * 9 * 4);
}

TEST_F(ArraysTest, variables_without_elements) {
  const Value released = array(VT_VARIANT, 0, {1, 2, 3});
  const Value erased = array(VT_R4, 1, {1, 2, 3});
  ASSERT_EQ(SafeArrayDestroyData(released.v.parray), S_OK);
  ASSERT_EQ(SafeArrayDestroyData(erased.v.parray), S_OK);
  const struct {
    const char* name;
    Value sent;
    const char* read;
    VARTYPE after;
  } rows[] = {
      {"no elements", array(VT_R4, 1, {}), "1..0:", VT_ARRAY | VT_R4},
      {"no variants", array(VT_VARIANT, 0, {}), "0..-1:", VT_ARRAY | VT_VARIANT},
      {"unset Single()", bare(VT_ARRAY | VT_R4), "none", VT_ARRAY | VT_R4},
      {"unset Integer()", bare(VT_ARRAY | VT_I2), "none", VT_ARRAY | VT_I2},
      {"unset Variant()", bare(VT_ARRAY | VT_VARIANT), "none", VT_ARRAY | VT_VARIANT},
      {"erased Single()", erased, "none", VT_ARRAY | VT_R4},
      {"released Variant()", released, "none", VT_ARRAY | VT_VARIANT},
      {"Empty", empty(), "none", VT_ARRAY | VT_VARIANT},
  };
  for (const auto& row : rows) {
    for (const Form form : kForms) {
      const bool typed = form == kByRef || form == kVariantOfRef;
      if (typed && row.sent.v.vt == VT_EMPTY) continue;
      const Sent sent(row.sent, form);
      EXPECT_EQ(act(u"Singles", sent, kRead), row.read) << row.name << form;
      EXPECT_EQ(sent.variable.v.vt, row.sent.v.vt) << row.name << form;
      EXPECT_EQ(act(u"Singles", sent, kResize), row.read) << row.name << form;
      if (form == kByValue) continue;
      EXPECT_EQ(listed(sent.variable.v), "1..3: 1000 2000 3000") << row.name << form;
      EXPECT_EQ(sent.variable.v.vt, row.after) << row.name << form;
    }
  }
}

TEST_F(ArraysTest, an_element_that_holds_the_result_keeps_the_hosts_type) {
  // Of 0.1 and "0.5" the Single 0.5 is the same number; 0.1 becomes the Single nearest to it.
  const Sent sent(array(VT_VARIANT, 0, {0.1, 5, 0.5, 0.5, 0.5, 1}), kVariant);
  const auto* elements = static_cast<const VARIANT*>(sent.variable.v.parray->pvData);
  std::vector<std::string> after;
  for (int i = 0; i < 6; ++i) after.push_back(shown(elements[i]));
  after[0] = shown(r4(0.1F).v);
  after[1] = shown(r4(-5).v);
  act(u"Singles", sent, kChange);
  for (std::size_t i = 0; i < 6; ++i) EXPECT_EQ(shown(elements[i]), after[i]) << i;
  EXPECT_EQ(elements[2].vt, VT_BSTR);
  const Sent flags(array(VT_I2, 0, {7, 2, 0}), kByRef);
  EXPECT_EQ(act(u"Booleans", flags, kChange), "0..2: 1 1 0");
  EXPECT_EQ(listed(flags.variable.v), "0..2: -1 0 0");
  // What is only read is not touched, nor is anything after a call that failed.
  const Sent read(array(VT_VARIANT, 0, {0.1, 0.1, 0.1}), kVariant);
  const auto* held = static_cast<const VARIANT*>(read.variable.v.parray->pvData);
  const Sent table(array(VT_I4, 0, {1, 2}, 1), kVariant);
  EXPECT_EQ(call(object, u"ReadSingles", {read.variant, table.variant}).hr, S_OK);
  const Sent failing(array(VT_VARIANT, 2, {0.1, 0.1, 0.1}), kVariant);
  EXPECT_EQ(call(object, u"Singles", {failing.variant, i4(kChange).v}).scode, error_code(9));
  const auto* same = static_cast<const VARIANT*>(failing.variable.v.parray->pvData);
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(held[i].vt, i == 0 ? VT_R8 : i == 1 ? VT_I2 : VT_BSTR);
    EXPECT_EQ(same[i].vt, held[i].vt) << i;
  }
}

TEST_F(ArraysTest, one_array_passed_twice_is_one_array) {
  for (const VARTYPE element : {VT_R4, VT_R8}) {
    for (const std::int32_t which : {0, 1, 2, 3}) {
      const Sent sent(array(element, 1, {1, 2, 3}), kByRef);
      const Answer answer = call(object, u"Both", {sent.variant, sent.variant, i4(which).v});
      EXPECT_EQ(answer.hr, S_OK) << which << ascii(answer.words);
      EXPECT_EQ(answer.result.v.boolVal != 0, element == VT_R4);
      const char* const after[] = {"1..3: 1 2 3", "1..1: 0", "1..2: 0 0", "1..2: 0 0"};
      EXPECT_EQ(listed(sent.variable.v), after[which]) << element << " " << which;
    }
  }
}

TEST_F(ArraysTest, an_array_that_its_owner_holds_is_written_but_not_resized) {
  for (const USHORT feature : {FADF_FIXEDSIZE, FADF_STATIC, FADF_AUTO, USHORT{0}}) {
    for (const VARTYPE element : {VT_R4, VT_R8}) {
      const Sent sent(array(element, 1, {1, 2, 3}), kByRef);
      SAFEARRAY* const held = sent.variable.v.parray;
      held->fFeatures = static_cast<USHORT>(held->fFeatures | feature);
      if (feature == 0) SafeArrayLock(held);
      for (const std::int32_t what : {kResize, kErase}) {
        EXPECT_EQ(call(object, u"Singles", {sent.variant, i4(what).v}).scode, error_code(10));
        ASSERT_EQ(sent.variable.v.parray, held) << feature << element;
      }
      EXPECT_EQ(act(u"Singles", sent, kChange), "1..3: 1 2 3");
      EXPECT_EQ(listed(sent.variable.v), "1..3: -1 2 3") << feature << element;
      EXPECT_EQ(held->cLocks, feature == 0 ? 1U : 0U);
      if (feature == 0) SafeArrayUnlock(held);
      held->fFeatures = FADF_HAVEVARTYPE;
    }
  }
}

TEST_F(ArraysTest, an_array_that_cannot_be_locked_once_more_is_refused) {
  const struct {
    VARTYPE element;
    ULONG locks;
    std::int32_t act;
    int number;
    const char16_t* words;
  } rows[] = {{VT_R4, 0xFFFFFFFE, kRead, 0, u""},
              {VT_R4, 0xFFFFFFFF, kRead, 10, u"; it cannot be locked"},
              {VT_R8, 0xFFFFFFFF, kRead, 10, u"; it cannot be locked"},
              // A conversion takes the system's lock beside ours; it is refused at 65535.
              {VT_R8, 0xFFFD, kChange, 0, u""},
              {VT_R8, 0xFFFE, kChange, 10, u"; it cannot be locked"}};
  for (const auto& row : rows) {
    Sent sent(array(row.element, 1, {1, 2}), kByRef);
    ULONG& locks = sent.variable.v.parray->cLocks;
    locks = row.locks;
    const Answer answer = call(object, u"Singles", {sent.variant, i4(row.act).v});
    EXPECT_EQ(answer.scode, row.number == 0 ? S_OK : error_code(row.number)) << row.locks;
    EXPECT_TRUE(answer.words.ends_with(row.words)) << ascii(answer.words);
    EXPECT_EQ(locks, row.locks);
    BSTR out = nullptr;
    if (row.element == VT_R4) {
      EXPECT_EQ(object->Singles(&sent.variable.v.parray, kRead, &out),
                row.number == 0 ? S_OK : DISP_E_ARRAYISLOCKED);
      EXPECT_EQ(locks, row.locks);
    }
    SysFreeString(out);
    locks = 0;
  }
}

TEST_F(ArraysTest, what_is_no_fitting_array_is_refused_in_words) {
  // With one element that is no number.
  const auto with = [](Value made, int at, const VARIANT& element) {
    auto* place = static_cast<VARIANT*>(made.v.parray->pvData) + at;
    VariantClear(place);
    *place = element;
    return made;
  };
  const Value line = array(VT_VARIANT, 0, {1, 2, 3});
  const Value bad = with(line, 2, error(-5).v);
  const Value bad_table = with(array(VT_VARIANT, 1, {1, 2, 3, 4, 5, 6}, 2), 4, null().v);
  const Value dangling = with(line, 1, reference(VT_VARIANT, nullptr));
  const Value no_number = with(line, 1, reference(VT_R8, nullptr));
  const Value no_object = with(line, 1, reference(VT_DISPATCH, nullptr));
  CountingObject endless;  // whose value is a reference to itself
  IDispatch* itself = &endless;
  endless.default_value = reference(VT_DISPATCH, &itself);
  const Value round = with(line, 1, endless.default_value);
  const struct {
    const char16_t* member;
    Value sent;
    int number;
    std::string words;
  } rows[] = {
      {u"Singles", array(VT_R4, 1, {1, 2, 3, 4}, 2), 13,
       "must be a one-dimensional array of Single"},
      {u"Table", array(VT_R4, 1, {1, 2}), 13, "must be a two-dimensional array of Single"},
      {u"Doubles", r8(1), 13, "must be a one-dimensional array of Double"},
      {u"Longs", text(u"1"), 13, "must be a one-dimensional array of Long"},
      {u"Singles", array(VT_ERROR, 1, {0, 0}), 13, "; it has elements that are no numbers"},
      {u"Singles", array(VT_DISPATCH, 1, {0, 0}), 13, "; it has elements that are no numbers"},
      {u"Singles", bad, 13, "; its element (2) cannot be converted"},
      {u"Table", bad_table, 13, "; its element (2, 2) cannot be converted"},
      {u"Singles", dangling, 13, "; its element (1) cannot be converted"},
      {u"Singles", no_number, 13, "; its element (1) cannot be converted"},
      {u"Singles", no_object, 13, "; its element (1) cannot be converted"},
      {u"Singles", round, 13, "; its element (1) cannot be converted"},
      {u"Singles", array(VT_R8, 5, {1, -1e39}), 6, "; its element (6) cannot be converted"},
      {u"Longs", array(VT_R8, 1, {1, NAN}), 6, "; its element (2) cannot be converted"},
      {u"Longs", array(VT_R4, 1, {-3e9}), 6, "; its element (1) cannot be converted"},
  };
  for (const auto& row : rows) {
    for (const Form form : kForms) {
      const Sent sent(row.sent, form);
      const Answer answer = call(object, row.member, {sent.variant, i4(kRead).v});
      const std::string words = ascii(answer.words);
      EXPECT_EQ(answer.scode, error_code(row.number)) << words;
      EXPECT_EQ(answer.bad, 1U) << words;  // of rgvarg, which has the last argument first
      EXPECT_NE(words.find(row.words), std::string::npos) << words << " for " << row.words;
      const std::string place = std::string("argument '") +
                                (row.member == std::u16string(u"Table") ? "xT' of " : "xA' of ") +
                                ascii(row.member) + " ";
      EXPECT_NE(words.find(place), std::string::npos) << words;
    }
  }
  // Elements of the host's type cannot take what the member made of them.
  for (const std::int32_t what : {kChange, kResize}) {
    const Sent bytes(array(VT_UI1, 1, {1, 1}), kByRef);
    const Answer answer = call(object, u"Singles", {bytes.variant, i4(what).v});
    EXPECT_EQ(answer.scode, error_code(6)) << what;
    EXPECT_EQ(answer.words, u"Overflow: argument 'xA' of Singles cannot take its result") << what;
    EXPECT_EQ(listed(bytes.variable.v), "1..2: 1 1") << what;
  }
}

}  // namespace
}  // namespace vqmath63::automation::test
