// Text as a page holds it: HTML that is well-formed XML too.
#pragma once

#include <string>
#include <string_view>

namespace vqmath63::host {

/// A text between tags or in quotes: what has a meaning there is escaped, bytes that are no UTF-8
/// and control characters stand as U+FFFD.
std::string escaped(std::string_view text);

/// `name="value"` with a blank before it.
std::string attribute(std::string_view name, std::string_view value);

}  // namespace vqmath63::host
