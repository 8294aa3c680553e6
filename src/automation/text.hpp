// Text across the boundary: UTF-8 inside, UTF-16 outside.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "automation/types.hpp"

namespace vqmath63::automation {

using Utf16 = std::basic_string<OLECHAR>;

/// Conversions; what is no valid text becomes U+FFFD.
Utf16 utf16(std::string_view utf8);
std::string utf8(std::basic_string_view<OLECHAR> utf16);

/// The text of a BSTR (a null BSTR is empty).
std::string text_of(BSTR text);

/// A number that tells the characters of one BSTR from those of another.
std::uint64_t text_hash(BSTR text) noexcept;

/// A new BSTR; throws std::bad_alloc when memory ends.
BSTR new_bstr(std::string_view utf8);

/// Name compare without regard to the case of a to z, the only letters of member names.
bool same_name(const OLECHAR* given, const char* name) noexcept;

}  // namespace vqmath63::automation
