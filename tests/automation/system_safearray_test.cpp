// Safe arrays: layout, life, what elements own, resizing, locks.
#include <gtest/gtest.h>

#include <numeric>
#include <vector>

#include "counted_memory.hpp"
#include "system_fakes.hpp"

namespace vqmath63::automation::system::test {
namespace {

// An array that is destroyed at its end, which has to do well.
struct Array {
  SAFEARRAY* array;
  ~Array() { EXPECT_EQ(SafeArrayDestroy(array), S_OK); }
  operator SAFEARRAY*() const { return array; }
  SAFEARRAY* operator->() const { return array; }
  template <class T>
  T* data() const {
    return static_cast<T*>(array->pvData);
  }
};

SAFEARRAY* make(VARTYPE vt, std::vector<SAFEARRAYBOUND> bounds) {
  return SafeArrayCreate(vt, static_cast<UINT>(bounds.size()), bounds.data());
}

SAFEARRAY* copy_of(SAFEARRAY* array) {
  SAFEARRAY* copy = nullptr;
  EXPECT_EQ(SafeArrayCopy(array, &copy), S_OK);
  return copy;
}

HRESULT put(SAFEARRAY* array, LONG at, void* element) {
  return SafeArrayPutElement(array, &at, element);
}

HRESULT get(SAFEARRAY* array, LONG at, void* element) {
  return SafeArrayGetElement(array, &at, element);
}

HRESULT resize(SAFEARRAY* array, SAFEARRAYBOUND last) {
  return SafeArrayRedim(array, &last);
}

VARTYPE type_of(SAFEARRAY* array) {
  VARTYPE vt = VT_ILLEGAL;
  EXPECT_EQ(SafeArrayGetVartype(array, &vt), S_OK);
  return vt;
}

// "low..high" of a dimension.
std::string bounds_of(SAFEARRAY* array, UINT dimension) {
  LONG low = 99, high = 99;
  EXPECT_EQ(SafeArrayGetLBound(array, dimension, &low), S_OK);
  EXPECT_EQ(SafeArrayGetUBound(array, dimension, &high), S_OK);
  return std::to_string(low) + ".." + std::to_string(high);
}

TEST(SystemSafeArray, DescriptorsAreLaidOutAsHostsReadThem) {
  each_row("automation.tsv", "array elements", 14, [](const TableRow& row) {
    const VARTYPE vt = type_named(row["type"]);
    const ULONG size = ULONG(row["bytes"]) + ULONG(row["pointers"]) * ULONG{sizeof(void*)};
    const USHORT features = row["features"];
    const Array array{SafeArrayCreateVector(vt, -1, 3)};
    EXPECT_EQ(array->cDims, 1);
    EXPECT_EQ(array->fFeatures, features);
    EXPECT_EQ(SafeArrayGetElemsize(array), size);
    EXPECT_EQ(type_of(array), vt);
    const auto* before = reinterpret_cast<const char*>(array.array);
    std::uint32_t type;
    GUID iid;
    std::memcpy(&type, before - sizeof type, sizeof type);
    std::memcpy(&iid, before - sizeof iid, sizeof iid);
    if ((features & FADF_HAVEVARTYPE) != 0) {
      EXPECT_EQ(type, vt);
    } else {
      EXPECT_TRUE(iid == (vt == VT_UNKNOWN ? IID_IUnknown : IID_IDispatch));
    }
    const std::vector<char> zeros(3 * size);
    EXPECT_EQ(std::memcmp(array->pvData, zeros.data(), zeros.size()), 0);
  });
}

TEST(SystemSafeArray, BoundsStandReversedAndTheFirstIndexMovesFastest) {
  const Array array{make(VT_I4, {{2, 1}, {3, 0}, {4, -5}})};
  EXPECT_EQ(SafeArrayGetDim(array), 3u);
  EXPECT_EQ(array->rgsabound[0].cElements, 4u);
  EXPECT_EQ(array->rgsabound[2].lLbound, 1);
  EXPECT_EQ(bounds_of(array, 1), "1..2");
  EXPECT_EQ(bounds_of(array, 3), "-5..-2");
  LONG bound = 0;
  EXPECT_EQ(SafeArrayGetLBound(array, 0, &bound), DISP_E_BADINDEX);
  EXPECT_EQ(SafeArrayGetUBound(array, 4, &bound), DISP_E_BADINDEX);

  LONG at[] = {2, 1, -4};
  LONG value = 42, back = 0;
  EXPECT_EQ(SafeArrayPutElement(array, at, &value), S_OK);
  LONG* const ninth = array.data<LONG>() + 9;  // (2-1) + 2 * (1-0) + 2*3 * (-4+5)
  EXPECT_EQ(*ninth, 42);
  EXPECT_EQ(SafeArrayGetElement(array, at, &back), S_OK);
  EXPECT_EQ(back, 42);
  void* place = nullptr;
  EXPECT_EQ(SafeArrayPtrOfIndex(array, at, &place), S_OK);
  EXPECT_EQ(place, ninth);
  LONG outside[][3] = {{0, 0, -5}, {3, 0, -5}, {1, -1, -5},         {1, 3, -5},
                       {1, 0, -6}, {1, 0, -1}, {2147483647, 0, -5}, {1, 0, -2147483647 - 1}};
  for (LONG(&index)[3] : outside) {
    EXPECT_EQ(SafeArrayPtrOfIndex(array, index, &place), DISP_E_BADINDEX)
        << ::testing::PrintToString(index);
  }
}

TEST(SystemSafeArray, WhatCannotBeIsRefused) {
  each_row("automation.tsv", "no arrays", 9, [](const TableRow& row) {
    std::vector<SAFEARRAYBOUND> bounds;
    for (const auto& bound : std::vector<std::vector<std::int64_t>>(row["bounds"])) {
      bounds.push_back({static_cast<ULONG>(bound.at(0)), static_cast<LONG>(bound.at(1))});
    }
    EXPECT_EQ(make(type_named(row["type"]), bounds), nullptr);
  });
  EXPECT_EQ(make(VT_R4, std::vector<SAFEARRAYBOUND>(65, {1, 0})), nullptr);
  EXPECT_EQ(SafeArrayCreate(VT_R4, 1, nullptr), nullptr);
  const Array most{make(VT_R4, std::vector<SAFEARRAYBOUND>(64, {1, 0}))};
  EXPECT_EQ(bounds_of(most, 64), "0..0");
  EXPECT_EQ(bounds_of(Array{make(VT_R4, {{1, 2147483647}})}, 1), "2147483647..2147483647");
}

TEST(SystemSafeArray, EmptyArraysHaveBoundsAndNoElements) {
  const Array array{make(VT_BSTR, {{0, 0}, {0xFFFFFFFFu, -2147483647 - 1}})};
  const Array copy{copy_of(array)};
  EXPECT_EQ(bounds_of(copy, 1), "0..-1");
  EXPECT_NE(copy->pvData, nullptr);
  LONG at[] = {0, 0};
  void* place = nullptr;
  EXPECT_EQ(SafeArrayPtrOfIndex(array, at, &place), DISP_E_BADINDEX);
}

TEST(SystemSafeArray, NullArgumentsAreAnswered) {
  const Array array{SafeArrayCreateVector(VT_R4, 0, 1)};
  LONG at[] = {0};
  float value = 0;
  const HRESULT refused[] = {SafeArrayDestroyData(nullptr),
                             SafeArrayRedim(array, nullptr),
                             SafeArrayGetLBound(array, 1, nullptr),
                             SafeArrayGetUBound(array, 1, nullptr),
                             SafeArrayAccessData(array, nullptr),
                             SafeArrayGetElement(array, nullptr, &value),
                             SafeArrayGetElement(array, at, nullptr),
                             SafeArrayPutElement(array, at, nullptr),
                             SafeArrayPutElement(array, nullptr, &value),
                             SafeArrayPtrOfIndex(array, nullptr, reinterpret_cast<void**>(at)),
                             SafeArrayPtrOfIndex(array, at, nullptr),
                             SafeArrayCopy(array, nullptr)};
  for (const HRESULT& hr : refused) EXPECT_EQ(hr, E_INVALIDARG) << "number " << &hr - refused;
  EXPECT_EQ(array->cLocks, 0u) << "no failed call leaves a lock";
}

// As elements of their own type, and within variants.
TEST(SystemSafeArray, ElementsOwnWhatTheyHold) {
  for (const VARTYPE kind : {VT_DISPATCH, VT_BSTR}) {
    for (const VARTYPE element : {kind, VARTYPE{VT_VARIANT}}) {
      const long blocks = automation::test::counted_memory().blocks;
      CountingObject a;
      const auto expect_references = [&](int want) {
        EXPECT_EQ(a.references, kind == VT_DISPATCH ? want : 0) << element;
      };
      {
        Value value = kind == VT_DISPATCH ? object(a) : text({u"a\0b", 3}), got = bare(kind), none;
        const bool whole = element == VT_VARIANT;
        void* const place = whole ? static_cast<void*>(&got.v) : &got.v.byref;
        const Array array{SafeArrayCreateVector(element, 1, 3)};
        for (const LONG at : {1, 1, 3}) {
          EXPECT_EQ(put(array, at, whole ? static_cast<void*>(&value.v) : value.v.byref), S_OK);
        }
        EXPECT_EQ(get(array, 3, place), S_OK);
        EXPECT_EQ(shown(got.v), shown(value.v));
        expect_references(4);
        const Array copy{copy_of(array)};
        EXPECT_EQ(type_of(copy), element);
        expect_references(6);
        EXPECT_EQ(resize(copy, {2, 1}), S_OK);
        expect_references(5);
        void* own = whole ? copy->pvData : *copy.data<void*>();
        EXPECT_EQ(put(copy, 1, own), S_OK) << "what it holds";
        expect_references(5);
        EXPECT_EQ(put(copy, 1, whole ? static_cast<void*>(&none.v) : nullptr), S_OK);
        expect_references(4);
        EXPECT_EQ(SafeArrayDestroyData(array), S_OK);
        expect_references(2);
        Value left = bare(VT_I8);
        EXPECT_EQ(get(array, 1, &left.v), E_UNEXPECTED);
        const Array nothing{copy_of(array)};
        EXPECT_TRUE(array->pvData == nullptr && nothing->pvData == nullptr);
        EXPECT_EQ(resize(array, {2, 0}), S_OK);
        EXPECT_EQ(get(array, 0, whole ? static_cast<void*>(&left.v) : &left.v.byref), S_OK);
        EXPECT_EQ(left.v.llVal, 0);
      }
      expect_references(0);
      EXPECT_EQ(automation::test::counted_memory().blocks, blocks) << element;
    }
  }
}

TEST(SystemSafeArray, ResizingKeepsWhatRemainsAndClearsWhatIsNew) {
  const Array array{make(VT_R4, {{2, 0}, {3, 1}})};
  std::iota(array.data<float>(), array.data<float>() + 6, 1.0F);
  each_row("automation.tsv", "resizing", 5, [&](const TableRow& row) {
    ASSERT_EQ(resize(array, {row["count"], row["low"]}), S_OK);
    EXPECT_EQ(bounds_of(array, 2), row["bounds"].text);
    const std::vector<float> want = row["elements"];
    const auto* data = array.data<float>();
    EXPECT_EQ(std::vector<float>(data, data + want.size()), want);
  });
  EXPECT_EQ(bounds_of(array, 1), "0..1") << "the first dimension is as it was";
}

TEST(SystemSafeArray, WhatCannotBeResizedStaysAsItIs) {
  const Array array{make(VT_R8, {{0xFFFFu, 0}, {1, 0}, {1, 0}})};
  array->rgsabound[1].cElements = 0x7FFFFFFF;
  EXPECT_EQ(resize(array, {0xFFFFFFFFu, -2147483647 - 1}), E_OUTOFMEMORY);
  array->rgsabound[1].cElements = 1;
  EXPECT_EQ(resize(array, {3, 2147483646}), E_INVALIDARG);
  for (const USHORT flag : {FADF_FIXEDSIZE, FADF_STATIC, FADF_AUTO, FADF_EMBEDDED}) {
    array->fFeatures |= flag;
    EXPECT_EQ(resize(array, {2, 0}), DISP_E_ARRAYISLOCKED) << flag;
    array->fFeatures = static_cast<USHORT>(array->fFeatures & ~flag);
  }
  void* data = nullptr;
  EXPECT_EQ(SafeArrayUnlock(array), E_UNEXPECTED);
  EXPECT_EQ(SafeArrayAccessData(array, &data), S_OK);
  EXPECT_EQ(data, array->pvData);
  EXPECT_EQ(SafeArrayLock(array), S_OK);
  EXPECT_EQ(array->cLocks, 2u);
  EXPECT_EQ(SafeArrayUnaccessData(array), S_OK);
  EXPECT_EQ(resize(array, {2, 0}), DISP_E_ARRAYISLOCKED);
  EXPECT_EQ(SafeArrayDestroyData(array), DISP_E_ARRAYISLOCKED);
  EXPECT_EQ(SafeArrayDestroy(array), DISP_E_ARRAYISLOCKED);
  EXPECT_EQ(SafeArrayUnlock(array), S_OK);
  EXPECT_EQ(bounds_of(array, 3), "0..0");
  array->cLocks = 0xFFFF;
  EXPECT_EQ(SafeArrayAccessData(array, &data), E_UNEXPECTED);
  EXPECT_EQ(array->cLocks, 0xFFFFu);
  array->cLocks = 0;
  EXPECT_EQ(resize(array, {2, 0}), S_OK);
}

TEST(SystemSafeArray, CodeRunByAVanishingElementCannotTakeTheArrayAway) {
  CountingObject a;
  {
    const Array array{SafeArrayCreateVector(VT_UNKNOWN, 0, 1)};
    EXPECT_EQ(put(array, 0, static_cast<IUnknown*>(&a)), S_OK);
    a.context = array;
    a.on_release = [](CountingObject& self) {
      auto* whole = static_cast<SAFEARRAY*>(self.context);
      EXPECT_EQ(resize(whole, {0, 0}), DISP_E_ARRAYISLOCKED);
      EXPECT_EQ(SafeArrayDestroy(whole), DISP_E_ARRAYISLOCKED);
      EXPECT_EQ(*static_cast<void**>(whole->pvData), nullptr);
    };
  }
  EXPECT_EQ(a.released, 1);
}

TEST(SystemSafeArray, BorrowedMemoryIsClearedAndLeftInPlace) {
  double numbers[2] = {1.5, 2.5};
  SAFEARRAY borrowed{1, FADF_AUTO | FADF_FIXEDSIZE, 8, 0, numbers, {{2, 10}}};
  VARTYPE vt = 0;
  EXPECT_EQ(SafeArrayGetVartype(&borrowed, &vt), E_INVALIDARG);
  const Array copy{copy_of(&borrowed)};
  EXPECT_EQ(copy->fFeatures, 0) << "the copy owns its memory";
  EXPECT_EQ(copy.data<double>()[1], 2.5);
  EXPECT_EQ(bounds_of(copy, 1), "10..11");
  EXPECT_EQ(SafeArrayDestroy(&borrowed), S_OK);
  EXPECT_TRUE(numbers[0] == 0 && numbers[1] == 0 && borrowed.pvData == numbers);
}

}  // namespace
}  // namespace vqmath63::automation::system::test
