// What a foreign host takes for granted: result codes, identifiers and the order of slots.
#include <gtest/gtest.h>

#include "system_fakes.hpp"

namespace vqmath63::automation::system::test {
namespace {

TEST(SystemTypes, ResultCodesHaveTheirPublishedValues) {
  // By facility: general, of automation, of the system, of classes and their registration.
  const std::vector<HRESULT> codes = {E_NOTIMPL,
                                      E_NOINTERFACE,
                                      E_POINTER,
                                      E_FAIL,
                                      E_UNEXPECTED,
                                      DISP_E_TYPEMISMATCH,
                                      DISP_E_EXCEPTION,
                                      DISP_E_ARRAYISLOCKED,
                                      DISP_E_PARAMNOTOPTIONAL,
                                      TYPE_E_ELEMENTNOTFOUND,
                                      E_OUTOFMEMORY,
                                      E_INVALIDARG,
                                      CLASS_E_CLASSNOTAVAILABLE,
                                      REGDB_E_CLASSNOTREG,
                                      CO_E_CLASSSTRING,
                                      SELFREG_E_CLASS};
  const std::uint32_t want[] = {0x80004001, 0x80004002, 0x80004003, 0x80004005,
                                0x8000FFFF, 0x80020005, 0x80020009, 0x8002000D,
                                0x8002000F, 0x8002802B, 0x8007000E, 0x80070057,
                                0x80040111, 0x80040154, 0x800401F3, 0x80040201};
  EXPECT_EQ(codes, std::vector<HRESULT>(std::begin(want), std::end(want)));
  EXPECT_TRUE(FAILED(E_FAIL) && SUCCEEDED(S_FALSE));
  EXPECT_TRUE(HRESULT_FACILITY(E_OUTOFMEMORY) == 7 && HRESULT_CODE(E_OUTOFMEMORY) == 14);
  IID last = IID_IErrorInfo;
  last.Data4[7] ^= 1;
  EXPECT_TRUE(last != IID_IErrorInfo && IsEqualIID(IID_IUnknown, IID_IUnknown));
}

TEST(SystemTypes, SlotsStandInTheOrderThatCallersInOtherLanguagesUse) {
  CountingObject object;
  using Slot = HRESULT (*)(void*, void*, void*, std::intptr_t, std::intptr_t, void*);
  const Slot* slots;
  std::memcpy(&slots, static_cast<void*>(static_cast<IDispatch*>(&object)), sizeof slots);
  IID iid = IID_IDispatch;
  void* same = nullptr;
  UINT infos = 7;
  EXPECT_EQ(slots[0](&object, &iid, &same, 0, 0, nullptr), S_OK);
  EXPECT_EQ(same, &object);
  EXPECT_EQ(slots[1](&object, nullptr, nullptr, 0, 0, nullptr), 2);
  EXPECT_EQ(slots[2](&object, nullptr, nullptr, 0, 0, nullptr), 1);
  EXPECT_EQ(slots[3](&object, &infos, nullptr, 0, 0, nullptr), S_OK);
  EXPECT_EQ(infos, 0u);
  EXPECT_EQ(slots[5](&object, &iid, nullptr, 0, 0, nullptr), DISP_E_UNKNOWNNAME);
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
