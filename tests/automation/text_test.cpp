// Between UTF-8 and UTF-16: every character, and what is none.
#include "automation/text.hpp"

#include <gtest/gtest.h>

#include <cstdint>

namespace vqmath63::automation {
namespace {

TEST(Text, every_character_goes_there_and_back) {
  for (std::uint32_t code = 1; code <= 0x10FFFF; ++code) {
    if (code >= 0xD800 && code <= 0xDFFF) continue;
    // Table 3-6 of the Unicode standard, digit by digit of base 64.
    const std::uint32_t digits[] = {code >> 18, code >> 12 & 63, code >> 6 & 63, code & 63};
    const std::size_t more = code < 0x80 ? 0 : code < 0x800 ? 1 : code < 0x10000 ? 2 : 3;
    constexpr std::uint32_t kLead[] = {0, 0xC0, 0xE0, 0xF0};
    std::string narrow(1, static_cast<char>(more == 0 ? code : kLead[more] | digits[3 - more]));
    for (std::size_t i = 4 - more; i < 4; ++i) narrow += static_cast<char>(0x80 | digits[i]);
    const Utf16 wide = utf16(narrow);
    ASSERT_EQ(wide.size(), code < 0x10000 ? 1U : 2U) << code;
    const auto unit = [&](std::size_t i) { return static_cast<std::uint16_t>(wide[i]); };
    ASSERT_EQ(wide.size() == 1 ? unit(0) : (unit(0) - 0xD7F7U) * 0x400 + unit(1), code);
    ASSERT_EQ(utf8(wide), narrow) << code;
  }
}

TEST(Text, what_is_no_character_is_replaced) {
  const struct {
    const char* bytes;
    const char16_t* want;
  } rows[] = {{"a\x80z", u"a\uFFFDz"},        // goes on without a beginning
              {"\xC1\xBF", u"\uFFFD\uFFFD"},  // too long for what it says
              {"\xE0\x9F\xBF", u"\uFFFD"},
              {"\xF0\x8F\xBF\xBF", u"\uFFFD"},
              {"\xED\xA0\x80", u"\uFFFD"},  // half a pair
              {"\xED\xBF\xBF", u"\uFFFD"},
              {"\xF4\x90\x80\x80", u"\uFFFD"},  // beyond the last
              {"\xF5\x80", u"\uFFFD\uFFFD"},
              {"\xE2\x82", u"\uFFFD"},  // ends too early
              {"\xE2(z", u"\uFFFD(z"},
              {"\xE2\x82z", u"\uFFFDz"},
              {"\xC3", u"\uFFFD"}};
  for (const auto& row : rows) EXPECT_EQ(utf16(row.bytes), row.want) << row.bytes;
}

}  // namespace
}  // namespace vqmath63::automation
