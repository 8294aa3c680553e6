// Numbers and dates between their binary and their written form, without regard to the locale.
#pragma once

#include <cstddef>
#include <string_view>

#include "automation/system/functions.hpp"

namespace vqmath63::automation::system {

/// Room for every text that a format function below writes.
inline constexpr std::size_t kFormatRoom = 64;

/// A number as a conversion carries it, without loss.
struct Number {
  enum class Kind { kWhole, kUnsigned, kReal, kCurrency };
  Kind kind = Kind::kWhole;
  LONGLONG whole = 0;  // kCurrency: ten-thousandths
  ULONGLONG count = 0;
  double real = 0;
};

/// Rounds half to even, whatever the rounding mode of the thread.
double round_half_even(double x);

/// The shortest digits that read back as the same number; an exponent ("1E+20") is written below
/// 0.0001 and from 1E+15 on, for single precision from 1E+7 on.
std::string_view format_real(double value, char (&room)[kFormatRoom]);
std::string_view format_real(float value, char (&room)[kFormatRoom]);
/// Currency without trailing zeros.
std::string_view format_currency(LONGLONG value, char (&room)[kFormatRoom]);
/// The date, and the time of day unless it is midnight, to the second. DISP_E_OVERFLOW outside the
/// years 100 to 9999.
HRESULT format_date(DATE value, char (&room)[kFormatRoom], std::string_view& text);

/// A real number, no blanks around it: DISP_E_TYPEMISMATCH when the text is none, DISP_E_OVERFLOW
/// when it is too large; too small a one is 0.
HRESULT parse_real(std::string_view text, double& value);
HRESULT parse_real(std::string_view text, float& value);
/// A number: whole as far as 64 bits hold it, else real.
HRESULT parse_number(std::string_view text, Number& value);
/// Currency: to the last of its digits where the text has no more than four decimals.
HRESULT parse_currency(std::string_view text, LONGLONG& value);
/// Ten-thousandths of a real number, rounded half to even.
HRESULT currency_from(double real, LONGLONG& value);
/// "YYYY-MM-DD", with " hh:mm" or " hh:mm:ss" (or a T for the blank), or a number of days.
HRESULT parse_date(std::string_view text, DATE& value);
/// Whether a number of days lies in the years 100 to 9999.
bool is_date(double days);

}  // namespace vqmath63::automation::system
