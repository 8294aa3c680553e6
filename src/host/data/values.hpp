// Values of a call as texts: what a user writes for an argument, and how results are shown.
#pragma once

#include <optional>
#include <string>

#include "host/client/description.hpp"
#include "host/client/dispatch_client.hpp"

namespace vqmath63::host {

/// Makes the value of a declared type from a text:
/// - numbers, true and false, dates (YYYY-MM-DD, with a time if need be; a date also stands for its
///   day number where a number is wanted); for a String any text as it is;
/// - for arrays lists, [1, 2, 3], lower bound 1, and for two dimensions lists of rows,
///   [[0, 5], [1, 20]]; or columns of a file, @wells.csv:oil (by header or number; several for two
///   dimensions, separated by commas; without any, all columns).
/// `what` names the argument in messages. UsageError where the text does not fit, WorkError for
/// what is wrong in a file; `empty_as` fills missing cells.
Value value_from_text(const DeclaredType& type, const std::string& text, const std::string& what,
                      std::optional<double> empty_as);

/// A value as a user reads it: shortest digits that read back the same, True and False, ISO dates,
/// lists in brackets, two-dimensional arrays as lines of aligned columns. Without `all`, long
/// arrays are shortened and their size is told.
std::string value_text(const VARIANT& value, bool all);

/// Shortest digits that read back the same.
std::string number_text(double value);
std::string number_text(float value);

/// The same without an exponent for all but very large and very small numbers.
std::string plain_text(double value);
std::string plain_text(float value);

}  // namespace vqmath63::host
