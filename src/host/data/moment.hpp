// Moments as day counts, and the ISO texts that people write for them.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace vqmath63::host {

/// A moment is a count of days since 1899-12-30, with the time of day as its fraction; there is no
/// time zone.

/// Reads YYYY-MM-DD, optionally with a blank or a T and hh:mm, hh:mm:ss or hh:mm:ss.fff; a Z or an
/// offset behind these is passed over, and the time is the one that is written. Nothing for any
/// other text and for a day or time that does not exist.
std::optional<double> parse_moment(std::string_view text);

/// Whether a text has the form of a moment, even if there is no such day or time.
bool looks_like_moment(std::string_view text);

/// Why a text is no moment: "'2023-02-30' is not a date: there is no such day", or where it has not
/// even the form, the text, `words` and the form.
std::string why_no_moment(std::string_view text, const char* words = "is not a date");

/// "2023-01-31", or "2023-01-31 06:00" with the time rounded to the minute.
std::string moment_text(double days, bool with_time);

/// As above with seconds where there are any, the time only where it is not midnight.
std::string exact_moment_text(double days);

/// True when the moment is no midnight, to the minute.
bool has_time_of_day(double days);

/// The clock time nearest to `days` that a person would have written: midnight, else a whole hour,
/// minute or second, the first of these within `tolerance` days; else the nearest second.
double roundest_moment(double days, double tolerance);

}  // namespace vqmath63::host
