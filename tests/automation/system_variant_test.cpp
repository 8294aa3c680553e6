// Variants: what they own, copying with and without their references.
#include <gtest/gtest.h>

#include "counted_memory.hpp"
#include "system_fakes.hpp"

namespace vqmath63::automation::system::test {
namespace {

TEST(SystemVariant, ClearingGivesBackWhatIsOwnedAndNothingElse) {
  CountingObject a;
  IDispatch* held = &a;
  VARIANT v, to{};
  std::memset(&v, 0xCC, sizeof v);
  VariantInit(&v);
  EXPECT_EQ(v.vt, VT_EMPTY);
  v.vt = VT_DISPATCH;
  v.pdispVal = &a;
  a.AddRef();
  EXPECT_EQ(VariantClear(&v), S_OK);
  EXPECT_EQ(v.vt, VT_EMPTY);
  v = reference(VT_DISPATCH, &held);
  EXPECT_EQ(VariantClear(&v), S_OK);
  EXPECT_EQ(a.released, 1);
  v.parray = nullptr;
  for (const int vt : {+VT_UNKNOWN, VT_ARRAY | VT_R4}) {  // none, and never made
    v.vt = static_cast<VARTYPE>(vt);
    EXPECT_EQ(VariantClear(&v), S_OK);
  }
  for (const int vt : {15, 24, 37, 0x8003, 0x1003, VT_BYREF | VT_EMPTY, VT_ARRAY | VT_NULL, 12}) {
    v.vt = static_cast<VARTYPE>(vt);
    for (const HRESULT hr : {VariantClear(&v), VariantCopy(&to, &v), VariantCopyInd(&to, &v)}) {
      EXPECT_EQ(hr, DISP_E_BADVARTYPE) << vt;
    }
    EXPECT_EQ(v.vt, vt) << vt;
  }
  EXPECT_EQ(VariantClear(nullptr), E_INVALIDARG);
  EXPECT_EQ(VariantCopy(nullptr, &to), E_INVALIDARG);
  EXPECT_EQ(VariantCopyInd(&to, nullptr), E_INVALIDARG);
}

TEST(SystemVariant, ALockedArrayStays) {
  VARIANT v{};
  v.vt = VT_ARRAY | VT_R4;
  v.parray = SafeArrayCreateVector(VT_R4, 0, 2);
  SafeArrayLock(v.parray);
  const Value words = text(u"x");
  EXPECT_EQ(VariantClear(&v), DISP_E_ARRAYISLOCKED);
  EXPECT_EQ(VariantCopy(&v, &words.v), DISP_E_ARRAYISLOCKED);
  EXPECT_EQ(v.vt, VT_ARRAY | VT_R4);
  SafeArrayUnlock(v.parray);
  EXPECT_EQ(VariantClear(&v), S_OK);
}

TEST(SystemVariant, CopiesOwnTheirOwn) {
  const long blocks = automation::test::counted_memory().blocks;
  CountingObject a;
  {
    const Value held = object(a), words = text({u"a\0b", 3}), no_text = bare(VT_BSTR);
    Value array = bare(VT_ARRAY | VT_VARIANT), copy;
    array.v.parray = SafeArrayCreateVector(VT_VARIANT, 3, 1);
    VariantCopy(static_cast<VARIANT*>(array.v.parray->pvData), &held.v);
    const VARIANT to_array = reference(VT_ARRAY | VT_VARIANT, &array.v.parray);
    const VARIANT* const all[] = {&array.v, &words.v, &no_text.v, &held.v, &to_array, &words.v};
    for (const VARIANT* from : all) {
      EXPECT_EQ(VariantCopyInd(&copy.v, from), S_OK);
      EXPECT_EQ(VariantCopy(&copy.v, &copy.v), S_OK);
      EXPECT_EQ(copy.v.vt, from->vt & ~VT_BYREF);
      const bool is_array = (from->vt & VT_ARRAY) != 0, is_object = from == &held.v;
      EXPECT_EQ(a.references, is_array || is_object ? 3 : 2);
      EXPECT_TRUE(is_array
                      ? copy.v.parray != array.v.parray && copy.v.parray->rgsabound[0].lLbound == 3
                      : shown(copy.v) == shown(*from));
    }
  }
  EXPECT_EQ(a.references, 0);
  EXPECT_EQ(automation::test::counted_memory().blocks, blocks);
}

TEST(SystemVariant, CopyingKeepsAReferenceAndCopyIndFollowsIt) {
  double number = 2.5;
  VARIANT inner = reference(VT_R8, &number);
  Value same, behind;
  EXPECT_EQ(VariantCopy(&same.v, &inner), S_OK);
  EXPECT_EQ(same.v.vt, VT_BYREF | VT_R8);
  EXPECT_EQ(same.v.pdblVal, &number);
  EXPECT_EQ(VariantCopyInd(&same.v, &same.v), S_OK) << "in place";
  EXPECT_EQ(shown(same.v), shown(r8(2.5).v));
  VARIANT outer = reference(VT_VARIANT, &inner), third = reference(VT_VARIANT, &outer);
  EXPECT_EQ(VariantCopyInd(&behind.v, &outer), S_OK);
  inner.pdblVal = nullptr;
  for (const VARIANT* from : {&inner, &outer, &third}) {
    EXPECT_EQ(VariantCopyInd(&behind.v, from), E_INVALIDARG);
    EXPECT_EQ(shown(behind.v), shown(r8(2.5).v));
  }
  inner.pdblVal = &number;
  EXPECT_EQ(VariantCopyInd(&behind.v, &third), E_INVALIDARG);

  DECIMAL decimal{};
  decimal.scale = 2;
  decimal.Lo64 = 314;
  const VARIANT to_decimal = reference(VT_DECIMAL, &decimal);
  EXPECT_EQ(VariantCopyInd(&behind.v, &to_decimal), S_OK);
  EXPECT_EQ(behind.v.vt, VT_DECIMAL);
  EXPECT_TRUE(behind.v.decVal.scale == 2 && behind.v.decVal.Lo64 == 314);
}

}  // namespace
}  // namespace vqmath63::automation::system::test
