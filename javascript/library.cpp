// Text of reals for library.hpp, by the C library, which is exact.
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <system_error>

#if !defined(__cpp_lib_to_chars)
namespace std {

namespace {

float read(const char* text, char** end, float) {
  return strtof(text, end);
}

double read(const char* text, char** end, double) {
  return strtod(text, end);
}

template <class T>
to_chars_result written(char* first, char* last, T value, chars_format format) {
  if (isinf(value)) {
    const char* word = value < 0 ? "-inf" : "inf";
    const size_t size = strlen(word);
    memcpy(first, word, size);
    return {first + size, {}};
  }
  char text[32];
  for (int digits = 1; digits <= 17; ++digits) {
    snprintf(text, sizeof text, "%.*e", digits - 1, static_cast<double>(value));
    if (read(text, nullptr, value) == value) break;
  }
  string made = text;
  if (format == chars_format::fixed) {
    const size_t mark = made.find('e');
    const int exponent = atoi(made.c_str() + mark + 1);
    const int decimals = static_cast<int>(mark) - (made[0] == '-' ? 3 : 2);  // of the mantissa
    const int wanted = (decimals > 0 ? decimals : 0) - exponent;
    char plain[400];
    snprintf(plain, sizeof plain, "%.*f", wanted > 0 ? wanted : 0, static_cast<double>(value));
    made = plain;
  }
  if (static_cast<size_t>(last - first) < made.size()) return {last, errc::value_too_large};
  memcpy(first, made.data(), made.size());
  return {first + made.size(), {}};
}

/// Of what the C library reads only what from_chars does: no blanks, no plus, hexadecimal digits
/// only where they are asked for.
template <class T>
from_chars_result read_off(const char* first, const char* last, T& value, chars_format format) {
  if (format == chars_format::hex) {
    const string text = "0x" + string(first, last);
    char* end = nullptr;
    value = read(text.c_str(), &end, T{});
    return {first + (end - text.c_str() - 2), {}};
  }
  const char* at = first;
  if (at != last && *at == '-') ++at;
  const auto digits = [&] {
    const char* from = at;
    while (at != last && *at >= '0' && *at <= '9') ++at;
    return at - from;
  };
  auto count = digits();
  if (at != last && *at == '.') {
    ++at;
    count += digits();
  }
  if (count == 0) return {first, errc::invalid_argument};
  const char* end = at;
  if (at != last && (*at == 'e' || *at == 'E')) {
    ++at;
    if (at != last && (*at == '-' || *at == '+')) ++at;
    if (digits() > 0) end = at;
  }
  const string text(first, end);
  const T made = read(text.c_str(), nullptr, T{});
  const bool zero = text.find_first_of("123456789") >= text.find_first_of("eE");
  if (isinf(made) || (made == 0 && !zero)) return {end, errc::result_out_of_range};
  value = made;
  return {end, {}};
}

}  // namespace

to_chars_result to_chars(char* first, char* last, float value, chars_format format) {
  return written(first, last, value, format);
}

to_chars_result to_chars(char* first, char* last, double value, chars_format format) {
  return written(first, last, value, format);
}

to_chars_result to_chars(char* first, char* last, double value) {
  char other[400];
  const char* end = written(other, other + sizeof other, value, chars_format::scientific).ptr;
  const auto fixed = written(first, last, value, chars_format::fixed);
  if (fixed.ec == errc{} && fixed.ptr - first <= end - other) return fixed;
  const auto size = static_cast<size_t>(end - other);
  if (static_cast<size_t>(last - first) < size) return {last, errc::value_too_large};
  memcpy(first, other, size);
  return {first + size, {}};
}

from_chars_result from_chars(const char* first, const char* last, float& value,
                             chars_format format) {
  return read_off(first, last, value, format);
}

from_chars_result from_chars(const char* first, const char* last, double& value,
                             chars_format format) {
  return read_off(first, last, value, format);
}

}  // namespace std
#endif
