// What a foreign host takes for granted: result codes, identifiers and the order of slots.
#include <gtest/gtest.h>

#include "system_fakes.hpp"

namespace vqmath63::automation::system::test {
namespace {

TEST(SystemTypes, ResultCodesHaveTheirPublishedValues) {
  const std::pair<HRESULT, std::uint32_t> rows[] = {
      {E_NOTIMPL, 0x80004001u},
      {E_NOINTERFACE, 0x80004002u},
      {E_POINTER, 0x80004003u},
      {E_FAIL, 0x80004005u},
      {E_UNEXPECTED, 0x8000FFFFu},
      {E_OUTOFMEMORY, 0x8007000Eu},
      {E_INVALIDARG, 0x80070057u},
      {DISP_E_TYPEMISMATCH, 0x80020005u},
      {DISP_E_EXCEPTION, 0x80020009u},
      {DISP_E_ARRAYISLOCKED, 0x8002000Du},
      {DISP_E_PARAMNOTOPTIONAL, 0x8002000Fu},
      {TYPE_E_ELEMENTNOTFOUND, 0x8002802Bu},
      {CLASS_E_CLASSNOTAVAILABLE, 0x80040111u},
      {REGDB_E_CLASSNOTREG, 0x80040154u},
      {CO_E_CLASSSTRING, 0x800401F3u},
      {SELFREG_E_CLASS, 0x80040201u},
  };
  for (const auto& [code, want] : rows) EXPECT_EQ(static_cast<std::uint32_t>(code), want);
  EXPECT_TRUE(FAILED(E_FAIL) && SUCCEEDED(S_FALSE));
  EXPECT_TRUE(HRESULT_FACILITY(E_OUTOFMEMORY) == 7 && HRESULT_CODE(E_OUTOFMEMORY) == 14);
  IID last = IID_IErrorInfo;
  last.Data4[7] ^= 1;
  EXPECT_TRUE(last != IID_IErrorInfo && IsEqualIID(IID_IUnknown, IID_IUnknown));
}

TEST(SystemTypes, SlotsStandInTheOrderThatCallersInOtherLanguagesUse) {
  CountingObject object;
  void* const* slots;
  std::memcpy(&slots, static_cast<void*>(static_cast<IDispatch*>(&object)), sizeof slots);
  using Count = ULONG (*)(void*);
  using TypeInfoCount = HRESULT (*)(void*, UINT*);
  using Names = HRESULT (*)(void*, const IID*, LPOLESTR*, UINT, LCID, DISPID*);
  using Query = HRESULT (*)(void*, const IID*, void**);
  EXPECT_EQ(reinterpret_cast<Count>(slots[1])(&object), 1u);
  void* same = nullptr;
  EXPECT_EQ(reinterpret_cast<Query>(slots[0])(&object, &IID_IDispatch, &same), S_OK);
  EXPECT_EQ(same, &object);
  EXPECT_EQ(reinterpret_cast<Count>(slots[2])(&object), 1u);
  UINT infos = 7;
  EXPECT_EQ(reinterpret_cast<TypeInfoCount>(slots[3])(&object, &infos), S_OK);
  EXPECT_EQ(infos, 0u);
  EXPECT_EQ(reinterpret_cast<Names>(slots[5])(&object, &IID_NULL, nullptr, 0, LOCALE_USER_DEFAULT,
                                              nullptr),
            DISP_E_UNKNOWNNAME);
}

TEST(SystemTypes, CurrencyAndDecimalOverlayTheirParts) {
  CY money;
  money.int64 = -1;
  EXPECT_TRUE(money.Lo == 0xFFFFFFFFu && money.Hi == -1);
  VARIANT v{};
  v.decVal.Lo64 = 0x1122334455667788u;
  v.vt = VT_DECIMAL;
  EXPECT_TRUE(v.decVal.Lo32 == 0x55667788u && v.decVal.wReserved == VT_DECIMAL);
}

}  // namespace
}  // namespace vqmath63::automation::system::test
