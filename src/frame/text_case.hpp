// Letter case, which counts for nothing in the names and words that hosts write.
#pragma once

#include <algorithm>
#include <string_view>

namespace vqmath63 {

/// A letter A to Z in lower case; any other character as it is, whatever the locale.
template <class Character>
constexpr Character lower_case(Character c) noexcept {
  return c >= 'A' && c <= 'Z' ? static_cast<Character>(c + ('a' - 'A')) : c;
}

/// Equal without regard to the case of a to z.
constexpr bool same_letters(std::string_view a, std::string_view b) noexcept {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return lower_case(x) == lower_case(y); });
}

}  // namespace vqmath63
