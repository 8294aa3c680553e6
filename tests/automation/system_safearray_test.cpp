// Safe arrays: layout, life, what elements own, resizing, locks.
#include <gtest/gtest.h>

#include <vector>

#include "system_fakes.hpp"

namespace vqmath63::automation::system::test {
namespace {

SAFEARRAY* make(VARTYPE vt, std::vector<SAFEARRAYBOUND> bounds) {
  return SafeArrayCreate(vt, static_cast<UINT>(bounds.size()), bounds.data());
}

VARTYPE type_of(SAFEARRAY* array) {
  VARTYPE vt = VT_ILLEGAL;
  EXPECT_EQ(SafeArrayGetVartype(array, &vt), S_OK);
  return vt;
}

TEST(SystemSafeArray, DescriptorsAreLaidOutAsHostsReadThem) {
  struct Row {
    const char* name;
    VARTYPE vt;
    ULONG size;
    USHORT features;
  };
  const ULONG pointer = static_cast<ULONG>(sizeof(void*));
  const Row rows[] = {
      {"byte", VT_UI1, 1, 0x80},
      {"boolean", VT_BOOL, 2, 0x80},
      {"integer", VT_I2, 2, 0x80},
      {"long", VT_I4, 4, 0x80},
      {"single", VT_R4, 4, 0x80},
      {"double", VT_R8, 8, 0x80},
      {"date", VT_DATE, 8, 0x80},
      {"currency", VT_CY, 8, 0x80},
      {"error", VT_ERROR, 4, 0x80},
      {"decimal", VT_DECIMAL, 16, 0x80},
      {"text", VT_BSTR, pointer, 0x180},
      {"variant", VT_VARIANT, 8 + 2 * pointer, 0x880},
      {"unknown", VT_UNKNOWN, pointer, 0x240},
      {"dispatch", VT_DISPATCH, pointer, 0x440},
  };
  for (const Row& row : rows) {
    SAFEARRAY* array = SafeArrayCreateVector(row.vt, -1, 3);
    ASSERT_NE(array, nullptr) << row.name;
    EXPECT_EQ(array->cDims, 1) << row.name;
    EXPECT_EQ(array->fFeatures, row.features) << row.name;
    EXPECT_EQ(SafeArrayGetElemsize(array), row.size) << row.name;
    EXPECT_EQ(type_of(array), row.vt) << row.name;
    if ((row.features & FADF_HAVEVARTYPE) != 0) {
      std::uint32_t hidden;
      std::memcpy(&hidden, reinterpret_cast<const char*>(array) - 4, 4);
      EXPECT_EQ(hidden, row.vt) << row.name;
    } else {
      GUID hidden;
      std::memcpy(&hidden, reinterpret_cast<const char*>(array) - 16, 16);
      EXPECT_TRUE(hidden == (row.vt == VT_UNKNOWN ? IID_IUnknown : IID_IDispatch)) << row.name;
    }
    const std::vector<char> zeros(3 * row.size);
    EXPECT_EQ(std::memcmp(array->pvData, zeros.data(), zeros.size()), 0) << row.name;
    EXPECT_EQ(SafeArrayDestroy(array), S_OK) << row.name;
  }
}

TEST(SystemSafeArray, BoundsStandReversedAndTheFirstIndexMovesFastest) {
  SAFEARRAY* array = make(VT_I4, {{2, 1}, {3, 0}, {4, -5}});
  ASSERT_NE(array, nullptr);
  EXPECT_EQ(SafeArrayGetDim(array), 3u);
  EXPECT_EQ(array->rgsabound[0].cElements, 4u);
  EXPECT_EQ(array->rgsabound[2].lLbound, 1);
  LONG low = 0, high = 0;
  EXPECT_EQ(SafeArrayGetLBound(array, 1, &low), S_OK);
  EXPECT_EQ(SafeArrayGetUBound(array, 1, &high), S_OK);
  EXPECT_EQ(low, 1);
  EXPECT_EQ(high, 2);
  EXPECT_EQ(SafeArrayGetLBound(array, 3, &low), S_OK);
  EXPECT_EQ(SafeArrayGetUBound(array, 3, &high), S_OK);
  EXPECT_EQ(low, -5);
  EXPECT_EQ(high, -2);
  EXPECT_EQ(SafeArrayGetLBound(array, 0, &low), DISP_E_BADINDEX);
  EXPECT_EQ(SafeArrayGetUBound(array, 4, &high), DISP_E_BADINDEX);

  LONG at[] = {2, 1, -4};
  LONG value = 42;
  EXPECT_EQ(SafeArrayPutElement(array, at, &value), S_OK);
  // (2-1) + 2 * (1-0) + 2*3 * (-4+5)
  EXPECT_EQ(static_cast<LONG*>(array->pvData)[9], 42);
  LONG back = 0;
  EXPECT_EQ(SafeArrayGetElement(array, at, &back), S_OK);
  EXPECT_EQ(back, 42);
  void* place = nullptr;
  EXPECT_EQ(SafeArrayPtrOfIndex(array, at, &place), S_OK);
  EXPECT_EQ(place, static_cast<LONG*>(array->pvData) + 9);

  const LONG outside[][3] = {{0, 0, -5}, {3, 0, -5}, {1, -1, -5},         {1, 3, -5},
                             {1, 0, -6}, {1, 0, -1}, {2147483647, 0, -5}, {1, 0, -2147483647 - 1}};
  for (const auto& row : outside) {
    LONG index[] = {row[0], row[1], row[2]};
    EXPECT_EQ(SafeArrayPtrOfIndex(array, index, &place), DISP_E_BADINDEX)
        << row[0] << ' ' << row[1] << ' ' << row[2];
  }
  EXPECT_EQ(SafeArrayDestroy(array), S_OK);
}

TEST(SystemSafeArray, WhatCannotBeIsRefused) {
  const LONG high = 2147483647;
  const LONG low = -high - 1;
  struct Row {
    const char* name;
    VARTYPE vt;
    std::vector<SAFEARRAYBOUND> bounds;
  };
  const Row rows[] = {
      {"no dimension", VT_R4, {}},
      {"65 dimensions", VT_R4, std::vector<SAFEARRAYBOUND>(65, {1, 0})},
      {"no type", VT_EMPTY, {{1, 0}}},
      {"null elements", VT_NULL, {{1, 0}}},
      {"by reference", VT_BYREF | VT_R4, {{1, 0}}},
      {"arrays", VT_ARRAY | VT_R4, {{1, 0}}},
      {"records", VT_RECORD, {{1, 0}}},
      {"unknown type", 15, {{1, 0}}},
      {"upper bound too high", VT_R4, {{2, high}}},
      {"empty below the lowest", VT_R4, {{0, low}}},
      {"size beyond any memory", VT_R8, {{0xFFFFFFFFu, low}, {0xFFFFFFFFu, low}}},
      {"size beyond 64 bits", VT_VARIANT, {{0xFFFFFFF0u, low}, {0xFFFFFFF0u, low}, {16, 0}}},
  };
  for (const Row& row : rows) EXPECT_EQ(make(row.vt, row.bounds), nullptr) << row.name;
  EXPECT_EQ(SafeArrayCreate(VT_R4, 1, nullptr), nullptr);

  SAFEARRAY* most = make(VT_R4, std::vector<SAFEARRAYBOUND>(64, {1, 0}));
  EXPECT_NE(most, nullptr);
  EXPECT_EQ(SafeArrayDestroy(most), S_OK);
  SAFEARRAY* edge = make(VT_R4, {{1, high}});
  LONG upper = 0;
  EXPECT_EQ(SafeArrayGetUBound(edge, 1, &upper), S_OK);
  EXPECT_EQ(upper, high);
  EXPECT_EQ(SafeArrayDestroy(edge), S_OK);
}

TEST(SystemSafeArray, EmptyArraysHaveBoundsAndNoElements) {
  SAFEARRAY* array = make(VT_BSTR, {{0, 0}, {0xFFFFFFFFu, -2147483647 - 1}});
  ASSERT_NE(array, nullptr);
  LONG upper = 0;
  EXPECT_EQ(SafeArrayGetUBound(array, 1, &upper), S_OK);
  EXPECT_EQ(upper, -1);
  void* data = nullptr;
  EXPECT_EQ(SafeArrayAccessData(array, &data), S_OK);
  EXPECT_NE(data, nullptr);
  EXPECT_EQ(SafeArrayUnaccessData(array), S_OK);
  LONG at[] = {0, 0};
  EXPECT_EQ(SafeArrayPtrOfIndex(array, at, &data), DISP_E_BADINDEX);
  SAFEARRAY* copy = nullptr;
  EXPECT_EQ(SafeArrayCopy(array, &copy), S_OK);
  EXPECT_EQ(SafeArrayDestroy(copy), S_OK);
  EXPECT_EQ(SafeArrayDestroy(array), S_OK);
}

TEST(SystemSafeArray, NullArgumentsAreAnswered) {
  SAFEARRAY* array = SafeArrayCreateVector(VT_R4, 0, 1);
  LONG at[] = {0};
  void* place = nullptr;
  VARTYPE vt = 0;
  float value = 0;
  SAFEARRAYBOUND bound{1, 0};
  EXPECT_EQ(SafeArrayDestroy(nullptr), S_OK);
  EXPECT_EQ(SafeArrayDestroyData(nullptr), E_INVALIDARG);
  EXPECT_EQ(SafeArrayRedim(nullptr, &bound), E_INVALIDARG);
  EXPECT_EQ(SafeArrayRedim(array, nullptr), E_INVALIDARG);
  EXPECT_EQ(SafeArrayGetDim(nullptr), 0u);
  EXPECT_EQ(SafeArrayGetElemsize(nullptr), 0u);
  EXPECT_EQ(SafeArrayGetLBound(array, 1, nullptr), E_INVALIDARG);
  EXPECT_EQ(SafeArrayGetUBound(nullptr, 1, at), E_INVALIDARG);
  EXPECT_EQ(SafeArrayAccessData(array, nullptr), E_INVALIDARG);
  EXPECT_EQ(SafeArrayLock(nullptr), E_INVALIDARG);
  EXPECT_EQ(SafeArrayUnlock(nullptr), E_INVALIDARG);
  EXPECT_EQ(SafeArrayGetElement(array, nullptr, &value), E_INVALIDARG);
  EXPECT_EQ(SafeArrayGetElement(array, at, nullptr), E_INVALIDARG);
  EXPECT_EQ(SafeArrayPutElement(array, at, nullptr), E_INVALIDARG);
  EXPECT_EQ(SafeArrayPtrOfIndex(nullptr, at, &place), E_INVALIDARG);
  EXPECT_EQ(SafeArrayCopy(array, nullptr), E_INVALIDARG);
  SAFEARRAY* copy = array;
  EXPECT_EQ(SafeArrayCopy(nullptr, &copy), S_OK);
  EXPECT_EQ(copy, nullptr);
  EXPECT_EQ(SafeArrayGetVartype(nullptr, &vt), E_INVALIDARG);
  EXPECT_EQ(array->cLocks, 0u) << "no failed call leaves a lock";
  EXPECT_EQ(SafeArrayDestroy(array), S_OK);
}

TEST(SystemSafeArray, ElementsOwnTheirInterfaces) {
  CountingObject a, b;
  SAFEARRAY* array = SafeArrayCreateVector(VT_DISPATCH, 1, 3);
  LONG at[] = {1};
  EXPECT_EQ(SafeArrayPutElement(array, at, static_cast<IDispatch*>(&a)), S_OK);
  EXPECT_EQ(SafeArrayPutElement(array, at, static_cast<IDispatch*>(&a)), S_OK);
  EXPECT_EQ(a.references, 1);
  at[0] = 3;
  EXPECT_EQ(SafeArrayPutElement(array, at, static_cast<IDispatch*>(&b)), S_OK);
  IDispatch* got = nullptr;
  EXPECT_EQ(SafeArrayGetElement(array, at, &got), S_OK);
  EXPECT_EQ(got, &b);
  EXPECT_EQ(b.references, 2);
  got->Release();

  SAFEARRAY* copy = nullptr;
  EXPECT_EQ(SafeArrayCopy(array, &copy), S_OK);
  EXPECT_EQ(type_of(copy), VT_DISPATCH);
  EXPECT_EQ(a.references, 2);
  EXPECT_EQ(b.references, 2);
  SAFEARRAYBOUND shorter{2, 1};
  EXPECT_EQ(SafeArrayRedim(copy, &shorter), S_OK);
  EXPECT_EQ(a.references, 2);
  EXPECT_EQ(b.references, 1);
  at[0] = 1;
  EXPECT_EQ(SafeArrayPutElement(copy, at, nullptr), S_OK);
  EXPECT_EQ(a.references, 1);
  EXPECT_EQ(SafeArrayDestroy(copy), S_OK);
  EXPECT_EQ(SafeArrayDestroy(array), S_OK);
  EXPECT_EQ(a.references, 0);
  EXPECT_EQ(b.references, 0);
}

TEST(SystemSafeArray, VariantElementsOwnWhatTheyHold) {
  CountingObject a;
  SAFEARRAY* array = SafeArrayCreateVector(VT_VARIANT, 0, 4);
  {
    const Value held = object(a);
    const Value words = text(u"Bo\u00D0");
    LONG at[] = {0};
    for (; at[0] < 4; ++at[0]) {
      VARIANT put = at[0] == 1 ? words.v : held.v;
      EXPECT_EQ(SafeArrayPutElement(array, at, &put), S_OK);
    }
    EXPECT_EQ(a.references, 4);
  }
  EXPECT_EQ(a.references, 3);
  LONG at[] = {1};
  VARIANT got;
  std::memset(&got, 0xCC, sizeof got);
  EXPECT_EQ(SafeArrayGetElement(array, at, &got), S_OK);
  EXPECT_EQ(characters(got.bstrVal), u"Bo\u00D0");
  EXPECT_NE(got.bstrVal, static_cast<VARIANT*>(array->pvData)[1].bstrVal);
  EXPECT_EQ(VariantClear(&got), S_OK);

  SAFEARRAY* copy = nullptr;
  EXPECT_EQ(SafeArrayCopy(array, &copy), S_OK);
  EXPECT_EQ(a.references, 6);
  EXPECT_EQ(SafeArrayDestroyData(copy), S_OK);
  EXPECT_EQ(a.references, 3);
  EXPECT_EQ(copy->pvData, nullptr);
  at[0] = 0;
  EXPECT_EQ(SafeArrayGetElement(copy, at, &got), E_UNEXPECTED);
  SAFEARRAY* bare = nullptr;
  EXPECT_EQ(SafeArrayCopy(copy, &bare), S_OK);
  EXPECT_EQ(SafeArrayDestroy(bare), S_OK);
  SAFEARRAYBOUND again{2, 0};
  EXPECT_EQ(SafeArrayRedim(copy, &again), S_OK);
  EXPECT_EQ(SafeArrayGetElement(copy, at, &got), S_OK);
  EXPECT_EQ(got.vt, VT_EMPTY);
  EXPECT_EQ(SafeArrayDestroy(copy), S_OK);

  SAFEARRAYBOUND none{0, 0};
  EXPECT_EQ(SafeArrayRedim(array, &none), S_OK);
  EXPECT_EQ(a.references, 0);
  EXPECT_EQ(SafeArrayDestroy(array), S_OK);
}

TEST(SystemSafeArray, TextElementsAreCopied) {
  SAFEARRAY* array = SafeArrayCreateVector(VT_BSTR, 0, 2);
  BSTR inner = SysAllocStringLen(u"a\0b", 3);
  LONG at[] = {0};
  EXPECT_EQ(SafeArrayPutElement(array, at, inner), S_OK);
  BSTR* data = static_cast<BSTR*>(array->pvData);
  EXPECT_NE(data[0], inner);
  EXPECT_EQ(SafeArrayPutElement(array, at, data[0]), S_OK) << "its own text again";
  EXPECT_EQ(characters(data[0]), characters(inner));
  SysFreeString(inner);
  SAFEARRAY* copy = nullptr;
  EXPECT_EQ(SafeArrayCopy(array, &copy), S_OK);
  EXPECT_EQ(SafeArrayPutElement(array, at, nullptr), S_OK);
  EXPECT_EQ(data[0], nullptr);
  BSTR got = nullptr;
  EXPECT_EQ(SafeArrayGetElement(copy, at, &got), S_OK);
  EXPECT_EQ(characters(got), std::u16string(u"a\0b", 3));
  SysFreeString(got);
  at[0] = 1;
  EXPECT_EQ(SafeArrayGetElement(copy, at, &got), S_OK);
  EXPECT_EQ(got, nullptr);
  EXPECT_EQ(SafeArrayDestroy(copy), S_OK);
  EXPECT_EQ(SafeArrayDestroy(array), S_OK);
}

TEST(SystemSafeArray, ResizingKeepsWhatRemainsAndClearsWhatIsNew) {
  SAFEARRAY* array = make(VT_R4, {{2, 0}, {3, 1}});
  auto* data = static_cast<float*>(array->pvData);
  for (int i = 0; i < 6; ++i) data[i] = static_cast<float>(i + 1);
  struct Row {
    SAFEARRAYBOUND last;
    std::vector<float> want;
  };
  const Row rows[] = {
      {{4, -3}, {1, 2, 3, 4, 5, 6, 0, 0}},
      {{1, 5}, {1, 2}},
      {{1, 0}, {1, 2}},
      {{0, 0}, {}},
      {{2, 1}, {0, 0, 0, 0}},
  };
  for (const Row& row : rows) {
    SAFEARRAYBOUND last = row.last;
    ASSERT_EQ(SafeArrayRedim(array, &last), S_OK);
    LONG low = 99;
    EXPECT_EQ(SafeArrayGetLBound(array, 2, &low), S_OK);
    EXPECT_EQ(low, row.last.lLbound);
    data = static_cast<float*>(array->pvData);
    EXPECT_EQ(std::vector<float>(data, data + row.want.size()), row.want) << row.last.cElements;
  }
  EXPECT_EQ(array->rgsabound[1].cElements, 2u) << "the first dimension is as it was";
  EXPECT_EQ(SafeArrayDestroy(array), S_OK);
}

TEST(SystemSafeArray, WhatCannotBeResizedStaysAsItIs) {
  SAFEARRAY* array = make(VT_R8, {{0xFFFFu, 0}, {1, 0}, {1, 0}});
  SAFEARRAYBOUND huge{0xFFFFFFFFu, -2147483647 - 1};
  SAFEARRAYBOUND beyond{3, 2147483646};
  array->rgsabound[1].cElements = 0x7FFFFFFF;
  EXPECT_EQ(SafeArrayRedim(array, &huge), E_OUTOFMEMORY);
  array->rgsabound[1].cElements = 1;
  EXPECT_EQ(SafeArrayRedim(array, &beyond), E_INVALIDARG);
  EXPECT_EQ(array->rgsabound[0].cElements, 1u);
  SAFEARRAYBOUND two{2, 0};
  EXPECT_EQ(SafeArrayLock(array), S_OK);
  EXPECT_EQ(SafeArrayRedim(array, &two), DISP_E_ARRAYISLOCKED);
  EXPECT_EQ(SafeArrayUnlock(array), S_OK);
  for (const USHORT flag : {FADF_FIXEDSIZE, FADF_STATIC, FADF_AUTO, FADF_EMBEDDED}) {
    array->fFeatures |= flag;
    EXPECT_EQ(SafeArrayRedim(array, &two), DISP_E_ARRAYISLOCKED) << flag;
    array->fFeatures = static_cast<USHORT>(array->fFeatures & ~flag);
  }
  EXPECT_EQ(array->rgsabound[0].cElements, 1u);
  EXPECT_EQ(SafeArrayRedim(array, &two), S_OK);
  EXPECT_EQ(SafeArrayDestroy(array), S_OK);
}

TEST(SystemSafeArray, LocksAreCountedAndKeepTheArray) {
  SAFEARRAY* array = SafeArrayCreateVector(VT_R4, 0, 2);
  EXPECT_EQ(SafeArrayUnlock(array), E_UNEXPECTED);
  void* data = nullptr;
  EXPECT_EQ(SafeArrayAccessData(array, &data), S_OK);
  EXPECT_EQ(data, array->pvData);
  EXPECT_EQ(SafeArrayLock(array), S_OK);
  EXPECT_EQ(array->cLocks, 2u);
  EXPECT_EQ(SafeArrayDestroy(array), DISP_E_ARRAYISLOCKED);
  EXPECT_EQ(SafeArrayDestroyData(array), DISP_E_ARRAYISLOCKED);
  EXPECT_EQ(SafeArrayUnaccessData(array), S_OK);
  EXPECT_EQ(SafeArrayDestroy(array), DISP_E_ARRAYISLOCKED);
  EXPECT_EQ(SafeArrayUnlock(array), S_OK);
  array->cLocks = 0xFFFF;
  EXPECT_EQ(SafeArrayLock(array), E_UNEXPECTED);
  EXPECT_EQ(SafeArrayAccessData(array, &data), E_UNEXPECTED);
  EXPECT_EQ(array->cLocks, 0xFFFFu);
  array->cLocks = 0;
  EXPECT_EQ(SafeArrayDestroy(array), S_OK);
}

TEST(SystemSafeArray, CodeRunByAVanishingElementCannotTakeTheArrayAway) {
  CountingObject a;
  SAFEARRAY* array = SafeArrayCreateVector(VT_UNKNOWN, 0, 1);
  LONG at[] = {0};
  EXPECT_EQ(SafeArrayPutElement(array, at, static_cast<IUnknown*>(&a)), S_OK);
  a.context = array;
  a.on_release = [](CountingObject& self) {
    auto* whole = static_cast<SAFEARRAY*>(self.context);
    SAFEARRAYBOUND none{0, 0};
    EXPECT_EQ(SafeArrayRedim(whole, &none), DISP_E_ARRAYISLOCKED);
    EXPECT_EQ(SafeArrayDestroy(whole), DISP_E_ARRAYISLOCKED);
    EXPECT_EQ(*static_cast<void**>(whole->pvData), nullptr);
  };
  EXPECT_EQ(SafeArrayDestroy(array), S_OK);
  EXPECT_EQ(a.released, 1);
}

TEST(SystemSafeArray, BorrowedMemoryIsClearedAndLeftInPlace) {
  double numbers[2] = {1.5, 2.5};
  SAFEARRAY borrowed{1, FADF_AUTO | FADF_FIXEDSIZE, 8, 0, numbers, {{2, 10}}};
  VARTYPE vt = 0;
  EXPECT_EQ(SafeArrayGetVartype(&borrowed, &vt), E_INVALIDARG);
  SAFEARRAY* copy = nullptr;
  EXPECT_EQ(SafeArrayCopy(&borrowed, &copy), S_OK);
  EXPECT_EQ(copy->fFeatures, 0) << "the copy owns its memory";
  EXPECT_EQ(static_cast<double*>(copy->pvData)[1], 2.5);
  EXPECT_EQ(copy->rgsabound[0].lLbound, 10);
  EXPECT_EQ(SafeArrayDestroy(copy), S_OK);
  EXPECT_EQ(SafeArrayDestroy(&borrowed), S_OK);
  EXPECT_EQ(numbers[0], 0);
  EXPECT_EQ(numbers[1], 0);
  EXPECT_EQ(borrowed.pvData, numbers);
}

}  // namespace
}  // namespace vqmath63::automation::system::test
