// Dates in other writings than ISO's.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace vqmath63::host {

/// Reads dates by a pattern: YYYY or YY (70 to 99 are of the last century), MM or M, MMM (an
/// English month's first three letters), MMMM (all of them), DD or D, hh, mm, ss; anything else
/// stands for itself. One digit may stand where two are meant. Without DD it is the first of the
/// month. Behind the day a text may go on with the time of day, with AM or PM too, whether the
/// pattern does or not; a pattern's time may be missing. The word "serial" is a spreadsheet's
/// number of days since 1899-12-30.
class DateFormat {
 public:
  /// UsageError where the pattern says no year and month.
  explicit DateFormat(std::string pattern);

  /// A day count (see moment.hpp); nothing where the text is written otherwise or there is no such
  /// day.
  std::optional<double> read(std::string_view text) const;

  const std::string& pattern() const { return pattern_; }

 private:
  std::string pattern_;
  std::string date_;  // the pattern up to its time of day
  bool serial_;
};

/// The moment that an option of the command line has, as ISO or as a file's dates are written;
/// UsageError where it is none.
std::optional<double> moment_option(const std::optional<std::string>& text, const char* option,
                                    const std::optional<DateFormat>& format);

/// What the help says of such an option.
inline constexpr const char* kDateFormatHelp =
    "How dates are written, in the file and on the line: DD/MM/YYYY for instance, D-MMM-YY, "
    "YYYYMMDD hh:mm; serial: as spreadsheets count days";

/// The format that an option of the command line names, or none; UsageError where it is none.
std::optional<DateFormat> date_format_option(const std::optional<std::string>& pattern);

/// Patterns that read a text, as a user would write them for --date-format: "DD/MM/YYYY or
/// MM/DD/YYYY"; empty where none of the usual ones does.
std::string date_formats_of(std::string_view text);

}  // namespace vqmath63::host
