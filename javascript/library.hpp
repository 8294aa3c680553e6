// What the C++ library of Debian's Emscripten (libc++ 13) lacks of C++20, as far as the component
// uses it. Included by force, before each source.
#pragma once

#if __cplusplus >= 202002L
#include <charconv>
#include <cstddef>
#include <memory>
#include <type_traits>
#include <version>

namespace std {  // where the sources look for them

#if !defined(__cpp_lib_bit_cast)
template <class To, class From>
constexpr To bit_cast(const From& from) noexcept {
  static_assert(sizeof(To) == sizeof(From) && is_trivially_copyable_v<To>);
  return __builtin_bit_cast(To, from);
}
#endif

#if !defined(__cpp_lib_smart_ptr_for_overwrite)
template <class T, enable_if_t<is_array_v<T> && extent_v<T> == 0, int> = 0>
unique_ptr<T> make_unique_for_overwrite(size_t count) {
  return unique_ptr<T>(new remove_extent_t<T>[count]);
}
#endif

#if !defined(__cpp_lib_atomic_ref)
/// A component in WebAssembly has one thread.
template <class T>
class atomic_ref {
 public:
  explicit atomic_ref(T& value) noexcept : value_(value) {}
  T load() const noexcept { return value_; }
  T fetch_add(T by) const noexcept {
    const T before = value_;
    value_ = static_cast<T>(before + by);
    return before;
  }
  bool compare_exchange_weak(T& expected, T wanted) const noexcept {
    if (value_ == expected) {
      value_ = wanted;
      return true;
    }
    expected = value_;
    return false;
  }

 private:
  T& value_;
};
#endif

#if !defined(__cpp_lib_to_chars)
/// Reals: the fewest digits that read back as the same number; read correctly rounded.
to_chars_result to_chars(char* first, char* last, float value, chars_format format);
to_chars_result to_chars(char* first, char* last, double value, chars_format format);
to_chars_result to_chars(char* first, char* last, double value);  // the shorter format
from_chars_result from_chars(const char* first, const char* last, float& value,
                             chars_format format = chars_format::general);
from_chars_result from_chars(const char* first, const char* last, double& value,
                             chars_format format = chars_format::general);
#endif

}  // namespace std
#endif
