// Texts: length prefix, terminator, zero characters within, refused lengths.
#include <gtest/gtest.h>

#include "system_fakes.hpp"

namespace vqmath63::automation::system::test {
namespace {

TEST(SystemBstr, CarriesItsByteCountRightBeforeTheText) {
  BSTR made = SysAllocString(u"\u00B0API");
  ASSERT_NE(made, nullptr);
  std::uint32_t bytes;
  std::memcpy(&bytes, reinterpret_cast<const char*>(made) - 4, 4);
  EXPECT_EQ(bytes, 8u);
  EXPECT_EQ(SysStringLen(made), 4u);
  EXPECT_EQ(made[4], u'\0');
  EXPECT_EQ(characters(made), u"\u00B0API");
  SysFreeString(made);
}

TEST(SystemBstr, NullIsEmptyText) {
  EXPECT_EQ(SysAllocString(nullptr), nullptr);
  EXPECT_EQ(SysStringLen(nullptr), 0u);
  EXPECT_EQ(SysStringByteLen(nullptr), 0u);
  SysFreeString(nullptr);
  BSTR none = SysAllocString(u"");
  ASSERT_NE(none, nullptr);
  EXPECT_EQ(SysStringLen(none), 0u);
  EXPECT_EQ(none[0], u'\0');
  SysFreeString(none);
}

TEST(SystemBstr, ZeroCharactersAndOddByteCountsAreKept) {
  BSTR inner = SysAllocStringLen(u"a\0b", 3);
  EXPECT_EQ(characters(inner), std::u16string(u"a\0b", 3));
  SysFreeString(inner);

  BSTR odd = SysAllocStringByteLen("xyz", 3);
  EXPECT_EQ(SysStringByteLen(odd), 3u);
  EXPECT_EQ(SysStringLen(odd), 1u);
  const char* bytes = reinterpret_cast<const char*>(odd);
  EXPECT_EQ(std::string_view(bytes, 6), std::string_view("xyz\0\0\0", 6));
  SysFreeString(odd);
}

TEST(SystemBstr, WithoutASourceTheTextIsZeros) {
  BSTR made = SysAllocStringLen(nullptr, 5);
  ASSERT_NE(made, nullptr);
  EXPECT_EQ(characters(made), std::u16string(5, u'\0'));
  EXPECT_EQ(made[5], u'\0');
  SysFreeString(made);
}

TEST(SystemBstr, LengthsBeyondTheCountAreRefused) {
  EXPECT_EQ(SysAllocStringLen(nullptr, 0xFFFFFFFFu), nullptr);
  EXPECT_EQ(SysAllocStringLen(u"x", 0x80000000u), nullptr);
  EXPECT_EQ(SysAllocStringLen(u"x", 0x40000000u), nullptr);
  EXPECT_EQ(SysAllocStringByteLen("x", 0xFFFFFFFFu), nullptr);
  BSTR kept = SysAllocString(u"kept");
  EXPECT_EQ(SysReAllocStringLen(&kept, nullptr, 0xFFFFFFFFu), FALSE);
  EXPECT_EQ(characters(kept), u"kept");
  SysFreeString(kept);
}

TEST(SystemBstr, ReplacingMayUseThePartOfTheOldText) {
  BSTR s = SysAllocString(u"Sw_mean");
  EXPECT_EQ(SysReAllocString(&s, s + 3), TRUE);
  EXPECT_EQ(characters(s), u"mean");
  EXPECT_EQ(SysReAllocStringLen(&s, s + 1, 2), TRUE);
  EXPECT_EQ(characters(s), u"ea");
  EXPECT_EQ(SysReAllocStringLen(&s, nullptr, 300), TRUE);
  EXPECT_EQ(characters(s), u"ea" + std::u16string(298, u'\0'));
  EXPECT_EQ(SysReAllocStringLen(&s, nullptr, 1), TRUE);
  EXPECT_EQ(characters(s), u"e");
  EXPECT_EQ(SysReAllocString(&s, nullptr), TRUE);
  EXPECT_EQ(s, nullptr);
  EXPECT_EQ(SysReAllocString(nullptr, u"x"), FALSE);
}

}  // namespace
}  // namespace vqmath63::automation::system::test
