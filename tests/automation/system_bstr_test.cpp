// Texts: length prefix, terminator, zero characters within, refused lengths.
#include <gtest/gtest.h>

#include "system_fakes.hpp"

namespace vqmath63::automation::system::test {
namespace {

// The bytes from the length prefix to the terminator; frees the text.
std::string bytes_of(BSTR text) {
  if (text == nullptr) return "null";
  const std::string all(reinterpret_cast<const char*>(text) - 4, SysStringByteLen(text) + 6);
  SysFreeString(text);
  return all;
}

TEST(SystemBstr, CarriesItsByteCountBeforeAndATerminatorAfter) {
  const struct {
    const char* name;
    BSTR made;
    std::string_view want;
  } rows[] = {
      {"text", SysAllocString(u"\u00B0A"), {"\4\0\0\0\xB0\0A\0\0\0", 10}},
      {"empty", SysAllocString(u""), {"\0\0\0\0\0\0", 6}},
      {"zero inside", SysAllocStringLen(u"a\0b", 3), {"\6\0\0\0a\0\0\0b\0\0\0", 12}},
      {"no source", SysAllocStringLen(nullptr, 2), {"\4\0\0\0\0\0\0\0\0\0", 10}},
      {"odd", SysAllocStringByteLen("xyz", 3), {"\3\0\0\0xyz\0\0", 9}},
      {"null", SysAllocString(nullptr), "null"},
      {"huge", SysAllocStringLen(nullptr, 0xFFFFFFFFu), "null"},
      {"a quarter", SysAllocStringLen(u"x", 0x40000000u), "null"},
      {"huge in bytes", SysAllocStringByteLen("x", 0xFFFFFFFFu), "null"},
  };
  for (const auto& row : rows) EXPECT_EQ(bytes_of(row.made), row.want) << row.name;
  BSTR odd = SysAllocStringByteLen("xyz", 3);
  EXPECT_EQ(SysStringLen(odd), 1u);
  EXPECT_EQ(reinterpret_cast<const char*>(odd)[5], '\0') << "a whole character after an odd count";
  SysFreeString(odd);
  SysFreeString(nullptr);
  EXPECT_EQ(SysStringLen(nullptr), 0u);
  EXPECT_EQ(SysStringByteLen(nullptr), 0u);
}

TEST(SystemBstr, ReplacingMayUseThePartOfTheOldText) {
  BSTR s = SysAllocString(u"Sw_mean");
  EXPECT_EQ(SysReAllocString(&s, s + 3), TRUE);
  EXPECT_EQ(characters(s), u"mean");
  EXPECT_EQ(SysReAllocStringLen(&s, nullptr, 0xFFFFFFFFu), FALSE);
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
