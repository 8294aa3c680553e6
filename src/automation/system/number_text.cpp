// Numbers and currency as text.
#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

#include "automation/system/codes.hpp"
#include "automation/system/conversion.hpp"

namespace vqmath63::automation::system {

namespace {

bool is_digit(char c) {
  return c >= '0' && c <= '9';
}

template <class T>
std::string_view format_any(T value, T large, char (&room)[kFormatRoom]) {
  if (std::isnan(value)) return "NaN";
  const T size = std::fabs(value);
  const bool fixed = size == 0 || (size >= static_cast<T>(1e-4L) && size < large);
  const auto format =
      fixed || std::isinf(value) ? std::chars_format::fixed : std::chars_format::scientific;
  char* end = std::to_chars(room, room + kFormatRoom, value, format).ptr;
  if (!fixed) std::replace(room, end, 'e', 'E');
  return {room, static_cast<std::size_t>(end - room)};
}

/// Whether a number that no type can hold is too large, rather than too small.
bool is_large(std::string_view text) {
  if (text.front() == '-') text.remove_prefix(1);
  const std::size_t mantissa_end = std::min(text.find_first_of("eE"), text.size());
  const std::size_t point = std::min(text.substr(0, mantissa_end).find('.'), mantissa_end);
  const std::size_t first = text.find_first_of("123456789");
  if (first >= mantissa_end) return false;
  // The power of ten of the first digit that counts, as the mantissa and as the exponent have it.
  const auto lead = static_cast<std::int64_t>(point) - static_cast<std::int64_t>(first);
  std::int64_t exponent = 0;
  if (mantissa_end < text.size()) {
    std::string_view digits = text.substr(mantissa_end + 1);
    if (digits.front() == '+') digits.remove_prefix(1);
    const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), exponent);
    if (read.ec == std::errc::result_out_of_range) return digits.front() != '-';
  }
  // Both parts may be long, but no text has 10^18 digits.
  return std::clamp<std::int64_t>(exponent, -1'000'000'000'000'000'000, 1'000'000'000'000'000'000) +
             lead >
         0;
}

/// Takes an optional plus sign away; false when no number can begin there.
bool strip_plus(std::string_view& text) {
  if (!text.empty() && text.front() == '+') {
    text.remove_prefix(1);
    if (!text.empty() && text.front() == '-') return false;
  }
  const std::size_t at = !text.empty() && text.front() == '-' ? 1 : 0;
  // Words for infinity and the like are no numbers.
  return at < text.size() && (is_digit(text[at]) || text[at] == '.');
}

template <class T>
HRESULT parse_any(std::string_view text, T& value) {
  if (!strip_plus(text)) return DISP_E_TYPEMISMATCH;
  const char* end = text.data() + text.size();
  T read_value{};
  const auto read = std::from_chars(text.data(), end, read_value);
  if (read.ec == std::errc::invalid_argument || read.ptr != end) return DISP_E_TYPEMISMATCH;
  if (read.ec == std::errc::result_out_of_range) {
    if (is_large(text)) return DISP_E_OVERFLOW;
    read_value = text.front() == '-' ? -T{0} : T{0};
  }
  if (std::isinf(read_value)) return DISP_E_OVERFLOW;
  value = read_value;
  return S_OK;
}

}  // namespace

double round_half_even(double x) {
  const double below = std::floor(x);
  const double rest = x - below;
  const bool odd = std::fmod(below, 2.0) != 0.0;  // platform: exact
  if (rest > 0.5 || (rest == 0.5 && odd)) return below + 1.0;
  return below;
}

std::string_view format_real(double value, char (&room)[kFormatRoom]) {
  return format_any(value, 1e15, room);
}

std::string_view format_real(float value, char (&room)[kFormatRoom]) {
  return format_any(value, 1e7F, room);
}

std::string_view format_currency(LONGLONG value, char (&room)[kFormatRoom]) {
  char* at = room;
  ULONGLONG size = static_cast<ULONGLONG>(value);
  if (value < 0) {
    size = ULONGLONG{0} - size;
    *at++ = '-';
  }
  at = std::to_chars(at, room + kFormatRoom, size / 10000).ptr;
  if (ULONGLONG rest = size % 10000; rest != 0) {
    *at++ = '.';
    for (ULONGLONG unit = 1000; rest != 0; rest %= unit, unit /= 10) {
      *at++ = static_cast<char>('0' + rest / unit);
    }
  }
  return {room, static_cast<std::size_t>(at - room)};
}

HRESULT parse_real(std::string_view text, double& value) {
  return parse_any(text, value);
}

HRESULT parse_real(std::string_view text, float& value) {
  return parse_any(text, value);
}

HRESULT parse_number(std::string_view text, Number& value) {
  std::string_view digits = text;
  if (!strip_plus(digits)) return DISP_E_TYPEMISMATCH;
  const char* end = digits.data() + digits.size();
  Number made;
  const auto whole = std::from_chars(digits.data(), end, made.whole);
  if (whole.ptr == end && whole.ec == std::errc{}) {
    value = made;
    return S_OK;
  }
  const auto count = std::from_chars(digits.data(), end, made.count);
  if (count.ptr == end && count.ec == std::errc{}) {
    made.kind = Number::Kind::kUnsigned;
    value = made;
    return S_OK;
  }
  made.kind = Number::Kind::kReal;
  const HRESULT hr = parse_real(text, made.real);
  if (SUCCEEDED(hr)) value = made;
  return hr;
}

HRESULT currency_from(double real, LONGLONG& value) {
  const double scaled = round_half_even(real * 10000.0);
  if (!(scaled >= -0x1p63 && scaled < 0x1p63)) return DISP_E_OVERFLOW;
  value = static_cast<LONGLONG>(scaled);
  return S_OK;
}

HRESULT parse_currency(std::string_view text, LONGLONG& value) {
  double real = 0;
  const HRESULT hr = parse_real(text, real);
  if (FAILED(hr)) return hr;
  // A real number has too few digits for the largest amounts: read plain ones as whole numbers.
  if (text.front() == '+') text.remove_prefix(1);
  const std::size_t point = std::min(text.find('.'), text.size());
  const std::size_t decimals = point < text.size() ? text.size() - point - 1 : 0;
  if (text.size() < 32 && decimals <= 4 && text.find_first_of("eE") == text.npos) {
    char digits[40];
    std::size_t n = text.copy(digits, point);
    if (decimals > 0) n += text.copy(digits + n, decimals, point + 1);
    for (std::size_t i = decimals; i < 4; ++i) digits[n++] = '0';
    LONGLONG exact = 0;
    const auto read = std::from_chars(digits, digits + n, exact);
    if (read.ec == std::errc::result_out_of_range) return DISP_E_OVERFLOW;
    value = exact;
    return S_OK;
  }
  return currency_from(real, value);
}

}  // namespace vqmath63::automation::system
