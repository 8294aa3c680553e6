// Variants: what they own, copying with and without their references.
#include <gtest/gtest.h>

#include "system_fakes.hpp"

namespace vqmath63::automation::system::test {
namespace {

TEST(SystemVariant, ClearingGivesBackWhatIsOwnedAndNothingElse) {
  CountingObject a;
  IDispatch* held = &a;
  VARIANT v;
  std::memset(&v, 0xCC, sizeof v);
  VariantInit(&v);
  EXPECT_EQ(v.vt, VT_EMPTY);
  v.vt = VT_DISPATCH;
  v.pdispVal = &a;
  a.AddRef();
  EXPECT_EQ(VariantClear(&v), S_OK);
  EXPECT_EQ(v.vt, VT_EMPTY);
  EXPECT_EQ(a.references, 0);
  v = reference(VT_DISPATCH, &held);
  EXPECT_EQ(VariantClear(&v), S_OK);
  EXPECT_EQ(a.released, 1);
  v.vt = VT_UNKNOWN;
  v.punkVal = nullptr;
  EXPECT_EQ(VariantClear(&v), S_OK);

  for (const int vt : {15, 24, 37, 0x8003, 0x1003, VT_BYREF | VT_EMPTY, VT_ARRAY | VT_NULL, 12}) {
    v.vt = static_cast<VARTYPE>(vt);
    v.parray = nullptr;
    EXPECT_EQ(VariantClear(&v), DISP_E_BADVARTYPE) << vt;
    EXPECT_EQ(v.vt, vt) << vt;
    VARIANT to{};
    EXPECT_EQ(VariantCopy(&to, &v), DISP_E_BADVARTYPE) << vt;
    EXPECT_EQ(VariantCopyInd(&to, &v), DISP_E_BADVARTYPE) << vt;
  }
  EXPECT_EQ(VariantClear(nullptr), E_INVALIDARG);
  v.vt = VT_EMPTY;
  EXPECT_EQ(VariantCopy(nullptr, &v), E_INVALIDARG);
  EXPECT_EQ(VariantCopyInd(&v, nullptr), E_INVALIDARG);
}

TEST(SystemVariant, ALockedArrayStays) {
  VARIANT v{};
  v.vt = VT_ARRAY | VT_R4;
  v.parray = SafeArrayCreateVector(VT_R4, 0, 2);
  SafeArrayLock(v.parray);
  EXPECT_EQ(VariantClear(&v), DISP_E_ARRAYISLOCKED);
  EXPECT_EQ(v.vt, VT_ARRAY | VT_R4);
  const Value words = text(u"x");
  EXPECT_EQ(VariantCopy(&v, &words.v), DISP_E_ARRAYISLOCKED);
  EXPECT_EQ(v.vt, VT_ARRAY | VT_R4);
  SafeArrayUnlock(v.parray);
  EXPECT_EQ(VariantClear(&v), S_OK);
  v.vt = VT_ARRAY | VT_R4;
  v.parray = nullptr;
  EXPECT_EQ(VariantClear(&v), S_OK) << "an array that was never made";
}

TEST(SystemVariant, CopiesOwnTheirOwn) {
  CountingObject a;
  Value array = bare(VT_ARRAY | VT_VARIANT);
  array.v.parray = SafeArrayCreateVector(VT_VARIANT, 0, 1);
  static_cast<VARIANT*>(array.v.parray->pvData)->vt = VT_DISPATCH;
  static_cast<VARIANT*>(array.v.parray->pvData)->pdispVal = &a;
  a.AddRef();
  Value copy;
  EXPECT_EQ(VariantCopy(&copy.v, &array.v), S_OK);
  EXPECT_NE(copy.v.parray, array.v.parray);
  EXPECT_EQ(a.references, 2);
  EXPECT_EQ(VariantCopy(&copy.v, &copy.v), S_OK);
  EXPECT_EQ(a.references, 2);
  const Value words = text(std::u16string_view(u"a\0b", 3));
  EXPECT_EQ(VariantCopy(&copy.v, &words.v), S_OK);
  EXPECT_EQ(a.references, 1);
  EXPECT_NE(copy.v.bstrVal, words.v.bstrVal);
  EXPECT_EQ(shown(copy.v), shown(words.v));
  const Value no_text = bare(VT_BSTR);
  EXPECT_EQ(VariantCopy(&copy.v, &no_text.v), S_OK);
  EXPECT_EQ(copy.v.vt, VT_BSTR);
  EXPECT_EQ(copy.v.bstrVal, nullptr);
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
  for (const VARIANT* from : {&inner, &outer}) {
    EXPECT_EQ(VariantCopyInd(&behind.v, from), S_OK);
    EXPECT_EQ(shown(behind.v), shown(r8(2.5).v));
  }
  EXPECT_EQ(VariantCopyInd(&behind.v, &third), E_INVALIDARG);
  inner.pdblVal = nullptr;
  EXPECT_EQ(VariantCopyInd(&behind.v, &inner), E_INVALIDARG);
  EXPECT_EQ(VariantCopyInd(&behind.v, &outer), E_INVALIDARG);
  EXPECT_EQ(shown(behind.v), shown(r8(2.5).v));

  DECIMAL decimal{};
  decimal.scale = 2;
  decimal.Lo64 = 314;
  const VARIANT to_decimal = reference(VT_DECIMAL, &decimal);
  EXPECT_EQ(VariantCopyInd(&behind.v, &to_decimal), S_OK);
  EXPECT_EQ(behind.v.vt, VT_DECIMAL);
  EXPECT_TRUE(behind.v.decVal.scale == 2 && behind.v.decVal.Lo64 == 314);

  Value array = bare(VT_ARRAY | VT_I2);
  array.v.parray = SafeArrayCreateVector(VT_I2, 3, 2);
  const VARIANT to_array = reference(VT_ARRAY | VT_I2, &array.v.parray);
  EXPECT_EQ(VariantCopyInd(&behind.v, &to_array), S_OK);
  EXPECT_EQ(behind.v.vt, VT_ARRAY | VT_I2);
  EXPECT_NE(behind.v.parray, array.v.parray);
  EXPECT_EQ(behind.v.parray->rgsabound[0].lLbound, 3);
}

}  // namespace
}  // namespace vqmath63::automation::system::test
